// The reader, the writer and a receiver that is busy, on a simulated frame.

#include "device/readreportthread.h"
#include "device/writereportthread.h"
#include "sim/sim_adapter.h"

#include <QTest>

#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr UCHAR ReportId = 0xFC;

// Stands for the main window: takes every frame that the reader hands over.
class Receiver : public QObject
{
public:
    Receiver(ReadReportThread &reader, Frame &buffer)
    {
        connect(&reader, &ReadReportThread::ReadOver, this, [this, &reader, &buffer] {
            while (reader.takeFrame())
                frames.append(QByteArray(reinterpret_cast<char *>(buffer.data()), FrameSize));
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

    QByteArrayList frames;
};

sim::Profile largest()
{
    sim::Profile profile;
    profile.lightsX = 500;
    profile.lightsY = 350;
    return profile;
}

struct Link
{
    explicit Link(sim::Profile profile, sim::FaultPlan faults = {})
        : adapter(std::move(profile), std::move(faults))
        , reader(received.data())
        , writer(toSend.data())
        , receiver(reader, received)
    {
        reader.setHIDAdapter(&adapter, ReportId);
        writer.setHIDAdapter(&adapter, ReportId);
    }
    void open()
    {
        adapter.DoFindDev(QString(), true);
        reader.start();
    }
    void close()
    {
        reader.terminate();
        reader.wait();
        writer.terminate();
        writer.wait();
        adapter.CloseDevice();
        reader.discardWaiting();
    }
    void send(const QByteArray &bytes)
    {
        writer.wait();
        toSend = {};
        memcpy(toSend.data(), bytes.constData(), size_t(bytes.size()));
        writer.start();
    }

    sim::SimAdapter adapter;
    Frame received{};
    Frame toSend{};
    ReadReportThread reader;
    writereportthread writer;
    Receiver receiver;
};

} // namespace

class tst_link : public QObject
{
    Q_OBJECT

private slots:
    void every_page_of_a_scan_arrives_through_a_receiver_busy_for_two_seconds()
    {
        Link link(largest());
        link.open();
        link.send(QByteArray::fromHex("00 A5 00"));
        link.send(QByteArray::fromHex("00 A5 01"));
        std::this_thread::sleep_for(2s);
        // Ten pages of 55 lights, each read at least once meanwhile.
        QTRY_COMPARE(link.receiver.pages(),
                     QList<int>({0, 55, 110, 165, 220, 275, 330, 385, 440, 495}));
        QCOMPARE(link.reader.droppedFrames(), quint64(0));
        link.close();
    }

    void frames_are_whole_while_both_threads_and_touches_are_at_work()
    {
        Link link(largest());
        link.open();
        const auto end = std::chrono::steady_clock::now() + 3s;
        while (std::chrono::steady_clock::now() < end) {
            link.send(QByteArray::fromHex("00 A5 00"));
            link.send(QByteArray::fromHex("00 A5 01"));
            link.adapter.touch(QPoint(10, 10));
            QTest::qWait(100);
        }
        link.close();
        // Every light of this frame is well lit: a torn page would show dark ones.
        int pages = 0;
        for (const QByteArray &frame : link.receiver.frames) {
            if (!frame.startsWith("\xFC\xA5\x81"))
                continue;
            ++pages;
            const int first = UCHAR(frame[5]) | UCHAR(frame[6]) << 8;
            // 55 lights on a page, the last of 500 has five.
            const int lights = first == 495 ? 5 : 55;
            for (int i = 0; i < lights; ++i)
                QVERIFY(UCHAR(frame[7 + i]) > 150);
        }
        QVERIFY(pages > 10);
    }

    void nothing_of_a_removed_device_arrives()
    {
        Link link(sim::Profile{});
        for (int round = 0; round < 10; ++round) {
            link.adapter.plug();
            link.open();
            link.send(QByteArray::fromHex("00 A3 00"));
            QTRY_VERIFY(!link.receiver.frames.isEmpty());
            std::this_thread::sleep_for(100ms);
            link.adapter.unplug();
            link.close();
            link.receiver.frames.clear();
            QTest::qWait(20);
            QVERIFY(link.receiver.frames.isEmpty());
        }
    }

    void an_unplug_in_the_middle_of_a_stall_ends_the_stall()
    {
        QString problem;
        const auto plan = sim::FaultPlan::parse(QStringLiteral("at 3 stall 60s"),
                                                QStringLiteral("plan"), &problem);
        QVERIFY2(plan, qPrintable(problem));
        Link link(sim::Profile{}, *plan);
        link.open();
        QTRY_VERIFY(link.adapter.transfers() >= 3);
        std::this_thread::sleep_for(50ms);
        const auto begin = std::chrono::steady_clock::now();
        link.adapter.unplug();
        link.close();
        QVERIFY(std::chrono::steady_clock::now() - begin < 30s);
    }
};

QTEST_GUILESS_MAIN(tst_link)
#include "tst_link.moc"
