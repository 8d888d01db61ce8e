#include "tests/support/FileSizeLimit.h"
#include "tests/support/Unreadable.h"
#include "tests/window/history/HistoryWindowTest.h"
#include "window/export/ConvertFileDialog.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

const MessageBoxes::Box CreateDirectoryFail{"Create Directory Fail", "Tracelet"};

class ConvertWindowTest : public HistoryWindowTest {
protected:
    ~ConvertWindowTest() override { fs::current_path(before); }

    static void Press(const ConvertFileDialog& dialog, const char* button) {
        Click(dialog.findChild<QPushButton*>(QLatin1String(button)));
    }

    static void Toggle(const ConvertFileDialog& dialog, const char* box) {
        dialog.findChild<QCheckBox*>(QLatin1String(box))->click();
    }

    /// Presses Convert and lets `answer` deal with the dialog.
    void Convert(std::function<void(ConvertFileDialog&)> answer) {
        bool shown = false;
        OnModalDialog<ConvertFileDialog>([&](ConvertFileDialog& dialog) {
            shown = true;
            answer(dialog);
        });
        Click(window->BtnHisConvert);
        EXPECT_TRUE(shown);
    }

    static void Accept(const ConvertFileDialog& dialog, const QString& name) {
        dialog.findChild<QLineEdit*>(u"txtFolderName"_s)->setText(name);
        Press(dialog, "OKButton");
    }

    void ConvertInto(const QString& name) {
        Convert([&](ConvertFileDialog& dialog) { Accept(dialog, name); });
    }

    [[nodiscard]] std::string Text(const std::string& name) const {
        EXPECT_TRUE(Exists(name)) << name;
        return ContentOf(fs::path(window->szProgramPath) / name);
    }

    [[nodiscard]] bool Exists(const std::string& name) const {
        return fs::exists(fs::path(window->szProgramPath) / name);
    }

    /// Names of what lies in the program's folder, the work folder left out.
    [[nodiscard]] std::vector<std::string> Made() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(window->szProgramPath))
            if (entry.path().extension() != ".tmp")
                names.push_back(entry.path().filename());
        return names;
    }

    [[nodiscard]] static SavedRecording PolledWithDigital(std::int32_t scans, double interval) {
        SavedRecording recording = Polled(scans, interval);
        AddDigital(recording, scans);
        return recording;
    }

    const fs::path before = fs::current_path();
};

TEST_F(ConvertWindowTest, NeedsARecording) {
    EXPECT_FALSE(window->BtnHisConvert->isEnabled());
    OpenSaved(Polled(4));
    EXPECT_TRUE(window->BtnHisConvert->isEnabled());
}

TEST_F(ConvertWindowTest, WritesBothTexts) {
    OpenSaved(PolledWithDigital(3, 0.1));
    ConvertInto(u"texts"_s);
    EXPECT_EQ(Text("texts/AI.xlt"), "Time\tLeft\tµ\r\n0.1\t0\t1\r\n0.2\t10\t11");
    EXPECT_EQ(Text("texts/DI.xlt"), "Time\t1:0\t1:7\t2:4\r\n0.1\t0\t0\t1\r\n0.2\t1\t0\t1\r\n0.3\t0\t0\t1");
    EXPECT_EQ(window->szTextSaveDir, window->szProgramPath);
    EXPECT_EQ(window->szTextSaveFolder, "texts");
}

TEST_F(ConvertWindowTest, LeavesALinkToTheTexts) {
    OpenSaved(PolledWithDigital(3, 0.1));
    ConvertInto(u"texts"_s);
    EXPECT_EQ(Notice(), "Converted into");
    EXPECT_TRUE(window->LabelNotice->BtnNoticeFolder->isVisible());
    EXPECT_EQ(window->LabelNotice->BtnNoticeFolder->text().toStdString(),
              (fs::path(window->szProgramPath) / "texts").string());
}

