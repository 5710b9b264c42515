// SPDX-License-Identifier: GPL-3.0-or-later

#include "plottedcurves.h"

#include "modules/module.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double FullLevel = 255;
constexpr double LargestChange = 100; // percent
constexpr double Margin = 0.5;        // lights, at both ends
constexpr double ZoomStep = 0.6;
constexpr double LeastLights = 8; // in view
constexpr double LevelRow = 3;    // height by that of the changes
constexpr int ClickPixels = 4;    // by which a pointer may move
constexpr QSize LeastPlot(300, 140);

// Their hues can be told apart without red and green; so can their patterns.
struct CurveColors
{
    QColor level;
    QColor expected;
    QColor baseline;
    QColor bad;
};

CurveColors colorsFor(const QPalette &palette)
{
    const bool isDark =
        palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
    if (isDark)
        return {QColor(0x56, 0xB4, 0xE9), QColor(0xE6, 0x9F, 0x00), QColor(0xBB, 0xBB, 0xBB),
                QColor(0xF0, 0xE4, 0x42)};
    return {QColor(0x00, 0x72, 0xB2), QColor(0xD5, 0x5E, 0x00), QColor(0x77, 0x77, 0x77),
            QColor(0x8A, 0x3C, 0x00)};
}

QVector<double> numbersOf(qsizetype lights)
{
    QVector<double> numbers(lights);
    for (qsizetype i = 0; i < lights; ++i)
        numbers[i] = double(i);
    return numbers;
}

class PlottedCurvesMaker final : public CurvesMaker
{
public:
    Curves *make(QWidget *parent, CurvesListener listener) override
    {
        return new PlottedCurves(parent, std::move(listener));
    }
};

PlottedCurvesMaker maker;

} // namespace

QUORVEL_MODULE(CurvesMaker, curves, &maker)

PlottedCurves::PlottedCurves(QWidget *parent, CurvesListener theListener)
    : QCustomPlot(parent)
    , listener(std::move(theListener))
{
    setObjectName(u"curves"_s);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(LeastPlot);
    plotLayout()->clear();
    setNotAntialiasedElements(QCP::aeAll);
    setPlottingHints(QCP::phFastPolylines | QCP::phCacheLabels);
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    for (int axis = 0; axis < 2; ++axis)
        build(axis);
    plotLayout()->setRowStretchFactor(0, LevelRow);
    words = new QCPItemText(this);
    words->setClipToAxisRect(false);
    words->position->setType(QCPItemPosition::ptViewportRatio);
    words->position->setCoords(0.5, 0);
    words->setPositionAlignment(Qt::AlignTop | Qt::AlignHCenter);
    words->setPadding(QMargins(6, 2, 6, 2));
    words->setVisible(false);
    takeColors();
    setCurves({}, 0);
}

QCPAxisRect *PlottedCurves::addRect(int row, int column, double lower, double upper)
{
    auto *rect = new QCPAxisRect(this);
    rect->setMinimumMargins(QMargins(4, 4, 8, 4));
    rect->setRangeDrag(Qt::Horizontal);
    rect->setRangeZoom(Qt::Horizontal);
    rect->axis(QCPAxis::atLeft)->setRange(lower, upper);
    for (QCPAxis *axis : rect->axes()) {
        axis->setLayer(u"axes"_s);
        axis->grid()->setLayer(u"grid"_s);
    }
    plotLayout()->addElement(row, column, rect);
    return rect;
}

QCPItemStraightLine *PlottedCurves::addLine(QCPAxisRect *rect)
{
    auto *line = new QCPItemStraightLine(this);
    line->setClipAxisRect(rect);
    for (QCPItemPosition *end : line->positions()) {
        end->setAxisRect(rect);
        end->setAxes(rect->axis(QCPAxis::atBottom), rect->axis(QCPAxis::atLeft));
    }
    return line;
}

