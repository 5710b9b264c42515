#include "verdictfile.h"

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
    return {{u"verdict"_s, verdicts.isPass() ? u"pass"_s : u"service"_s},
            {u"lights"_s, all},
            {u"findings"_s, findings}};
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
