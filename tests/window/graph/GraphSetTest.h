#pragma once

#include "tests/support/MainWindowTest.h"
#include "window/graph/frmGraphSet.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

namespace tracelet {

/// The graph settings dialog, opened and used through the main window.
class GraphSetTest : public MainWindowTest {
protected:
    /// Opens the dialog by its button, runs `action` on it and cancels it if it is still open.
    void InDialog(std::function<void()> action) {
        bool ran = false;
        OnModalDialog<frmGraphSet>([&](frmGraphSet& opened) {
            dialog = &opened;
            action();
            ran = true;
            if (opened.isVisible())
                opened.reject();
        });
        Click(window->BtnGraphSet);
        EXPECT_TRUE(ran);
        dialog = nullptr;
    }

    template <typename Widget>
    [[nodiscard]] Widget* Find(const char* name) const {
        auto* widget = dialog->findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    [[nodiscard]] QString TextOf(const char* name) const { return Find<QLineEdit>(name)->text(); }
    /// Gives a box the focus, as if the user had come to it.
    void Enter(const char* name) {
        dialog->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        Find<QLineEdit>(name)->setFocus(Qt::OtherFocusReason);
    }
    void Type(const char* name, const char* text) {
        Enter(name);
        auto* box = Find<QLineEdit>(name);
        box->selectAll();
        QTest::keyClicks(box, QString::fromLatin1(text));
    }
    void Tab() { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); }
    void Ok() { Click(Find<QPushButton>("BtnApply")); }
    void Select(int row) { Find<QListWidget>("lstPlots")->setCurrentRow(row); }
    void Choose(int style) { Find<QComboBox>("CmbLineStyle")->setCurrentIndex(style); }
    void Scan(std::int32_t start, std::int32_t count) {
        window->ZelAI1->SetScanStartChannel(start);
        window->ZelAI1->SetScanChannelCount(count);
        window->BuildPlots(false, true);
    }

    frmGraphSet* dialog = nullptr;
};

} // namespace tracelet
