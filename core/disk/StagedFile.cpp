#include "core/disk/StagedFile.h"

#include "core/base/RunTimeError.h"
#include "core/disk/DiskSync.h"
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

void StagedFile::CopyFrom(std::string_view from, std::int64_t most, const CopyProgress& progress) {
    RequireReplaceable(NativePath(place));
    CopyWholeFile(from, stage, most, progress);
    isStaged = true;
}

void StagedFile::Write(std::span<const std::byte> bytes) {
    RequireReplaceable(NativePath(place));
    SystemFile file(stage, Disposition::CreateAlways);
    isStaged = true;
    file.Write(bytes);
    file.CloseChecked();
}

void StagedFile::Sync() const {
    if (isStaged)
        SyncFile(stage);
}

void StagedFile::Place() {
    if (!isStaged)
        return;
    RenameFile(stage, place);
    isStaged = false;
}

} // namespace tracelet
