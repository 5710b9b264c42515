// SPDX-License-Identifier: GPL-3.0-or-later

// The product's own link on simulated and on fake frames and serial lines, without any window:
// what the main window, a command line program and the thread sanitizer meet.

#include "device/link.h"
#include "device/link_log.h"
#include "device/posix_qextserialport.h"
#include "device/seriallink.h"
#include "device/usblink.h"
#include "sim/sim_adapter.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/farend.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

sim::Profile largest()
{
    sim::Profile profile;
    profile.lightsX = 500;
    profile.lightsY = 350;
    return profile;
}

// All that a link hands out, until it goes.
class Receiver : public QObject
{
public:
    explicit Receiver(const Link &link)
    {
        connect(&link, &Link::received, this, [this](const UCHAR *frame) {
            frames.append(QByteArray(reinterpret_cast<const char *>(frame), FrameSize));
        });
        connect(&link, &Link::stateChanged, this,
                [this](const Link::State &state) { states.append(state); });
        connect(&link, &Link::aboutToEnd, this, [this](Link::End how) { ends.append(how); });
        connect(&link, &Link::traffic, this, [this](const Traffic &traffic) {
            const QByteArray bytes(reinterpret_cast<const char *>(&traffic.frame[1]), 2);
            if (traffic.result == Traffic::Result::Dropped)
                dropped.append(bytes.toHex(' '));
            else if (traffic.result == Traffic::Result::Failed)
                failed.append(bytes.toHex(' '));
            else if (traffic.direction == Traffic::Direction::ToFrame)
                sent.append(bytes.toHex(' '));
        });
    }

    // First lights of the X pages received, without repeats.
    QList<int> pages() const
    {
        QList<int> firsts;
        for (const QByteArray &frame : frames) {
            const int first = UCHAR(frame[5]) | UCHAR(frame[6]) << 8;
            if (frame.startsWith("\xFC\xA5\x81") && (firsts.isEmpty() || firsts.last() != first))
                firsts.append(first);
        }
        return firsts;
    }
    QByteArrayList heads(qsizetype bytes) const
    {
        QByteArrayList all;
        for (const QByteArray &frame : frames)
            all.append(frame.first(bytes).toHex(' ').toUpper());
        return all;
    }

    QByteArrayList frames;
    QList<Link::State> states;
    QList<Link::End> ends;
    // Class and sub-command, when it is known what became of a frame.
    QByteArrayList sent;
    QByteArrayList failed;
    QByteArrayList dropped;
};

void send(Link &link, const QByteArray &hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    Frame frame{};
    memcpy(frame.data(), bytes.constData(), size_t(bytes.size()));
    link.send(frame.data());
}

bool runsTimer(const Link &link)
{
    const auto timers = link.findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
    return std::any_of(timers.cbegin(), timers.cend(),
                       [](auto *timer) { return timer->isActive(); });
}

// A fake frame and its link.
struct Fake
{
    Fake() { adapter->present = false; }

    void plug()
    {
        adapter->present = true;
        link.deviceAdded();
    }
    void unplug()
    {
        adapter->present = false;
        link.deviceRemoved();
    }

    std::shared_ptr<FakeAdapter> adapter = std::make_shared<FakeAdapter>();
    Link link{adapter};
    Receiver receiver{link};
};

} // namespace

class TestLink : public QObject
{
    Q_OBJECT

private slots:
    void init() { hidver = {}; }

    // A simulated frame

    void every_page_of_a_scan_arrives_through_a_receiver_busy_for_two_seconds()
    {
        Link link(std::make_shared<sim::SimAdapter>(largest()));
        const Receiver receiver(link);
        link.start();
        send(link, "00 A5 00");
        send(link, "00 A5 01");
        std::this_thread::sleep_for(2s);
        // Ten pages of 55 lights, each read at least once meanwhile.
        QTRY_COMPARE(receiver.pages(), QList<int>({0, 55, 110, 165, 220, 275, 330, 385, 440, 495}));
    }

    void frames_are_whole_while_both_threads_and_touches_are_at_work()
    {
        const auto adapter = std::make_shared<sim::SimAdapter>(largest());
        Link link(adapter);
        const Receiver receiver(link);
        link.start();
        const QDeadlineTimer atLeast(3s);
        const QDeadlineTimer atMost(30s);
        qsizetype asked = 0;
        while (!atLeast.hasExpired() || (receiver.pages().size() < 10 && !atMost.hasExpired())) {
            // A scan that is asked for again sooner than reports come stays at its first page.
            if (const qsizetype read = receiver.frames.size(); asked == 0 || read >= asked + 3) {
                send(link, "00 A5 00");
                send(link, "00 A5 01");
                asked = read;
            }
            adapter->touch(QPoint(10, 10));
            QTest::qWait(100);
        }
        link.end();
        // Every light of this frame is well lit: a torn page would show dark ones.
        QVERIFY(receiver.pages().size() >= 10);
        for (const QByteArray &frame : receiver.frames) {
            if (!frame.startsWith("\xFC\xA5\x81"))
                continue;
            const int first = UCHAR(frame[5]) | UCHAR(frame[6]) << 8;
            // 55 lights on a page, the last of 500 has five.
            const int lights = first == 495 ? 5 : 55;
            for (int i = 0; i < lights; ++i)
                QVERIFY(UCHAR(frame[7 + i]) > 150);
        }
    }

