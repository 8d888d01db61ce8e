#include "core/boards/Thermocouple.h"

#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"

#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace tracelet {
namespace {

// One piece of a reference function: millivolts = sum of coefficients[i] * celsius^i, up to `highest` °C.
struct Piece {
    double highest;
    std::span<const double> coefficients;
};

// The reference function of a type, from `lowest` °C up to the end of its last piece.
struct Reference {
    std::string_view name;
    double lowest;
    double turn; // °C above which the voltage rises throughout
    std::span<const Piece> pieces;
};

constexpr double BLow[] = {0.0,
                           -0.246508183460e-03,
                           0.590404211710e-05,
                           -0.132579316360e-08,
                           0.156682919010e-11,
                           -0.169445292400e-14,
                           0.629903470940e-18};
constexpr double BHigh[] = {-0.389381686210e+01, 0.285717474700e-01,  -0.848851047850e-04,
                            0.157852801640e-06,  -0.168353448640e-09, 0.111097940130e-12,
                            -0.445154310330e-16, 0.989756408210e-20,  -0.937913302890e-24};

constexpr double ELow[] = {0.0,
                           0.586655087080e-01,
                           0.454109771240e-04,
                           -0.779980486860e-06,
                           -0.258001608430e-07,
                           -0.594525830570e-09,
                           -0.932140586670e-11,
                           -0.102876055340e-12,
                           -0.803701236210e-15,
                           -0.439794973910e-17,
                           -0.164147763550e-19,
                           -0.396736195160e-22,
                           -0.558273287210e-25,
                           -0.346578420130e-28};
constexpr double EHigh[] = {0.0,
                            0.586655087100e-01,
                            0.450322755820e-04,
                            0.289084072120e-07,
                            -0.330568966520e-09,
                            0.650244032700e-12,
                            -0.191974955040e-15,
                            -0.125366004970e-17,
                            0.214892175690e-20,
                            -0.143880417820e-23,
                            0.359608994810e-27};

constexpr double JLow[] = {0.0,
                           0.503811878150e-01,
                           0.304758369300e-04,
                           -0.856810657200e-07,
                           0.132281952950e-09,
                           -0.170529583370e-12,
                           0.209480906970e-15,
                           -0.125383953360e-18,
                           0.156317256970e-22};
constexpr double JHigh[] = {0.296456256810e+03,  -0.149761277860e+01, 0.317871039240e-02,
                            -0.318476867010e-05, 0.157208190040e-08,  -0.306913690560e-12};

constexpr double KLow[] = {0.0,
                           0.394501280250e-01,
                           0.236223735980e-04,
                           -0.328589067840e-06,
                           -0.499048287770e-08,
                           -0.675090591730e-10,
                           -0.574103274280e-12,
                           -0.310888728940e-14,
                           -0.104516093650e-16,
                           -0.198892668780e-19,
                           -0.163226974860e-22};
constexpr double KHigh[] = {-0.176004136860e-01, 0.389212049750e-01,  0.185587700320e-04, -0.994575928740e-07,
                            0.318409457190e-09,  -0.560728448890e-12, 0.560750590590e-15, -0.320207200030e-18,
                            0.971511471520e-22,  -0.121047212750e-25};

constexpr double RLow[] = {0.0,
                           0.528961729765e-02,
                           0.139166589782e-04,
                           -0.238855693017e-07,
                           0.356916001063e-10,
                           -0.462347666298e-13,
                           0.500777441034e-16,
                           -0.373105886191e-19,
                           0.157716482367e-22,
                           -0.281038625251e-26};
constexpr double RMiddle[] = {0.295157925316e+01,  -0.252061251332e-02, 0.159564501865e-04,
                              -0.764085947576e-08, 0.205305291024e-11,  -0.293359668173e-15};
constexpr double RHigh[] = {0.152232118209e+03, -0.268819888545e+00, 0.171280280471e-03, -0.345895706453e-07,
                            -0.934633971046e-14};

constexpr double SLow[] = {0.0,
                           0.540313308631e-02,
                           0.125934289740e-04,
                           -0.232477968689e-07,
                           0.322028823036e-10,
                           -0.331465196389e-13,
                           0.255744251786e-16,
                           -0.125068871393e-19,
                           0.271443176145e-23};
constexpr double SMiddle[] = {0.132900444085e+01, 0.334509311344e-02, 0.654805192818e-05, -0.164856259209e-08,
                              0.129989605174e-13};
constexpr double SHigh[] = {0.146628232636e+03, -0.258430516752e+00, 0.163693574641e-03, -0.330439046987e-07,
                            -0.943223690612e-14};

constexpr double TLow[] = {0.0,
                           0.387481063640e-01,
                           0.441944343470e-04,
                           0.118443231050e-06,
                           0.200329735540e-07,
                           0.901380195590e-09,
                           0.226511565930e-10,
                           0.360711542050e-12,
                           0.384939398830e-14,
                           0.282135219250e-16,
                           0.142515947790e-18,
                           0.487686622860e-21,
                           0.107955392700e-23,
                           0.139450270620e-26,
                           0.797951539270e-30};
constexpr double THigh[] = {0.0,
                            0.387481063640e-01,
                            0.332922278800e-04,
                            0.206182434040e-06,
                            -0.218822568460e-08,
                            0.109968809280e-10,
                            -0.308157587720e-13,
                            0.454791352900e-16,
                            -0.275129016730e-19};

constexpr Piece JPieces[] = {{760.0, JLow}, {1200.0, JHigh}};
constexpr Piece KPieces[] = {{0.0, KLow}, {1372.0, KHigh}};
constexpr Piece SPieces[] = {{1064.18, SLow}, {1664.5, SMiddle}, {1768.1, SHigh}};
constexpr Piece TPieces[] = {{0.0, TLow}, {400.0, THigh}};
constexpr Piece BPieces[] = {{630.615, BLow}, {1820.0, BHigh}};
constexpr Piece RPieces[] = {{1064.18, RLow}, {1664.5, RMiddle}, {1768.1, RHigh}};
constexpr Piece EPieces[] = {{0.0, ELow}, {1000.0, EHigh}};

constexpr double BTurn = 21.020261884768555; // root of the derivative of BLow

// In the order of ThermocoupleType.
constexpr Reference References[] = {{"J", -210.0, -210.0, JPieces}, {"K", -270.0, -270.0, KPieces},
                                    {"S", -50.0, -50.0, SPieces},   {"T", -270.0, -270.0, TPieces},
                                    {"B", 0.0, BTurn, BPieces},     {"R", -50.0, -50.0, RPieces},
                                    {"E", -270.0, -270.0, EPieces}};

const Reference& ReferenceOf(ThermocoupleType type) {
    const auto index = static_cast<std::size_t>(type);
    if (index >= std::size(References))
        throw Fault::SubscriptOutOfRange();
    return References[index];
}

double Highest(const Reference& reference) {
    return reference.pieces.back().highest;
}

struct ValueAndSlope {
    double value;
    double slope;
};

// Type K above 0 °C: the magnetic ordering of its positive leg near 127 °C.
void AddOrderingTerm(ValueAndSlope& result, double celsius) {
    constexpr double height = 0.118597600000;
    constexpr double width = -0.118343200000e-03;
    constexpr double centre = 0.126968600000e+03;
    const double offset = celsius - centre;
    const double term = height * std::exp(width * offset * offset);
    result.value += term;
    result.slope += 2.0 * width * offset * term;
}

// Millivolts, and millivolts a degree, at a temperature inside the range.
ValueAndSlope Evaluate(const Reference& reference, double celsius) {
    const Piece* piece = reference.pieces.data();
    while (celsius > piece->highest)
        ++piece;
    ValueAndSlope result{0.0, 0.0};
    for (std::size_t i = piece->coefficients.size(); i-- > 0;) {
        result.slope = result.slope * celsius + result.value;
        result.value = result.value * celsius + piece->coefficients[i];
    }
    if (piece->coefficients.data() == KHigh)
        AddOrderingTerm(result, celsius);
    return result;
}

RunTimeError OutsideRange(const Reference& reference, const std::string& what) {
    return RunTimeError(what + " is outside the range of a type " + std::string(reference.name) +
                        " thermocouple (" + NumberText(reference.lowest) + " to " +
                        NumberText(Highest(reference)) + " \u00b0C)");
}

// The temperature between `low` and `high` where the rising function takes the value `millivolts`: Newton's
// steps, replaced by halving where one would leave the interval.
double Solve(const Reference& reference, double millivolts, double low, double high) {
    double celsius = low + (high - low) / 2.0;
    for (int step = 0; step < 100; ++step) {
        const auto [value, slope] = Evaluate(reference, celsius);
        if (value == millivolts)
            break;
        (value < millivolts ? low : high) = celsius;
        double next = celsius - (value - millivolts) / slope;
        if (!(next > low && next < high))
            next = low + (high - low) / 2.0;
        if (std::abs(next - celsius) < 1e-11)
            break;
        celsius = next;
    }
    return celsius;
}

bool InRange(const Reference& reference, double celsius) {
    return celsius >= reference.lowest && celsius <= Highest(reference);
}

// NaN outside the range.
double CelsiusOrNaN(const Reference& reference, double millivolts) {
    const double low = reference.turn;
    const double high = Highest(reference);
    const double lowest = Evaluate(reference, low).value;
    const double highest = Evaluate(reference, high).value;
    // A voltage that was computed at an end may miss it by a rounding.
    constexpr double slack = 1e-9;
    if (!(millivolts >= lowest - slack && millivolts <= highest + slack))
        return std::numeric_limits<double>::quiet_NaN();
    if (millivolts <= lowest)
        return low;
    if (millivolts >= highest)
        return high;
    return Solve(reference, millivolts, low, high);
}

} // namespace

