#pragma once

#include "core/base/RunTimeError.h"

#include <exception>
#include <utility>

namespace tracelet {

/// What is said of a board that fails without a word.
inline constexpr const char* WithoutReason = "The board's driver failed without saying why";

/// Calls a board. Whatever its driver throws arrives as a std::exception.
template <typename Call>
decltype(auto) CallDriver(Call&& call) {
    try {
        return std::forward<Call>(call)();
    } catch (const std::exception&) {
        throw;
    } catch (...) {
        throw RunTimeError(WithoutReason);
    }
}

} // namespace tracelet
