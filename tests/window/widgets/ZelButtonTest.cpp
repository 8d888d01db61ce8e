#include "window/widgets/ZelButton.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

int GreenestPixel(const QImage& picture, const QRect& part) {
    int most = -255;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            most = std::max(most, color.green() - color.red());
        }
    return most;
}

TEST(ZelButton, StartsOffAndNamesItsImage) {
    ZelButton button;
    EXPECT_FALSE(button.Value());
    EXPECT_EQ(button.Image(), u"PUSHROCKERSWITCH_OFF");
    button.SetValue(true);
    EXPECT_TRUE(button.Value());
    EXPECT_EQ(button.Image(), u"PUSHROCKERSWITCH_ON");
}

TEST(ZelButton, TellsChangesOfPositionOnly) {
    ZelButton button;
    QSignalSpy told(&button, &ZelButton::ValueChanged);
    button.SetValue(false);
    EXPECT_EQ(told.count(), 0);
    button.SetValue(true);
    button.SetValue(true);
    EXPECT_EQ(told.count(), 1);
    button.SetValue(false);
    EXPECT_EQ(told.count(), 2);
}

TEST(ZelButton, ClickAndSpaceMoveIt) {
    ZelButton button;
    button.show();
    QSignalSpy told(&button, &ZelButton::ValueChanged);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_TRUE(button.Value());
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_FALSE(button.Value());
    EXPECT_EQ(told.count(), 2);
    button.setEnabled(false);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_FALSE(button.Value());
}

TEST(ZelButton, MayBePutBackByItsOwnHandler) {
    ZelButton button;
    int told = 0;
    QObject::connect(&button, &ZelButton::ValueChanged, &button, [&] {
        ++told;
        if (button.Value())
            button.SetValue(false);
    });
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_FALSE(button.Value());
    EXPECT_EQ(told, 2);
}

TEST(ZelButton, LightShowsTheState) {
    ZelButton button;
    button.resize(button.sizeHint());
    const QRect upperHalf(6, 6, button.width() - 12, button.height() / 2 - 8);
    EXPECT_LT(GreenestPixel(button.grab().toImage(), upperHalf), 30);
    button.SetValue(true);
    EXPECT_GT(GreenestPixel(button.grab().toImage(), upperHalf), 120);
}

TEST(ZelButton, CaptionAndFocusShow) {
    ZelButton button;
    button.resize(button.sizeHint());
    const QImage plain = button.grab().toImage();
    button.setText(QStringLiteral("AI"));
    EXPECT_NE(button.grab().toImage(), plain);
    button.setText(QString());
    button.show();
    button.activateWindow();
    button.setFocus();
    QCoreApplication::processEvents();
    ASSERT_TRUE(button.hasFocus());
    EXPECT_NE(button.grab().toImage(), plain);
}

} // namespace
} // namespace tracelet
