#include "tests/core/crash/CrashState.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

namespace tracelet {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t Sector = 512;

std::size_t Throw(Dice& dice, std::size_t sides) {
    return static_cast<std::size_t>(dice() % sides);
}

bool IsTails(Dice& dice) {
    return Throw(dice, 2) == 0;
}

using Synced = std::map<DiskNode, std::size_t>; // by node: events in front of this index are on the disk

Synced SyncedAt(const DiskJournal& journal, std::size_t issued) {
    Synced synced;
    for (std::size_t i = 0; i < issued; ++i) {
        const DiskEvent& event = journal.events[i];
        if (event.kind == DiskEvent::Sync)
            synced[event.node] = std::max(synced[event.node], event.covers);
    }
    return synced;
}

bool IsSynced(const Synced& synced, DiskNode node, std::size_t index) {
    const auto found = synced.find(node);
    return found != synced.end() && index < found->second;
}

bool AreNamesSynced(const Synced& synced, const DiskEvent& event, std::size_t index) {
    return std::ranges::any_of(event.changes,
                               [&](const auto& change) { return IsSynced(synced, change.folder, index); });
}

void Write(std::vector<std::byte>& file, const DiskEvent& event) {
    const auto offset = static_cast<std::size_t>(event.offset);
    file.resize(std::max(file.size(), offset + event.bytes.size()));
    std::ranges::copy(event.bytes, file.begin() + event.offset);
}

// Some of its sectors, and perhaps the length.
void WriteTorn(std::vector<std::byte>& file, const DiskEvent& event, Dice& dice) {
    const auto size = static_cast<std::int64_t>(event.bytes.size());
    const bool isPrefix = IsTails(dice);
    const auto sectors = static_cast<std::size_t>((event.offset % Sector + size + Sector - 1) / Sector);
    std::size_t left = Throw(dice, sectors);
    for (std::int64_t at = 0; at < size;) {
        const std::int64_t end = std::min(size, at + Sector - (event.offset + at) % Sector);
        const bool isThere = isPrefix ? left > 0 : IsTails(dice);
        if (isThere)
            Write(file, {.offset = event.offset + at,
                         .bytes = {event.bytes.begin() + at, event.bytes.begin() + end}});
        left -= left > 0 ? 1 : 0;
        at = end;
    }
    if (IsTails(dice))
        file.resize(std::max(file.size(), static_cast<std::size_t>(event.offset + size)));
}

/// What becomes of the bytes of one file that were not synced.
enum class Fate { None, All, UpToPoint, Random };

struct Chance {
    Fate fate = Fate::None;
    std::size_t point = 0;
    bool isPassed = false; ///< what comes behind the point is torn, then missing
};

void Apply(const DiskEvent& event, bool isSynced, Chance& chance, std::size_t index,
           std::vector<std::byte>& file, Dice& dice) {
    const bool isWhole = isSynced || chance.fate == Fate::All ||
                         (chance.fate == Fate::UpToPoint && index < chance.point) ||
                         (chance.fate == Fate::Random && IsTails(dice));
    if (event.kind == DiskEvent::Cut) {
        if (isWhole)
            file.resize(static_cast<std::size_t>(event.offset));
    } else if (isWhole) {
        Write(file, event);
    } else if (chance.fate == Fate::UpToPoint ? !std::exchange(chance.isPassed, true)
                                              : chance.fate == Fate::Random && IsTails(dice)) {
        WriteTorn(file, event, dice);
    }
}

void ApplyNames(DiskTree& tree, const DiskEvent& event) {
    if (event.makesFolder)
        tree.folders[event.changes.front().node];
    for (const auto& [folder, name, node] : event.changes) {
        if (node == NoNode)
            tree.folders[folder].erase(name);
        else
            tree.folders[folder][name] = node;
    }
}

// In front of this index all changes of names are on the disk, if they come in their order.
std::size_t NamesPoint(const DiskJournal& journal, std::size_t issued, const Synced& synced, Dice& dice) {
    std::size_t least = 0;
    for (std::size_t i = 0; i < issued; ++i) {
        if (journal.events[i].kind == DiskEvent::Names && AreNamesSynced(synced, journal.events[i], i))
            least = i + 1;
    }
    return least + Throw(dice, issued - least + 1);
}

void MaterializeNode(const DiskTree& tree, DiskNode node, const fs::path& path) {
    if (const auto file = tree.files.find(node); file != tree.files.end()) {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(file->second.data()),
                   static_cast<std::streamsize>(file->second.size()));
        return;
    }
    const auto folder = tree.folders.find(node);
    if (folder == tree.folders.end()) { // made, and nothing came into it
        std::ofstream(path, std::ios::binary).flush();
        return;
    }
    fs::create_directories(path);
    for (const auto& [name, child] : folder->second)
        MaterializeNode(tree, child, path / name);
}

} // namespace

DiskTree AfterCut(const DiskJournal& journal, std::size_t issued, Dice& dice) {
    const Synced synced = SyncedAt(journal, issued);
    const bool inOrder = IsTails(dice);
    const std::size_t namesPoint = NamesPoint(journal, issued, synced, dice);
    std::map<DiskNode, Chance> chances;
    DiskTree tree = journal.before;
    for (std::size_t i = 0; i < issued; ++i) {
        const DiskEvent& event = journal.events[i];
        if (event.kind == DiskEvent::Names) {
            if (AreNamesSynced(synced, event, i) || (inOrder ? i < namesPoint : IsTails(dice)))
                ApplyNames(tree, event);
        } else if (event.kind == DiskEvent::Write || event.kind == DiskEvent::Cut) {
            const auto [chance, isNew] = chances.try_emplace(event.node);
            if (isNew)
                chance->second = {static_cast<Fate>(Throw(dice, 4)), Throw(dice, issued + 1)};
            Apply(event, IsSynced(synced, event.node, i), chance->second, i, tree.files[event.node], dice);
        }
    }
    return tree;
}

void Materialize(const DiskTree& tree, const std::string& folder) {
    MaterializeNode(tree, tree.root, folder);
}

} // namespace tracelet