TEST_F(ConvertWindowTest, WritesWhatIsTicked) {
    OpenSaved(PolledWithDigital(3, 0.1));
    Convert([](ConvertFileDialog& dialog) {
        Toggle(dialog, "ChkDI");
        Accept(dialog, u"ai"_s);
    });
    EXPECT_TRUE(Exists("ai/AI.xlt"));
    EXPECT_FALSE(Exists("ai/DI.xlt"));
    Convert([](ConvertFileDialog& dialog) {
        Toggle(dialog, "ChkAI");
        Accept(dialog, u"di"_s);
    });
    EXPECT_FALSE(Exists("di/AI.xlt"));
    EXPECT_TRUE(Exists("di/DI.xlt"));
    Convert([](ConvertFileDialog& dialog) {
        Toggle(dialog, "ChkAI");
        Toggle(dialog, "ChkDI");
        Accept(dialog, u"none"_s);
    });
    EXPECT_FALSE(Exists("none"));
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(ConvertWindowTest, OffersOnlyWhatWasRecorded) {
    OpenSaved(Polled(3));
    Convert([](ConvertFileDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QCheckBox*>(u"ChkAI"_s)->isEnabled());
        EXPECT_FALSE(dialog.findChild<QCheckBox*>(u"ChkDI"_s)->isEnabled());
        Accept(dialog, u"ai"_s);
    });
    EXPECT_TRUE(Exists("ai/AI.xlt"));
    EXPECT_FALSE(Exists("ai/DI.xlt"));

    OpenProject(Save(Digital(2, 0.25), "Digital"));
    ConvertInto(u"di"_s);
    EXPECT_FALSE(Exists("di/AI.xlt"));
    EXPECT_EQ(Text("di/DI.xlt"), "Time\t1:0\t1:7\t2:4\r\n0.25\t0\t0\t1\r\n0.5\t1\t0\t1");
}

TEST_F(ConvertWindowTest, AnExistingFolderIsRefused) {
    OpenSaved(Polled(3));
    fs::create_directory(fs::path(window->szProgramPath) / "there");
    ConvertInto(u"there"_s);
    EXPECT_THAT(boxes.Take(), ElementsAre(CreateDirectoryFail));
    EXPECT_TRUE(fs::is_empty(fs::path(window->szProgramPath) / "there"));
    ConvertInto(u"missing/there"_s);
    EXPECT_THAT(boxes.Take(), ElementsAre(CreateDirectoryFail));
    EXPECT_THAT(Made(), ElementsAre("there"));
}

TEST_F(ConvertWindowTest, CancelFailsOnTheBaseFolderWhileSomethingIsTicked) {
    const std::function<void(ConvertFileDialog&)> ways[] = {
        [](ConvertFileDialog& dialog) { Press(dialog, "BtnCancel"); },
        [](ConvertFileDialog& dialog) { dialog.close(); },
    };
    OpenSaved(PolledWithDigital(3, 0.1));
    for (const auto& cancel : ways) {
        Convert(cancel);
        EXPECT_THAT(boxes.Take(), ElementsAre(CreateDirectoryFail));
        EXPECT_EQ(window->szTextSaveFolder, "");
        EXPECT_THAT(Made(), IsEmpty());
        Convert([&](ConvertFileDialog& dialog) {
            Toggle(dialog, "ChkAI");
            Toggle(dialog, "ChkDI");
            cancel(dialog);
        });
        EXPECT_THAT(boxes.Take(), IsEmpty());
    }
}

TEST_F(ConvertWindowTest, CancelFailsThoughTheBaseFolderIsGone) {
    OpenSaved(Polled(3));
    window->szTextSaveDrive = "/";
    window->szTextSaveDir = folder.path().toStdString() + "/gone";
    fs::create_directory(window->szTextSaveDir);
    Convert([this](ConvertFileDialog& dialog) {
        fs::remove(window->szTextSaveDir);
        Press(dialog, "BtnCancel");
    });
    EXPECT_THAT(boxes.Take(), ElementsAre(CreateDirectoryFail));
    EXPECT_FALSE(fs::exists(window->szTextSaveDir));
}

