#include "core/recordings/SessionFile.h"

#include "core/disk/UserFolders.h"

#include <array>
#include <ctime>
#include <utility>

#include <nlohmann/json.hpp>

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

// What `json` tells of the board of an input; none for no such text.
SessionFacts::Board BoardOf(const Json& json, const char* input) {
    SessionFacts::Board board;
    const auto section = json.find(input);
    if (section == json.end() || !section->is_object())
        return board;
    const auto told = section->find("board");
    if (told == section->end() || !told->is_object())
        return board;
    if (const auto name = told->find("name"); name != told->end() && name->is_string())
        board.name = *name;
    if (const auto simulated = told->find("simulated"); simulated != told->end() && simulated->is_boolean())
        board.isSimulated = *simulated;
    return board;
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

std::string BoardsText(const SessionFacts::Board& analog, const SessionFacts::Board& digital) {
    std::string text;
    for (const SessionFacts::Board& board : {analog, digital}) {
        if (board.name.empty())
            continue;
        text += (text.empty() ? "" : ", ") + board.name + (board.isSimulated ? " (simulated)" : "");
    }
    return text;
}

SessionSummary ReadSessionSummary(const std::string& text) {
    SessionSummary summary;
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object())
        return summary;
    summary.boards = BoardsText(BoardOf(json, "analog"), BoardOf(json, "digital"));
    for (const auto& [name, member] : {std::pair("started", &summary.started), {"boot", &summary.boot}}) {
        if (const auto value = json.find(name); value != json.end() && value->is_string())
            *member = *value;
    }
    if (const auto rate = json.find("scansPerSecond"); rate != json.end() && rate->is_object()) {
        for (const char* name : {"reached", "asked"}) {
            const auto value = rate->find(name);
            if (summary.scansPerSecond <= 0.0 && value != rate->end() && value->is_number())
                summary.scansPerSecond = *value;
        }
    }
    return summary;
}

} // namespace tracelet
