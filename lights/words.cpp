// SPDX-License-Identifier: GPL-3.0-or-later

#include "words.h"

#include "text.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

// Where the strips of lights first to last begin and end, in whole millimetres.
struct Place
{
    int from;
    int to;
};

Place placeOf(int first, int last, double pitch)
{
    return {int(std::floor(first * pitch)), int(std::ceil((last + 1) * pitch))};
}

// A sentence of which %1 and %2 are the ends of a place.
struct Sentences
{
    const char *x;       // millimetres from the left
    const char *y;       // millimetres from the top
    const char *numbers; // names of lights
};

Sentences sentencesFor(StretchVerdict verdict)
{
    switch (verdict) {
    case StretchVerdict::Dirt:
        return {QT_TRANSLATE_NOOP("lights", "Clean the upper and the lower edge between %1 and %2 "
                                            "mm from the left, then measure again."),
                QT_TRANSLATE_NOOP("lights", "Clean the left and the right edge between %1 and %2 "
                                            "mm from the top, then measure again."),
                QT_TRANSLATE_NOOP("lights",
                                  "Clean both edges along lights %1 to %2, then measure again.")};
    case StretchVerdict::Obstacle:
        return {QT_TRANSLATE_NOOP("lights", "Remove what stands before the screen between %1 and "
                                            "%2 mm from the left, then measure again."),
                QT_TRANSLATE_NOOP("lights", "Remove what stands before the screen between %1 and "
                                            "%2 mm from the top, then measure again."),
                QT_TRANSLATE_NOOP("lights", "Remove what stands before lights %1 to %2, then "
                                            "measure again.")};
    case StretchVerdict::BarOutOfLine:
        return {QT_TRANSLATE_NOOP("lights", "Align the upper or the lower bar between %1 and %2 mm "
                                            "from the left: its lights aim past each other more "
                                            "and more."),
                QT_TRANSLATE_NOOP("lights", "Align the left or the right bar between %1 and %2 mm "
                                            "from the top: its lights aim past each other more and "
                                            "more."),
                QT_TRANSLATE_NOOP("lights", "Align the bars along lights %1 to %2: they aim past "
                                            "each other more and more.")};
    case StretchVerdict::BrokenBoard:
        return {QT_TRANSLATE_NOOP("lights", "Replace the board between %1 and %2 mm from the left, "
                                            "or see to its plug: all its lights fail alike."),
                QT_TRANSLATE_NOOP("lights", "Replace the board between %1 and %2 mm from the top, "
                                            "or see to its plug: all its lights fail alike."),
                QT_TRANSLATE_NOOP("lights", "Replace the board of lights %1 to %2, or see to its "
                                            "plug: all its lights fail alike.")};
    }
    Q_UNREACHABLE();
}

// Of which %1 is the light's name and, with a pitch, %2 its middle.
Sentences sentencesFor(const Light &light, bool offKnown)
{
    switch (light.verdict) {
    case LightVerdict::Healthy:
        return {"", "", ""};
    case LightVerdict::Weak:
        if (light.compensated) {
            return {QT_TRANSLATE_NOOP("lights", "Watch light %1, %2 mm from the left: only a far "
                                                "higher gain makes up for its weakness."),
                    QT_TRANSLATE_NOOP("lights", "Watch light %1, %2 mm from the top: only a far "
                                                "higher gain makes up for its weakness."),
                    QT_TRANSLATE_NOOP("lights", "Watch light %1: only a far higher gain makes up "
                                                "for its weakness.")};
        }
        return {QT_TRANSLATE_NOOP("lights", "Clean light %1, %2 mm from the left; if it stays "
                                            "weak, plan to replace its board."),
                QT_TRANSLATE_NOOP("lights", "Clean light %1, %2 mm from the top; if it stays weak, "
                                            "plan to replace its board."),
                QT_TRANSLATE_NOOP("lights", "Clean light %1; if it stays weak, plan to replace its "
                                            "board.")};
    case LightVerdict::Dead:
        if (!offKnown) {
            return {QT_TRANSLATE_NOOP("lights", "See whether light %1, %2 mm from the left, is "
                                                "covered or switched off; if not, replace its "
                                                "board."),
                    QT_TRANSLATE_NOOP("lights", "See whether light %1, %2 mm from the top, is "
                                                "covered or switched off; if not, replace its "
                                                "board."),
                    QT_TRANSLATE_NOOP("lights", "See whether light %1 is covered or switched off; "
                                                "if not, replace its board.")};
        }
        return {QT_TRANSLATE_NOOP("lights", "See whether light %1, %2 mm from the left, is "
                                            "covered; if not, replace its board."),
                QT_TRANSLATE_NOOP("lights", "See whether light %1, %2 mm from the top, is covered; "
                                            "if not, replace its board."),
                QT_TRANSLATE_NOOP("lights", "See whether light %1 is covered; if not, replace its "
                                            "board.")};
    case LightVerdict::Noisy:
        return {QT_TRANSLATE_NOOP("lights", "Look for a loose contact or a lamp that shines on "
                                            "light %1, %2 mm from the left."),
                QT_TRANSLATE_NOOP("lights", "Look for a loose contact or a lamp that shines on "
                                            "light %1, %2 mm from the top."),
                QT_TRANSLATE_NOOP("lights", "Look for a loose contact or a lamp that shines on "
                                            "light %1.")};
    case LightVerdict::Saturated:
        return {QT_TRANSLATE_NOOP("lights", "Keep the sun and lamps off light %1, %2 mm from the "
                                            "left, or lower its gain."),
                QT_TRANSLATE_NOOP("lights", "Keep the sun and lamps off light %1, %2 mm from the "
                                            "top, or lower its gain."),
                QT_TRANSLATE_NOOP("lights", "Keep the sun and lamps off light %1, or lower its "
                                            "gain.")};
    case LightVerdict::SwitchedOff:
        return {QT_TRANSLATE_NOOP("lights", "Switch light %1, %2 mm from the left, on again unless "
                                            "it was switched off on purpose."),
                QT_TRANSLATE_NOOP("lights", "Switch light %1, %2 mm from the top, on again unless "
                                            "it was switched off on purpose."),
                QT_TRANSLATE_NOOP("lights", "Switch light %1 on again unless it was switched off "
                                            "on purpose.")};
    }
    Q_UNREACHABLE();
}

} // namespace

