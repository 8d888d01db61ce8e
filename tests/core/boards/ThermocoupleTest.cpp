#include "core/boards/Thermocouple.h"

#include "core/base/RunTimeError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace tracelet {
namespace {

using enum ThermocoupleType;
using testing::ThrowsMessage;

struct TableValue {
    double celsius;
    double millivolts; // published to three decimals
};

struct TypeTable {
    ThermocoupleType type;
    const char* name;
    ThermocoupleRange range;
    std::vector<TableValue> values;
};

void PrintTo(const TypeTable& table, std::ostream* out) {
    *out << table.name;
}

// Values of the reference tables of NIST Monograph 175 (the same as in IEC 60584-1 and ASTM E230).
const TypeTable Tables[] = {
    {J, "J", {-210.0, 1200.0}, {{-210, -8.095}, {-200, -7.890}, {-150, -6.500}, {-100, -4.633},
                                {-50, -2.431},  {0, 0.0},       {25, 1.277},    {50, 2.585},
                                {100, 5.269},   {200, 10.779},  {300, 16.327},  {400, 21.848},
                                {500, 27.393},  {600, 33.102},  {700, 39.132},  {760, 42.919},
                                {770, 43.559},  {800, 45.494},  {900, 51.877},  {1000, 57.953},
                                {1100, 63.792}, {1200, 69.553}}},
    {K, "K", {-270.0, 1372.0}, {{-270, -6.458}, {-260, -6.441}, {-250, -6.404}, {-200, -5.891},
                                {-150, -4.913}, {-100, -3.554}, {-50, -1.889},  {0, 0.0},
                                {25, 1.000},    {50, 2.023},    {100, 4.096},   {127, 5.206},
                                {200, 8.138},   {300, 12.209},  {400, 16.397},  {500, 20.644},
                                {600, 24.905},  {700, 29.129},  {800, 33.275},  {900, 37.326},
                                {1000, 41.276}, {1100, 45.119}, {1200, 48.838}, {1300, 52.410},
                                {1372, 54.886}}},
    {S, "S", {-50.0, 1768.1}, {{-50, -0.236},  {0, 0.0},       {25, 0.143},    {50, 0.299},    {100, 0.646},
                               {200, 1.441},   {300, 2.323},   {400, 3.259},   {500, 4.233},   {600, 5.239},
                               {700, 6.275},   {800, 7.345},   {900, 8.449},   {1000, 9.587},  {1100, 10.757},
                               {1200, 11.951}, {1300, 13.159}, {1400, 14.373}, {1500, 15.582}, {1600, 16.777},
                               {1700, 17.947}, {1768, 18.693}}},
    {T,
     "T",
     {-270.0, 400.0},
     {{-270, -6.258},
      {-260, -6.232},
      {-250, -6.180},
      {-200, -5.603},
      {-150, -4.648},
      {-100, -3.379},
      {-50, -1.819},
      {0, 0.0},
      {25, 0.992},
      {50, 2.036},
      {100, 4.279},
      {150, 6.704},
      {200, 9.288},
      {250, 12.013},
      {300, 14.862},
      {350, 17.819},
      {400, 20.872}}},
    {B, "B", {0.0, 1820.0}, {{0, 0.0},       {20, -0.003},  {50, 0.002},    {100, 0.033},   {200, 0.178},
                             {300, 0.431},   {400, 0.787},  {500, 1.242},   {600, 1.792},   {700, 2.431},
                             {800, 3.154},   {900, 3.957},  {1000, 4.834},  {1100, 5.780},  {1200, 6.786},
                             {1300, 7.848},  {1400, 8.956}, {1500, 10.099}, {1600, 11.263}, {1700, 12.433},
                             {1800, 13.591}, {1820, 13.820}}},
    {R, "R", {-50.0, 1768.1}, {{-50, -0.226},  {0, 0.0},       {25, 0.141},    {50, 0.296},    {100, 0.647},
                               {200, 1.469},   {300, 2.401},   {400, 3.408},   {500, 4.471},   {600, 5.583},
                               {700, 6.743},   {800, 7.950},   {900, 9.205},   {1000, 10.506}, {1100, 11.850},
                               {1200, 13.228}, {1300, 14.629}, {1400, 16.040}, {1500, 17.451}, {1600, 18.849},
                               {1700, 20.222}, {1768, 21.101}}},
    {E,
     "E",
     {-270.0, 1000.0},
     {{-270, -9.835},
      {-250, -9.718},
      {-200, -8.825},
      {-150, -7.279},
      {-100, -5.237},
      {-50, -2.787},
      {0, 0.0},
      {25, 1.495},
      {50, 3.048},
      {100, 6.319},
      {200, 13.421},
      {300, 21.036},
      {400, 28.946},
      {500, 37.005},
      {600, 45.093},
      {700, 53.112},
      {800, 61.017},
      {900, 68.787},
      {1000, 76.373}}},
};

class ThermocoupleTest : public testing::TestWithParam<TypeTable> {};

TEST_P(ThermocoupleTest, RangeIsThatOfTheReferenceFunction) {
    const ThermocoupleRange range = RangeOf(GetParam().type);
    EXPECT_EQ(range.lowest, GetParam().range.lowest);
    EXPECT_EQ(range.highest, GetParam().range.highest);
}

TEST_P(ThermocoupleTest, GivesTheTableVoltages) {
    for (const auto& [celsius, millivolts] : GetParam().values)
        EXPECT_NEAR(ThermocoupleMillivolts(GetParam().type, celsius), millivolts, 0.00051)
            << celsius << " °C";
}

TEST_P(ThermocoupleTest, GivesTheTableTemperatures) {
    const auto& [type, name, range, values] = GetParam();
    for (const auto& [celsius, millivolts] : values) {
        if (celsius - 1.0 < range.lowest || celsius + 1.0 > range.highest || (type == B && celsius < 50.0))
            continue;
        // What the rounding of the table to 0.001 mV makes of the temperature.
        const double step =
            ThermocoupleMillivolts(type, celsius + 1.0) - ThermocoupleMillivolts(type, celsius - 1.0);
        EXPECT_NEAR(ThermocoupleCelsius(type, millivolts), celsius, 0.00055 * 2.0 / step) << name;
    }
}

TEST_P(ThermocoupleTest, UndoesItselfOverTheWholeRange) {
    const auto [lowest, highest] = GetParam().range;
    const int steps = 20000;
    for (int i = 0; i <= steps; ++i) {
        const double celsius = i == steps ? highest : lowest + (highest - lowest) * i / steps;
        if (GetParam().type == B && celsius < 21.1)
            continue;
        const double millivolts = ThermocoupleMillivolts(GetParam().type, celsius);
        ASSERT_NEAR(ThermocoupleCelsius(GetParam().type, millivolts), celsius, 1e-6) << celsius << " °C";
    }
}

TEST_P(ThermocoupleTest, JoinsItsPiecesSmoothly) {
    for (const double joint : {0.0, 630.615, 760.0, 1064.18, 1664.5}) {
        if (joint <= GetParam().range.lowest || joint >= GetParam().range.highest)
            continue;
        const double below = ThermocoupleMillivolts(GetParam().type, joint);
        const double above = ThermocoupleMillivolts(GetParam().type, std::nextafter(joint, 2000.0));
        EXPECT_NEAR(above, below, 2e-5) << joint;
        EXPECT_NEAR(ThermocoupleCelsius(GetParam().type, below), joint, 2e-3) << joint;
    }
}

TEST_P(ThermocoupleTest, RefusesWhatLiesOutside) {
    const auto [type, name, range, values] = GetParam();
    const double above = std::nextafter(range.highest, 1e6);
    const double below = std::nextafter(range.lowest, -1e6);
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double celsius : {above, below, 1e300, -1e300, notANumber, infinity, -infinity})
        EXPECT_THROW((void)ThermocoupleMillivolts(type, celsius), RunTimeError) << celsius;
    const double top = ThermocoupleMillivolts(type, range.highest) + 1e-6;
    for (const double millivolts : {top, -10.0, 1e300, notANumber, infinity, -infinity})
        EXPECT_THROW((void)ThermocoupleCelsius(type, millivolts), RunTimeError) << millivolts;
}

