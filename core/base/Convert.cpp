#include "core/base/Convert.h"

#include "core/base/RunTimeError.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace tracelet {
namespace {

constexpr double LowestLong = std::numeric_limits<std::int32_t>::min();
constexpr double HighestLong = std::numeric_limits<std::int32_t>::max();

std::int32_t CheckedLong(double integral) {
    if (!(integral >= LowestLong && integral <= HighestLong))
        throw Fault::Overflow();
    return static_cast<std::int32_t>(integral);
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

// Takes the digits at the head of `text` over to `out`, leaving out commas behind a digit when allowed.
bool TakeDigits(std::string_view& text, std::string& out, bool commas) {
    bool any = false;
    while (!text.empty() && (IsDigit(text.front()) || (commas && any && text.front() == ','))) {
        if (text.front() != ',')
            out += text.front();
        any = true;
        text.remove_prefix(1);
    }
    return any;
}

bool TakeSign(std::string_view& text, std::string& out) {
    if (text.empty() || (text.front() != '-' && text.front() != '+'))
        return false;
    if (text.front() == '-')
        out += '-';
    text.remove_prefix(1);
    return true;
}

void TakeExponent(std::string_view& text, std::string& out) {
    constexpr std::string_view Marks = "eEdD";
    if (text.empty() || Marks.find(text.front()) == std::string_view::npos)
        return;
    text.remove_prefix(1);
    out += 'e';
    TakeSign(text, out);
    if (!TakeDigits(text, out, false))
        throw Fault::TypeMismatch();
}

// The number in the form that from_chars reads; "Type mismatch" when `text` is none.
std::string Normalized(std::string_view text) {
    std::string out;
    text = Trimmed(text);
    TakeSign(text, out);
    text = Trimmed(text);
    bool digits = TakeDigits(text, out, true);
    if (!digits)
        out += '0';
    if (!text.empty() && text.front() == '.') {
        out += '.';
        text.remove_prefix(1);
        digits = TakeDigits(text, out, false) || digits;
    }
    if (!digits)
        throw Fault::TypeMismatch();
    TakeExponent(text, out);
    if (!text.empty())
        throw Fault::TypeMismatch();
    return out;
}

bool ExponentIsNegative(const std::string& number) {
    return number.find("e-") != std::string::npos;
}

} // namespace

std::int32_t CLng(double value) {
    return CheckedLong(std::nearbyint(value));
}

std::int32_t Int(double value) {
    return CheckedLong(std::floor(value));
}

std::int32_t SumOrHighest(std::int32_t a, std::int32_t b) {
    const std::int64_t sum = std::int64_t{a} + b;
    return static_cast<std::int32_t>(std::min<std::int64_t>(sum, std::numeric_limits<std::int32_t>::max()));
}

double Quotient(double dividend, double divisor) {
    if (divisor == 0.0)
        throw dividend == 0.0 ? Fault::Overflow() : Fault::DivisionByZero();
    return dividend / divisor;
}

std::int32_t Mod(std::int32_t dividend, std::int32_t divisor) {
    if (divisor == 0)
        throw Fault::DivisionByZero();
    return divisor == -1 ? 0 : dividend % divisor;
}

double TextToDouble(std::string_view text) {
    const std::string number = Normalized(text);
    double value = 0.0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        if (ExponentIsNegative(number))
            return 0.0;
        throw Fault::Overflow();
    }
    return value;
}

std::int32_t TextToLong(std::string_view text) {
    return CLng(TextToDouble(text));
}

} // namespace tracelet
