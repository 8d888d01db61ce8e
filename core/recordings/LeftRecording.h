#pragma once

#include "core/base/UniqueFd.h"
#include "core/recordings/ProjectInfo.h"
#include "core/recordings/SaveRecording.h"
#include "core/recordings/WorkFolder.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tracelet {

/// A recording that was not saved, in a work folder whose program is gone or in the folder of the last
/// unsaved one. It is held for this process as long as the object lives.
struct LeftRecording {
    WorkFolder folder;
    std::string sessionFile; ///< composed text; "" for none
    ProjectInfo info;        ///< scans and interval as far as the files hold them
    RecordingParts parts;    ///< what SaveRecording makes a saved recording of
    std::int64_t bytes = 0;  ///< of the samples
    std::string started;     ///< wall clock as in SessionFacts, else of the project file
    std::unique_ptr<UniqueFd> hold;
};

/// Where the session's file of a work folder lies in the state folder (native path, "" for none): "" where
/// either is not there.
[[nodiscard]] std::string SessionFileOf(const std::string& stateFolder, const std::string& workFolder);

/// The folder in the state folder that keeps the last unsaved recording; "" for "".
[[nodiscard]] std::string UnsavedFolder(const std::string& stateFolder);

/// Recordings left behind in work folders of `parents` and in the state folder (native paths, "" is left
/// out), newest first. Folders that a running program holds are not touched; those without a whole scan are
/// swept away, and so is the last unsaved recording after a week. What cannot be read is left alone.
[[nodiscard]] std::vector<LeftRecording> FindLeftRecordings(std::span<const std::string> parents,
                                                            const std::string& stateFolder);

/// Deletes the files of a recording that was left behind.
void Discard(const LeftRecording& left) noexcept;

/// Moves files of a recording, the project first (composed texts; names "X.last" become "X") into the folder
/// of the last unsaved one, in place of what it holds, with the text of the session's file. Onto another disk
/// they are copied if that is far from full. False when not all could be moved; then none is kept.
bool KeepUnsaved(std::span<const std::string> files, const std::string& sessionText,
                 const std::string& unsavedFolder) noexcept;

} // namespace tracelet
