#pragma once

#include "base/RunTimeError.h"

#include <exception>
#include <utility>

namespace tracelet {

/// Calls a board. Whatever its driver throws arrives as a std::exception.
template <typename Call>
decltype(auto) CallDriver(Call&& call) {
    try {
        return std::forward<Call>(call)();
    } catch (const std::exception&) {
        throw;
    } catch (...) {
        throw RunTimeError("The board's driver failed without saying why");
    }
}

} // namespace tracelet
