// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/uartreceiver.h"

#include <QByteArrayList>
#include <QTest>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

// A line whose bytes have all arrived, and that may give fewer of them than it says it has.
struct Line
{
    qint64 size() const { return bytes.size(); }
    qint64 readData(char *data, qint64 maxSize)
    {
        const qint64 count = std::min({maxSize, qint64(bytes.size()), shortest});
        if (count > 0)
            memcpy(data, bytes.constData(), size_t(count));
        bytes.remove(0, qsizetype(std::max<qint64>(count, 0)));
        return count;
    }

    QByteArray bytes;
    qint64 shortest = 1000; // of which no read gives more; -1: reading fails
};

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray travelled(UartReceiver &receiver)
{
    return {reinterpret_cast<const char *>(receiver.frame()), receiver.frameLength()};
}

// What comes of the bytes that wait, in hexadecimal digits.
QByteArrayList framesOf(UartReceiver &receiver, Line &line)
{
    QByteArrayList frames;
    for (;;) {
        const UartReceiver::Outcome outcome = receiver.step(line);
        if (outcome == UartReceiver::Outcome::Waits)
            return frames;
        if (outcome == UartReceiver::Outcome::FrameFound)
            frames += travelled(receiver).toHex(' ').toUpper();
    }
}

QByteArrayList framesOf(const QByteArrayList &pieces,
                        UartReceiver::Sender sender = UartReceiver::Sender::Device)
{
    UartReceiver receiver(sender);
    Line line;
    QByteArrayList frames;
    for (const QByteArray &piece : pieces) {
        line.bytes += piece;
        frames += framesOf(receiver, line);
    }
    return frames;
}

} // namespace

class TestUartReceiver : public QObject
{
    Q_OBJECT

private slots:
    void the_right_frames_are_found_among_noise_data();
    void the_right_frames_are_found_among_noise();
    void a_frame_cut_anywhere_is_the_same_frame();
    void frames_that_arrive_byte_by_byte_are_found();
    void a_whole_frame_needs_no_further_byte();
    void a_frame_without_payload_has_six_bytes_behind_the_sync_pair();
    void the_longest_frame_fills_the_buffer();
    void each_step_does_one_thing();
    void a_step_without_bytes_changes_nothing();
    void a_short_read_of_a_sync_byte_begins_anew();
    void a_short_read_of_a_header_begins_anew();
    void a_short_read_of_a_body_waits();
    void the_frames_of_a_host_are_found_data();
    void the_frames_of_a_host_are_found();
    void no_frame_of_a_host_is_longer_than_64_bytes_data();
    void no_frame_of_a_host_is_longer_than_64_bytes();
    void after_a_reset_a_frame_begins_anew_data();
    void after_a_reset_a_frame_begins_anew();
};

