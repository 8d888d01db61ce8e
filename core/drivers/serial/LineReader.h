#pragma once

#include "core/base/LooseThread.h"
#include "core/drivers/serial/NumberLines.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace tracelet {

/// Where lines of numbers come from.
struct LineSource {
    std::string address;   ///< native path of a serial line, or "tcp:HOST:PORT"
    std::int32_t baud = 0; ///< of a serial line; 0 to find it
};

/// Reads a source on a thread of its own, from now until it goes, and keeps the newest scan. A rate that is
/// not known is found by trying: the first one that gives two lines of numbers. A source that goes is opened
/// again as soon as it is back.
class LineReader {
public:
    explicit LineReader(LineSource source);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    /// The newest scan. Raises with a text for the user where the source cannot be opened, is gone, or has
    /// sent nothing for two seconds or for three times as long as its lines lie apart.
    [[nodiscard]] NumberLines::Scan Newest() const;

    [[nodiscard]] std::int64_t Skipped() const; ///< lines that were no scans, since the source was opened
    [[nodiscard]] std::int32_t Baud() const;    ///< that the source was read at last; 0 for none yet

private:
    struct State;

    std::shared_ptr<State> state; // the thread's too
    LooseThread thread;
};

} // namespace tracelet
