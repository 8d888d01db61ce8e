#include "core/drivers/comedi/ComediBoards.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace tracelet {
namespace {

using testing::IsEmpty;

class ComediBoardsTest : public testing::Test {
protected:
    ComediBoardsTest() {
        std::string name = testing::TempDir() + "/nodesXXXXXX";
        folder = mkdtemp(name.data());
    }
    ~ComediBoardsTest() override { std::filesystem::remove_all(folder); }

    void ExpectNothingFound() const {
        BoardList boards;
        FindComediBoards(boards, folder);
        EXPECT_THAT(boards.analog, IsEmpty());
        EXPECT_THAT(boards.digital, IsEmpty());
    }

    std::string folder;
};

TEST_F(ComediBoardsTest, AFolderWithoutNodesHasNoBoards) {
    ExpectNothingFound();
    folder += "/missing";
    ExpectNothingFound();
}

TEST_F(ComediBoardsTest, WhatIsNoDeviceIsNotOpened) {
    std::ofstream(folder + "/comedi0") << "text";
    ASSERT_EQ(mkfifo((folder + "/comedi1").c_str(), 0600), 0); // opening it would wait for a writer
    std::filesystem::create_directory(folder + "/comedi2");
    std::filesystem::create_symlink("nowhere", folder + "/comedi3");
    ExpectNothingFound();
}

TEST_F(ComediBoardsTest, ANodeThatIsNoBoardIsListedWithItsReason) {
    std::filesystem::create_symlink("/dev/null", folder + "/comedi4");
    BoardList boards;
    FindComediBoards(boards, folder);
    ASSERT_EQ(boards.analog.size(), 1U);
    ASSERT_EQ(boards.digital.size(), 1U);
    EXPECT_EQ(boards.analog[0].name, folder + "/comedi4");
    EXPECT_EQ(boards.analog[0].driver, "Comedi");
    EXPECT_NE(boards.analog[0].reason, "");
    EXPECT_EQ(boards.analog[0].board, nullptr);
    EXPECT_FALSE(boards.analog[0].simulated);
    EXPECT_EQ(boards.DefaultAnalog(), -1);
}

} // namespace
} // namespace tracelet
