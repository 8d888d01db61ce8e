#include "core/disk/UserFolders.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

TEST(UserFolders, FoldersOfOneDiskAreTold) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "inner");
    EXPECT_TRUE(AreOnOneDisk(folder.Path(), folder.Path() + "\\inner"));
    EXPECT_FALSE(AreOnOneDisk(folder.Path(), "/proc"));
    EXPECT_FALSE(AreOnOneDisk(folder.Path(), folder / "missing"));
    EXPECT_FALSE(AreOnOneDisk("", ""));
}

} // namespace
} // namespace tracelet