    void nothing_of_a_removed_device_arrives_whatever_it_was_at_data()
    {
        QTest::addColumn<int>("pauseMs");
        for (const int ms : {0, 5, 20, 51, 60, 66, 70, 100})
            QTest::addRow("%d ms after a send", ms) << ms;
    }
    void nothing_of_a_removed_device_arrives_whatever_it_was_at()
    {
        QFETCH(const int, pauseMs);
        const auto adapter = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(adapter);
        Receiver receiver(link);
        for (int round = 0; round < 3; ++round) {
            adapter->plug();
            link.deviceAdded();
            QTRY_COMPARE(link.kind(), Link::UsbConnected);
            QTRY_VERIFY(!receiver.frames.isEmpty());
            send(link, "00 A3 00");
            std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
            adapter->unplug();
            link.deviceRemoved();
            QCOMPARE(link.kind(), Link::NotConnected);
            receiver.frames.clear();
            QTest::qWait(20);
            QVERIFY(receiver.frames.isEmpty());
        }
    }

    void what_a_removed_frame_said_last_does_not_come_from_the_next()
    {
        Fake fake;
        fake.plug();
        std::this_thread::sleep_for(200ms); // its reports wait
        fake.unplug();
        const int before = fake.adapter->reads;
        QVERIFY(before > 0);
        fake.plug();
        QTRY_VERIFY(!fake.receiver.frames.isEmpty());
        QCOMPARE(int(UCHAR(fake.receiver.frames.first()[60])), before + 1);
    }

    void a_frame_that_came_back_before_anybody_looked_is_linked_anew()
    {
        const auto adapter = std::make_shared<sim::SimAdapter>(sim::Profile());
        Link link(adapter);
        link.deviceAdded();
        QCOMPARE(link.kind(), Link::UsbConnected);
        link.lookForRemoval(false);
        QCOMPARE(link.kind(), Link::UsbConnected);
        adapter->unplug();
        adapter->plug();
        link.lookForRemoval(false);
        QCOMPARE(link.kind(), Link::NotConnected);
        QVERIFY(link.lookForDevice());
        Receiver receiver(link);
        QTRY_VERIFY(!receiver.frames.isEmpty());
    }

    void lost_messages_leave_a_frame_that_is_still_there_alone()
    {
        Fake fake;
        fake.plug();
        fake.link.eventsLost();
        QCOMPARE(fake.link.kind(), Link::UsbConnected);
        QVERIFY(fake.receiver.ends.isEmpty());
        QCOMPARE(fake.adapter->closes.load(), 0);
    }

    void after_lost_messages_a_frame_that_came_is_linked_and_one_that_went_is_not()
    {
        Fake fake;
        fake.adapter->present = true;
        fake.link.eventsLost();
        QCOMPARE(fake.link.kind(), Link::UsbConnected);
        fake.adapter->present = false;
        fake.link.eventsLost();
        QCOMPARE(fake.link.kind(), Link::NotConnected);
        QCOMPARE(fake.receiver.ends, QList({Link::End::DeviceGone}));
    }

    void a_removal_that_is_told_ends_the_link_of_a_frame_that_is_there_again()
    {
        Fake fake;
        fake.plug();
        fake.link.deviceRemoved();
        QCOMPARE(fake.link.kind(), Link::NotConnected);
        QCOMPARE(fake.receiver.ends, QList({Link::End::DeviceGone}));
        QCOMPARE(fake.adapter->closes.load(), 1);
    }

    void without_a_link_by_usb_a_look_for_a_removal_ends_and_opens_nothing()
    {
        Fake fake;
        fake.adapter->present = true;
        for (const bool force : {false, true})
            fake.link.lookForRemoval(force);
        QVERIFY(fake.adapter->searches.isEmpty());
        QCOMPARE(fake.link.kind(), Link::NotConnected);
        QVERIFY(fake.receiver.ends.isEmpty());
    }

    void an_unplug_in_the_middle_of_a_stall_ends_the_stall()
    {
        QString problem;
        const auto plan = sim::FaultPlan::parse(u"at 3 stall 60s"_s, u"plan"_s, &problem);
        QVERIFY2(plan, qPrintable(problem));
        const auto adapter = std::make_shared<sim::SimAdapter>(sim::Profile(), *plan);
        Link link(adapter);
        link.start();
        QTRY_VERIFY(adapter->transfers() >= 3);
        std::this_thread::sleep_for(50ms);
        const auto begin = std::chrono::steady_clock::now();
        adapter->unplug();
        link.deviceRemoved();
        QVERIFY(std::chrono::steady_clock::now() - begin < 30s);
    }

    void two_hundred_links_come_and_go_with_reports_under_way()
    {
        const auto adapter = std::make_shared<sim::SimAdapter>(
            sim::Profile(), sim::FaultPlan(), sim::SimOptions{.paced = false, .clock = {}});
        Link link(adapter);
        Receiver receiver(link);
        for (int round = 0; round < 200; ++round) {
            adapter->plug();
            link.deviceAdded();
            QCOMPARE(link.kind(), Link::UsbConnected);
            if (round % 2 == 0)
                send(link, "00 A7 02");
            if (round % 20 == 0)
                QTRY_VERIFY(!receiver.frames.isEmpty());
            adapter->unplug();
            link.deviceRemoved();
            QCOMPARE(link.kind(), Link::NotConnected);
            receiver.frames.clear();
        }
        QCoreApplication::processEvents();
        QVERIFY(receiver.frames.isEmpty());
    }

