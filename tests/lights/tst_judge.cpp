// SPDX-License-Identifier: GPL-3.0-or-later

#include "lights/judge.h"

#include <QTest>

#include <cmath>
#include <functional>

using namespace lights;

namespace {

constexpr int LightsX = 96;
constexpr int LightsY = 54;
constexpr int Scans = 8;

using Level = std::function<double(int scan, int light)>;

// Readings wobble by up to a level and a half, the same way every time.
double wobble(int scan, int light)
{
    return std::fmod(scan * 7.31 + light * 3.17, 3.0) - 1.5;
}

AxisMeasurement axisOf(int lights, int scans, const Level &level)
{
    AxisMeasurement axis;
    axis.lights = lights;
    for (int s = 0; s < scans; ++s) {
        Scan scan;
        for (int i = 0; i < lights; ++i)
            scan.push_back(float(std::clamp(std::round(level(s, i)), 0.0, 255.0)));
        axis.scans.push_back(scan);
    }
    return axis;
}

// The middle of an axis at 215, its ends a tenth lower.
double usualLevel(int scan, int light, int lights)
{
    const double place = 2.0 * light / (lights - 1) - 1;
    return 215 * (1 - 0.1 * place * place) + wobble(scan, light);
}

double healthyX(int scan, int light)
{
    return usualLevel(scan, light, LightsX);
}

Measurement healthyFrame()
{
    Measurement frame;
    frame.x = axisOf(LightsX, Scans, healthyX);
    frame.y = axisOf(LightsY, Scans, [](int s, int i) { return usualLevel(s, i, LightsY); });
    return frame;
}

// A frame of which X is multiplied by a share for each light.
Measurement shaded(const std::function<double(int light)> &share)
{
    Measurement frame = healthyFrame();
    frame.x = axisOf(LightsX, Scans, [&](int s, int i) { return healthyX(s, i) * share(i); });
    return frame;
}

int unhealthy(const AxisVerdict &axis)
{
    return int(std::count_if(axis.lights.begin(), axis.lights.end(), [](const Light &light) {
        return light.verdict != LightVerdict::Healthy;
    }));
}

} // namespace

class TestJudge : public QObject
{
    Q_OBJECT

private slots:
    void a_healthy_frame_passes()
    {
        const Verdicts verdicts = judge(healthyFrame());
        QVERIFY(verdicts.isPass());
        QCOMPARE(int(verdicts.x.lights.size()), LightsX);
        QCOMPARE(int(verdicts.y.lights.size()), LightsY);
        QVERIFY(std::abs(verdicts.x.lights[48].level - 215) < 2);
        QVERIFY(std::abs(verdicts.x.lights[48].expected - 215) < 4);
        QVERIFY(verdicts.x.noise > 0.3 && verdicts.x.noise < 2);
    }

    void a_light_is_judged_by_its_own_readings_data()
    {
        QTest::addColumn<QList<int>>("readings"); // over and over
        QTest::addColumn<int>("verdict");
        const auto row = [](const char *name, const QList<int> &readings, LightVerdict verdict) {
            QTest::newRow(name) << readings << int(verdict);
        };
        row("as its neighbours", {213, 215, 214}, LightVerdict::Healthy);
        row("a tenth lower", {193, 194}, LightVerdict::Healthy);
        row("a quarter lower", {161, 160, 162}, LightVerdict::Weak);
        row("a fifth of the light", {43, 42}, LightVerdict::Weak);
        row("what scatters in", {2, 0, 1}, LightVerdict::Dead);
        row("nothing", {0}, LightVerdict::Dead);
        row("to and fro", {200, 230, 205, 226}, LightVerdict::Noisy);
        row("on and off", {0, 0, 0, 214}, LightVerdict::Noisy);
        row("at the top", {255, 255, 254}, LightVerdict::Saturated);
        row("just below the top", {250, 249}, LightVerdict::Saturated);
    }
    void a_light_is_judged_by_its_own_readings()
    {
        QFETCH(QList<int>, readings);
        QFETCH(int, verdict);
        for (const int place : {0, 1, 47, LightsX - 1}) {
            Measurement frame = healthyFrame();
            frame.x = axisOf(LightsX, Scans, [&](int s, int i) {
                return i == place ? readings[s % readings.size()] : healthyX(s, i);
            });
            // At the ends healthy lights are a tenth lower themselves.
            if (verdict == int(LightVerdict::Weak) && readings[0] > 100 && place != 47)
                continue;
            const Verdicts verdicts = judge(frame);
            QCOMPARE(int(verdicts.x.lights[size_t(place)].verdict), verdict);
            QCOMPARE(unhealthy(verdicts.x), verdict == int(LightVerdict::Healthy) ? 0 : 1);
            QVERIFY(verdicts.stretches.empty());
            QCOMPARE(verdicts.isPass(), verdict == int(LightVerdict::Healthy));
        }
    }

