// SPDX-License-Identifier: GPL-3.0-or-later

// Every window on frames whose transfers fail, one after the other: nothing blocks for longer than
// a window's own pauses, no value is shown that the frame has not told, and the next frame that is
// well is believed. What becomes of a window is a word in the table of docs/reliability.md, which
// is read here.
//
// A run mostly waits, so several run at once, each in a process of its own: this program, called
// with a link, a window, a fault and a transfer, prints what became of it.

#include "resources/resources.h"
#include "tests/support/runs.h"
#include "tried/run.h"

#include <QFile>
#include <QLoggingCategory>
#include <QTest>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tried;

namespace {

constexpr int RunsAtOnce = 8;
constexpr int StillMs = 1500;    // that the windows may stand still besides their own pauses
constexpr int SampleStride = 14; // of cells; it shares no factor with the faults of a link

} // namespace

class TestWindowFaults : public QObject
{
    Q_OBJECT

private:
    QHash<QStringList, QString> words; // of the tables, by link, window and fault
    Runs runs{RunsAtOnce};

    static QList<QStringList> allCells()
    {
        QList<QStringList> cells;
        for (const QString &link : {u"usb"_s, u"serial"_s}) {
            for (const Window &window : Windows) {
                for (const Fault &fault : Faults) {
                    if (link == u"serial"_s || fault.link != Fault::LineOnly)
                        cells += {link, window.name, fault.name};
                }
            }
        }
        return cells;
    }
    static QList<QStringList> runsOf(const QStringList &cell)
    {
        const Window &window = *named(Windows, cell[1]);
        const Fault &fault = *named(Faults, cell[2]);
        int last = fault.stepOn(cell[0]) > 0 ? fault.stepOn(cell[0]) : LastTransfer;
        if (cell[0] == u"serial"_s)
            last = std::min(last, window.transfersOnALine);
        QList<QStringList> all;
        for (int transfer = fault.stride == 1 ? 1 : fault.stride; transfer <= last;
             transfer += fault.stride)
            all += cell + QStringList{QString::number(transfer)};
        if (all.isEmpty())
            all += cell + QStringList{u"1"_s};
        return all;
    }
    // What is wrong with how a run went, by the word in the table.
    static QString problemOf(const QJsonObject &run, const QString &word, const Window &window)
    {
        if (const QString problem = run[u"problem"_s].toString(); !problem.isEmpty())
            return problem;
        const int stillMs = run[u"stillMs"_s].toInt();
        if (stillMs > StillMs + window.pauseMs + run[u"machineMs"_s].toInt())
            return u"the windows stood still for %1 ms"_s.arg(stillMs);
        const bool closed = run[u"closed"_s].toBool();
        const bool unknown = run[u"unknown"_s].toBool();
        if (run[u"lost"_s].toBool() && closed != (word == u"closes"_s))
            return closed ? u"it closes"_s : u"it does not close"_s;
        if (run[u"wasAway"_s].toBool() && !closed && unknown != word.startsWith(u"unknown"_s))
            return unknown ? u"it shows nothing"_s : u"it shows something"_s;
        if (run[u"agains"_s].toInt() > 0 && !word.endsWith(u"again"_s))
            return u"it has to be done again"_s;
        return {};
    }

private slots:
    void initTestCase()
    {
        QFile page(QStringLiteral(QUORVEL_RELIABILITY));
        QVERIFY(page.open(QIODevice::ReadOnly));
        QString link;
        QStringList titles;
        for (const QString &line : QString::fromUtf8(page.readAll()).split(u'\n')) {
            if (line.startsWith(u"## "_s))
                link = line == u"## By USB"_s             ? u"usb"_s
                       : line == u"## On a serial line"_s ? u"serial"_s
                                                          : QString();
            QStringList cells = line.split(u'|');
            if (link.isEmpty() || cells.size() < 3)
                continue;
            for (QString &cell : cells)
                cell = cell.trimmed();
            if (cells[1] == u"Fault"_s)
                titles = cells;
            else if (named(Faults, cells[1]))
                for (qsizetype i = 2; i < std::min(cells.size(), titles.size()); ++i)
                    words[{link, titles[i], cells[1]}] = cells[i];
        }
    }

    void the_tables_have_a_word_for_every_window_and_fault_and_no_other()
    {
        QStringList missing;
        const QStringList known{u"goes on"_s, u"again"_s, u"closes"_s, u"unknown"_s,
                                u"unknown, again"_s};
        int cells = 0;
        for (const QStringList &cell : allCells()) {
            ++cells;
            if (!known.contains(words.value(cell)))
                missing += cell.join(u", "_s);
        }
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(u'\n')));
        QCOMPARE(words.size() - words.values().count(QString()), cells);
    }

    void every_window_with_every_fault_data()
    {
        QTest::addColumn<QList<QStringList>>("all");
        for (const QStringList &cell : allCells())
            QTest::addRow("%s", qPrintable(cell.join(u", "_s))) << runsOf(cell);
    }
    void every_window_with_every_fault() { checkRow(); }

    // For every day: each window by each link, one fault after the other, at one transfer. All of
    // them begin at once.
    void a_sample_data()
    {
        QTest::addColumn<QList<QStringList>>("all");
        const QList<QStringList> cells = allCells();
        for (qsizetype i = 0; i < cells.size(); i += SampleStride) {
            const QList<QStringList> all = runsOf(cells[i]);
            const QStringList run = all[all.size() / 3];
            runs.add(run);
            QTest::addRow("%s", qPrintable(run.join(u", "_s))) << QList<QStringList>{run};
        }
    }
    void a_sample() { checkRow(); }

private:
    void checkRow()
    {
        QFETCH(const QList<QStringList>, all);
        for (const QStringList &run : all)
            runs.add(run);
        int reached = 0;
        QStringList problems;
        for (const QStringList &run : all) {
            const QJsonObject result = runs.take(run);
            const QString what =
                problemOf(result, words.value(run.first(3)), *named(Windows, run[1]));
            if (!what.isEmpty())
                problems += u"at transfer %1: %2"_s.arg(run[3], what);
            reached += result[u"reached"_s].toBool() ? 1 : 0;
        }
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u'\n')));
        QVERIFY(reached > 0);
    }
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--run"_s && arguments.size() == 6) {
        const Window *window = named(Windows, arguments[3]);
        const Fault *fault = named(Faults, arguments[4]);
        if (!window || !fault)
            return 2;
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QLoggingCategory::setFilterRules(u"quorvel.*=false"_s);
        Run run(arguments[2], *window, *fault, arguments[5].toInt());
        const QByteArray result = QJsonDocument(run.result()).toJson(QJsonDocument::Compact);
        std::printf("\n%s", result.constData());
        return 0;
    }
    TestWindowFaults test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_window_faults.moc"
