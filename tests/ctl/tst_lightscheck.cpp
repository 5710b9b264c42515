// SPDX-License-Identifier: GPL-3.0-or-later

// What the command line program says of the lights of a frame, or of a file.

#include "capture/writer.h"
#include "device/records.h"
#include "run.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// A log of forty lights on X and thirty on Y, as the signal test writes it.
QByteArray logOf(int weakest)
{
    QByteArray text("Date,Time,");
    for (int i = 0; i < 40; ++i)
        text += "X0" + QByteArray::number(i).rightJustified(2, '0') + ',';
    for (int i = 0; i < 30; ++i)
        text += "Y0" + QByteArray::number(i).rightJustified(2, '0') + ',';
    text += "NG/PASS\n";
    for (int scan = 0; scan < 4; ++scan) {
        text += "261121,20:15:0" + QByteArray::number(scan) + ":250,";
        for (int i = 0; i < 40; ++i)
            text += QByteArray::number(i == 12 ? weakest : 860 + 4 * ((scan + i) % 2)) + ',';
        for (int i = 0; i < 30; ++i)
            text += QByteArray::number(852 + 4 * ((scan + i) % 2)) + ",,";
        text += '\n';
    }
    return text;
}

sim::Profile wornFrame()
{
    sim::Profile profile;
    profile.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 0},
                         {.axis = command::settings::AxisY, .number = 30, .level = 60}};
    return profile;
}

QStringList verdictsIn(const QJsonObject &json)
{
    QStringList all;
    for (const QJsonValue finding : json[u"findings"_s].toArray()) {
        all += u"%1 %2 %3"_s.arg(finding[u"axis"_s].toString())
                   .arg(finding[u"number"_s].toInt(finding[u"first"_s].toInt()))
                   .arg(finding[u"verdict"_s].toString());
    }
    return all;
}

} // namespace