QLatin1StringView key(LightVerdict verdict)
{
    switch (verdict) {
    case LightVerdict::Healthy:
        return "healthy"_L1;
    case LightVerdict::Weak:
        return "weak"_L1;
    case LightVerdict::Dead:
        return "dead"_L1;
    case LightVerdict::Noisy:
        return "noisy"_L1;
    case LightVerdict::Saturated:
        return "saturated"_L1;
    case LightVerdict::SwitchedOff:
        return "switched-off"_L1;
    }
    Q_UNREACHABLE();
}

QLatin1StringView key(StretchVerdict verdict)
{
    switch (verdict) {
    case StretchVerdict::Dirt:
        return "dirt"_L1;
    case StretchVerdict::Obstacle:
        return "obstacle"_L1;
    case StretchVerdict::BarOutOfLine:
        return "bar-out-of-line"_L1;
    case StretchVerdict::BrokenBoard:
        return "broken-board"_L1;
    }
    Q_UNREACHABLE();
}

QLatin1StringView key(Axis axis)
{
    return axis == Axis::X ? "x"_L1 : "y"_L1;
}

QString word(LightVerdict verdict)
{
    switch (verdict) {
    case LightVerdict::Healthy:
        return Text::tr("healthy");
    case LightVerdict::Weak:
        return Text::tr("weak");
    case LightVerdict::Dead:
        return Text::tr("dead");
    case LightVerdict::Noisy:
        return Text::tr("noisy");
    case LightVerdict::Saturated:
        return Text::tr("saturated");
    case LightVerdict::SwitchedOff:
        return Text::tr("switched off");
    }
    Q_UNREACHABLE();
}

QString word(StretchVerdict verdict)
{
    switch (verdict) {
    case StretchVerdict::Dirt:
        return Text::tr("dirt");
    case StretchVerdict::Obstacle:
        return Text::tr("obstacle");
    case StretchVerdict::BarOutOfLine:
        return Text::tr("bar out of line");
    case StretchVerdict::BrokenBoard:
        return Text::tr("broken board");
    }
    Q_UNREACHABLE();
}

QString lightName(Axis axis, int number)
{
    return (axis == Axis::X ? u"X %1"_s : u"Y %1"_s).arg(number);
}

QString advice(Axis axis, int number, const Light &light, const AxisMeasurement &measured)
{
    const Sentences sentences = sentencesFor(light, !measured.off.empty());
    const QString name = lightName(axis, number);
    if (light.verdict == LightVerdict::Healthy)
        return {};
    if (!measured.pitch)
        return Text::tr(sentences.numbers).arg(name);
    const int middle = int(std::lround((number + 0.5) * *measured.pitch));
    return Text::tr(axis == Axis::X ? sentences.x : sentences.y).arg(name).arg(middle);
}

QString advice(const Stretch &stretch, const AxisMeasurement &measured)
{
    const Sentences sentences = sentencesFor(stretch.verdict);
    if (!measured.pitch) {
        return Text::tr(sentences.numbers)
            .arg(lightName(stretch.axis, stretch.first), lightName(stretch.axis, stretch.last));
    }
    const Place place = placeOf(stretch.first, stretch.last, *measured.pitch);
    return Text::tr(stretch.axis == Axis::X ? sentences.x : sentences.y)
        .arg(place.from)
        .arg(place.to);
}

QString wordsFor(const Trend &trend)
{
    const QString name = lightName(trend.axis, trend.light);
    const QString level = QString::number(qRound(trend.level));
    if (!trend.fall) {
        return Text::tr(
                   "The weakest light is %1 at level %2; the measurements kept so far do not show "
                   "when it falls below %3.")
            .arg(name, level, QString::number(trend.limit));
    }
    return Text::
        tr("The weakest light is %1 at level %2; it is expected to fall below %3 on %4, between "
           "%5 and %6 with a certainty of 95 %.")
            .arg(name, level, QString::number(trend.limit),
                 trend.fall->expected.toString(Qt::ISODate),
                 trend.fall->earliest.toString(Qt::ISODate),
                 trend.fall->latest.toString(Qt::ISODate));
}

} // namespace lights
