// SPDX-License-Identifier: GPL-3.0-or-later

#include "lights/judge.h"
#include "lights/scancollector.h"
#include "lights/touch.h"

#include "sim/firmware.h"

#include <QTest>

#include <cmath>

using namespace lights;
using namespace Qt::StringLiterals;

namespace {

constexpr int Scans = 8;
constexpr double Pitch = 5;    // mm
constexpr double FingerMm = 8; // TouchModel's
// An even number, so that none is in the middle of a light: beside a dead one a finger there covers
// both neighbours alike, and all hangs on the last bit.
constexpr int ProbesPerLight = 6;

sim::Firmware frameOf(const sim::Profile &profile)
{
    return {profile, [] { return std::chrono::milliseconds(0); }};
}

// What a tool that scans the frame gets to know.
Measurement scansOf(sim::Firmware &frame)
{
    ScanCollector collector;
    const auto ask = [&](const Frame &question) {
        collector.sent(question);
        frame.command(question);
        while (frame.hasReply())
            collector.received(frame.report());
    };
    ask(command::request(command::Settings, command::settings::GetAdc));
    for (int scan = 0; scan < Scans; ++scan) {
        ask(command::request(command::Scan, command::scan::AxisX));
        ask(command::request(command::Scan, command::scan::AxisY));
    }
    Measurement measurement = collector.measurement();
    measurement.x.pitch = Pitch;
    measurement.y.pitch = Pitch;
    return measurement;
}

sim::Profile profileWith(const std::vector<sim::OddLight> &odd)
{
    sim::Profile profile;
    profile.noise = 1;
    profile.oddLights = odd;
    return profile;
}

constexpr UCHAR X = command::settings::AxisX;
constexpr UCHAR Y = command::settings::AxisY;

const TouchFault *claimAt(const std::vector<TouchFault> &claims, Axis axis, double light)
{
    for (const TouchFault &claim : claims) {
        if (claim.axis == axis && light >= claim.from && light < claim.to)
            return &claim;
    }
    return nullptr;
}

} // namespace

class TestTouch : public QObject
{
    Q_OBJECT

private slots:
    void what_is_said_of_touches_is_what_the_frame_feels_data()
    {
        QTest::addColumn<std::vector<sim::OddLight>>("odd");
        QTest::addColumn<bool>("goesWrong");
        const auto row = [](const char *name, const std::vector<sim::OddLight> &odd,
                            bool goesWrong) { QTest::newRow(name) << odd << goesWrong; };
        row("a healthy frame", {}, false);
        row("a dead light", {{.axis = X, .number = 17, .level = 0}}, true);
        row("a dead light of Y", {{.axis = Y, .number = 30, .level = 0}}, true);
        row("dead lights side by side",
            {{.axis = X, .number = 40, .level = 0},
             {.axis = X, .number = 41, .level = 0},
             {.axis = X, .number = 42, .level = 0}},
            true);
        row("a weak light", {{.axis = X, .number = 60, .level = 70}}, true);
        row("a light that is hardly weak", {{.axis = X, .number = 60, .level = 175}}, false);
        row("dead lights at the ends",
            {{.axis = X, .number = 0, .level = 0}, {.axis = Y, .number = 53, .level = 0}}, true);
    }
    void what_is_said_of_touches_is_what_the_frame_feels()
    {
        QFETCH(std::vector<sim::OddLight>, odd);
        QFETCH(bool, goesWrong);
        sim::Firmware frame = frameOf(profileWith(odd));
        const sim::Firmware healthy = frameOf(profileWith({}));
        const Measurement measurement = scansOf(frame);
        const TouchModel model;
        const std::vector<TouchFault> claims = touchFaults(measurement, judge(measurement), model);
        QCOMPARE(!claims.empty(), goesWrong);

        const QSizeF finger(FingerMm / Pitch, FingerMm / Pitch);
        int missed = 0;
        std::vector<bool> jumped(claims.size(), false);
        for (const Axis axis : Axes) {
            const int count = measurement.axis(axis).lights;
            for (int probe = 0; probe < count * ProbesPerLight; ++probe) {
                const double light = (probe + 0.5) / ProbesPerLight;
                // The other axis is touched where it is well.
                const QPointF place =
                    axis == Axis::X ? QPointF(light / count, 0.25) : QPointF(0.25, light / count);
                const auto felt = frame.feel(place, finger);
                const auto right = healthy.feel(place, finger);
                QVERIFY(right);
                const TouchFault *claim = claimAt(claims, axis, light);
                const bool isMissed = claim && claim->kind == TouchFault::Kind::Missed;
                const QByteArray where = QByteArray::number(light);
                // Levels are measured with noise, so the very border may be on either side.
                const double edge = 0.1;
                const auto *before = claimAt(claims, axis, light - edge);
                const auto *after = claimAt(claims, axis, light + edge);
                const bool atBorder = before != claim || after != claim;
                if (!atBorder)
                    QVERIFY2(isMissed == !felt, where);
                missed += !felt;
                if (!felt || atBorder)
                    continue;
                const double off = axis == Axis::X ? std::abs(felt->x() - right->x()) * count
                                                   : std::abs(felt->y() - right->y()) * count;
                QVERIFY2(off < (claim ? claim->by : model.jump) + 0.05, where);
                if (claim && off > model.jump - 0.05)
                    jumped[size_t(claim - claims.data())] = true;
            }
        }
        for (size_t i = 0; i < claims.size(); ++i) {
            const bool isWide = claims[i].to - claims[i].from > 2.0 / ProbesPerLight;
            if (claims[i].kind == TouchFault::Kind::Jumps && isWide)
                QVERIFY2(jumped[i], QByteArray::number(claims[i].from));
        }
        QCOMPARE(missed > 0, std::any_of(claims.begin(), claims.end(), [](const auto &claim) {
                     return claim.kind == TouchFault::Kind::Missed;
                 }));
    }

