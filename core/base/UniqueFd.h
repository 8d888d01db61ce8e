#pragma once

#include <utility>

namespace tracelet {

/// A descriptor of the system, closed with the object.
class UniqueFd {
public:
    static constexpr int None = -1;

    /// Owns what a call of the system gave; raises the description of errno when that is -1.
    explicit UniqueFd(int given);
    ~UniqueFd() { (void)Close(); }
    UniqueFd(UniqueFd&& other) noexcept : descriptor(std::exchange(other.descriptor, None)) {}
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    [[nodiscard]] int Get() const { return descriptor; } ///< None once closed

    /// Closes the descriptor, if there is one: 0, or the value of errno that says what was lost by it. POSIX
    /// leaves open whether a close that a signal interrupted has closed. Linux has, and gives the number to
    /// the next who asks for one: so it is never closed again, and an interruption is no error.
    [[nodiscard]] int Close() noexcept;

private:
    int descriptor;
};

} // namespace tracelet
