// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/lightcheckaction.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "window.h"

#include <QLineEdit>

#include <algorithm>
#include <cmath>

// Adjusts a light up and down.
class LightScreenTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<LightSet_dlg>(); }
    void open() override
    {
        widget()->show();
        the<LightSet_dlg>()->chooseLight({LightPlot::Axis::X, 3});
    }
    void goOn() override
    {
        if (!over && in(widget(), "LightAddBtn")->isEnabled() && isTimeFor(500))
            press(widget(), ++steps % 4 < 2 ? "LightAddBtn" : "LightDecBtn");
        // The choice goes with the frame.
        if (text("LightNum").isEmpty() && isTimeFor(200))
            the<LightSet_dlg>()->chooseLight({LightPlot::Axis::X, 3});
    }
    QString untrue() override
    {
        const QString smallest = text("MinADC");
        if (!smallest.isEmpty() && !reported.smallest.contains(smallest.toInt()))
            return QStringLiteral("smallest ADC value %1").arg(smallest);
        const QString reading = text("LightADC");
        return reading.isEmpty() || reported.readings.contains(reading.toInt())
                   ? QString()
                   : QStringLiteral("reading %1").arg(reading);
    }
    bool isUnknown() override { return text("MinADC").isEmpty() && text("LightADC").isEmpty(); }
    void beginAnew() override
    {
        over = true;
        lightsBefore = reported.lights;
    }
    bool isRight() override
    {
        lightsBefore = std::min(lightsBefore, reported.lights);
        return text("MinADC") == QString::number(frame.held().smallest) &&
               reported.lights > lightsBefore &&
               text("LightADC") == QString::number(reported.reading) &&
               in(widget(), "LightAddBtn")->isEnabled();
    }

private:
    QString text(const char *name) const { return in<QLineEdit>(widget(), name)->text(); }

    int steps = 0;
    bool over = false;
    int lightsBefore = 0;
};

// Measures, until a measurement is whole.
class LightCheckTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<LightCheck_dlg>(); }
    void open() override
    {
        for (QAction *action : window.actions()) {
            if (qobject_cast<LightCheckAction *>(action))
                action->trigger();
        }
        begin();
    }
    void goOn() override
    {
        if (!isRight())
            begin();
    }
    QString untrue() override
    {
        if (!widget())
            return {};
        const lights::Measurement &shown = the<LightCheck_dlg>()->shown().measurement;
        for (const lights::Axis axis : lights::Axes) {
            const auto &known = reported.levels[axis == lights::Axis::X ? 0 : 1];
            for (const lights::Scan &scan : shown.axis(axis).scans) {
                for (size_t light = 0; light < scan.size(); ++light) {
                    if (!std::isnan(scan[light]) && !known[light].test(size_t(scan[light])))
                        return QStringLiteral("level %1 of light %2").arg(scan[light]).arg(light);
                }
            }
            // A level that is taken for a gain.
            for (const float gain : shown.axis(axis).gains) {
                if (gain > LargestGain)
                    return QStringLiteral("gain %1").arg(gain);
            }
        }
        return {};
    }
    void again() override { begin(); }
    void beginAnew() override { since = QDateTime::currentDateTimeUtc(); }
    bool isRight() override
    {
        const lights::Report &shown = the<LightCheck_dlg>()->shown();
        const lights::Measurement &measured = shown.measurement;
        return measured.x.lights == TriedFrame::usual().lightsX &&
               measured.y.lights == TriedFrame::usual().lightsY && measured.date >= since;
    }

private:
    bool isMeasuring() const
    {
        return in(widget(), "measureButton")->text().contains(QStringLiteral("Stop"));
    }
    void begin()
    {
        if (in(widget(), "measureButton")->isEnabled() && !isMeasuring() && isTimeFor(200))
            press(widget(), "measureButton");
    }

    static constexpr float LargestGain = 100; // of the simulated frame, with room

    QDateTime since = QDateTime::currentDateTimeUtc();
};
