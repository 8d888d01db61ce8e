#include "base/RunTimeError.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

TEST(RunTimeError, DescribesFailedFileCalls) {
    EXPECT_STREQ(Fault::FromErrno(ENOENT).what(), "File not found");
    EXPECT_STREQ(Fault::FromErrno(ENOTDIR).what(), "Path not found");
    EXPECT_STREQ(Fault::FromErrno(EACCES).what(), "Permission denied");
    EXPECT_STREQ(Fault::FromErrno(EISDIR).what(), "Permission denied");
    EXPECT_STREQ(Fault::FromErrno(ENOSPC).what(), "Disk full");
    EXPECT_STREQ(Fault::FromErrno(ENOMEM).what(), "Out of memory");
    EXPECT_STREQ(Fault::FromErrno(EIO).what(), "Input/output error");
}

} // namespace
} // namespace tracelet
