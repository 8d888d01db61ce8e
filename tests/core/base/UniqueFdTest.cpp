#include "core/base/UniqueFd.h"

#include "core/base/RunTimeError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace tracelet {
namespace {

int Opened() {
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool IsOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) != -1;
}

TEST(UniqueFd, ClosesWithTheObject) {
    int number = UniqueFd::None;
    {
        const UniqueFd owner(Opened());
        number = owner.Get();
        EXPECT_TRUE(IsOpen(number));
    }
    EXPECT_FALSE(IsOpen(number));
}

TEST(UniqueFd, RaisesWhatTheSystemSays) {
    EXPECT_THAT([] { const UniqueFd missing(open("/nowhere/to/be/found", O_RDONLY)); },
                testing::ThrowsMessage<RunTimeError>("File not found"));
}

TEST(UniqueFd, ClosesOnceAndSaysWhatWentWrong) {
    UniqueFd owner(Opened());
    const int number = owner.Get();
    EXPECT_EQ(owner.Close(), 0);
    EXPECT_FALSE(IsOpen(number));
    EXPECT_EQ(owner.Get(), UniqueFd::None);
    EXPECT_EQ(owner.Close(), 0); // again: nothing to close

    UniqueFd stolen(Opened());
    close(stolen.Get());
    EXPECT_EQ(stolen.Close(), EBADF);
}

} // namespace
} // namespace tracelet
