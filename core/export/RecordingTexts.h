#pragma once

#include "core/export/TextExport.h"
#include "core/recordings/Recording.h"

#include <string>
#include <vector>

namespace tracelet {

/// What of a recording is to be written as text.
struct WantedTexts {
    bool analog = false;
    bool digital = false;
};

/// Writes "AI.xlt", with `plotNames` above its columns, and "DI.xlt" into `folder`, a composed text. A text
/// whose data could not all be read does not stay; the result has a line for each, "AI.xlt was not written:
/// …". `progress` is that of both texts together. Raises what the text file does.
[[nodiscard]] std::vector<std::string> WriteRecordingTexts(const Recording& recording,
                                                           const std::vector<std::string>& plotNames,
                                                           const std::string& folder, WantedTexts wanted,
                                                           const Progress& progress);

} // namespace tracelet
