#pragma once

#include "core/base/UniqueFd.h"
#include "core/boards/Board.h"
#include "core/drivers/comedi/ComediCommand.h"
#include "core/drivers/comedi/ComediDevice.h"
#include "core/drivers/comedi/ScanStage.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tracelet {

/// An analog input subdevice of a Comedi board. Hardware-paced input is a streaming command, read from the
/// driver's buffer without blocking. After an overrun the command is started anew for what is left.
class ComediAnalogBoard final : public AnalogBoard {
public:
    /// Looks at a subdevice; raises when it has no usable range.
    ComediAnalogBoard(const std::string& node, comedi_t* probed, unsigned int subdeviceNumber);
    ~ComediAnalogBoard() override;
    ComediAnalogBoard(const ComediAnalogBoard&) = delete;
    ComediAnalogBoard& operator=(const ComediAnalogBoard&) = delete;

    [[nodiscard]] const AnalogBoardInfo& Info() const override { return info; }
    void Open() override;
    [[nodiscard]] double SettleSampleRate(double rate, std::int32_t channelCount) const override;
    void ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) override;
    [[nodiscard]] ThermocoupleReading ReadThermocouple(const ChannelSetup& channel, std::int32_t expansion,
                                                       ThermocoupleType type) override;
    void StartStream(const StreamSetup& setup) override;
    [[nodiscard]] StreamRead ReadStream(StreamBuffer buffer) override;
    void StopStream() override;

private:
    /// How the driver sees a channel of a scan.
    struct DriverChannel {
        unsigned int packed = 0;
        comedi_range range{};
        lsampl_t maxdata = 0;
    };
    /// A running acquisition.
    struct Run {
        comedi_cmd command{};
        std::vector<unsigned int> packed;
        std::vector<DriverChannel> channels;
        ScanStage stage;
        SampleForm form = AnalogValues;
        std::uint64_t left = 0; // samples until the end
        bool over = false;      // the driver has delivered what it was asked for
        bool overrun = false;   // the driver gave up, its buffer being full
    };

    void FindRanges(comedi_t* probed);
    void FindWiring(comedi_t* probed);
    void FindPacing();
    [[nodiscard]] bool Takes(const CommandWish& wish) const;
    [[nodiscard]] CommandWish PlainWish(double rate, std::int32_t channelCount) const;
    [[nodiscard]] double SettledRate(double rate, std::int32_t channelCount) const;
    [[nodiscard]] comedi_t* Opened() const;
    [[nodiscard]] DriverChannel ToDriver(const ChannelSetup& channel) const;
    [[nodiscard]] std::vector<DriverChannel> ToDriver(std::span<const ChannelSetup> channels) const;
    [[nodiscard]] unsigned int Reference(std::int32_t connection) const;
    [[nodiscard]] CommandWish WishOf(const StreamSetup& setup, std::span<const DriverChannel> channels) const;
    void PrepareReading();
    void DrainWakeUp() const;
    [[nodiscard]] bool Wait(std::unique_lock<std::mutex>& lock);
    void Fetch();
    [[nodiscard]] std::size_t HandOver(const StreamBuffer& buffer);
    [[nodiscard]] StreamState StateBehind();
    void Restart();
    void Cancel();

    const unsigned int subdevice;
    const UniqueFd wakeUp; // eventfd that ends the wait of ReadStream
    AnalogBoardInfo info;
    std::int32_t bits = 0; // of the converter
    std::size_t sampleBytes = 2;
    bool streams = false; // the subdevice takes commands
    unsigned int singleEndedReference = AREF_GROUND;
    bool isOpen = false;

    mutable std::mutex mutex; // of all below
    mutable ComediDevice device;
    std::optional<Run> run;
    std::uint64_t runNumber = 0; // tells a waiting reader that its stream is no more
};

} // namespace tracelet
