#include "core/boards/DigitalPorts.h"

#include "core/base/RunTimeError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

DigitalBoardInfo FourPorts() {
    DigitalBoardInfo board;
    board.portCount = 4;
    return board;
}

TEST(RequirePorts, TakesWhatTheBoardHas) {
    for (std::int32_t start = 0; start <= 4; ++start)
        EXPECT_NO_THROW(RequirePorts(FourPorts(), start, static_cast<std::size_t>(4 - start))) << start;
}

TEST(RequirePorts, NamesAPortThatIsNotThere) {
    constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();
    const struct {
        std::int32_t start;
        std::size_t count;
        const char* text;
    } cases[] = {{0, 5, "The board has no digital port 4"},
                 {3, 3, "The board has no digital port 5"},
                 {4, 1, "The board has no digital port 4"},
                 {-1, 1, "The board has no digital port -1"},
                 {-1, 9, "The board has no digital port -1"},
                 {Highest, 1, "The board has no digital port 2147483647"}};
    for (const auto& c : cases)
        EXPECT_THAT([&] { RequirePorts(FourPorts(), c.start, c.count); },
                    testing::ThrowsMessage<RunTimeError>(c.text))
            << c.start << " " << c.count;
}

} // namespace
} // namespace tracelet