TEST_F(ConvertWindowTest, AnEmptyNameKeepsTheDialogOpen) {
    OpenSaved(Polled(3));
    Convert([this](ConvertFileDialog& dialog) {
        Press(dialog, "OKButton");
        EXPECT_THAT(boxes.Take(),
                    ElementsAre(MessageBoxes::Box{"Folder Name should not be null", "Tracelet"}));
        EXPECT_TRUE(dialog.isVisible());
        Accept(dialog, u"texts"_s);
    });
    EXPECT_TRUE(Exists("texts/AI.xlt"));
}

TEST_F(ConvertWindowTest, RawCodesStayCodes) {
    SavedRecording recording = Polled(3, 0.5);
    recording.info.bHisAIAnalog = false;
    recording.analog = BytesOf(std::vector<std::int32_t>{-2048, 2047, 4095, 0, 1, 2});
    for (const bool polled : {false, true}) {
        recording.info.bHisAISoft = polled;
        OpenSaved(recording);
        const QString name = polled ? u"polled"_s : u"fast"_s;
        ConvertInto(name);
        EXPECT_EQ(Text(name.toStdString() + "/AI.xlt"), "Time\tLeft\tµ\r\n0.5\t-2048\t2047\r\n1\t4095\t0");
    }
}

TEST_F(ConvertWindowTest, AFullBlockLacksItsLastScan) {
    SavedRecording recording = Polled(0, 0.001);
    recording.info.nHisAIChanCount = 1;
    recording.info.aiPlots.pop_back();
    recording.info.ScanCount = 100000;
    recording.analog = BytesOf(std::vector<float>(100000, 1.5F));
    OpenSaved(recording);
    ConvertInto(u"texts"_s);
    const std::string text = Text("texts/AI.xlt");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 99999);
    EXPECT_TRUE(text.starts_with("Time\tLeft\r\n0.001\t1.5\r\n0.002\t1.5\r\n"));
}

TEST_F(ConvertWindowTest, NamesAreThoseOfTheGraph) {
    OpenSaved(Polled(2, 1.0));
    PlotAttributes plot = window->ZelGraph1->Plot(1);
    plot.name = u"Right"_s;
    window->ZelGraph1->SetPlot(1, plot);
    ConvertInto(u"texts"_s);
    EXPECT_EQ(Text("texts/AI.xlt"), "Time\tLeft\tRight\r\n1\t0\t1");
}

TEST_F(ConvertWindowTest, AFailedWriteEndsItWithWholeLines) {
    OpenSaved(PolledWithDigital(100, 0.1));
    {
        const FileSizeLimit full(45);
        ConvertInto(u"texts"_s);
    }
    EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{"File too large", "Convert"}));
    EXPECT_EQ(Text("texts/AI.xlt"), "Time\tLeft\tµ\r\n0.1\t0\t1\r\n0.2\t10\t11\r\n0.3\t20\t21");
    EXPECT_FALSE(Exists("texts/DI.xlt"));
}

TEST_F(ConvertWindowTest, ATextWhoseDataCannotBeReadDoesNotStay) {
    const std::string project = Save(PolledWithDigital(3, 0.1));
    const std::string reason = std::string(" was not written: ") + UnreadableText;
    OpenProject(project);
    MakeUnreadable(window->HisAIFileHandle);
    ConvertInto(u"digital"_s);
    EXPECT_THAT(Made(), ElementsAre("digital"));
    EXPECT_FALSE(Exists("digital/AI.xlt"));
    EXPECT_EQ(Text("digital/DI.xlt"), "Time\t1:0\t1:7\t2:4\r\n0.1\t0\t0\t1\r\n0.2\t1\t0\t1\r\n0.3\t0\t0\t1");
    EXPECT_EQ(Notice(), "AI.xlt" + reason);

    MakeUnreadable(window->recording.digitalFile);
    ConvertInto(u"none"_s);
    EXPECT_THAT(Made(), ElementsAre("digital"));
    EXPECT_EQ(Notice(), "AI.xlt" + reason + "; DI.xlt" + reason);

    OpenProject(project);
    MakeUnreadable(window->recording.digitalFile);
    ConvertInto(u"analog"_s);
    EXPECT_EQ(Text("analog/AI.xlt"), "Time\tLeft\tµ\r\n0.1\t0\t1\r\n0.2\t10\t11");
    EXPECT_FALSE(Exists("analog/DI.xlt"));
    EXPECT_EQ(Notice(), "DI.xlt" + reason);

    OpenProject(project);
    ConvertInto(u"both"_s);
    EXPECT_TRUE(Exists("both/AI.xlt"));
    EXPECT_TRUE(Exists("both/DI.xlt"));
    EXPECT_EQ(Notice(), "Converted into");
}

