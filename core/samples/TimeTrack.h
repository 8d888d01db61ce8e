#pragma once

#include "core/samples/ChunkRing.h"

#include <cstdint>
#include <vector>

namespace tracelet {

/// Times in seconds of the samples of one or more plots, by absolute sample index. Evenly spaced samples cost
/// nothing, others 8 bytes each. Time may go back; it then starts a new stretch.
class TimeTrack {
public:
    /// Samples first <= index < end whose times never go back.
    struct Stretch {
        std::int64_t first = 0;
        std::int64_t end = 0;
    };

    explicit TimeTrack(std::int64_t start = 0) : first(start), end(start) {}

    [[nodiscard]] std::int64_t First() const { return first; }
    [[nodiscard]] std::int64_t End() const { return end; }
    /// Time of the held sample `index`.
    [[nodiscard]] double X(std::int64_t index) const { return XIn(PieceOf(index), index); }

    /// Whether the held samples from <= index <= to are known to be evenly spaced.
    [[nodiscard]] bool IsEven(std::int64_t from, std::int64_t to) const {
        const Piece& piece = PieceOf(to);
        return piece.first <= from && piece.step >= 0;
    }

    /// Makes sure that the next append of at most `count` times does not allocate; throws std::bad_alloc.
    void Reserve(std::int64_t count);
    /// `step` is finite and not negative.
    void AppendEven(double start, double step, std::int64_t count);
    void AppendOne(double x);

    /// Whether `count` samples from `index` on are held and stand at start, start + step, ...
    [[nodiscard]] bool Matches(std::int64_t index, double start, double step, std::int64_t count) const;

    void DropBefore(std::int64_t index);

    /// Copy of the times first <= index < end, under the same indices.
    [[nodiscard]] TimeTrack Part(std::int64_t from, std::int64_t to) const;

    /// The stretches of the held samples from <= index < to, oldest first.
    void Stretches(std::int64_t from, std::int64_t to, std::vector<Stretch>& stretches) const;
    /// Number of stretches begun so far; tells whether time went back.
    [[nodiscard]] std::int64_t StretchCount() const { return stretchCount; }

    /// First index of `stretch` whose time is not below `x`, or its end.
    [[nodiscard]] std::int64_t LowerBound(const Stretch& stretch, double x) const;
    /// The same where the answer is expected at or a little behind `hint`, which is not behind it.
    [[nodiscard]] std::int64_t LowerBoundFrom(std::int64_t hint, const Stretch& stretch, double x) const;

    [[nodiscard]] std::size_t HeldBytes() const { return pieces.HeldBytes() + times.HeldBytes(); }

private:
    struct Piece {
        std::int64_t first = 0; ///< index of its first sample
        double start = 0;       ///< time of it
        double step = 0;        ///< seconds between samples; below 0: times stand in `times`
        std::int64_t firstTime = 0;
        bool joins = false; ///< time does not go back against the piece before
    };

    [[nodiscard]] const Piece& PieceOf(std::int64_t index) const {
        const Piece& last = pieces[pieces.End() - 1];
        return index >= last.first ? last : pieces[PieceNumberOf(index)];
    }
    [[nodiscard]] std::int64_t PieceNumberOf(std::int64_t index) const;
    [[nodiscard]] double XIn(const Piece& piece, std::int64_t index) const {
        const std::int64_t position = index - piece.first;
        if (piece.step < 0)
            return times[piece.firstTime + position];
        return piece.start + static_cast<double>(position) * piece.step;
    }
    [[nodiscard]] bool Continues(const Piece& piece, double start, double step) const;
    [[nodiscard]] std::int64_t Guess(std::int64_t hint, const Stretch& stretch, double x) const;
    void Begin(double start, double step);

    ChunkRing<Piece, 2> pieces;
    ChunkRing<double, 10> times;
    std::int64_t first = 0;
    std::int64_t end = 0;
    std::int64_t stretchCount = 0;
};

} // namespace tracelet
