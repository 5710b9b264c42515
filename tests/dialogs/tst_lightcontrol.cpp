// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/lightcontrol.h"

#include <QTest>

namespace {

using command::LightName;
using command::LightReport;
using Request = LightControl::Request;

constexpr LightName X7{1, 7};
constexpr LightName Y7{2, 7};

LightReport report(LightName light, int offset, int agc = 100)
{
    return {.light = light, .offset = offset, .agc = agc};
}
// Chosen, and reported once.
LightControl known(LightName light, int offset, int agc = 100)
{
    LightControl control;
    control.choose(light);
    if (!control.take(report(light, offset, agc)))
        qFatal("the first report does not count");
    return control;
}
Request set(LightName light, int offset)
{
    return {.sub = command::settings::SetLight, .light = light, .offset = offset};
}

} // namespace

class TestLightControl : public QObject
{
    Q_OBJECT

private slots:
    void a_light_of_which_nothing_is_known_is_not_stepped()
    {
        LightControl control;
        control.step(1);
        QCOMPARE(control.offset(), 0);
        control.choose(X7);
        control.step(1);
        control.step(-1);
        QCOMPARE(control.offset(), 0);
        QVERIFY(!control.next());
        QVERIFY(control.take(report(X7, 5)));
        control.step(1);
        QVERIFY(control.next() == set(X7, 6));
    }

    void a_light_of_neither_axis_is_not_stepped()
    {
        const LightName elsewhere{3, 7};
        LightControl control;
        control.choose(elsewhere);
        QVERIFY(control.take(report(elsewhere, 5)));
        QVERIFY(control.isKnown());
        control.step(1);
        QCOMPARE(control.offset(), 5);
        QVERIFY(!control.next());
    }

    void steps_end_at_fifty_and_where_no_gain_is_left_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("gain");
        QTest::addColumn<int>("by");
        QTest::addColumn<int>("to");
        QTest::newRow("up to the largest") << 49 << 100 << 1 << 50;
        QTest::newRow("none above it") << 50 << 100 << 1 << 50;
        QTest::newRow("down to the least") << -49 << 100 << -1 << -50;
        QTest::newRow("none below it") << -50 << 100 << -1 << -50;
        QTest::newRow("down while gain is left") << -9 << 10 << -1 << -10;
        QTest::newRow("none without") << -10 << 10 << -1 << -10;
        QTest::newRow("up without gain") << -10 << 0 << 1 << -9;
        // As a frame may report them.
        QTest::newRow("back from above") << 60 << 100 << -1 << 59;
        QTest::newRow("not further above") << 60 << 100 << 1 << 60;
    }
    void steps_end_at_fifty_and_where_no_gain_is_left()
    {
        QFETCH(const int, from);
        QFETCH(const int, gain);
        QFETCH(const int, by);
        LightControl control = known(Y7, from, gain);
        control.step(by);
        QTEST(control.offset(), "to");
    }

    void steps_add_up_behind_one_that_is_not_answered()
    {
        LightControl control = known(X7, 0);
        control.step(1);
        QVERIFY(control.next() == set(X7, 1));
        QVERIFY(control.isStepping() && !control.isSwitching());
        control.step(1);
        control.step(1);
        QVERIFY(!control.next());
        QVERIFY(control.take(report(X7, 1)));
        QVERIFY(!control.isStepping());
        QVERIFY(control.next() == set(X7, 3));
        QVERIFY(control.take(report(X7, 3)));
        QVERIFY(!control.next());
        // Whatever a frame says later counts again.
        QVERIFY(control.take(report(X7, 9)));
        QCOMPARE(control.offset(), 9);
    }

    void what_is_not_sent_goes_out_when_another_light_is_chosen()
    {
        LightControl control = known(X7, 20);
        control.step(1);
        QVERIFY(!control.choose(X7));
        QVERIFY(control.choose(Y7) == set(X7, 21));
        QVERIFY(!control.isKnown());
        QCOMPARE(control.offset(), 0);
        QVERIFY(!control.isStepping());
        // Its answer is none of the new light.
        QVERIFY(!control.take(report(X7, 21)));
        QVERIFY(!control.isKnown());
    }

    void a_step_is_awaited_while_another_light_is_chosen_and_stepped()
    {
        LightControl control = known(X7, 0);
        control.step(1);
        QVERIFY(control.next());
        control.choose(Y7);
        QVERIFY(control.take(report(Y7, 0)));
        control.step(1);
        QVERIFY(control.next());
        control.choose(X7);
        QVERIFY(control.isStepping());
        QVERIFY(!control.take(report(X7, 0)));
        QVERIFY(control.take(report(X7, 1)));
    }

    void a_report_from_before_a_step_does_not_count()
    {
        LightControl control = known(X7, 0);
        control.step(1);
        QVERIFY(control.next());
        QVERIFY(!control.take(report(X7, 0)));
        QCOMPARE(control.offset(), 1);
        QVERIFY(control.isStepping());
        QVERIFY(control.take(report(X7, 1)));
    }

    // The second is written before the first is answered.
    void of_two_switchings_the_second_is_awaited()
    {
        LightControl control = known(X7, 0);
        const Request off = control.switchTo(true);
        QVERIFY(off == (Request{.sub = command::settings::SwitchLight, .light = X7, .off = true}));
        const Request on = control.switchTo(false);
        QVERIFY(on == (Request{.sub = command::settings::SwitchLight, .light = X7, .off = false}));
        LightReport answer = report(X7, 0);
        answer.off = true;
        QVERIFY(!control.take(answer));
        QVERIFY(control.isSwitching());
        answer.off = false;
        QVERIFY(control.take(answer));
        QVERIFY(!control.isSwitching());
    }

    void a_step_and_a_switching_are_awaited_side_by_side()
    {
        LightControl control = known(X7, 0);
        control.step(1);
        QVERIFY(control.next());
        control.switchTo(true);
        QVERIFY(control.isStepping() && control.isSwitching());
        LightReport answer = report(X7, 1);
        QVERIFY(!control.take(answer)); // the step is answered, not the switching
        QVERIFY(!control.isStepping() && control.isSwitching());
        answer.off = true;
        QVERIFY(control.take(answer));
        QVERIFY(!control.isSwitching());
    }

    void forgotten_is_all_that_was_chosen_and_written()
    {
        LightControl control = known(X7, 9);
        control.step(1);
        QVERIFY(control.next());
        control.forget();
        QVERIFY(!control.light() && !control.isKnown());
        QCOMPARE(control.offset(), 0);
        control.choose(X7);
        QVERIFY(!control.isStepping());
        QVERIFY(control.take(report(X7, 9))); // which a step would contradict
    }
};

QTEST_APPLESS_MAIN(TestLightControl)
#include "tst_lightcontrol.moc"
