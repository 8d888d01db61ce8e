#include "window/widgets/ZelLED.h"

#include "core/base/NumberText.h"
#include "core/layout/SevenSegment.h"
#include "window/ground/Shading.h"
#include "window/widgets/Accessibility.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>

namespace tracelet {

namespace {

constexpr std::size_t UsualPlaces = 9; // 999.999999
constexpr double PlaceAspect = 0.66;   // width of a place, its gap included, to the height of its digit
constexpr double LeastDigitHeight = 8.0;
constexpr double Margin = 6.0;
constexpr int ArrowsWidth = 18;
constexpr int WheelNotch = 120;

constexpr QColor Lit{0xFF, 0xB4, 0x4A};
constexpr QColor Unlit{0x1B, 0x1A, 0x19};

class ArrowButton : public QAbstractButton {
public:
    ArrowButton(bool upward, QWidget* parent) : QAbstractButton(parent), pointsUp(upward) {
        setFocusPolicy(Qt::NoFocus); // the display itself takes the keys
        setAttribute(Qt::WA_Hover);
        setAutoRepeat(true);
        setAutoRepeatDelay(400);
        setAutoRepeatInterval(200);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor ground = palette().color(QPalette::Button);
        const QColor ink = palette().color(QPalette::ButtonText);
        const double shade = !isEnabled() ? 0.0 : isDown() ? 0.28 : underMouse() ? 0.14 : 0.04;
        painter.setPen(QPen(Mixed(ground, ink, 0.3), 1.0));
        painter.setBrush(Mixed(ground, ink, shade));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2.5, 2.5);

        const QPointF middle = QRectF(rect()).center();
        const double half = std::min(width() * 0.25, height() * 0.28);
        const double rise = pointsUp ? half * 0.6 : -half * 0.6;
        const std::array<QPointF, 3> triangle = {middle + QPointF(-half, rise), middle + QPointF(half, rise),
                                                 middle + QPointF(0.0, -rise)};
        painter.setPen(Qt::NoPen);
        painter.setBrush(isEnabled() ? ink : Mixed(ground, ink, 0.35));
        painter.drawConvexPolygon(triangle.data(), static_cast<int>(triangle.size()));
    }

private:
    bool pointsUp;
};

// One bar with pointed ends from `from` to `to`, which share one coordinate.
void DrawBar(QPainter& painter, QPointF from, QPointF to, double thickness) {
    const double half = thickness / 2.0;
    const QPointF along = from.y() == to.y() ? QPointF(half, 0.0) : QPointF(0.0, half);
    const QPointF across(along.y(), along.x());
    const QPointF gap = along * 0.12;
    const std::array<QPointF, 6> outline = {
        from + gap, from + gap + along + across, to - gap - along + across,
        to - gap,   to - gap - along - across,   from + gap + along - across};
    painter.drawConvexPolygon(outline.data(), static_cast<int>(outline.size()));
}

void DrawPlace(QPainter& painter, const QRectF& digit, const DigitPlace& place) {
    const double thickness = digit.height() * 0.13;
    const double half = thickness / 2.0;
    const double left = digit.left() + half;
    const double right = digit.right() - half;
    const double top = digit.top() + half;
    const double middle = digit.center().y();
    const double bottom = digit.bottom() - half;
    const std::array<std::pair<QPointF, QPointF>, 7> bars = {{{{left, top}, {right, top}},
                                                              {{right, top}, {right, middle}},
                                                              {{right, middle}, {right, bottom}},
                                                              {{left, bottom}, {right, bottom}},
                                                              {{left, middle}, {left, bottom}},
                                                              {{left, top}, {left, middle}},
                                                              {{left, middle}, {right, middle}}}};
    for (std::size_t bar = 0; bar < bars.size(); ++bar) {
        const bool on = (place.segments >> bar & 1) != 0;
        painter.setBrush(on ? Lit : Unlit);
        DrawBar(painter, bars[bar].first, bars[bar].second, thickness);
    }
    if (place.point) {
        painter.setBrush(Lit);
        const double behind = digit.right() + digit.width() * 0.215;
        painter.drawEllipse(QPointF(behind, bottom), thickness * 0.7, thickness * 0.7);
    }
}

// Beyond the usual places the digits shrink, down to the least height that can be read.
std::size_t MostPlaces(const QRectF& area) {
    const double fitting = std::floor(area.width() / (LeastDigitHeight * PlaceAspect));
    return std::max(UsualPlaces, static_cast<std::size_t>(std::max(0.0, fitting)));
}

} // namespace

