#include "window/widgets/PlaybackButtons.h"
#include "window/widgets/StartButton.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

QImage Picture(QWidget& widget) {
    widget.resize(widget.sizeHint());
    return widget.grab().toImage();
}

TEST(PlayButton, PaintsTheSignThatItsTextStandsFor) {
    PlayButton button;
    button.setText(QStringLiteral("4"));
    const QImage play = Picture(button);
    button.setText(QStringLiteral(";"));
    EXPECT_NE(Picture(button), play);
    button.setText(QStringLiteral("4"));
    EXPECT_EQ(Picture(button), play);
}

TEST(PlayButton, IsACheckBoxThatAnyPlaceOfItToggles) {
    PlayButton button;
    button.resize(button.sizeHint());
    button.show();
    QSignalSpy clicked(&button, &QCheckBox::clicked);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_TRUE(button.isChecked());
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(button.width() - 3, button.height() - 3));
    EXPECT_FALSE(button.isChecked());
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_TRUE(button.isChecked());
    EXPECT_EQ(clicked.count(), 3);
}

TEST(PlayButton, ShowsThatItIsChecked) {
    PlayButton button;
    button.setText(QStringLiteral(";"));
    const QImage raised = Picture(button);
    button.setChecked(true);
    EXPECT_NE(Picture(button), raised);
}

TEST(GlyphButton, SignsDifferAndFadeWhenDisabled) {
    GlyphButton stop(Glyph::Stop);
    GlyphButton accelerate(Glyph::Accelerate);
    const QImage stopSign = Picture(stop);
    EXPECT_NE(stopSign, Picture(accelerate));
    stop.setEnabled(false);
    EXPECT_NE(Picture(stop), stopSign);
}

TEST(StartButton, GreenToStartRedToStopGreyWhenDisabled) {
    StartButton button(QStringLiteral("Start"));
    const auto face = [&] {
        const QImage picture = Picture(button);
        return picture.pixelColor(6, picture.height() / 2);
    };
    const QColor starts = face();
    EXPECT_GT(starts.green(), starts.red() + 60);
    button.setText(QStringLiteral("Stop"));
    const QColor stops = face();
    EXPECT_GT(stops.red(), stops.green() + 60);
    button.setEnabled(false);
    EXPECT_LT(face().hslSaturation(), 20);
}

} // namespace
} // namespace tracelet
