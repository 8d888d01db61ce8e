#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <variant>

class QHelpEvent;
class QPushButton;

namespace tracelet {

class ValuePanel;

/// Axis numbers of the graph.
enum GraphAxis : int { XAxis = 0, VoltageAxis = 1, DigitalAxis = 2, TemperatureAxis = 3 };

/// Mouse modes; the codes 1 to 3 are not used.
enum MouseModeCode : std::int32_t {
    MouseNone = 0,
    MouseXPan = 4,
    MouseYPan = 5,
    MouseXYPan = 6,
    MouseXZoom = 7,
    MouseYZoom = 8,
    MouseXYZoom = 9
};

/// Look of one plot. `color` is a raw 0x00BBGGRR value, or 0x80000000 + n for system colour n; it is kept
/// as it is.
struct PlotAttributes {
    QString name;
    std::uint32_t color = 0;
    std::int32_t lineStyle = 0; ///< 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot; others draw solid
    int axis = VoltageAxis;     ///< VoltageAxis, DigitalAxis or TemperatureAxis
    double level = 0;           ///< of a digital line while it is low; its name stands half a unit higher
    QString unit{};             ///< of its values; empty for none
};

/// Colour that a raw colour value is drawn in; system colour 22 is E3E3E3, any other unknown one too.
[[nodiscard]] QColor ResolvedColor(std::uint32_t raw);

/// Gives ZelGraph a role and values for assistive technology; any number of calls install it once.
void InstallChartAccessibility();

/// New samples of the first `channels` plots, channel-interleaved; a view, valid as long as the data.
struct SampleBlock {
    std::variant<std::span<const float>, std::span<const std::int32_t>, std::span<const double>> samples;
    std::int32_t countPerChannel = 0;
    std::int32_t channels = 0;
};

/// Strip chart: any number of plots on one time axis and up to three Y axes, a bounded number of newest
/// points each, repainted at the display's rate.
///
/// X follows the newest point: a point beyond XAxisMax scrolls the axis, span kept, so that it stands at
/// the right edge; one before XAxisMin moves the axis so that it starts there.
///
/// While BtnHold is down, what is shown stands still and X follows unseen: zooms and pans move the view
/// alone, whose span, however reached, is always that of X. Until it is up no point goes for ChartLength.
class ZelGraph : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double XAxisMin READ XAxisMin WRITE SetXAxisMin)
    Q_PROPERTY(double XAxisMax READ XAxisMax WRITE SetXAxisMax)
    Q_PROPERTY(int ChartLength READ ChartLength WRITE SetChartLength)
    Q_PROPERTY(int MouseMode READ MouseMode WRITE SetMouseMode)
    Q_PROPERTY(int PlotCount READ PlotCount)

