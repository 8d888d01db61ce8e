#include "core/export/GeneralText.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

namespace tracelet {
namespace {

// A finite number is mantissa × 2^e. Its rounded decimal digits are the nearest integer to
// mantissa × 5^k × 2^(e + k), where k moves the wanted digits in front of the decimal point. As long as the
// product fits the word below this is exact, ties included. Numbers outside that range take the way of
// std::to_chars.

__extension__ using Word128 = unsigned __int128;

template <typename Number>
struct Form;

template <>
struct Form<float> {
    using Bits = std::uint32_t;
    using Word = std::uint64_t; // of the product, and of the digits as characters
    static constexpr int MantissaBits = 23;
    static constexpr int ExponentBias = 127;
    static constexpr int Digits = 7;
    static constexpr std::uint64_t DigitsLimit = 10'000'000;
    static constexpr int FirstBinade = -36; // 2^-36 is the first power of two above 1e-11
    static constexpr int LastBinade = 22;   // 2^23 is the last one below 1e7
    static constexpr int HighestPower = 17; // 24 bits × 5^17 fit 64 bits
};

template <>
struct Form<double> {
    using Bits = std::uint64_t;
    using Word = Word128;
    static constexpr int MantissaBits = 52;
    static constexpr int ExponentBias = 1023;
    static constexpr int Digits = 15;
    static constexpr std::uint64_t DigitsLimit = 1'000'000'000'000'000;
    static constexpr int FirstBinade = -59; // 2^-59 is the first power of two above 1e-18
    static constexpr int LastBinade = 48;   // 2^49 is the last one below 1e15
    static constexpr int HighestPower = 32; // 53 bits × 5^32 fit 128 bits
};

// Nearest integer to product / 2^shift, halves to even; shift is at least 1.
template <typename Word>
constexpr std::uint64_t RoundedShift(Word product, int shift) {
    const Word half = (Word{1} << (shift - 1)) - 1;
    const Word odd = (product >> shift) & 1;
    return static_cast<std::uint64_t>((product + half + odd) >> shift);
}

template <typename Number>
constexpr auto PowersOfFive() {
    std::array<typename Form<Number>::Word, Form<Number>::HighestPower + 1> powers{};
    powers[0] = 1;
    for (std::size_t i = 1; i < powers.size(); ++i)
        powers[i] = powers[i - 1] * 5;
    return powers;
}

template <typename Number>
inline constexpr auto PowerOfFive = PowersOfFive<Number>();

// What the numbers from 2^b up to 2^(b + 1) have in common.
template <typename Number>
struct Binade {
    typename Form<Number>::Bits next; // mantissas from here on have one more digit before the point
    std::int16_t exponent;            // decimal exponent of the others, after rounding
    std::int16_t shift;               // and the bits their products have too many
};

template <typename Number>
constexpr int ExcessBits(int binade, int exponent) {
    const int k = Form<Number>::Digits - 1 - exponent;
    return Form<Number>::MantissaBits - binade - k;
}

template <typename Number>
constexpr std::uint64_t RoundedDigits(typename Form<Number>::Bits mantissa, int exponent, int shift) {
    const auto power = PowerOfFive<Number>[static_cast<std::size_t>(Form<Number>::Digits - 1 - exponent)];
    return RoundedShift(mantissa * power, shift);
}

// floor(b × log10(2)), exact for every binade in use.
constexpr int DecimalExponent(int binade) {
    constexpr int Log10Of2 = 78913; // × 2^-18
    return (binade * Log10Of2) >> 18;
}

template <typename Number>
constexpr Binade<Number> MakeBinade(int binade) {
    using F = Form<Number>;
    using Bits = typename F::Bits;
    const int exponent = DecimalExponent(binade);
    const int shift = ExcessBits<Number>(binade, exponent);
    Bits low = Bits{1} << F::MantissaBits; // halve the mantissas until the first one of a digit more is found
    Bits high = low << 1;
    while (low < high) {
        const Bits middle = low + (high - low) / 2;
        if (RoundedDigits<Number>(middle, exponent, shift) >= F::DigitsLimit)
            high = middle;
        else
            low = middle + 1;
    }
    return {low, static_cast<std::int16_t>(exponent), static_cast<std::int16_t>(shift)};
}

template <typename Number>
constexpr auto MakeBinades() {
    using F = Form<Number>;
    std::array<Binade<Number>, F::LastBinade - F::FirstBinade + 1> binades{};
    for (int b = F::FirstBinade; b <= F::LastBinade; ++b)
        binades[static_cast<std::size_t>(b - F::FirstBinade)] = MakeBinade<Number>(b);
    return binades;
}

template <typename Number>
inline constexpr auto Binades = MakeBinades<Number>();

constexpr std::uint64_t EightZeros = 0x3030303030303030;

// The eight decimal digits of a number below 10^8, one a byte, the first in the lowest byte.
inline std::uint64_t EightDigits(std::uint32_t number) {
    const std::uint64_t fours = number / 10000 + (std::uint64_t{number % 10000} << 32);
    const std::uint64_t hundreds = ((fours * 10486) >> 20) & 0x0000007F0000007F; // 10486 / 2^20: a hundredth
    const std::uint64_t twos = hundreds + ((fours - hundreds * 100) << 16);
    const std::uint64_t tens = ((twos * 103) >> 10) & 0x000F000F000F000F; // 103 / 2^10: a tenth
    return tens + ((twos - tens * 10) << 8);
}

inline std::uint64_t DigitBytes(std::uint64_t number, float) {
    return EightDigits(static_cast<std::uint32_t>(number)) >> 8;
}

inline Word128 DigitBytes(std::uint64_t number, double) {
    constexpr std::uint64_t Half = 100'000'000;
    const Word128 high = EightDigits(static_cast<std::uint32_t>(number / Half));
    const Word128 low = EightDigits(static_cast<std::uint32_t>(number % Half));
    return (high | (low << 64)) >> 8;
}

// Index of the highest byte that is not 0; 0 where all are.
inline int HighestByte(std::uint64_t word) {
    return (63 - std::countl_zero(word | 1)) / 8;
}

inline int HighestByte(Word128 word) {
    const auto high = static_cast<std::uint64_t>(word >> 64);
    return high != 0 ? 8 + HighestByte(high) : HighestByte(static_cast<std::uint64_t>(word));
}

template <typename Word>
constexpr Word AllZeros() {
    if constexpr (sizeof(Word) == 8)
        return EightZeros;
    else
        return (Word{EightZeros} << 64) | EightZeros;
}

template <typename Word>
inline void Store(char* out, Word word) {
    std::memcpy(out, &word, sizeof word);
}

// Where the digits of a number of a certain decimal exponent go in plain notation. They are stored twice:
// from `first` on for those before the point, from `second` on behind the point.
template <typename Number>
struct Placing {
    std::uint8_t first = 0;
    std::uint8_t second = 0;
    std::uint8_t shift = 0;                                      // bits of the digits before the point
    std::array<std::uint8_t, Form<Number>::Digits + 1> length{}; // by the number of digits in use
};

constexpr int LowestPlain = -4; // decimal exponents below are written with an exponent

template <typename Number>
constexpr Placing<Number> MakePlacing(int exponent) {
    constexpr int WordSize = sizeof(typename Form<Number>::Word);
    Placing<Number> placing;
    const int whole = exponent < 0 ? 0 : exponent + 1;
    const int first = exponent < 0 ? 1 - exponent : 0;
    const int second = exponent < 0 ? first + WordSize : whole; // out of the way when all is behind "0."
    placing.first = static_cast<std::uint8_t>(first);
    placing.second = static_cast<std::uint8_t>(second);
    placing.shift = static_cast<std::uint8_t>(whole * 8);
    for (int digits = 1; digits <= Form<Number>::Digits; ++digits) {
        const int length = exponent < 0 ? first + digits : digits > whole ? digits + 1 : whole;
        placing.length[static_cast<std::size_t>(digits)] = static_cast<std::uint8_t>(length);
    }
    return placing;
}

template <typename Number>
constexpr auto MakePlacings() {
    std::array<Placing<Number>, Form<Number>::Digits - LowestPlain> placings{};
    for (int x = LowestPlain; x < Form<Number>::Digits; ++x)
        placings[static_cast<std::size_t>(x - LowestPlain)] = MakePlacing<Number>(x);
    return placings;
}

template <typename Number>
inline constexpr auto Placings = MakePlacings<Number>();

template <typename Number>
inline char* PutPlain(typename Form<Number>::Word digits, int used, int exponent, char* out) {
    using Word = typename Form<Number>::Word;
    const auto& placing = Placings<Number>[static_cast<std::size_t>(exponent - LowestPlain)];
    const Word behind = ((digits >> placing.shift) << 8) | Word{'.'};
    constexpr std::string_view zeros = "0.000000";
    std::memcpy(out, zeros.data(), zeros.size());
    Store(out + placing.first, digits);
    Store(out + placing.second, behind);
    return out + placing.length[static_cast<std::size_t>(used)];
}

// Exponents from -5 down to -18: all that the exact range has.
template <typename Number>
char* PutWithExponent(typename Form<Number>::Word digits, int used, int exponent, char* out) {
    using Word = typename Form<Number>::Word;
    Store(out, (digits & 0xFF) | ((digits >> 8) << 16) | (Word{'.'} << 8));
    out += used == 1 ? 1 : used + 1;
    const auto size = static_cast<unsigned>(-exponent);
    out[0] = 'e';
    out[1] = '-';
    out[2] = static_cast<char>('0' + size / 10);
    out[3] = static_cast<char>('0' + size % 10);
    return out + 4;
}

// Zero, numbers out of the exact range and what is no finite number; without a sign.
template <typename Number>
[[gnu::noinline]] char* PutUnusual(Number magnitude, char* out) {
    if (magnitude == 0) {
        *out = '0';
        return out + 1;
    }
    return std::to_chars(out, out + GeneralTextRoom - 1, magnitude, std::chars_format::general,
                         Form<Number>::Digits)
        .ptr;
}

template <typename Number>
inline char* Put(Number value, char* out) {
    using F = Form<Number>;
    using Bits = typename F::Bits;
    const Bits bits = std::bit_cast<Bits>(value);
    const Bits exponentBits = (bits << 1) >> (F::MantissaBits + 1);
    const Bits row = exponentBits - Bits{F::FirstBinade + F::ExponentBias};
    *out = '-';
    out += bits >> (sizeof(Bits) * 8 - 1);
    if (row >= Binades<Number>.size() || std::endian::native != std::endian::little) [[unlikely]]
        return PutUnusual(std::abs(value), out);
    constexpr Bits HiddenBit = Bits{1} << F::MantissaBits;
    const Bits mantissa = (bits & (HiddenBit - 1)) | HiddenBit;
    const Binade<Number>& binade = Binades<Number>[row];
    const int more = mantissa >= binade.next ? 1 : 0;
    const int exponent = binade.exponent + more;
    const auto digits = DigitBytes(RoundedDigits<Number>(mantissa, exponent, binade.shift + more), value);
    const int used = HighestByte(digits) + 1;
    const auto characters = digits | AllZeros<typename F::Word>();
    if (exponent < LowestPlain) [[unlikely]]
        return PutWithExponent<Number>(characters, used, exponent, out);
    return PutPlain<Number>(characters, used, exponent, out);
}

} // namespace

char* PutGeneral(double value, char* out) {
    return Put(value, out);
}

char* PutGeneral(float value, char* out) {
    return Put(value, out);
}

char* PutLong(std::int32_t value, char* out) {
    if constexpr (std::endian::native != std::endian::little)
        return std::to_chars(out, out + GeneralTextRoom, value).ptr;
    constexpr std::uint32_t EightDigitsLimit = 100'000'000;
    const auto bits = static_cast<std::uint32_t>(value);
    const std::uint32_t magnitude = value < 0 ? 0 - bits : bits;
    *out = '-';
    out += bits >> 31;
    if (magnitude < EightDigitsLimit) {
        const std::uint64_t digits = EightDigits(magnitude);
        constexpr std::uint64_t LastDigit = std::uint64_t{1} << 56; // keeps one digit of zero
        const int unused = std::countr_zero(digits | LastDigit) / 8;
        Store(out, (digits | EightZeros) >> (unused * 8));
        return out + 8 - unused;
    }
    out = PutLong(static_cast<std::int32_t>(magnitude / EightDigitsLimit), out);
    Store(out, EightDigits(magnitude % EightDigitsLimit) | EightZeros);
    return out + 8;
}

} // namespace tracelet