    void the_linked_frame_says_what_it_is()
    {
        sim::Profile profile;
        profile.release = 0x3011;
        profile.revision = 0x003812;
        Link link(std::make_shared<sim::SimAdapter>(profile));
        connect(&link, &Link::received, &link, &Link::takeVersion);
        link.start();
        QVERIFY(link.readVersion());
        QCOMPARE(hidver.VersionNumber, 0x3011u);
        QVERIFY(link.lacksVersion());
        send(link, "00 A3 00");
        QTRY_COMPARE(hidver.SVNNUM, 0x003812u);
        QVERIFY(!link.lacksVersion());
        link.end();
        QCOMPARE(hidver.VersionNumber, 0u);
        QCOMPARE(hidver.SVNNUM, 0u);
        QVERIFY(!link.lacksVersion());
    }

    void a_version_is_news_once()
    {
        const auto tells = [](Link &link, const char *hex) {
            const QByteArray bytes = QByteArray::fromHex(hex).leftJustified(FrameSize, '\0');
            return link.takeVersion(reinterpret_cast<const UCHAR *>(bytes.constData()));
        };
        Fake fake;
        QVERIFY(!tells(fake.link, "FC A3 80 0E 00 12 38"));
        QCOMPARE(hidver.SVNNUM, 0u);
        fake.plug();
        QVERIFY(!tells(fake.link, "FC A7 82 0E 00 12 38"));
        QVERIFY(tells(fake.link, "FC A3 80 0E 00 12 38"));
        QCOMPARE(hidver.SVNNUM, 0x3812u);
        QVERIFY(!tells(fake.link, "FC A3 80 0E 00 12 38"));
        QVERIFY(tells(fake.link, "FC A3 80 0E 00 13 38"));
        QCOMPARE(hidver.SVNNUM, 0x3813u);
    }

    void one_number_of_a_version_is_enough_to_know_it()
    {
        Fake fake;
        fake.plug();
        QVERIFY(fake.link.readVersion());
        for (quint32 HID_VER::*number : {&HID_VER::SVNNUM, &HID_VER::CHECKSUM, &HID_VER::P_FID,
                                         &HID_VER::P_DATE, &HID_VER::P_NUM}) {
            QVERIFY(fake.link.lacksVersion());
            hidver.*number = 1;
            QVERIFY(!fake.link.lacksVersion());
            hidver.*number = 0;
        }
    }

    void an_older_frame_has_no_firmware_to_tell_of()
    {
        Fake fake;
        fake.adapter->version = 0x2FFF;
        fake.plug();
        hidver.SVNNUM = hidver.CHECKSUM = hidver.P_FID = hidver.P_DATE = hidver.P_NUM = 7;
        QVERIFY(!fake.link.readVersion());
        QVERIFY(hidver == (HID_VER{.VendorID = 0x5156, .ProductID = 1, .VersionNumber = 0x2FFF}));
        QVERIFY(!fake.link.lacksVersion());
    }

    // Sending

    void frames_sent_while_sending_go_out_in_order()
    {
        QTest::failOnWarning(QRegularExpression(u"could not be sent"_s));
        Fake fake;
        fake.plug();
        for (const char *frame : {"00 A7 00", "00 A7 02", "00 A5 00"})
            send(fake.link, frame);
        QTRY_COMPARE(fake.adapter->sentBytes(2), QByteArrayList({"a7 00", "a7 02", "a5 00"}));
        QTRY_COMPARE(fake.receiver.sent, QByteArrayList({"a7 00", "a7 02", "a5 00"}));
    }

    void waiting_for_the_writer_burns_no_processor()
    {
        Fake fake;
        fake.plug();
        const auto used = [] {
            timespec time{};
            ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
            return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
        };
        const auto before = used();
        send(fake.link, "00 A7 00");
        send(fake.link, "00 A7 02");
        QVERIFY(used() - before < 25ms); // of some 50 that it waited
    }

    void a_burst_goes_out_in_order_without_holding_its_sender_up_for_each()
    {
        Fake fake;
        fake.plug();
        QByteArrayList expected;
        for (int i = 0; i < 8; ++i) {
            const QByteArray number = QByteArray(1, char(i)).toHex();
            send(fake.link, "00 A5 " + number);
            expected.append("a5 " + number);
        }
        // The second waited for the first, and the others for nobody.
        QVERIFY2(fake.adapter->sent().size() <= 2,
                 qPrintable(QString::number(fake.adapter->sent().size())));
        QTRY_COMPARE(fake.adapter->sentBytes(2), expected);
        const QList<FakeAdapter::Sent> sent = fake.adapter->sent();
        for (qsizetype i = 1; i < sent.size(); ++i)
            QVERIFY(sent[i].when - sent[i - 1].when >= 50ms);
    }

    void each_turn_of_the_event_loop_waits_anew()
    {
        Fake fake;
        fake.plug();
        int waited = 0;
        for (int turn = 1; turn <= 5; ++turn) {
            send(fake.link, "00 A7 00");
            send(fake.link, "00 A7 02");
            // The first is out with nothing of the event loop, unless the machine is busy.
            waited += fake.adapter->sent().size() == 2 * turn - 1 ? 1 : 0;
            QTRY_COMPARE(fake.adapter->sent().size(), 2 * turn);
            QTest::qWait(20); // the writer ends
        }
        QVERIFY2(waited >= 2, qPrintable(QString::number(waited)));
    }

