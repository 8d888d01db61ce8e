#pragma once

#include "core/recordings/ProjectInfo.h"
#include "core/recordings/RecordingReader.h"
#include "core/recordings/SessionFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tracelet {

/// A recording that is open. A data file that it has not, or that did not open, counts as absent: it is
/// closed and reads as empty.
struct Recording {
    std::string project{}; ///< path of its project
    ProjectInfo info{};
    SystemFile analogFile{};
    SystemFile digitalFile{};
    DigitalHeader digitalHeader{};             ///< no ports without the file
    std::vector<std::int32_t> lines{};         ///< recorded lines in plot order, port × 8 + line
    std::vector<std::string> foundBeside{};    ///< names of data files that lay beside the project instead
    std::optional<RunTimeError> analogFault{}; ///< why the file of an input that was recorded did not open
    std::optional<RunTimeError> digitalFault{};
    SessionSummary session{}; ///< of the session's file beside the project, where there is one

    void CloseFiles() noexcept; ///< all that was read of them stays
};

/// What people call the recording of this project: its folder, or the file where that has no usual name.
[[nodiscard]] std::string RecordingName(const std::string& project);

/// Opens the project at the path `project` and the data files that its flags name: each at its path or
/// else, as when the folder was moved, under its name beside the project. `analog` is what happens with an
/// analog file that is in neither place. Raises what ReadProjectFile does; a data file that does not open is
/// told by its fault instead.
[[nodiscard]] Recording OpenRecording(const std::string& project, Disposition analog);

} // namespace tracelet
