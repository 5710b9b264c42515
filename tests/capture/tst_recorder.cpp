// SPDX-License-Identifier: GPL-3.0-or-later

// The link, a simulated frame, and what a recording tells of both.

#include "capture/recorder.h"
#include "sim/sim_adapter.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/farend.h"
#include "tests/support/records.h"
#include "tests/support/smalldisk.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using capture::Kind;
using capture::Over;
using capture::Record;
using capture::Recorder;
using capture::Result;

namespace {

void send(Link &link, const QByteArray &hex)
{
    Frame frame{};
    const QByteArray bytes = QByteArray::fromHex(hex);
    std::copy(bytes.begin(), bytes.end(), frame.begin());
    link.send(frame.data());
}

// "> usb done A7 02" and the like; of a frame its bytes 1 to 5 without zeros at the end.
QString words(const Record &record)
{
    const QString over = record.over == Over::Usb      ? u"usb"_s
                         : record.over == Over::Serial ? u"serial"_s
                                                       : u"none"_s;
    if (record.kind == Kind::LinkBegan)
        return u"began "_s + over;
    if (record.kind == Kind::LinkEnded)
        return u"ended %1 %2"_s.arg(over).arg(int(record.end));
    const QString result = record.result == Result::Done     ? u"done"_s
                           : record.result == Result::Failed ? u"failed"_s
                                                             : u"dropped"_s;
    QByteArray bytes(reinterpret_cast<const char *>(record.frame.data()) + 1, 5);
    while (bytes.endsWith('\0'))
        bytes.chop(1);
    return u"%1 %2 %3 %4"_s.arg(record.kind == Kind::ToFrame ? u">"_s : u"<"_s)
        .arg(over, result, QString::fromLatin1(bytes.toHex(' ').toUpper()))
        .trimmed();
}

// Without reports that come again and such that say nothing yet.
QStringList told(const QString &path)
{
    QStringList lines;
    for (const Record &record : recordsIn(path)) {
        const QString line = words(record);
        if (line != u"< usb done"_s && !lines.contains(line))
            lines += line;
    }
    return lines;
}

} // namespace

class TestRecorder : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    QString path;

