#pragma once

#include "core/base/UniqueFd.h"

#include <array>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace tracelet {

/// A serial line with its far end.
class SerialLine {
public:
    SerialLine() {
        int far = -1;
        int near = -1;
        std::array<char, 64> name{};
        if (openpty(&far, &near, name.data(), nullptr, nullptr) != 0)
            throw std::runtime_error("no pseudo-terminal");
        end = std::make_unique<UniqueFd>(far);
        close(near);
        path = name.data();
        termios raw{};
        tcgetattr(far, &raw);
        cfmakeraw(&raw);
        tcsetattr(far, TCSANOW, &raw);
    }
    void Write(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t count = write(end->Get(), text.data(), text.size());
            if (count > 0)
                text.remove_prefix(static_cast<std::size_t>(count));
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    void Unplug() { end.reset(); }
    [[nodiscard]] speed_t Speed() const {
        termios now{};
        tcgetattr(end->Get(), &now);
        return cfgetispeed(&now);
    }

    std::string path;

private:
    std::unique_ptr<UniqueFd> end;
};

} // namespace tracelet
