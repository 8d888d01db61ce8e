#pragma once

#include "core/files/FileOperations.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace tracelet {

/// What a saved recording is made of. Paths are composed texts, as files/Paths.h describes.
struct RecordingParts {
    static constexpr std::int64_t All = std::numeric_limits<std::int64_t>::max();

    std::vector<std::byte> project; ///< header and stop record; saving adds the paths
    std::string analog{};           ///< file of the analog data, "" for none
    std::int64_t analogBytes = All; ///< of it that belong to the recording
    std::string digital{};
    std::int64_t digitalBytes = All;
    std::string session{}; ///< text of the session's file, "" for none
};

/// Saves a recording into `folder` (composed text), which is made where it is not there: "Project.tlp",
/// "AI.tld", "DI.tld" and "Session.json". All or nothing, at every instant: what stands there stays until all
/// of this is on the disk, and then gives way to it at once, where the system can exchange folders, else file
/// after file, the project last. All is on the disk when this returns. `progress` is told of the data's
/// bytes; what it raises ends the saving. A folder that was made for nothing goes again.
///
/// Raises when the project cannot be written; gives the reason when something else cannot, "" when all went.
[[nodiscard]] std::string SaveRecording(const RecordingParts& parts, const std::string& folder,
                                        const CopyProgress& progress = {});

} // namespace tracelet
