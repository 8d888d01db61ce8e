#pragma once

#include <QLabel>

#include <vector>

class QToolButton;

namespace tracelet {

/// One line of text at the window's foot: what happened that is worth a word but no message box. A text that
/// is too long ends in "…"; its tooltip tells it whole. While there is nothing to tell, an offer may stand
/// there, with its links behind it.
class NoticeLine : public QLabel {
public:
    explicit NoticeLine(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;        ///< text and links
    [[nodiscard]] QSize minimumSizeHint() const override; ///< one line, however short

    /// Shows a text until the next; an empty one clears the line.
    void Show(const QString& text);
    /// The same in the colour of warnings.
    void Warn(const QString& text);
    /// Shows where something was put: a link with the folder's native path, which opens it, stands behind the
    /// text.
    void ShowFolder(const QString& text, const QString& path);
    /// Offers a recording that was not saved, until the next offer; an empty text takes it back.
    void Offer(const QString& text);

    // Links of the offer, only shown with it.
    QToolButton* BtnNoticeSave;
    QToolButton* BtnNoticeDiscard;
    QToolButton* BtnNoticeLater;
    QToolButton* BtnNoticeFolder; ///< of ShowFolder

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Tell(const QString& text, bool isAWarning, const QString& path = {});
    void Refresh();
    void OpenFolder();
    [[nodiscard]] bool IsOffering() const { return notice.isEmpty() && !offer.isEmpty(); }
    [[nodiscard]] std::vector<QToolButton*> Links() const; ///< that are shown
    [[nodiscard]] int WidthOfLinks() const;
    [[nodiscard]] int TextWidth() const;

    QString notice;
    QString offer;
    QString folder; ///< that the notice is about, "" for none
    bool isWarning = false;
};

} // namespace tracelet
