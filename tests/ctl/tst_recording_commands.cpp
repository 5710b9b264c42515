// SPDX-License-Identifier: GPL-3.0-or-later

// Recordings on the command line: made, and told in words.

#include "run.h"

#include "tests/support/records.h"
#include "tests/support/smalldisk.h"
#include "tests/support/typedrecording.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using capture::Kind;
using capture::Record;

namespace {

qsizetype count(const QString &path, Kind kind)
{
    qsizetype found = 0;
    for (const Record &record : recordsIn(path))
        found += record.kind == kind ? 1 : 0;
    return found;
}

} // namespace

class TestRecordingCommands : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    QString path;

    // Nobody may type spaces into the arguments of these tests.
    QString file(const QByteArray &content) const
    {
        QFile made(place->filePath(u"typed.pcap"_s));
        if (!made.open(QIODevice::WriteOnly) || made.write(content) != content.size())
            qFatal("the file cannot be written");
        return made.fileName();
    }
    // At 5 s and so many microseconds, given in four bytes.
    static QByteArray packet(const QByteArray &time, const QByteArray &header,
                             const QByteArray &frame = {})
    {
        return typedPacket("05000000" + time,
                           filledUp("5176 01" + header, 12) +
                               (frame.isEmpty() ? QByteArray() : filledUp(frame, 64)));
    }

