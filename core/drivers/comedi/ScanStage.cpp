#include "core/drivers/comedi/ScanStage.h"

#include <algorithm>
#include <cstring>

namespace tracelet {
namespace {

constexpr std::size_t StageBytes = std::size_t{1} << 16;

} // namespace

ScanStage::ScanStage(std::size_t samplesOfScan, std::size_t bytesOfSample)
    : scanSamples(samplesOfScan), sampleBytes(bytesOfSample),
      bytes(std::max(StageBytes, 2 * samplesOfScan * bytesOfSample)) {}

std::span<std::byte> ScanStage::Room() {
    std::copy(bytes.data() + begin, bytes.data() + end, bytes.data());
    end -= begin;
    begin = 0;
    return std::span(bytes).subspan(end);
}

void ScanStage::Commit(std::size_t count) {
    end += count;
}

void ScanStage::DropPartialScan() {
    end = begin + Ready() * sampleBytes;
}

std::size_t ScanStage::Ready() const {
    const std::size_t since = position + (end - begin) / sampleBytes; // samples since the scan's first one
    return since / scanSamples * scanSamples - std::min(position, since / scanSamples * scanSamples);
}

std::uint32_t ScanStage::Take() {
    std::uint32_t code = 0;
    if (sampleBytes == sizeof(std::uint16_t)) {
        std::uint16_t narrow = 0;
        std::memcpy(&narrow, bytes.data() + begin, sizeof narrow);
        code = narrow;
    } else {
        std::memcpy(&code, bytes.data() + begin, sizeof code);
    }
    begin += sampleBytes;
    position = (position + 1) % scanSamples;
    return code;
}

} // namespace tracelet
