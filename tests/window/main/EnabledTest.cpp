// What is enabled after everything that can happen, as a user makes it happen.

#include "tests/window/history/HistoryWindowTest.h"

#include "window/settings/frmSetting.h"

#include <functional>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Box = MessageBoxes::Box;

class Enabled : public HistoryWindowTest {
protected:
    struct Step {
        const char* what;
        std::function<void()> happens;
        const char* enabled; ///< as States tells it
    };

    void Walk(const std::vector<Step>& steps) {
        for (const Step& step : steps) {
            SCOPED_TRACE(step.what);
            step.happens();
            EXPECT_EQ(States(), step.enabled);
        }
    }

    /// "+" for each group of widgets that is enabled, "-" for one that is not, whatever its frame is.
    [[nodiscard]] std::string States() const {
        const std::vector<std::vector<QWidget*>> groups = {
            {window->FrameSet},
            {window->FrameCmd},
            {window->CkAISave2Disk},
            {window->CkDISave2Disk},
            {window->BtnSet, window->ZelButton1, window->ZelButton2, window->LabelAI, window->LabelAIOn,
             window->LabelDI, window->LabelDIOn, window->BtnHistory},
            {}, // a blank
            {window->BtnStart},
            {window->BtnModeSwitch},
            {window->BtnSaveAs},
            {},
            {window->FrameHis},
            {window->ChkPlay, window->BtnAccelerate, window->BtnStop, window->Label1, window->Label2,
             window->Label6, window->Label14, window->Label15, window->Label16},
            {window->BtnHisConvert}};
        std::string states;
        for (const std::vector<QWidget*>& group : groups) {
            const auto isOff = [](const QWidget* widget) {
                return widget->testAttribute(Qt::WA_ForceDisabled);
            };
            const auto off = std::ranges::count_if(group, isOff);
            const bool isWhole = off == 0 || off == std::ssize(group);
            states += group.empty() ? ' ' : !isWhole ? '?' : off == 0 ? '+' : '-';
        }
        return states;
    }

    void AcceptSettings(QPushButton* frmSetting::*button) {
        OnModalDialog<frmSetting>([&](frmSetting& dialog) { Click(dialog.*button); });
        Click(window->BtnSet);
    }
};

TEST_F(Enabled, ByTheSwitches) {
    SelectPorts(0, {0x01});
    const auto beFast = [this] { window->M1.SoftMode = false; };
    Walk({{"opened", [] {}, "++--+ +-- -++"},
          {"AI on", [this] { TurnOnAI(); }, "+++-+ +-- -++"},
          {"DI on too", [this] { TurnOnDI(); }, "+++++ +-- -++"},
          {"AI off", [this] { TurnOnAI(); }, "++-++ +-- -++"},
          {"AI refused", [&] { beFast(), TurnOnAI(); }, "++-++ +-- -++"},
          {"DI off", [this] { TurnOnDI(); }, "++--+ +-- -++"},
          {"AI on alone", [this] { TurnOnAI(); }, "+++-+ +-- -++"},
          {"DI refused", [this] { TurnOnDI(); }, "+++-+ +-- -++"}});
    const Box refusal{"FAI can't run together with DI", "Tracelet"};
    EXPECT_THAT(boxes.Take(), ElementsAre(refusal, refusal));
}

TEST_F(Enabled, ByTheSettings) {
    const auto select = [this](std::uint8_t mask) { SelectPorts(0, {mask}); };
    Walk({{"DI on", [&] { select(1), TurnOnDI(); }, "++-++ +-- -++"},
          {"fast input accepted", [this] { AcceptSettings(&frmSetting::cmdFAIOK); }, "+++-+ +-- -++"},
          {"polled input accepted", [this] { AcceptSettings(&frmSetting::cmdDIOK); }, "+++-+ +-- -++"},
          {"DI on again", [this] { TurnOnDI(); }, "+++++ +-- -++"},
          {"no line accepted", [&] { select(0), AcceptSettings(&frmSetting::cmdDIOK); }, "+++-+ +-- -++"}});
    EXPECT_FALSE(window->bDIEnabled);
}

TEST_F(Enabled, ByASession) {
    const auto stop = [this] { Click(window->BtnStart); };
    const auto record = [this] { Tick(1); };
    const auto startInVain = [this] {
        window->ZelAI1->SetDeviceNumber(-1);
        Click(window->BtnStart);
        window->ZelAI1->SetDeviceNumber(boards.DefaultAnalog());
    };
    Walk({{"started", [this] { TurnOnAI(), StartPolling(); }, "----- +-- -++"},
          {"stopped", stop, "+++-+ +-- -++"},
          {"not started", startInVain, "+++-+ +-- -++"},
          {"recording", [&] { Click(window->CkAISave2Disk), StartPolling(), record(); }, "----- +-- -++"},
          {"recorded", stop, "+++-+ +-+ -++"},
          {"not started again", startInVain, "+++-+ +-+ -++"},
          {"started anew", [this] { StartPolling(); }, "----- +-- -++"},
          {"stopped without a scan", stop, "+++-+ +-- -++"}});
    const Box refusal{"No AI device is selected", "BtnStart"};
    EXPECT_THAT(boxes.Take(), ElementsAre(refusal, refusal));
}

TEST_F(Enabled, ByHistory) {
    const std::string project = Save(Polled(2));
    const auto open = [&] { OpenProject(project); };
    const auto press = [](QAbstractButton* button) { return [button] { Click(button); }; };
    // Off the window's own path: what is left cannot be entered again by a click.
    const auto reenter = [this] { window->BtnModeSwitch_Click(); };
    window->SoftAIWritten = true;
    Walk({{"opened", open, "-+--+ -+- +++"},
          {"playing", press(window->ChkPlay), "----+ --- ++-"},
          {"paused", press(window->ChkPlay), "----+ -+- ++-"},
          {"playing on", press(window->ChkPlay), "----+ --- ++-"},
          {"stopped", press(window->BtnStop), "-+--+ -+- +++"},
          {"playing anew", press(window->ChkPlay), "----+ --- ++-"},
          {"at the end", [this] { PlayTicks(3); }, "-+--+ -+- +++"},
          {"left", press(window->BtnModeSwitch), "++--+ +-+ ---"},
          {"reentered", reenter, "+---+ --+ +++"},
          {"left again", reenter, "++--+ +-+ ---"},
          {"opened anew", open, "-+--+ -+- +++"}});
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(Enabled, FocusGoesOnFromAButtonThatIsDisabled) {
    const std::string project = Save(Polled(2));
    OpenProject(project);
    Click(window->BtnModeSwitch); // is off then
    window->SoftAIWritten = true;
    window->BtnStart->setFocus();
    OnModalDialog<QFileDialog>([&](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(QString::fromStdString(project));
        Click(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open));
    });
    window->BtnHistory->click(); // as Alt+H does
    EXPECT_EQ(window->focusWidget(), window->BtnModeSwitch);
    Click(window->BtnModeSwitch);
    EXPECT_EQ(window->focusWidget(), window->BtnHistory);
}

} // namespace
} // namespace tracelet