    void a_device_that_hangs_delays_frames_but_neither_the_sender_nor_their_order()
    {
        Fake fake;
        fake.plug();
        fake.adapter->stallSends(true);
        QByteArrayList expected;
        const auto begin = FakeAdapter::Clock::now();
        for (int i = 0; i < 20; ++i) {
            const QByteArray number = QByteArray(1, char(i)).toHex();
            send(fake.link, "00 A5 " + number);
            expected.append("a5 " + number);
        }
        // Twenty sends that each waited for the one before would take ten seconds.
        QVERIFY(FakeAdapter::Clock::now() - begin < 3s);
        QTest::qWait(100);
        QCOMPARE(fake.adapter->sent().size(), 0);
        fake.adapter->stallSends(false);
        QTRY_COMPARE(fake.adapter->sentBytes(2), expected);
    }

    void frames_that_wait_for_a_hanging_device_go_with_it()
    {
        Fake fake;
        fake.plug();
        fake.adapter->stallSends(true);
        for (int i = 0; i < 3; ++i)
            send(fake.link, "00 A5 01");
        std::thread later([&fake] {
            std::this_thread::sleep_for(100ms);
            fake.adapter->stallSends(false);
        });
        fake.unplug();
        later.join();
        // The first was with the device.
        QCOMPARE(fake.receiver.sent, QByteArrayList({"a5 01"}));
        QCOMPARE(fake.receiver.dropped, QByteArrayList({"a5 01", "a5 01"}));
        fake.adapter->forgetSent();
        fake.plug();
        QTest::qWait(200);
        QCOMPARE(fake.adapter->sentBytes(), QByteArrayList());
        send(fake.link, "00 A7 00");
        QTRY_COMPARE(fake.adapter->sentBytes(2), QByteArrayList({"a7 00"}));
        QTest::qWait(100);
        QCOMPARE(fake.adapter->sent().size(), 1);
    }

    void a_frame_that_went_before_its_pause_was_over_is_dropped_and_nothing_else()
    {
        Fake fake;
        fake.plug();
        send(fake.link, "00 A7 00");
        fake.unplug();
        QCOMPARE(fake.receiver.dropped, QByteArrayList({"a7 00"}));
        QCOMPARE(fake.receiver.failed, QByteArrayList());
        QCOMPARE(fake.receiver.sent, QByteArrayList());
        QCOMPARE(fake.adapter->sentBytes(), QByteArrayList());
    }

    void the_outbox_holds_64_frames_and_says_what_it_drops()
    {
        Fake fake;
        fake.plug();
        fake.adapter->stallSends(true);
        send(fake.link, "00 A7 00"); // with the writer
        for (int i = 0; i < 64; ++i)
            send(fake.link, "00 A7 02");
        QCOMPARE(fake.receiver.dropped, QByteArrayList());
        QTest::ignoreMessage(QtWarningMsg,
                             "64 frames wait for the touch frame: one more is dropped");
        send(fake.link, "00 A5 00");
        QCOMPARE(fake.receiver.dropped, QByteArrayList({"a5 00"}));
        fake.adapter->stallSends(false);
        QTRY_COMPARE_WITH_TIMEOUT(fake.adapter->sent().size(), 65, 20000);
        QTest::qWait(150);
        QCOMPARE(fake.adapter->sent().size(), 65);
        QCOMPARE(fake.adapter->lastSent(2), QByteArray("a7 02"));
    }

    void a_failed_send_is_told_and_the_next_goes_out()
    {
        Fake fake;
        fake.plug();
        fake.adapter->sendFails = true;
        QTest::ignoreMessage(QtWarningMsg, "a frame could not be sent to the touch frame");
        send(fake.link, "00 A7 00");
        QTRY_COMPARE(fake.adapter->sent().size(), 1);
        QTest::qWait(50);
        fake.adapter->sendFails = false;
        send(fake.link, "00 A7 02");
        QTRY_COMPARE(fake.adapter->sentBytes(2), QByteArrayList({"a7 00", "a7 02"}));
        QTRY_COMPARE(fake.receiver.sent, QByteArrayList({"a7 02"}));
        QCOMPARE(fake.receiver.failed, QByteArrayList({"a7 00"}));
    }

    void a_send_that_failed_is_not_told_when_its_frame_is_gone()
    {
        Fake fake;
        fake.plug();
        fake.adapter->sendFails = true;
        send(fake.link, "00 A7 00");
        // Without the event loop, in which it would be told.
        while (fake.adapter->sent().isEmpty())
            std::this_thread::sleep_for(1ms);
        std::this_thread::sleep_for(50ms);
        fake.unplug();
        QTest::failOnWarning(QRegularExpression(u"could not be sent"_s));
        QTest::qWait(50);
    }

    void what_became_of_a_frame_is_told_although_no_other_follows()
    {
        Fake fake;
        fake.plug();
        int sent = 0;
        connect(&fake.link, &Link::traffic, &fake.receiver, [&sent](const Traffic &traffic) {
            if (traffic.direction == Traffic::Direction::ToFrame)
                ++sent;
        });
        for (int i = 1; i <= 40; ++i) {
            send(fake.link, "00 A7 02");
            QTRY_COMPARE_WITH_TIMEOUT(sent, i, 2000);
        }
    }

    void without_a_link_frames_are_dropped()
    {
        Fake fake;
        send(fake.link, "00 A7 00");
        fake.plug();
        QTest::qWait(100);
        QCOMPARE(fake.adapter->sent().size(), 0);
    }

