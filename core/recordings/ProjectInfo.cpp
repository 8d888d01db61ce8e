#include "core/recordings/ProjectInfo.h"

#include "core/base/LittleEndian.h"
#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"

#include <array>
#include <cmath>
#include <span>

namespace tracelet {
namespace {

using Bytes = std::vector<std::byte>;

constexpr std::int16_t True = -1;
constexpr std::uint8_t TrueByte = 255;
constexpr std::int64_t SmallestPlotRecord = 4 + 4 + 1; // colour, style and the 0 of an empty name

void AppendBoolean(Bytes& bytes, bool value) {
    AppendLittleEndian(bytes, value ? True : std::int16_t{0});
}

void AppendText(Bytes& bytes, std::string_view text) {
    const auto raw = std::as_bytes(std::span(text));
    bytes.insert(bytes.end(), raw.begin(), raw.end());
}

void AppendZstring(Bytes& bytes, std::string_view text) {
    AppendText(bytes, text.substr(0, text.find('\0')));
    bytes.push_back(std::byte{0});
}

void AppendPlots(Bytes& bytes, const std::vector<PlotRecord>& plots, std::int32_t count) {
    if (static_cast<std::int64_t>(plots.size()) != count)
        throw Fault::SubscriptOutOfRange();
    for (const PlotRecord& plot : plots) {
        AppendLittleEndian(bytes, plot.PlotColor);
        AppendLittleEndian(bytes, plot.PlotLineStyle);
        AppendZstring(bytes, plot.PlotName);
    }
}

void AppendAnalogSection(Bytes& bytes, const ProjectInfo& info) {
    AppendPlots(bytes, info.aiPlots, info.nHisAIChanCount);
    AppendLittleEndian(bytes, info.nHisAIMaxChanNum());
    for (const std::uint8_t isThermo : info.HisAIChanIsThermo)
        AppendLittleEndian(bytes, isThermo != 0 ? TrueByte : std::uint8_t{0});
}

void AppendDigitalSection(Bytes& bytes, const ProjectInfo& info) {
    AppendPlots(bytes, info.diPlots, info.nHisDIChanCount);
    AppendLittleEndian(bytes, info.nHisDIMaxPortCount());
    for (const std::uint8_t mask : info.HisDIPortMask)
        AppendLittleEndian(bytes, mask);
}

bool ReadBoolean(ByteReader& reader) {
    return reader.Get<std::int16_t>() != 0;
}

// Checked before anything is sized by it.
std::size_t CheckedCount(const ByteReader& reader, std::int32_t count, std::int32_t most,
                         std::int64_t smallestSize, const char* what) {
    if (count < 1)
        throw Fault::SubscriptOutOfRange();
    if (count > most || count * smallestSize > reader.Remaining())
        throw RunTimeError("The project file cannot hold " + NumberText(count) + " " + what);
    return static_cast<std::size_t>(count);
}

std::vector<PlotRecord> ReadPlots(ByteReader& reader, std::int32_t count, const char* what) {
    std::vector<PlotRecord> plots(
        CheckedCount(reader, count, ProjectInfo::MostPlots, SmallestPlotRecord, what));
    std::size_t named = 0;
    for (PlotRecord& plot : plots) {
        plot.PlotColor = reader.Get<std::int32_t>();
        plot.PlotLineStyle = reader.Get<std::int32_t>();
        plot.PlotName = reader.Readsz();
        named += plot.PlotName.size();
        if (named > ProjectInfo::MostNameBytes)
            throw RunTimeError("Names too long in file");
    }
    return plots;
}

std::vector<std::uint8_t> ReadCountedBytes(ByteReader& reader, const char* what) {
    const auto count = reader.Get<std::int32_t>();
    std::vector<std::uint8_t> bytes(CheckedCount(reader, count, ProjectInfo::MostChannels, 1, what));
    reader.GetBytes(std::as_writable_bytes(std::span(bytes)));
    return bytes;
}

void ReadFlagsAndCounts(ByteReader& reader, ProjectInfo& info) {
    info.bHisAI = ReadBoolean(reader);
    info.bHisDI = ReadBoolean(reader);
    info.bHisAISoft = ReadBoolean(reader);
    info.bHisAIAnalog = ReadBoolean(reader);
    const auto aiCount = reader.Get<std::int32_t>();
    const auto diCount = reader.Get<std::int32_t>();
    info.nHisAIChanCount = info.bHisAI ? aiCount : 0;
    info.nHisDIChanCount = info.bHisDI ? diCount : 0;
}

void ReadStopRecord(ByteReader& reader, ProjectInfo& info) {
    info.ScanCount = reader.Get<std::int32_t>();
    info.ScanInterval = reader.Get<double>();
    if (info.ScanCount < 0)
        throw RunTimeError("The project file has a scan count of " + NumberText(info.ScanCount));
    if (!(info.ScanInterval >= 0.0 && std::isfinite(info.ScanInterval)))
        throw RunTimeError("The project file has a scan interval of " + NumberText(info.ScanInterval));
}

// Only then may what could not be read be a project at all.
bool BeginsWithFlags(const SystemFile& file) {
    std::array<std::byte, 8> flags; // four Booleans
    const std::size_t count = file.ReadAt(0, flags);
    for (std::size_t at = 0; at + 1 < count; at += 2) {
        const auto flag = ReadLittleEndian<std::int16_t>(flags, at);
        if (flag != 0 && flag != True)
            return false;
    }
    return true;
}

} // namespace

std::vector<std::byte> ProjectHeader(const ProjectInfo& info) {
    Bytes bytes;
    AppendBoolean(bytes, info.bHisAI);
    AppendBoolean(bytes, info.bHisDI);
    AppendBoolean(bytes, info.bHisAISoft);
    AppendBoolean(bytes, info.bHisAIAnalog);
    AppendLittleEndian(bytes, info.nHisAIChanCount);
    AppendLittleEndian(bytes, info.nHisDIChanCount);
    if (info.bHisAI)
        AppendAnalogSection(bytes, info);
    if (info.bHisDI)
        AppendDigitalSection(bytes, info);
    return bytes;
}

std::vector<std::byte> StopRecord(std::int32_t ScanCount, double ScanInterval) {
    Bytes bytes;
    AppendLittleEndian(bytes, ScanCount);
    AppendLittleEndian(bytes, ScanInterval);
    return bytes;
}

std::vector<std::byte> SavedPaths(std::string_view AIDataPath, std::string_view DIDataPath) {
    Bytes bytes;
    AppendZstring(bytes, AIDataPath);
    AppendText(bytes, DIDataPath);
    return bytes;
}

ProjectInfo ReadProjectHeader(ByteReader& reader) {
    ProjectInfo info;
    ReadFlagsAndCounts(reader, info);
    if (info.bHisAI) {
        info.aiPlots = ReadPlots(reader, info.nHisAIChanCount, "analog plots");
        info.HisAIChanIsThermo = ReadCountedBytes(reader, "analog channels");
    }
    if (info.bHisDI) {
        info.diPlots = ReadPlots(reader, info.nHisDIChanCount, "digital plots");
        info.HisDIPortMask = ReadCountedBytes(reader, "digital ports");
    }
    return info;
}

ProjectInfo ReadProject(ByteReader& reader) {
    ProjectInfo info = ReadProjectHeader(reader);
    ReadStopRecord(reader, info);
    info.AIDataPath = reader.Readsz();
    info.DIDataPath = reader.Readsz();
    return info;
}

ProjectInfo ReadProjectFile(std::string_view path) {
    const SystemFile file(path, Disposition::OpenExisting);
    ByteReader reader(file);
    try {
        return ReadProject(reader);
    } catch (const RunTimeError&) {
        if (BeginsWithFlags(file))
            throw;
        throw RunTimeError("The file is not a Tracelet project");
    }
}

} // namespace tracelet
