// The power goes at any instant of a recording, a stop, a saving. What the disk may hold then is made from a
// journal of what was asked of the system, and recovered.
//
// As many states as POWER_CUTS says are tried for each case, from the seed POWER_CUT_SEED.

#include "core/input/Recorder.h"
#include "core/recordings/LeftRecording.h"
#include "core/recordings/Recording.h"
#include "tests/core/crash/CrashState.h"
#include "tests/core/crash/DiskJournal.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::int32_t Channels = 3;
constexpr std::int32_t Ports = 2;
constexpr double Interval = 0.001;
constexpr const char* BootId = "/proc/sys/kernel/random/boot_id";

// Never 0, so that what was never written cannot pass for a sample.
float Sample(std::int32_t session, std::int64_t scan, std::int32_t channel) {
    return static_cast<float>(session * 100000 + scan * Channels + channel) + 0.5F;
}

std::uint8_t State(std::int32_t session, std::int64_t scan, std::int32_t port) {
    return static_cast<std::uint8_t>(1 + (session * 91 + scan * Ports + port) % 255);
}

/// What is recorded.
struct Plan {
    bool isPolled = true;
    std::int32_t scans = 0;
    std::int32_t session = 1;
    std::size_t headerBytes = 200; ///< the length that the names give the project's header
};

ProjectInfo InfoOf(const Plan& plan) {
    ProjectInfo info;
    info.bHisAI = info.bHisAIAnalog = true;
    info.bHisAISoft = info.bHisDI = plan.isPolled;
    info.nHisAIChanCount = Channels;
    info.aiPlots = {{1, 0, "AI 0"}, {2, 0, "AI 1"}, {3, 0, "AI 2"}};
    info.HisAIChanIsThermo = {0, 255, 0};
    if (plan.isPolled) {
        info.nHisDIChanCount = 1;
        info.diPlots = {{4, 0, "DI 0:0"}};
        info.HisDIPortMask = {1, 0};
    }
    info.aiPlots[0].PlotName.append(plan.headerBytes - ProjectHeader(info).size(), '.');
    return info;
}

/// A disk of one folder: programs' folder, user's state folder, and a folder for saved recordings.
struct Disk {
    explicit Disk(const std::string& root)
        : home(root + "/home"), state(root + "/state"), saved(root + "/saved") {
        for (const std::string& folder : {home, state, saved})
            fs::create_directory(folder);
    }
    std::string home;
    std::string state;
    std::string saved;
};

void PutScans(Recorder& recorder, const Plan& plan) {
    constexpr std::int32_t Half = 40;
    for (std::int32_t scan = 0; scan < plan.scans;) {
        std::vector<float> values;
        const std::int32_t count = plan.isPolled ? 1 : Half;
        for (std::int32_t i = 0; i < count * Channels; ++i)
            values.push_back(Sample(plan.session, scan + i / Channels, i % Channels));
        scan += count;
        if (plan.isPolled) {
            recorder.PutScan(values);
            recorder.PutPorts(
                std::vector{State(plan.session, scan - 1, 0), State(plan.session, scan - 1, 1)});
            recorder.CountTick(static_cast<std::uint32_t>(scan));
        } else {
            recorder.PutHalf(std::span<const float>(values), count);
            recorder.CountHalf(count);
        }
        recorder.Settle();
        std::this_thread::sleep_for(100us);
    }
}

/// From the start to the stop.
void Record(Recorder& recorder, const Plan& plan) {
    SessionFacts facts;
    facts.started = "2024-05-06T07:08:09+02:00";
    facts.isPolled = plan.isPolled;
    facts.asked = 1 / Interval;
    facts.pacedScans = plan.isPolled ? 0.0 : 1 / Interval;
    if (recorder.IsWritten())
        recorder.SetAside();
    recorder.ResetCounts();
    recorder.Begin(facts);
    ASSERT_TRUE(recorder.RecreateFastFile());
    recorder.PutHeader(InfoOf(plan));
    if (plan.isPolled)
        recorder.PutPortHeader(0, Ports);
    recorder.DropAside();
    recorder.ResetCounts();
    PutScans(recorder, plan);
    if (!plan.isPolled)
        recorder.CloseFastFile();
    recorder.Complete(Interval);
    MarkJournal("stopped");
}

// Lets the last bytes come to the disk, as a second or two do.
void Rest() {
    std::this_thread::sleep_for(50ms);
    MarkJournal("rested");
}

using Story = std::function<void(const Disk&)>;

