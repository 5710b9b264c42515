// SPDX-License-Identifier: GPL-3.0-or-later

#include "reportpicture.h"

#include "text.h"
#include "words.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

// In units of the pictures, whatever their size on a screen or on paper.
constexpr double PictureWidth = 1000;
constexpr double StretchFrom = 44; // away from the screen
constexpr double StretchTo = 52;
constexpr double LetterGap = 10; // below this, letters of the same row would lie over each other
constexpr double CurveHeight = 300;
constexpr double CurveLeft = 45;
constexpr double CurveTop = 15;
constexpr double CurveBottom = 275;
constexpr int LevelStep = 50;

// Away from the screen: what is out of order for good stands nearer.
double rowOf(LightVerdict verdict)
{
    const bool isInner = verdict == LightVerdict::Dead || verdict == LightVerdict::SwitchedOff;
    return Wall::LightLength + 3 + (isInner ? 0 : LetterSize);
}

void addLights(Drawing &picture, const Wall &wall, Axis axis, const std::vector<Light> &lights)
{
    std::array<double, 2> ends{-LetterGap, -LetterGap}; // of the last letter of each row
    for (int i = 0; i < int(lights.size()); ++i) {
        const LightVerdict verdict = lights[size_t(i)].verdict;
        for (const QRectF &area : wall.light({axis, i}))
            picture.rectangle(area, key(verdict));
        const QString letter = letterFor(verdict);
        const double row = rowOf(verdict);
        const auto places = wall.along(axis, i, 1, row, row + LetterSize);
        const double middle = axis == Axis::X ? places[0].center().x() : places[0].center().y();
        double &end = ends[row > rowOf(LightVerdict::Dead)];
        if (letter.isEmpty() || middle - end < LetterGap)
            continue;
        end = middle;
        for (const QRectF &place : places)
            picture.text({place.center().x(), place.center().y() + LetterSize / 3}, letter,
                         u"letter"_s);
    }
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

Drawing wallPicture(const Report &report, const std::vector<TouchFault> &faults, const Wall &wall)
{
    Drawing picture{wall.size(),
                    Text::tr("The frame with its lights along the edges, and where touches go "
                             "wrong on the screen"),
                    {}};
    const QRectF screen = wall.screen();
    picture.rectangle(screen, u"screen"_s);
    for (const TouchFault &fault : faults) {
        const QRectF area = areaOf(fault, report.measurement.axis(fault.axis));
        picture.rectangle({screen.left() + area.left() * screen.width(),
                           screen.top() + area.top() * screen.height(),
                           area.width() * screen.width(), area.height() * screen.height()},
                          fault.kind == TouchFault::Kind::Missed ? u"missed"_s : u"jumps"_s);
    }
    for (const Axis axis : Axes)
        addLights(picture, wall, axis, report.verdicts.axis(axis).lights);
    for (const Stretch &stretch : report.verdicts.stretches) {
        for (const QRectF &area :
             wall.along(stretch.axis, stretch.first, stretch.last - stretch.first + 1, StretchFrom,
                        StretchTo))
            picture.rectangle(area, u"stretch "_s + key(stretch.verdict));
    }
    return picture;
}

Drawing curvePicture(const Report &report, Axis axis)
{
    const std::vector<Light> &lights = report.verdicts.axis(axis).lights;
    const double step = (PictureWidth - CurveLeft) / double(lights.size());
    Drawing picture{{PictureWidth, CurveHeight},
                    axis == Axis::X ? Text::tr("Levels of the lights of X, and of healthy ones")
                                    : Text::tr("Levels of the lights of Y, and of healthy ones"),
                    {}};
    const auto line = [&picture](double y, const QString &look) {
        picture.line({CurveLeft, y}, {PictureWidth, y}, look);
    };
    for (int level = 0; level <= FullLevel; level += LevelStep) {
        line(heightOf(level), u"grid"_s);
        picture.text({5, heightOf(level) + 4}, QString::number(level), u"scale"_s);
    }
    line(heightOf(report.thresholds.touchLevel), u"limit"_s);
    std::vector<QPointF> levels;
    std::vector<QPointF> expected;
    double end = -LetterGap;
    for (size_t i = 0; i < lights.size(); ++i) {
        const double x = CurveLeft + step * (double(i) + 0.5);
        levels.emplace_back(x, heightOf(lights[i].level));
        expected.emplace_back(x, heightOf(lights[i].expected));
        const QString letter = letterFor(lights[i].verdict);
        if (letter.isEmpty() || x - end < LetterGap)
            continue;
        end = x;
        picture.text({x, heightOf(lights[i].level) - 6}, letter, u"letter"_s);
    }
    picture.polyline(std::move(expected), u"expected"_s);
    picture.polyline(std::move(levels), u"level"_s);
    const int every = std::max(1, int(lights.size()) / 10);
    for (int i = 0; i < int(lights.size()); i += every)
        picture.text({CurveLeft + step * i, CurveHeight - 8}, lightName(axis, i), u"scale"_s);
    return picture;
}

} // namespace lights
