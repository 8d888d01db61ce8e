#pragma once

#include "core/export/GeneralText.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace tracelet {

/// Compares PutGeneral and PutLong with printf on random and on awkward numbers, and keeps count.
class GeneralTextSweep {
public:
    explicit GeneralTextSweep(std::uint64_t seed) : random(seed) {}

    void Check(double value) { Compare(value, "%.15g", value); }
    void Check(float value) { Compare(value, "%.7g", static_cast<double>(value)); }

    void CheckLong(std::int32_t value) {
        char expected[GeneralTextRoom];
        char written[GeneralTextRoom];
        const int length = std::snprintf(expected, sizeof expected, "%d", value);
        CompareText(expected, length, written, PutLong(value, written));
    }

    /// The number, its neighbours on both sides, and all of them negative.
    template <typename Number>
    void CheckAround(Number value) {
        constexpr Number Infinity = std::numeric_limits<Number>::infinity();
        Number below = value;
        Number above = value;
        for (int step = 0; step < 3; ++step) {
            for (const Number number : {below, above}) {
                Check(number);
                Check(-number);
            }
            below = std::nextafter(below, -Infinity);
            above = std::nextafter(above, Infinity);
        }
    }

    /// Every class of awkward numbers once; a few hundred thousand comparisons.
    template <typename Number>
    void CheckEdges() {
        CheckSpecial<Number>();
        CheckPowers<Number>();
        CheckTies<Number>();
        CheckDecimals<Number>();
        for (int i = -20000; i <= 20000; ++i) {
            Check(static_cast<Number>(i));
            Check(static_cast<Number>(i) / 2);
            Check(static_cast<Number>(i) / 1000);
        }
    }

    void CheckLongEdges() {
        CheckLong(std::numeric_limits<std::int32_t>::min());
        CheckLong(std::numeric_limits<std::int32_t>::max());
        for (std::int32_t power = 1;; power *= 10) {
            for (const std::int32_t value : {power - 1, power, power + 1}) {
                CheckLong(value);
                CheckLong(-value);
            }
            if (power == 1000000000)
                break;
        }
        for (std::int32_t value = -20000; value <= 20000; ++value)
            CheckLong(value);
    }

    /// Nine random numbers: four doubles, four floats, one integer.
    void CheckRandom() {
        const std::uint64_t bits = random();
        Check(std::bit_cast<double>(bits));
        Check(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
        CheckLong(static_cast<std::int32_t>(static_cast<std::uint32_t>(bits) >> (bits >> 59)));
        const double volts = std::uniform_real_distribution<double>(-10.0, 10.0)(random);
        Check(volts);
        Check(static_cast<float>(volts));
        const double wide = Scattered();
        Check(wide);
        Check(static_cast<float>(wide));
        CheckRandomTie<double>();
        CheckRandomTie<float>();
    }

    /// Counts one comparison; `written` ends at `end`.
    void CompareText(const char* expected, int length, const char* written, const char* end) {
        ++compared;
        if (end - written == length && std::memcmp(written, expected, static_cast<std::size_t>(length)) == 0)
            return;
        if (different++ == 0)
            firstDifference = "\"" + std::string(written, end) + "\" instead of \"" + expected + "\"";
    }

    [[nodiscard]] std::uint64_t Compared() const { return compared; }
    [[nodiscard]] std::uint64_t Different() const { return different; }
    [[nodiscard]] const std::string& FirstDifference() const { return firstDifference; }

private:
    template <typename Number>
    static constexpr int Digits = sizeof(Number) == sizeof(float) ? 7 : 15;

    template <typename Number>
    void Compare(Number value, const char* format, double promoted) {
        char expected[GeneralTextRoom];
        char written[GeneralTextRoom];
        const int length = std::snprintf(expected, sizeof expected, format, promoted);
        CompareText(expected, length, written, PutGeneral(value, written));
    }

    template <typename Number>
    void CheckSpecial() {
        using Limits = std::numeric_limits<Number>;
        for (const Number value : {Limits::infinity(), Limits::quiet_NaN()}) {
            Check(value);
            Check(-value);
        }
        CheckAround(Number{0});
        CheckAround(Limits::min());
        CheckAround(Limits::max());
        for (Number value = Limits::denorm_min(); value < Limits::min(); value *= Number{1.5})
            CheckAround(value + Limits::denorm_min());
    }

    template <typename Number>
    void CheckPowers() {
        using Limits = std::numeric_limits<Number>;
        for (int x = Limits::min_exponent10 - 15; x <= Limits::max_exponent10; ++x) {
            const auto power = static_cast<Number>(std::pow(10.0L, x));
            CheckAround(power);
            for (int digit = 2; digit <= 9; ++digit)
                CheckAround(power * static_cast<Number>(digit) / 10);
            // All nines, and where they round up to the next power.
            const long double nines = 1.0L - 0.5L * std::pow(10.0L, -Digits<Number>);
            CheckAround(static_cast<Number>(std::pow(10.0L, x) * nines));
        }
        for (int e = Limits::min_exponent - Limits::digits; e < Limits::max_exponent; ++e)
            CheckAround(std::ldexp(Number{1}, e));
    }

    // Odd multiples of 2^-j have exactly j decimals, the last of them a 5. With one digit more than is
    // written they are exact halves.
    template <typename Number>
    Number Tie(int j, std::uint64_t number) const {
        const double highest = std::min(std::pow(10.0, Digits<Number> + 1 - j) * std::pow(2.0, j),
                                        std::pow(2.0, std::numeric_limits<Number>::digits));
        const double lowest = std::pow(10.0, Digits<Number> - j) * std::pow(2.0, j);
        const auto first = static_cast<std::uint64_t>(std::ceil(lowest));
        const auto limit = static_cast<std::uint64_t>(highest);
        if (first >= limit)
            return 0;
        const std::uint64_t odd = (first + number % (limit - first)) | 1;
        return std::ldexp(static_cast<Number>(odd), -j);
    }

    template <typename Number>
    void CheckTies() {
        for (int j = 1; j <= 24; ++j)
            for (std::uint64_t i = 0; i < 500; ++i)
                CheckAround(Tie<Number>(j, i * 0x9E3779B97F4A7C15));
    }

    // Short decimals and those with a 5 behind the last digit written, as near as binary gets.
    template <typename Number>
    void CheckDecimals() {
        for (int x = -25; x <= 20; ++x)
            for (int i = 0; i < 100; ++i) {
                const auto digits = static_cast<long double>(random() % 1000000000000000ULL);
                CheckAround(static_cast<Number>((digits + 0.5L) * std::pow(10.0L, x - 15)));
                CheckAround(
                    static_cast<Number>(static_cast<long double>(random() % 10000) * std::pow(10.0L, x)));
            }
    }

    template <typename Number>
    void CheckRandomTie() {
        const Number tie = Tie<Number>(static_cast<int>(1 + random() % 24), random());
        Check(random() % 2 == 0 ? tie : -tie);
    }

    // Any mantissa over the exponents where the writers compute on their own, and somewhat beyond.
    double Scattered() {
        const auto fraction = static_cast<double>(random() >> 12) * 0x1p-52;
        const double magnitude = std::ldexp(1.0 + fraction, static_cast<int>(random() % 120) - 65);
        return random() % 2 == 0 ? magnitude : -magnitude;
    }

    std::mt19937_64 random;
    std::uint64_t compared = 0;
    std::uint64_t different = 0;
    std::string firstDifference;
};

} // namespace tracelet
