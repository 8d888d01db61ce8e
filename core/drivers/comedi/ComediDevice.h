#pragma once

#include "core/base/RunTimeError.h"

#include <memory>
#include <string>

#include <comedilib.h>

namespace tracelet {

struct CloseComedi {
    void operator()(comedi_t* device) const { comedi_close(device); }
};
using ComediHandle = std::unique_ptr<comedi_t, CloseComedi>;

/// The library's last error as a user reads it.
[[nodiscard]] RunTimeError LastComediError();

/// A board behind its device node, opened when it is first needed and anew after it was lost.
class ComediDevice {
public:
    /// The node must lead to a board of these names whenever it is opened.
    ComediDevice(std::string deviceNode, std::string driverName, std::string boardName);

    /// The open board; raises when it cannot be opened.
    [[nodiscard]] comedi_t* Get();
    [[nodiscard]] bool IsOpen() const { return handle != nullptr; }

    /// Raises the library's last error, or that of `errorNumber`. A board that has gone is closed, so that
    /// the next use looks for it again.
    [[noreturn]] void Fail();
    [[noreturn]] void Fail(int errorNumber);

private:
    const std::string node;
    const std::string driver;
    const std::string board;
    ComediHandle handle;
};

} // namespace tracelet