void PlottedCurves::build(int axis)
{
    Panel &panel = panels[size_t(axis)];
    panel.levels = addRect(0, axis, 0, FullLevel + 5);
    panel.changes = addRect(1, axis, -LargestChange, LargestChange / 2);
    // A light is at the same place in both.
    auto *sides = new QCPMarginGroup(this);
    for (QCPAxisRect *rect : {panel.levels, panel.changes})
        rect->setMarginGroup(QCP::msLeft | QCP::msRight, sides);
    QCPAxis *numbers = panel.levels->axis(QCPAxis::atBottom);
    numbers->setLabel(axis == 0 ? QCoreApplication::translate("PlottedCurves", "Lights of X")
                                : QCoreApplication::translate("PlottedCurves", "Lights of Y"));
    panel.levels->axis(QCPAxis::atLeft)
        ->setLabel(QCoreApplication::translate("PlottedCurves", "Level"));
    panel.changes->axis(QCPAxis::atLeft)
        ->setLabel(QCoreApplication::translate("PlottedCurves", "Change, %"));
    const auto graph = [this, numbers, &panel] {
        return addGraph(numbers, panel.levels->axis(QCPAxis::atLeft));
    };
    panel.baseline = graph();
    panel.expected = graph();
    panel.level = graph();
    panel.bad = graph();
    panel.bad->setLineStyle(QCPGraph::lsNone);
    panel.change =
        addGraph(panel.changes->axis(QCPAxis::atBottom), panel.changes->axis(QCPAxis::atLeft));
    panel.change->setLineStyle(QCPGraph::lsImpulse);
    panel.limit = addLine(panel.levels);
    panel.cursor = addLine(panel.levels);
    panel.cursor->setVisible(false);
    // Both show the same lights.
    QCPAxis *below = panel.changes->axis(QCPAxis::atBottom);
    connect(numbers, qOverload<const QCPRange &>(&QCPAxis::rangeChanged), this,
            [this, axis, below](const QCPRange &range) {
                setRange(axis, range.lower, range.upper);
                below->setRange(panels[size_t(axis)].levels->axis(QCPAxis::atBottom)->range());
            });
    connect(below, qOverload<const QCPRange &>(&QCPAxis::rangeChanged), numbers,
            qOverload<const QCPRange &>(&QCPAxis::setRange));
}

void PlottedCurves::fill(Panel &panel, const AxisCurves &curves)
{
    const QVector<double> numbers = numbersOf(curves.levels.size());
    panel.level->setData(numbers, curves.levels, true);
    panel.expected->setData(numbers, curves.expected, true);
    panel.baseline->setData(curves.baseline.isEmpty() ? QVector<double>() : numbers,
                            curves.baseline, true);
    panel.change->setData(curves.change.isEmpty() ? QVector<double>() : numbers, curves.change,
                          true);
    QVector<double> places;
    QVector<double> levels;
    for (const int light : curves.bad) {
        places += light;
        levels += curves.levels[light];
    }
    panel.bad->setData(places, levels, true);
}

void PlottedCurves::setCurves(const std::array<AxisCurves, 2> &curves, double limit)
{
    const bool compares = !curves[0].change.isEmpty() || !curves[1].change.isEmpty();
    plotLayout()->setRowStretchFactor(1, compares ? 1 : 0.001); // 0 is refused
    for (int axis = 0; axis < 2; ++axis) {
        Panel &panel = panels[size_t(axis)];
        fill(panel, curves[size_t(axis)]);
        panel.limit->point1->setCoords(0, limit);
        panel.limit->point2->setCoords(1, limit);
        panel.changes->setVisible(compares);
        panel.changes->setMinimumSize(QSize(0, compares ? LeastPlot.height() / 4 : 0));
        panel.changes->setMaximumSize(QWIDGETSIZE_MAX, compares ? QWIDGETSIZE_MAX : 0);
        panel.changes->setMinimumMargins(compares ? QMargins(4, 4, 8, 4) : QMargins());
        const int lights = int(curves[size_t(axis)].levels.size());
        if (lights == panel.lights)
            continue;
        panel.lights = lights;
        setRange(axis, -Margin, lights - 1 + Margin);
    }
    go(chosen.axis, chosen.light);
    replot(rpQueuedReplot);
}

