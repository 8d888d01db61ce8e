#include "core/base/RunTimeError.h"
#include "core/recordings/RecordingReader.h"
#include "tests/fuzz/FuzzTarget.h"

namespace tracelet {
namespace {

// Plays the file from its first sample, so many scans a tick, until a short read.
void Play(const SystemFile& file, const DigitalHeader& header, std::int64_t scansPerTick) {
    DataBlock<std::uint8_t> block;
    const std::int64_t wanted = header.nHisDIPortCount * scansPerTick;
    std::int64_t scan = 0;
    std::int64_t total = 0;
    do {
        total += block.Read(file, DigitalOffset(scan, header.nHisDIPortCount), wanted);
        scan += scansPerTick;
        Require(static_cast<std::int64_t>(block.Values().size()) == block.BytesRead(),
                "every byte is a value");
    } while (block.BytesRead() == wanted);
    Require(total == file.Size() - DigitalHeaderSize, "every byte behind the header is played once");
}

} // namespace

std::vector<std::string> FuzzSeeds() {
    using namespace std::string_literals;
    return {"\0\0\0\0\x01\0\0\0\x01\x02\x03\x04"s, "\x02\0\0\0\x03\0\0\0\x01\x02\x03\x04\x05\x06\x07"s,
            "\0\0\0\0\x0C\0\0\0"s + std::string(120, '\x55')};
}

} // namespace tracelet

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tracelet;
    const SystemFile file(FileInMemory(std::as_bytes(std::span(data, size))), Disposition::OpenExisting);
    try {
        const DigitalHeader header = ReadDigitalHeader(file);
        Require(header.nHisDIPortStart >= 0 && header.nHisDIPortCount >= 1, "possible ports");
        for (const std::int64_t scansPerTick : {1, 2, 1000, 200'000'000})
            Play(file, header, scansPerTick);
    } catch (const RunTimeError& error) {
        Require(*error.what() != '\0', "an error has a description");
    }
    return 0;
}
