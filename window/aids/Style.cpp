#include "window/aids/Style.h"

#include "window/ground/Shading.h"

#include <QApplication>
#include <QProxyStyle>
#include <QStyleOptionButton>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

class Style : public QProxyStyle {
public:
    Style() : QProxyStyle(u"Fusion"_s) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        const bool isIndicator = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
        if (!isIndicator || button == nullptr || !IsDark(option->palette))
            return QProxyStyle::drawPrimitive(element, option, painter, widget);
        QPalette enabled = option->palette;
        enabled.setCurrentColorGroup(QPalette::Active);
        QStyleOptionButton visible = *button;
        // Outlines are a darker shade of the window's colour.
        visible.palette.setColor(QPalette::Window, OutlineColor(enabled).lighter(150));
        QProxyStyle::drawPrimitive(element, &visible, painter, widget);
    }
};

} // namespace

void InstallStyle() {
    QApplication::setStyle(new Style); // the application owns it
}

} // namespace tracelet