TEST_F(ConvertWindowTest, MissingDataGiveHeaders) {
    const std::string project = Save(PolledWithDigital(3, 0.1));
    fs::remove(saved / "Saved/AI.tld");
    fs::remove(saved / "Saved/DI.tld");
    OpenProject(project);
    EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{"File not found", "ReadHisAIFile"}));
    ConvertInto(u"texts"_s);
    EXPECT_EQ(Text("texts/AI.xlt"), "Time\tLeft\tµ");
    EXPECT_EQ(Text("texts/DI.xlt"), "Time");
}

TEST_F(ConvertWindowTest, ClosedFilesGiveHeaders) {
    OpenSaved(PolledWithDigital(3, 0.1));
    window->BtnModeSwitch_Click();
    EXPECT_FALSE(window->BtnHisConvert->isEnabled());
    window->BtnModeSwitch_Click();
    EXPECT_TRUE(window->BtnHisConvert->isEnabled());
    ConvertInto(u"texts"_s);
    EXPECT_EQ(Text("texts/AI.xlt"), "Time\tLeft\tµ");
    EXPECT_EQ(Text("texts/DI.xlt"), "Time\t1:0\t1:7\t2:4");
}

TEST_F(ConvertWindowTest, DigitalDataEndWithTheScanCountOrTheFile) {
    SavedRecording recording = Digital(4, 1.0);
    recording.info.ScanCount = 2;
    OpenSaved(recording);
    ConvertInto(u"fewer"_s);
    EXPECT_EQ(Text("fewer/DI.xlt"), "Time\t1:0\t1:7\t2:4\r\n1\t0\t0\t1\r\n2\t1\t0\t1");
    recording.info.ScanCount = 1000;
    recording.digital.pop_back(); // half of the last sample
    OpenProject(Save(recording, "Longer"));
    ConvertInto(u"longer"_s);
    EXPECT_EQ(Text("longer/DI.xlt"), "Time\t1:0\t1:7\t2:4\r\n1\t0\t0\t1\r\n2\t1\t0\t1\r\n3\t0\t0\t1");
}

TEST_F(ConvertWindowTest, PlaysFromTheStartAfterwards) {
    OpenSaved(Polled(5));
    window->ZelSliderR->MoveByUser(60.0);
    ConvertInto(u"texts"_s);
    EXPECT_EQ(window->HisScanIndex, 0);
    PlayByTheTick(1);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_EQ(PointsOf(0).size(), 2U);
    EXPECT_FALSE(window->BtnHisConvert->isEnabled());
    Click(window->BtnStop);
    EXPECT_TRUE(window->BtnHisConvert->isEnabled());
}

TEST_F(ConvertWindowTest, TheDialogReopensWhereItWasLeft) {
    OpenSaved(Polled(3));
    fs::create_directory(fs::path(window->szProgramPath) / "base");
    Convert([](ConvertFileDialog& dialog) {
        auto* list = dialog.findChild<QListWidget*>(u"Dir1"_s);
        list->setCurrentItem(list->findItems(u"base"_s, Qt::MatchExactly).value(0));
        QTest::keyClick(list, Qt::Key_Return);
        Accept(dialog, u"one"_s);
    });
    ConvertInto(u"two"_s);
    EXPECT_TRUE(Exists("base/one/AI.xlt"));
    EXPECT_TRUE(Exists("base/two/AI.xlt"));
}

