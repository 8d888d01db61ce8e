#include "base/RunTimeError.h"

#include <cerrno>
#include <clocale>
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

TEST(RunTimeError, SpeaksOneLanguage) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr)
        GTEST_SKIP() << "no other language on this machine";
    EXPECT_STREQ(Fault::FromErrno(EFBIG).what(), "File too large");
    EXPECT_STREQ(Fault::FromErrno(-1).what(), "Unknown error");
    std::setlocale(LC_ALL, before.c_str());
}

} // namespace
} // namespace tracelet
