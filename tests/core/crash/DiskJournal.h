#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tracelet {

/// A file or folder, whatever its names.
using DiskNode = int;
constexpr DiskNode NoNode = -1;

/// What is on a disk: folders with their names, files with their bytes.
struct DiskTree {
    DiskNode root = NoNode;
    std::map<DiskNode, std::map<std::string, DiskNode>> folders;
    std::map<DiskNode, std::vector<std::byte>> files;
};

/// Something that was asked of the system.
struct DiskEvent {
    enum Kind {
        Names, ///< names change, all at once
        Write,
        Cut,
        Sync, ///< all of `node` that was asked for before the event `covers` is on the disk
        Mark  ///< the test has come so far
    };
    struct Change {
        DiskNode folder = NoNode;
        std::string name;
        DiskNode node = NoNode; ///< none takes the name away
    };

    Kind kind = Mark;
    DiskNode node = NoNode;
    std::int64_t offset = 0; ///< where Write begins, or the length that Cut gives
    std::vector<std::byte> bytes{};
    std::vector<Change> changes{};
    bool makesFolder = false;
    std::size_t covers = 0;
    std::string mark{};
};

struct DiskJournal {
    DiskTree before; ///< on the disk when the journal began
    std::vector<DiskEvent> events;

    /// Index of the event behind the last mark of this name in front of `end`, 0 where there is none.
    [[nodiscard]] std::size_t Behind(const std::string& mark, std::size_t end) const;
};

// One journal is kept at a time, of all threads. The system's own calls are taken over for it, as far as
// programs of this system use them on files.

/// Begins a journal of what happens below the folder `root` (a native path).
void StartJournal(const std::string& root);
void MarkJournal(const std::string& mark);
[[nodiscard]] DiskJournal StopJournal();

/// Until it is told otherwise, by "", those who open the file `from` get `to`.
void OpenInstead(const std::string& from, const std::string& to);

} // namespace tracelet