public:
    explicit ZelGraph(QWidget* parent = nullptr);
    ~ZelGraph() override;

    // Plots, in graph order. An index outside raises "Subscript out of range".
    [[nodiscard]] int PlotCount() const;
    int AddPlot(const PlotAttributes& attributes); ///< returns its index; it holds no points and is visible
    void RemovePlots();
    [[nodiscard]] const PlotAttributes& Plot(int index) const;
    void SetPlot(int index, const PlotAttributes& attributes); ///< in place: its points stay
    [[nodiscard]] bool PlotVisible(int index) const;
    void SetPlotVisible(int index, bool visible);
    [[nodiscard]] std::int64_t PointCount(int index) const; ///< points held
    /// Point `position` of the held ones, 0 the oldest: {x in seconds, y}.
    [[nodiscard]] QPointF PointAt(int index, std::int64_t position) const;

    // Axes. Ends may be written one after the other in either order.
    [[nodiscard]] double AxisMin(int axis) const;
    void SetAxisMin(int axis, double value);
    [[nodiscard]] double AxisMax(int axis) const;
    void SetAxisMax(int axis, double value);
    /// Both ends at once, automatic scaling off; equal, reversed or non-finite ends raise
    /// "Invalid axis range".
    void AxisSetRange(int axis, double minimum, double maximum);
    [[nodiscard]] bool AxisAutoScale(int axis) const;
    void SetAxisAutoScale(int axis, bool automatic);
    [[nodiscard]] bool AxisVisible(int axis) const; ///< shown when allowed and a visible plot uses it
    void SetAxisVisible(int axis, bool visible);
    [[nodiscard]] QString AxisTitle(int axis) const;
    void SetAxisTitle(int axis, const QString& title);
    [[nodiscard]] QString AxisUnit(int axis) const; ///< drawn behind the title of a Y axis, "[V]"
    void SetAxisUnit(int axis, const QString& unit);

    [[nodiscard]] double XAxisMin() const { return AxisMin(XAxis); }
    [[nodiscard]] double XAxisMax() const { return AxisMax(XAxis); }
    void SetXAxisMin(double seconds) { SetAxisMin(XAxis, seconds); }
    void SetXAxisMax(double seconds) { SetAxisMax(XAxis, seconds); }
    void SetXAxisTitle(const QString& title) { SetAxisTitle(XAxis, title); }
    /// Seconds of a division: an X axis that spans ten has its grid lines at their multiples. Any other has
    /// round steps, as have all when it is 0.
    [[nodiscard]] double Division() const;
    void SetDivision(double seconds);

    /// Newest points kept a plot; 0 keeps everything. Surplus points go when new ones come to their plot: a
    /// zoom into what was drawn loses nothing. Memory follows what is held, not this number.
    [[nodiscard]] std::int32_t ChartLength() const;
    void SetChartLength(std::int32_t points);

    /// The block that AppendSamples takes: `countPerChannel` scans of `channels` values each. Raises
    /// "Overflow" when the data do not hold as many.
    [[nodiscard]] static SampleBlock PlotInterleaved(std::int32_t countPerChannel, std::int32_t channels,
                                                     std::span<const float> data);
    [[nodiscard]] static SampleBlock PlotInterleaved(std::int32_t countPerChannel, std::int32_t channels,
                                                     std::span<const std::int32_t> data);

    /// Appends scans spaced `xIncrement` seconds apart, the first at NextX().
    void AppendSamples(double xIncrement, const SampleBlock& block);
    /// Appends one scan at time `x` seconds: one value for each of the first `values.size()` plots.
    void AppendScan(double x, std::span<const float> values);
    /// Appends one point to one plot.
    void AddPoint(int plot, double x, double y);

    /// Time in seconds of the first sample of the next AppendSamples.
    [[nodiscard]] double NextX() const;
    void SetNextX(double seconds);

    /// Samples are missing from one time to the other, or at it; `text` is for people. A mark that starts
    /// where the newest one does takes its place. Marks come in the order of time and stay until they are
    /// cleared.
    void MarkLoss(double from, double to, const QString& text);
    void ClearLossMarks();
    [[nodiscard]] int LossMarkCount() const;
    /// Text of the mark at the horizontal graph coordinate `x`, give or take a few pixels; "" for none.
    [[nodiscard]] QString LossAt(double x) const;

    /// Text drawn in the chart while no plot holds samples; lines end in "\n".
    void SetHint(const QString& text);
    [[nodiscard]] QString Hint() const;

    /// Removes all samples; plots, axes, NextX, marks and mouse mode stay.
    void ClearData();

    /// Where samples are drawn, in graph coordinates; empty when the graph is too small for it.
    [[nodiscard]] QRect PlotRect() const;
    /// Time at the horizontal graph coordinate `x`; the plot area spans XAxisMin to XAxisMax.
    [[nodiscard]] double TimeAt(double x) const;
    /// Bytes that the held samples take.
    [[nodiscard]] std::int64_t HeldBytes() const;
    /// Bytes that samples may take, half of the machine's memory at first and at most. More is "Out of
    /// memory!": Error says so once, and the chart goes on with fewer points a plot.
    [[nodiscard]] std::int64_t MemoryBudget() const;
    void SetMemoryBudget(std::int64_t bytes);

    /// The read-out at the right of the plot area, off at first: name and value of each visible plot, the
    /// latest one or, while the pointer is over the plot area, that of the sample nearest to the pointer's
    /// time. The user folds it by its button; a graph narrower than 480 pixels has none.
    void ShowReadOut(bool shown);
    /// Times in seconds of the cursors 0 (A) and 1 (B), which Shift+click places in any mouse mode; none
    /// where one does not stand. While one does, a table below the plot area shows what lies at and between
    /// them.
    [[nodiscard]] std::optional<double> CursorTime(int cursor) const;
    void RemoveCursors();
    /// The table for spreadsheets: of all visible plots, a line of captions first, cells with tabs between
    /// them.
    [[nodiscard]] QString CursorText() const;
    /// What read-out and cursors say, a line a plot.
    [[nodiscard]] QString ValuesText() const;
    /// Writes read-out and table anew at once, not when it is their time again.
    void RefreshValues();

    [[nodiscard]] QSize sizeHint() const override;

    /// Draws what it shows, `scale` dots of `painter` for each of its pixels. Traces are drawn as pixels of a
    /// dot, all else as what it is.
    void DrawPicture(QPainter& painter, double scale);

    [[nodiscard]] std::int32_t MouseMode() const;
    void SetMouseMode(std::int32_t code); ///< an unknown code is ignored

    QPushButton* BtnHold = nullptr; ///< in the chart's corner; ClearData and RemovePlots let it go
    /// Undoes the last zoom or pan of these plots that gesture, wheel or key made. A span comes back; where
    /// samples came since, it stands at the newest of them.
    void StepBack();

signals:
    /// Button codes 1 left, 2 right, 4 middle; shift bits 1 shift, 2 control, 4 alt; graph coordinates.
    void MouseDown(int button, int shift, double x, double y);
    /// After the graph has applied a zoom.
    void MouseUp(int button, int shift, double x, double y);
    /// The time axis spans `seconds` by other than a drag: wheel, key, double click or a step back.
    void Zoomed(double seconds);
    void Error(int number, const QString& text);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct State;
    void SamplesChanged();
    void LookChanged();
    template <typename Append>
    bool TryAppend(Append append);
    void UpdateCursor();
    [[nodiscard]] bool MoveView(const QKeyEvent& event);
    void ChangeView(bool isRun, const std::function<void()>& change);
    void Hold(bool still);
    void PlaceHold();
    bool ShowLoss(const QHelpEvent& help);
    void ValuesChanged();
    void ValuesDue();
    [[nodiscard]] ValuePanel* NewPanel(const QString& name, const QString& firstColumn,
                                       const QString& column);
    void PlacePanels();
    void ChangeCursors();
    [[nodiscard]] bool GrabCursor(const QMouseEvent& event);
    [[nodiscard]] bool DragCursor(const QMouseEvent& event);
    [[nodiscard]] bool PressCursorKey(const QKeyEvent& event);
    void Hover(QPointF position);
    std::unique_ptr<State> state;
};

} // namespace tracelet