private slots:
    void init()
    {
        hidver = {};
        place = std::make_unique<QTemporaryDir>();
        path = place->filePath(u"traffic.pcap"_s);
    }

    void what_a_frame_says_is_recorded_through_an_unplug_until_the_time_is_over()
    {
        const auto frame = quickFrame();
        const Outcome outcome =
            runCtl(u"record --for 1.6 --json "_s + path, frame, [&](ctl::Session &session) {
                QTimer::singleShot(300ms, &session, [&] { frame->unplug(); });
                QTimer::singleShot(700ms, &session, [&] { frame->plug(); });
            });
        QCOMPARE(outcome.err, "");
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.json()[u"ok"_s], QJsonValue(true));
        QCOMPARE(outcome.json()[u"file"_s], QJsonValue(path));
        QCOMPARE(outcome.json()[u"packets"_s].toInt(), recordsIn(path).size());
        QCOMPARE(count(path, Kind::LinkBegan), 2);
        QCOMPARE(count(path, Kind::LinkEnded), 2);
        QVERIFY(count(path, Kind::FromFrame) > 10);
        QCOMPARE(recordsIn(path).last().end, capture::End::Closed);
    }

    void a_recording_that_misses_packets_is_code_7_and_says_how_many()
    {
        constexpr qint64 Room = 2000;
        Outcome outcome;
        {
            const SmallDisk full(Room);
            outcome = runCtl(u"record --for 0.6 "_s + path, quickFrame());
        }
        QCOMPARE(outcome.code, 7);
        QCOMPARE(outcome.out, "");
        const QByteArrayList told = outcome.err.trimmed().split('\n');
        QCOMPARE(told.size(), 2); // as soon as one is missing, and at the end
        QVERIFY2(told.first().startsWith("quorvelctl: ") && told.first().contains("File too large"),
                 told.first());
        const auto end = QRegularExpression(
                             u"^quorvelctl: (\\d+) packets are missing in the recording %1, which "
                             "has (\\d+)\\.$"_s.arg(QRegularExpression::escape(path)))
                             .match(QString::fromUtf8(told.last()));
        QVERIFY2(end.hasMatch(), told.last());
        QVERIFY(end.captured(1).toInt() > 0);
        QVERIFY(end.captured(2).toInt() > 2);
        QVERIFY(QFile(path).size() <= Room);
    }

    void a_frame_that_comes_back_and_may_not_be_opened_ends_a_recording()
    {
        const auto frame = quickFrame();
        QElapsedTimer time;
        time.start();
        const Outcome outcome =
            runCtl(u"record --for 20 "_s + path, frame, [&](ctl::Session &session) {
                QTimer::singleShot(200ms, &session, [&] {
                    frame->unplug();
                    frame->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
                });
                QTimer::singleShot(400ms, &session, [&] { frame->plug(); });
            });
        QCOMPARE(outcome.code, 4);
        QVERIFY2(outcome.err.contains("/dev/usb/hiddev3"), outcome.err);
        QVERIFY(time.elapsed() < 10000);
        QCOMPARE(count(path, Kind::LinkEnded), 1);
    }

    void a_signal_is_the_usual_end_of_a_recording()
    {
        const Outcome outcome =
            runCtl(u"record "_s + path, quickFrame(), [](ctl::Session &session) {
                QTimer::singleShot(150ms, &session, [&session] { session.interrupt(SIGTERM); });
            });
        QCOMPARE(outcome.err, "");
        QCOMPARE(outcome.code, 0);
        QCOMPARE(
            outcome.out,
            u"Packets recorded into %1: %2\n"_s.arg(path).arg(recordsIn(path).size()).toUtf8());
    }

    void every_command_can_be_recorded_both_ways()
    {
        const Outcome outcome = runCtl(u"rotation set 90 --record "_s + path, quickFrame());
        QCOMPARE(outcome.code, 0);
        bool isSet = false;
        bool isTold = false;
        for (const Record &record : recordsIn(path)) {
            const Frame &frame = record.frame;
            isSet = isSet || (record.kind == Kind::ToFrame && frame[1] == 0xA7 && frame[2] == 0 &&
                              frame[5] == 1);
            isTold = isTold || (record.kind == Kind::FromFrame && frame[1] == 0xA7 &&
                                frame[2] == 0x82 && frame[5] == 1);
        }
        QVERIFY(isSet && isTold);
        QCOMPARE(count(path, Kind::LinkBegan), 1);
        QCOMPARE(count(path, Kind::LinkEnded), 1);
    }

    void a_file_that_cannot_be_a_recording_is_code_7_and_stays()
    {
        const QString diary = file("dear diary, today I have been quite busy again\n");
        for (const QString &arguments : {u"record "_s + diary, u"status --record "_s + diary}) {
            const auto frame = quickFrame();
            const Outcome outcome = runCtl(arguments, frame);
            QCOMPARE(outcome.code, 7);
            QCOMPARE(outcome.err, "quorvelctl: " + diary.toUtf8() +
                                      ": exists and is no recording: choose another name\n");
            QCOMPARE(frame->transfers(), 0U);
            QCOMPARE(QFile(diary).size(), 47);
        }
    }

    void without_a_frame_there_is_nothing_to_record()
    {
        QCOMPARE(runCtl(u"record "_s + path, quickFrame({}, {}, false)).code, 3);
        QCOMPARE(runCtl(u"record"_s, quickFrame()).code, 2);
    }

    void a_recording_is_told_in_words_both_ways()
    {
        const QString recording =
            file(RecordingHeader + packet("00000000", "02 01") +
                 packet("E8030000", "00 01", "00 A7 00 02 00 01") +
                 packet("D0070000", "00 01 01", "00 A7 02") +
                 packet("B80B0000", "00 00 02", "00 A5 00") +
                 packet("A00F0000", "01 01", "FC A7 82 02 00 01") +
                 packet("88130000", "01 01", "FC A7 82 02 00 01") +
                 packet("70170000", "01 01 02 0000 03000000", "FB A7 82 02 00 01") +
                 packet("581B0000", "03 01") + packet("401F0000", "03 01 02"));
        const Outcome outcome = runCtl(u"watch --from "_s + recording);
        QCOMPARE(outcome.err, "");
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out,
                 "     0.000  A touch frame is linked.\n"
                 "     0.001  host > frame  rotation: set 90 degrees  [A7 00 02 00 01]\n"
                 "     0.002  host > frame  rotation: read  [A7 02 00]\n"
                 "     0.002                the link did not take it\n"
                 "     0.003  host > frame  scan: read light counts  [A5 00 00]\n"
                 "     0.003                it was never sent\n"
                 "     0.004  frame > host  rotation: now 90 degrees  [A7 82 02 00 01]\n"
                 "     0.006  Packets missing here: 3\n"
                 "     0.006  frame > host  the same again, 1 x\n"
                 "     0.006  frame > host  rotation: now 90 degrees  [A7 82 02 00 01]\n"
                 "     0.006                it was dropped for its report id\n"
                 "     0.007  The touch frame is gone.\n"
                 "     0.008  The link to the touch frame was ended.\n");
    }

    void a_recording_is_told_to_programs()
    {
        const QString recording = file(RecordingHeader + packet("00000000", "02 02") +
                                       packet("E8030000", "00 02 01 0000 04", "00 A7 02") +
                                       packet("D0070000", "03 02 01"));
        const Outcome outcome = runCtl(u"watch --json --from "_s + recording);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.lines().size(), 3);
        const QJsonObject linked = QJsonDocument::fromJson(outcome.lines()[0]).object();
        QCOMPARE(linked, QJsonObject({{u"command"_s, u"watch"_s},
                                      {u"event"_s, u"linked"_s},
                                      {u"link"_s, u"serial"_s},
                                      {u"port"_s, u""_s},
                                      {u"time_ms"_s, 0}}));
        const QJsonObject asked = QJsonDocument::fromJson(outcome.lines()[1]).object();
        QCOMPARE(asked, QJsonObject({{u"command"_s, u"watch"_s},
                                     {u"event"_s, u"command"_s},
                                     {u"link"_s, u"serial"_s},
                                     {u"time_ms"_s, 1},
                                     {u"words"_s, u"rotation: read"_s},
                                     {u"bytes"_s, u"A7 02 00"_s},
                                     {u"missing"_s, 4},
                                     {u"result"_s, u"failed"_s}}));
        const QJsonObject ended = QJsonDocument::fromJson(outcome.lines()[2]).object();
        QCOMPARE(ended, QJsonObject({{u"command"_s, u"watch"_s},
                                     {u"event"_s, u"gone"_s},
                                     {u"link"_s, u"serial"_s},
                                     {u"time_ms"_s, 2},
                                     {u"end"_s, u"replaced"_s}}));
    }

    void what_is_no_recording_is_wrong_usage()
    {
        const QString diary = file("dear diary, today I have been quite busy again\n");
        const Outcome outcome = runCtl(u"watch --from "_s + diary);
        QCOMPARE(outcome.code, 2);
        QVERIFY2(outcome.err.startsWith("quorvelctl: " + diary.toUtf8() + ": is no capture file: "),
                 outcome.err.constData());
        QCOMPARE(outcome.out, "");
        // Up to where it is one it is told.
        const QString half =
            file(RecordingHeader + packet("00000000", "02 01") + packet("00000000", "09 01"));
        const Outcome partly = runCtl(u"watch --from "_s + half);
        QCOMPARE(partly.code, 2);
        QCOMPARE(partly.out, "     0.000  A touch frame is linked.\n");
        QVERIFY(partly.err.contains(": packet 2 tells of no traffic with a touch frame"));
    }
};

QTEST_GUILESS_MAIN(TestRecordingCommands)
#include "tst_recording_commands.moc"
