// The example in docs/file-formats.md is what the program writes.

#include "core/recordings/ProjectInfo.h"
#include "tests/support/TemporaryFolder.h"

#include <charconv>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

std::string BytesOfDumpLine(std::string_view line) {
    constexpr std::size_t FirstByte = 6;
    constexpr std::size_t BytesInLine = 16;
    std::string bytes;
    for (std::size_t i = 0; i < BytesInLine; ++i) {
        const std::string_view digits = line.substr(FirstByte + 3 * i, 2);
        unsigned value = 0;
        if (std::from_chars(digits.data(), digits.data() + digits.size(), value, 16).ec != std::errc())
            break;
        bytes += static_cast<char>(value);
    }
    return bytes;
}

// The bytes of the dump that follows the file's name in the example.
std::string Example(const std::string& name) {
    const std::string document = ContentOf(TRACELET_SOURCE_DIR "/docs/file-formats.md");
    const std::size_t title = document.find("\n`" + name + "`");
    EXPECT_NE(title, std::string::npos) << name;
    std::size_t at = document.find("```\n", title) + 4;
    std::string bytes;
    while (document.compare(at, 3, "```") != 0) {
        const std::size_t end = document.find('\n', at);
        bytes += BytesOfDumpLine(std::string_view(document).substr(at, end - at));
        at = end + 1;
    }
    return bytes;
}

TEST(FileFormatsDocument, ProjectExampleIsWhatIsWritten) {
    const ProjectInfo info{.bHisAI = true,
                           .bHisDI = true,
                           .bHisAISoft = true,
                           .bHisAIAnalog = true,
                           .nHisAIChanCount = 2,
                           .nHisDIChanCount = 1,
                           .aiPlots = {{0x0000FF, 0, "AI 0"}, {0x00FF00, 0, "AI 1"}},
                           .HisAIChanIsThermo = {0, 255, 0, 0},
                           .diPlots = {{0xFFFFFF, 0, "DI 0:2"}},
                           .HisDIPortMask = {4, 0},
                           .ScanCount = 3,
                           .ScanInterval = 0.1,
                           .AIDataPath = "/home/ann/run 1\\AI.tld",
                           .DIDataPath = "/home/ann/run 1\\DI.tld"};
    const std::string written = AsText(ProjectHeader(info)) + AsText(StopRecord(3, 0.1)) +
                                AsText(SavedPaths(info.AIDataPath, info.DIDataPath));
    EXPECT_EQ(Example("Project.tlp"), written);
}

TEST(FileFormatsDocument, SampleExamplesAreWhatIsWritten) {
    std::vector<std::byte> analog;
    for (const float value : {1.5F, 21.25F, -0.5F, 21.5F, 2.0F, 21.5F})
        AppendLittleEndian(analog, value);
    EXPECT_EQ(Example("AI.tld"), AsText(analog));
    EXPECT_EQ(Example("DI.tld"), std::string("\0\0\0\0\x01\0\0\0\0\x04\x85", 11));
}

} // namespace
} // namespace tracelet
