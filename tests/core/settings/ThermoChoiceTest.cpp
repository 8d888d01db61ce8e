#include "core/settings/ThermoChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;

constexpr std::int32_t Channels = 4;

AnalogBoardInfo Named(const char* name, bool noFamily = false) {
    AnalogBoardInfo board;
    board.name = name;
    board.noFamily = noFamily;
    return board;
}

struct Choice : testing::Test {
    Table<bool> isThermo{Channels + 1};
    Table<std::uint8_t> type{Channels + 1};
    Table<std::uint8_t> scale{Channels + 1};
    Table<std::uint8_t> expChan{Channels + 1};
    ThermoTables tables{isThermo, type, scale, expChan};

    template <typename T>
    static std::vector<int> Values(const Table<T>& table) {
        std::vector<int> values;
        for (std::int64_t i = 0; i < table.Count(); ++i)
            values.push_back(table[i]);
        return values;
    }

    void Clear() {
        isThermo.Resize(Channels + 1);
        type.Resize(Channels + 1);
        scale.Resize(Channels + 1);
        expChan.Resize(Channels + 1);
    }
};

TEST_F(Choice, TypeGoesToThePartnerOfAPairOnly) {
    const struct {
        std::int32_t channel;
        std::int32_t connection;
        std::vector<int> types;
    } cases[] = {
        {0, 0, {6, 0, 0, 0, 0}}, {1, 0, {0, 6, 0, 0, 0}}, {0, 1, {6, 6, 0, 0, 0}},
        {1, 1, {6, 6, 0, 0, 0}}, {2, 1, {0, 0, 6, 6, 0}}, {3, 1, {0, 0, 6, 6, 0}},
        {3, 0, {0, 0, 0, 6, 0}}, {0, 2, {6, 0, 0, 0, 0}}, // only code 1 pairs
    };
    for (const auto& c : cases) {
        Clear();
        ChooseType(tables, c.channel, 6, c.connection);
        EXPECT_EQ(Values(type), c.types) << c.channel << ", connection " << c.connection;
    }
}

TEST_F(Choice, TypeOutsideTheTablesFails) {
    EXPECT_THROW(ChooseType(tables, 5, 1, 0), RunTimeError);
    EXPECT_THROW(ChooseType(tables, 4, 1, 1), RunTimeError); // its partner is outside
    EXPECT_EQ(type[4], 1);
}

TEST_F(Choice, ScaleIsOneForAllChannels) {
    ChooseScale(tables, Channels, 3);
    EXPECT_THAT(Values(scale), ElementsAre(3, 3, 3, 3, 0));
    ChooseScale(tables, 0, 1);
    EXPECT_THAT(Values(scale), ElementsAre(3, 3, 3, 3, 0));
}

TEST_F(Choice, PartnerTakesOverAllButTheScale) {
    for (const std::int32_t channel : {2, 3}) {
        SCOPED_TRACE(channel);
        Clear();
        isThermo[channel] = true;
        type[channel] = 5;
        scale[channel] = 2;
        expChan[channel] = 11;
        ShareWithPartner(tables, channel);
        EXPECT_THAT(Values(isThermo), ElementsAre(0, 0, 1, 1, 0));
        EXPECT_THAT(Values(type), ElementsAre(0, 0, 5, 5, 0));
        EXPECT_THAT(Values(expChan), ElementsAre(0, 0, 11, 11, 0));
        EXPECT_EQ(scale[5 - channel], 0);
    }
}

TEST_F(Choice, PartnerLosesWhatTheChannelDoesNotHave) {
    isThermo[1] = true;
    type[1] = 4;
    expChan[1] = 9;
    ShareWithPartner(tables, 0);
    EXPECT_THAT(Values(isThermo), ElementsAre(0, 0, 0, 0, 0));
    EXPECT_EQ(type[1], 0);
    EXPECT_EQ(expChan[1], 0);
}

TEST_F(Choice, KindFollowsTheFamily) {
    const struct {
        const char* device;
        std::int32_t channel;
        std::int32_t pairChannel;
        std::int32_t connection;
        std::vector<int> thermo;
    } cases[] = {
        {"6601HG", 0, 0, 0, {1, 0, 0, 0, 0}},
        {"6601HG", 0, 0, 1, {1, 1, 0, 0, 0}},
        {"6601HG", 3, 3, 1, {0, 0, 1, 1, 0}},
        {"6601HG", 0, 2, 1, {1, 0, 0, 1, 0}}, // the pair is that of the other control's channel
        {"6601HG", 0, 0, 2, {1, 0, 0, 0, 0}}, // no code of a pair
        {"Merula", 1, 1, 1, {1, 1, 0, 0, 0}},
        {"6605HG", 0, 0, 1, {1, 0, 0, 0, 0}},
        {"3605", 3, 3, 1, {0, 0, 0, 1, 0}},
        {"05", 1, 1, 0, {0, 1, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.device << ' ' << c.channel << ' ' << c.connection);
        Clear();
        ChooseKind(tables, Named(c.device), c.channel, true, c.pairChannel, c.connection);
        EXPECT_EQ(Values(isThermo), c.thermo);
        // And back: what was made thermocouple becomes analog again.
        ChooseKind(tables, Named(c.device), c.channel, false, c.pairChannel, c.connection);
        EXPECT_THAT(Values(isThermo), ElementsAre(0, 0, 0, 0, 0));
    }
}

TEST_F(Choice, KindOfAPairFollowsOnABoardOfNoFamily) {
    ChooseKind(tables, Named("pci-6052e", true), 3, true, 3, 1);
    EXPECT_THAT(Values(isThermo), ElementsAre(0, 0, 1, 1, 0));
}

TEST_F(Choice, KindThatIsNoNewsLeavesThePartner) {
    isThermo[0] = true;
    ChooseKind(tables, Named("6601HG"), 0, true, 0, 1);
    EXPECT_THAT(Values(isThermo), ElementsAre(1, 0, 0, 0, 0));
    ChooseKind(tables, Named("6601HG"), 1, false, 1, 1);
    EXPECT_THAT(Values(isThermo), ElementsAre(1, 0, 0, 0, 0));
}

} // namespace
} // namespace tracelet