    void an_end_with_frames_waiting_sends_them_first()
    {
        Fake fake;
        fake.plug();
        fake.adapter->stallSends(true);
        for (const char *frame : {"00 A7 00", "00 A7 02", "00 A5 00"})
            send(fake.link, frame);
        std::thread later([&fake] {
            std::this_thread::sleep_for(100ms);
            fake.adapter->stallSends(false);
        });
        QByteArrayList toldByTheEnd;
        connect(&fake.link, &Link::ended, &fake.receiver,
                [&] { toldByTheEnd = fake.receiver.sent; });
        fake.link.end();
        later.join();
        QCOMPARE(fake.adapter->sentBytes(2), QByteArrayList({"a7 00", "a7 02", "a5 00"}));
        QCOMPARE(toldByTheEnd, QByteArrayList({"a7 00", "a7 02", "a5 00"}));
        QCOMPARE(fake.adapter->closes.load(), 1);
    }

    void a_link_that_goes_sends_what_waits_first()
    {
        const auto adapter = std::make_shared<FakeAdapter>();
        adapter->stallSends(true);
        std::thread later;
        {
            Link link(adapter);
            link.start();
            for (const char *frame : {"00 A7 00", "00 A7 02", "00 A5 00"})
                send(link, frame);
            later = std::thread([&adapter] {
                std::this_thread::sleep_for(100ms);
                adapter->stallSends(false);
            });
        }
        later.join();
        QCOMPARE(adapter->sentBytes(2), QByteArrayList({"a7 00", "a7 02", "a5 00"}));
        QCOMPARE(adapter->closes.load(), 1);
    }

    void an_end_does_not_wait_for_a_device_that_takes_nothing()
    {
        Fake fake;
        fake.plug();
        fake.adapter->stallSends(true);
        send(fake.link, "00 A7 00");
        send(fake.link, "00 A7 02");
        std::thread later([&fake] {
            std::this_thread::sleep_for(1500ms);
            fake.adapter->stallSends(false);
        });
        QTest::ignoreMessage(
            QtWarningMsg, "the touch frame takes nothing any more: what waits for it is dropped");
        fake.link.end();
        later.join();
        // The frame under way cannot be taken back, the other one is.
        QCOMPARE(fake.adapter->sentBytes(2), QByteArrayList({"a7 00"}));
    }

    void threads_end_before_the_device_is_closed_data()
    {
        QTest::addColumn<bool>("sending");
        QTest::newRow("a read is under way") << false;
        QTest::newRow("a send is under way") << true;
    }
    void threads_end_before_the_device_is_closed()
    {
        QFETCH(const bool, sending);
        Fake fake;
        fake.plug();
        if (sending) {
            fake.adapter->stallSends(true);
            send(fake.link, "00 A7 00");
            QTRY_COMPARE(fake.adapter->nowSending.load(), 1);
        } else {
            fake.adapter->stallReads(true);
            QTRY_COMPARE(fake.adapter->nowReading.load(), 1);
        }
        std::thread later([&fake] {
            std::this_thread::sleep_for(200ms);
            fake.adapter->stallSends(false);
            fake.adapter->stallReads(false);
        });
        fake.unplug();
        later.join();
        QCOMPARE(fake.adapter->closes.load(), 1);
        QCOMPARE(fake.adapter->usesAfterClose.load(), 0);
    }

    void the_reader_ends_first_so_a_frame_in_its_pause_still_leaves_meanwhile()
    {
        Fake fake;
        fake.plug();
        fake.adapter->stallReads(true);
        QTRY_COMPARE(fake.adapter->nowReading.load(), 1);
        send(fake.link, "00 A7 00");
        std::thread later([&fake] {
            for (int i = 0; i < 200 && fake.adapter->sent().isEmpty(); ++i)
                std::this_thread::sleep_for(10ms);
            fake.adapter->stallReads(false);
        });
        fake.unplug();
        later.join();
        QCOMPARE(fake.adapter->sentBytes(2), QByteArrayList({"a7 00"}));
    }

    // What the adapter is asked for

    void reports_are_read_and_sent_under_the_protocols_id()
    {
        Fake fake;
        fake.plug();
        send(fake.link, "00 A7 00");
        QTRY_COMPARE(fake.adapter->sent().size(), 1);
        QCOMPARE(fake.adapter->sent().first().id, 0xFC);
        QTRY_COMPARE(fake.adapter->readId.load(), 0xFC);
    }

    void searches_name_the_collection_of_older_frames()
    {
        Fake fake;
        fake.plug();
        QCOMPARE(fake.adapter->searches, QList<FakeAdapter::Search>({{u"col03"_s, true}}));
        fake.adapter->searches.clear();
        fake.link.lookForRemoval(false);
        QCOMPARE(fake.adapter->searches, QList<FakeAdapter::Search>({{u"col03"_s, false}}));
    }

