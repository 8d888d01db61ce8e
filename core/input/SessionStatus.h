#pragma once

#include "core/recordings/SessionFile.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace tracelet {

/// What a session did not get.
struct LossCounts {
    std::int32_t scans = 0;    ///< not read, or not written
    std::int32_t overruns = 0; ///< of unknown length
    std::int32_t ticks = 0;    ///< that the machine was too busy for

    [[nodiscard]] bool Any() const { return scans > 0 || overruns > 0 || ticks > 0; }
    bool operator==(const LossCounts&) const = default;
};

/// The counts of a recording's losses.
[[nodiscard]] LossCounts CountsOf(const std::vector<SampleLoss>& losses);

/// The pace at which scans came lately.
class RateMeter {
public:
    /// So many scans had come `seconds` after the start. Neither goes back.
    void Add(double seconds, std::int64_t scans);
    /// Scans a second over the last ten seconds or, where they are rarer, between the last two times that any
    /// came; 0 before the second.
    [[nodiscard]] double ScansPerSecond() const;

private:
    struct Mark {
        double seconds = 0.0;
        std::int64_t scans = 0;
    };
    std::deque<Mark> marks;
};

/// What a program that measures or plays tells of itself. Times are seconds, rates scans a second; what is 0
/// or empty is not told.
struct SessionStatus {
    enum class Doing { Ready, Running, Recording, Open, Playing, Paused };

    Doing doing = Doing::Ready;
    std::string recorded;                    ///< the only input that is, where there are two
    std::string recording;                   ///< name of the one that is open
    std::vector<SessionFacts::Board> boards; ///< in use
    double time = 0.0;                       ///< since the start
    double length = 0.0;                     ///< of the recording that is open
    std::int32_t scans = 0;
    double asked = 0.0;
    double reached = 0.0;
    std::int64_t bytes = 0; ///< on the disk
    double diskLasts = 0.0; ///< at the pace so far
    std::string fault;      ///< why nothing is recorded, though it should be
    LossCounts losses;
    double lastLoss = -1.0; ///< since the start; below 0 for unknown
    bool isUnsaved = false;
};

/// A part of the line that tells it, in the order of the line. `brief` takes the place of `text` where the
/// line is short: the higher the rank, the sooner.
struct StatusField {
    enum class Tone { Plain, Recording, Warning };

    std::string text;
    std::string brief;
    int rank = 0; ///< 0 is always told whole
    Tone tone = Tone::Plain;

    bool operator==(const StatusField&) const = default;
};
[[nodiscard]] std::vector<StatusField> StatusFields(const SessionStatus& status);

/// Makes fields brief until the line fits into `room`; `width` tells how wide a text is, and fields stand
/// `gap` apart. Those of which nothing is left are taken out.
void Shorten(std::vector<StatusField>& fields, int room, int gap,
             const std::function<int(const std::string&)>& width);

} // namespace tracelet
