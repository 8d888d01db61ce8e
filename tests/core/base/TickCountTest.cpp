#include "core/base/TickCount.h"

#include <gtest/gtest.h>
#include <thread>

namespace tracelet {
namespace {

TEST(TickCount, CountsMilliseconds) {
    const std::uint32_t before = GetTickCount();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_GE(GetTickCount() - before, 19U);
}

} // namespace
} // namespace tracelet
