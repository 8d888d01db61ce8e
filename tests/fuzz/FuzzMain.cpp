// Runs a fuzz target without libFuzzer: on the files named on the command line, or else on its seeds, on
// every beginning of each, and on a fixed number of changed ones, the same in every run. Memory is watched: a
// target that holds more than its input and 64 MiB at any moment fails.

#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <new>
#include <random>

namespace {

constexpr std::size_t AllowedBeyondInput = 64U * 1024 * 1024;
constexpr int ChangedInputs = 30'000;

std::size_t held = 0;
std::size_t mostHeld = 0;

void* Allocate(std::size_t size) {
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
        throw std::bad_alloc();
    held += malloc_usable_size(memory);
    mostHeld = std::max(mostHeld, held);
    return memory;
}

void Release(void* memory) noexcept {
    held -= malloc_usable_size(memory);
    std::free(memory);
}

} // namespace

void* operator new(std::size_t size) {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    Release(memory);
}
void operator delete[](void* memory) noexcept {
    Release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    Release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    Release(memory);
}

namespace tracelet {
namespace {

void Run(const std::string& input) {
    const std::size_t before = held;
    mostHeld = held;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    Require(mostHeld - before <= input.size() + AllowedBeyondInput,
            "the memory held stays near the input's size");
}

using Random = std::mt19937;

std::size_t Below(Random& random, std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
}

// Numbers that readers stumble over, as 32-bit little-endian bytes.
std::string OddNumber(Random& random) {
    constexpr std::uint32_t Odd[] = {0,      1,       0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0xFFFF,
                                     0x8000, 0x10000, 0x10001,    0x7FFF0000, 0x20000000, 0x01000000};
    const std::uint32_t number = Odd[Below(random, std::size(Odd))];
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(number >> shift & 0xFFU);
    return bytes;
}

void ChangeOnce(std::string& input, Random& random) {
    if (input.empty()) {
        input += static_cast<char>(Below(random, 256));
        return;
    }
    const std::size_t at = Below(random, input.size());
    switch (Below(random, 6)) {
    case 0:
        input[at] = static_cast<char>(Below(random, 256));
        break;
    case 1:
        input[at] = static_cast<char>(input[at] ^ (1 << Below(random, 8)));
        break;
    case 2:
        input.replace(at, 4, OddNumber(random));
        break;
    case 3:
        input.resize(at);
        break;
    case 4:
        input.erase(at, 1 + Below(random, 8));
        break;
    default:
        input.insert(at, input.substr(Below(random, input.size()), 1 + Below(random, 64)));
        break;
    }
}

std::string Changed(std::string input, Random& random) {
    for (std::size_t changes = 1 + Below(random, 4); changes > 0; --changes)
        ChangeOnce(input, random);
    return input;
}

void RunSeeds() {
    const std::vector<std::string> seeds = FuzzSeeds();
    for (const std::string& seed : seeds) {
        for (std::size_t length = 0; length <= seed.size(); ++length)
            Run(seed.substr(0, length));
    }
    Random random(1);
    for (int i = 0; i < ChangedInputs; ++i)
        Run(Changed(seeds[Below(random, seeds.size())], random));
}

std::string ContentOf(const char* path) {
    std::ifstream file(path, std::ios::binary);
    Require(file.good(), path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace
} // namespace tracelet

int main(int argc, char** argv) {
    if (argc < 2)
        tracelet::RunSeeds();
    for (int i = 1; i < argc; ++i)
        tracelet::Run(tracelet::ContentOf(argv[i]));
    return EXIT_SUCCESS;
}
