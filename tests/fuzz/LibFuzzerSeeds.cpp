// Gives libFuzzer a target's seeds: they join the corpus, the first folder on the command line.

#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    using namespace tracelet;
    const std::span arguments(*argv, static_cast<std::size_t>(*argc));
    const auto isFolder = [](const char* argument) { return std::filesystem::is_directory(argument); };
    const auto corpus = std::ranges::find_if(arguments, isFolder);
    if (corpus == arguments.end())
        return 0;
    int number = 0;
    for (const std::string& seed : FuzzSeeds()) {
        const auto file = std::filesystem::path(*corpus) / ("seed" + std::to_string(number++));
        Require((std::ofstream(file, std::ios::binary) << seed).good(), "a seed can be written");
    }
    return 0;
}
