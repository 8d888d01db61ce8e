#include "tests/core/crash/DiskJournal.h"

#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <span>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tracelet {
namespace {

namespace fs = std::filesystem;

struct Keeping {
    std::mutex mutex;
    bool isOn = false;
    DiskJournal journal;
    std::map<ino_t, DiskNode> nodes;
    DiskNode newest = NoNode;
    std::pair<std::string, std::string> instead;
};

Keeping& Kept() {
    static auto* kept = new Keeping; // threads that nobody joins still use it at the end
    return *kept;
}

std::vector<std::byte> ContentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::optional<ino_t> InodeAt(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 ? std::optional(status.st_ino) : std::nullopt;
}

DiskNode NodeOf(std::optional<ino_t> inode) {
    const auto known = inode ? Kept().nodes.find(*inode) : Kept().nodes.end();
    return known == Kept().nodes.end() ? NoNode : known->second;
}

DiskNode NodeOf(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 ? NodeOf(std::optional(status.st_ino)) : NoNode;
}

// A number is given again only when the file that had it is gone.
DiskNode NewNode(ino_t inode) {
    return Kept().nodes[inode] = ++Kept().newest;
}

struct Place {
    DiskNode folder = NoNode;
    std::string name;
    DiskNode node = NoNode; ///< that has the name
};

Place PlaceOf(const std::string& path, int folder = AT_FDCWD) {
    const fs::path native(path);
    Place place{.name = native.filename().string()};
    if (folder != AT_FDCWD && native.is_relative()) {
        place.folder = NodeOf(folder);
        struct stat status {};
        if (fstatat(folder, path.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            place.node = NodeOf(std::optional(status.st_ino));
    } else {
        place.folder = NodeOf(InodeAt(native.parent_path()));
        place.node = NodeOf(InodeAt(path));
    }
    return place;
}

void Add(DiskEvent event) {
    Kept().journal.events.push_back(std::move(event));
}

void AddNames(std::vector<DiskEvent::Change> changes, bool makesFolder = false) {
    if (changes.front().folder != NoNode)
        Add({.kind = DiskEvent::Names, .changes = std::move(changes), .makesFolder = makesFolder});
}

DiskNode Take(const fs::path& path, DiskTree& tree) {
    const DiskNode node = NewNode(InodeAt(path).value());
    if (!fs::is_directory(path)) {
        tree.files[node] = ContentOf(path);
        return node;
    }
    auto& names = tree.folders[node];
    for (const auto& entry : fs::directory_iterator(path))
        names[entry.path().filename()] = Take(entry.path(), tree);
    return node;
}

// Runs the system's call and, where a journal is kept and the call goes well, `note`.
template <typename Call, typename Note>
auto Noting(Call call, Note note) {
    Keeping& kept = Kept();
    const std::lock_guard lock(kept.mutex);
    const auto result = call();
    const int error = errno;
    if (kept.isOn && result >= 0)
        note(result);
    errno = error;
    return result;
}

// The system's own procedure of a name.
template <typename Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int NoteOpen(const char* path, int flags, int folder, auto call) {
    if (path == Kept().instead.first)
        return call(Kept().instead.second.c_str());
    if ((flags & O_CREAT) == 0)
        return call(path);
    Keeping& kept = Kept();
    const std::lock_guard lock(kept.mutex);
    const Place before = kept.isOn ? PlaceOf(path, folder) : Place{};
    const int handle = call(path);
    if (handle >= 0 && before.folder != NoNode && before.node == NoNode) {
        struct stat status {};
        if (fstat(handle, &status) == 0)
            AddNames({{before.folder, before.name, NewNode(status.st_ino)}});
    }
    return handle;
}

void NoteWrite(int handle, std::int64_t offset, std::span<const std::byte> bytes) {
    const DiskNode node = NodeOf(handle);
    if (node != NoNode)
        Add({.kind = DiskEvent::Write,
             .node = node,
             .offset = offset,
             .bytes = {bytes.begin(), bytes.end()}});
}

int NoteSync(int handle, auto call) {
    Keeping& kept = Kept();
    std::unique_lock lock(kept.mutex);
    const DiskNode node = kept.isOn ? NodeOf(handle) : NoNode;
    const std::size_t covers = kept.journal.events.size();
    lock.unlock();
    const int result = call();
    lock.lock();
    if (kept.isOn && result == 0 && node != NoNode)
        Add({.kind = DiskEvent::Sync, .node = node, .covers = covers});
    return result;
}

int NoteRemoval(const char* path, int folder, auto call) {
    Place place;
    return Noting(
        [&] {
            place = PlaceOf(path, folder);
            return call();
        },
        [&](int) {
            AddNames({{place.folder, place.name, NoNode}});
        });
}

int NoteRename(const char* from, const char* to, bool isExchange, auto call) {
    Place source;
    Place target;
    return Noting(
        [&] {
            source = PlaceOf(from);
            target = PlaceOf(to);
            return call();
        },
        [&](int) {
            AddNames({{source.folder, source.name, isExchange ? target.node : NoNode},
                      {target.folder, target.name, source.node}});
        });
}

} // namespace

std::size_t DiskJournal::Behind(const std::string& mark, std::size_t end) const {
    for (std::size_t at = end; at > 0; --at) {
        if (events[at - 1].kind == DiskEvent::Mark && events[at - 1].mark == mark)
            return at;
    }
    return 0;
}

void StartJournal(const std::string& root) {
    Keeping& kept = Kept();
    const std::lock_guard lock(kept.mutex);
    kept.journal = {};
    kept.nodes.clear();
    kept.journal.before.root = Take(root, kept.journal.before);
    kept.isOn = true;
}

void MarkJournal(const std::string& mark) {
    const std::lock_guard lock(Kept().mutex);
    Add({.kind = DiskEvent::Mark, .mark = mark});
}

DiskJournal StopJournal() {
    Keeping& kept = Kept();
    const std::lock_guard lock(kept.mutex);
    kept.isOn = false;
    return std::move(kept.journal);
}

void OpenInstead(const std::string& from, const std::string& to) {
    Kept().instead = {from, to};
}

} // namespace tracelet

// The system's calls, taken over.

using namespace tracelet; // NOLINT(google-build-using-namespace)

extern "C" {

int open(const char* path, int flags, ...) {
    static auto* const real = Real<int(const char*, int, ...)>("open");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return NoteOpen(path, flags, AT_FDCWD, [&](const char* at) { return real(at, flags, mode); });
}

ssize_t pwrite(int handle, const void* bytes, size_t count, off_t offset) {
    static auto* const real = Real<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    return Noting([&] { return real(handle, bytes, count, offset); },
                  [&](ssize_t written) {
                      NoteWrite(handle, offset,
                                {static_cast<const std::byte*>(bytes), static_cast<std::size_t>(written)});
                  });
}

ssize_t copy_file_range(int from, off_t* fromOffset, int to, off_t* toOffset, size_t count, unsigned flags) {
    static auto* const real = Real<ssize_t(int, off_t*, int, off_t*, size_t, unsigned)>("copy_file_range");
    const off_t start = *toOffset;
    return Noting([&] { return real(from, fromOffset, to, toOffset, count, flags); },
                  [&](ssize_t copied) {
                      std::vector<std::byte> bytes(static_cast<std::size_t>(copied));
                      if (pread(to, bytes.data(), bytes.size(), start) == copied)
                          NoteWrite(to, start, bytes);
                  });
}

int ftruncate(int handle, off_t size) noexcept {
    static auto* const real = Real<int(int, off_t)>("ftruncate");
    return Noting([&] { return real(handle, size); },
                  [&](int) {
                      if (const DiskNode node = NodeOf(handle); node != NoNode)
                          Add({.kind = DiskEvent::Cut, .node = node, .offset = size});
                  });
}

int fsync(int handle) {
    static auto* const real = Real<int(int)>("fsync");
    return NoteSync(handle, [&] { return real(handle); });
}

int fdatasync(int handle) {
    static auto* const real = Real<int(int)>("fdatasync");
    return NoteSync(handle, [&] { return real(handle); });
}

int rename(const char* from, const char* to) noexcept {
    static auto* const real = Real<int(const char*, const char*)>("rename");
    return NoteRename(from, to, false, [&] { return real(from, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    static auto* const real = Real<int(int, const char*, int, const char*, unsigned)>("renameat2");
    return NoteRename(from, to, (flags & RENAME_EXCHANGE) != 0,
                      [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int link(const char* from, const char* to) noexcept {
    static auto* const real = Real<int(const char*, const char*)>("link");
    return Noting([&] { return real(from, to); },
                  [&](int) {
                      const Place place = PlaceOf(to);
                      AddNames({{place.folder, place.name, place.node}});
                  });
}

int mkdir(const char* path, mode_t mode) noexcept {
    static auto* const real = Real<int(const char*, mode_t)>("mkdir");
    return Noting([&] { return real(path, mode); },
                  [&](int) {
                      const Place place = PlaceOf(path);
                      AddNames({{place.folder, place.name, NewNode(InodeAt(path).value())}}, true);
                  });
}

int unlink(const char* path) noexcept {
    static auto* const real = Real<int(const char*)>("unlink");
    return NoteRemoval(path, AT_FDCWD, [&] { return real(path); });
}

int unlinkat(int folder, const char* path, int flags) noexcept {
    static auto* const real = Real<int(int, const char*, int)>("unlinkat");
    return NoteRemoval(path, folder, [&] { return real(folder, path, flags); });
}

int rmdir(const char* path) noexcept {
    static auto* const real = Real<int(const char*)>("rmdir");
    return NoteRemoval(path, AT_FDCWD, [&] { return real(path); });
}
}
