// SPDX-License-Identifier: GPL-3.0-or-later

// What monitoring is told of a frame.

#include "config/lastcalibration.h"
#include "tests/ctl/run.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace {

// The lights of a small frame that is as new, but for what odd lights say.
sim::Profile small(std::vector<sim::OddLight> odd = {})
{
    sim::Profile profile;
    profile.lightsX = 40;
    profile.lightsY = 24;
    profile.curve = 0;
    profile.noise = 0;
    profile.oddLights = std::move(odd);
    return profile;
}

sim::FaultPlan plan(const QString &text)
{
    QString problem;
    return sim::FaultPlan::parse(text, u"plan"_s, &problem).value();
}

} // namespace

class TestMetrics : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> data;

private slots:
    void init()
    {
        data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(data->path()));
    }

    void a_good_frame_is_told_of()
    {
        const Outcome told = runCtl(u"metrics --scans 2"_s, quickFrame(small()));
        QCOMPARE(told.code, 0);
        QCOMPARE(told.err, QByteArray());
        const QByteArrayList lines = told.lines();
        for (const char *line :
             {R"(# TYPE quorvel_frame_present gauge)", R"(quorvel_frame_present{frame="usb"} 1)",
              R"(quorvel_frame_questions{frame="usb"} 3)",
              R"(quorvel_frame_answers_in_time{frame="usb"} 3)",
              R"(quorvel_lights{frame="usb",axis="x",verdict="healthy"} 40)",
              R"(quorvel_lights{frame="usb",axis="y",verdict="healthy"} 24)",
              R"(quorvel_lights{frame="usb",axis="x",verdict="dead"} 0)",
              R"(quorvel_lights_pass{frame="usb"} 1)"})
            QVERIFY2(lines.contains(line), told.out);
        QVERIFY2(told.out.contains(R"(release="3.0.1.0",revision="003812",checksum="5A17C0DE"} 1)"),
                 told.out);
        QVERIFY(!told.out.contains("quorvel_frame_trouble{"));
        QVERIFY(!told.out.contains("quorvel_calibration"));
        QCOMPARE(lines.last(), QByteArray("# EOF"));
    }

    void dead_and_weak_lights_are_counted_by_axis()
    {
        const Outcome told = runCtl(u"metrics --scans 2"_s,
                                    quickFrame(small({{.axis = 1, .number = 7, .level = 0},
                                                      {.axis = 2, .number = 11, .level = 90}})));
        QCOMPARE(told.code, 0);
        for (const char *line : {R"(quorvel_lights{frame="usb",axis="x",verdict="dead"} 1)",
                                 R"(quorvel_lights{frame="usb",axis="x",verdict="healthy"} 39)",
                                 R"(quorvel_lights{frame="usb",axis="y",verdict="weak"} 1)",
                                 R"(quorvel_lights_pass{frame="usb"} 0)"})
            QVERIFY2(told.lines().contains(line), told.out);
    }

    // Level 90 is 52.5 above the 37.5 that a touch needs; 52.5 of 255.
    void the_weakest_light_tells_how_much_is_left()
    {
        const Outcome told = runCtl(u"metrics --scans 1"_s,
                                    quickFrame(small({{.axis = 2, .number = 11, .level = 90}})));
        QVERIFY2(told.lines().contains(
                     R"(quorvel_light_weakest_margin_ratio{frame="usb",axis="y"} 0.205882352941)"),
                 told.out);
    }

    void no_frame_is_something_to_tell()
    {
        const Outcome told = runCtl(u"metrics"_s, quickFrame({}, {}, false));
        QCOMPARE(told.code, 0);
        QVERIFY(told.lines().contains(R"(quorvel_frame_present{frame="usb"} 0)"));
        QVERIFY(
            told.lines().contains(R"(quorvel_frame_trouble{frame="usb",trouble="no-frame"} 1)"));
        QVERIFY(!told.out.contains("quorvel_lights{"));
        QVERIFY(!told.err.isEmpty());
    }

    void a_frame_that_says_nothing_answers_no_question()
    {
        const Outcome told =
            runCtl(u"metrics --timeout 0.2"_s, quickFrame({}, plan(u"at 1 silent 1000000"_s)));
        QCOMPARE(told.code, 0);
        QVERIFY2(told.lines().contains(R"(quorvel_frame_answers_in_time{frame="usb"} 0)"),
                 told.out);
        QVERIFY(
            told.lines().contains(R"(quorvel_frame_trouble{frame="usb",trouble="no-answer"} 1)"));
        QVERIFY(!told.out.contains("quorvel_lights{"));
    }

    void lights_can_be_left_alone()
    {
        const Outcome told = runCtl(u"metrics --scans 0"_s, quickFrame());
        QCOMPARE(told.code, 0);
        QVERIFY(!told.out.contains("quorvel_lights"));
    }

    void the_last_calibration_is_told_of()
    {
        const LastCalibration last{QDateTime::fromSecsSinceEpoch(1790000000, QTimeZone::utc()), 3};
        QVERIFY(last.keep());
        const Outcome told = runCtl(u"metrics --scans 0"_s, quickFrame());
        QVERIFY(told.lines().contains(R"(quorvel_calibration_deviation_ratio{frame="usb"} 0.03)"));
        QVERIFY(told.lines().contains(
            R"(quorvel_calibration_timestamp_seconds{frame="usb"} 1790000000)"));
    }

    void a_file_is_written_as_a_whole()
    {
        const QString path = data->filePath(u"frame.prom"_s);
        const Outcome told = runCtl(u"metrics --scans 0 --output "_s + path, quickFrame());
        QCOMPARE(told.code, 0);
        QCOMPARE(told.out, QByteArray());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QVERIFY(text.startsWith("# HELP quorvel_frame_present"));
        QVERIFY(text.endsWith("\n# EOF\n"));
        QCOMPARE(QDir(data->path()).entryList(QDir::Files), QStringList(u"frame.prom"_s));
    }

    void a_file_that_cannot_be_written_is_told()
    {
        const Outcome told =
            runCtl(u"metrics --scans 0 --output /proc/quorvel/frame.prom"_s, quickFrame());
        QCOMPARE(told.code, 7);
        QVERIFY2(told.err.contains("/proc/quorvel/frame.prom cannot be written"), told.err);
    }

    void programs_get_the_text_in_a_document()
    {
        const QJsonObject told = runCtl(u"metrics --scans 0 --json"_s, quickFrame()).json();
        QCOMPARE(told[u"ok"_s].toBool(), true);
        QVERIFY(told[u"openmetrics"_s].toString().endsWith(u"\n# EOF\n"_s));
    }
};

QTEST_GUILESS_MAIN(TestMetrics)
#include "tst_metrics.moc"
