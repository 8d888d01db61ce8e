#pragma once

#include "core/files/SystemFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace tracelet {

/// What the failing reads are told.
inline constexpr const char* UnreadableText = "Bad file descriptor";

/// Makes every further read of an open file fail; the file still tells its size.
inline void MakeUnreadable(const SystemFile& file) {
    const std::string same = "/proc/self/fd/" + std::to_string(file.Handle());
    const int writeOnly = open(same.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(writeOnly, 0);
    ASSERT_EQ(dup3(writeOnly, file.Handle(), O_CLOEXEC), file.Handle());
    close(writeOnly);
}

} // namespace tracelet
