#include "core/layout/SevenSegment.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

using Places = std::vector<DigitPlace>;

constexpr std::uint8_t Zero = 0x3F;
constexpr std::uint8_t One = SegmentUpperRight | SegmentLowerRight;
constexpr std::uint8_t Two =
    SegmentTop | SegmentUpperRight | SegmentMiddle | SegmentLowerLeft | SegmentBottom;

TEST(SevenSegment, PointStandsBehindItsDigit) {
    EXPECT_EQ(DigitPlaces("1.0", 0, 9), (Places{{One, true}, {Zero, false}}));
    EXPECT_EQ(DigitPlaces(".20", 0, 9), (Places{{0, true}, {Two, false}, {Zero, false}}));
    EXPECT_EQ(DigitPlaces("-.2", 0, 9), (Places{{SegmentMiddle, true}, {Two, false}}));
}

TEST(SevenSegment, RightAligned) {
    EXPECT_EQ(DigitPlaces("1", 3, 9), (Places{{0, false}, {0, false}, {One, false}}));
    EXPECT_EQ(DigitPlaces("", 2, 9), (Places{{0, false}, {0, false}}));
}

TEST(SevenSegment, PointKeepsItsPlaceWhileNumbersChange) {
    for (const char* text : {".000001", "1.000000", "25.000000", "100.000000", "-.200000"}) {
        const Places places = DigitPlaces(text, 9, 9);
        ASSERT_EQ(places.size(), 9U) << text;
        for (std::size_t at = 0; at < places.size(); ++at)
            EXPECT_EQ(places[at].point, at == 2) << text << " place " << at;
    }
}

TEST(SevenSegment, PowersHaveACapitalE) {
    EXPECT_EQ(DigitPlaces("2e-1", 0, 9),
              (Places{{Two, false}, {0x79, false}, {SegmentMiddle, false}, {One, false}}));
}

TEST(SevenSegment, MorePlacesWhereTheyFit) {
    const Places places = DigitPlaces("1000.000000", 9, 10);
    ASSERT_EQ(places.size(), 10U);
    EXPECT_EQ(places[0], (DigitPlace{One, false}));
    EXPECT_EQ(places[3], (DigitPlace{Zero, true}));
}

TEST(SevenSegment, NumbersThatDoNotFitAreBarsNeverAPart) {
    const Places bars(9, DigitPlace{SegmentMiddle, false});
    EXPECT_EQ(DigitPlaces("1000.000000", 9, 9), bars);
    EXPECT_EQ(DigitPlaces("inf", 9, 9), bars);
    EXPECT_EQ(DigitPlaces("1e+20", 9, 9), bars);
}

TEST(SevenSegment, EveryDigitHasItsOwnSegments) {
    const Places places = DigitPlaces("0123456789", 0, 10);
    ASSERT_EQ(places.size(), 10U);
    const std::uint8_t expected[] = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
    for (std::size_t digit = 0; digit < 10; ++digit)
        EXPECT_EQ(places[digit].segments, expected[digit]) << digit;
}

} // namespace
} // namespace tracelet