    void a_frame_is_looked_for_twice_a_second_once_started()
    {
        Fake fake;
        const auto *timer = fake.link.findChild<QTimer *>(u"checkTimer"_s);
        QVERIFY(!timer->isActive());
        fake.link.start();
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 500);
        fake.adapter->searches.clear();
        QTRY_VERIFY(fake.adapter->searches.size() >= 2);
        fake.link.end();
        QVERIFY(!timer->isActive());
    }

    void a_frame_whose_node_comes_late_is_found_without_a_start()
    {
        Fake fake;
        fake.link.deviceAdded();
        QTest::qWait(100);
        QVERIFY(runsTimer(fake.link));
        fake.adapter->present = true;
        QTRY_COMPARE(fake.link.kind(), Link::UsbConnected);
        QVERIFY(!runsTimer(fake.link));
    }

    void a_plug_without_a_node_is_looked_for_a_second_and_a_half()
    {
        Fake fake;
        QElapsedTimer time;
        time.start();
        fake.link.deviceAdded();
        QTRY_VERIFY(!runsTimer(fake.link));
        QVERIFY(time.elapsed() >= 1400);
        QCOMPARE(fake.adapter->searches.size(), 1 + 75);
    }

    void an_end_leaves_neither_a_port_nor_a_timer()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        fake.link.start();
        fake.link.deviceAdded();
        fake.link.end();
        QVERIFY(!runsTimer(fake.link));
        QCOMPARE(fake.link.kind(), Link::NotConnected);
        QCOMPARE(fake.link.openPort(), QString());
        QCOMPARE(fake.receiver.ends, QList({Link::End::Closed}));
        fake.link.end();
        QCOMPARE(fake.receiver.ends.size(), 1);
    }

    void a_port_that_nobody_has_named_is_com1()
    {
        Fake fake;
        auto *port = fake.link.findChild<Posix_QextSerialPort *>();
        QVERIFY(!port->open(QIODevice::ReadWrite));
        QVERIFY2(port->errorString().startsWith(u"There is no serial port /dev/COM1."_s),
                 qPrintable(port->errorString()));
    }

    // Which link carries frames

    void the_state_says_which_link_carries_frames()
    {
        FarEnd line;
        Fake fake;
        QCOMPARE(fake.link.kind(), Link::NotConnected);
        QVERIFY(fake.link.openSerial(line.node, {}));
        QVERIFY(fake.link.state() == (Link::State{Link::SerialOpen, line.node, QString()}));
        fake.plug();
        QVERIFY(fake.link.state() == (Link::State{Link::UsbConnected, u"/dev/usb/fake"_s, {}}));
        QCOMPARE(fake.link.openPort(), line.node);
        fake.unplug();
        QCOMPARE(fake.link.kind(), Link::NotConnected);
        QCOMPARE(fake.link.openPort(), QString());
        QVERIFY(fake.link.state().problem.contains(line.node));
    }

    void a_takeover_lets_what_was_begun_finish_on_the_line()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        QCOMPARE(line.take(33).size(), 33);
        connect(&fake.link, &Link::aboutToEnd, &fake.receiver,
                [&fake] { send(fake.link, "00 01 06"); });
        fake.plug();
        QCOMPARE(fake.receiver.ends, QList({Link::End::Replaced}));
        QCOMPARE(line.take(8), QByteArray::fromHex("51 56 00 01 06 00 00 00"));
        QCOMPARE(fake.receiver.sent, QByteArrayList({"b1 00", "b1 00", "b1 00", "01 06"}));
        QTest::qWait(100);
        QCOMPARE(fake.adapter->sent().size(), 0);
    }

    void closing_lets_what_was_begun_finish()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        QCOMPARE(line.take(33).size(), 33);
        connect(&fake.link, &Link::aboutToEnd, &fake.receiver,
                [&fake] { send(fake.link, "00 01 06"); });
        fake.link.closeSerial();
        QCOMPARE(fake.receiver.ends, QList({Link::End::Closed}));
        QCOMPARE(line.take(8), QByteArray::fromHex("51 56 00 01 06 00 00 00"));
    }

    void a_frame_that_is_gone_is_sent_nothing_more()
    {
        Fake fake;
        fake.plug();
        connect(&fake.link, &Link::aboutToEnd, &fake.receiver,
                [&fake] { send(fake.link, "00 01 06"); });
        fake.unplug();
        QCOMPARE(fake.receiver.ends, QList({Link::End::DeviceGone}));
        fake.plug();
        QTest::qWait(150);
        QCOMPARE(fake.adapter->sent().size(), 0);
    }

    void a_port_that_does_not_open_leaves_the_usb_link_alone()
    {
        Fake fake;
        fake.plug();
        QVERIFY(!fake.link.openSerial(u"ttyQuorvel7"_s, {}));
        QVERIFY(fake.link.state() == (Link::State{Link::UsbConnected, u"/dev/usb/fake"_s, {}}));
        QVERIFY(fake.receiver.ends.isEmpty());
        QVERIFY2(fake.link.serialProblem().contains(u"There is no serial port"_s),
                 qPrintable(fake.link.serialProblem()));
        send(fake.link, "00 A7 02");
        QTRY_COMPARE(fake.adapter->sentBytes(2), QByteArrayList({"a7 02"}));
    }

    void a_port_that_opens_replaces_the_usb_link()
    {
        FarEnd line;
        Fake fake;
        fake.plug();
        QVERIFY(fake.link.openSerial(line.node, {}));
        QCOMPARE(fake.receiver.ends, QList({Link::End::Replaced}));
        QVERIFY(fake.link.state() == (Link::State{Link::SerialOpen, line.node, {}}));
        QVERIFY(fake.receiver.states.last() == fake.link.state());
        QCOMPARE(fake.adapter->closes.load(), 1);
        QCOMPARE(line.take(33).size(), 33);
    }

    void who_prefers_usb_leaves_the_port_for_a_frame_there()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        fake.adapter->present = true;
        fake.link.useUsb();
        QVERIFY(fake.link.state() == (Link::State{Link::UsbConnected, u"/dev/usb/fake"_s, {}}));
        QCOMPARE(fake.link.openPort(), QString());
        QCOMPARE(fake.receiver.ends, QList({Link::End::Closed}));
    }

    void a_closing_of_all_ends_the_link_by_usb_too()
    {
        Fake fake;
        fake.plug();
        fake.link.closeSerial();
        QCOMPARE(fake.link.kind(), Link::SerialClosed);
        QCOMPARE(fake.receiver.ends, QList({Link::End::Closed}));
        QCOMPARE(fake.adapter->closes.load(), 1);
    }

    void a_frame_that_another_program_uses_is_told_until_one_is_linked()
    {
        Fake fake;
        fake.adapter->setProblem({u"/dev/usb/hiddev3"_s, EBUSY});
        QVERIFY(fake.link.isInUse());
        QVERIFY(fake.link.usbProblem().contains(u"/dev/usb/hiddev3"_s));
        fake.plug();
        QVERIFY(!fake.link.isInUse());
        QCOMPARE(fake.link.usbProblem(), QString());
    }

    void each_reason_why_a_frame_cannot_be_opened_has_its_words_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("words");
        QTest::newRow("not allowed") << EACCES << u"this user may not open it"_s;
        QTest::newRow("forbidden") << EPERM << u"this user may not open it"_s;
        QTest::newRow("in use") << EBUSY << u"is in use by another program"_s;
        QTest::newRow("broken") << EIO
                                << u"A touch frame is at /dev/usb/hiddev3 but it cannot be "
                                   "opened (Input/output error)"_s;
        QTest::newRow("too much is open here")
            << EMFILE << u"perhaps a touch frame, cannot be opened (Too many open files)"_s;
        QTest::newRow("too much is open everywhere")
            << ENFILE << u"perhaps a touch frame, cannot be opened"_s;
        QTest::newRow("no memory") << ENOMEM << u"perhaps a touch frame, cannot be opened"_s;
    }

    void each_reason_why_a_frame_cannot_be_opened_has_its_words()
    {
        QFETCH(int, error);
        QFETCH(QString, words);
        Fake fake;
        fake.adapter->setProblem({u"/dev/usb/hiddev3"_s, error});
        const QString problem = fake.link.usbProblem();
        QVERIFY2(problem.contains(words), qPrintable(problem));
        QVERIFY2(problem.contains(u"/dev/usb/hiddev3"), qPrintable(problem));
        QCOMPARE(fake.link.isInUse(), error == EBUSY);
    }

    void a_lost_line_closes_the_port_and_says_so()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        line.fd = {};
        QTRY_COMPARE(fake.link.kind(), Link::SerialClosed);
        QCOMPARE(fake.receiver.ends, QList({Link::End::DeviceGone}));
        QCOMPARE(fake.link.openPort(), QString());
        QVERIFY2(fake.receiver.states.last().problem.contains(u" is gone. "_s),
                 qPrintable(fake.receiver.states.last().problem));
    }

    void a_look_for_a_removal_sees_a_lost_line_at_once()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        fake.link.lookForRemoval(true);
        QCOMPARE(fake.link.kind(), Link::SerialOpen);
        line.fd = {};
        fake.link.lookForRemoval(false);
        QCOMPARE(fake.link.kind(), Link::SerialClosed);
        QCOMPARE(fake.receiver.ends, QList({Link::End::DeviceGone}));
    }

    void a_good_opening_forgets_why_the_last_one_failed()
    {
        FarEnd line;
        SerialLink serial;
        QVERIFY(!serial.open(u"ttyQuorvel7"_s));
        QVERIFY(!serial.problem().isEmpty());
        QVERIFY(serial.open(line.node));
        QCOMPARE(serial.problem(), QString());
    }

    void what_went_wrong_with_a_port_is_forgotten_when_a_frame_on_usb_comes()
    {
        Fake fake;
        QVERIFY(!fake.link.openSerial(u"ttyQuorvel7"_s, {}));
        QVERIFY(!fake.link.state().problem.isEmpty());
        fake.plug();
        QVERIFY(fake.link.state() == (Link::State{Link::UsbConnected, u"/dev/usb/fake"_s, {}}));
        QCOMPARE(fake.link.serialProblem(), QString());
        fake.unplug();
        QVERIFY(fake.link.state() == (Link::State{Link::NotConnected, {}, {}}));
    }

    void a_port_that_was_busy_is_waited_for_until_something_else_is_linked_or_wanted()
    {
        FarEnd line;
        Posix_QextSerialPort other(line.node, {});
        QVERIFY(other.open(QIODevice::ReadWrite));
        Fake fake;
        const auto waits = [&] {
            return !fake.link.openSerial(line.node, {}) && fake.link.isInUse();
        };
        QVERIFY(waits());
        fake.plug();
        fake.unplug();
        QVERIFY(!fake.link.isInUse());
        QVERIFY(waits());
        for (const QString &name : {u"ttyQuorvel7"_s, QString()}) {
            QVERIFY(!fake.link.openSerial(name, {}));
            QVERIFY(!fake.link.isInUse());
            QVERIFY(waits());
        }
        fake.link.closeSerial();
        QVERIFY(!fake.link.isInUse());
        QVERIFY(waits());
        fake.link.closePort();
        QVERIFY(!fake.link.isInUse());
    }

    void a_port_that_was_busy_is_opened_as_asked_when_it_is_free()
    {
        FarEnd line;
        Posix_QextSerialPort other(line.node, {});
        QVERIFY(other.open(QIODevice::ReadWrite));
        Fake fake;
        fake.link.start();
        QVERIFY(!fake.link.openSerial(line.node, {.BaudRate = BAUD57600}));
        QCOMPARE(fake.link.kind(), Link::SerialFailed);
        other.close();
        QTRY_COMPARE(fake.link.kind(), Link::SerialOpen);
        QCOMPARE(int(line.settings().c_ospeed), 57600);
        QVERIFY(!fake.link.isInUse());
    }

    void what_stays_as_it_is_is_told_once()
    {
        Fake fake;
        fake.link.closeSerial();
        fake.link.closeSerial();
        QCOMPARE(fake.receiver.states.size(), 1);
        QVERIFY(fake.receiver.states.first() == (Link::State{Link::SerialClosed, {}, {}}));
    }

    void a_problem_is_told_when_it_has_lasted()
    {
        Fake fake;
        fake.adapter->present = false;
        fake.adapter->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
        QElapsedTimer time;
        time.start();
        fake.link.start();
        QVERIFY(fake.receiver.states.isEmpty());
        QTRY_VERIFY(!fake.receiver.states.isEmpty());
        // At the first look after 400 ms.
        QVERIFY(time.elapsed() >= 400);
        QVERIFY(time.elapsed() < 1000);
        QVERIFY(fake.receiver.states.first().problem.contains(u"/dev/usb/hiddev3"_s));
        fake.adapter->setProblem({});
        QTRY_COMPARE(fake.receiver.states.size(), 2);
        QCOMPARE(fake.receiver.states.last().problem, QString());
    }

    // Two links at once

    void a_serial_frame_that_comes_during_a_usb_receivers_event_loop_is_delivered_right_after()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        QCOMPARE(line.take(33).size(), 33);
        fake.plug();
        bool once = false;
        connect(&fake.link, &Link::received, &fake.receiver, [&] {
            if (std::exchange(once, true))
                return;
            fake.adapter->stallReads(true);
            line.give(QByteArray::fromHex("51 56 FC A7 82 02 00 03 00 00"));
            QTest::qWait(100);
            QVERIFY(!fake.receiver.heads(3).contains("FC A7 82"));
        });
        QTRY_VERIFY(fake.receiver.heads(6).contains("FC A7 82 02 00 03"));
        fake.adapter->stallReads(false);
    }

    void a_usb_report_that_comes_during_a_serial_receivers_event_loop_is_delivered_right_after()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        QCOMPARE(line.take(33).size(), 33);
        bool once = false;
        QByteArrayList behind;
        connect(&fake.link, &Link::received, &fake.receiver, [&](const UCHAR *frame) {
            if (frame[1] == 0xA7 && !std::exchange(once, true)) {
                fake.plug();
                QTest::qWait(200);
            }
        });
        const Receiver later(fake.link);
        line.give(QByteArray::fromHex("51 56 FC A7 82 02 00 03 00 00"));
        QTRY_VERIFY(later.frames.size() > 3);
        // The end of the serial link has wiped its frame before it came this far.
        QCOMPARE(later.frames[0], QByteArray(FrameSize, '\0'));
        for (int i = 1; i < 4; ++i) {
            const auto number = UCHAR(later.frames[i][60]);
            QCOMPARE(int(number), i);
        }
    }

    void what_was_held_back_during_a_receivers_event_loop_goes_with_its_frame()
    {
        FarEnd line;
        Fake fake;
        QVERIFY(fake.link.openSerial(line.node, {}));
        QCOMPARE(line.take(33).size(), 33);
        bool once = false;
        connect(&fake.link, &Link::received, &fake.receiver, [&] {
            if (std::exchange(once, true))
                return;
            fake.plug();
            QTest::qWait(200);
            fake.unplug();
        });
        line.give(QByteArray::fromHex("51 56 FC A7 82 02 00 03 00 00"));
        QTRY_COMPARE(fake.receiver.ends, QList({Link::End::Replaced, Link::End::DeviceGone}));
        QTest::qWait(50);
        QCOMPARE(fake.receiver.heads(3), QByteArrayList({"FC A7 82"}));
    }

    void a_version_reply_over_the_serial_line_changes_nothing()
    {
        FarEnd line;
        Fake fake;
        connect(&fake.link, &Link::received, &fake.link, &Link::takeVersion);
        int came = 0;
        connect(&fake.link, &Link::traffic, &fake.receiver, [&came](const Traffic &traffic) {
            came += traffic.direction == Traffic::Direction::FromFrame &&
                            traffic.over == Traffic::Over::Serial
                        ? 1
                        : 0;
        });
        QVERIFY(fake.link.openSerial(line.node, {}));
        QCOMPARE(line.take(33).size(), 33);
        line.give(QByteArray::fromHex("51 56 FC A3 80 02 00 12 38 01"));
        QTRY_COMPARE(fake.receiver.frames.size(), 1);
        QCOMPARE(came, 1);
        QCOMPARE(hidver.SVNNUM, 0u);
        fake.plug();
        line.give(QByteArray::fromHex("51 56 FC A3 80 02 00 12 38 01"));
        QTRY_VERIFY(fake.receiver.heads(3).count("FC A3 80") == 2);
        QCOMPARE(hidver.SVNNUM, 0u);
    }
};

QTEST_GUILESS_MAIN(TestLink)
#include "tst_link.moc"
