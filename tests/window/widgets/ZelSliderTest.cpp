#include "window/widgets/ZelSlider.h"

#include "core/base/RunTimeError.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

std::vector<double> Values(const QSignalSpy& told) {
    std::vector<double> values;
    for (const auto& arguments : told)
        values.push_back(arguments.first().toDouble());
    return values;
}

// Length 120: the groove runs from 10 to 110, one pixel a unit of 0 to 100.
class HorizontalSlider : public testing::Test {
protected:
    HorizontalSlider() {
        slider.resize(120, 24);
        slider.show();
    }
    void Drag(QPoint position) {
        QMouseEvent event(QEvent::MouseMove, position, slider.mapToGlobal(position), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&slider, &event);
    }
    void Turn(int eighths) {
        QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, eighths), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&slider, &event);
    }

    ZelSlider slider{Qt::Horizontal};
    QSignalSpy told{&slider, &ZelSlider::Changed};
};

TEST_F(HorizontalSlider, KeepsDoublesExactly) {
    slider.SetValue(0.1);
    EXPECT_EQ(slider.Value(), 0.1);
    slider.SetValue(slider.Value() + 1.0 / 3.0 * 100.0);
    EXPECT_EQ(slider.Value(), 0.1 + 1.0 / 3.0 * 100.0);
}

TEST_F(HorizontalSlider, TellsChangesOfTheValueOnly) {
    slider.SetValue(0.0);
    EXPECT_EQ(told.count(), 0);
    slider.SetValue(0.1);
    slider.SetValue(0.1);
    slider.SetRange(0.0, 50.0);
    slider.SetEnabled(false);
    slider.SetEnabled(true);
    EXPECT_EQ(Values(told), std::vector<double>{0.1});
}

TEST_F(HorizontalSlider, ClampsTheProgramUnlessToldNotTo) {
    slider.SetValue(150.0);
    EXPECT_EQ(slider.Value(), 100.0);
    slider.SetValue(-1.0);
    EXPECT_EQ(slider.Value(), 0.0);
    slider.SetValue(Infinity);
    EXPECT_EQ(slider.Value(), 100.0);
    slider.SetClampsProgram(false);
    slider.SetValue(2e6);
    EXPECT_EQ(slider.Value(), 2e6);
    slider.SetValue(-3.0);
    EXPECT_EQ(slider.Value(), -3.0);
}

TEST_F(HorizontalSlider, IgnoresWhatIsNotANumber) {
    slider.SetValue(5.0);
    slider.SetValue(NotANumber);
    slider.SetClampsProgram(false);
    slider.SetValue(NotANumber);
    EXPECT_EQ(slider.Value(), 5.0);
    EXPECT_EQ(told.count(), 1);
}

TEST_F(HorizontalSlider, RefusesRangesThatAreNone) {
    EXPECT_THROW(slider.SetRange(2.0, 1.0), RunTimeError);
    EXPECT_THROW(slider.SetRange(NotANumber, 1.0), RunTimeError);
    EXPECT_THROW(slider.SetRange(0.0, Infinity), RunTimeError);
    EXPECT_EQ(slider.Minimum(), 0.0);
    EXPECT_EQ(slider.Maximum(), 100.0);
}

TEST_F(HorizontalSlider, RangeDoesNotTouchTheValue) {
    slider.SetValue(80.0);
    slider.SetRange(0.0, 10.0);
    EXPECT_EQ(slider.Value(), 80.0);
    EXPECT_EQ(slider.Minimum(), 0.0);
    EXPECT_EQ(slider.Maximum(), 10.0);
}

TEST_F(HorizontalSlider, KeysMoveIt) {
    const std::pair<Qt::Key, double> steps[] = {
        {Qt::Key_Right, 51.0},  {Qt::Key_Up, 52.0},       {Qt::Key_Left, 51.0}, {Qt::Key_Down, 50.0},
        {Qt::Key_PageUp, 60.0}, {Qt::Key_PageDown, 50.0}, {Qt::Key_End, 100.0}, {Qt::Key_Right, 100.0},
        {Qt::Key_Home, 0.0},    {Qt::Key_Left, 0.0}};
    slider.SetValue(50.0);
    for (const auto& [key, value] : steps) {
        QTest::keyClick(&slider, key);
        EXPECT_EQ(slider.Value(), value) << key;
    }
}

TEST_F(HorizontalSlider, WheelMovesItAHundredthANotch) {
    slider.SetValue(50.0);
    Turn(120);
    EXPECT_EQ(slider.Value(), 51.0);
    Turn(-240);
    EXPECT_EQ(slider.Value(), 49.0);
    Turn(60);
    EXPECT_EQ(slider.Value(), 49.5);
}

