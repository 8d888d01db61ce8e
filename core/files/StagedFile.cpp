#include "core/files/StagedFile.h"

#include "core/base/RunTimeError.h"
#include "core/files/FileOperations.h"
#include "core/files/Paths.h"
#include "core/files/SystemFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace tracelet {
namespace {

// A name can be taken from a file that may not be written; but such a file is meant to stay.
void RequireReplaceable(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && (!S_ISREG(status.st_mode) || eaccess(path.c_str(), W_OK) != 0))
        throw Fault::PermissionDenied();
}

} // namespace

StagedFile::StagedFile(std::string finalPlace) : place(std::move(finalPlace)), stage(place + ".saving") {}

StagedFile::~StagedFile() {
    if (isStaged)
        DeleteFile(stage);
}

void StagedFile::CopyFrom(std::string_view from, std::span<const std::byte> tail) {
    RequireReplaceable(NativePath(place));
    CopyWholeFile(from, stage);
    isStaged = true;
    if (tail.empty())
        return;
    SystemFile copy(stage, Disposition::OpenAlways);
    copy.Append(tail);
    copy.CloseChecked();
}

void StagedFile::Place() {
    if (!isStaged)
        return;
    RenameFile(stage, place);
    isStaged = false;
}

} // namespace tracelet
