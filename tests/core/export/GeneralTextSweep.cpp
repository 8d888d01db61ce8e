// Compares the fast number writers with printf: general_text_sweep [NUMBERS [SEED]], 10^8 numbers by default.
// With "floats" as its only argument it goes through every float instead.

#include "tests/core/export/GeneralTextSweep.h"

#include <cstdlib>
#include <string_view>

namespace {

int Report(const tracelet::GeneralTextSweep& sweep) {
    std::printf("%llu numbers compared, %llu different\n", static_cast<unsigned long long>(sweep.Compared()),
                static_cast<unsigned long long>(sweep.Different()));
    if (sweep.Different() == 0)
        return EXIT_SUCCESS;
    std::printf("first difference: %s\n", sweep.FirstDifference().c_str());
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string_view(argv[1]) == "floats") {
        tracelet::GeneralTextSweep sweep(0);
        for (std::uint64_t bits = 0; bits <= std::numeric_limits<std::uint32_t>::max(); ++bits)
            sweep.Check(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
        return Report(sweep);
    }
    const std::uint64_t numbers = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 100000000;
    tracelet::GeneralTextSweep sweep(argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1);
    sweep.CheckEdges<double>();
    sweep.CheckEdges<float>();
    sweep.CheckLongEdges();
    while (sweep.Compared() < numbers)
        sweep.CheckRandom();
    return Report(sweep);
}
