#include "device/readreportthread.h"
#include "device/writereportthread.h"
#include "tests/support/capture.h"
#include "tests/support/fakeadapter.h"

#include <QTest>

#include <algorithm>
#include <thread>

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

} // namespace

class tst_threads : public QObject
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
        QVERIFY(reader.takeFrame());
        QCOMPARE(buffer[0], UCHAR(0xFC));
        QCOMPARE(buffer[1], UCHAR(0xA7));
        QCOMPARE(FakeAdapter::numberOf(buffer.data()), 1);
    }

    void the_buffer_changes_only_when_a_frame_is_taken()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(adapter.reads >= 5);
        QCOMPARE(FakeAdapter::numberOf(buffer.data()), 0);
        QVERIFY(reader.takeFrame());
        QCOMPARE(FakeAdapter::numberOf(buffer.data()), 1);
    }

    void every_report_arrives_once_and_in_order_through_a_blocked_receiver()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        std::this_thread::sleep_for(2s);
        reader.terminate();
        QVERIFY(reader.wait());
        int expected = 0;
        while (reader.takeFrame())
            QCOMPARE(FakeAdapter::numberOf(buffer.data()), ++expected);
        QCOMPARE(expected, adapter.reads.load());
        QVERIFY(expected > 100);
        QCOMPARE(reader.droppedFrames(), quint64(0));
    }

    void a_full_queue_drops_the_oldest_counts_them_and_says_so()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        QTest::ignoreMessage(QtWarningMsg,
                             "1024 reports of the touch frame wait unread: the oldest are dropped");
        reader.start();
        QTRY_VERIFY_WITH_TIMEOUT(adapter.reads > 1100, 60000);
        reader.terminate();
        QVERIFY(reader.wait());
        const int reads = adapter.reads;
        QCOMPARE(reader.droppedFrames(), quint64(reads - 1024));
        int expected = reads - 1024;
        while (reader.takeFrame())
            QCOMPARE(FakeAdapter::numberOf(buffer.data()), ++expected);
        QCOMPARE(expected, reads);
    }

    void discarded_reports_are_never_handed_over()
    {
        FakeAdapter adapter;
        Frame buffer{};
        ReadReportThread reader(buffer.data());
        reader.setHIDAdapter(&adapter, ReportId);
        reader.start();
        QTRY_VERIFY(adapter.reads >= 3);
        reader.terminate();
        QVERIFY(reader.wait());
        reader.discardWaiting();
        QVERIFY(!reader.takeFrame());
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

    void destroying_a_running_reader_ends_it_and_tells()
    {
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

    void a_started_writer_sends_one_frame_no_sooner_than_after_50_milliseconds()
    {
        FakeAdapter adapter;
        Frame frame{0x00, 0xA7, 0x00, 0x02, 0x00, 0x02};
        writereportthread writer(frame.data());
        writer.setHIDAdapter(&adapter, ReportId);
        const Codes over(writer, &writereportthread::WriteOver);
        for (int i = 0; i < 15; ++i) {
            adapter.forgetSent();
            const auto begin = std::chrono::steady_clock::now();
            writer.start();
            QVERIFY(writer.wait());
            QCOMPARE(adapter.sentBytes(), QList<QByteArray>({"a7 00 02 00 02 00 00 00"}));
            QVERIFY(adapter.sent().first().when - begin >= 50ms);
        }
        QTRY_COMPARE(over.codes, QList<int>(15, 2)); // 2: success
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

    void the_frame_is_copied_before_the_pause()
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
};

QTEST_GUILESS_MAIN(tst_threads)
#include "tst_threads.moc"
