#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tracelet {

/// Holds what was read from a driver until it is handed over, so that a scan is handed over only once all of
/// it has come: then whatever the driver loses, it is whole scans behind the samples handed over.
class ScanStage {
public:
    /// A stage for scans of so many samples of 2 or 4 bytes each.
    ScanStage(std::size_t scanSamples, std::size_t sampleBytes);

    /// Where the driver's bytes go; Commit tells how many came.
    [[nodiscard]] std::span<std::byte> Room();
    void Commit(std::size_t bytes);
    /// Forgets the scan that has not come as a whole.
    void DropPartialScan();

    /// Samples that can be taken.
    [[nodiscard]] std::size_t Ready() const;
    /// Scan position of the sample that is taken next.
    [[nodiscard]] std::size_t Position() const { return position; }
    /// Takes the next code; only while Ready is above 0.
    [[nodiscard]] std::uint32_t Take();

private:
    const std::size_t scanSamples;
    const std::size_t sampleBytes;
    std::vector<std::byte> bytes;
    std::size_t begin = 0;    // of the bytes not taken yet
    std::size_t end = 0;      // of the bytes that came
    std::size_t position = 0; // in the scan
};

} // namespace tracelet
