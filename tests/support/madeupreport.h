// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lights/judge.h"
#include "lights/report.h"

#include <QTimeZone>

// The report on a frame with one weaker light, and with dark ones beside it if that is weak.
inline lights::Report madeUpReport(double weakest)
{
    using namespace Qt::StringLiterals;
    lights::Report report;
    lights::Measurement &measurement = report.measurement;
    measurement.unit = {u"21-01234-1605"_s, u"Hall <left> & right"_s};
    measurement.date = QDateTime(QDate(2026, 11, 21), QTime(20, 15), QTimeZone::utc());
    for (lights::AxisMeasurement *axis : {&measurement.x, &measurement.y}) {
        axis->lights = axis == &measurement.x ? 64 : 40;
        axis->pitch = 5;
        for (int s = 0; s < 3; ++s)
            axis->scans.emplace_back(size_t(axis->lights), 210.0F);
    }
    for (lights::Scan &scan : measurement.x.scans) {
        scan[20] = float(weakest);
        for (size_t i = 40; weakest < 200 && i < 48; ++i)
            scan[i] = 0;
    }
    report.verdicts = judge(measurement);
    report.version = u"quorvelctl 3.0.1.0"_s;
    return report;
}
