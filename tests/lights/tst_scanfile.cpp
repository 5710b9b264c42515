// SPDX-License-Identifier: GPL-3.0-or-later

#include "lights/scanfile.h"

#include <QBuffer>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <cmath>
#include <sys/stat.h>

using namespace lights;
using namespace Qt::StringLiterals;

namespace {

std::optional<Measurement> readLog(const QByteArray &text, QString *problem)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    return ScanFile::fromLog(buffer, u"log.csv"_s, problem);
}

Scan scanOf(std::initializer_list<float> levels)
{
    return {levels};
}

const QByteArray Title("Date,Time,X000,X001,X002,Y000,Y001,NG/PASS\n");

} // namespace

class TestScanFile : public QObject
{
    Q_OBJECT

private slots:
    void rows_of_a_signal_test_are_scans()
    {
        QString problem;
        const auto read = readLog(Title + "261121,20:15:01:250,860,856,0,800,,812,,\n"
                                          "261121,20:15:02:250,864,852,4,804,,808,,\n",
                                  &problem);
        QVERIFY2(read, qPrintable(problem));
        QCOMPARE(read->x.lights, 3);
        QCOMPARE(read->y.lights, 2);
        QCOMPARE(read->x.scans, (std::vector<Scan>{scanOf({215, 214, 0}), scanOf({216, 213, 1})}));
        QCOMPARE(read->y.scans, (std::vector<Scan>{scanOf({200, 203}), scanOf({201, 202})}));
        QCOMPARE(read->date.toLocalTime(), QDateTime(QDate(2026, 11, 21), QTime(20, 15, 2, 250)));
        QVERIFY(read->x.off.empty());
        QVERIFY(read->x.gains.empty());
    }

    void a_row_of_y_alone_has_no_date()
    {
        QString problem;
        const auto read = readLog(Title + "800,,812,,\n804,,808,,\n", &problem);
        QVERIFY2(read, qPrintable(problem));
        QCOMPARE(read->x.lights, 0);
        QCOMPARE(int(read->y.scans.size()), 2);
        QCOMPARE(read->y.scans[1], scanOf({201, 202}));
        QVERIFY(!read->date.isValid());
    }

    void a_row_of_x_alone_leaves_y_out()
    {
        QString problem;
        const auto read = readLog(Title + "261121,20:15:01:250,860,856,0,\n", &problem);
        QVERIFY2(read, qPrintable(problem));
        QCOMPARE(read->x.scans, std::vector<Scan>{scanOf({215, 214, 0})});
        QCOMPARE(read->y.lights, 0);
    }

    void single_commas_behind_y_are_taken_too()
    {
        QString problem;
        const auto read =
            readLog(Title + "261121,20:15:01:250,860,856,0,800,812,PASS\r\n", &problem);
        QVERIFY2(read, qPrintable(problem));
        QCOMPARE(read->y.scans, std::vector<Scan>{scanOf({200, 203})});
    }

    void lights_of_a_lost_page_are_unknown()
    {
        QString problem;
        const auto read = readLog(Title + "261121,20:15:01:250,860,856,0,,,812,,\n"
                                          "261121,20:15:02:250,864,,4,804,,,,\n",
                                  &problem);
        QVERIFY2(read, qPrintable(problem));
        QVERIFY(std::isnan(read->y.scans[0][0]));
        QCOMPARE(read->y.scans[0][1], 203.0F);
        QVERIFY(std::isnan(read->x.scans[1][1]));
        QCOMPARE(read->x.scans[1][2], 1.0F);
        QVERIFY(std::isnan(read->y.scans[1][1]));
    }

    void of_a_long_log_the_newest_scans_are_kept()
    {
        QByteArray text("Date,Time,X000,NG/PASS\n");
        for (int i = 0; i < 3 * MaxScans; ++i)
            text += "261121,20:15:01:250," + QByteArray::number(4 * (i % 250)) + ",\n";
        QString problem;
        const auto read = readLog(text, &problem);
        QVERIFY2(read, qPrintable(problem));
        QCOMPARE(int(read->x.scans.size()), MaxScans);
        QCOMPARE(read->x.scans.back()[0], float((3 * MaxScans - 1) % 250));
    }

