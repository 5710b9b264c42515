// SPDX-License-Identifier: GPL-3.0-or-later

#include "capture/history.h"
#include "capture/reader.h"
#include "sim/replay.h"
#include "sim/sim_adapter.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using capture::History;
using capture::Kind;
using capture::Record;

namespace {

void ask(Link &link, const QByteArray &hex)
{
    Frame frame{};
    const QByteArray bytes = QByteArray::fromHex(hex);
    std::copy(bytes.begin(), bytes.end(), frame.begin());
    link.send(frame.data());
}

bool isRotation(const Record &record)
{
    return record.kind == Kind::FromFrame && record.frame[1] == 0xA7 && record.frame[2] == 0x82;
}

} // namespace

class TestLastMinute : public QObject
{
    Q_OBJECT

private slots:
    void the_last_frames_are_a_recording_that_can_be_replayed()
    {
        Link link(std::make_shared<sim::SimAdapter>(sim::Profile()));
        const History history(link);
        link.start();
        ask(link, "00 A7 02");
        std::deque<Record> kept;
        const auto isAnswered = [&] {
            kept = history.records();
            return std::any_of(kept.cbegin(), kept.cend(), isRotation);
        };
        QTRY_VERIFY(isAnswered());
        QVERIFY(kept.front().kind == Kind::LinkBegan);

        QString problem;
        const QByteArray bytes = history.recording(&problem);
        QVERIFY2(!bytes.isEmpty(), qPrintable(problem));
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"frames.pcap"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
        file.close();
        const auto reader = capture::Reader::open(file.fileName(), &problem);
        QVERIFY2(reader, qPrintable(problem));
        for (const Record &record : kept) {
            const std::optional<Record> read = reader->next();
            QVERIFY2(read == record, qPrintable(reader->problem()));
        }
        auto replay = sim::Replay::load(
            file.fileName(), [] { return std::chrono::milliseconds(0); }, &problem);
        QVERIFY2(replay.has_value(), qPrintable(problem));
        QCOMPARE(replay->commands(), 1);
    }

    void a_link_that_says_too_much_is_kept_in_bounds()
    {
        Link link(std::make_shared<sim::SimAdapter>(
            sim::Profile(), sim::FaultPlan(),
            sim::SimOptions{.plugged = true, .paced = false, .clock = {}}));
        const History history(link);
        link.start();
        // Without pauses a frame says in a moment what it says in minutes otherwise.
        QTRY_VERIFY_WITH_TIMEOUT(!history.records().empty() &&
                                     history.records().front().kind != Kind::LinkBegan,
                                 30'000);
        QCOMPARE(history.records().size(), History::MaxRecords);
    }

    void what_is_older_than_its_span_is_forgotten()
    {
        Link link(std::make_shared<sim::SimAdapter>(sim::Profile()));
        const History history(link, std::chrono::milliseconds(400));
        link.start();
        QTRY_VERIFY(history.records().size() >= 3);
        QTRY_VERIFY(history.records().front().kind != Kind::LinkBegan);
        QVERIFY(history.records().back().time - history.records().front().time <=
                std::chrono::milliseconds(400));
        link.end();
        QTRY_COMPARE(history.records().size(), size_t(0));
    }

    void without_traffic_there_is_an_empty_recording()
    {
        Link link(std::make_shared<sim::SimAdapter>(
            sim::Profile(), sim::FaultPlan(),
            sim::SimOptions{.plugged = false, .paced = true, .clock = {}}));
        const History history(link);
        link.start();
        QString problem;
        QCOMPARE(history.recording(&problem).size(), 24); // the header of a capture file
        QCOMPARE(problem, QString());
    }
};

QTEST_GUILESS_MAIN(TestLastMinute)
#include "tst_lastminute.moc"
