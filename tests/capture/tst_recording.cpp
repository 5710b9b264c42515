// SPDX-License-Identifier: GPL-3.0-or-later

#include "capture/reader.h"
#include "capture/writer.h"
#include "tests/support/files.h"
#include "tests/support/smalldisk.h"
#include "tests/support/typedrecording.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using capture::Kind;
using capture::Over;
using capture::Reader;
using capture::Record;
using capture::Result;
using capture::Writer;

namespace {

// A packet of that many bytes at 5 s and 7 us.
QByteArray packetHeader(quint8 size)
{
    return QByteArray::fromHex("05000000 07000000") + char(size) + QByteArray(3, '\0') +
           char(size) + QByteArray(3, '\0');
}

Frame frameOf(const QByteArray &hex)
{
    Frame frame{};
    const QByteArray bytes = QByteArray::fromHex(hex);
    std::copy(bytes.begin(), bytes.end(), frame.begin());
    return frame;
}

Record rotationQuery()
{
    Record record;
    record.time = 5s + 7us;
    record.over = Over::Usb;
    record.frame = frameOf("00 A7 02");
    return record;
}

// Packets as they stand in a file: header and frame.
const QByteArray RotationQuery =
    packetHeader(76) + filledUp("5176 01 00 01 00 0000 00000000 00A702", 76);

} // namespace

class TestRecording : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    QString path;

    QByteArray content() const { return contentOf(path); }
    void fill(const QByteArray &bytes) const { writeFile(path, bytes); }
    std::unique_ptr<Writer> writer() const
    {
        QString problem;
        auto made = Writer::create(path, &problem);
        if (!made)
            qFatal("%s", qPrintable(problem));
        return made;
    }