ThermocoupleRange RangeOf(ThermocoupleType type) {
    const Reference& reference = ReferenceOf(type);
    return {reference.lowest, Highest(reference)};
}

double ThermocoupleMillivolts(ThermocoupleType type, double celsius) {
    const Reference& reference = ReferenceOf(type);
    if (!InRange(reference, celsius))
        throw OutsideRange(reference, NumberText(celsius) + " \u00b0C");
    return Evaluate(reference, celsius).value;
}

double ThermocoupleCelsius(ThermocoupleType type, double millivolts) {
    const Reference& reference = ReferenceOf(type);
    const double celsius = CelsiusOrNaN(reference, millivolts);
    if (std::isnan(celsius))
        throw OutsideRange(reference, NumberText(millivolts) + " mV");
    return celsius;
}

double ThermocoupleCelsius(ThermocoupleType type, const ThermocoupleReading& reading) {
    return ThermocoupleCelsius(type, reading.millivolts +
                                         ThermocoupleMillivolts(type, reading.coldJunctionCelsius));
}

double ThermocoupleCelsiusOrNaN(ThermocoupleType type, const ThermocoupleReading& reading) {
    const Reference& reference = ReferenceOf(type);
    if (!InRange(reference, reading.coldJunctionCelsius))
        return std::numeric_limits<double>::quiet_NaN();
    return CelsiusOrNaN(reference,
                        reading.millivolts + Evaluate(reference, reading.coldJunctionCelsius).value);
}

double InScale(double celsius, TemperatureScale scale) {
    constexpr double zeroInKelvin = 273.15;
    switch (scale) {
    case TemperatureScale::Fahrenheit:
        return celsius * 1.8 + 32.0;
    case TemperatureScale::Rankine:
        return (celsius + zeroInKelvin) * 1.8;
    case TemperatureScale::Kelvin:
        return celsius + zeroInKelvin;
    case TemperatureScale::Celsius:
        break;
    }
    return celsius;
}

} // namespace tracelet
