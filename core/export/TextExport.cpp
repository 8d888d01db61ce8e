#include "core/export/TextExport.h"

#include "core/base/Convert.h"
#include "core/base/LittleEndian.h"
#include "core/export/GeneralText.h"
#include "core/recordings/RecordingReader.h"

#include <algorithm>
#include <string_view>

namespace tracelet {
namespace {

constexpr std::size_t SampleBytes = 4;
constexpr std::size_t DigitalBlockBytes = 65536; // about; blocks are whole samples, at least one
constexpr int LinesOfPort = 8;

// The running sum behind the time column.
struct Clock {
    double interval;
    double seconds = 0.0;

    double Next() { return seconds += interval; }
};

char* PutText(std::string_view text, char* out) {
    return std::copy(text.begin(), text.end(), out);
}

char* PutTime(double seconds, char* out) {
    *out++ = '\r';
    *out++ = '\n';
    return PutGeneral(seconds, out);
}

void PutHeader(TextFile& file, const std::vector<std::string>& columns) {
    std::string header = "Time";
    for (const std::string& column : columns)
        header.append(1, '\t').append(column);
    file.EndLine(PutText(header, file.Line(header.size())));
}

double Fraction(std::int64_t done, std::int64_t whole) {
    return done < whole ? static_cast<double>(done) / static_cast<double>(whole) : 1.0;
}

char* PutSample(float value, char* out) {
    return PutGeneral(value, out);
}
char* PutSample(std::int32_t code, char* out) {
    return PutLong(code, out);
}

template <typename Sample>
void PutScans(TextFile& file, std::span<const std::byte> scans, std::size_t channelCount, Clock& clock) {
    const std::size_t scanBytes = channelCount * SampleBytes;
    const std::size_t longestLine = (channelCount + 1) * GeneralTextRoom;
    for (std::size_t at = 0; at < scans.size(); at += scanBytes) {
        char* out = PutTime(clock.Next(), file.Line(longestLine));
        for (std::size_t sample = at; sample < at + scanBytes; sample += SampleBytes) {
            *out++ = '\t';
            out = PutSample(ReadLittleEndian<Sample>(scans, sample), out);
        }
        file.EndLine(out);
    }
}

// Where a line stands in the bytes of a sample.
struct DigitalLine {
    std::size_t port; // counted from the first one
    int bit;
};

std::vector<std::string> ColumnNames(const std::vector<std::int32_t>& lines) {
    std::vector<std::string> names;
    names.reserve(lines.size());
    for (const std::int32_t line : lines)
        names.push_back(std::to_string(line / LinesOfPort) + ":" + std::to_string(line % LinesOfPort));
    return names;
}

std::vector<DigitalLine> Places(const std::vector<std::int32_t>& lines, std::int32_t portStart) {
    std::vector<DigitalLine> places;
    places.reserve(lines.size());
    for (const std::int32_t line : lines)
        places.push_back({static_cast<std::size_t>(line / LinesOfPort - portStart), line % LinesOfPort});
    return places;
}

void PutDigitalSample(TextFile& file, std::span<const std::byte> ports, const std::vector<DigitalLine>& lines,
                      double seconds) {
    char* out = PutTime(seconds, file.Line(GeneralTextRoom + 2 * lines.size()));
    for (const DigitalLine& line : lines) {
        *out++ = '\t';
        *out++ = static_cast<char>('0' + (std::to_integer<int>(ports[line.port]) >> line.bit & 1));
    }
    file.EndLine(out);
}

} // namespace

std::int32_t ScansOfBlock(std::size_t bytesRead, std::int64_t channelCount) {
    const double samples = static_cast<double>(bytesRead) / static_cast<double>(SampleBytes);
    const std::int32_t last = CLng(Quotient(samples, static_cast<double>(channelCount)) - 2.0);
    return std::max(last + 1, 0);
}

void WriteAnalogText(TextFile& file, const AnalogRecording& recording, const ReadBytes& read,
                     const Progress& progress) {
    PutHeader(file, recording.plotNames);
    const std::size_t channels = recording.plotNames.size();
    Clock clock{recording.scanInterval};
    std::vector<std::byte> block(AnalogBlockBytes);
    std::int64_t offset = 0;
    std::size_t bytesRead = 0;
    do {
        bytesRead = read(offset, block);
        const auto scans =
            static_cast<std::size_t>(ScansOfBlock(bytesRead, static_cast<std::int64_t>(channels)));
        const auto exported = std::span<const std::byte>(block).first(scans * channels * SampleBytes);
        if (recording.isAnalog)
            PutScans<float>(file, exported, channels, clock);
        else
            PutScans<std::int32_t>(file, exported, channels, clock);
        offset += static_cast<std::int64_t>(bytesRead);
        progress(Fraction(offset, recording.dataBytes));
    } while (bytesRead == AnalogBlockBytes);
}

void WriteDigitalText(TextFile& file, const DigitalRecording& recording, const ReadBytes& read,
                      const Progress& progress) {
    PutHeader(file, ColumnNames(recording.lines));
    if (recording.portCount < 1)
        return; // samples without a byte: the file has ended before the first
    const std::vector<DigitalLine> lines = Places(recording.lines, recording.portStart);
    const auto sampleBytes = static_cast<std::size_t>(recording.portCount);
    std::vector<std::byte> block(std::max<std::size_t>(DigitalBlockBytes / sampleBytes, 1) * sampleBytes);
    Clock clock{recording.scanInterval};
    std::int64_t done = 0;
    while (done < recording.scanCount) {
        const std::int64_t offset = DigitalOffset(done, recording.portCount);
        const std::size_t bytesRead = read(offset, block);
        const std::size_t whole = bytesRead / sampleBytes;
        const auto samples = std::min(whole, static_cast<std::size_t>(recording.scanCount - done));
        for (std::size_t i = 0; i < samples; ++i)
            PutDigitalSample(file, std::span<const std::byte>(block).subspan(i * sampleBytes, sampleBytes),
                             lines, clock.Next());
        done += static_cast<std::int64_t>(samples);
        progress(Fraction(done, recording.scanCount));
        if (bytesRead < block.size())
            break;
    }
}

} // namespace tracelet