ZelLED::ZelLED(QWidget* parent) : QWidget(parent) {
    InstallDisplayAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    up = new ArrowButton(true, this);
    up->setObjectName(QStringLiteral("StepUp"));
    up->setAccessibleName(tr("Step up"));
    down = new ArrowButton(false, this);
    down->setObjectName(QStringLiteral("StepDown"));
    down->setAccessibleName(tr("Step down"));
    connect(up, &QAbstractButton::clicked, this, [this] { TellStep(true); });
    connect(down, &QAbstractButton::clicked, this, [this] { TellStep(false); });
}

void ZelLED::SetValue(double newValue) {
    if (newValue == value)
        return;
    value = newValue;
    TellAccessibleValue(*this);
    ShowTextWhereDigitsCannot();
    update();
}

QString ZelLED::Text() const {
    return QString::fromStdString(DisplayText(value));
}

QSize ZelLED::sizeHint() const {
    return {168, 36};
}

QSize ZelLED::minimumSizeHint() const {
    return {84, 22};
}

void ZelLED::TellStep(bool stepsUp) {
    if (enabledFlag)
        emit Step(stepsUp);
}

QRectF ZelLED::DigitsArea() const {
    return QRectF(rect()).adjusted(Margin, Margin, -Margin - ArrowsWidth + 1.0, -Margin);
}

void ZelLED::ShowTextWhereDigitsCannot() {
    const auto places = DigitPlaces(DisplayText(value), UsualPlaces, MostPlaces(DigitsArea()));
    const DigitPlace bar{SegmentMiddle, false};
    const bool onlyBars = std::ranges::all_of(places, [&](const DigitPlace& place) { return place == bar; });
    setToolTip(onlyBars ? Text() : QString());
}

void ZelLED::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF glass = QRectF(rect()).adjusted(0.5, 0.5, -ArrowsWidth - 2.5, -0.5);
    painter.setPen(QPen(Mixed(OutlineColor(palette()), ChartGround, 0.3), 1.0));
    painter.setBrush(QColor(0x0B, 0x0D, 0x10));
    painter.drawRoundedRect(glass, 4.0, 4.0);
    if (hasFocus())
        DrawFocusRing(painter, glass.adjusted(-0.5, -0.5, 0.5, 0.5), 4.0, palette());

    const QRectF area = DigitsArea();
    const auto places = DigitPlaces(DisplayText(value), UsualPlaces, MostPlaces(area));
    const double pitch =
        std::min(area.width() / static_cast<double>(places.size()), area.height() * PlaceAspect);
    const double height = pitch / PlaceAspect;
    const double digitWidth = pitch * 0.70;
    double right = area.right();
    painter.setPen(Qt::NoPen);
    if (!isEnabled())
        painter.setOpacity(0.45);
    for (auto place = places.rbegin(); place != places.rend(); ++place, right -= pitch) {
        const QRectF digit(right - pitch, area.center().y() - height / 2.0, digitWidth, height);
        DrawPlace(painter, digit, *place);
    }
}

void ZelLED::resizeEvent(QResizeEvent*) {
    const int half = height() / 2;
    up->setGeometry(width() - ArrowsWidth, 0, ArrowsWidth, half);
    down->setGeometry(width() - ArrowsWidth, half, ArrowsWidth, height() - half);
    ShowTextWhereDigitsCannot();
}

void ZelLED::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up)
        TellStep(true);
    else if (event->key() == Qt::Key_Down)
        TellStep(false);
    else
        QWidget::keyPressEvent(event);
}

void ZelLED::wheelEvent(QWheelEvent* event) {
    wheelRest += event->angleDelta().y();
    for (; wheelRest >= WheelNotch; wheelRest -= WheelNotch)
        TellStep(true);
    for (; wheelRest <= -WheelNotch; wheelRest += WheelNotch)
        TellStep(false);
    event->accept();
}

} // namespace tracelet