private slots:
    void init()
    {
        place = std::make_unique<QTemporaryDir>();
        path = place->filePath(u"traffic.pcap"_s);
    }

    // Writing

    void each_record_stands_in_the_file_as_soon_as_it_is_added_data()
    {
        QTest::addColumn<Record>("record");
        QTest::addColumn<QByteArray>("packet");

        QTest::newRow("sent") << rotationQuery() << RotationQuery;
        Record answer = rotationQuery();
        answer.kind = Kind::FromFrame;
        answer.over = Over::Serial;
        answer.frame = frameOf("FC A7 82 02 00 03");
        QTest::newRow("received") << answer
                                  << packetHeader(76) +
                                         filledUp("5176 01 01 02 00 0000 00000000 FCA782020003",
                                                  76);
        Record failed = rotationQuery();
        failed.result = Result::Failed;
        QTest::newRow("failed") << failed
                                << packetHeader(76) +
                                       filledUp("5176 01 00 01 01 0000 00000000 00A702", 76);
        Record dropped = rotationQuery();
        dropped.over = Over::None;
        dropped.result = Result::Dropped;
        QTest::newRow("dropped") << dropped
                                 << packetHeader(76) +
                                        filledUp("5176 01 00 00 02 0000 00000000 00A702", 76);
        Record began = rotationQuery();
        began.kind = Kind::LinkBegan;
        began.frame = {};
        QTest::newRow("link began") << began << packetHeader(12) + filledUp("5176 01 02 01", 12);
        Record ended = began;
        ended.kind = Kind::LinkEnded;
        ended.end = capture::End::Closed;
        QTest::newRow("link ended") << ended << packetHeader(12) + filledUp("5176 01 03 01 02", 12);
    }
    void each_record_stands_in_the_file_as_soon_as_it_is_added()
    {
        QFETCH(const Record, record);
        QFETCH(const QByteArray, packet);
        const auto recording = writer();
        QCOMPARE(content(), RecordingHeader);
        QVERIFY(recording->add(record));
        QCOMPARE(content().toHex(' '), (RecordingHeader + packet).toHex(' '));
        QVERIFY(recording->add(record));
        QCOMPARE(content(), RecordingHeader + packet + packet);
        QCOMPARE(recording->written(), 2U);

        QString problem;
        const auto reader = Reader::open(path, &problem);
        QVERIFY2(reader, qPrintable(problem));
        QCOMPARE(reader->next(), record);
        QCOMPARE(reader->next(), record);
        QVERIFY(!reader->next());
        QCOMPARE(reader->problem(), QString());
        QVERIFY(!reader->isCutShort());
    }

    void a_full_disk_costs_whole_records_which_the_next_one_counts()
    {
        const auto recording = writer();
        QVERIFY(recording->add(rotationQuery()));
        {
            // Half of the second packet would fit.
            const SmallDisk disk(RecordingHeader.size() + 92 + 46);
            QVERIFY(!recording->add(rotationQuery()));
            QVERIFY(!recording->add(rotationQuery()));
            QCOMPARE(recording->problem(), u"File too large"_s);
            QCOMPARE(content(), RecordingHeader + RotationQuery);
        }
        QCOMPARE(recording->lost(), 2U);
        QVERIFY(recording->add(rotationQuery()));
        QVERIFY(recording->add(rotationQuery()));
        QCOMPARE(recording->problem(), QString());
        QCOMPARE(recording->written(), 3U);
        QCOMPARE(recording->lost(), 2U);
        const QByteArray afterGap =
            packetHeader(76) + filledUp("5176 01 00 01 00 0000 02000000 00A702", 76);
        QCOMPARE(content(), RecordingHeader + RotationQuery + afterGap + RotationQuery);
    }

    void a_disk_that_has_no_room_from_the_start_leaves_no_file()
    {
        const SmallDisk disk(10);
        QString problem;
        QVERIFY(!Writer::create(path, &problem));
        QCOMPARE(problem, path + u": cannot be written: File too large"_s);
        QVERIFY(!QFile::exists(path));
    }

    void a_recording_is_replaced_and_nothing_else_is()
    {
        fill(RecordingHeader + RotationQuery + RotationQuery);
        QVERIFY(writer()->add(rotationQuery()));
        QCOMPARE(content(), RecordingHeader + RotationQuery);
        // One that has nothing yet, and one whose program was killed.
        fill({});
        QVERIFY(writer());
        fill(RecordingHeader + RotationQuery.chopped(3));
        QVERIFY(writer());
        QCOMPARE(content(), RecordingHeader);
    }

    void what_is_no_recording_stays_as_it_is_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QByteArray ethernet = RecordingHeader;
        ethernet[20] = 1;
        QTest::newRow("text") << QByteArray("dear diary, today I have been quite busy again\n");
        QTest::newRow("one byte") << QByteArray("x");
        QTest::newRow("a capture of something else") << ethernet;
        QTest::newRow("another use of the link type")
            << RecordingHeader + packetHeader(12) + QByteArray("another use.");
    }
    void what_is_no_recording_stays_as_it_is()
    {
        QFETCH(const QByteArray, bytes);
        fill(bytes);
        QString problem;
        QVERIFY(!Writer::create(path, &problem));
        QCOMPARE(problem, path + u": exists and is no recording: choose another name"_s);
        QCOMPARE(content(), bytes);
    }

    void a_symbolic_link_is_not_followed()
    {
        const QString target = place->filePath(u"target"_s);
        QVERIFY(QFile::link(target, path));
        QString problem;
        QVERIFY(!Writer::create(path, &problem));
        QCOMPARE(problem, path + u": is a symbolic link, which a recording does not follow: name "
                                 "the file itself"_s);
        QVERIFY(!QFile::exists(target));
    }

    void a_pipe_a_folder_and_a_place_that_is_not_there_are_refused_at_once()
    {
        QString problem;
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(!Writer::create(path, &problem));
        QCOMPARE(problem, path + u": is no file: choose another name"_s);
        QVERIFY(!Reader::open(path, &problem));
        QCOMPARE(problem, path + u": is no file, and so no recording"_s);
        QVERIFY(!Writer::create(place->path(), &problem));
        QCOMPARE(problem, place->path() + u": cannot be written: Is a directory"_s);
        QVERIFY(!Writer::create(u"/nowhere/at/all"_s, &problem));
        QCOMPARE(problem, u"/nowhere/at/all: cannot be written: No such file or directory"_s);
    }

    void two_do_not_write_one_recording()
    {
        const auto first = writer();
        QVERIFY(first->add(rotationQuery()));
        QString problem;
        QVERIFY(!Writer::create(path, &problem));
        QCOMPARE(problem, path + u": another program is recording into it: choose another name"_s);
        QCOMPARE(content(), RecordingHeader + RotationQuery);
    }

    // Reading

    void what_was_cut_off_in_a_packet_is_read_up_to_there()
    {
        for (qsizetype cut = 1; cut < RotationQuery.size(); ++cut) {
            fill(RecordingHeader + RotationQuery + RotationQuery.chopped(cut));
            QString problem;
            const auto reader = Reader::open(path, &problem);
            QVERIFY(reader);
            QCOMPARE(reader->next(), rotationQuery());
            QVERIFY(!reader->next());
            QVERIFY(reader->isCutShort());
            QCOMPARE(reader->problem(), QString());
        }
    }

    void a_recording_of_a_machine_that_counts_the_other_way_round_is_read()
    {
        fill(QByteArray::fromHex("A1B2C3D4 0002 0004 00000000 00000000 0000004C 00000093"
                                 "00000005 00000007 0000004C 0000004C") +
             RotationQuery.sliced(16));
        QString problem;
        const auto reader = Reader::open(path, &problem);
        QVERIFY2(reader, qPrintable(problem));
        QCOMPARE(reader->next(), rotationQuery());
    }

    void what_is_no_capture_file_of_ours_is_refused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QByteArray ethernet = RecordingHeader;
        ethernet[20] = 1;
        QTest::newRow("nothing") << QByteArray() << u"is no capture file"_s;
        QTest::newRow("text") << QByteArray(200, 'x') << u"is no capture file"_s;
        QTest::newRow("half a header") << RecordingHeader.first(12) << u"is no capture file"_s;
        QTest::newRow("ethernet")
            << ethernet
            << u"is a capture file of something else: its link type is 1, that of a recording 147"_s;
    }
    void what_is_no_capture_file_of_ours_is_refused()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, reason);
        fill(bytes);
        QString problem;
        QVERIFY(!Reader::open(path, &problem));
        QVERIFY2(problem.startsWith(path + u": "_s + reason), qPrintable(problem));
    }

    void a_packet_that_is_no_record_ends_the_reading_with_its_number_data()
    {
        QTest::addColumn<QByteArray>("packet");
        const auto row = [](const char *name, const QByteArray &hex, int size) {
            QTest::newRow(name) << packetHeader(quint8(size)) + filledUp(hex, size);
        };
        row("another use of the link type", "5177 01 00 01", 76);
        row("a newer format", "5176 02 00 01", 76);
        row("no such kind", "5176 01 04 01", 12);
        row("no such link", "5176 01 00 03", 76);
        row("no such result", "5176 01 00 01 03", 76);
        row("a result of a beginning", "5176 01 02 01 01", 12);
        row("bytes of a later format", "5176 01 00 01 00 0001", 76);
        row("half a frame", "5176 01 00 01", 44);
        row("more than a frame", "5176 01 00 01", 77);
        row("less than a header", "5176 01", 4);
        row("nothing", "", 0);
        QByteArray cut = RotationQuery;
        cut[12] = 77; // it was longer when it was captured
        QTest::newRow("a packet that was cut") << cut;
    }
    void a_packet_that_is_no_record_ends_the_reading_with_its_number()
    {
        QFETCH(const QByteArray, packet);
        fill(RecordingHeader + RotationQuery + packet + RotationQuery);
        QString problem;
        const auto reader = Reader::open(path, &problem);
        QVERIFY2(reader, qPrintable(problem));
        QVERIFY(reader->next());
        QVERIFY(!reader->next());
        QVERIFY(!reader->next());
        QCOMPARE(reader->problem(), path + u": packet 2 tells of no traffic with a touch frame, "
                                           "or in a newer format"_s);
        QVERIFY(!reader->isCutShort());
    }

    void a_packet_that_claims_a_gigabyte_is_no_record()
    {
        fill(RecordingHeader + RotationQuery +
             QByteArray::fromHex("05000000 07000000 00000040 00000040") + QByteArray(500, '\0'));
        QString problem;
        const auto reader = Reader::open(path, &problem);
        QVERIFY(reader->next());
        QVERIFY(!reader->next());
        QVERIFY2(reader->problem().startsWith(path + u": behind packet 1: "_s),
                 qPrintable(reader->problem()));
    }

    void a_file_larger_than_any_recording_is_refused()
    {
        fill(RecordingHeader);
        QVERIFY(QFile::resize(path, 256LL * 1024 * 1024 + 1));
        QString problem;
        QVERIFY(!Reader::open(path, &problem));
        QCOMPARE(problem, path + u": is larger than 256 MiB, which no recording is"_s);
    }
};

QTEST_GUILESS_MAIN(TestRecording)
#include "tst_recording.moc"