    void a_light_that_is_switched_off_is_not_dead()
    {
        Measurement frame = shaded([](int i) { return i == 17 || i == 18 ? 0.0 : 1.0; });
        frame.x.off.assign(LightsX, false);
        frame.x.off[17] = true;
        const Verdicts verdicts = judge(frame);
        QCOMPARE(verdicts.x.lights[17].verdict, LightVerdict::SwitchedOff);
        QCOMPARE(verdicts.x.lights[18].verdict, LightVerdict::Dead);
    }

    void what_all_lights_do_together_is_no_noise()
    {
        Measurement frame = healthyFrame();
        frame.x = axisOf(LightsX, Scans, [](int s, int i) {
            return healthyX(s, i) * (1 - 0.01 * s) * (s % 3 == 0 ? 0.97 : 1.0);
        });
        const Verdicts verdicts = judge(frame);
        QVERIFY(verdicts.isPass());
        QVERIFY(verdicts.x.noise < 2);
    }

    void one_scan_tells_everything_but_noise()
    {
        Measurement frame = shaded([](int i) { return i == 20 ? 0.6 : i == 30 ? 0.0 : 1.0; });
        frame.x.scans.resize(1);
        frame.y.scans.resize(1);
        const Verdicts verdicts = judge(frame);
        QVERIFY(!verdicts.x.noiseKnown);
        QCOMPARE(verdicts.x.lights[20].verdict, LightVerdict::Weak);
        QCOMPARE(verdicts.x.lights[30].verdict, LightVerdict::Dead);
        QCOMPARE(unhealthy(verdicts.x), 2);
    }

    void senders_that_take_turns_may_differ()
    {
        const Verdicts verdicts = judge(shaded([](int i) { return i % 2 ? 1.0 : 0.85; }));
        QVERIFY(verdicts.isPass());
        QVERIFY(std::abs(verdicts.x.alternation - 0.16) < 0.02);
    }

    void ends_that_fall_off_alike_are_no_fault()
    {
        const Verdicts verdicts = judge(shaded([](int i) {
            const int fromEnd = std::min(i, LightsX - 1 - i);
            return fromEnd == 0 ? 0.75 : fromEnd == 1 ? 0.88 : 1.0;
        }));
        QVERIFY(verdicts.isPass());
    }

    void a_weak_light_behind_a_high_gain_is_found()
    {
        Measurement frame = healthyFrame();
        frame.x.gains.assign(LightsX, 48);
        frame.x.gains[33] = 96;
        const Verdicts verdicts = judge(frame);
        QCOMPARE(verdicts.x.lights[33].verdict, LightVerdict::Weak);
        QVERIFY(verdicts.x.lights[33].compensated);
        QCOMPARE(unhealthy(verdicts.x), 1);
    }

    void an_axis_without_light_is_dead()
    {
        const Verdicts verdicts = judge(shaded([](int) { return 0.0; }));
        QCOMPARE(unhealthy(verdicts.x), LightsX);
        QCOMPARE(verdicts.x.lights[5].verdict, LightVerdict::Dead);
        QCOMPARE(unhealthy(verdicts.y), 0);
    }