TEST_F(HorizontalSlider, AClickSeeksAndADragFollows) {
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(60, 12));
    EXPECT_DOUBLE_EQ(slider.Value(), 50.0);
    Drag({85, 12});
    EXPECT_DOUBLE_EQ(slider.Value(), 75.0);
    Drag({500, 12});
    EXPECT_EQ(slider.Value(), 100.0);
    Drag({-500, 40});
    EXPECT_EQ(slider.Value(), 0.0);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(0, 12));
    Drag({60, 12});
    EXPECT_EQ(slider.Value(), 0.0);
}

TEST_F(HorizontalSlider, TakingTheThumbDoesNotMoveIt) {
    slider.SetValue(50.1);
    told.clear();
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(64, 12));
    EXPECT_EQ(slider.Value(), 50.1);
    EXPECT_EQ(told.count(), 0);
    Drag({74, 12});
    EXPECT_NEAR(slider.Value(), 60.1, 1e-9);
}

TEST_F(HorizontalSlider, OtherButtonsDoNothing) {
    QTest::mousePress(&slider, Qt::RightButton, {}, QPoint(60, 12));
    Drag({85, 12});
    QTest::mouseRelease(&slider, Qt::RightButton, {}, QPoint(85, 12));
    EXPECT_EQ(told.count(), 0);
}

TEST_F(HorizontalSlider, WhileOffOnlyTheProgramMovesIt) {
    slider.SetEnabled(false);
    EXPECT_FALSE(slider.Enabled());
    EXPECT_TRUE(slider.isEnabled());
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(60, 12));
    QTest::keyClick(&slider, Qt::Key_End);
    Turn(120);
    EXPECT_EQ(slider.Value(), 0.0);
    slider.SetValue(0.1);
    EXPECT_EQ(Values(told), std::vector<double>{0.1});
}

TEST_F(HorizontalSlider, TheFramesStateIsNotItsFlag) {
    slider.setEnabled(false);
    EXPECT_TRUE(slider.Enabled());
    slider.MoveByUser(40.0);
    EXPECT_EQ(slider.Value(), 0.0);
}

TEST_F(HorizontalSlider, ADragLivesThroughAProgramWrite) {
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(60, 12));
    slider.SetEnabled(false);
    slider.SetValue(51.0);
    slider.SetEnabled(true);
    Drag({80, 12});
    EXPECT_DOUBLE_EQ(slider.Value(), 70.0);
}

TEST_F(HorizontalSlider, LogarithmicThumbMultiplies) {
    slider.SetRange(1.0, 10000.0);
    slider.SetLogarithmic(true);
    slider.SetClampsProgram(false);
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(60, 12));
    EXPECT_NEAR(slider.Value(), 100.0, 1e-9);
    slider.SetValue(1e9);
    EXPECT_EQ(slider.Value(), 1e9);
    QTest::keyClick(&slider, Qt::Key_PageDown);
    EXPECT_NEAR(slider.Value(), 10000.0 / std::pow(10000.0, 0.1), 1e-9);
}

TEST_F(HorizontalSlider, OwnersMayAnswerAChangeWithAnother) {
    QObject::connect(&slider, &ZelSlider::Changed, &slider, [&](double value) {
        if (value > 10.0)
            slider.SetValue(10.0);
    });
    slider.SetValue(60.0);
    EXPECT_EQ(slider.Value(), 10.0);
}

TEST(VerticalSlider, GrowsUpward) {
    ZelSlider slider(Qt::Vertical);
    slider.resize(24, 120);
    slider.show();
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(12, 10));
    EXPECT_EQ(slider.Value(), 100.0);
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(12, 85));
    EXPECT_DOUBLE_EQ(slider.Value(), 25.0);
}

TEST(SliderAccessibility, ValueIsReadAndSet) {
    ZelSlider slider(Qt::Horizontal);
    slider.SetValue(12.5);
    auto* interface = QAccessible::queryAccessibleInterface(&slider);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->role(), QAccessible::Slider);
    QAccessibleValueInterface* value = interface->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->currentValue().toDouble(), 12.5);
    EXPECT_EQ(value->minimumValue().toDouble(), 0.0);
    EXPECT_EQ(value->maximumValue().toDouble(), 100.0);
    value->setCurrentValue(400.0);
    EXPECT_EQ(slider.Value(), 100.0);
}

} // namespace
} // namespace tracelet
