// From the notification of a half-buffer to its bytes in the recording's file, beside a plain write of the
// same bytes: 16 channels, blocks of so many conversions. Files begin anew at 256 MiB, outside the
// measurement.

#include "bench/BenchWindow.h"
#include "bench/Measure.h"
#include "window/chart/ZelGraph.h"
#include "window/controls/ZelAI.h"
#include "window/widgets/ZelButton.h"

#include <QCheckBox>
#include <QPushButton>
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace {

using namespace tracelet;

constexpr std::int32_t Channels = 16;
constexpr std::int64_t LongestFile = std::int64_t{256} << 20; // bytes

// Blocks enough that none is still in the processor's cache when its turn comes again, as with blocks that a
// board has just delivered.
class Blocks {
public:
    explicit Blocks(std::int64_t blockSize) : size(static_cast<std::size_t>(blockSize)), values(4U << 20) {
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = std::sin(static_cast<float>(i % 100003) * 0.001F);
    }
    std::span<const float> Next() {
        if (next + size > values.size())
            next = 0;
        return std::span(values).subspan(std::exchange(next, next + size), size);
    }

private:
    std::size_t size;
    std::size_t next = 0;
    std::vector<float> values;
};

void Finish(benchmark::State& bench, std::int64_t allocations) {
    const auto rounds = static_cast<double>(bench.iterations());
    bench.SetBytesProcessed(bench.iterations() * bench.range(0) * std::int64_t{sizeof(float)});
    bench.counters["allocations"] = static_cast<double>(allocations) / rounds;
}

void PlainWrite(benchmark::State& bench) {
    Blocks blocks(bench.range(0));
    QTemporaryDir folder;
    const int file =
        open(folder.filePath(QStringLiteral("plain")).toUtf8(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    std::int64_t written = 0;
    for (auto _ : bench) {
        const auto bytes = std::as_bytes(blocks.Next());
        if (write(file, bytes.data(), bytes.size()) != std::ssize(bytes))
            std::abort();
        written += std::ssize(bytes);
        if (written > LongestFile) {
            bench.PauseTiming();
            written = ftruncate(file, 0) + lseek(file, 0, SEEK_SET);
            bench.ResumeTiming();
        }
    }
    close(file);
    Finish(bench, 0);
}

// A running fast session that records, and whose halves come from here.
class Session {
public:
    explicit Session(std::int64_t block) {
        window->M1.SoftMode = false;
        window->bFAICyclic = true;
        window->nAISampleCnt = 1 << 24; // its own first half is far off
        window->ZelAI1->SetScanChannelCount(Channels);
        window->ZelAI1->SetSampleRate(1000);
        window->BuildPlots(false, true);
        window->ZelButton1->click();
        window->CkAISave2Disk->click();
        window->BtnStart->click();
        if (!window->isSystemRunning || !window->bAISaveToDisk)
            std::abort();
        window->ZelGraph1->SetChartLength(100000);
        file = window->FAIFileHandle.Handle();
        blocks = std::make_unique<Blocks>(block);
    }
    void Notify() {
        const std::span<const float> block = blocks->Next();
        emit window->ZelAI1->OnFirstBufferChange({}, block, static_cast<std::int32_t>(block.size()));
        written += std::ssize(block) * std::int64_t{sizeof(float)};
    }
    [[nodiscard]] bool IsLong() const { return written > LongestFile; }
    void Shorten() {
        do // faster than any board, this may outrun the disk
            (void)window->recorder.Settle();
        while (window->recorder.IsBehind());
        if (lseek(file, 0, SEEK_END) != written || ftruncate(file, 0) != 0) // all of it arrived
            std::abort();
        written = 0;
    }
    BenchWindow window;

private:
    int file = -1;
    std::int64_t written = 0;
    std::unique_ptr<Blocks> blocks;
};

void Notify(benchmark::State& bench, bool charted) {
    Session session(bench.range(0));
    if (!charted)
        session.window->ZelGraph1->RemovePlots();
    for (int i = 0; i < 3000; ++i) // the chart is full, every buffer has its size
        session.Notify();
    session.Shorten();
    const std::int64_t before = measure::Allocations();
    for (auto _ : bench) {
        session.Notify();
        if (session.IsLong()) {
            bench.PauseTiming();
            session.Shorten();
            bench.ResumeTiming();
        }
    }
    Finish(bench, measure::Allocations() - before);
}

// Until the bytes are in the file, which is before the chart gets them.
void Notification(benchmark::State& bench) {
    Notify(bench, false);
}

void NotificationAndChart(benchmark::State& bench) {
    Notify(bench, true);
}

void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int block : {4096, 65536})
        bench->Arg(block);
    bench->Unit(benchmark::kMicrosecond)->MeasureProcessCPUTime()->Repetitions(7)->ReportAggregatesOnly();
}

BENCHMARK(PlainWrite)->Apply(Sizes);
BENCHMARK(Notification)->Apply(Sizes);
BENCHMARK(NotificationAndChart)->Apply(Sizes);

} // namespace
