#pragma once

#include <thread>

namespace tracelet {

/// Reads the desktop's list of fonts on a thread of its own, which takes longer than all else that is done
/// before the window shows. Made before QApplication, which meanwhile connects to the display; destroyed
/// before the first text is measured. Does nothing where the list cannot be read ahead.
class FontWarmUp {
public:
    FontWarmUp();

private:
    std::jthread reader;
};

} // namespace tracelet
