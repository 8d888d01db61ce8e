// Counts allocations in the paths that run with every tick and notification. A program of its own, since it
// replaces the allocation functions.

#include "window/chart/ZelGraph.h"

#include <QTest>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>
#include <vector>

namespace {
std::atomic<long> allocations{0};

void* Counted(std::size_t bytes) {
    ++allocations;
    if (void* memory = std::malloc(bytes == 0 ? 1 : bytes))
        return memory;
    throw std::bad_alloc();
}
} // namespace

void* operator new(std::size_t bytes) {
    return Counted(bytes);
}
void* operator new[](std::size_t bytes) {
    return Counted(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tracelet {
namespace {

class ZelGraphAllocation : public testing::Test {
protected:
    ZelGraphAllocation() {
        graph.resize(400, 300);
        for (int i = 0; i < 16; ++i)
            graph.AddPlot({});
        graph.SetChartLength(5000);
        graph.show();
    }

    /// Allocations of the second half of so many calls.
    static long AllocationsOf(int calls, const std::function<void(int)>& call) {
        for (int i = 0; i < calls / 2; ++i)
            call(i);
        const long before = allocations;
        for (int i = calls / 2; i < calls; ++i)
            call(i);
        return allocations - before;
    }

    ZelGraph graph;
};

TEST_F(ZelGraphAllocation, CounterCounts) {
    EXPECT_EQ(AllocationsOf(10, [](int) { std::vector<int> some(3); }), 5);
}

TEST_F(ZelGraphAllocation, BlocksOfAFullChartAllocateNothing) {
    // Each level of a plot's extents takes its second piece of memory once; after a million samples a plot
    // all that matter have theirs.
    const std::vector<float> block(2 * 1000, 1.0F);
    EXPECT_EQ(AllocationsOf(2400,
                            [&](int) {
                                graph.AppendSamples(
                                    1e-4, ZelGraph::PlotInterleaved(1000, 2, std::span<const float>(block)));
                            }),
              0);
}

TEST_F(ZelGraphAllocation, ScansAndPointsOfAFullChartAllocateNothing) {
    const std::vector<float> scan(8, 1.0F);
    EXPECT_EQ(AllocationsOf(40'000,
                            [&](int tick) {
                                graph.AppendScan(tick * 0.001, scan);
                                for (int line = 8; line < 16; ++line)
                                    graph.AddPoint(line, tick * 0.001 + 0.0002, tick % 2);
                            }),
              0);
}

} // namespace
} // namespace tracelet