// The folder of the story is gone when this returns, so that nothing can be found there.
DiskJournal JournalOf(const Story& before, const Story& story) {
    const TemporaryFolder root;
    const Disk disk(root.Path());
    before(disk);
    StartJournal(root.Path());
    story(disk);
    return StopJournal();
}

std::unique_ptr<Recorder> OpenRecorder(const Disk& disk) {
    auto recorder = std::make_unique<Recorder>(2ms);
    recorder->Open(MakeWorkFolder(disk.home), disk.state);
    return recorder;
}

// ---- What is recovered

std::string BytesOf(const SystemFile& file) {
    std::string bytes(file.IsOpen() ? static_cast<std::size_t>(file.Size()) : 0, '\0');
    bytes.resize(bytes.empty() ? 0 : file.ReadAt(0, std::as_writable_bytes(std::span(bytes))));
    return bytes;
}

std::string AnalogBytes(const Plan& plan, std::int64_t scans) {
    std::vector<float> values;
    for (std::int64_t i = 0; i < scans * Channels; ++i)
        values.push_back(Sample(plan.session, i / Channels, static_cast<std::int32_t>(i % Channels)));
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(float)};
}

std::string DigitalBytes(const Plan& plan, std::int64_t scans) {
    std::string bytes("\0\0\0\0\2\0\0\0", DigitalHeaderSize);
    for (std::int64_t i = 0; i < scans * Ports; ++i)
        bytes += static_cast<char>(State(plan.session, i / Ports, static_cast<std::int32_t>(i % Ports)));
    return bytes;
}

/// What is wrong with the saved recording in `folder`, "" for nothing; it may be of any of the plans. `scans`
/// are those that it has.
std::string WrongWith(const std::string& folder, const std::vector<Plan>& plans, std::int64_t& scans) {
    const Recording recording = OpenRecording(folder + "/Project.tlp", Disposition::OpenExisting);
    scans = recording.info.ScanCount;
    for (const Plan& plan : plans) {
        ProjectInfo expected = InfoOf(plan);
        expected.ScanCount = recording.info.ScanCount;
        expected.ScanInterval = Interval;
        expected.AIDataPath = recording.info.AIDataPath;
        expected.DIDataPath = recording.info.DIDataPath;
        const std::string analog = BytesOf(recording.analogFile);
        if (analog.substr(0, 12) != AnalogBytes(plan, 1))
            continue;
        if (recording.info != expected)
            return "header or interval " + std::to_string(recording.info.ScanInterval);
        if (analog != AnalogBytes(plan, scans))
            return "analog samples";
        if (plan.isPolled && BytesOf(recording.digitalFile) != DigitalBytes(plan, scans))
            return "digital samples";
        return {};
    }
    return "it is no recording that was made";
}

std::string Listing(const std::string& folder) {
    std::string lines;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        lines += '\n' + entry.path().string();
        lines += entry.is_regular_file() ? ' ' + std::to_string(entry.file_size()) : "/";
    }
    return lines;
}

/// The most scans of a recording that was found; -1 for none. Fails for one that is wrong.
std::int64_t Recover(const Disk& disk, const std::vector<Plan>& plans) {
    for (const auto& work :
         fs::directory_iterator(disk.home)) { // its session's file is named by its place on the disk
        for (const auto& entry : fs::directory_iterator(disk.state)) {
            if (entry.path().filename().string().starts_with("Session-"))
                fs::rename(entry.path(), SessionFileOf(disk.state, work.path()));
        }
    }
    std::int64_t most = -1;
    for (const LeftRecording& left : FindLeftRecordings(std::vector{disk.home}, disk.state)) {
        std::int64_t scans = 0;
        EXPECT_EQ(SaveRecording(left.parts, disk.saved + "/recovered"), "");
        EXPECT_EQ(WrongWith(disk.saved + "/recovered", plans, scans), "")
            << left.folder.sztmpPath << Listing(fs::path(disk.home).parent_path());
        fs::remove_all(disk.saved + "/recovered");
        most = std::max(most, scans);
    }
    return most;
}

// ---- Campaigns

std::size_t Setting(const char* name, std::size_t usual) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::strtoull(text, nullptr, 10) : usual;
}

using Check = std::function<void(const Disk&, std::size_t issued)>;

