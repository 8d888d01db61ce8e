#include "window/aids/EnterPresses.h"
#include "window/aids/Style.h"
#include "window/aids/Tips.h"
#include "window/ground/MsgBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

// The greatest difference of lightness between the ground and a widget that nothing but its sign stands out
// of.
int Contrast(QWidget& widget) {
    const QImage image = widget.grab().toImage();
    const int ground = widget.palette().color(QPalette::Window).lightness();
    int most = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, image.pixelColor(x, y).lightness() - ground);
    return most;
}

TEST(Style, UntickedBoxesAndOptionsShowInADarkPalette) {
    const QPalette dark(QColor(0x35, 0x38, 0x3C), QColor(0x2A, 0x2D, 0x31));
    QCheckBox box;
    QRadioButton option;
    for (QWidget* widget : std::initializer_list<QWidget*>{&box, &option}) {
        widget->setPalette(dark);
        widget->resize(widget->sizeHint());
        for (const bool isEnabled : {true, false}) {
            widget->setEnabled(isEnabled);
            EXPECT_GT(Contrast(*widget), 40);
        }
    }
}

TEST(Style, ButtonsOfDialogsHaveNoIcons) {
    const QDialogButtonBox buttons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    EXPECT_EQ(buttons.style()->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons), 0);
    for (const QAbstractButton* button : buttons.buttons())
        EXPECT_TRUE(button->icon().isNull());
}

TEST(MsgBox, IsWideEnoughForItsTitle) {
    const auto widthFor = [](const QString& title) {
        int width = 0;
        QTimer::singleShot(50, [&width] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            width = box->width();
            box->accept();
        });
        MsgBox(nullptr, u"!"_s, title);
        return width;
    };
    const QString title = u"A title that is far longer than the text"_s;
    QFont bold = QApplication::font();
    bold.setBold(true);
    const int needed = QFontMetrics(bold).horizontalAdvance(title) +
                       4 * QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
    EXPECT_GE(widthFor(title), needed);
    EXPECT_LT(widthFor(u"Short"_s), needed);
}

TEST(EnterPresses, TheButtonThatHasTheFocusOnly) {
    QDialog dialog;
    auto* box = new QLineEdit;
    auto* button = new QPushButton;
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(box);
    layout->addWidget(button);
    EnterPresses(button);
    int presses = 0;
    QObject::connect(button, &QPushButton::clicked, [&presses] { ++presses; });
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(presses, 0);
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
    QTest::keyClick(button, Qt::Key_Enter);
    EXPECT_EQ(presses, 2);
}

TEST(Tips, TellOfAControlOrOfWhatItLiesIn) {
    QWidget window;
    auto* frame = new QWidget(&window);
    auto* button = new QPushButton(frame);
    auto* plain = new QPushButton(&window);
    Tips tips(&window);
    tips.Add(frame, u"the frame"_s);
    EXPECT_EQ(tips.Of(button), u"the frame"_s);
    tips.Add(button, u"the button"_s, u"waits"_s);
    EXPECT_EQ(tips.Of(button), u"the button"_s);
    EXPECT_EQ(button->accessibleDescription(), u"the button"_s);
    frame->setEnabled(false);
    EXPECT_EQ(tips.Of(button), u"waits"_s);
    EXPECT_EQ(tips.Of(frame), u"the frame"_s) << "without a reason";
    EXPECT_EQ(tips.Of(plain), QString());
}

} // namespace
} // namespace tracelet
