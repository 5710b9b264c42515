// SPDX-License-Identifier: GPL-3.0-or-later

#include "verdictfile.h"

#include "touch.h"
#include "words.h"

#include <QJsonArray>

#include <cmath>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

double rounded(double value, double step)
{
    return std::round(value / step) * step;
}

QJsonObject lightToJson(int number, const Light &light, bool noiseKnown)
{
    QJsonObject object{{u"number"_s, number},
                       {u"verdict"_s, key(light.verdict)},
                       {u"level"_s, rounded(light.level, 0.01)},
                       {u"expected"_s, rounded(light.expected, 0.01)},
                       {u"confidence"_s, rounded(light.confidence, 0.001)}};
    if (noiseKnown)
        object[u"noise"_s] = rounded(light.noise, 0.01);
    if (light.stretch)
        object[u"stretch"_s] = *light.stretch;
    if (light.compensated)
        object[u"compensated"_s] = true;
    return object;
}

QJsonObject stretchToJson(const Stretch &stretch, const AxisMeasurement &measured)
{
    QJsonObject object{{u"kind"_s, u"stretch"_s},
                       {u"verdict"_s, key(stretch.verdict)},
                       {u"axis"_s, key(stretch.axis)},
                       {u"first"_s, stretch.first},
                       {u"last"_s, stretch.last},
                       {u"depth"_s, rounded(stretch.depth, 0.001)},
                       {u"confidence"_s, rounded(stretch.confidence, 0.001)},
                       {u"advice"_s, advice(stretch, measured)}};
    if (stretch.verdict == StretchVerdict::BarOutOfLine)
        object[u"slope"_s] = rounded(stretch.slope, 0.001);
    return object;
}

QJsonObject touchToJson(const TouchFault &fault, const AxisMeasurement &measured)
{
    const QRectF area = areaOf(fault, measured);
    QJsonObject object{
        {u"fault"_s, fault.kind == TouchFault::Kind::Missed ? u"missed"_s : u"jumps"_s},
        {u"axis"_s, key(fault.axis)},
        {u"left"_s, rounded(area.left(), 1e-5)},
        {u"top"_s, rounded(area.top(), 1e-5)},
        {u"width"_s, rounded(area.width(), 1e-5)},
        {u"height"_s, rounded(area.height(), 1e-5)},
        {u"words"_s, wordsFor(fault, measured)}};
    if (fault.kind == TouchFault::Kind::Jumps)
        object[u"lights"_s] = rounded(fault.by, 0.01);
    return object;
}

} // namespace

QJsonObject verdictsToJson(const Measurement &measurement, const Verdicts &verdicts)
{
    QJsonObject all;
    QJsonArray findings;
    for (const Stretch &stretch : verdicts.stretches)
        findings.append(stretchToJson(stretch, measurement.axis(stretch.axis)));
    for (const Axis axis : Axes) {
        QJsonArray axisLights;
        const AxisVerdict &verdict = verdicts.axis(axis);
        for (int i = 0; i < int(verdict.lights.size()); ++i) {
            const Light &light = verdict.lights[size_t(i)];
            axisLights.append(lightToJson(i, light, verdict.noiseKnown));
            if (light.verdict == LightVerdict::Healthy)
                continue;
            findings.append(
                QJsonObject{{u"kind"_s, u"light"_s},
                            {u"verdict"_s, key(light.verdict)},
                            {u"axis"_s, key(axis)},
                            {u"number"_s, i},
                            {u"confidence"_s, rounded(light.confidence, 0.001)},
                            {u"advice"_s, advice(axis, i, light, measurement.axis(axis))}});
        }
        all[key(axis)] = axisLights;
    }
    QJsonArray touch;
    for (const TouchFault &fault : touchFaults(measurement, verdicts))
        touch.append(touchToJson(fault, measurement.axis(fault.axis)));
    return {{u"verdict"_s, verdicts.isPass() ? u"pass"_s : u"service"_s},
            {u"lights"_s, all},
            {u"findings"_s, findings},
            {u"touch"_s, touch}};
}

QJsonObject comparisonToJson(const Measurement &baseline, const std::vector<Change> &changes,
                             const std::optional<Trend> &trend)
{
    QJsonArray all;
    for (const Change &change : changes) {
        all.append(QJsonObject{{u"axis"_s, key(change.axis)},
                               {u"number"_s, change.light},
                               {u"then"_s, rounded(change.then, 0.01)},
                               {u"now"_s, rounded(change.now, 0.01)},
                               {u"alone"_s, rounded(change.alone, 0.0001)}});
    }
    QJsonObject object{
        {u"baseline"_s, QJsonObject{{u"date"_s, baseline.date.toUTC().toString(Qt::ISODate)},
                                    {u"changes"_s, all}}}};
    if (!trend)
        return object;
    QJsonObject course{{u"axis"_s, key(trend->axis)},
                       {u"number"_s, trend->light},
                       {u"level"_s, rounded(trend->level, 0.01)},
                       {u"limit"_s, trend->limit},
                       {u"measurements"_s, trend->measurements},
                       {u"perYear"_s, rounded(trend->perYear, 0.01)}};
    if (trend->fall) {
        course[u"expected"_s] = trend->fall->expected.toString(Qt::ISODate);
        course[u"earliest"_s] = trend->fall->earliest.toString(Qt::ISODate);
        course[u"latest"_s] = trend->fall->latest.toString(Qt::ISODate);
    }
    object[u"trend"_s] = course;
    return object;
}

QByteArray verdictsToCsv(const Verdicts &verdicts)
{
    QByteArray text("axis,light,verdict,level,expected,noise,confidence,stretch,first,last\n");
    for (const Axis axis : Axes) {
        const AxisVerdict &verdict = verdicts.axis(axis);
        for (int i = 0; i < int(verdict.lights.size()); ++i) {
            const Light &light = verdict.lights[size_t(i)];
            QStringList fields{QString(key(axis)),
                               QString::number(i),
                               QString(key(light.verdict)),
                               QString::number(light.level, 'f', 2),
                               QString::number(light.expected, 'f', 2),
                               verdict.noiseKnown ? QString::number(light.noise, 'f', 2)
                                                  : QString(),
                               QString::number(light.confidence, 'f', 3)};
            if (light.stretch) {
                const Stretch &stretch = verdicts.stretches[size_t(*light.stretch)];
                fields << key(stretch.verdict) << QString::number(stretch.first)
                       << QString::number(stretch.last);
            } else {
                fields << QString() << QString() << QString();
            }
            text += fields.join(u',').toLatin1() + '\n';
        }
    }
    return text;
}

} // namespace lights
