#pragma once

#include "core/base/RunTimeError.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tracelet {

/// A zero-based table whose every access is checked: an index outside raises "Subscript out of range".
template <typename T>
class Table {
public:
    Table() = default;
    explicit Table(std::int64_t count) { Resize(count); }
    /// A table of these values; raises what Resize does.
    explicit Table(const std::vector<T>& values) : Table(static_cast<std::int64_t>(values.size())) {
        for (std::size_t i = 0; i < values.size(); ++i)
            cells[i].value = values[i];
    }

    /// Makes room for `count` elements and clears all of them. A negative count raises "Subscript out of
    /// range", a count that memory cannot hold "Out of memory"; the table is then unchanged.
    void Resize(std::int64_t count) {
        if (count < 0)
            throw Fault::SubscriptOutOfRange();
        try {
            cells = std::vector<Cell>(static_cast<std::size_t>(count));
        } catch (const std::exception&) {
            throw Fault::OutOfMemory();
        }
    }

    [[nodiscard]] std::int64_t Count() const { return static_cast<std::int64_t>(cells.size()); }
    [[nodiscard]] T& operator[](std::int64_t index) { return cells[Checked(index)].value; }
    [[nodiscard]] const T& operator[](std::int64_t index) const { return cells[Checked(index)].value; }

private:
    struct Cell { // keeps std::vector from packing bool
        T value{};
        bool operator==(const Cell&) const = default;
    };

    [[nodiscard]] std::size_t Checked(std::int64_t index) const {
        if (index < 0 || index >= Count())
            throw Fault::SubscriptOutOfRange();
        return static_cast<std::size_t>(index);
    }

    std::vector<Cell> cells;
};

} // namespace tracelet