void TestUartReceiver::the_right_frames_are_found_among_noise_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("frames");
    const QByteArrayList none;
    const QByteArrayList query = {"FC A3 80 00 00 00"_ba};
    const QByteArrayList twice = {"FC A3 80 00 00 00"_ba, "FC A7 82 02 00 01 00 00"_ba};
    const auto row = [](const char *name, const char *digits, const QByteArrayList &frames) {
        QTest::newRow(name) << hex(digits) << frames;
    };
    row("nothing", "", none);
    row("one frame", "51 56 FC A3 80 00 00 00", query);
    row("two in one piece", "51 56 FC A3 80 00 00 00 51 56 FC A7 82 02 00 01 00 00", twice);
    row("noise before", "00 FF 56 51 00 51 56 FC A3 80 00 00 00", query);
    row("noise between",
        "51 56 FC A3 80 00 00 00 56 00 51 51 56 51 57 00 51 56 FC A7 82 02 00 01 "
        "00 00",
        twice);
    row("noise behind", "51 56 FC A3 80 00 00 00 51 56", query);
    row("first sync byte twice", "51 51 56 FC A3 80 00 00 00", none);
    row("first sync byte three times", "51 51 51 56 FC A3 80 00 00 00", query);
    row("a frame after one missed for a double sync byte",
        "51 51 56 FC A3 80 00 00 00 51 56 FC A3 80 00 00 00", query);
    row("sync bytes the wrong way round", "56 51 FC A3 80 00 00 00", none);
    row("sync bytes as payload", "51 56 FC A3 80 04 51 56 51 56 00 00 51 56 FC A3 80 00 00 00",
        {"FC A3 80 04 51 56 51 56 00 00"_ba, "FC A3 80 00 00 00"_ba});
    row("sync bytes behind a payload", "51 56 FC A3 80 00 51 56 FC A3 80 00 00 00",
        {"FC A3 80 00 51 56"_ba});
    row("another report id", "51 56 FB A3 80 00 00 00", none);
    row("what the tool itself sends", "51 56 00 A3 00 00 00 00", none);
    row("another report id, then a frame", "51 56 00 A3 00 00 00 00 51 56 FC A3 80 00 00 00",
        query);
    row("a frame swallowed by the length of another report id",
        "51 56 00 A3 00 08 00 51 56 FC A3 80 00 00 00 00 51 56 FC A3 80 00 00 00", query);
    row("a byte lost inside a frame takes one of the next",
        "51 56 FC A3 80 02 00 01 00 51 56 FC A7 82 00 00 00 51 56 FC A3 80 00 00 00",
        {"FC A3 80 02 00 01 00 51"_ba, "FC A3 80 00 00 00"_ba});
    row("a length of no frame", "51 56 FC A3 80 3D 00 51 56 FC A3 80 00 00 00", query);
    row("the greatest length", "51 56 FC A3 80 FF 00 51 56 FC A3 80 00 00 00", query);
    row("a length of no frame, a frame at once", "51 56 FC A3 80 FF 51 56 FC A3 80 00 00 00", none);
}

void TestUartReceiver::the_right_frames_are_found_among_noise()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArrayList, frames);
    QCOMPARE(framesOf({bytes}), frames);
    QByteArrayList single;
    for (const char byte : bytes)
        single += QByteArray(1, byte);
    QCOMPARE(framesOf(single), frames);
}

void TestUartReceiver::a_frame_cut_anywhere_is_the_same_frame()
{
    const QByteArray bytes = hex("51 56 FC A7 82 02 00 03 51 56");
    const QByteArrayList expected = {"FC A7 82 02 00 03 51 56"_ba};
    for (qsizetype first = 0; first <= bytes.size(); first++) {
        for (qsizetype second = first; second <= bytes.size(); second++)
            QCOMPARE(framesOf({bytes.first(first), bytes.sliced(first, second - first),
                               bytes.sliced(second)}),
                     expected);
    }
}

void TestUartReceiver::frames_that_arrive_byte_by_byte_are_found()
{
    UartReceiver receiver;
    Line line;
    const QByteArray bytes = hex("51 56 FC A3 80 00 AA BB 51 56 FC A3 80 01 AA BB CC");
    QList<qsizetype> foundAt;
    for (qsizetype i = 0; i < bytes.size(); i++) {
        line.bytes += bytes[i];
        for (qsizetype n = framesOf(receiver, line).size(); n > 0; n--)
            foundAt += i;
    }
    QCOMPARE(foundAt, (QList<qsizetype>{7, 16}));
}

void TestUartReceiver::a_whole_frame_needs_no_further_byte()
{
    UartReceiver receiver;
    Line line{.bytes = hex("51 56 FC A3 80 00 00 00")};
    QCOMPARE(framesOf(receiver, line), (QByteArrayList{"FC A3 80 00 00 00"_ba}));
    QCOMPARE(line.size(), 0);
}

