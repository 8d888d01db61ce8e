#pragma once

#include "tests/support/FakeBoard.h"
#include "window/controls/ZelAI.h"

#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <numeric>
#include <thread>

namespace tracelet {

enum class Note : std::uint8_t { First, Second, Overrun, Failed };

struct Notification {
    Note note;
    std::vector<double> samples;
    bool operator==(const Notification&) const = default;
};

inline void PrintTo(const Notification& notification, std::ostream* out) {
    *out << "FSOX"[static_cast<int>(notification.note)] << testing::PrintToString(notification.samples);
}

/// Samples `first` … `first` + `count` - 1 of the fake board.
inline std::vector<double> Samples(std::uint64_t first, std::size_t count) {
    std::vector<double> samples(count);
    std::iota(samples.begin(), samples.end(), static_cast<double>(first));
    return samples;
}

inline Notification First(std::uint64_t first, std::size_t count) {
    return {Note::First, Samples(first, count)};
}
inline Notification Second(std::uint64_t first, std::size_t count) {
    return {Note::Second, Samples(first, count)};
}
inline const Notification Overrun{Note::Overrun, {}};
inline const Notification Failed{Note::Failed, {}};

/// A control on a board that delivers what it is fed; writes down what the control tells.
class BufferedInputTest : public testing::Test {
protected:
    BufferedInputTest() {
        boards.analog.push_back(EntryOf(fake));
        boards.analog.push_back(EntryOf(std::make_shared<FakeBoard>()));
        control->SetBoards(boards);
        control->SetDeviceNumber(0);
        Listen();
    }

    void Listen() {
        ZelAI* ai = control.get();
        QObject::connect(
            ai, &ZelAI::OnFirstBufferChange, ai,
            [this](auto raw, auto analog, std::int32_t count) { Half(Note::First, raw, analog, count); });
        QObject::connect(
            ai, &ZelAI::OnSecondBufferChange, ai,
            [this](auto raw, auto analog, std::int32_t count) { Half(Note::Second, raw, analog, count); });
        QObject::connect(ai, &ZelAI::OnOverrunNotice, ai, [this] { Heed({Note::Overrun, {}}); });
        QObject::connect(ai, &ZelAI::OnInputFailed, ai, [this] { Heed({Note::Failed, {}}); });
    }

    void Half(Note note, std::span<const std::int16_t> raw, std::span<const float> analog,
              std::int32_t count) {
        const bool isRaw = control->DataType() == RawCounts;
        EXPECT_EQ(raw.size(), isRaw ? static_cast<std::size_t>(count) : 0);
        EXPECT_EQ(analog.size(), isRaw ? 0 : static_cast<std::size_t>(count));
        Notification notification{note, {raw.begin(), raw.end()}};
        notification.samples.insert(notification.samples.end(), analog.begin(), analog.end());
        Heed(std::move(notification));
    }

    void Heed(Notification notification) {
        EXPECT_TRUE(!inside || stopping) << "a notification inside another";
        const bool nested = std::exchange(inside, true);
        heard.push_back(std::move(notification));
        if (onNotification)
            onNotification();
        inside = nested;
    }

    /// What waits may then come inside the notification that stops.
    bool Stop() {
        const bool nested = std::exchange(stopping, true);
        const bool stopped = control->StopBufferedAI(0);
        stopping = nested;
        return stopped;
    }

    void WaitFor(std::size_t count) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return heard.size() >= count; }, 20000)) << heard.size() << " came";
    }

    // Waits without running the event loop, as a blocked window does.
    void WaitUntilRead(std::uint64_t samples) {
        for (int i = 0; i < 20000 && (fake->SamplesRead() < samples || fake->HasNews()); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ASSERT_EQ(fake->SamplesRead(), samples);
        std::this_thread::sleep_for(
            std::chrono::milliseconds(10)); // for the reading thread to queue what it read
    }

    // Waits for so many more reads to begin.
    void WaitForReads(int more) {
        const int wanted = fake->Reads() + more;
        for (int i = 0; i < 20000 && fake->Reads() < wanted; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    void ExpectSilence() {
        const std::size_t before = heard.size();
        QTest::qWait(30);
        EXPECT_EQ(heard.size(), before);
    }

    // Halves of four samples, one channel, of which six can wait.
    void StartSmallQueue() {
        control->SetQueueLimit(64);
        control->StartBufferedAI(8, true);
    }

    std::shared_ptr<FakeBoard> fake = std::make_shared<FakeBoard>();
    BoardList boards;
    std::vector<Notification> heard;
    std::function<void()> onNotification;
    bool inside = false;
    bool stopping = false;
    std::unique_ptr<ZelAI> control = std::make_unique<ZelAI>();
};

} // namespace tracelet
