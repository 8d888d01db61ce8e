#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace tracelet {

/// What is known of a session when it starts and the files of a recording cannot hold.
struct SessionFacts {
    struct Board {
        std::string name; ///< "" for none in use
        bool isSimulated = false;

        bool operator==(const Board&) const = default;
    };
    struct Channel {             // one a position of the scan
        std::int32_t number = 0; ///< physical
        std::string name;
        std::string unit; ///< of the values; "" for converter codes
        double low = 0.0; ///< range, in the unit of the range
        double high = 0.0;
        std::string rangeUnit;
        std::string wiring;
        std::string thermocouple; ///< its type, "" for none
    };
    struct Line {
        std::int32_t port = 0;
        std::int32_t line = 0;
        std::string name;
    };

    std::string started{};  ///< wall clock with the offset from UTC, ISO 8601
    std::string timeZone{}; ///< name
    bool isPolled = false;
    Board analogBoard{};
    Board digitalBoard{};
    double asked = 0.0; ///< scans a second
    double pacedScans =
        0.0; ///< scans a second that the board reaches; 0 for polled sessions, whose rate comes of the ticks
    std::vector<Channel> channels{};
    std::vector<Line> lines{};
};

/// A time of the system as local time in the form of SessionFacts, and the name of the zone.
[[nodiscard]] std::string WallClock(std::time_t time = std::time(nullptr));
[[nodiscard]] std::string TimeZoneName();
/// The last change of the file at `path` as WallClock; "" where there is none.
[[nodiscard]] std::string ModificationTime(const std::string& path);

/// Samples that were lost between two scans.
struct SampleLoss {
    static constexpr std::int64_t Unknown = -1;

    std::int32_t nextScan = 0; ///< first scan after it, from 0
    std::int64_t scans = 0;    ///< lost, or Unknown
    std::string reason;
};

/// A scan of a polled session that did not come when the even grid behind the mark before it says.
struct TimeMark {
    std::int32_t scan = 0;
    double seconds = 0.0; ///< since the start
};

/// What happened in a session so far.
struct SessionEvents {
    std::vector<SampleLoss> losses;
    std::vector<TimeMark> times;
};

/// The text of a "Session.json"; docs/file-formats.md describes it.
[[nodiscard]] std::string SessionText(const SessionFacts& facts, const SessionEvents& events,
                                      std::int32_t scanCount, double scanInterval);

/// Boards for people to read: "pci-6052e, usb-2 (simulated)"; one of that name once.
[[nodiscard]] std::string BoardsText(const std::vector<SessionFacts::Board>& boards);

/// What such a text tells of its recording; empty and 0 for what it does not tell, or is no such text.
struct SessionSummary {
    std::string started;
    std::string boot;                        ///< BootId of the system that recorded
    double scansPerSecond = 0.0;             ///< reached, else asked
    std::vector<SessionFacts::Board> boards; ///< the analog one first
    std::vector<SampleLoss> losses;          ///< those that are well told
};
[[nodiscard]] SessionSummary ReadSessionSummary(const std::string& text);

/// All of the file at `path`; "" where it cannot be read or is too long for a session's.
[[nodiscard]] std::string SessionTextOf(const std::string& path);

} // namespace tracelet
