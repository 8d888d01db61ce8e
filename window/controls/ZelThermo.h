#pragma once

#include "core/boards/BoardList.h"
#include "core/boards/ChannelSettings.h"
#include "core/boards/Thermocouple.h"
#include "window/controls/BoardSelection.h"

#include <QObject>
#include <QString>

namespace tracelet {

/// Thermocouple control: reads one channel of an analog board as a temperature.
/// Shares device numbers with the analog control; a board without thermocouple inputs cannot be selected
/// (DeviceNumber then reads -1 and DeviceName "No Device"). Without a board settings are ignored; numbers and
/// codes outside what is said below raise, but a wiring that the board lacks is ignored.
class ZelThermo : public QObject {
    Q_OBJECT
    Q_PROPERTY(int DeviceNumber READ DeviceNumber WRITE SetDeviceNumber)
    Q_PROPERTY(QString DeviceName READ DeviceName)

public:
    explicit ZelThermo(QObject* parent = nullptr);
    ~ZelThermo() override;

    void SetBoards(const BoardList& boards);
    /// The boards so far in their places, and those that were found since; the selection stays.
    void AddBoards(const BoardList& boards);

    [[nodiscard]] std::int32_t DeviceNumber() const;
    void SetDeviceNumber(std::int32_t number);
    [[nodiscard]] QString DeviceName() const;
    [[nodiscard]] const AnalogBoardInfo& BoardInfo() const; ///< as ZelAI::BoardInfo

    [[nodiscard]] std::int32_t Channel() const; ///< physical channel, 0 to twice the board's count
    void SetChannel(std::int32_t channel);
    [[nodiscard]] std::int32_t SignalConnection() const; ///< wiring of the selected channel, 0 or 1
    void SetSignalConnection(std::int32_t code);
    [[nodiscard]] std::int32_t ThermoType() const; ///< 0 to 6: J, K, S, T, B, R, E
    void SetThermoType(std::int32_t code);
    [[nodiscard]] std::int32_t ThermoScale() const; ///< 0 to 3: Celsius, Fahrenheit, Rankine, Kelvin
    void SetThermoScale(std::int32_t code);
    [[nodiscard]] std::int32_t ExpChannel() const; ///< expansion-board channel, 0 to 15
    void SetExpChannel(std::int32_t channel);

    /// Input limits of a channel in volts: the board's narrowest range that covers them is used. Raises when
    /// none does.
    void SetInputLimits(std::int32_t channel, double low, double high);

    /// Range and wiring of a channel, for one who reads the board by itself; raises without such a channel.
    [[nodiscard]] ChannelSetup SetupOf(std::int32_t channel) const;
    [[nodiscard]] const std::shared_ptr<AnalogBoard>& Board() const { return selection.Board(); }

    /// Temperature of the selected channel in the selected scale. Raises when the board fails or the
    /// voltage lies outside the type's range; raises without a board.
    [[nodiscard]] double Temperature();

private:
    void RequireChannel(std::int32_t channel) const;

    /// What is set anew when a board is selected.
    struct Settings {
        std::int32_t channel = 0;
        ChannelSettings channels;
        ThermocoupleType type = ThermocoupleType::J;
        TemperatureScale scale = TemperatureScale::Celsius;
        std::int32_t expansion = 0;
    };

    BoardSelection<AnalogBoard> selection;
    Settings settings;
};

} // namespace tracelet