void TestUartReceiver::a_frame_without_payload_has_six_bytes_behind_the_sync_pair()
{
    UartReceiver receiver;
    Line line{.bytes = hex("51 56 FC A3 80 00 AA")};
    QCOMPARE(framesOf(receiver, line), QByteArrayList());
    line.bytes += hex("BB CC");
    QCOMPARE(framesOf(receiver, line), (QByteArrayList{"FC A3 80 00 AA BB"_ba}));
    QCOMPARE(line.bytes, QByteArray());
}

// 66 bytes behind the sync pair, more than any frame has that a device sends over USB.
void TestUartReceiver::the_longest_frame_fills_the_buffer()
{
    QByteArray frame = hex("FC A5 81 3C");
    for (int i = 0; i < 62; i++)
        frame += char(0x80 + i);
    QCOMPARE(framesOf({hex("51 56") + frame}), QByteArrayList{frame.toHex(' ').toUpper()});
}

void TestUartReceiver::each_step_does_one_thing()
{
    using Outcome = UartReceiver::Outcome;
    UartReceiver receiver;
    Line line{.bytes = hex("00 51 56 FC A3 80 01 02 03 04 51 56 00 A3 00 00 00 00")};
    const std::pair<Outcome, qint64> steps[] = {
        {Outcome::Moved, 17},     {Outcome::Moved, 16}, {Outcome::Moved, 15}, {Outcome::Moved, 10},
        {Outcome::FrameFound, 8}, {Outcome::Moved, 7},  {Outcome::Moved, 6},  {Outcome::Moved, 1},
        {Outcome::Moved, 0},      {Outcome::Waits, 0},
    };
    for (const auto &[outcome, left] : steps) {
        QCOMPARE(receiver.step(line), outcome);
        QCOMPARE(line.size(), left);
    }
}

void TestUartReceiver::a_step_without_bytes_changes_nothing()
{
    UartReceiver receiver;
    Line line;
    QByteArrayList frames;
    for (const char byte : hex("51 56 FC A3 80 01 02 03 04")) {
        for (int i = 0; i < 3; i++)
            QCOMPARE(receiver.step(line), UartReceiver::Outcome::Waits);
        line.bytes += byte;
        frames += framesOf(receiver, line);
    }
    QCOMPARE(frames, (QByteArrayList{"FC A3 80 01 02 03 04"_ba}));
}

void TestUartReceiver::a_short_read_of_a_sync_byte_begins_anew()
{
    UartReceiver receiver;
    Line line{.bytes = hex("51")};
    QCOMPARE(framesOf(receiver, line), QByteArrayList());
    line = {.bytes = hex("56 FC A3 80 00 00 00"), .shortest = -1};
    QCOMPARE(receiver.step(line), UartReceiver::Outcome::Waits);
    line.shortest = 1000;
    QCOMPARE(framesOf(receiver, line), QByteArrayList());
    line.bytes = hex("51 56 FC A3 80 00 00 00");
    QCOMPARE(framesOf(receiver, line).size(), 1);
}

void TestUartReceiver::a_short_read_of_a_header_begins_anew()
{
    UartReceiver receiver;
    Line line{.bytes = hex("51 56")};
    QCOMPARE(framesOf(receiver, line), QByteArrayList());
    line = {.bytes = hex("FC A3 80 00 00 51 56 FC A3 80 00 00 00"), .shortest = 4};
    QCOMPARE(receiver.step(line), UartReceiver::Outcome::Moved);
    line.shortest = 1000;
    QCOMPARE(framesOf(receiver, line), (QByteArrayList{"FC A3 80 00 00 00"_ba}));
}

void TestUartReceiver::a_short_read_of_a_body_waits()
{
    UartReceiver receiver;
    Line line{.bytes = hex("51 56 FC A3 80 01 AA")};
    QCOMPARE(framesOf(receiver, line), QByteArrayList());
    line = {.bytes = hex("BB CC"), .shortest = 1};
    QCOMPARE(receiver.step(line), UartReceiver::Outcome::Waits);
    line = {.bytes = hex("DD EE")};
    QCOMPARE(framesOf(receiver, line), (QByteArrayList{"FC A3 80 01 AA DD EE"_ba}));
}

