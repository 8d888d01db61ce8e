#pragma once

#include "core/base/RunTimeError.h"
#include "core/boards/BoardList.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tracelet {

/// Holds reads up while it is closed; for tests, on any thread.
class Gate {
public:
    void Close() { Set(false); }
    void Open() { Set(true); }
    /// What a read does: waits until the gate is open.
    void Pass() {
        std::unique_lock lock(mutex);
        ++reads;
        reader = std::this_thread::get_id();
        changed.wait(lock, [&] { return isOpen; });
    }
    [[nodiscard]] int Reads() const {
        const std::lock_guard lock(mutex);
        return reads;
    }
    [[nodiscard]] std::thread::id Reader() const {
        const std::lock_guard lock(mutex);
        return reader;
    }

private:
    void Set(bool open) {
        const std::lock_guard lock(mutex);
        isOpen = open;
        changed.notify_all();
    }

    mutable std::mutex mutex;
    std::condition_variable changed;
    bool isOpen = true;
    int reads = 0; // begun
    std::thread::id reader;
};

/// A board whose reads wait at a gate. Channel c of a scan reads c + 0.5; each thermocouple gives `couple`.
class GatedAnalogBoard final : public AnalogBoard {
public:
    explicit GatedAnalogBoard(bool mayBlock = true, const std::string& name = "Gated") {
        info.name = name;
        info.channelCount = 4;
        info.resolution = 12;
        info.ranges = {{0, -10, 10}, {1, -0.005, 0.005}};
        info.thermocouples = true;
        info.lowestRate = 1;
        info.highestRate = 1e5;
        info.mayBlock = mayBlock;
    }

    AnalogBoardInfo info;
    Gate gate;
    std::string fault; // set while no read is under way
    ThermocoupleReading couple{1.0, 25.0};
    std::vector<ChannelSetup> scanned;
    std::vector<ChannelSetup> coupled;

    [[nodiscard]] const AnalogBoardInfo& Info() const override { return info; }
    void Open() override {}
    [[nodiscard]] double SettleSampleRate(double rate, std::int32_t) const override { return rate; }
    void ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) override {
        gate.Pass();
        if (!fault.empty())
            throw RunTimeError(fault);
        scanned.assign(channels.begin(), channels.end());
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = channels[i].channel + 0.5;
    }
    [[nodiscard]] ThermocoupleReading ReadThermocouple(const ChannelSetup& channel, std::int32_t,
                                                       ThermocoupleType) override {
        coupled.push_back(channel);
        return couple;
    }
    void StartStream(const StreamSetup&) override { throw RunTimeError("The board has no stream"); }
    [[nodiscard]] StreamRead ReadStream(StreamBuffer) override { return {0, StreamState::Ended}; }
    void StopStream() override {}
};

/// A digital board of two ports whose reads wait at a gate; port p reads 16 + p.
class GatedDigitalBoard final : public DigitalBoard {
public:
    GatedDigitalBoard() {
        info.name = "Gated";
        info.portCount = 2;
        info.mayBlock = true;
    }

    DigitalBoardInfo info;
    Gate gate;
    std::string fault; // set while no read is under way

    [[nodiscard]] const DigitalBoardInfo& Info() const override { return info; }
    void Open() override {}
    void ReadPorts(std::int32_t start, std::span<std::uint8_t> states) override {
        gate.Pass();
        if (!fault.empty())
            throw RunTimeError(fault);
        for (std::size_t i = 0; i < states.size(); ++i)
            states[i] = static_cast<std::uint8_t>(16 + start + static_cast<std::int32_t>(i));
    }
};

} // namespace tracelet
