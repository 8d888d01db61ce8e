#include "core/recordings/SessionFile.h"

#include "core/disk/UserFolders.h"
#include "core/files/Paths.h"
#include "core/files/SystemFile.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <exception>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace tracelet {
namespace {

using Json = nlohmann::ordered_json;

std::string LocalTime(const char* format, std::time_t time) {
    std::tm local{};
    std::array<char, 64> text{};
    if (localtime_r(&time, &local) == nullptr)
        return {};
    return {text.data(), std::strftime(text.data(), text.size(), format, &local)};
}

Json ToJson(const SessionFacts::Board& board) {
    return {{"name", board.name}, {"simulated", board.isSimulated}};
}

Json ToJson(const SessionFacts::Channel& channel) {
    Json json{{"channel", channel.number},      {"name", channel.name},
              {"unit", channel.unit},           {"range", {channel.low, channel.high}},
              {"rangeUnit", channel.rangeUnit}, {"wiring", channel.wiring}};
    if (!channel.thermocouple.empty())
        json["thermocouple"] = channel.thermocouple;
    return json;
}

Json ToJson(const SessionFacts::Line& line) {
    return {{"port", line.port}, {"line", line.line}, {"name", line.name}};
}

Json ToJson(const SampleLoss& loss) {
    Json json{{"nextScan", loss.nextScan}, {"reason", loss.reason}};
    if (loss.scans != SampleLoss::Unknown)
        json["scans"] = loss.scans;
    return json;
}

Json ToJson(const TimeMark& mark) {
    return {{"scan", mark.scan}, {"seconds", mark.seconds}};
}

template <typename Items>
Json Array(const Items& items) {
    Json array = Json::array();
    for (const auto& item : items)
        array.push_back(ToJson(item));
    return array;
}

// A member of an object, where it is there and is what the predicate says.
const Json* Find(const Json& object, const char* name, bool (Json::*is)() const noexcept) {
    const auto member = object.find(name);
    return member != object.end() && ((*member).*is)() ? &*member : nullptr;
}

std::optional<SampleLoss> LossOf(const Json& json) {
    const Json* const nextScan = Find(json, "nextScan", &Json::is_number_unsigned);
    const Json* const reason = Find(json, "reason", &Json::is_string);
    if (!nextScan || !reason || nextScan->get<std::uint64_t>() > std::numeric_limits<std::int32_t>::max())
        return {};
    SampleLoss loss{nextScan->get<std::int32_t>(), SampleLoss::Unknown, reason->get<std::string>()};
    if (const Json* scans = Find(json, "scans", &Json::is_number_unsigned))
        loss.scans = scans->get<std::int64_t>();
    return loss;
}

std::optional<SessionFacts::Board> BoardOf(const Json& json) {
    const Json* const board = Find(json, "board", &Json::is_object);
    const Json* const name = board ? Find(*board, "name", &Json::is_string) : nullptr;
    if (!name)
        return {};
    const Json* const simulated = Find(*board, "simulated", &Json::is_boolean);
    return SessionFacts::Board{*name, simulated && simulated->get<bool>()};
}

} // namespace

std::string WallClock(std::time_t time) {
    std::string text = LocalTime("%Y-%m-%dT%H:%M:%S%z", time);
    if (text.size() > 2)
        text.insert(text.size() - 2, ":"); // the offset's minutes
    return text;
}

std::string TimeZoneName() {
    return LocalTime("%Z", std::time(nullptr));
}

std::string SessionText(const SessionFacts& facts, const SessionEvents& events, std::int32_t scanCount,
                        double scanInterval) {
    Json json{{"format", 1},
              {"program", "Tracelet " TRACELET_VERSION},
              {"started", facts.started},
              {"timeZone", facts.timeZone},
              {"boot", BootId()},
              {"input", facts.isPolled ? "polled" : "paced"},
              {"scansPerSecond",
               {{"asked", facts.asked}, {"reached", scanInterval > 0.0 ? 1.0 / scanInterval : 0.0}}},
              {"scans", scanCount}};
    if (!facts.analogBoard.name.empty())
        json["analog"] = {{"board", ToJson(facts.analogBoard)}, {"channels", Array(facts.channels)}};
    if (!facts.digitalBoard.name.empty())
        json["digital"] = {{"board", ToJson(facts.digitalBoard)}, {"lines", Array(facts.lines)}};
    json["losses"] = Array(events.losses);
    if (facts.isPolled)
        json["times"] = Array(events.times);
    // Names come from boards and people: what is no UTF-8 in them is replaced.
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string BoardsText(const std::vector<SessionFacts::Board>& boards) {
    std::string text;
    for (auto board = boards.begin(); board != boards.end(); ++board) {
        if (board->name.empty() || std::find(boards.begin(), board, *board) != board)
            continue;
        text += (text.empty() ? "" : ", ") + board->name + (board->isSimulated ? " (simulated)" : "");
    }
    return text;
}

SessionSummary ReadSessionSummary(const std::string& text) {
    SessionSummary summary;
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object())
        return summary;
    for (const auto& [name, member] : {std::pair("started", &summary.started), {"boot", &summary.boot}}) {
        if (const Json* value = Find(json, name, &Json::is_string))
            *member = *value;
    }
    if (const Json* rate = Find(json, "scansPerSecond", &Json::is_object)) {
        for (const char* name : {"reached", "asked"}) {
            const Json* const value = Find(*rate, name, &Json::is_number);
            if (summary.scansPerSecond <= 0.0 && value)
                summary.scansPerSecond = *value;
        }
    }
    for (const char* input : {"analog", "digital"}) {
        const Json* const facts = Find(json, input, &Json::is_object);
        if (const auto board = facts ? BoardOf(*facts) : std::nullopt)
            summary.boards.push_back(*board);
    }
    if (const Json* losses = Find(json, "losses", &Json::is_array)) {
        for (const Json& told : *losses)
            if (auto loss = told.is_object() ? LossOf(told) : std::nullopt)
                summary.losses.push_back(std::move(*loss));
    }
    return summary;
}

std::string ModificationTime(const std::string& path) {
    struct stat status {};
    return stat(NativePath(path).c_str(), &status) == 0 ? WallClock(status.st_mtime) : std::string();
}

std::string SessionTextOf(const std::string& path) {
    constexpr std::int64_t Longest = 64 << 20; // bytes; names and losses have limits
    try {
        const SystemFile file(path, Disposition::OpenExisting);
        if (file.Size() > Longest)
            return {};
        std::string text(static_cast<std::size_t>(file.Size()), '\0');
        text.resize(file.ReadAt(0, std::as_writable_bytes(std::span(text))));
        return text;
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace tracelet
