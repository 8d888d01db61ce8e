#include "core/base/LittleEndian.h"
#include "core/recordings/RecordingReader.h"
#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>

namespace tracelet {
namespace {

// The head of the input says how the rest, the file, is read.
struct Request {
    std::int32_t channelCount;
    std::int32_t scansPerTick;
    std::int32_t firstScan;
};
constexpr std::size_t RequestSize = 12;

template <typename T>
void Read(const SystemFile& file, const Request& request) {
    DataBlock<T> block;
    const std::int64_t wanted = std::int64_t{request.channelCount} * request.scansPerTick;
    const std::int64_t offset = AnalogOffset(request.firstScan, request.channelCount);
    const std::int64_t read = block.Read(file, offset, wanted);
    const std::int64_t left = offset < 0 ? 0 : std::max<std::int64_t>(0, file.Size() - offset);
    const std::int64_t expected = wanted <= 0 ? 0 : std::min((left + 3) / 4, wanted) * 4;
    Require(read == std::min(left, expected), "a read gives what is there, up to what was asked for");
    Require(static_cast<std::int64_t>(block.Values().size()) == read / 4, "whole values only");
    Require(BytesFrom(file, offset) == left, "what is left is known");
}

} // namespace

std::vector<std::string> FuzzSeeds() {
    using namespace std::string_literals;
    const auto samples = "\0\0\x80\x3F\0\0\0\x40\0\0\x40\x40\0\0\x80\x40"s;
    return {"\x01\0\0\0\x02\0\0\0\0\0\0\0"s + samples, "\x02\0\0\0\x02\0\0\0\x01\0\0\0"s + samples,
            "\x03\0\0\0\x01\0\0\0\0\0\0\0"s + samples + "\x01\x02"s};
}

} // namespace tracelet

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tracelet;
    const auto bytes = std::as_bytes(std::span(data, size));
    if (bytes.size() < RequestSize)
        return 0;
    const Request request{.channelCount = ReadLittleEndian<std::int32_t>(bytes, 0) & 0xFFFF,
                          .scansPerTick = ReadLittleEndian<std::int32_t>(bytes, 4),
                          .firstScan = ReadLittleEndian<std::int32_t>(bytes, 8)};
    const SystemFile file(FileInMemory(bytes.subspan(RequestSize)), Disposition::OpenExisting);
    Read<float>(file, request);
    Read<std::int32_t>(file, request);
    return 0;
}
