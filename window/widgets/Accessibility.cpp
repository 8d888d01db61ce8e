#include "window/widgets/Accessibility.h"

#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QAccessible>
#include <QAccessibleValueChangeEvent>
#include <QAccessibleWidget>

namespace tracelet {

namespace {

class SliderInterface : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit SliderInterface(ZelSlider* shown)
        : QAccessibleWidget(shown, QAccessible::Slider), slider(shown) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return slider->Value(); }
    void setCurrentValue(const QVariant& value) override { slider->MoveByUser(value.toDouble()); }
    QVariant maximumValue() const override { return slider->Maximum(); }
    QVariant minimumValue() const override { return slider->Minimum(); }
    QVariant minimumStepSize() const override { return 0.0; }

private:
    ZelSlider* slider;
};

class DisplayInterface : public QAccessibleWidget {
public:
    explicit DisplayInterface(ZelLED* shown)
        : QAccessibleWidget(shown, QAccessible::SpinBox), display(shown) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? display->Text() : QAccessibleWidget::text(kind);
    }

private:
    ZelLED* display;
};

QAccessibleInterface* InterfaceOf(const QString&, QObject* object) {
    if (auto* slider = qobject_cast<ZelSlider*>(object))
        return new SliderInterface(slider); // owned by the accessibility cache
    if (auto* display = qobject_cast<ZelLED*>(object))
        return new DisplayInterface(display);
    return nullptr;
}

} // namespace

void InstallDisplayAccessibility() {
    QAccessible::installFactory(InterfaceOf); // a factory known already is not added again
}

void TellAccessibleValue(QWidget& control) {
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(&control, control.property("Value"));
    QAccessible::updateAccessibility(&event);
}

} // namespace tracelet