    void a_stretch_is_named_by_its_shape_data()
    {
        QTest::addColumn<std::function<double(int)>>("share");
        QTest::addColumn<int>("verdict");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        const auto row = [](const char *name, const std::function<double(int)> &share,
                            StretchVerdict verdict, int first, int last) {
            QTest::newRow(name) << share << int(verdict) << first << last;
        };
        const auto within = [](int first, int last, double share) {
            return [=](int i) { return i >= first && i <= last ? share : 1.0; };
        };
        const auto smudge = [](int i) { return 1 - 0.5 * std::exp(-(i - 60) * (i - 60) / 24.0); };
        row("a smooth dip is dirt", smudge, StretchVerdict::Dirt, 54, 66);
        row(
            "dirt at the very end",
            [](int i) { return 1 - 0.5 * std::exp(-(i - 93) * (i - 93) / 24.0); },
            StretchVerdict::Dirt, 87, 95);
        row("steps on both sides are an obstacle", within(37, 45, 0.4), StretchVerdict::Obstacle,
            37, 45);
        row("a black obstacle", within(37, 45, 0), StretchVerdict::Obstacle, 37, 45);
        row("an obstacle in a corner", within(0, 4, 0.3), StretchVerdict::Obstacle, 0, 4);
        row(
            "an obstacle that half covers its outermost lights",
            [](int i) { return i == 37 || i == 45 ? 0.7
                               : i > 37 && i < 45 ? 0.4
                                                  : 1.0; },
            StretchVerdict::Obstacle, 37, 45);
        row("a dark board", within(32, 47, 0), StretchVerdict::BrokenBoard, 32, 47);
        row("a dim board", within(32, 47, 0.5), StretchVerdict::BrokenBoard, 32, 47);
        row("the first board", within(0, 15, 0), StretchVerdict::BrokenBoard, 0, 15);
        row(
            "a slope along the whole axis", [](int i) { return 1 - 0.3 * i / (LightsX - 1); },
            StretchVerdict::BarOutOfLine, 0, LightsX - 1);
        row(
            "a slope that ends with a step",
            [](int i) { return i >= 30 && i < 60 ? 1 - 0.4 * (i - 29) / 30.0 : 1.0; },
            StretchVerdict::BarOutOfLine, 36, 59);
    }
    void a_stretch_is_named_by_its_shape()
    {
        QFETCH(std::function<double(int)>, share);
        QFETCH(int, verdict);
        QFETCH(int, first);
        QFETCH(int, last);
        const Verdicts verdicts = judge(shaded(share));
        QCOMPARE(int(verdicts.stretches.size()), 1);
        const Stretch &found = verdicts.stretches.front();
        QCOMPARE(int(found.verdict), verdict);
        QCOMPARE(found.axis, Axis::X);
        const int slack =
            found.verdict == StretchVerdict::Dirt || found.verdict == StretchVerdict::BarOutOfLine
                ? 2
                : 0;
        QVERIFY2(std::abs(found.first - first) <= slack, qPrintable(QString::number(found.first)));
        QVERIFY2(std::abs(found.last - last) <= slack, qPrintable(QString::number(found.last)));
        QVERIFY(found.confidence > 0.5);
        QVERIFY(!verdicts.isPass());
        QCOMPARE(verdicts.x.lights[size_t(found.first)].stretch, 0);
        QCOMPARE(unhealthy(verdicts.y), 0);
    }

    void lights_under_dirt_are_healthy_but_for_those_that_stand_out()
    {
        const Verdicts verdicts = judge(shaded([](int i) {
            return (1 - 0.4 * std::exp(-(i - 60) * (i - 60) / 60.0)) * (i == 57 ? 0.6 : 1);
        }));
        QCOMPARE(verdicts.x.lights[57].verdict, LightVerdict::Weak);
        QCOMPARE(unhealthy(verdicts.x), 1);
        QCOMPARE(int(verdicts.stretches.size()), 1);
        QCOMPARE(verdicts.stretches.front().verdict, StretchVerdict::Dirt);
    }

    void thresholds_decide()
    {
        const Measurement frame = shaded([](int i) { return i == 40 ? 0.7 : 1.0; });
        QCOMPARE(judge(frame).x.lights[40].verdict, LightVerdict::Weak);
        Thresholds patient;
        patient.weakShare = 0.5;
        QCOMPARE(judge(frame, patient).x.lights[40].verdict, LightVerdict::Healthy);
    }

    void the_same_scans_give_the_same_verdicts()
    {
        const Measurement frame = shaded([](int i) {
            return i > 20 && i < 30 ? 0.5 : i == 50 ? 0.1 : 1.0;
        });
        QCOMPARE(judge(frame), judge(frame));
    }

    void lights_that_some_scans_miss_are_judged_by_the_others()
    {
        Measurement frame = shaded([](int i) { return i == 40 ? 0.5 : 1.0; });
        for (size_t s = 2; s < frame.x.scans.size(); ++s)
            frame.x.scans[s][40] = std::nanf("");
        frame.x.scans[0][41] = std::nanf("");
        const Verdicts verdicts = judge(frame);
        QCOMPARE(verdicts.x.lights[40].verdict, LightVerdict::Weak);
        QCOMPARE(unhealthy(verdicts.x), 1);
    }

    void an_axis_that_was_not_measured_has_no_verdict()
    {
        Measurement frame = healthyFrame();
        frame.y = {};
        const Verdicts verdicts = judge(frame);
        QVERIFY(verdicts.y.lights.empty());
        QVERIFY(verdicts.isPass());
    }

    void the_smallest_axes_are_no_trouble()
    {
        for (int lights = 1; lights < 12; ++lights) {
            Measurement frame;
            frame.x = axisOf(lights, 3, [](int, int) { return 200.0; });
            frame.y = axisOf(lights, 1, [](int, int i) { return i == 0 ? 0.0 : 200.0; });
            const Verdicts verdicts = judge(frame);
            QCOMPARE(unhealthy(verdicts.x), 0);
            QCOMPARE(verdicts.y.lights[0].verdict, LightVerdict::Dead);
        }
    }
};

QTEST_GUILESS_MAIN(TestJudge)
#include "tst_judge.moc"
