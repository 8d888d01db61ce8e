#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tracelet {

/// Makes scans of what a microcontroller prints: a line of numbers each, apart by blanks, tabs, commas or
/// semicolons, with or without names before them ("21.5, 40", "temp=21.5 hum=40", "temp: 21.5"). A named
/// value belongs to the channel that its name had first, any other to the channel at its place in the line.
///
/// Bytes may come in any portions. A line with anything else in it is skipped and counted. So is one of which
/// a part may have been lost: it has another number of nameless values than those before, until eight such
/// came in a row, or a name that fewer than three lines had.
class NumberLines {
public:
    static constexpr std::size_t MostChannels = 16;
    static constexpr std::size_t LongestLine = 1024; ///< bytes

    /// A scan: NaN where a channel has no value ("1,,3", "nan", a name that is not in this line).
    using Scan = std::vector<double>;

    /// Takes bytes as they came. The first line counts from its start on only when `isStart` is told: in the
    /// middle of a stream it may be the rest of one.
    explicit NumberLines(bool isStart = false) : isWhole(isStart) {}
    void Put(std::string_view bytes);

    /// The newest scan since the last call, if any came.
    [[nodiscard]] std::optional<Scan> Take();

    [[nodiscard]] std::int64_t Good() const { return good; }       ///< lines that became scans
    [[nodiscard]] std::int64_t Skipped() const { return skipped; } ///< lines that did not

private:
    struct Value {
        std::string name;
        double number = 0.0;
    };

    [[nodiscard]] static std::optional<std::vector<Value>> Parsed(std::string_view line);
    void PutLine(std::string_view line);
    [[nodiscard]] bool IsOfUsualLength(std::size_t nameless);
    [[nodiscard]] bool AreNamesKnown(const std::vector<Value>& values);
    [[nodiscard]] Scan ScanOf(const std::vector<Value>& values) const;

    std::string open;                     // the line that has no end yet
    bool isWhole = false;                 // it came from its start on
    std::vector<std::string> names;       // by channel
    std::map<std::string, int> sightings; // of other names
    std::size_t usual = 0;                // nameless values of a line; 0 before the first
    std::size_t other = 0;                // of the last lines that had another number
    int others = 0;                       // how many such came in a row
    std::optional<Scan> newest;
    std::int64_t good = 0;
    std::int64_t skipped = 0;
};

} // namespace tracelet
