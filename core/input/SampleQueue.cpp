#include "core/input/SampleQueue.h"

#include "core/base/RunTimeError.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace tracelet {
namespace {

constexpr std::size_t LargestSharedSlab = std::size_t{1} << 20;

std::size_t HalvesInSlab(std::size_t halfBytes, std::size_t limitBytes, bool lean) {
    if (lean)
        return 1;
    return std::max<std::size_t>(std::min(LargestSharedSlab, limitBytes / 4) / halfBytes, 1);
}

} // namespace

// Besides the slabs whose halves wait, one is being filled and one handed over.
SampleQueue::SampleQueue(std::size_t bytesOfHalf, std::size_t limitBytes, bool isLean)
    : halfBytes(bytesOfHalf), lean(isLean), slabHalves(HalvesInSlab(bytesOfHalf, limitBytes, isLean)),
      mostSlabs((limitBytes + slabHalves * bytesOfHalf - 1) / (slabHalves * bytesOfHalf) + 2) {
    auto slab = FreeSlab();
    if (!slab)
        throw Fault::OutOfMemory();
    freeSlabs.push_back(std::move(slab));
}

// Nothing when as many slabs as may be are in use, or memory has run out.
std::unique_ptr<SampleQueue::Slab> SampleQueue::FreeSlab() {
    if (!freeSlabs.empty()) {
        auto slab = std::move(freeSlabs.back());
        freeSlabs.pop_back();
        return slab;
    }
    if (slabCount == mostSlabs)
        return nullptr;
    try {
        freeSlabs.reserve(slabCount + 1); // so that giving a slab back never needs memory
        auto slab = std::make_unique<Slab>();
        slab->memory = std::make_unique_for_overwrite<std::byte[]>(slabHalves * halfBytes);
        ++slabCount;
        return slab;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool SampleQueue::HasOpenSlab() const {
    return !entries.empty() && entries.back().slab && !entries.back().slab->closed;
}

std::span<std::byte> SampleQueue::Room() {
    const std::lock_guard lock(mutex);
    if (!HasOpenSlab()) {
        auto slab = FreeSlab();
        if (!slab)
            return {};
        entries.push_back({std::move(slab), 0});
    }
    const Slab& slab = *entries.back().slab;
    const std::size_t used = slab.full * halfBytes + partial;
    return {slab.memory.get() + used, slabHalves * halfBytes - used};
}

std::uint64_t SampleQueue::Commit(std::size_t bytes) {
    const std::lock_guard lock(mutex);
    partial += bytes;
    const std::size_t completed = partial / halfBytes;
    partial %= halfBytes;
    Slab& slab = *entries.back().slab;
    slab.full += completed;
    slab.closed = slab.full == slabHalves;
    return completed;
}

void SampleQueue::PutLoss() {
    const std::lock_guard lock(mutex);
    auto place = entries.end();
    if (HasOpenSlab()) {
        if (entries.back().slab->full == 0) {
            --place; // nothing of it has come yet
            if (!lean)
                partial = 0;
        } else {
            entries.back().slab->closed = true;
            partial = 0;
        }
    }
    if (place != entries.begin() && !std::prev(place)->slab)
        ++std::prev(place)->losses;
    else
        entries.insert(place, Entry{nullptr, 1});
}

void SampleQueue::PutFailure(std::string text) {
    const std::lock_guard lock(mutex);
    failure = std::move(text);
}

void SampleQueue::PutRest(std::unique_ptr<std::byte[]> samples, std::size_t bytes) {
    const std::lock_guard lock(mutex);
    rest = std::move(samples);
    restBytes = bytes;
}

std::span<const std::byte> SampleQueue::Rest() {
    const std::lock_guard lock(mutex);
    if (rest)
        return {rest.get(), restBytes};
    if (!HasOpenSlab())
        return {};
    const Slab& slab = *entries.back().slab;
    return {slab.memory.get() + slab.full * halfBytes, partial};
}

// Gives back the slabs at the front that have been handed over whole.
void SampleQueue::ReleaseTakenSlabs() {
    while (!entries.empty() && entries.front().slab) {
        Slab& slab = *entries.front().slab;
        if (slab.taken < slab.full || !slab.closed)
            return;
        slab.full = slab.taken = 0;
        slab.closed = false;
        freeSlabs.push_back(std::move(entries.front().slab));
        entries.pop_front();
    }
}

SampleQueue::Item SampleQueue::Take() {
    const std::lock_guard lock(mutex);
    ReleaseTakenSlabs();
    if (!entries.empty()) {
        Entry& front = entries.front();
        if (!front.slab) {
            if (--front.losses == 0)
                entries.pop_front();
            return {Kind::Loss, {}, {}};
        }
        Slab& slab = *front.slab;
        if (slab.taken < slab.full) {
            const std::byte* half = slab.memory.get() + slab.taken * halfBytes;
            ++slab.taken;
            return {Kind::Half, {half, halfBytes}, {}};
        }
    }
    if (!failure)
        return {};
    Item item{Kind::Failure, {}, std::move(*failure)};
    failure.reset();
    return item;
}

} // namespace tracelet
