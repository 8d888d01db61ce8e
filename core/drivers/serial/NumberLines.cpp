#include "core/drivers/serial/NumberLines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace tracelet {
namespace {

constexpr int LinesThatConvince = 8; // of another length than those before
constexpr int SightingsOfAName = 3;
constexpr std::size_t MostNames = 256; // those beyond the channels are known, but have none
constexpr double Absent = std::numeric_limits<double>::quiet_NaN();

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
bool IsSeparator(char c) {
    return c == ',' || c == ';' || c == '\t';
}
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsOfName(char c) {
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '/';
}

/// Reads a line from the left.
class Cursor {
public:
    explicit Cursor(std::string_view line) : rest(line) {}

    [[nodiscard]] bool AtEnd() const { return rest.empty(); }
    [[nodiscard]] char Next() const { return rest.empty() ? '\0' : rest.front(); }
    void SkipBlanks() {
        while (Next() == ' ')
            rest.remove_prefix(1);
    }
    bool Skip(char c) {
        if (Next() != c || rest.empty())
            return false;
        rest.remove_prefix(1);
        return true;
    }
    std::string_view Name() {
        const auto end = std::ranges::find_if_not(rest, IsOfName);
        const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        rest.remove_prefix(name.size());
        return name;
    }
    // A number that a blank, a separator or the line's end follows.
    std::optional<double> Number() {
        std::string_view digits = rest;
        if (digits.starts_with('+') && digits.size() > 1 && digits[1] != '-')
            digits.remove_prefix(1);
        double value = 0.0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        const std::string_view behind = digits.substr(static_cast<std::size_t>(end - digits.data()));
        if (error != std::errc() || (!behind.empty() && !IsBlank(behind[0]) && !IsSeparator(behind[0])))
            return {};
        rest = behind;
        return std::isfinite(value) ? value : Absent;
    }

private:
    std::string_view rest;
};

} // namespace

// value := [name [blanks] ['=' | ':'] [blanks]] number; where commas, semicolons or tabs stand, there may be
// nothing between two of them.
std::optional<std::vector<NumberLines::Value>> NumberLines::Parsed(std::string_view line) {
    const bool isSeparated = std::ranges::any_of(line, IsSeparator);
    std::vector<Value> values;
    Cursor cursor(line);
    for (cursor.SkipBlanks(); !cursor.AtEnd() || isSeparated; cursor.SkipBlanks()) {
        Value value{{}, Absent};
        if (isSeparated && (cursor.AtEnd() || IsSeparator(cursor.Next()))) {
            values.push_back(value);
        } else {
            Cursor named = cursor;
            std::optional<double> number = cursor.Number(); // "nan" is one
            if (!number && IsLetter(named.Next())) {
                value.name = named.Name();
                named.SkipBlanks();
                if (!named.Skip('='))
                    (void)named.Skip(':');
                named.SkipBlanks();
                number = named.Number();
                cursor = named;
            }
            if (!number)
                return {};
            value.number = *number;
            values.push_back(std::move(value));
        }
        cursor.SkipBlanks();
        if (!isSeparated)
            continue;
        if (cursor.AtEnd())
            break;
        if (!cursor.Skip(',') && !cursor.Skip(';') && !cursor.Skip('\t'))
            return {};
    }
    if (values.empty() || values.size() > MostChannels)
        return {};
    return values;
}

void NumberLines::Put(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = std::min(bytes.find_first_of("\r\n"), bytes.size());
        if (open.size() + length > LongestLine)
            isWhole = false;
        else if (isWhole)
            open.append(bytes.substr(0, length));
        bytes.remove_prefix(length);
        if (bytes.empty())
            return;
        bytes.remove_prefix(1); // the line's end
        if (!isWhole)
            ++skipped;
        else if (!open.empty())
            PutLine(open);
        open.clear();
        isWhole = true;
    }
}

void NumberLines::PutLine(std::string_view line) {
    const auto values = Parsed(line);
    if (!values || !AreNamesKnown(*values) ||
        !IsOfUsualLength(
            static_cast<std::size_t>(std::ranges::count(*values, std::string(), &Value::name)))) {
        ++skipped;
        return;
    }
    newest = ScanOf(*values);
    ++good;
}

NumberLines::Scan NumberLines::ScanOf(const std::vector<Value>& values) const {
    Scan scan(MostChannels, Absent);
    for (std::size_t place = 0; place < values.size(); ++place) {
        const Value& value = values[place];
        const auto channel =
            value.name.empty()
                ? place
                : static_cast<std::size_t>(std::ranges::find(names, value.name) - names.begin());
        if (channel < MostChannels) // names beyond the last channel have none
            scan[channel] = value.number;
    }
    return scan;
}

bool NumberLines::IsOfUsualLength(std::size_t nameless) {
    if (usual == nameless || (usual == 0 && good == 0)) {
        usual = nameless;
        others = 0;
        return true;
    }
    others = nameless == other ? others + 1 : 1;
    other = nameless;
    if (others < LinesThatConvince)
        return false;
    usual = nameless;
    others = 0;
    return true;
}

bool NumberLines::AreNamesKnown(const std::vector<Value>& values) {
    constexpr std::size_t MostSightings = 64; // noise makes names without end
    bool areKnown = true;
    for (const Value& value : values) {
        if (value.name.empty() || std::ranges::find(names, value.name) != names.end())
            continue;
        if (sightings.size() >= MostSightings)
            sightings.clear();
        if (++sightings[value.name] < SightingsOfAName) {
            areKnown = false;
            continue;
        }
        sightings.erase(value.name);
        if (names.size() < MostNames)
            names.push_back(value.name);
    }
    return areKnown;
}

std::optional<NumberLines::Scan> NumberLines::Take() {
    return std::exchange(newest, std::nullopt);
}

} // namespace tracelet
