#include "core/recordings/ProjectInfo.h"

#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace tracelet {
namespace {

using namespace std::string_literals;

ProjectInfo BothInputs() {
    return {.bHisAI = true,
            .bHisDI = true,
            .bHisAISoft = true,
            .bHisAIAnalog = true,
            .nHisAIChanCount = 2,
            .nHisDIChanCount = 1,
            .aiPlots = {{0x00FF8000, 0, "Chan 0"}, {static_cast<std::int32_t>(0x80000016), 4, "µ"}},
            .HisAIChanIsThermo = {0, 255, 0},
            .diPlots = {{0x000000FF, 1, ""}},
            .HisDIPortMask = {0x01, 0x80},
            .ScanCount = 300,
            .ScanInterval = 0.1,
            .AIDataPath = "/a\\AI.tld",
            .DIDataPath = "/a\\DI.tld"};
}

// The bytes of BothInputs, field by field.
const std::vector<std::string> BothInputsFields = {
    "\xFF\xFF"s,                         // bHisAI
    "\xFF\xFF"s,                         // bHisDI
    "\xFF\xFF"s,                         // bHisAISoft
    "\xFF\xFF"s,                         // bHisAIAnalog
    "\x02\0\0\0"s,                       // nHisAIChanCount
    "\x01\0\0\0"s,                       // nHisDIChanCount
    "\0\x80\xFF\0\0\0\0\0Chan 0\0"s,     // analog plot 0
    "\x16\0\0\x80\x04\0\0\0\xC2\xB5\0"s, // analog plot 1
    "\x03\0\0\0"s,                       // nHisAIMaxChanNum
    "\0\xFF\0"s,                         // thermocouple flags
    "\xFF\0\0\0\x01\0\0\0\0"s,           // digital plot 0
    "\x02\0\0\0"s,                       // nHisDIMaxPortCount
    "\x01\x80"s,                         // line masks
    "\x2C\x01\0\0"s,                     // ScanCount
    "\x9A\x99\x99\x99\x99\x99\xB9\x3F"s, // ScanInterval
    "/a\\AI.tld\0"s,                     // AIDataPath
    "/a\\DI.tld"s,                       // DIDataPath
};

std::string Joined(const std::vector<std::string>& fields) {
    std::string all;
    for (const std::string& field : fields)
        all += field;
    return all;
}

std::string Whole(const ProjectInfo& info) {
    return AsText(ProjectHeader(info)) + AsText(StopRecord(info.ScanCount, info.ScanInterval)) +
           AsText(SavedPaths(info.AIDataPath, info.DIDataPath));
}

ProjectInfo Read(std::string_view bytes) {
    ByteReader reader(std::as_bytes(std::span(bytes)));
    return ReadProject(reader);
}

std::string ReadFault(std::string_view bytes) {
    return FaultOf([&] { (void)Read(bytes); });
}

std::string Long(std::int32_t value) {
    std::vector<std::byte> bytes;
    AppendLittleEndian(bytes, value);
    return AsText(bytes);
}

TEST(ProjectInfo, WritesEveryField) {
    const ProjectInfo info = BothInputs();
    const std::vector<std::string> header(BothInputsFields.begin(), BothInputsFields.begin() + 13);
    EXPECT_EQ(AsText(ProjectHeader(info)), Joined(header));
    EXPECT_EQ(AsText(StopRecord(300, 0.1)), BothInputsFields[13] + BothInputsFields[14]);
    EXPECT_EQ(AsText(SavedPaths(info.AIDataPath, info.DIDataPath)),
              BothInputsFields[15] + BothInputsFields[16]);
}

TEST(ProjectInfo, ReadsWhatItWrote) {
    EXPECT_EQ(Read(Joined(BothInputsFields)), BothInputs());
}

TEST(ProjectInfo, StopBeforeTheFirstScanIsTwelveZeroBytes) {
    EXPECT_EQ(AsText(StopRecord(0, 0.0)), std::string(12, '\0'));
}

TEST(ProjectInfo, AnalogOnlyStillCountsTheDigitalPlots) {
    ProjectInfo info = BothInputs();
    info.bHisDI = false;
    info.nHisDIChanCount = 5;
    std::vector<std::string> fields = BothInputsFields;
    fields[1] = "\0\0"s;
    fields[5] = "\x05\0\0\0"s;
    fields.erase(fields.begin() + 10, fields.begin() + 13);
    EXPECT_EQ(Whole(info), Joined(fields));
    const ProjectInfo back = Read(Joined(fields));
    EXPECT_EQ(back.nHisDIChanCount, 0);
    EXPECT_TRUE(back.diPlots.empty());
    EXPECT_EQ(back.nHisDIMaxPortCount(), 0);
    EXPECT_EQ(back.DIDataPath, "/a\\DI.tld") << "written although there are no digital data";
}

TEST(ProjectInfo, DigitalOnlyStillCountsTheAnalogPlots) {
    ProjectInfo info = BothInputs();
    info.bHisAI = false;
    info.nHisAIChanCount = 16;
    std::vector<std::string> fields = BothInputsFields;
    fields[0] = "\0\0"s;
    fields[4] = "\x10\0\0\0"s;
    fields.erase(fields.begin() + 6, fields.begin() + 10);
    EXPECT_EQ(Whole(info), Joined(fields));
    const ProjectInfo back = Read(Joined(fields));
    EXPECT_EQ(back.nHisAIChanCount, 0);
    EXPECT_EQ(back.nHisAIMaxChanNum(), 0);
    EXPECT_EQ(back.diPlots, info.diPlots);
}

TEST(ProjectInfo, NothingRecordedIsFlagsAndCounts) {
    const ProjectInfo info{.bHisAISoft = true, .bHisAIAnalog = true, .nHisAIChanCount = 1};
    EXPECT_EQ(AsText(ProjectHeader(info)), "\0\0\0\0\xFF\xFF\xFF\xFF\x01\0\0\0\0\0\0\0"s);
}

TEST(ProjectInfo, FastRawRecordingHasBothKindFlagsClear) {
    ProjectInfo info = BothInputs();
    info.bHisDI = info.bHisAISoft = info.bHisAIAnalog = false;
    EXPECT_EQ(AsText(ProjectHeader(info)).substr(0, 8), "\xFF\xFF\0\0\0\0\0\0"s);
    const ProjectInfo back = Read(Whole(info));
    EXPECT_FALSE(back.bHisAISoft);
    EXPECT_FALSE(back.bHisAIAnalog);
}

TEST(ProjectInfo, ReadsAnyNonZeroBooleanAsTrue) {
    for (const std::string& written : {"\x01\0"s, "\0\x01"s, "\xFE\xFF"s, "\0\x80"s}) {
        std::vector<std::string> fields = BothInputsFields;
        for (std::size_t i = 0; i < 4; ++i)
            fields[i] = written;
        EXPECT_EQ(Read(Joined(fields)), BothInputs());
    }
}

TEST(ProjectInfo, WritesThermocoupleFlagsAs255) {
    ProjectInfo info = BothInputs();
    info.HisAIChanIsThermo = {1, 0, 255};
    EXPECT_EQ(Read(Whole(info)).HisAIChanIsThermo, (std::vector<std::uint8_t>{255, 0, 255}));
    std::vector<std::string> fields = BothInputsFields;
    fields[9] = "\x01\0\x02"s;
    EXPECT_EQ(Read(Joined(fields)).HisAIChanIsThermo, (std::vector<std::uint8_t>{1, 0, 2}));
}

TEST(ProjectInfo, NamesMayHoldAnyBytes) {
    ProjectInfo info = BothInputs();
    for (const std::string& name : {""s, "\xE4\xFF\x01\t\r\n"s, std::string(100'000, 'n'), "Kanal ä / 1"s}) {
        info.aiPlots[1].PlotName = name;
        EXPECT_EQ(Read(Whole(info)).aiPlots[1].PlotName, name);
    }
    info.aiPlots[1].PlotName = "cut\0here"s;
    EXPECT_EQ(Read(Whole(info)).aiPlots[1].PlotName, "cut");
}

TEST(ProjectInfo, WriterRefusesCountsThatDisagree) {
    ProjectInfo info = BothInputs();
    info.nHisAIChanCount = 3;
    EXPECT_EQ(FaultOf([&] { (void)ProjectHeader(info); }), "Subscript out of range");
    info = BothInputs();
    info.diPlots.clear();
    EXPECT_EQ(FaultOf([&] { (void)ProjectHeader(info); }), "Subscript out of range");
}

TEST(ProjectInfo, MissingPathsAreEmpty) {
    const std::string upToStop = Joined({BothInputsFields.begin(), BothInputsFields.begin() + 15});
    EXPECT_EQ(Read(upToStop).AIDataPath, "");
    EXPECT_EQ(Read(upToStop).DIDataPath, "");
    EXPECT_EQ(Read(upToStop + "/x").AIDataPath, "/x") << "the end of the file ends a text";
    EXPECT_EQ(Read(upToStop + "/x").DIDataPath, "");
    EXPECT_EQ(Read(upToStop + "\0/y\0rest"s).DIDataPath, "/y") << "so does a 0";
}

TEST(ProjectInfo, EveryTruncationOfTheFixedPartIsTold) {
    const std::string whole = Joined(BothInputsFields);
    const std::size_t fixed = Joined({BothInputsFields.begin(), BothInputsFields.begin() + 15}).size();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string fault = ReadFault(whole.substr(0, length));
        if (length < fixed)
            EXPECT_TRUE(fault == "Unexpected end of file" ||
                        fault.starts_with("The project file cannot hold "))
                << length << ": " << fault;
        else
            EXPECT_EQ(fault, "") << length;
    }
}

TEST(ProjectInfo, CountsBelowOneAreOutOfRange) {
    for (const std::size_t field : {4U, 5U, 8U, 11U}) {
        for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
            std::vector<std::string> fields = BothInputsFields;
            fields[field] = Long(count);
            EXPECT_EQ(ReadFault(Joined(fields)), "Subscript out of range") << field << " " << count;
        }
    }
}

TEST(ProjectInfo, CountsThatTheFileHasNoRoomForAreTold) {
    struct {
        std::size_t field;
        const char* what;
    } const cases[] = {
        {4, "analog plots"}, {5, "digital plots"}, {8, "analog channels"}, {11, "digital ports"}};
    for (const auto& [field, what] : cases) {
        for (const std::int32_t count : {10'000, 65'537, std::numeric_limits<std::int32_t>::max()}) {
            std::vector<std::string> fields = BothInputsFields;
            fields[field] = Long(count);
            EXPECT_EQ(ReadFault(Joined(fields)),
                      "The project file cannot hold " + std::to_string(count) + " " + what);
        }
    }
}

// A large file that is no project: nothing is sized by a count that no device has, whatever room there is.
TEST(ProjectInfo, CountsBeyondAnyDeviceAreToldEvenWithRoom) {
    const TemporaryFolder folder;
    std::vector<std::string> fields = BothInputsFields;
    fields[8] = Long(2'000'000'000);
    const std::string path = folder.Write("Project.tlp", Joined(fields));
    std::filesystem::resize_file(path, 4'000'000'000);
    EXPECT_EQ(FaultOf([&] { (void)ReadProjectFile(path); }),
              "The project file cannot hold 2000000000 analog channels");
}

TEST(ProjectInfo, MostChannelsAreRead) {
    ProjectInfo info = BothInputs();
    info.HisAIChanIsThermo.assign(ProjectInfo::MostChannels, 255);
    info.HisDIPortMask.assign(ProjectInfo::MostChannels, 7);
    EXPECT_EQ(Read(Whole(info)), info);
}

// Two recordings with so many plots and no more.
std::array<ProjectInfo, 2> AnalogAndDigital(std::int32_t count) {
    const std::vector<PlotRecord> plots(static_cast<std::size_t>(count));
    std::array<ProjectInfo, 2> both;
    both[0].bHisAI = both[1].bHisDI = true;
    both[0].nHisAIChanCount = both[1].nHisDIChanCount = count;
    both[0].aiPlots = both[1].diPlots = plots;
    both[0].HisAIChanIsThermo = both[1].HisDIPortMask = {0};
    return both;
}

TEST(ProjectInfo, ManyPlotsWithoutNamesAreRead) {
    for (const std::int32_t count : {64, 1024})
        for (const ProjectInfo& info : AnalogAndDigital(count))
            EXPECT_EQ(Read(AsText(ProjectHeader(info)) + AsText(StopRecord(0, 0.0))), info);
}

TEST(ProjectInfo, MorePlotsThanAWindowShowsAreRefused) {
    const auto [analog, digital] = AnalogAndDigital(1025);
    EXPECT_EQ(ReadFault(Whole(analog)), "The project file cannot hold 1025 analog plots");
    EXPECT_EQ(ReadFault(Whole(digital)), "The project file cannot hold 1025 digital plots");
}

TEST(ProjectInfo, LongNamesAreReadUpToTheirLimit) {
    for (const std::size_t last : {65536, 65537})
        for (ProjectInfo& info : AnalogAndDigital(2)) {
            std::vector<PlotRecord>& plots = info.bHisAI ? info.aiPlots : info.diPlots;
            plots[0].PlotName.assign(65536, 'a');
            plots[1].PlotName.assign(last, 'b');
            EXPECT_EQ(ReadFault(Whole(info)), last == 65536 ? "" : "Names too long in file");
        }
}

TEST(ProjectInfo, CountsWithoutTheirFlagAreNotLookedAt) {
    for (const std::int32_t count : {-5, 2'000'000'000}) {
        const std::string bytes = std::string(8, '\0') + Long(count) + Long(count) + std::string(12, '\0');
        const ProjectInfo info = Read(bytes);
        EXPECT_EQ(info.nHisAIChanCount, 0);
        EXPECT_EQ(info.nHisDIChanCount, 0);
    }
}

TEST(ProjectInfo, ScanCountAndIntervalMustBePossible) {
    ProjectInfo info = BothInputs();
    info.ScanCount = -7;
    EXPECT_EQ(ReadFault(Whole(info)), "The project file has a scan count of -7");
    info.ScanCount = 0;
    info.ScanInterval = 0.0;
    EXPECT_EQ(Read(Whole(info)).ScanInterval, 0.0);
    info.ScanInterval = -0.5;
    EXPECT_EQ(ReadFault(Whole(info)), "The project file has a scan interval of -0.5");
    info.ScanInterval = std::nan("");
    EXPECT_EQ(ReadFault(Whole(info)).find("The project file has a scan interval of "), 0U);
    info.ScanInterval = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ReadFault(Whole(info)).find("The project file has a scan interval of "), 0U);
}

TEST(ProjectInfo, ReadsTheFile) {
    const TemporaryFolder folder;
    folder.Write("Project.tlp", Joined(BothInputsFields));
    EXPECT_EQ(ReadProjectFile(folder.Path() + "\\Project.tlp"), BothInputs());
    EXPECT_EQ(FaultOf([&] { (void)ReadProjectFile(folder / "none"); }), "File not found");
    EXPECT_EQ(FaultOf([&] { (void)ReadProjectFile(folder.Path()); }), "Permission denied");
    EXPECT_EQ(FaultOf([&] { (void)ReadProjectFile(folder.Write("empty")); }), "Unexpected end of file");
    EXPECT_EQ(FaultOf([&] { (void)ReadProjectFile("C:\\Project.tlp"); }), "Path not found");
}

TEST(ProjectInfo, AFileOfAnotherKindIsToldAsThat) {
    const TemporaryFolder folder;
    const auto fault = [&](const std::string& bytes) {
        const std::string path = folder.Write("Some.tlp", bytes);
        return FaultOf([&] { (void)ReadProjectFile(path); });
    };
    for (const std::string& other :
         {"Dear Sir or Madam"s, "nonsense"s, "\x89PNG\r\n\x1A\n"s, "PK\x03\x04"s, std::string(500, '\xFE')})
        EXPECT_EQ(fault(other), "The file is not a Tracelet project") << other;
    const std::string whole = Joined(BothInputsFields);
    for (const std::size_t length : {0U, 1U, 2U, 7U, 8U, 20U})
        EXPECT_EQ(fault(whole.substr(0, length)).find("The file is not"), std::string::npos) << length;
    EXPECT_EQ(fault("\x01\0"s + whole.substr(2)), "") << "any flag but 0 is true";
}

} // namespace
} // namespace tracelet