void PlottedCurves::choose(int axis, int light)
{
    go(axis, light);
    if (panels[size_t(axis)].lights > 0) {
        const QCPRange range = panels[size_t(axis)].levels->axis(QCPAxis::atBottom)->range();
        if (!range.contains(light))
            setRange(axis, light - range.size() / 2, light + range.size() / 2);
    }
    replot(rpQueuedReplot);
}

void PlottedCurves::zoomTo(int axis, int first, int last)
{
    const double around = std::max(LeastLights, double(last - first + 1));
    setRange(axis, first - around, last + around);
    choose(axis, first);
}

void PlottedCurves::go(int axis, int light)
{
    chosen = {axis, std::clamp(light, 0, std::max(0, panels[size_t(axis)].lights - 1))};
    showCursor();
}

void PlottedCurves::showCursor()
{
    for (int axis = 0; axis < 2; ++axis) {
        const Panel &panel = panels[size_t(axis)];
        panel.cursor->setVisible(axis == chosen.axis && panel.lights > 0);
        panel.cursor->point1->setCoords(chosen.light, 0);
        panel.cursor->point2->setCoords(chosen.light, 1);
    }
    showWords(hasFocus() ? std::optional(chosen) : std::nullopt);
}

void PlottedCurves::showWords(std::optional<Place> place)
{
    const bool isThere = place && panels[size_t(place->axis)].lights > 0;
    words->setVisible(isThere);
    if (isThere)
        words->setText(listener.wordsFor(place->axis, place->light));
}

// Never beyond the lights, nor closer than a few.
void PlottedCurves::setRange(int axis, double from, double to)
{
    const Panel &panel = panels[size_t(axis)];
    const double whole = std::max(panel.lights, 1);
    const double size = std::clamp(to - from, std::min(LeastLights, whole), whole);
    const double middle = std::clamp((from + to) / 2, size / 2 - Margin, whole - Margin - size / 2);
    panel.levels->axis(QCPAxis::atBottom)->setRange(middle - size / 2, middle + size / 2);
}

void PlottedCurves::zoom(double factor)
{
    const QCPRange range = panels[size_t(chosen.axis)].levels->axis(QCPAxis::atBottom)->range();
    const double size = range.size() * factor;
    setRange(chosen.axis, chosen.light - size / 2, chosen.light + size / 2);
    replot(rpQueuedReplot);
}

std::optional<PlottedCurves::Place> PlottedCurves::placeAt(QPointF point) const
{
    for (int axis = 0; axis < 2; ++axis) {
        const Panel &panel = panels[size_t(axis)];
        const QRect area = panel.levels->rect() | panel.changes->rect();
        if (panel.lights == 0 || !area.contains(point.toPoint()))
            continue;
        const double light = panel.levels->axis(QCPAxis::atBottom)->pixelToCoord(point.x());
        return Place{axis, std::clamp(int(std::lround(light)), 0, panel.lights - 1)};
    }
    return {};
}