TEST_P(ThermocoupleTest, TakesBothEnds) {
    const auto [type, name, range, values] = GetParam();
    EXPECT_EQ(ThermocoupleCelsius(type, ThermocoupleMillivolts(type, range.highest)), range.highest);
    if (type != B) {
        EXPECT_EQ(ThermocoupleCelsius(type, ThermocoupleMillivolts(type, range.lowest)), range.lowest);
    }
}

// What was computed at an end may miss it by a rounding; it is that end, and no more is.
TEST_P(ThermocoupleTest, ForgivesARoundingAtBothEnds) {
    constexpr double Forgiven = 0.9e-9; // millivolts
    constexpr double TooFar = 1.1e-9;
    const ThermocoupleType type = GetParam().type;
    const double coldest = type == B ? 21.020261884768555 : GetParam().range.lowest; // where B turns
    const double hottest = GetParam().range.highest;
    const double lowest = ThermocoupleMillivolts(type, coldest);
    const double highest = ThermocoupleMillivolts(type, hottest);
    EXPECT_DOUBLE_EQ(ThermocoupleCelsius(type, lowest - Forgiven), coldest);
    EXPECT_EQ(ThermocoupleCelsius(type, highest + Forgiven), hottest);
    EXPECT_THROW((void)ThermocoupleCelsius(type, lowest - TooFar), RunTimeError);
    EXPECT_THROW((void)ThermocoupleCelsius(type, highest + TooFar), RunTimeError);
}

