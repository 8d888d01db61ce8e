#pragma once

#include "core/boards/Board.h"

#include <cstdint>

namespace tracelet {

// Thermocouples by the reference functions of the ITS-90. The coefficients are those of NIST Monograph 175
// (Burns, Scroger, Strouse, Croarkin, Guthrie, 1993), as NIST Standard Reference Database 60 lists them.

/// Scales in which a temperature is shown, in the order of the choice list.
enum class TemperatureScale : std::uint8_t { Celsius, Fahrenheit, Rankine, Kelvin };

/// Ends of a type's reference function, degrees Celsius.
struct ThermocoupleRange {
    double lowest = 0.0;
    double highest = 0.0;
};

/// J -210 to 1200, K -270 to 1372, S and R -50 to 1768.1, T -270 to 400, B 0 to 1820, E -270 to 1000.
[[nodiscard]] ThermocoupleRange RangeOf(ThermocoupleType type);

/// Voltage in millivolts of a couple at `celsius` with its cold junction at 0 °C. Outside the type's range,
/// or not a number: raises.
[[nodiscard]] double ThermocoupleMillivolts(ThermocoupleType type, double celsius);

/// Temperature in °C of a couple that gives `millivolts` with its cold junction at 0 °C: the reference
/// function solved to the last digits, so that it undoes ThermocoupleMillivolts. Outside the type's range,
/// or not a number: raises.
/// Type B gives the same voltage twice below 42.1 °C, with its minimum at 21.0 °C: the warmer of the two
/// temperatures is returned.
[[nodiscard]] double ThermocoupleCelsius(ThermocoupleType type, double millivolts);

/// Temperature in °C behind a reading: its voltage raised by that of the cold junction, then solved.
[[nodiscard]] double ThermocoupleCelsius(ThermocoupleType type, const ThermocoupleReading& reading);

/// The same, but NaN where that raises: the voltage (an open couple's, say) or the cold junction lies outside
/// the type's range, or is not a number.
[[nodiscard]] double ThermocoupleCelsiusOrNaN(ThermocoupleType type, const ThermocoupleReading& reading);

/// `celsius` in another scale.
[[nodiscard]] double InScale(double celsius, TemperatureScale scale);

} // namespace tracelet
