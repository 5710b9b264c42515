// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/readreportthread.h"
#include "device/writereportthread.h"
#include "tests/support/capture.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/quickest.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr UCHAR ReportId = 0xFC;

template <typename Durations>
double medianMs(Durations times)
{
    std::sort(times.begin(), times.end());
    return std::chrono::duration<double, std::milli>(times[times.size() / 2]).count();
}

// The completion codes of a thread's cycles, on the receiver's thread.
class Codes : public QObject
{
public:
    template <typename Thread>
    Codes(const Thread &thread, void (Thread::*over)(QChar))
    {
        connect(&thread, over, this, [this](QChar code) { codes.append(code.unicode()); });
    }
    QList<int> codes;
};

// The numbers of the reports that a reader tells of, as its buffer has them then.
class Numbers : public QObject
{
public:
    Numbers(const ReadReportThread &reader, const Frame &buffer)
    {
        connect(&reader, &ReadReportThread::ReadOver, this,
                [this, &buffer] { numbers.append(FakeAdapter::numberOf(buffer.data())); });
    }
    QList<int> numbers;
};

} // namespace

class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void a_cycle_reads_a_report_and_tells()
    {
        FakeAdapter adapter;
        adapter.setReport("\xFC\xA7\x82");
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        const Codes over(reader, &ReadReportThread::ReadOver);
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(over.codes.size() >= 3);
        QCOMPARE(over.codes.first(), 1);
        QCOMPARE(buffer[0], UCHAR(0xFC));
        QCOMPARE(buffer[1], UCHAR(0xA7));
        QVERIFY(FakeAdapter::numberOf(buffer.data()) >= 3);
    }

    void the_buffer_holds_each_report_when_it_is_told_of()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        const Numbers heard(reader, buffer);
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        while (adapter.reads < 5) // without an event loop nothing is delivered
            std::this_thread::sleep_for(1ms);
        QCOMPARE(FakeAdapter::numberOf(buffer.data()), 0);
        QTRY_VERIFY(heard.numbers.size() >= 5);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(heard.numbers[i], i + 1);
    }

    void reports_are_told_of_on_the_thread_that_made_the_reader()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        QList<QThread *> threads;
        connect(
            &reader, &ReadReportThread::ReadOver, &reader,
            [&threads] { threads.append(QThread::currentThread()); }, Qt::DirectConnection);
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(threads.size() >= 3);
        for (const QThread *thread : threads)
            QCOMPARE(thread, QThread::currentThread());
    }

    void every_report_arrives_once_whole_and_in_order_through_a_receiver_blocked_for_two_seconds()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        const Numbers heard(reader, buffer);
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        std::this_thread::sleep_for(2s);
        reader.terminate();
        QVERIFY(reader.wait());
        QCOMPARE(heard.numbers.size(), 0);
        QTRY_COMPARE(heard.numbers.size(), qsizetype(adapter.reads.load()));
        for (int i = 0; i < heard.numbers.size(); ++i)
            QCOMPARE(heard.numbers[i], i + 1);
        QVERIFY(heard.numbers.size() > 100);
        QCOMPARE(reader.droppedFrames(), quint64(0));
    }

    void a_receiver_with_an_event_loop_gets_the_next_report_when_all_have_seen_this_one()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        const Numbers before(reader, buffer);
        int depth = 0;
        bool once = false;
        connect(&reader, &ReadReportThread::ReadOver, this, [&] {
            QCOMPARE(depth, 0);
            if (std::exchange(once, true))
                return;
            ++depth;
            QTest::qWait(200);
            --depth;
        });
        const Numbers behind(reader, buffer);
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(behind.numbers.size() > 50);
        QVERIFY(once);
        for (int i = 0; i < 50; ++i) {
            QCOMPARE(before.numbers[i], i + 1);
            QCOMPARE(behind.numbers[i], i + 1);
        }
    }

    void the_buffer_can_be_replaced()
    {
        FakeAdapter adapter;
        Frame first{};
        Frame second{};
        ReadReportThread reader(first.data());
        reader.setReadBuf(second.data());
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(FakeAdapter::numberOf(second.data()) > 0);
        QCOMPARE(FakeAdapter::numberOf(first.data()), 0);
    }

    void a_failed_read_is_told_of_like_any_other()
    {
        FakeAdapter adapter;
        adapter.readsFail = true;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        const Codes over(reader, &ReadReportThread::ReadOver);
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(over.codes.size() >= 3);
        QCOMPARE(over.codes.first(), 1);
    }

    void a_full_queue_drops_the_oldest_counts_them_and_says_so()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        QTest::ignoreMessage(QtWarningMsg,
                             "1024 reports of the touch frame wait unread: the oldest are dropped");
        const Numbers heard(reader, buffer);
        reader.start();
        while (adapter.reads <= 1100) // without an event loop nothing is delivered
            std::this_thread::sleep_for(10ms);
        reader.terminate();
        QVERIFY(reader.wait());
        const int reads = adapter.reads;
        QCOMPARE(reader.droppedFrames(), quint64(reads - 1024));
        QTRY_COMPARE(heard.numbers.size(), 1024);
        for (int i = 0; i < 1024; ++i)
            QCOMPARE(heard.numbers[i], reads - 1024 + i + 1);
    }

    void discarded_reports_are_never_handed_over()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        while (adapter.reads < 3)
            std::this_thread::sleep_for(1ms);
        reader.terminate();
        QVERIFY(reader.wait());
        reader.discardWaiting();
        const Codes over(reader, &ReadReportThread::ReadOver);
        QTest::qWait(50);
        QCOMPARE(over.codes.size(), 0);
        QCOMPARE(FakeAdapter::numberOf(buffer.data()), 0);
    }

    void terminate_lets_the_call_finish()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        adapter.stallReads(true);
        reader.start();
        QTRY_COMPARE(adapter.nowReading.load(), 1);
        reader.terminate();
        std::this_thread::sleep_for(50ms);
        QVERIFY(reader.isRunning());
        QCOMPARE(adapter.nowReading.load(), 1);
        adapter.stallReads(false);
        QVERIFY(reader.wait());
        QCOMPARE(adapter.nowReading.load(), 0);
        QCOMPARE(adapter.reads.load(), 1);
    }

    void a_terminated_reader_starts_again()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        for (int round = 1; round <= 20; ++round) {
            const int before = adapter.reads;
            reader.start();
            QTRY_VERIFY(adapter.reads > before);
            reader.terminate();
            QVERIFY(reader.wait());
            QVERIFY(reader.isFinished());
        }
    }

    void starting_a_reader_that_was_asked_to_end_does_not_revive_it()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        adapter.stallReads(true);
        reader.start();
        QTRY_COMPARE(adapter.nowReading.load(), 1);
        reader.terminate();
        QVERIFY(reader.start());
        adapter.stallReads(false);
        QVERIFY(reader.wait(QDeadlineTimer(5s)));
        QCOMPARE(adapter.reads.load(), 1);
    }

    void waiting_is_bounded_as_asked()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QVERIFY(!reader.wait(10UL));
        QVERIFY(!reader.wait(QDeadlineTimer(10ms)));
        reader.terminate();
        QVERIFY(reader.wait(5000UL));
        QVERIFY(reader.wait(QDeadlineTimer(0ms)));
    }

    void destroying_a_running_reader_ends_it_and_tells()
    {
        QTest::failOnWarning(QRegularExpression(u"is killed"_s));
        FakeAdapter adapter;
        Frame buffer{};
        int told = 0;
        {
            ReadReportThread reader(buffer.data());
            connect(&reader, &ReadReportThread::terminated, this, [&told] { ++told; });
            reader.setHIDAdapter(&adapter, ReportId);
            reader.start();
            QTRY_VERIFY(adapter.reads > 0);
        }
        QCOMPARE(told, 1);
        const int reads = adapter.reads;
        std::this_thread::sleep_for(20ms);
        QCOMPARE(adapter.reads.load(), reads);
    }

    void a_cycle_takes_no_less_than_67_milliseconds()
    {
        FakeAdapter adapter;
        adapter.paced = true;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        std::vector<std::chrono::nanoseconds> cycles;
        std::mutex lock;
        auto last = std::chrono::steady_clock::time_point();
        connect(
            &reader, &ReadReportThread::ReadOver, &reader,
            [&] {
                const auto now = std::chrono::steady_clock::now();
                const std::lock_guard guard(lock);
                if (last.time_since_epoch().count() != 0)
                    cycles.push_back(now - last);
                last = now;
            },
            Qt::DirectConnection);
        reader.start();
        QTRY_VERIFY_WITH_TIMEOUT(adapter.reads >= 32, 10000);
        reader.terminate();
        QVERIFY(reader.wait());
        const double median = medianMs(cycles);
        QVERIFY2(median >= 66.99, qPrintable(QString::number(median)));
    }

    void a_reader_rests_for_3_milliseconds()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(adapter.reads >= 50);
        QVERIFY(adapter.shortestRest() >= 3ms);
        // A busy machine makes any single one longer.
        QTRY_VERIFY_WITH_TIMEOUT(adapter.shortestRest() < 4ms, 15000);
    }

    void a_started_writer_sends_one_frame_no_sooner_than_after_50_milliseconds()
    {
        FakeAdapter adapter;
        Frame frame{0x00, 0xA7, 0x00, 0x02, 0x00, 0x02};
        writereportthread writer(frame.data());
        writer.setHIDAdapter(&adapter, ReportId);
        const Codes over(writer, &writereportthread::WriteOver);
        int tries = 0;
        const auto pause = quickest(51ms, [&] {
            ++tries;
            const auto begin = FakeAdapter::Clock::now();
            writer.start();
            writer.wait();
            return adapter.sent().last().when - begin;
        });
        QVERIFY(pause >= 50ms);
        QVERIFY(pause < 51ms);
        QCOMPARE(adapter.sentBytes(), QList<QByteArray>(tries, "a7 00 02 00 02 00 00 00"));
        QTRY_COMPARE(over.codes, QList<int>(tries, 2)); // 2: success
    }

    void a_failed_send_is_told_two_milliseconds_later_and_a_good_one_at_once_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::newRow("failed") << true;
        QTest::newRow("good") << false;
    }
    void a_failed_send_is_told_two_milliseconds_later_and_a_good_one_at_once()
    {
        QFETCH(const bool, fails);
        FakeAdapter adapter;
        adapter.sendFails = fails;
        Frame frame{};
        writereportthread writer(frame.data());
        writer.setHIDAdapter(&adapter, ReportId);
        std::atomic<FakeAdapter::Clock::time_point> told;
        connect(
            &writer, &writereportthread::WriteOver, &writer,
            [&told] { told = FakeAdapter::Clock::now(); }, Qt::DirectConnection);
        const auto pause = quickest(fails ? 3ms : 2ms, [&] {
            writer.start();
            writer.wait();
            return told.load() - adapter.sent().last().when;
        });
        QCOMPARE(pause >= 2ms, fails);
        QVERIFY(pause < 3ms);
    }

    void a_failed_send_is_told_as_1()
    {
        FakeAdapter adapter;
        adapter.sendFails = true;
        Frame frame{};
        writereportthread writer(frame.data());
        writer.setHIDAdapter(&adapter, ReportId);
        const Codes over(writer, &writereportthread::WriteOver);
        writer.start();
        QTRY_COMPARE(over.codes, QList<int>({1}));
    }

    void a_writer_asked_to_end_during_its_pause_sends_nothing()
    {
        FakeAdapter adapter;
        Frame frame{};
        writereportthread writer(frame.data());
        writer.setHIDAdapter(&adapter, ReportId);
        const Codes over(writer, &writereportthread::WriteOver);
        writer.start();
        writer.terminate();
        QVERIFY(writer.wait());
        QCOMPARE(adapter.sent().size(), 0);
        QTest::qWait(20);
        QCOMPARE(over.codes, QList<int>());
    }

    void a_writer_asked_to_end_during_its_send_finishes_it_and_tells_nobody()
    {
        FakeAdapter adapter;
        adapter.stallSends(true);
        Frame frame{};
        writereportthread writer(frame.data());
        writer.setHIDAdapter(&adapter, ReportId);
        const Codes over(writer, &writereportthread::WriteOver);
        writer.start();
        QTRY_COMPARE(adapter.nowSending.load(), 1);
        writer.terminate();
        adapter.stallSends(false);
        QVERIFY(writer.wait());
        QCOMPARE(adapter.sent().size(), 1);
        QVERIFY(writer.outcome() == writereportthread::Outcome::Sent);
        QTest::qWait(20);
        QCOMPARE(over.codes, QList<int>());
    }

    void a_writer_that_goes_during_its_send_finishes_it_first()
    {
        FakeAdapter adapter;
        adapter.stallSends(true);
        Frame frame{};
        std::thread later;
        int told = 0;
        {
            writereportthread writer(frame.data());
            connect(&writer, &writereportthread::terminated, this, [&told] { ++told; });
            writer.setHIDAdapter(&adapter, ReportId);
            writer.start();
            QTRY_COMPARE(adapter.nowSending.load(), 1);
            later = std::thread([&adapter] {
                std::this_thread::sleep_for(20ms);
                adapter.stallSends(false);
            });
        }
        const auto sent = adapter.sent().size();
        later.join();
        QCOMPARE(sent, 1);
        QCOMPARE(told, 1);
    }

    void another_buffer_can_be_sent()
    {
        FakeAdapter adapter;
        Frame first{0x00, 0xA3};
        Frame second{0x00, 0xA5};
        writereportthread writer(first.data());
        writer.setWriteBuf(second.data());
        writer.setHIDAdapter(&adapter, ReportId);
        writer.start();
        QVERIFY(writer.wait());
        QCOMPARE(adapter.sentBytes(1), QList<QByteArray>({"a5"}));
    }

    void the_frame_is_copied_before_the_pause()
    {
        FakeAdapter adapter;
        Frame frame{};
        writereportthread writer(frame.data());
        writer.setHIDAdapter(&adapter, ReportId);
        bool changed = false;
        // The pause lasts 50 ms; the copy is made as soon as the thread runs.
        connect(
            &writer, &QThread::started, &writer,
            [&] {
                std::this_thread::sleep_for(25ms);
                frame[1] = 0xA5;
                changed = true;
            },
            Qt::QueuedConnection);
        // More than once if need be: on a busy machine the thread may run late.
        for (int i = 0; i < 5 && !adapter.sentBytes(1).contains("a3"); ++i) {
            changed = false;
            frame[1] = 0xA3;
            writer.start();
            QTRY_VERIFY(changed);
            QVERIFY(writer.wait());
        }
        QCOMPARE(adapter.lastSent(1), "a3");
    }
};

QTEST_GUILESS_MAIN(TestThreads)
#include "tst_threads.moc"
