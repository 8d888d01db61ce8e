#include "window/settings/dlgGainRange.h"

#include "core/boards/BoardFamily.h"
#include "core/settings/ChannelTable.h"
#include "core/settings/RangeText.h"
#include "window/ground/Handler.h"
#include "window/main/frmMain.h"
#include "window/settings/DialogParts.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {

dlgGainRange::dlgGainRange(QWidget& owner, frmMain& mainWindow)
    : QDialog(&owner), main(mainWindow), ZelAI1(*mainWindow.ZelAI1),
      ZelThermo1(*mainWindow.ZelThermo1), tables{main.M1.AIChanIsThermo, main.M1.AIThermoType,
                                                 main.M1.AIThermoScale, main.M1.AIThermoExpChan} {
    setObjectName(u"dlgGainRange"_s);
    setWindowTitle(u"Input Range"_s);
    Build();
    SetUpTips();
    ShowFirstChannel();
    ConnectWidgets();
}

void dlgGainRange::ShowFirstChannel() {
    FillLists();
    RefreshGainTable();
    lstViewGain->setCurrentItem(lstViewGain->topLevelItem(0));
    SelectOnBoth(0);
    ShowConnection(ZelAI1.SignalConnection());
    ShowChannel(0);
    ProbeThermocouples();
    ProbeConnection();
}

void dlgGainRange::FillLists() {
    for (std::int32_t channel = 0; channel < ZelAI1.MaxChannelCount(); ++channel)
        new QTreeWidgetItem(lstViewGain);
    QStringList ranges;
    for (const InputRange& range : ZelAI1.BoardInfo().ranges)
        ranges.append(QString::fromStdString(RangeText(range)));
    Refill(ComboRange, ranges);
    Refill(ComboTCType, {u"J"_s, u"K"_s, u"S"_s, u"T"_s, u"B"_s, u"R"_s, u"E"_s});
    Refill(ComboScale, {u"Celsius"_s, u"Fahrenheit"_s, u"Rankine"_s, u"Kelvin"_s});
    QStringList expansionChannels;
    for (int channel = 0; channel < 16; ++channel)
        expansionChannels.append(QString::number(channel));
    Refill(ComboExpChan, expansionChannels);
}

// The thermocouple control takes the board over when it can read its thermocouples.
void dlgGainRange::ProbeThermocouples() {
    if (!OffersThermocouples(ZelAI1.BoardInfo())) {
        EnableAIThermoFrame(false);
        return;
    }
    const std::int32_t previous = ZelThermo1.DeviceNumber();
    ZelThermo1.SetDeviceNumber(ZelAI1.DeviceNumber());
    const bool readsThermocouples = ZelThermo1.DeviceName() != u"No Device";
    if (!readsThermocouples)
        ZelThermo1.SetDeviceNumber(previous);
    EnableAIThermoFrame(readsThermocouples);
}

// Only a board that takes the opposite wiring offers the choice. A change of wiring may reset the range of
// the pair, so that of channel 1 is put back.
void dlgGainRange::ProbeConnection() {
    constexpr std::int32_t Neighbour = 1;
    const std::int32_t saved = ZelAI1.SignalConnection();
    std::int32_t code = 0;
    double first = 0.0;
    double second = 0.0;
    if (ZelAI1.MaxChannelCount() > Neighbour)
        ZelAI1.GetChannelRange(code, first, second, Neighbour);
    const std::int32_t opposite = saved == SingleEnded ? Differential : SingleEnded;
    ZelAI1.SetSignalConnection(opposite);
    if (IsUnpairedFamily(ZelAI1.BoardInfo()) || ZelAI1.SignalConnection() != opposite)
        EnableSignalConnectionFrame(false);
    ZelAI1.SetSignalConnection(saved);
    if (first != 0.0 || second != 0.0)
        ZelAI1.SetChannelRange(first, second, Neighbour);
}

void dlgGainRange::EnableThermoSetting(bool enable) {
    EnableAll({FrameScale, LabelTCType, LabelScale, ComboTCType, ComboScale, FrameThermo, LabelExpChan,
               ComboExpChan},
              enable);
}

void dlgGainRange::EnableSignalConnectionFrame(bool enable) {
    EnableAll({FrameSignalConnection, optSingle, optDifferent}, enable);
}

void dlgGainRange::EnableAIThermoFrame(bool enable) {
    EnableAll({OptAI, OptThermo, FrameAIorThermo}, enable);
}

void dlgGainRange::EnableRange(bool enable) {
    EnableAll({FrameAIRange, ComboRange}, enable);
}

// A thermocouple control that stands on another board, or on none, has no such channel.
void dlgGainRange::SelectOnBoth(std::int32_t channel) {
    ZelAI1.SetChannel(channel);
    if (ZelThermo1.DeviceNumber() == ZelAI1.DeviceNumber())
        ZelThermo1.SetChannel(channel);
}

// Selects the channel on the control that reads it.
std::int32_t dlgGainRange::ConnectionOf(std::int32_t channel) {
    if (tables.isThermo[channel]) {
        ZelThermo1.SetChannel(channel);
        return ZelThermo1.SignalConnection();
    }
    ZelAI1.SetChannel(channel);
    return ZelAI1.SignalConnection();
}

