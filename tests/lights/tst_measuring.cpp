// SPDX-License-Identifier: GPL-3.0-or-later

// A measurement at a simulated frame that loses, tears and repeats what it says.

#include "lights/judge.h"
#include "lights/measuring.h"
#include "sim/firmware.h"
#include "tests/support/frames.h"

#include <QSignalSpy>
#include <QTest>

#include <deque>

using namespace lights;
using namespace Qt::StringLiterals;

namespace {

sim::Profile smallFrame()
{
    sim::Profile profile;
    profile.lightsX = 60;
    profile.lightsY = 30;
    profile.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 0}};
    return profile;
}

// Hands on what the frame says at the test's pace; by USB each report comes twice.
struct Bench
{
    explicit Bench(const sim::Profile &profile)
        : firmware(profile, [this] { return std::chrono::milliseconds(now += 100); })
    {
        QObject::connect(&measuring, &Measuring::ask, &measuring, [this](const Frame &frame) {
            asked += text(frame);
            waiting.push_back(frame);
        });
        measuring.linkBegan(Measuring::Source::Usb);
    }
    // Until nothing is asked any more.
    void run(int most = 10000)
    {
        for (int i = 0; i < most && (!waiting.empty() || firmware.queuedReplies() > 0); ++i) {
            if (!waiting.empty() && firmware.queuedReplies() == 0) {
                firmware.command(waiting.front());
                waiting.pop_front();
            }
            Frame report = firmware.report();
            if (alter)
                alter(report);
            if (report == Frame{})
                continue;
            for (int read = 0; read < reads; ++read)
                measuring.received(report);
        }
    }

    int now = 0;
    int reads = 2; // of each report
    sim::Firmware firmware;
    Measuring measuring;
    QList<QByteArray> asked;
    std::deque<Frame> waiting;
    std::function<void(Frame &)> alter; // an empty frame is a lost one
};

bool isPage(const Frame &frame, UCHAR axis, int first)
{
    const auto page = command::ScanPage::decode(frame);
    return page && page->axis == axis && page->first == first;
}

} // namespace

class TestMeasuring : public QObject
{
    Q_OBJECT

private slots:
    void a_measurement_has_what_the_frame_says()
    {
        Bench bench(smallFrame());
        QSignalSpy finished(&bench.measuring, &Measuring::finished);
        bench.measuring.start({.scans = 4});
        bench.run();
        QCOMPARE(finished.count(), 1);
        QVERIFY(!bench.measuring.isRunning());
        const Measurement measured = bench.measuring.measurement();
        QCOMPARE(measured.unit.identification, u"21-01234-1605"_s);
        QVERIFY(measured.date.isValid());
        QCOMPARE(measured.x.lights, 60);
        QCOMPARE(measured.y.lights, 30);
        QCOMPARE(measured.x.scans.size(), 4U);
        QCOMPARE(measured.y.scans.size(), 4U);
        QCOMPARE(measured.x.gains.size(), 60U);
        QCOMPARE(judge(measured).x.lights[17].verdict, LightVerdict::Dead);
        // The firmware, the layout, then X and Y in turns, and the dead light.
        QCOMPARE(bench.asked.mid(0, 5),
                 (QList<QByteArray>{"00 A3", "00 A2 05", "00 A5 01", "00 A5 02", "00 A5 01"}));
        QCOMPARE(bench.asked.last(), "00 A2 07 03 00 01 11");
        QCOMPARE(bench.asked.size(), 2 + 4 * 2 + 1);
        QVERIFY(measured.x.off.size() == 60 && !measured.x.off[17]);
    }

    void progress_goes_up_to_its_end()
    {
        Bench bench(smallFrame());
        QSignalSpy progress(&bench.measuring, &Measuring::progressed);
        bench.measuring.start({.scans = 2});
        bench.run();
        int before = 0;
        for (const auto &one : progress) {
            QVERIFY(one[0].toInt() >= before);
            before = one[0].toInt();
        }
        QCOMPARE(progress.last()[0].toInt(), 2 * (3 + 2));
        QCOMPARE(progress.last()[1].toInt(), 2 * (3 + 2));
    }

    void a_light_that_is_off_is_known_as_such()
    {
        Bench bench(smallFrame());
        bench.firmware.command(command::LightRequest{.sub = command::settings::SwitchLight,
                                                     .light = {command::settings::AxisY, 9},
                                                     .off = true}
                                   .encode());
        bench.measuring.start({.scans = 2});
        bench.run();
        QCOMPARE(judge(bench.measuring.measurement()).y.lights[9].verdict,
                 LightVerdict::SwitchedOff);
    }

    void a_lost_page_is_asked_for_again()
    {
        Bench bench(smallFrame());
        QSignalSpy finished(&bench.measuring, &Measuring::finished);
        int lost = 0;
        bench.alter = [&lost](Frame &frame) {
            if (isPage(frame, command::scan::AxisX, 27) && lost++ == 0)
                frame = {};
        };
        bench.measuring.start({.scans = 3});
        bench.run();
        QCOMPARE(finished.count(), 1);
        QCOMPARE(bench.measuring.measurement().x.scans.size(), 3U);
        QCOMPARE(bench.asked.count("00 A5 01"), 3 + 1);
    }