    void three_dead_lights_are_a_strip_without_touches()
    {
        sim::Firmware frame = frameOf(profileWith({{.axis = X, .number = 40, .level = 0},
                                                   {.axis = X, .number = 41, .level = 0},
                                                   {.axis = X, .number = 42, .level = 0}}));
        const Measurement measurement = scansOf(frame);
        const auto claims = touchFaults(measurement, judge(measurement));
        const auto strip = std::find_if(claims.begin(), claims.end(), [](const TouchFault &claim) {
            return claim.kind == TouchFault::Kind::Missed;
        });
        QVERIFY(strip != claims.end());
        QCOMPARE(strip->axis, Axis::X);
        QVERIFY(strip->from > 39.2 && strip->from < 40.8);
        QVERIFY(strip->to > 42.2 && strip->to < 43.8);
        const QRectF area = areaOf(*strip, measurement.x);
        QCOMPARE(area.top(), 0.0);
        QCOMPARE(area.height(), 1.0);
        QCOMPARE(area.left(), strip->from / 96);
        QVERIFY(frame.feel({0.3, 0.5}, {1.6, 1.6}));
        QVERIFY(!frame.feel({area.center().x(), 0.5}, {1.6, 1.6}));
    }

    void words_are_in_millimetres_where_the_pitch_is_known()
    {
        AxisMeasurement axis;
        axis.lights = 96;
        const TouchFault missed{.axis = Axis::X, .from = 40.5, .to = 42.75, .by = 0};
        QCOMPARE(wordsFor(missed, axis), u"Touches at lights X 40 to X 42 are missed."_s);
        const TouchFault missedAtOne{.axis = Axis::X, .from = 40.5, .to = 41, .by = 0};
        QCOMPARE(wordsFor(missedAtOne, axis), u"Touches at light X 40 are missed."_s);
        const TouchFault jumping{
            .kind = TouchFault::Kind::Jumps, .axis = Axis::X, .from = 3, .to = 5, .by = 0.31};
        QCOMPARE(wordsFor(jumping, axis),
                 u"Touches at lights X 3 to X 4 jump by up to 0.3 lights."_s);
        axis.pitch = 5;
        QCOMPARE(wordsFor(missed, axis),
                 u"Touches between 202 and 214 mm from the left are missed."_s);
        const TouchFault jumps{
            .kind = TouchFault::Kind::Jumps, .axis = Axis::Y, .from = 3, .to = 4, .by = 0.31};
        QCOMPARE(wordsFor(jumps, axis),
                 u"Touches between 15 and 20 mm from the top jump by up to 2 mm."_s);
    }

    void numbers_are_written_as_the_locale_has_them()
    {
        AxisMeasurement axis;
        axis.lights = 96;
        const TouchFault jumps{
            .kind = TouchFault::Kind::Jumps, .axis = Axis::Y, .from = 3, .to = 4, .by = 1.46};
        QCOMPARE(wordsFor(jumps, axis), u"Touches at light Y 3 jump by up to 1.5 lights."_s);
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QString german = wordsFor(jumps, axis);
        QLocale::setDefault(QLocale::c());
        QVERIFY2(german.contains(u" 1,5 "_s), qPrintable(german));
    }

    void a_light_that_is_switched_off_feels_nothing()
    {
        sim::Firmware frame = frameOf(profileWith({}));
        QVERIFY(frame.feel({17.5 / 96, 0.5}, {0.9, 0.9}));
        frame.command(command::LightRequest{
            .sub = command::settings::SwitchLight, .light = {X, 17}, .off = true}
                          .encode());
        QVERIFY(!frame.feel({17.5 / 96, 0.5}, {0.9, 0.9}));
    }
};

QTEST_GUILESS_MAIN(TestTouch)
#include "tst_touch.moc"
