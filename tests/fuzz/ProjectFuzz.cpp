#include "core/base/RunTimeError.h"
#include "core/recordings/ProjectInfo.h"
#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>

namespace tracelet {
namespace {

std::string AsText(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string Written(const ProjectInfo& info) {
    return AsText(ProjectHeader(info)) + AsText(StopRecord(info.ScanCount, info.ScanInterval)) +
           AsText(SavedPaths(info.AIDataPath, info.DIDataPath));
}

ProjectInfo Read(std::string_view bytes) {
    ByteReader reader(std::as_bytes(std::span(bytes)));
    return ReadProject(reader);
}

void RequireCounts(const ProjectInfo& info) {
    Require(static_cast<std::int64_t>(info.aiPlots.size()) == info.nHisAIChanCount,
            "one record an analog plot");
    Require(static_cast<std::int64_t>(info.diPlots.size()) == info.nHisDIChanCount,
            "one record a digital plot");
    Require(info.nHisAIMaxChanNum() <= ProjectInfo::MostChannels, "a possible channel count");
    Require(info.nHisDIMaxPortCount() <= ProjectInfo::MostChannels, "a possible port count");
    Require(info.ScanCount >= 0 && info.ScanInterval >= 0.0, "a possible length");
}

} // namespace

std::vector<std::string> FuzzSeeds() {
    ProjectInfo info{.bHisAI = true,
                     .bHisDI = true,
                     .bHisAISoft = true,
                     .bHisAIAnalog = true,
                     .nHisAIChanCount = 2,
                     .nHisDIChanCount = 3,
                     .aiPlots = {{0x00FF00, 0, "Chan 0"}, {0x0000FF, 4, "µ"}},
                     .HisAIChanIsThermo = {0, 255, 0, 0},
                     .diPlots = {{1, 1, "0:0"}, {2, 2, ""}, {3, 3, "0:7"}},
                     .HisDIPortMask = {0x83, 0},
                     .ScanCount = 1000,
                     .ScanInterval = 0.001,
                     .AIDataPath = "/data/run\\AI.tld",
                     .DIDataPath = "/data/run\\DI.tld"};
    std::vector<std::string> seeds = {Written(info)};
    info.bHisDI = false;
    seeds.push_back(Written(info));
    info.bHisAI = false;
    info.bHisDI = true;
    seeds.push_back(Written(info));
    info.bHisDI = false;
    seeds.push_back(Written(info));
    return seeds;
}

} // namespace tracelet

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tracelet;
    try {
        ProjectInfo info = Read({reinterpret_cast<const char*>(data), size});
        RequireCounts(info);
        for (std::uint8_t& isThermo :
             info.HisAIChanIsThermo) // any byte but 0 is read as true and written as 255
            isThermo = isThermo != 0 ? 255 : 0;
        Require(Read(Written(info)) == info, "what was read can be written and read again");
    } catch (const RunTimeError& error) {
        Require(*error.what() != '\0', "an error has a description");
    }
    return 0;
}
