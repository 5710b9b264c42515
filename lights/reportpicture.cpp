#include "reportpicture.h"

#include "text.h"
#include "words.h"

#include <QRectF>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

// In units of the pictures, whatever their size on a screen or on paper.
constexpr double PictureWidth = 1000;
constexpr double WallMargin = 60;
constexpr double LightLength = 14;
constexpr double LetterSize = 13;
constexpr double StretchWidth = 8;
constexpr double LowestShape = 0.3; // height of a screen by its width
constexpr double HighestShape = 1.5;
constexpr double CurveHeight = 300;
constexpr double CurveLeft = 45;
constexpr double CurveTop = 15;
constexpr double CurveBottom = 275;
constexpr int LevelStep = 50;

QString svgNumber(double value)
{
    return QString::number(value, 'f', 1);
}

QString svgRect(const QRectF &area, const QString &classes)
{
    return u"<rect class=\"%1\" x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\"/>\n"_s.arg(
        classes, svgNumber(area.x()), svgNumber(area.y()), svgNumber(area.width()),
        svgNumber(area.height()));
}

QString svgText(double x, double y, const QString &words, const QString &classes)
{
    return u"<text class=\"%1\" x=\"%2\" y=\"%3\">%4</text>\n"_s.arg(
        classes, svgNumber(x), svgNumber(y), words.toHtmlEscaped());
}

QString svgBegin(double height, const QString &title)
{
    return u"<svg viewBox=\"0 0 %1 %2\" role=\"img\" aria-label=\"%3\">\n<title>%3</title>\n"_s.arg(
        svgNumber(PictureWidth), svgNumber(height), title.toHtmlEscaped());
}

double shapeOf(const Measurement &measurement)
{
    const double width = measurement.x.lights * measurement.x.pitch.value_or(1);
    const double height = measurement.y.lights * measurement.y.pitch.value_or(1);
    return width > 0 && height > 0 ? std::clamp(height / width, LowestShape, HighestShape) : 0.5625;
}

// A light and its letter at both of its edges.
QString lightAt(Axis axis, const QRectF &screen, double from, double length, const Light &light)
{
    const QString verdict = key(light.verdict);
    const QString letter = letterFor(light.verdict);
    QString marks;
    if (axis == Axis::X) {
        const double middle = from + length / 2;
        marks += svgRect({from, screen.top() - LightLength, length, LightLength}, verdict);
        marks += svgRect({from, screen.bottom(), length, LightLength}, verdict);
        if (!letter.isEmpty()) {
            marks += svgText(middle, screen.top() - LightLength - 4, letter, u"letter"_s);
            marks +=
                svgText(middle, screen.bottom() + LightLength + LetterSize, letter, u"letter"_s);
        }
        return marks;
    }
    const double middle = from + length / 2 + LetterSize / 3;
    marks += svgRect({screen.left() - LightLength, from, LightLength, length}, verdict);
    marks += svgRect({screen.right(), from, LightLength, length}, verdict);
    if (!letter.isEmpty()) {
        marks += svgText(screen.left() - LightLength - LetterSize, middle, letter, u"letter"_s);
        marks += svgText(screen.right() + LightLength + LetterSize, middle, letter, u"letter"_s);
    }
    return marks;
}

QString stretchAt(const Stretch &stretch, const QRectF &screen, double step)
{
    const QString classes = u"stretch "_s + key(stretch.verdict);
    const double away = LightLength + 2 * LetterSize;
    const double length = step * (stretch.last - stretch.first + 1);
    if (stretch.axis == Axis::X) {
        const double from = screen.left() + step * stretch.first;
        return svgRect({from, screen.top() - away - StretchWidth, length, StretchWidth}, classes) +
               svgRect({from, screen.bottom() + away, length, StretchWidth}, classes);
    }
    const double from = screen.top() + step * stretch.first;
    return svgRect({screen.left() - away - StretchWidth, from, StretchWidth, length}, classes) +
           svgRect({screen.right() + away, from, StretchWidth, length}, classes);
}

double heightOf(double level)
{
    return CurveBottom - (CurveBottom - CurveTop) * std::min(level, FullLevel) / FullLevel;
}

} // namespace

QString letterFor(LightVerdict verdict)
{
    switch (verdict) {
    case LightVerdict::Healthy:
        return {};
    case LightVerdict::Weak:
        return u"w"_s;
    case LightVerdict::Dead:
        return u"d"_s;
    case LightVerdict::Noisy:
        return u"n"_s;
    case LightVerdict::Saturated:
        return u"s"_s;
    case LightVerdict::SwitchedOff:
        return u"o"_s;
    }
    Q_UNREACHABLE();
}