    void half_a_page_of_zeros_is_not_believed_at_once()
    {
        Bench bench(smallFrame());
        int torn = 0;
        bench.alter = [&torn](Frame &frame) {
            if (isPage(frame, command::scan::AxisY, 0) && torn++ == 0)
                std::fill(frame.begin() + 32, frame.end(), UCHAR(0));
        };
        bench.measuring.start({.scans = 2});
        bench.run();
        QVERIFY(judge(bench.measuring.measurement()).stretches.empty());
        QCOMPARE(bench.asked.count("00 A5 02"), 2 + 1);
    }

    void a_series_goes_on_with_the_newest_scans()
    {
        Bench bench(smallFrame());
        QSignalSpy finished(&bench.measuring, &Measuring::finished);
        QSignalSpy scanned(&bench.measuring, &Measuring::scanned);
        connect(&bench.measuring, &Measuring::scanned, &bench.measuring, [&bench] {
            if (bench.measuring.scans() == 9)
                bench.measuring.stop();
        });
        bench.measuring.start({.scans = 4, .goesOn = true});
        bench.run();
        QCOMPARE(scanned.count(), 9);
        QCOMPARE(finished.count(), 0);
        QCOMPARE(bench.measuring.measurement().x.scans.size(), 4U);
        QCOMPARE(bench.asked.count("00 A2 07 03 00 01 11"), 1); // the dead light, once
    }

    void after_an_unplug_it_begins_anew_with_the_frame_that_comes()
    {
        Bench bench(smallFrame());
        QSignalSpy finished(&bench.measuring, &Measuring::finished);
        bench.measuring.start({.scans = 4});
        bench.run(12);
        QVERIFY(bench.measuring.isRunning());
        bench.measuring.linkEnded();
        bench.waiting.clear();
        bench.asked.clear();
        QVERIFY(bench.measuring.isRunning());
        bench.run();
        QCOMPARE(bench.asked, QList<QByteArray>());
        bench.measuring.linkBegan(Measuring::Source::OlderUsb);
        bench.run();
        QCOMPARE(bench.asked.first(), "00 A2 05");
        QCOMPARE(finished.count(), 1);
        const Measurement measured = bench.measuring.measurement();
        QCOMPARE(measured.x.scans.size(), 4U);
        QCOMPARE(measured.unit.identification, QString());
    }

    void an_unplug_takes_the_progress_back_at_once()
    {
        Bench bench(smallFrame());
        QSignalSpy progress(&bench.measuring, &Measuring::progressed);
        bench.measuring.start({.scans = 4});
        bench.run(12);
        QVERIFY(progress.last()[0].toInt() > 0);
        bench.measuring.linkEnded();
        QCOMPARE(progress.last(), (QVariantList{0, 0}));
    }

    void on_a_line_an_answer_like_the_last_report_is_believed()
    {
        Bench bench(smallFrame());
        bench.measuring.linkBegan(Measuring::Source::Line);
        bench.reads = 1;
        QSignalSpy finished(&bench.measuring, &Measuring::finished);
        bench.measuring.start({.scans = 2});
        bench.run(1);
        QCOMPARE(bench.asked, (QList<QByteArray>{"00 A2 05", "00 A5 01"}));
        // The scan is lost on the line; somebody measures once more.
        bench.waiting.clear();
        bench.measuring.stop();
        bench.measuring.start({.scans = 2});
        bench.run();
        QCOMPARE(finished.count(), 1);
    }

    void a_stopped_measurement_asks_and_takes_nothing()
    {
        Bench bench(smallFrame());
        QSignalSpy scanned(&bench.measuring, &Measuring::scanned);
        bench.measuring.start({.scans = 4});
        bench.run(6);
        bench.measuring.stop();
        bench.asked.clear();
        bench.run();
        QCOMPARE(bench.asked, QList<QByteArray>());
        QCOMPARE(scanned.count(), 0);
    }

    void pages_of_another_layout_do_not_count()
    {
        Bench bench(smallFrame());
        int counts = 0;
        connect(&bench.measuring, &Measuring::ask, &bench.measuring, [&](const Frame &frame) {
            // Somebody else asks for the counts in between.
            if (command::is(frame, command::Scan, command::scan::AxisY) && counts++ == 0)
                bench.waiting.push_back(hostFrame("A5 00"));
        });
        bench.measuring.start({.scans = 2});
        bench.run();
        QVERIFY(bench.asked.count("00 A2 05") >= 2);
        const Verdicts verdicts = judge(bench.measuring.measurement());
        for (const Axis axis : Axes)
            for (const Light &light : verdicts.axis(axis).lights)
                QVERIFY(light.level > 150 || light.verdict == LightVerdict::Dead);
    }

    void a_frame_that_stays_silent_is_told()
    {
        Bench bench(smallFrame());
        QSignalSpy failed(&bench.measuring, &Measuring::failed);
        bench.alter = [](Frame &frame) { frame = {}; };
        bench.measuring.start({});
        bench.run();
        QVERIFY(failed.wait(10000));
        QCOMPARE(failed.first().first().toString(), u"No answer from the touch frame"_s);
        QCOMPARE(bench.asked.size(), 4);
        QVERIFY(!bench.measuring.isRunning());
    }
};

QTEST_GUILESS_MAIN(TestMeasuring)
#include "tst_measuring.moc"