ChannelFacts dlgGainRange::FactsOf(std::int32_t channel) {
    ChannelFacts facts;
    facts.connection = ConnectionOf(channel);
    facts.isThermo = tables.isThermo[channel];
    facts.thermoType = tables.type[channel];
    facts.expChan = tables.expChan[channel];
    if (!facts.isThermo)
        facts.range = ZelAI1.RangeOf(channel);
    return facts;
}

void dlgGainRange::RefreshGainTable() {
    const std::int32_t selected = ZelAI1.Channel();
    std::vector<ChannelFacts> channels;
    channels.reserve(static_cast<std::size_t>(ZelAI1.MaxChannelCount()));
    for (std::int32_t channel = 0; channel < ZelAI1.MaxChannelCount(); ++channel)
        channels.push_back(FactsOf(channel));
    SelectOnBoth(selected);
    const std::vector<ChannelRow> rows = ChannelRows(ZelAI1.BoardInfo(), channels, main.M1.ThermoTypeNames);
    for (int row = 0; row < lstViewGain->topLevelItemCount(); ++row) {
        for (int column = 0; column < ChannelColumns; ++column)
            lstViewGain->topLevelItem(row)->setText(
                column, QString::fromStdString(
                            rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]));
    }
}

void dlgGainRange::ShowConnection(std::int32_t code) {
    Show(code != SingleEnded ? optDifferent : optSingle, true);
}

void dlgGainRange::ShowKind(std::int32_t channel) {
    Show(tables.isThermo[channel] ? OptThermo : OptAI, true);
}

// Shows what is stored for a channel; nothing is chosen by that.
void dlgGainRange::ShowChannel(std::int32_t channel) {
    const bool thermo = tables.isThermo[channel];
    ShowKind(channel);
    EnableThermoSetting(thermo);
    EnableRange(!thermo);
    Show(ComboExpChan, tables.expChan[channel]);
    Show(ComboTCType, tables.type[channel]);
    Show(ComboScale, tables.scale[channel]);
    if (!thermo)
        SelectRangeOf(channel);
}

void dlgGainRange::SelectRangeOf(std::int32_t channel) {
    Show(ComboRange, ComboRange->findText(QString::fromStdString(RangeText(ZelAI1.RangeOf(channel)))));
}

void dlgGainRange::lstViewGain_ItemClick(int row) {
    SelectOnBoth(row);
    ShowConnection(ConnectionOf(row));
    ShowChannel(row);
}

void dlgGainRange::ComboRange_Click() {
    std::int32_t code = 0;
    double first = 0.0;
    double second = 0.0;
    ZelAI1.FirstRange(code, first, second);
    for (int i = 0; i < ComboRange->currentIndex(); ++i)
        ZelAI1.NextRange(code, first, second);
    ZelAI1.SetChannelRange(first, second, ZelAI1.Channel());
    RefreshGainTable();
}

void dlgGainRange::ComboTCType_Click() {
    const std::int32_t channel = ZelAI1.Channel();
    ZelThermo1.SetChannel(channel);
    ChooseType(tables, channel, static_cast<std::uint8_t>(ComboTCType->currentIndex()),
               ZelThermo1.SignalConnection());
    RefreshGainTable();
}

void dlgGainRange::ComboScale_Click() {
    ChooseScale(tables, ZelAI1.MaxChannelCount(), static_cast<std::uint8_t>(ComboScale->currentIndex()));
}

void dlgGainRange::ComboExpChan_Click() {
    const std::int32_t channel = ZelAI1.Channel();
    tables.expChan[channel] = static_cast<std::uint8_t>(ComboExpChan->currentIndex());
    lstViewGain->topLevelItem(channel)->setText(ExpansionName, ComboExpChan->currentText());
}

void dlgGainRange::optSingle_Click() {
    if (!optSingle->isEnabled())
        return;
    ZelThermo1.SetSignalConnection(SingleEnded);
    ZelAI1.SetSignalConnection(SingleEnded);
    RefreshGainTable();
}

void dlgGainRange::optDifferent_Click() {
    if (!optDifferent->isEnabled() || IsUnpairedFamily(ZelAI1.BoardInfo()))
        return;
    const std::int32_t channel = ZelAI1.Channel();
    ZelThermo1.SetSignalConnection(Differential);
    ZelAI1.SetSignalConnection(Differential);
    ShareWithPartner(tables, channel);
    if (ShowsChoiceAfterPairing(ZelThermo1.BoardInfo()))
        ShowKind(channel);
    RefreshGainTable();
}

// The pair of a channel that turns analog is looked up on the thermocouple control, that of one that turns
// thermocouple on the analog control: each on the control that has read the channel so far.
void dlgGainRange::OptAI_Click() {
    EnableThermoSetting(false);
    EnableRange(true);
    const std::int32_t channel = ZelAI1.Channel();
    ChooseKind(tables, ZelAI1.BoardInfo(), channel, false, ZelThermo1.Channel(),
               ZelThermo1.SignalConnection());
    RefreshGainTable();
    SelectRangeOf(channel);
}

void dlgGainRange::OptThermo_Click() {
    EnableThermoSetting(true);
    EnableRange(false);
    const std::int32_t channel = ZelAI1.Channel();
    ChooseKind(tables, ZelAI1.BoardInfo(), channel, true, channel, ZelAI1.SignalConnection());
    RefreshGainTable();
}

void dlgGainRange::OKButton_Click() {
    accept();
}

} // namespace tracelet