QString pictureStyle()
{
    return uR"(svg { width: 100%; height: auto; }
svg text { font: 12px sans-serif; fill: #222; }
svg .letter { font-weight: bold; text-anchor: middle; }
svg .screen { fill: #fff; stroke: #222; }
svg .healthy { fill: #56b4e9; }
svg .weak { fill: #e69f00; }
svg .dead { fill: #000; }
svg .noisy { fill: #cc79a7; }
svg .saturated { fill: #f0e442; stroke: #222; stroke-width: 0.5; }
svg .switched-off { fill: #fff; stroke: #222; }
svg .stretch { stroke: #222; }
svg .dirt { fill: #e69f00; }
svg .obstacle { fill: #000; }
svg .bar-out-of-line { fill: #0072b2; }
svg .broken-board { fill: #d55e00; }
svg .missed { fill: #000; fill-opacity: 0.55; }
svg .jumps { fill: #0072b2; fill-opacity: 0.25; }
svg .level { fill: none; stroke: #0072b2; stroke-width: 1.5; }
svg .expected { fill: none; stroke: #d55e00; stroke-dasharray: 6 4; }
svg .limit { stroke: #000; stroke-dasharray: 2 3; }
svg .grid { stroke: #ccc; }
)"_s;
}

QString wallPicture(const Report &report, const std::vector<TouchFault> &faults)
{
    const Measurement &measurement = report.measurement;
    const double width = PictureWidth - 2 * WallMargin;
    const QRectF screen(WallMargin, WallMargin, width, width * shapeOf(measurement));
    QString picture =
        svgBegin(screen.height() + 2 * WallMargin,
                 Text::tr("The frame with its lights along the edges, and where touches go "
                          "wrong on the screen"));
    picture += svgRect(screen, u"screen"_s);
    for (const TouchFault &fault : faults) {
        const QRectF area = areaOf(fault, measurement.axis(fault.axis));
        picture += svgRect({screen.left() + area.left() * screen.width(),
                            screen.top() + area.top() * screen.height(),
                            area.width() * screen.width(), area.height() * screen.height()},
                           fault.kind == TouchFault::Kind::Missed ? u"missed"_s : u"jumps"_s);
    }
    for (const Axis axis : Axes) {
        const std::vector<Light> &lights = report.verdicts.axis(axis).lights;
        const bool isX = axis == Axis::X;
        const double step = (isX ? screen.width() : screen.height()) / double(lights.size());
        const double origin = isX ? screen.left() : screen.top();
        for (size_t i = 0; i < lights.size(); ++i)
            picture += lightAt(axis, screen, origin + step * double(i), step, lights[i]);
        for (const Stretch &stretch : report.verdicts.stretches) {
            if (stretch.axis == axis)
                picture += stretchAt(stretch, screen, step);
        }
    }
    return picture + u"</svg>\n"_s;
}

QString curvePicture(const Report &report, Axis axis)
{
    const std::vector<Light> &lights = report.verdicts.axis(axis).lights;
    const double step = (PictureWidth - CurveLeft) / double(lights.size());
    QString picture =
        svgBegin(CurveHeight,
                 (axis == Axis::X ? Text::tr("Levels of the lights of X, and of healthy ones")
                                  : Text::tr("Levels of the lights of Y, and of healthy ones")));
    const auto line = [](double y, const QString &classes) {
        return u"<line class=\"%1\" x1=\"%2\" x2=\"%3\" y1=\"%4\" y2=\"%4\"/>\n"_s.arg(
            classes, svgNumber(CurveLeft), svgNumber(PictureWidth), svgNumber(y));
    };
    for (int level = 0; level <= FullLevel; level += LevelStep) {
        picture += line(heightOf(level), u"grid"_s);
        picture += svgText(5, heightOf(level) + 4, QString::number(level), u"scale"_s);
    }
    picture += line(heightOf(report.thresholds.touchLevel), u"limit"_s);
    QString levels;
    QString expected;
    for (size_t i = 0; i < lights.size(); ++i) {
        const double x = CurveLeft + step * (double(i) + 0.5);
        levels += u"%1,%2 "_s.arg(svgNumber(x), svgNumber(heightOf(lights[i].level)));
        expected += u"%1,%2 "_s.arg(svgNumber(x), svgNumber(heightOf(lights[i].expected)));
        if (const QString letter = letterFor(lights[i].verdict); !letter.isEmpty())
            picture += svgText(x, heightOf(lights[i].level) - 6, letter, u"letter"_s);
    }
    picture += u"<polyline class=\"expected\" points=\"%1\"/>\n"_s.arg(expected.trimmed());
    picture += u"<polyline class=\"level\" points=\"%1\"/>\n"_s.arg(levels.trimmed());
    const int every = std::max(1, int(lights.size()) / 10);
    for (int i = 0; i < int(lights.size()); i += every)
        picture += svgText(CurveLeft + step * i, CurveHeight - 8, lightName(axis, i), u"scale"_s);
    return picture + u"</svg>\n"_s;
}

} // namespace lights