void PlottedCurves::takeColors()
{
    const QPalette colors = palette();
    const QColor text = colors.color(QPalette::Text);
    const QColor base = colors.color(QPalette::Base);
    const CurveColors curves = colorsFor(colors);
    QColor faint = text;
    faint.setAlphaF(0.2F);
    setBackground(base);
    for (Panel &panel : panels) {
        for (QCPAxisRect *rect : {panel.levels, panel.changes}) {
            for (QCPAxis *axis : rect->axes()) {
                axis->setBasePen(QPen(text, 0));
                axis->setTickPen(QPen(text, 0));
                axis->setSubTickPen(QPen(text, 0));
                axis->setTickLabelColor(text);
                axis->setLabelColor(text);
                axis->setTickLabelFont(font());
                axis->setLabelFont(font());
                axis->grid()->setPen(QPen(faint, 0));
                axis->grid()->setZeroLinePen(QPen(faint, 0));
            }
            // No change. A line like that at light 0 would look like the mark of the chosen one.
            rect->axis(QCPAxis::atLeft)->grid()->setZeroLinePen(QPen(text, 0));
        }
        panel.level->setPen(QPen(curves.level, 1));
        panel.expected->setPen(QPen(curves.expected, 1, Qt::DashLine));
        panel.baseline->setPen(QPen(curves.baseline, 1, Qt::DotLine));
        panel.change->setPen(QPen(curves.level, 1));
        panel.bad->setScatterStyle(
            QCPScatterStyle(QCPScatterStyle::ssCross, QPen(curves.bad, 2), Qt::NoBrush, 7));
        panel.limit->setPen(QPen(text, 1, Qt::DashDotLine));
        panel.cursor->setPen(QPen(text, 0));
    }
    words->setBrush(base);
    words->setPen(QPen(text, 0));
    words->setColor(text);
    words->setFont(font());
    replot(rpQueuedReplot);
}

void PlottedCurves::changeEvent(QEvent *event)
{
    QCustomPlot::changeEvent(event);
    if (words && (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange))
        takeColors();
}

void PlottedCurves::keyPressEvent(QKeyEvent *event)
{
    const bool isX = chosen.axis == 0;
    const int last = panels[size_t(chosen.axis)].lights - 1;
    const auto goTo = [this](int axis, int light) {
        choose(axis, light);
        listener.chosen(chosen.axis, chosen.light);
    };
    switch (event->key()) {
    case Qt::Key_Left:
        return goTo(chosen.axis, chosen.light - 1);
    case Qt::Key_Right:
        return goTo(chosen.axis, chosen.light + 1);
    case Qt::Key_Home:
        return goTo(chosen.axis, 0);
    case Qt::Key_End:
        return goTo(chosen.axis, last);
    case Qt::Key_Up:
    case Qt::Key_Down:
        return goTo(isX ? 1 : 0, chosen.light);
    case Qt::Key_Plus:
        return zoom(ZoomStep);
    case Qt::Key_Minus:
        return zoom(1 / ZoomStep);
    case Qt::Key_0:
        return zoom(panels[size_t(chosen.axis)].lights);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (last >= 0)
            listener.opened(chosen.axis, chosen.light);
        return;
    default:
        QCustomPlot::keyPressEvent(event);
    }
}

void PlottedCurves::mouseMoveEvent(QMouseEvent *event)
{
    QCustomPlot::mouseMoveEvent(event);
    showWords(placeAt(event->position()));
    replot(rpQueuedReplot);
}

void PlottedCurves::mousePressEvent(QMouseEvent *event)
{
    pressedAt = event->position();
    QCustomPlot::mousePressEvent(event);
}

void PlottedCurves::mouseReleaseEvent(QMouseEvent *event)
{
    QCustomPlot::mouseReleaseEvent(event);
    const auto place = placeAt(event->position());
    if (!place || (event->position() - pressedAt).manhattanLength() > ClickPixels)
        return;
    go(place->axis, place->light);
    replot(rpQueuedReplot);
    listener.chosen(place->axis, place->light);
}

void PlottedCurves::mouseDoubleClickEvent(QMouseEvent *event)
{
    QCustomPlot::mouseDoubleClickEvent(event);
    if (const auto place = placeAt(event->position()))
        listener.opened(place->axis, place->light);
}

void PlottedCurves::leaveEvent(QEvent *event)
{
    QCustomPlot::leaveEvent(event);
    showCursor();
    replot(rpQueuedReplot);
}

void PlottedCurves::focusInEvent(QFocusEvent *event)
{
    QCustomPlot::focusInEvent(event);
    showCursor();
    replot(rpQueuedReplot);
}

void PlottedCurves::focusOutEvent(QFocusEvent *event)
{
    QCustomPlot::focusOutEvent(event);
    showCursor();
    replot(rpQueuedReplot);
}
