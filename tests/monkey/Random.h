#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace tracelet {

/// The dice of one run: the same seed throws the same numbers.
class Random {
public:
    explicit Random(std::uint32_t seed) : engine(seed) {}

    /// 0 to `bound` - 1; 0 for a bound below 2.
    [[nodiscard]] int Below(int bound) {
        return bound < 2 ? 0 : static_cast<int>(engine() % static_cast<std::uint32_t>(bound));
    }
    [[nodiscard]] bool Percent(int chance) { return Below(100) < chance; }

    template <typename List>
    [[nodiscard]] auto Pick(const List& list) {
        return *std::next(std::begin(list), Below(static_cast<int>(std::size(list))));
    }
    template <typename T>
    [[nodiscard]] T Pick(std::initializer_list<T> list) {
        return *std::next(list.begin(), Below(static_cast<int>(list.size())));
    }

private:
    std::mt19937 engine;
};

} // namespace tracelet
