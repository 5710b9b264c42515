// SPDX-License-Identifier: GPL-3.0-or-later

#include "demand.h"
#include "lights/judge.h"
#include "lights/report.h"
#include "lights/scanfile.h"
#include "lights/touch.h"
#include "lights/verdictfile.h"

#include <QBuffer>
#include <QJsonDocument>

#include <cmath>

using namespace lights;
using namespace Qt::StringLiterals;

namespace {

std::optional<Measurement> read(const QByteArray &text, QString *problem)
{
    if (text.startsWith('{'))
        return ScanFile::fromJson(text, u"file"_s, problem);
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    return ScanFile::fromLog(buffer, u"file"_s, problem);
}

void check(const AxisMeasurement &measured, const AxisVerdict &verdict, size_t stretches)
{
    demand(int(verdict.lights.size()) == measured.lights, "each light has a verdict");
    for (const Light &light : verdict.lights) {
        demand(light.level >= 0 && light.level <= LargestLevel, "levels are levels");
        demand(std::isfinite(light.expected) && light.expected >= 0, "so are expected ones");
        demand(std::isfinite(light.noise) && light.noise >= 0, "noise is a deviation");
        demand(light.confidence >= 0 && light.confidence <= 1, "confidence is a share");
        demand(!light.stretch || size_t(*light.stretch) < stretches, "the stretch is there");
    }
}

} // namespace

// Whatever is read as a measurement is judged, written and read again the same; whatever is not has
// a reason.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(input), qsizetype(size));
    QString problem;
    const auto measurement = read(text, &problem);
    demand(measurement.has_value() == problem.isEmpty(), "a refusal has a reason");
    if (!measurement)
        return 0;
    const Verdicts verdicts = judge(*measurement);
    for (const Axis axis : Axes)
        check(measurement->axis(axis), verdicts.axis(axis), verdicts.stretches.size());
    for (const Stretch &stretch : verdicts.stretches) {
        demand(stretch.first >= 0 && stretch.first <= stretch.last &&
                   stretch.last < measurement->axis(stretch.axis).lights,
               "a stretch lies on its axis");
        demand(stretch.depth >= 0 && stretch.depth <= 1 && stretch.confidence >= 0 &&
                   stretch.confidence <= 1,
               "its numbers are shares");
    }
    for (const TouchFault &fault : touchFaults(*measurement, verdicts)) {
        demand(fault.from >= 0 && fault.from < fault.to &&
                   fault.to <= measurement->axis(fault.axis).lights,
               "a strip lies on the screen");
    }
    demand(!verdictsToCsv(verdicts).isEmpty(), "there is a table");
    demand(!toHtml({.measurement = *measurement,
                    .verdicts = verdicts,
                    .thresholds = {},
                    .version = {},
                    .baseline = {},
                    .changes = {},
                    .trend = {}})
                .isEmpty(),
           "there is a report");
    const QByteArray written = QJsonDocument(ScanFile::toJson(*measurement)).toJson();
    const auto again = ScanFile::fromJson(written, u"again"_s, &problem);
    demand(again.has_value(), "what is written is read");
    demand(QJsonDocument(ScanFile::toJson(*again)).toJson() == written, "and is the same");
    return 0;
}
