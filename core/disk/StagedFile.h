#pragma once

#include "core/files/FileOperations.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace tracelet {

/// A file that is written beside its place under another name and takes the place only when it is whole, so
/// that what stands there stays until then. Without Place, nothing is left of it when the object goes.
class StagedFile {
public:
    /// `place` is a text as files/Paths.h describes.
    explicit StagedFile(std::string place);
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    /// Copies the regular file `from`, or only the first `most` bytes. Raises what makes it fail, "Permission
    /// denied" too when what stands at the place is no file or may not be written.
    void CopyFrom(std::string_view from, std::int64_t most = std::numeric_limits<std::int64_t>::max(),
                  const CopyProgress& progress = {});

    /// Holds these bytes. Raises like CopyFrom.
    void Write(std::span<const std::byte> bytes);

    /// Waits until what it holds is on the disk; does nothing without a copy. Raises what the system says.
    void Sync() const;

    /// Takes the place; does nothing without a copy. Raises what the system says.
    void Place();

private:
    std::string place;
    std::string stage;
    bool isStaged = false;
};

} // namespace tracelet
