#include "tests/monkey/Hands.h"

#include "tests/monkey/Diary.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QString>
#include <QTabBar>
#include <QTest>
#include <QWheelEvent>

#include <vector>

namespace tracelet {
namespace {

const char* const Texts[] = {"0",     "1",     "2",    "3",     "10",         "64",   "100",
                             "1000",  "1,000", "0.5",  "-1",    "-10.5",      "1e3",  "1e999",
                             "-0",    "abc",   "",     " 7 ",   "1e-9",       "5000", "10000",
                             "99999", "1e12",  "12:3", "32768", "4294967296", "nan"};

QPoint PointIn(Random& random, const QRect& rect) {
    return rect.topLeft() + QPoint(random.Below(rect.width()), random.Below(rect.height()));
}

Qt::MouseButton SomeButton(Random& random) {
    return random.Pick(
        {Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton});
}

void Wheel(Random& random, QWidget& widget) {
    const QPoint at = PointIn(random, widget.rect());
    QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, random.Percent(50) ? 120 : -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

void TypeInto(Random& random, QLineEdit& box) {
    const QPointer<QLineEdit> alive(&box);
    const QString text = QString::fromLatin1(random.Pick(Texts));
    Note(QStringLiteral("type \"%1\" into %2").arg(text, NameOf(box)));
    box.setFocus(Qt::OtherFocusReason);
    if (!alive)
        return;
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    if (alive && !text.isEmpty())
        QTest::keyClicks(&box, text);
    if (alive && random.Percent(70))
        QTest::keyClick(&box, Qt::Key_Tab);
}

void ChooseIn(Random& random, QComboBox& list) {
    switch (random.Below(4)) {
    case 0:
        return QTest::mouseClick(&list, Qt::LeftButton);
    case 1:
        return QTest::keyClick(&list, random.Pick({Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_Home}));
    case 2:
        return Wheel(random, list);
    default:
        list.setCurrentIndex(random.Below(list.count()));
    }
}

void ChooseIn(Random& random, QAbstractItemView& view) {
    const int rows = view.model()->rowCount();
    if (rows == 0)
        return;
    if (random.Percent(30))
        return QTest::keyClick(&view, random.Pick({Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_Home}));
    const QModelIndex index = view.model()->index(random.Below(rows), 0);
    view.scrollTo(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
}

void PressButton(Random& random, QAbstractButton& button) {
    if (random.Percent(15))
        QTest::keyClick(&button, Qt::Key_Space);
    else // left, where the mark of a check box is
        QTest::mouseClick(&button, Qt::LeftButton, {},
                          QPoint(qMin(10, button.width() / 2), button.height() / 2));
}

bool IsWorthAPoke(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled() && !widget.rect().isEmpty() &&
           widget.focusPolicy() != Qt::NoFocus && qobject_cast<const QScrollBar*>(&widget) == nullptr;
}

} // namespace

QString NameOf(const QWidget& widget) {
    const QString name = widget.objectName();
    return name.isEmpty() ? QString::fromLatin1(widget.metaObject()->className()) : name;
}

void Drag(Random& random, QWidget& widget) {
    const QPointer<QWidget> alive(&widget);
    const Qt::MouseButton button = SomeButton(random);
    const QPoint from = PointIn(random, widget.rect());
    const QPoint to =
        random.Percent(20) ? from + QPoint(random.Below(5), random.Below(5)) : PointIn(random, widget.rect());
    Note(QStringLiteral("drag on %1 with button %2").arg(NameOf(widget)).arg(int(button)));
    QTest::mousePress(&widget, button, {}, from);
    if (alive && random.Percent(10)) {
        QTest::mousePress(&widget, Qt::RightButton, {}, from);
        if (alive)
            QTest::mouseRelease(&widget, Qt::RightButton, {}, from);
    }
    if (alive)
        QTest::mouseMove(&widget, (from + to) / 2);
    if (alive && random.Percent(5))
        QTest::keyClick(&widget, Qt::Key_Escape);
    if (alive)
        QTest::mouseMove(&widget, to);
    if (alive && random.Percent(95))
        QTest::mouseRelease(&widget, button, {}, to);
}

void Poke(Random& random, QWidget& widget) {
    if (auto* box = qobject_cast<QLineEdit*>(&widget))
        return TypeInto(random, *box);
    Note(QStringLiteral("poke %1").arg(NameOf(widget)));
    if (auto* list = qobject_cast<QComboBox*>(&widget))
        return ChooseIn(random, *list);
    if (auto* view = qobject_cast<QAbstractItemView*>(&widget))
        return ChooseIn(random, *view);
    if (auto* button = qobject_cast<QAbstractButton*>(&widget))
        return PressButton(random, *button);
    if (auto* tabs = qobject_cast<QTabBar*>(&widget))
        return tabs->setCurrentIndex(random.Below(tabs->count()));
    switch (random.Below(4)) {
    case 0:
        return Wheel(random, widget);
    case 1:
        return QTest::keyClick(&widget, random.Pick({Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_Home,
                                                     Qt::Key_End, Qt::Key_Left, Qt::Key_Space}));
    default:
        return Drag(random, widget);
    }
}

void PokeSomething(Random& random, QWidget& window) {
    std::vector<QWidget*> worth;
    for (QWidget* widget : window.findChildren<QWidget*>())
        if (widget->window() == &window && IsWorthAPoke(*widget))
            worth.push_back(widget);
    if (!worth.empty())
        Poke(random, *random.Pick(worth));
}

void PressSomeKey(Random& random, QWidget& window) {
    QWidget* focus = QApplication::focusWidget();
    QWidget& target = focus != nullptr && focus->window() == &window ? *focus : window;
    const Qt::Key key = random.Pick({Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Return, Qt::Key_Up,
                                     Qt::Key_Down, Qt::Key_Left, Qt::Key_5, Qt::Key_Minus, Qt::Key_A});
    const Qt::KeyboardModifiers with = random.Percent(15) ? Qt::AltModifier : Qt::NoModifier;
    Note(QStringLiteral("press key %1 on %2").arg(QKeySequence(key).toString(), NameOf(target)));
    QTest::keyClick(&target, key, with);
}

} // namespace tracelet