    void a_log_that_is_none_is_refused_with_line_and_reason_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *name, const QByteArray &text, const QString &reason) {
            QTest::newRow(name) << text << reason;
        };
        const QString noTitle =
            u"log.csv: line 1: not the title of a signal test's log: Date,Time,X000,..."_s;
        row("empty", {}, u"log.csv: it is empty"_s);
        row("something else", "name,price\nlamp,3\n", noTitle);
        row("lights out of order", "Date,Time,X000,X002,NG/PASS\n", noTitle);
        row("no lights", "Date,Time,NG/PASS\n", noTitle);
        row("no scan", Title, u"log.csv: it has no scan"_s);
        row("a word for a level", Title + "261121,20:15:01:250,860,dark,0,800,,812,,\n",
            u"log.csv: line 2: the level of light X 1 is no number from 0 to 1100"_s);
        row("more than there can be", Title + "261121,20:15:01:250,860,856,0,800,,1101,,\n",
            u"log.csv: line 2: the level of light Y 1 is no number from 0 to 1100"_s);
        row("a light that never came", Title + "261121,20:15:01:250,860,,0,800,,812,,\n",
            u"log.csv: light X 1 was never read"_s);
        row("a line without end", Title + QByteArray(100000, '1'),
            u"log.csv: line 2: too long for a line of a signal test's log"_s);
        QByteArray large("Date,Time,");
        for (int i = 0; i < 501; ++i)
            large += "X" + QByteArray::number(i).rightJustified(3, '0') + ",";
        row("larger than any frame", large + "NG/PASS\n",
            u"log.csv: line 1: no frame has more than 500 lights on X"_s);
    }
    void a_log_that_is_none_is_refused_with_line_and_reason()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, reason);
        QString problem;
        QVERIFY(!readLog(text, &problem));
        QCOMPARE(problem, reason);
    }

    void what_is_written_is_read_again()
    {
        Measurement written;
        written.unit = {u"1234-1605"_s, u"Entrance"_s};
        written.date = QDateTime(QDate(2026, 11, 21), QTime(20, 15, 2, 250), QTimeZone::utc());
        written.x = {.lights = 3,
                     .scans = {scanOf({215, 214.25F, 0}), scanOf({216, 213, std::nanf("")})},
                     .gains = {48, 50.5F, 255},
                     .offsets = {0, -5, 12},
                     .off = {false, false, true},
                     .pitch = 5.25};
        written.y.lights = 1;
        written.y.scans = {scanOf({200})};
        QString problem;
        const auto read = ScanFile::fromJson(QJsonDocument(ScanFile::toJson(written)).toJson(),
                                             u"m.json"_s, &problem);
        QVERIFY2(read, qPrintable(problem));
        QVERIFY(std::isnan(read->x.scans[1][2]));
        Measurement same = *read;
        same.x.scans[1][2] = 7;
        written.x.scans[1][2] = 7;
        QCOMPARE(same, written);
        written.date = QDateTime(QDate(2026, 11, 21), QTime(20, 15, 2), QTimeZone::utc());
        QCOMPARE(ScanFile::toJson(written)[u"date"_s].toString(), u"2026-11-21T20:15:02Z"_s);
    }

    void json_written_by_hand_is_read()
    {
        QString problem;
        const auto read = ScanFile::fromJson(R"({
            "format": "quorvel-lights", "version": 1,
            "axes": {"y": {"lights": 2, "scans": [[200, 203], [201, null]], "off": [1]}},
            "whatever": "else"})",
                                             u"m.json"_s, &problem);
        QVERIFY2(read, qPrintable(problem));
        QCOMPARE(read->x.lights, 0);
        QCOMPARE(read->y.scans[0], scanOf({200, 203}));
        QCOMPARE(read->y.off, (std::vector{false, true}));
    }

    void json_that_is_damaged_is_refused_with_a_reason_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *name, const QByteArray &text, const QString &reason) {
            QTest::newRow(name) << text << reason;
        };
        const auto axes = [](const QByteArray &inside) {
            return QByteArray(R"({"format": "quorvel-lights", "version": 1, "axes": )") + inside +
                   "}";
        };
        row("cut off", R"({"format": )", u"m.json: damaged, at byte "_s);
        row("another format", R"({"format": "x", "version": 1})",
            u"m.json: no measurement of lights: \"format\" has to be \"quorvel-lights\""_s);
        row("a later version", R"({"format": "quorvel-lights", "version": 7})",
            u"m.json: \"version\" has to be 1"_s);
        row("no axis", axes("{}"), u"m.json: it has neither axis"_s);
        row("too many lights", axes(R"({"y": {"lights": 351, "scans": [[1]]}})"),
            u"m.json: \"lights\" of y has to be a whole number from 1 to 350"_s);
        row("no scans", axes(R"({"x": {"lights": 2}})"), u"m.json: x has no scans"_s);
        row("a short scan", axes(R"({"x": {"lights": 2, "scans": [[1]]}})"),
            u"m.json: \"scans\" of x has 1 numbers where there are 2 lights"_s);
        row("a word", axes(R"({"x": {"lights": 1, "scans": [["a"]]}})"),
            u"m.json: \"scans\" of x has to be numbers from 0 to 275"_s);
        row("below nothing", axes(R"({"x": {"lights": 1, "scans": [[-1]]}})"),
            u"m.json: \"scans\" of x has to be numbers from 0 to 275"_s);
        row("off where no light is", axes(R"({"x": {"lights": 1, "scans": [[1]], "off": [1]}})"),
            u"m.json: \"off\" of x names a light that is not there"_s);
        row("never read", axes(R"({"x": {"lights": 1, "scans": [[null]]}})"),
            u"m.json: light X 0 was never read"_s);
        row("a date that is none",
            R"({"format": "quorvel-lights", "version": 1, "date": "yesterday"})",
            u"m.json: \"date\" is no date such as 2026-01-31T12:00:00Z"_s);
    }
    void json_that_is_damaged_is_refused_with_a_reason()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, reason);
        QString problem;
        QVERIFY(!ScanFile::fromJson(text, u"m.json"_s, &problem));
        QVERIFY2(problem.startsWith(reason), qPrintable(problem));
    }

    void a_file_is_known_by_its_first_bytes()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"scans"_s);
        const auto write = [&path](const QByteArray &text) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
        };
        QString problem;
        QVERIFY(write(Title + "800,,812,,\n"));
        QVERIFY2(ScanFile::load(path, &problem), qPrintable(problem));
        QVERIFY(write(" {\"format\": \"quorvel-lights\", \"version\": 1, \"axes\": {\"x\": "
                      "{\"lights\": 1, \"scans\": [[3]]}}}"));
        QVERIFY2(ScanFile::load(path, &problem), qPrintable(problem));
    }

    void a_file_that_is_too_large_is_not_read()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(u"large"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("{") == 1 && file.resize(LargestJson + 1));
        file.close();
        QString problem;
        QVERIFY(!ScanFile::load(file.fileName(), &problem));
        QCOMPARE(problem, file.fileName() + u" is larger than 16 MiB"_s);
    }

    // Opening such a thing would wait for somebody.
    void what_is_no_file_is_not_opened()
    {
        QTemporaryDir folder;
        const QString pipe = folder.filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QString problem;
        QVERIFY(!ScanFile::load(pipe, &problem));
        QCOMPARE(problem, pipe + u" is no file"_s);
        QVERIFY(!ScanFile::load(folder.filePath(u"none"_s), &problem));
        QCOMPARE(problem, folder.filePath(u"none"_s) + u" does not exist"_s);
    }
};

QTEST_GUILESS_MAIN(TestScanFile)
#include "tst_scanfile.moc"