void TestUartReceiver::the_frames_of_a_host_are_found_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("frames");
    const QByteArrayList query = {"00 A3 00 00 00 00"_ba};
    const auto row = [](const char *name, const char *digits, const QByteArrayList &frames) {
        QTest::newRow(name) << hex(digits) << frames;
    };
    row("one frame", "51 56 00 A3 00 00 00 00", query);
    row("another first byte", "51 56 42 A3 00 00 00 00", {"42 A3 00 00 00 00"_ba});
    row("what a device sends", "51 56 FC A3 80 01 00 00 00", {"FC A3 80 01 00 00 00"_ba});
    row("two, with noise between",
        "51 56 00 A7 00 02 00 02 00 00 FF 51 51 56 00 51 56 00 A3 00 00 00 00",
        {"00 A7 00 02 00 02 00 00"_ba, "00 A3 00 00 00 00"_ba});
    row("a frame whose fifth byte is a sync byte",
        "51 56 00 A3 00 00 51 56 51 56 00 A3 00 00 00 00",
        {"00 A3 00 00 51 56"_ba, "00 A3 00 00 00 00"_ba});
    row("a calibration check of a screen at 3", "51 56 00 01 05 03 00 00 00 80 07 38 04",
        {"00 01 05 03 00 00 00 80 07"_ba});
}

void TestUartReceiver::the_frames_of_a_host_are_found()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArrayList, frames);
    QCOMPARE(framesOf({bytes}, UartReceiver::Sender::Host), frames);
    for (qsizetype cut = 1; cut < bytes.size(); cut++)
        QCOMPARE(framesOf({bytes.left(cut), bytes.mid(cut)}, UartReceiver::Sender::Host), frames);
}

void TestUartReceiver::no_frame_of_a_host_is_longer_than_64_bytes_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("the greatest length that fits") << "00 01 05 3A"_ba;
    QTest::newRow("one more") << "00 01 05 3B"_ba;
    QTest::newRow("one more than a device may say") << "00 01 05 3D"_ba;
    QTest::newRow("a screen at 128") << "00 01 05 80"_ba;
    QTest::newRow("the greatest") << "00 01 05 FF"_ba;
}

void TestUartReceiver::no_frame_of_a_host_is_longer_than_64_bytes()
{
    QFETCH(const QByteArray, begin);
    QByteArray frame = hex(begin.constData());
    for (int i = 4; i < 64; i++)
        frame += char(0x80 + i);
    const QByteArray next = hex("51 56 00 A3 00 00 00 00");
    QCOMPARE(framesOf({hex("51 56") + frame + next}, UartReceiver::Sender::Host),
             (QByteArrayList{frame.toHex(' ').toUpper(), "00 A3 00 00 00 00"_ba}));
}

void TestUartReceiver::after_a_reset_a_frame_begins_anew_data()
{
    QTest::addColumn<QByteArray>("begun");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("one sync byte") << "51"_ba;
    QTest::newRow("both sync bytes") << "51 56"_ba;
    QTest::newRow("a header") << "51 56 00 A7 00 02 00"_ba;
}

void TestUartReceiver::after_a_reset_a_frame_begins_anew()
{
    QFETCH(const QByteArray, begun);
    UartReceiver receiver(UartReceiver::Sender::Host);
    Line line{.bytes = hex(begun.constData())};
    QCOMPARE(framesOf(receiver, line), QByteArrayList());
    QCOMPARE(line.size(), 0);
    receiver.reset();
    // Neither the rest of a frame that had begun nor a second sync byte alone.
    line.bytes = hex("56 00 00 51 56 00 A3 00 00 00 00");
    QCOMPARE(framesOf(receiver, line), (QByteArrayList{"00 A3 00 00 00 00"_ba}));
}

QTEST_APPLESS_MAIN(TestUartReceiver)
#include "tst_uartreceiver.moc"