// Four channels, and sixteen ports of which one has its eight lines selected: 16 bytes a scan in each file.
// All are zeros, the files without blocks on the disk.
SavedRecording Zeros(std::int32_t scans) {
    constexpr std::int32_t Ports = 16;
    SavedRecording recording;
    recording.info = {.bHisAI = true,
                      .bHisAISoft = true,
                      .bHisAIAnalog = true,
                      .nHisAIChanCount = 4,
                      .aiPlots = std::vector<PlotRecord>(4),
                      .HisAIChanIsThermo = std::vector<std::uint8_t>(4),
                      .ScanCount = scans,
                      .ScanInterval = 1.0};
    recording.info.bHisDI = true;
    recording.info.nHisDIChanCount = 8;
    recording.info.diPlots.resize(8);
    recording.info.HisDIPortMask.resize(Ports);
    recording.info.HisDIPortMask[0] = 0xFF;
    recording.digital = BytesOf(std::vector<std::int32_t>{0, Ports});
    return recording;
}

/// A look at a conversion under way.
struct Look {
    int bar;
    double analogBytes; ///< written so far
    double digitalBytes;
};

class LongConversionTest : public ConvertWindowTest {
protected:
    [[nodiscard]] double Written(const char* name) const {
        std::error_code missing;
        const auto bytes = fs::file_size(fs::path(window->szProgramPath) / "texts" / name, missing);
        return missing ? 0.0 : static_cast<double>(bytes);
    }

    /// Converts so many scans while a user looks at the bar and tries to get in the way.
    void ConvertWatched(std::int32_t scans) {
        const std::string project = Save(Zeros(scans));
        fs::resize_file(saved / "Saved/AI.tld", static_cast<std::uintmax_t>(scans) * 16);
        fs::resize_file(saved / "Saved/DI.tld", static_cast<std::uintmax_t>(scans) * 16 + 8);
        OpenProject(project);
        fs::remove_all(fs::path(window->szProgramPath) / "texts");
        looks.clear();
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, &user, [&] {
            QWidget* shown = QApplication::activeModalWidget();
            if (shown == nullptr || shown->objectName() != u"ConvertProgress")
                return;
            looks.push_back(
                {shown->findChild<QProgressBar*>()->value(), Written("AI.xlt"), Written("DI.xlt")});
            QTest::keyClick(shown, Qt::Key_Escape);
            shown->close();
            window->close();
            QTest::mouseClick(window->ChkPlay, Qt::LeftButton);
        });
        QElapsedTimer elapsed;
        Convert([&](ConvertFileDialog& dialog) {
            user.start(1);
            elapsed.start();
            Accept(dialog, u"texts"_s);
        });
        if (elapsed.elapsed() <= 500) {
            EXPECT_THAT(looks, IsEmpty());
        }
    }

    /// Whether enough was seen of either file.
    [[nodiscard]] bool SawBoth() const {
        const auto digital =
            std::ranges::count_if(looks, [](const Look& look) { return look.digitalBytes > 0; });
        return digital >= 6 && looks.front().digitalBytes == 0;
    }

    std::vector<Look> looks;
};

TEST_F(LongConversionTest, ShowsItsProgressAndHandlesNoInput) {
    // Twice the work until it takes long enough on this machine.
    for (std::int32_t scans = 400000; !SawBoth() && scans < 20000000; scans *= 2)
        ConvertWatched(scans);
    ASSERT_TRUE(SawBoth());
    EXPECT_TRUE(std::ranges::is_sorted(looks, {}, &Look::bar));
    for (const Look& look : looks) {
        const double done =
            look.analogBytes / Written("AI.xlt") * 0.5 + look.digitalBytes / Written("DI.xlt") * 0.5;
        EXPECT_NEAR(look.bar, done * 1000, 150); // the files lag by what is buffered
    }
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->ChkPlay->isChecked());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace
} // namespace tracelet
