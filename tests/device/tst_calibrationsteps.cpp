// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/calibrationsteps.h"
#include "tests/support/frames.h"

#include <QTest>

namespace {

using Event = CalibrationSteps::Event;

const CalibrationScreen Right{{1920, 0, 1920, 1080}, {3840, 1080}};

Event after(CalibrationSteps &steps, std::initializer_list<const char *> reports)
{
    Event last = Event::Nothing;
    for (const char *report : reports)
        last = steps.take(deviceFrame(report));
    return last;
}

} // namespace

class TestCalibrationSteps : public QObject
{
    Q_OBJECT

private slots:
    void targets_stand_an_eighth_off_the_edges_of_the_screen_data()
    {
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<QList<QPoint>>("targets");
        QTest::newRow("1280x800") << QRect(0, 0, 1280, 800)
                                  << QList<QPoint>{
                                         {160, 100}, {1120, 100}, {1120, 700}, {160, 700}};
        QTest::newRow("no multiple of eight")
            << QRect(0, 0, 1366, 767)
            << QList<QPoint>{{170, 95}, {1190, 95}, {1190, 665}, {170, 665}};
        QTest::newRow("beside another one")
            << QRect(1920, 0, 1920, 1080)
            << QList<QPoint>{{240, 135}, {1680, 135}, {1680, 945}, {240, 945}};
    }

    void targets_stand_an_eighth_off_the_edges_of_the_screen()
    {
        QFETCH(QRect, screen);
        QFETCH(QList<QPoint>, targets);
        const auto found = CalibrationScreen{screen, {3840, 1080}}.targets();
        QCOMPARE(QList<QPoint>(found.begin(), found.end()), targets);
    }

    void each_step_shows_its_target_and_is_echoed()
    {
        CalibrationSteps steps;
        const QList<const char *> numbers{"01 01", "01 02", "01 03", "01 04"};
        for (int target = 0; target < 4; ++target) {
            QCOMPARE(steps.take(deviceFrame(numbers[target])), Event::Target);
            QCOMPARE(steps.target(), target);
            QCOMPARE(text(steps.echo(Right)), "00 " + QByteArray(numbers[target]));
        }
        QCOMPARE(steps.take(deviceFrame("01 05")), Event::Checking);
        QCOMPARE(text(steps.echo(Right)),
                 QByteArray("00 01 05 80 07 00 00 80 07 38 04 00 0F 38 04"));
        QCOMPARE(steps.take(deviceFrame("01 FF 00 02 04")), Event::Ended);
        QCOMPARE(steps.deviation(), 3);
    }

    void a_step_that_comes_again_or_out_of_order_counts_for_nothing()
    {
        CalibrationSteps steps;
        QCOMPARE(steps.take(deviceFrame("01 02")), Event::Nothing);
        QCOMPARE(steps.take(deviceFrame("01 01")), Event::Target);
        for (const char *report : {"01 01", "01 03", "01 05", "01 FF 00 09 09", "01 00", "02 02"})
            QCOMPARE(steps.take(deviceFrame(report)), Event::Nothing);
        QCOMPARE(steps.target(), 0);
        QCOMPARE(steps.deviation(), 0);
        QCOMPARE(text(steps.echo(Right)), QByteArray("00 01 01"));
        QCOMPARE(steps.take(deviceFrame("01 02")), Event::Target);
    }

    void the_end_counts_once_and_only_after_the_check()
    {
        CalibrationSteps steps;
        QCOMPARE(after(steps, {"01 01", "01 02", "01 03", "01 04", "01 FF 00 09 09"}),
                 Event::Nothing);
        QCOMPARE(after(steps, {"01 05", "01 FF 00 01 00"}), Event::Ended);
        QCOMPARE(after(steps, {"01 FF 00 09 09"}), Event::Nothing);
        QCOMPARE(steps.deviation(), 0);
    }

    void the_deviation_is_the_mean_of_both_axes_without_their_signs_data()
    {
        QTest::addColumn<QByteArray>("end");
        QTest::addColumn<int>("deviation");
        QTest::newRow("none") << QByteArray("01 FF 00 00 00") << 0;
        QTest::newRow("one axis") << QByteArray("01 FF 00 06 00") << 3;
        QTest::newRow("half a per cent is none") << QByteArray("01 FF 00 05 02") << 3;
        QTest::newRow("to both sides") << QByteArray("01 FF 00 FB 05") << 5;
        QTest::newRow("the other way round") << QByteArray("01 FF 00 0C FC") << 8;
        QTest::newRow("the largest") << QByteArray("01 FF 00 80 80") << 128;
    }

    void the_deviation_is_the_mean_of_both_axes_without_their_signs()
    {
        QFETCH(QByteArray, end);
        QFETCH(int, deviation);
        CalibrationSteps steps;
        QCOMPARE(after(steps, {"01 01", "01 02", "01 03", "01 04", "01 05", end.constData()}),
                 Event::Ended);
        QCOMPARE(steps.deviation(), deviation);
    }

    void what_begins_anew_knows_nothing_of_the_last_time()
    {
        CalibrationSteps steps;
        QCOMPARE(after(steps, {"01 01", "01 02", "01 03", "01 04", "01 05", "01 FF 00 09 09"}),
                 Event::Ended);
        steps.begin();
        QCOMPARE(steps.target(), 0);
        QCOMPARE(steps.deviation(), 0);
        QCOMPARE(text(steps.echo(Right)), QByteArray("00 01"));
        QCOMPARE(steps.take(deviceFrame("01 02")), Event::Nothing);
        QCOMPARE(steps.take(deviceFrame("01 01")), Event::Target);
    }

    void nothing_counts_once_it_is_forgotten()
    {
        CalibrationSteps steps;
        steps.forget();
        QCOMPARE(after(steps, {"01 01"}), Event::Nothing);
    }

    void the_host_begins_saves_and_resets()
    {
        QCOMPARE(text(CalibrationSteps::beginFrame()), QByteArray("00 01"));
        QCOMPARE(text(CalibrationSteps::saveFrame()), QByteArray("00 01 FF"));
        QCOMPARE(text(CalibrationSteps::resetFrame()), QByteArray("00 01 06"));
    }
};

QTEST_GUILESS_MAIN(TestCalibrationSteps)
#include "tst_calibrationsteps.moc"