TEST_P(ThermocoupleTest, AddsTheColdJunction) {
    const ThermocoupleType type = GetParam().type;
    for (const double junction : {0.0, 18.5, 24.0, 45.0}) {
        for (const double celsius : {60.0, 100.0, 380.0}) {
            const double seen =
                ThermocoupleMillivolts(type, celsius) - ThermocoupleMillivolts(type, junction);
            EXPECT_NEAR(ThermocoupleCelsius(type, ThermocoupleReading{seen, junction}), celsius, 1e-6);
        }
    }
    EXPECT_THROW((void)ThermocoupleCelsius(type, ThermocoupleReading{0.0, -300.0}), RunTimeError);
}

INSTANTIATE_TEST_SUITE_P(Types, ThermocoupleTest, testing::ValuesIn(Tables),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ThermocoupleTexts, SayWhatIsOutsideAndOfWhat) {
    EXPECT_THAT([] { (void)ThermocoupleMillivolts(K, 1372.5); },
                ThrowsMessage<RunTimeError>(
                    "1372.5 °C is outside the range of a type K thermocouple (-270 to 1372 °C)"));
    EXPECT_THAT([] { (void)ThermocoupleCelsius(S, -1.0); },
                ThrowsMessage<RunTimeError>(
                    "-1 mV is outside the range of a type S thermocouple (-50 to 1768.1 °C)"));
    EXPECT_THAT([] { (void)RangeOf(static_cast<ThermocoupleType>(7)); },
                ThrowsMessage<RunTimeError>("Subscript out of range"));
}

TEST(ThermocoupleTypeB, TakesTheWarmerOfTwoTemperatures) {
    EXPECT_NEAR(ThermocoupleCelsius(B, 0.0), 42.1321, 1e-4);
    EXPECT_NEAR(ThermocoupleCelsius(B, ThermocoupleMillivolts(B, 10.0)), 32.1, 0.1);
    const double minimum = ThermocoupleMillivolts(B, 21.020261884768555);
    EXPECT_NEAR(minimum, -0.002585, 1e-6);
    EXPECT_NEAR(ThermocoupleCelsius(B, minimum), 21.0203, 1e-3);
    EXPECT_THROW((void)ThermocoupleCelsius(B, -0.0026), RunTimeError);
}

TEST(TemperatureScales, AreThoseOfTheFixedPoints) {
    struct Row {
        double celsius, fahrenheit, rankine, kelvin;
    };
    for (const Row& row : {Row{-273.15, -459.67, 0.0, 0.0}, Row{-40.0, -40.0, 419.67, 233.15},
                           Row{0.0, 32.0, 491.67, 273.15}, Row{100.0, 212.0, 671.67, 373.15}}) {
        EXPECT_DOUBLE_EQ(InScale(row.celsius, TemperatureScale::Celsius), row.celsius);
        EXPECT_NEAR(InScale(row.celsius, TemperatureScale::Fahrenheit), row.fahrenheit, 1e-10);
        EXPECT_NEAR(InScale(row.celsius, TemperatureScale::Rankine), row.rankine, 1e-10);
        EXPECT_NEAR(InScale(row.celsius, TemperatureScale::Kelvin), row.kelvin, 1e-10);
    }
}

TEST(Thermocouple, TellsNoTemperatureOutsideTheRangeWithoutRaising) {
    constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
    for (const TypeTable& table : Tables) {
        SCOPED_TRACE(table.name);
        const double warmest = ThermocoupleMillivolts(table.type, table.range.highest);
        const double junction = 25.0;
        const double atJunction = ThermocoupleMillivolts(table.type, junction);
        for (const double millivolts : {0.3, warmest - atJunction}) {
            const ThermocoupleReading reading{millivolts, junction};
            EXPECT_EQ(ThermocoupleCelsiusOrNaN(table.type, reading),
                      ThermocoupleCelsius(table.type, reading));
        }
        const ThermocoupleReading outside[] = {{warmest - atJunction + 0.001, junction},
                                               {-1000.0, junction},
                                               {NaN, junction},
                                               {0.3, NaN},
                                               {0.3, table.range.highest + 0.01},
                                               {0.3, table.range.lowest - 0.01}};
        for (const ThermocoupleReading& reading : outside) {
            SCOPED_TRACE(testing::Message() << reading.millivolts << " " << reading.coldJunctionCelsius);
            EXPECT_TRUE(std::isnan(ThermocoupleCelsiusOrNaN(table.type, reading)));
            EXPECT_THROW((void)ThermocoupleCelsius(table.type, reading), RunTimeError);
        }
    }
}

} // namespace
} // namespace tracelet