void CutAtRandom(const DiskJournal& journal, const Check& check) {
    const TemporaryFolder other;
    OpenInstead(BootId, other.Write("boot", "another-boot\n"));
    const std::size_t seed = Setting("POWER_CUT_SEED", 1);
    const std::size_t cuts = Setting("POWER_CUTS", 500);
    for (std::size_t cut = 0; cut < cuts && !testing::Test::HasFailure(); ++cut) {
        Dice dice(seed * 1000003 + cut);
        const auto issued = static_cast<std::size_t>(dice() % (journal.events.size() + 1));
        SCOPED_TRACE("cut " + std::to_string(cut) + " of seed " + std::to_string(seed) +
                     ", in front of event " + std::to_string(issued) + " of " +
                     std::to_string(journal.events.size()));
        const TemporaryFolder root;
        Materialize(AfterCut(journal, issued, dice), root.Path());
        check(Disk(root.Path()), issued);
    }
    OpenInstead({}, {});
}

void Nothing(const Disk& /*disk*/) {}

/// Scans that were written before the last round of syncs that has ended began, by the journal; those of the
/// whole recording once it rested.
std::int64_t PromisedScans(const DiskJournal& journal, std::size_t issued, const Plan& plan) {
    if (journal.Behind("rested", issued) > 0)
        return plan.scans;
    DiskNode data = NoNode;
    DiskNode project = NoNode;
    std::vector<std::size_t> syncs; // of the project, at the end of a round, twice at that of the first one
    for (std::size_t i = 0; i < issued; ++i) {
        const DiskEvent& event = journal.events[i];
        for (const auto& change : event.changes) {
            if (change.node != NoNode && change.name == "Project.tld")
                project = change.node;
            if (change.node != NoNode && change.name == (plan.isPolled ? "AI.tld" : "FAI.tld"))
                data = change.node;
        }
        if (event.kind == DiskEvent::Sync && event.node == project)
            syncs.push_back(i);
    }
    const std::size_t end = syncs.size() < 3 ? 0 : syncs[syncs.size() - 3];
    std::int64_t bytes = 0;
    for (std::size_t i = 0; i < end; ++i) {
        const DiskEvent& event = journal.events[i];
        if (event.kind == DiskEvent::Write && event.node == data)
            bytes = std::max(bytes, event.offset + static_cast<std::int64_t>(event.bytes.size()));
    }
    return bytes / AnalogOffset(1, Channels);
}

struct Case {
    const char* name;
    Plan plan;
    std::int64_t mayLack = 0; ///< scans that the count may step back by
};

class PowerCutSession : public testing::TestWithParam<Case> {};

TEST_P(PowerCutSession, LeavesARecordingToRecover) {
    const Plan plan = GetParam().plan;
    std::unique_ptr<Recorder> recorder;
    const DiskJournal journal = JournalOf(Nothing, [&](const Disk& disk) {
        recorder = OpenRecorder(disk);
        Record(*recorder, plan);
        Rest();
    });
    std::int64_t found = 0;
    CutAtRandom(journal, [&](const Disk& disk, std::size_t issued) {
        const std::int64_t scans = Recover(disk, {plan});
        const std::int64_t promised = PromisedScans(journal, issued, plan) - GetParam().mayLack;
        EXPECT_GE(scans, promised > 0 ? promised : -1);
        found += scans > 0 ? 1 : 0;
    });
    EXPECT_GT(found, 0);
    recorder.reset();
}

INSTANTIATE_TEST_SUITE_P(Sessions, PowerCutSession,
                         testing::Values(Case{"Polled", {.isPolled = true, .scans = 300}},
                                         Case{"Paced", {.isPolled = false, .scans = 8000}},
                                         Case{"IntervalOverTwoSectors", {.scans = 300, .headerBytes = 505}},
                                         Case{
                                             "CountOverTwoSectors", {.scans = 700, .headerBytes = 511}, 300}),
                         [](const auto& given) { return given.param.name; });

TEST(PowerCut, FindsARecordThatChangesInOneSectorAtATime) {
    for (std::int64_t offset = 496; offset <= 514; ++offset) {
        SCOPED_TRACE(offset);
        const TemporaryFolder root;
        const SystemFile project(root.Write("project", std::string(static_cast<std::size_t>(offset), 'p')),
                                 Disposition::OpenAlways);
        StartJournal(root.Path());
        LiveRecord record(project.Handle(), offset, {}, StopRecord);
        record.ScanInterval = Interval;
        record.ScanBytes[1] = 1;
        for (const std::int64_t scans : {5, 255, 256, 70000, 70001, 17000000})
            record.Keep(std::vector<std::int64_t>{0, scans, 0});
        const DiskJournal journal = StopJournal();
        std::vector<std::byte> last;
        for (const DiskEvent& event : journal.events) {
            if (event.kind != DiskEvent::Write)
                continue;
            const std::int64_t sector = std::clamp<std::int64_t>(512 - offset, 0, 12);
            const auto isSame = [&](std::int64_t from, std::int64_t to) {
                return std::equal(last.begin() + from, last.begin() + to, event.bytes.begin() + from);
            };
            EXPECT_TRUE(last.empty() ? event.bytes == StopRecord(0, Interval)
                                     : isSame(0, sector) || isSame(sector, 12));
            last = event.bytes;
        }
        EXPECT_EQ(last, StopRecord(17000000, Interval));
    }
}

