#include "core/input/SessionStatus.h"

#include "core/base/Convert.h"
#include "core/base/NumberText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tracelet {
namespace {

using Doing = SessionStatus::Doing;
using Tone = StatusField::Tone;

constexpr double RateSeconds = 10.0;
constexpr double LongestTold = 3.2e7; // seconds, a year

std::int32_t Clamped(std::int64_t count) {
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(count, 0, std::numeric_limits<std::int32_t>::max()));
}

StatusField DoingField(const SessionStatus& status) {
    const bool isFaulty = status.doing == Doing::Recording && !status.fault.empty();
    switch (isFaulty ? Doing::Running : status.doing) {
    case Doing::Ready:
        return {"Ready", "Ready"};
    case Doing::Running:
        return {"\u25cb Running, not recorded", "\u25cb Not recorded", 1};
    case Doing::Recording:
        return {"\u25cf Recording" + (status.recorded.empty() ? "" : " " + status.recorded + " only"),
                {},
                0,
                Tone::Recording};
    case Doing::Open:
        return {"Recording \u201c" + status.recording + "\u201d", status.recording, 4};
    case Doing::Playing:
        return {"\u25b6 Playing \u201c" + status.recording + "\u201d", "\u25b6 Playing", 4};
    case Doing::Paused:
        return {"Paused \u201c" + status.recording + "\u201d", "Paused", 4};
    }
    return {};
}

std::string Plural(std::int32_t count, const std::string& what) {
    return GroupedText(count) + ' ' + what + (count == 1 ? "" : "s");
}

StatusField LossField(const SessionStatus& status) {
    const LossCounts& losses = status.losses;
    std::string text;
    for (const auto& [count, what] :
         {std::pair(losses.scans, "scan"), {losses.overruns, "overrun"}, {losses.ticks, "missed tick"}}) {
        if (count > 0)
            text += (text.empty() ? "Lost: " : ", ") + Plural(count, what);
    }
    StatusField field{text, text, 1, Tone::Warning};
    if (status.lastLoss >= 0.0)
        field.text += ", last at " + ClockText(status.lastLoss);
    return field;
}

std::string TimeText(const SessionStatus& status) {
    switch (status.doing) {
    case Doing::Ready:
        return {};
    case Doing::Running:
    case Doing::Recording:
        return ClockText(status.time);
    case Doing::Open:
        return ClockText(status.length);
    case Doing::Playing:
    case Doing::Paused:
        return ClockText(status.time) + " of " + ClockText(status.length);
    }
    return {};
}

StatusField BoardsField(const std::vector<SessionFacts::Board>& boards) {
    const bool isSimulated = std::ranges::any_of(boards, &SessionFacts::Board::isSimulated);
    return {BoardsText(boards), isSimulated ? "simulated" : "", 3};
}

int LineWidth(const std::vector<StatusField>& fields, int gap,
              const std::function<int(const std::string&)>& width) {
    int line = -gap;
    for (const StatusField& field : fields)
        line += width(field.text) + gap;
    return line;
}

} // namespace

LossCounts CountsOf(const std::vector<SampleLoss>& losses) {
    LossCounts counts;
    for (const SampleLoss& loss : losses) {
        if (loss.scans == SampleLoss::Unknown)
            counts.overruns = SumOrHighest(counts.overruns, 1);
        else
            counts.scans = SumOrHighest(counts.scans, Clamped(loss.scans));
    }
    return counts;
}

void RateMeter::Add(double seconds, std::int64_t scans) {
    if (!marks.empty() && marks.back().scans == scans)
        return;
    marks.push_back({seconds, scans});
    while (marks.size() > 2 && marks[1].seconds <= seconds - RateSeconds)
        marks.pop_front();
}

double RateMeter::ScansPerSecond() const {
    if (marks.size() < 2 || marks.back().seconds <= marks.front().seconds)
        return 0.0;
    return static_cast<double>(marks.back().scans - marks.front().scans) /
           (marks.back().seconds - marks.front().seconds);
}

std::vector<StatusField> StatusFields(const SessionStatus& status) {
    std::vector<StatusField> fields{DoingField(status)};
    const auto add = [&fields](StatusField field) {
        if (!field.text.empty())
            fields.push_back(std::move(field));
    };
    add({status.fault.empty() ? "" : "Recording stopped: " + status.fault, "Recording stopped", 1,
         Tone::Warning});
    add({status.isUnsaved ? "Not saved" : "", "Not saved"});
    add({TimeText(status), {}, 2});
    if (status.losses.Any())
        add(LossField(status));
    if (status.scans > 0)
        add({Plural(status.scans, "scan"), {}, 6});
    if (status.asked > 0.0)
        add({PaceText(status.reached, status.asked) + " scans/s", {}, 7});
    if (status.bytes > 0)
        add({SizeText(status.bytes), {}, 8});
    if (status.diskLasts > 0.0 && status.diskLasts < LongestTold)
        add({"disk lasts " + TimeSpanText(status.diskLasts), {}, 5});
    add(BoardsField(status.boards));
    return fields;
}

void Shorten(std::vector<StatusField>& fields, int room, int gap,
             const std::function<int(const std::string&)>& width) {
    while (LineWidth(fields, gap, width) > room) {
        const auto first = std::ranges::max_element(fields, {}, &StatusField::rank);
        if (first == fields.end() || first->rank == 0)
            return;
        first->text = std::move(first->brief);
        first->rank = 0;
        if (first->text.empty())
            fields.erase(first);
    }
}

} // namespace tracelet
