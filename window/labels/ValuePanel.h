#pragma once

#include <QImage>
#include <QStringList>
#include <QWidget>

#include <vector>

class QToolButton;

namespace tracelet {

/// Short texts in columns, below a line with a heading and buttons: rows as far as they
/// fit, then how many more there are. Drawn when it changes, not with each frame of the chart.
class ValuePanel : public QWidget {
    Q_OBJECT

public:
    struct Row {
        QRgb color = 0;
        QStringList
            cells; ///< the first stands at the left of its column and may be shortened, others at the right
        bool plot = true; ///< of a plot; else a line of captions
    };

    /// The first column is as wide as `firstColumn`; each further one as the widest of `column` and of what
    /// stood in it so far.
    ValuePanel(const QString& name, const QString& firstColumn, const QString& column, QWidget* parent);

    /// A button at the right end of the heading, the last one outermost.
    QToolButton* AddButton(const QString& name, const QString& text, const QString& toolTip);

    void Show(const QString& newHeading, std::vector<Row> newRows);
    void SetFolded(bool value); ///< folded, only the buttons are seen
    void FollowFont();          ///< makes texts as large as the chart's

    // Logical pixels.
    [[nodiscard]] int ButtonWidth() const; ///< that all of them take
    [[nodiscard]] int WidthOf(int columns) const;
    [[nodiscard]] int HeightOf(int rows) const;

    /// What is seen: the heading, then the rows, cells with a tab between them.
    [[nodiscard]] QStringList Lines() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// Rows that fit, and how many plots stand in none of them.
    struct Fit {
        std::size_t rows = 0;
        int more = 0;
    };
    [[nodiscard]] Fit FittingRows() const;
    [[nodiscard]] int LineHeight() const;
    [[nodiscard]] int ColumnWidth(std::size_t column) const;
    void WidenColumns();
    void PlaceButtons();
    void Render();
    void RenderRow(QPainter& painter, const Row& row, int top) const;

    QFont chartFont; ///< as it was followed last
    QString firstTemplate;
    QString otherTemplate;
    QString heading;
    std::vector<Row> rows;
    std::vector<int> widths; ///< of columns, without the gap in front of them
    int firstWidth = 0;
    int otherWidth = 0;
    bool folded = false;
    std::vector<QToolButton*> buttons;
    QImage image; ///< null: to be drawn anew
};

} // namespace tracelet
