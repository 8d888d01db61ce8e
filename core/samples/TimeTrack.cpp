#include "core/samples/TimeTrack.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tracelet {

namespace {
constexpr double NotEven = -1;
}

std::int64_t TimeTrack::PieceNumberOf(std::int64_t index) const {
    std::int64_t low = pieces.First();
    std::int64_t high = pieces.End() - 1;
    if (pieces[high].first <= index)
        return high;
    while (low < high) {
        const std::int64_t middle = (low + high + 1) / 2;
        if (pieces[middle].first <= index)
            low = middle;
        else
            high = middle - 1;
    }
    return low;
}

void TimeTrack::Reserve(std::int64_t count) {
    pieces.Reserve(1);
    if (count > 0)
        times.Reserve(count);
}

bool TimeTrack::Continues(const Piece& piece, double start, double step) const {
    // A start computed another way may differ in its last digits; a piece of its own would gain nothing.
    const double expected = piece.start + static_cast<double>(end - piece.first) * piece.step;
    const double tolerance = 1e-9 * step + 4 * std::numeric_limits<double>::epsilon() * std::abs(expected);
    return piece.step == step && std::abs(start - expected) <= tolerance;
}

void TimeTrack::Begin(double start, double step) {
    const bool joins = end > first && start >= X(end - 1);
    if (!joins)
        ++stretchCount;
    pieces.Push({end, start, step, times.End(), joins});
}

void TimeTrack::AppendEven(double start, double step, std::int64_t count) {
    if (end == first || !Continues(pieces[pieces.End() - 1], start, step))
        Begin(start, step);
    end += count;
}

void TimeTrack::AppendOne(double x) {
    const bool extends = end > first && pieces[pieces.End() - 1].step < 0 && x >= X(end - 1);
    if (!extends)
        Begin(x, NotEven);
    times.Push(x);
    ++end;
}

bool TimeTrack::Matches(std::int64_t index, double start, double step, std::int64_t count) const {
    if (index < first || index + count > end)
        return false;
    const Piece& piece = PieceOf(index);
    if (count == 1)
        return XIn(piece, index) == start;
    return piece.step == step && &PieceOf(index + count - 1) == &piece &&
           std::abs(XIn(piece, index) - start) <= 1e-6 * step;
}

void TimeTrack::DropBefore(std::int64_t index) {
    index = std::clamp(index, first, end);
    first = index;
    if (first == end) {
        pieces.DropBefore(pieces.End());
        times.DropBefore(times.End());
        return;
    }
    const std::int64_t number = PieceNumberOf(first);
    const Piece& piece = pieces[number];
    pieces.DropBefore(number);
    times.DropBefore(piece.step < 0 ? piece.firstTime + (first - piece.first) : piece.firstTime);
}

TimeTrack TimeTrack::Part(std::int64_t from, std::int64_t to) const {
    from = std::max(from, first);
    to = std::min(to, end);
    TimeTrack part(from);
    while (part.end < to) {
        const std::int64_t number = PieceNumberOf(part.end);
        const Piece& piece = pieces[number];
        const std::int64_t pieceEnd = number + 1 < pieces.End() ? pieces[number + 1].first : end;
        if (piece.step < 0)
            part.AppendOne(X(part.end));
        else
            part.AppendEven(X(part.end), piece.step, std::min(pieceEnd, to) - part.end);
    }
    return part;
}

void TimeTrack::Stretches(std::int64_t from, std::int64_t to, std::vector<Stretch>& stretches) const {
    stretches.clear();
    from = std::max(from, first);
    to = std::min(to, end);
    if (from >= to)
        return;
    stretches.push_back({from, to});
    for (std::int64_t number = PieceNumberOf(from) + 1; number < pieces.End(); ++number) {
        const Piece& piece = pieces[number];
        if (piece.first >= to)
            return;
        if (piece.joins)
            continue;
        stretches.back().end = piece.first;
        stretches.push_back({piece.first, to});
    }
}

std::int64_t TimeTrack::LowerBound(const Stretch& stretch, double x) const {
    return LowerBoundFrom(stretch.first, stretch, x);
}

std::int64_t TimeTrack::Guess(std::int64_t hint, const Stretch& stretch, double x) const {
    const Piece& piece = PieceOf(hint);
    if (!(piece.step > 0))
        return hint;
    const double position = std::ceil((x - piece.start) / piece.step);
    const double low = static_cast<double>(hint - piece.first);
    const double high = static_cast<double>(stretch.end - piece.first);
    if (!(position > low))
        return hint;
    return position >= high ? stretch.end : piece.first + static_cast<std::int64_t>(position);
}

std::int64_t TimeTrack::LowerBoundFrom(std::int64_t hint, const Stretch& stretch, double x) const {
    if (hint >= stretch.end || X(hint) >= x)
        return hint;
    // low: below x; high: not below x, or the end
    std::int64_t low = hint;
    std::int64_t high = stretch.end;
    const std::int64_t guess = Guess(hint, stretch, x);
    if (guess > hint && X(guess - 1) < x) {
        low = guess - 1;
        if (guess == high || X(guess) >= x)
            return guess;
    } else if (guess > hint)
        high = guess - 1;
    for (std::int64_t stride = 1; low + stride < high; stride *= 2) {
        if (X(low + stride) >= x) {
            high = low + stride;
            break;
        }
        low += stride;
    }
    while (high - low > 1) {
        const std::int64_t middle = low + (high - low) / 2;
        if (X(middle) < x)
            low = middle;
        else
            high = middle;
    }
    return high;
}

} // namespace tracelet