private slots:
    void init()
    {
        place = std::make_unique<QTemporaryDir>();
        path = place->filePath(u"traffic.pcap"_s);
    }

    void a_link_by_usb_is_recorded_from_its_beginning_to_its_end()
    {
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(frame);
        Recorder recorder(link);
        QCOMPARE(recorder.start(path), QString());
        link.start();
        send(link, "00 A7 02");
        QTRY_VERIFY(told(path).contains(u"< usb done A7 82 02"_s));
        // It leaves behind the last that is heard: the link ends in good order.
        send(link, "00 A7 00 02 00 01");
        link.end();
        QCOMPARE(told(path), QStringList({u"began usb"_s, u"> usb done A7 02"_s,
                                          u"< usb done A7 81 02"_s, u"< usb done A7 82 02"_s,
                                          u"> usb done A7 00 02 00 01"_s, u"ended usb 2"_s}));
        QCOMPARE(qsizetype(recorder.written()), recordsIn(path).size());
        QCOMPARE(recorder.lost(), 0U);
    }

    void every_reading_of_a_report_is_a_record()
    {
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(frame);
        Recorder recorder(link);
        QSignalSpy received(&link, &Link::received);
        QCOMPARE(recorder.start(path), QString());
        link.start();
        QTRY_VERIFY(received.size() >= 5);
        link.end();
        qsizetype reports = 0;
        for (const Record &record : recordsIn(path))
            reports += record.kind == Kind::FromFrame ? 1 : 0;
        QCOMPARE(reports, received.size());
    }

    void records_bear_the_time_of_the_wall_and_never_run_backwards()
    {
        const auto before = std::chrono::system_clock::now().time_since_epoch();
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(frame);
        Recorder recorder(link);
        QCOMPARE(recorder.start(path), QString());
        link.start();
        QTRY_VERIFY(recorder.written() >= 4);
        link.end();
        const auto after = std::chrono::system_clock::now().time_since_epoch();
        auto last = std::chrono::duration_cast<std::chrono::microseconds>(before);
        for (const Record &record : recordsIn(path)) {
            QVERIFY(record.time >= last);
            last = record.time;
        }
        QVERIFY(last <= after);
    }

    void what_does_not_leave_is_recorded_as_such()
    {
        const auto adapter = std::make_shared<FakeAdapter>();
        adapter->sendFails = true;
        Link link(adapter);
        Recorder recorder(link);
        QCOMPARE(recorder.start(path), QString());
        send(link, "00 A5 00"); // there is no link yet
        link.start();
        send(link, "00 A5 01");
        QTRY_VERIFY(told(path).contains(u"> usb failed A5 01"_s));
        adapter->sendFails = false;
        send(link, "00 A5 02"); // the cable is out before its 50 ms are over
        adapter->present = false;
        link.deviceRemoved();
        const QStringList lines = told(path);
        QVERIFY2(lines.contains(u"> none dropped A5"_s), qPrintable(lines.join(u'\n')));
        QVERIFY2(lines.contains(u"> usb dropped A5 02"_s), qPrintable(lines.join(u'\n')));
        QVERIFY2(lines.contains(u"ended usb 0"_s), qPrintable(lines.join(u'\n')));
    }

    void a_report_with_another_id_is_recorded_as_dropped()
    {
        const auto adapter = std::make_shared<FakeAdapter>();
        adapter->otherId = 0xFB;
        Link link(adapter);
        Recorder recorder(link);
        QCOMPARE(recorder.start(path), QString());
        link.start();
        QTRY_VERIFY(recorder.written() > 2);
        link.end();
        const Record record = recordsIn(path).at(1);
        QCOMPARE(record.kind, Kind::FromFrame);
        QCOMPARE(record.result, Result::Dropped);
        QCOMPARE(int(record.frame[0]), 0xFB);
    }

    void a_serial_line_is_recorded_with_the_announcement_of_its_rate()
    {
        const FarEnd line;
        const auto adapter = std::make_shared<FakeAdapter>();
        adapter->present = false;
        Link link(adapter);
        Recorder recorder(link);
        QCOMPARE(recorder.start(path), QString());
        PortSettings settings;
        settings.BaudRate = BAUD9600;
        QVERIFY(link.openSerial(line.node, settings));
        // The second leaves its bytes behind it in the receiver's buffer, and they are not its own.
        line.give(QByteArray::fromHex("5156 FC A7 81 02 00 03 0000"));
        line.give(QByteArray::fromHex("5156 FC A7 82 00 0000"));
        QTRY_COMPARE(recorder.written(), 6U);
        link.closeSerial();
        const QList<Record> records = recordsIn(path);
        QStringList lines;
        for (const Record &record : records)
            lines += words(record);
        QCOMPARE(lines,
                 QStringList({u"began serial"_s, u"> serial done B1 00 03 00 0C"_s,
                              u"> serial done B1 00 03 00 0C"_s, u"> serial done B1 00 03 00 0C"_s,
                              u"< serial done A7 81 02 00 03"_s, u"< serial done A7 82"_s,
                              u"ended serial 2"_s}));
        QCOMPARE(int(records[4].frame[0]), 0xFC);
    }

    void a_recording_that_begins_in_the_middle_tells_of_the_link_first()
    {
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(frame);
        link.start();
        Recorder recorder(link);
        QSignalSpy changes(&recorder, &Recorder::changed);
        QCOMPARE(recorder.start(path), QString());
        QVERIFY(recorder.isRecording());
        QCOMPARE(words(recordsIn(path).first()), u"began usb"_s);
        send(link, "00 A5 00");
        recorder.stop();
        QVERIFY(!recorder.isRecording());
        QCOMPARE(changes.size(), 2);
        const qsizetype size = recordsIn(path).size();
        QTest::qWait(200);
        QCOMPARE(recordsIn(path).size(), size);
        QCOMPARE(qsizetype(recorder.written()), size);
    }

    void one_recording_may_follow_one_link_after_the_other()
    {
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        Recorder recorder;
        QCOMPARE(recorder.start(path), QString());
        for (int i = 0; i < 2; ++i) {
            Link link(frame);
            recorder.follow(link);
            link.start();
            send(link, "00 A5 00");
            link.end();
        }
        QStringList lines;
        for (const Record &record : recordsIn(path)) {
            if (record.kind != Kind::FromFrame)
                lines += words(record);
        }
        QCOMPARE(lines, QStringList({u"began usb"_s, u"> usb done A5"_s, u"ended usb 2"_s,
                                     u"began usb"_s, u"> usb done A5"_s, u"ended usb 2"_s}));
    }

    void a_start_that_fails_leaves_the_recording_before_at_work()
    {
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(frame);
        Recorder recorder(link);
        QCOMPARE(recorder.start(path), QString());
        QCOMPARE(recorder.start(u"/nowhere/at/all"_s),
                 u"/nowhere/at/all: cannot be written: No such file or directory"_s);
        QCOMPARE(recorder.path(), path);
        link.start();
        QTRY_VERIFY(recorder.written() > 1);
        const QString other = place->filePath(u"other.pcap"_s);
        QCOMPARE(recorder.start(other), QString());
        QCOMPARE(recorder.path(), other);
        QCOMPARE(words(recordsIn(other).first()), u"began usb"_s);
    }

    void what_was_recorded_is_said_again_to_another_link()
    {
        sim::Profile profile;
        profile.rotation = 3;
        {
            Link link(std::make_shared<sim::SimAdapter>(profile));
            Recorder recorder(link);
            QCOMPARE(recorder.start(path), QString());
            link.start();
            send(link, "00 A7 02");
            QTRY_VERIFY(told(path).contains(u"< usb done A7 82 02 00 03"_s));
            link.end();
        }
        const auto start = std::chrono::steady_clock::now();
        QString problem;
        auto replay = sim::Replay::load(
            path,
            [start] {
                return std::chrono::duration_cast<std::chrono::milliseconds>(
                    std::chrono::steady_clock::now() - start);
            },
            &problem);
        QVERIFY2(replay, qPrintable(problem));
        // Its own firmware would say something else.
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        frame->replay(*std::move(replay));
        Link link(frame);
        Recorder recorder(link);
        const QString again = place->filePath(u"again.pcap"_s);
        QCOMPARE(recorder.start(again), QString());
        link.start();
        send(link, "00 A7 02");
        QTRY_VERIFY(told(again).contains(u"< usb done A7 82 02 00 03"_s));
        link.end();
        QCOMPARE(told(again), told(path));
    }

    void a_full_disk_disturbs_no_frame_and_is_told_of_once()
    {
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(frame);
        Recorder recorder(link);
        QSignalSpy losing(&recorder, &Recorder::losing);
        QSignalSpy received(&link, &Link::received);
        QCOMPARE(recorder.start(path), QString());
        link.start();
        QTRY_VERIFY(recorder.written() >= 2);
        std::optional<SmallDisk> disk(100);
        const auto frames = received.size();
        QTRY_VERIFY(recorder.lost() >= 4);
        QVERIFY(received.size() - frames >= 3);
        QCOMPARE(recorder.problem(), u"File too large"_s);
        const auto lost = recorder.lost();
        disk.reset();
        QTRY_VERIFY(recorder.problem().isEmpty());
        link.end();
        QCOMPARE(losing.size(), 1);
        QCOMPARE(losing.first().first().toString(),
                 u"The recording %1 cannot be written: File too large. The link goes on, and what "
                 "is missing in the recording is counted."_s.arg(path));
        quint64 missing = 0;
        for (const Record &record : recordsIn(path))
            missing += record.lost;
        QCOMPARE(missing, recorder.lost());
        QVERIFY(recorder.lost() >= lost);
    }
};

QTEST_GUILESS_MAIN(TestRecorder)
#include "tst_recorder.moc"
