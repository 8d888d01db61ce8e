#include "core/base/Table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace tracelet {
namespace {

const auto OutOfRange = testing::ThrowsMessage<RunTimeError>("Subscript out of range");

TEST(Table, ChecksEveryIndex) {
    Table<std::int32_t> table(3);
    table[2] = 7;
    EXPECT_EQ(table[2], 7);
    EXPECT_THAT([&] { table[3] = 1; }, OutOfRange);
    EXPECT_THAT([&] { table[-1] = 1; }, OutOfRange);
    EXPECT_THAT([] { (void)Table<bool>()[0]; }, OutOfRange);
}

TEST(Table, ResizeClears) {
    Table<bool> table(2);
    table[0] = true;
    table.Resize(3);
    EXPECT_EQ(table.Count(), 3);
    EXPECT_FALSE(table[0]);
}

TEST(Table, TakesValues) {
    const Table<std::int32_t> table(std::vector<std::int32_t>{3, 5});
    EXPECT_EQ(table.Count(), 2);
    EXPECT_EQ(table[0], 3);
    EXPECT_EQ(table[1], 5);
}

TEST(Table, RefusesCountsThatCannotBe) {
    Table<double> table(2);
    EXPECT_THAT([&] { table.Resize(-1); }, OutOfRange);
    EXPECT_THAT([&] { table.Resize(std::numeric_limits<std::int64_t>::max()); },
                testing::ThrowsMessage<RunTimeError>("Out of memory"));
    EXPECT_EQ(table.Count(), 2);
}

} // namespace
} // namespace tracelet