class TestLightsCheck : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        hidver = {};
        folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder->path()));
    }

    void a_healthy_frame_passes()
    {
        const auto frame = quickFrame();
        const Outcome outcome = runCtl(u"lights check --scans 4"_s, frame);
        QCOMPARE(outcome.out, "PASS\n");
        QCOMPARE(outcome.code, 0);
        const QJsonObject json = runCtl(u"lights check --scans 4 --json"_s, frame).json();
        QCOMPARE(json[u"verdict"_s], QJsonValue(u"pass"_s));
        QCOMPARE(json[u"ok"_s], QJsonValue(true));
        QCOMPARE(json[u"unit"_s][u"identification"_s], QJsonValue(u"21-01234-1605"_s));
        QCOMPARE(json[u"axes"_s][u"x"_s][u"scans"_s].toArray().size(), 4);
        QCOMPARE(json[u"lights"_s][u"y"_s].toArray().size(), 54);
    }

    void a_frame_with_faults_needs_service()
    {
        const auto frame = quickFrame(wornFrame());
        frame->change([](sim::Firmware &model) {
            model.command(command::LightRequest{.sub = command::settings::SwitchLight,
                                                .light = {command::settings::AxisX, 50},
                                                .off = true}
                              .encode());
        });
        const Outcome outcome = runCtl(u"lights check --scans 4 --pitch 5"_s, frame);
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.lines().first(), "SERVICE NEEDED");
        QVERIFY(outcome.out.contains("X 17: dead, level "));
        QVERIFY(outcome.out.contains("See whether light X 17, 88 mm from the left, is covered; if "
                                     "not, replace its board."));
        QCOMPARE(outcome.err, "");
        const Outcome again = runCtl(u"lights check --scans 4 --json"_s, frame);
        QCOMPARE(again.code, 1);
        QCOMPARE(verdictsIn(again.json()),
                 (QStringList{u"x 17 dead"_s, u"x 50 switched-off"_s, u"y 30 weak"_s}));
        QVERIFY(!again.json()[u"touch"_s].toArray().isEmpty());
    }

    void without_a_frame_there_is_no_verdict()
    {
        const Outcome outcome = runCtl(u"lights check"_s, quickFrame({}, {}, false));
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.out, "");
    }

    void a_frame_that_falls_silent_has_no_verdict()
    {
        QString problem;
        const auto silent = sim::FaultPlan::parse(u"at 12 silent 100000"_s, u"plan"_s, &problem);
        QVERIFY2(silent, qPrintable(problem));
        const Outcome outcome = runCtl(u"lights check --timeout 0.2"_s, quickFrame({}, *silent));
        QCOMPARE(outcome.code, 6);
        QCOMPARE(outcome.out, "");
    }

    void what_cannot_be_kept_is_told()
    {
        const QString file = write(u"file"_s, "in the way");
        qputenv("XDG_DATA_HOME", QFile::encodeName(file));
        const Outcome outcome = check(write(u"log.csv"_s, logOf(860)), u"--remember Hall"_s);
        QCOMPARE(outcome.code, 7);
        QVERIFY(outcome.err.contains("cannot be made."));
    }

    void a_log_of_the_signal_test_is_judged()
    {
        QCOMPARE(check(write(u"good.csv"_s, logOf(860))).code, 0);
        const Outcome outcome = check(write(u"bad.csv"_s, logOf(400)), u"--json"_s);
        QCOMPARE(outcome.code, 1);
        QCOMPARE(verdictsIn(outcome.json()), QStringList{u"x 12 weak"_s});
    }

    void what_it_says_is_judged_the_same_again()
    {
        const Outcome first = check(write(u"log.csv"_s, logOf(0)), u"--json"_s);
        const Outcome second = check(write(u"said.json"_s, first.out), u"--json"_s);
        QCOMPARE(second.code, 1);
        QCOMPARE(second.json(), first.json());
        QCOMPARE(verdictsIn(second.json()), QStringList{u"x 12 dead"_s});
    }

    void a_table_has_a_line_for_each_light()
    {
        const Outcome outcome = check(write(u"log.csv"_s, logOf(400)), u"--csv"_s);
        QCOMPARE(outcome.code, 1);
        const QByteArrayList lines = outcome.lines();
        QCOMPARE(lines.size(), 1 + 40 + 30);
        QCOMPARE(lines[0], "axis,light,verdict,level,expected,noise,confidence,stretch,first,last");
        QVERIFY(lines[1].startsWith("x,0,healthy,215."));
        QVERIFY(lines[13].startsWith("x,12,weak,100.00,215."));
        QVERIFY(lines[41].startsWith("y,0,healthy,213."));
    }

    void a_report_is_a_page_that_needs_nothing_else()
    {
        const QString log = write(u"log.csv"_s, logOf(400));
        const QString path = folder->filePath(u"report.html"_s);
        QCOMPARE(check(log, u"--name <Hall> --report "_s + path).code, 1);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray page = file.readAll();
        QVERIFY(page.contains("SERVICE NEEDED"));
        QVERIFY(page.contains("&lt;Hall&gt;"));
        QCOMPARE(check(log, u"--report "_s + folder->filePath(u"report.txt"_s)).code, 2);
        QCOMPARE(check(log, u"--report "_s + folder->filePath(u"none/report.html"_s)).code, 7);
    }

    void a_recording_is_judged()
    {
        sim::Firmware frame(wornFrame(), [] { return std::chrono::milliseconds(0); });
        const QString path = folder->filePath(u"frame.pcap"_s);
        QString problem;
        auto writer = capture::Writer::create(path, &problem);
        QVERIFY2(writer, qPrintable(problem));
        const auto ask = [&](const Frame &question) {
            frame.command(question);
            QVERIFY(writer->add({.kind = capture::Kind::ToFrame, .frame = question}));
            while (frame.hasReply()) {
                const Frame reply = frame.report();
                // By USB the last report comes again until there is another.
                for (int repeat = 0; repeat < 2; ++repeat)
                    QVERIFY(writer->add({.kind = capture::Kind::FromFrame, .frame = reply}));
            }
        };
        using namespace command;
        ask(request(Firmware, firmware::Query));
        ask(request(Scan, scan::Counts));
        for (int scan = 0; scan < 3; ++scan) {
            ask(request(Scan, scan::AxisX));
            ask(request(Scan, scan::AxisY));
        }
        writer.reset();
        const QJsonObject json = check(path, u"--json"_s).json();
        QCOMPARE(verdictsIn(json), (QStringList{u"x 17 dead"_s, u"y 30 weak"_s}));
        QCOMPARE(json[u"axes"_s][u"x"_s][u"scans"_s].toArray().size(), 3);
        QCOMPARE(json[u"unit"_s][u"identification"_s], QJsonValue(u"21-01234-1605"_s));
    }

    void a_recording_without_a_scan_is_refused()
    {
        const QString path = folder->filePath(u"frame.pcap"_s);
        QString problem;
        QVERIFY(capture::Writer::create(path, &problem));
        const Outcome outcome = check(path);
        QCOMPARE(outcome.code, 2);
        QVERIFY(outcome.err.contains("no whole scan was recorded"));
    }

    void what_cannot_be_read_is_told()
    {
        const Outcome missing = check(folder->filePath(u"none"_s));
        QCOMPARE(missing.code, 2);
        QCOMPARE(missing.err,
                 "quorvelctl: " + folder->filePath(u"none"_s).toUtf8() + " does not exist\n");
        const QString odd = write(u"odd.json"_s, R"({"format": "x"})");
        QVERIFY(check(odd).err.contains("no measurement of lights"));
        const QString log = write(u"log.csv"_s, logOf(860));
        const Outcome damaged = check(log, u"--thresholds "_s + odd);
        QCOMPARE(damaged.code, 2);
        QVERIFY(damaged.err.contains("no file of thresholds"));
    }

    void thresholds_of_a_file_decide()
    {
        const QString log = write(u"log.csv"_s, logOf(600));
        QCOMPARE(check(log).code, 1);
        const QString patient =
            write(u"patient.json"_s, "{\"format\": \"quorvel-light-thresholds\", \"version\": 1, "
                                     "\"weakShare\": 0.5}");
        QCOMPARE(check(log, u"--thresholds "_s + patient).code, 0);
    }

    void what_was_remembered_is_compared_with()
    {
        const auto frame = quickFrame();
        const Outcome none = runCtl(u"lights check --scans 2 --baseline last"_s, frame);
        QCOMPARE(none.code, 2);
        QVERIFY(none.err.contains("Nothing has been remembered of this unit."));
        QCOMPARE(runCtl(u"lights check --scans 2 --remember Entrance"_s, frame).code, 0);
        const QString unit = folder->filePath(u"quorvel/lights/21-01234-1605"_s);
        QCOMPARE(QDir(unit).entryList(QDir::Files).size(), 1);
        const Outcome later =
            runCtl(u"lights check --scans 2 --baseline last --json"_s, quickFrame(wornFrame()));
        QCOMPARE(later.code, 1);
        const QJsonArray changes = later.json()[u"baseline"_s][u"changes"_s].toArray();
        QCOMPARE(changes.size(), 96 + 54);
        QVERIFY(changes[17][u"alone"_s].toDouble() < -0.9);
        QVERIFY(std::abs(changes[18][u"alone"_s].toDouble()) < 0.05);
        QVERIFY(!later.json()[u"trend"_s].toObject().contains(u"expected"_s));
    }

    void a_unit_that_says_nothing_needs_a_name()
    {
        const QString log = write(u"log.csv"_s, logOf(860));
        QCOMPARE(check(log, u"--remember Hall"_s).code, 0);
        QVERIFY(QFile::exists(folder->filePath(u"quorvel/lights/Hall"_s)));
        const QString other = write(u"other.json"_s, check(log, u"--name Door --json"_s).out);
        const Outcome strange = check(log, u"--name Hall --baseline "_s + other);
        QCOMPARE(strange.code, 2);
        QVERIFY(strange.err.contains("it is of another unit, Door and not Hall"));
    }

private:
    static Outcome check(const QString &path, const QString &options = {})
    {
        return runCtl(u"lights check --from %1 %2"_s.arg(path, options));
    }
    QString write(const QString &name, const QByteArray &text) const
    {
        QFile file(folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("%s cannot be written", qPrintable(name));
        return file.fileName();
    }

    std::unique_ptr<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestLightsCheck)
#include "tst_lightscheck.moc"