TEST(PowerCutAtTheEnd, KeepsARecordingThatWasNotSaved) {
    const Plan plan{.scans = 50};
    const DiskJournal journal = JournalOf(Nothing, [&](const Disk& disk) {
        const std::unique_ptr<Recorder> recorder = OpenRecorder(disk);
        Record(*recorder, plan);
        Rest();
        recorder->Close();
        RemoveWorkFolder(recorder->work);
    });
    CutAtRandom(journal, [&](const Disk& disk, std::size_t issued) {
        const std::int64_t scans = Recover(disk, {plan});
        if (journal.Behind("rested", issued) > 0) {
            EXPECT_EQ(scans, plan.scans);
        }
    });
}

TEST(PowerCutAtTheStart, KeepsTheLastRecordingThatWasNotSaved) {
    const Plan first{.scans = 50};
    const Plan second{.isPolled = false, .scans = 2000, .session = 2};
    std::unique_ptr<Recorder> recorder;
    const DiskJournal journal = JournalOf(Nothing, [&](const Disk& disk) {
        recorder = OpenRecorder(disk);
        Record(*recorder, first);
        Rest();
        MarkJournal("first rested");
        Record(*recorder, second);
    });
    CutAtRandom(journal, [&](const Disk& disk, std::size_t issued) {
        const std::int64_t scans = Recover(disk, {first, second});
        if (journal.Behind("first rested", issued) > 0) {
            EXPECT_GE(scans, first.scans);
        }
    });
    recorder.reset();
}

class PowerCutWhileSaving : public testing::Test {
protected:
    void MakeReady(const Disk& disk, const Plan& plan) {
        recorder = OpenRecorder(disk);
        Record(*recorder, plan);
    }
    void Save(const Disk& disk) {
        ASSERT_EQ(recorder->SaveTo(disk.saved + "/run"), "");
        MarkJournal("saved");
        recorder->Close();
    }

    std::unique_ptr<Recorder> recorder;
};

TEST_F(PowerCutWhileSaving, LeavesTheNewRecordingWholeOrNone) {
    const Plan plan{.scans = 120};
    const DiskJournal journal =
        JournalOf([&](const Disk& disk) { MakeReady(disk, plan); }, [&](const Disk& disk) { Save(disk); });
    CutAtRandom(journal, [&](const Disk& disk, std::size_t issued) {
        const bool isThere = fs::exists(disk.saved + "/run/Project.tlp");
        EXPECT_TRUE(isThere || journal.Behind("saved", issued) == 0);
        std::int64_t scans = 0;
        if (isThere) {
            EXPECT_EQ(WrongWith(disk.saved + "/run", {plan}, scans), "");
            EXPECT_EQ(scans, plan.scans);
        }
    });
}

TEST_F(PowerCutWhileSaving, LeavesTheOldRecordingWholeOrTheNewOne) {
    const Plan old{.isPolled = false, .scans = 400, .session = 2};
    const Plan plan{.scans = 120};
    const DiskJournal journal = JournalOf(
        [&](const Disk& disk) {
            MakeReady(disk, old);
            Save(disk);
            MakeReady(disk, plan);
        },
        [&](const Disk& disk) { Save(disk); });
    std::int64_t olds = 0;
    CutAtRandom(journal, [&](const Disk& disk, std::size_t issued) {
        const bool isSaved = journal.Behind("saved", issued) > 0;
        std::int64_t scans = 0;
        EXPECT_EQ(WrongWith(disk.saved + "/run", isSaved ? std::vector{plan} : std::vector{old, plan}, scans),
                  "");
        EXPECT_THAT(scans, testing::AnyOf(old.scans, plan.scans));
        olds += scans == old.scans ? 1 : 0;
    });
    EXPECT_GT(olds, 0);
}

} // namespace
} // namespace tracelet
