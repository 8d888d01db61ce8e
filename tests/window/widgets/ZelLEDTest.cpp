#include "window/widgets/ZelLED.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

QAbstractButton* Arrow(ZelLED& display, const char* name) {
    return display.findChild<QAbstractButton*>(QLatin1String(name));
}

void Turn(QWidget& widget, int eighths) {
    QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, eighths), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

std::vector<bool> Steps(const QSignalSpy& told) {
    std::vector<bool> steps;
    for (const auto& arguments : told)
        steps.push_back(arguments.first().toBool());
    return steps;
}

TEST(ZelLED, ShowsItsPattern) {
    const std::pair<double, const char*> cases[] = {
        {1.0, "1.000000"},     {0.2, ".200000"},    {0.04, ".040000"},
        {0.000001, ".000001"}, {25.0, "25.000000"}, {100.0, "100.000000"},
        {0.0, ".000000"},      {0.25, ".250000"},   {2.5e-7, "2.5e-7"}};
    ZelLED display;
    for (const auto& [value, text] : cases) {
        display.SetValue(value);
        EXPECT_EQ(display.Value(), value);
        EXPECT_EQ(display.Text(), QLatin1String(text));
    }
}

TEST(ZelLED, ButtonsKeysAndWheelTellSteps) {
    ZelLED display;
    display.resize(display.sizeHint());
    display.show();
    QSignalSpy told(&display, &ZelLED::Step);
    QTest::mouseClick(Arrow(display, "StepUp"), Qt::LeftButton);
    QTest::mouseClick(Arrow(display, "StepDown"), Qt::LeftButton);
    QTest::keyClick(&display, Qt::Key_Up);
    QTest::keyClick(&display, Qt::Key_Down);
    Turn(display, 120);
    Turn(display, -240);
    EXPECT_EQ(Steps(told), (std::vector<bool>{true, false, true, false, true, false, false}));
}

TEST(ZelLED, FineWheelsAddUpToSteps) {
    ZelLED display;
    QSignalSpy told(&display, &ZelLED::Step);
    for (int part = 0; part < 7; ++part)
        Turn(display, 30);
    EXPECT_EQ(Steps(told), (std::vector<bool>{true}));
}

TEST(ZelLED, TellsNoStepWhileOff) {
    ZelLED display;
    display.show();
    QSignalSpy told(&display, &ZelLED::Step);
    display.SetEnabled(false);
    EXPECT_FALSE(display.Enabled());
    display.SetValue(5.0);
    QTest::mouseClick(Arrow(display, "StepUp"), Qt::LeftButton);
    QTest::keyClick(&display, Qt::Key_Down);
    Turn(display, 120);
    EXPECT_EQ(told.count(), 0);
    display.SetEnabled(true);
    QTest::keyClick(&display, Qt::Key_Down);
    EXPECT_EQ(told.count(), 1);
}

TEST(ZelLED, KeepsTheKeyboardWhenItsHandlerSwitchesItOffAndOn) {
    ZelLED display;
    display.show();
    display.activateWindow();
    display.setFocus();
    QCoreApplication::processEvents();
    ASSERT_TRUE(display.hasFocus());
    QObject::connect(&display, &ZelLED::Step, &display, [&](bool up) {
        display.SetEnabled(false);
        display.SetValue(up ? display.Value() + 1.0 : display.Value() - 1.0);
        display.SetEnabled(true);
    });
    QTest::keyClick(&display, Qt::Key_Up);
    QTest::keyClick(&display, Qt::Key_Up);
    EXPECT_EQ(display.Value(), 2.0);
    EXPECT_TRUE(display.hasFocus());
}

TEST(ZelLED, WritingTheValueTellsNoStep) {
    ZelLED display;
    QSignalSpy told(&display, &ZelLED::Step);
    display.SetValue(4.0);
    EXPECT_EQ(told.count(), 0);
}

TEST(ZelLED, ANumberTooLongIsBarsWithATooltip) {
    ZelLED display;
    display.resize(display.minimumSizeHint());
    display.SetValue(1.0);
    EXPECT_TRUE(display.toolTip().isEmpty());
    const QImage one = display.grab().toImage();
    display.SetValue(1234567890123.0);
    EXPECT_EQ(display.toolTip(), u"1234567890123.000000");
    const QImage bars = display.grab().toImage();
    EXPECT_NE(bars, one);
    display.SetValue(9876543210123.0);
    EXPECT_EQ(display.grab().toImage(), bars);
    display.SetValue(std::numeric_limits<double>::infinity());
    EXPECT_EQ(display.grab().toImage(), bars);
}

TEST(ZelLED, SmallNumbersAreShownNotBars) {
    ZelLED display;
    display.resize(display.sizeHint());
    const QImage zero = display.grab().toImage();
    for (const double value : {2.5e-7, 2.46e-10}) {
        display.SetValue(value);
        EXPECT_TRUE(display.toolTip().isEmpty()) << value;
        EXPECT_NE(display.grab().toImage(), zero) << value;
    }
}

TEST(ZelLED, EveryDigitPaintsItsOwnPicture) {
    ZelLED display;
    display.resize(display.sizeHint());
    std::vector<QImage> pictures;
    for (int digit = 0; digit <= 9; ++digit) {
        display.SetValue(digit);
        const QImage picture = display.grab().toImage();
        for (const QImage& other : pictures)
            EXPECT_NE(picture, other) << digit;
        pictures.push_back(picture);
    }
}

TEST(ZelLED, ReadsItsDigitsOut) {
    ZelLED display;
    display.SetValue(0.2);
    auto* interface = QAccessible::queryAccessibleInterface(&display);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->role(), QAccessible::SpinBox);
    EXPECT_EQ(interface->text(QAccessible::Value), u".200000");
}

} // namespace
} // namespace tracelet
