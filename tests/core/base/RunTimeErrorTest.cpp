#include "core/base/RunTimeError.h"

#include <cerrno>
#include <clocale>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

TEST(RunTimeError, DescribesFailedFileCalls) {
    const struct {
        int number;
        const char* description;
    } cases[] = {{ENOENT, "File not found"},    {ENOTDIR, "Path not found"},
                 {ELOOP, "Path not found"},     {ENAMETOOLONG, "Path not found"},
                 {EACCES, "Permission denied"}, {EPERM, "Permission denied"},
                 {EROFS, "Permission denied"},  {EISDIR, "Permission denied"},
                 {ENOMEM, "Out of memory"},     {ENOSPC, "Disk full"},
                 {EDQUOT, "Disk full"},         {EIO, "Input/output error"}};
    for (const auto& c : cases)
        EXPECT_STREQ(Fault::FromErrno(c.number).what(), c.description) << c.number;
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
