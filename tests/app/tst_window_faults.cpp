// SPDX-License-Identifier: GPL-3.0-or-later

// Every window on frames whose transfers fail, one after the other: nothing blocks for longer than
// a window's own pauses, no value is shown that the frame has not told, and the next frame that is
// well is believed. What becomes of a window is a word in the table of docs/reliability.md, which
// is read here.
//
// A run mostly waits, so several run at once, each in a process of its own: this program, called
// with a link, a window, a fault and a transfer, prints what became of it.

#include "config/xml_class.h"
#include "resources/resources.h"
#include "triedwindows.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int RunsAtOnce = 8;
constexpr int LastTransfer = 60;
constexpr int StillMs = 1500;    // that the windows may stand still besides their own pauses
constexpr int SampleStride = 14; // of cells; it shares no factor with the faults of a link
constexpr int MostMs = 120000;   // of a run
constexpr int PatienceMs = 10000;
constexpr int OverMs = 600; // after which a fault that begins is over
constexpr int QuietMs = 2500;

struct Window
{
    QString name;
    std::unique_ptr<TriedWindow> (*make)(MainWindow &, TriedFrame &, Reported &);
    int pauseMs;          // of its own
    int patienceMs;       // of the user, before he does it again
    int transfersOnALine; // that come of working in it for a while
    bool isQuiet = false; // somebody else asks, on a line
};

template <typename Tried>
std::unique_ptr<TriedWindow> make(MainWindow &main, TriedFrame &frame, Reported &reported)
{
    return std::make_unique<Tried>(main, frame, reported);
}

const QList<Window> Windows{
    {u"The others"_s, make<BystandersTried>, 0, 3000, 12, true},
    {u"Calibration"_s, make<CalibrationTried>, 0, 5000, 60},
    {u"Gestures"_s, make<GesturesTried>, 0, 2000, 12},
    {u"Rotation"_s, make<RotationTried>, 1000, 2000, 24},
    {u"Versions"_s, make<VersionsTried>, 0, 2000, 12, true},
    {u"Signal test"_s, make<SignalTestTried>, 0, 8000, 60},
    {u"Light screen"_s, make<LightScreenTried>, 0, 8000, 60},
    {u"Light check"_s, make<LightCheckTried>, 0, 25000, 60},
    {u"Connection"_s, make<ConnectionTried>, 0, 4000, 4},
};

struct Fault
{
    enum Link { Both, LineOnly };
    QString name;
    QString line; // of a plan, with %1 for the transfer; empty: something else, see Run
    int step;     // a run spoils each so many transfers; 0: one only
    int stepOnALine;
    int stride = 1; // from one run to the next
    int lasts = 1;  // transfers
    Link link = Both;
    int agains = 3; // that it may take until all is well

    int stepOn(const QString &which) const { return which == u"serial"_s ? stepOnALine : step; }
};

// By USB transfers come all the time, and a question that one of them spoils can be repeated
// before the next; on a line nothing comes until the user does it again.
const QList<Fault> Faults{
    {u"Stall"_s, u"at %1 stall 500ms"_s, 20, 0},
    {u"Late"_s, u"at %1 late 500ms"_s, 20, 20},
    {u"Torn"_s, u"at %1 torn"_s, 5, 5},
    {u"Repeated"_s, u"at %1 repeat"_s, 5, 5},
    {u"Silent"_s, u"at %1 silent 5"_s, 0, 0, 5, 5},
    {u"Unplugged, then another"_s, u"at %1 unplug"_s, 0, 0},
    {u"Back after 0.1 s"_s, u"at %1 unplug back 100ms"_s, 0, 0},
    {u"Back after 3 s"_s, u"at %1 unplug back 3s"_s, 0, 0},
    {u"Reset"_s, {}, 0, 0, 5},
    {u"Scan asked for early, the last one dropped"_s, {}, 0, 0, LastTransfer},
    {u"Scan asked for early, the last one finished"_s, {}, 0, 0, LastTransfer},
    {u"Noise"_s, u"at %1 noise 5"_s, 0, 0, 1, 1, Fault::LineOnly},
    // What is sent next may be taken for the rest of a frame, which is told to be up to 84 bytes
    // long then: ten commands of a calibration.
    {u"Lost bytes"_s, u"at %1 lose 3"_s, 0, 0, 1, 1, Fault::LineOnly, 12},
};

template <typename Named>
const Named *named(const QList<Named> &list, const QString &name)
{
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const Named &one) { return one.name == name; });
    return found == list.end() ? nullptr : &*found;
}

// How long the GUI thread does nothing at most, and a thread beside it: so long the machine itself
// had no time for this program.
class Heartbeat : public QObject
{
public:
    explicit Heartbeat(std::function<void()> onBeat)
        : deed(std::move(onBeat))
        , beside([this] {
            QElapsedTimer time;
            while (!ended) {
                time.start();
                std::this_thread::sleep_for(Period);
                machineMs = std::max(machineMs.load(), int(time.elapsed()));
            }
        })
    {
        sinceBeat.start();
        startTimer(Period, Qt::PreciseTimer);
    }
    ~Heartbeat() override
    {
        ended = true;
        beside.join();
    }
    int longestMs = 0;
    std::atomic<int> machineMs = 0;

protected:
    void timerEvent(QTimerEvent *) override
    {
        longestMs = std::max(longestMs, int(sinceBeat.elapsed()));
        sinceBeat.start();
        deed();
    }

private:
    static constexpr auto Period = 20ms;

    std::function<void()> deed;
    QElapsedTimer sinceBeat;
    std::atomic<bool> ended = false;
    std::thread beside;
};

// One window, one fault.
class Run
{
public:
    Run(const QString &link, Window theWindow, Fault theFault, int theTransfer)
        : window(std::move(theWindow))
        , fault(std::move(theFault))
        , transfer(theTransfer)
    {
        QDir(home.path()).mkdir(u".config"_s);
        XML_CLASS::useHome(home.path());
        QDir::setCurrent(home.path());
        sim::Profile profile = TriedFrame::usual();
        if (fault.name.endsWith(u"finished"_s))
            profile.earlyRequest = sim::EarlyRequest::Finishes;
        const bool isLine = link == u"serial"_s;
        const int step = fault.stepOn(link) > 0 ? fault.stepOn(link) : LastTransfer;
        const int last = isLine ? window.transfersOnALine : LastTransfer;
        QStringList lines;
        for (int at = transfer; at == transfer || at <= last; at += step) {
            if (!fault.line.isEmpty())
                lines += fault.line.arg(at);
            lastFault = at + fault.lasts - 1;
        }
        const auto plan = sim::FaultPlan::parse(lines.join(u'\n'), u"plan"_s, &problem,
                                                isLine ? sim::FaultPlan::Link::Serial
                                                       : sim::FaultPlan::Link::Usb);
        if (!plan)
            return;
        if (isLine)
            frame = std::make_unique<LineTriedFrame>(profile, *plan, home.filePath(u"frame"_s));
        else
            frame = std::make_unique<UsbTriedFrame>(profile, *plan);
        main = std::make_unique<MainWindow>(frame->adapter());
        frame->attachTo(*main);
        QObject::connect(main->findChild<Link *>(), &Link::traffic, main.get(),
                         [this](const Traffic &traffic) {
                             if (traffic.direction == Traffic::Direction::FromFrame)
                                 reported.take(traffic.frame);
                         });
        QObject::connect(main->findChild<Link *>(), &Link::ended, main.get(), [this] {
            reported.forget();
            ++ends;
            // As long as it is away a window is not opened.
            working = false;
        });
        tried = window.make(*main, *frame, reported);
        main->show();
    }

    QJsonObject result()
    {
        QElapsedTimer time;
        time.start();
        Heartbeat heart([this] { beat(); });
        if (problem.isEmpty())
            goThrough();
        QJsonObject found{{u"problem"_s, problem}, {u"reached"_s, frame && lastReached >= transfer},
                          {u"lost"_s, lost},       {u"closed"_s, closed},
                          {u"unknown"_s, unknown}, {u"wasAway"_s, wasAway},
                          {u"agains"_s, agains}};
        working = false;
        tried.reset();
        main.reset();
        found[u"stillMs"_s] = heart.longestMs;
        found[u"machineMs"_s] = heart.machineMs.load();
        found[u"ms"_s] = int(time.elapsed());
        return found;
    }

private:
    bool isLinked() const
    {
        return main->connectState() == MainWindow::UsbConnected ||
               main->connectState() == MainWindow::SerialOpen;
    }
    void beat()
    {
        if (!working)
            return;
        if (const QString shown = tried->isOpen() ? tried->untrue() : QString();
            !shown.isEmpty() && problem.isEmpty())
            problem = u"it shows what no frame has said: "_s + shown;
        if (window.isQuiet && isLinked() && !frame->port().isEmpty() && ++beats % 8 == 0) {
            Frame query = command::request(command::Rotation, command::rotation::Query);
            main->OnWrite03(query.data());
        }
        if (isLinked() && (tried->isOpen() || opened))
            tried->goOn();
    }
    void connect()
    {
        QElapsedTimer sinceTry;
        const bool isConnected = QTest::qWaitFor(
            [&] {
                if (isLinked())
                    return true;
                const TriedFrame::Held held = frame->held();
                if (!held.plugged && isForGood()) {
                    QTest::qWait(300);
                    frame->plugAnother();
                } else if (held.plugged && !frame->port().isEmpty() &&
                           (!sinceTry.isValid() || sinceTry.hasExpired(300))) {
                    tried->openPort();
                    sinceTry.start();
                }
                return isLinked();
            },
            PatienceMs);
        if (!isConnected)
            fail(u"the frame is not linked again"_s);
    }
    void fail(const QString &what)
    {
        if (problem.isEmpty())
            problem = what;
    }
    bool isForGood() const { return fault.line.endsWith(u"unplug"_s); }
    // Whether the last fault is over, or nothing comes any more by itself.
    bool isPast()
    {
        const int transfers = frame->held().transfers;
        if (transfers > lastReached || !sinceTransfer.isValid())
            sinceTransfer.start();
        lastReached = std::max(lastReached, transfers);
        if (lastReached >= lastFault && !sinceFault.isValid())
            sinceFault.start();
        return (sinceFault.isValid() && sinceFault.hasExpired(OverMs)) ||
               sinceTransfer.hasExpired(QuietMs);
    }

    void goThrough()
    {
        connect();
        const int endsBefore = ends;
        tried->open();
        opened = true;
        working = ends == endsBefore;
        if (!QTest::qWaitFor([&] { return isPast() || ends > endsBefore; }, 2 * PatienceMs))
            fail(u"it never stops asking"_s);
        if (fault.line.isEmpty())
            disturb();
        lost = ends > endsBefore;
        if (lost) {
            lastReached = std::max(lastReached, transfer);
            QTest::qWait(60);
            closed = !tried->isOpen();
            unknown = !closed && tried->isUnknown();
            wasAway = !isLinked(); // still
            if (!closed && wasAway) {
                const QString shown = tried->untrue();
                if (!shown.isEmpty())
                    fail(u"it still shows what the frame has said that is gone: "_s + shown);
            }
            connect();
            if (!tried->isOpen())
                tried->open();
            working = true;
        }
        tried->beginAnew();
        while (!QTest::qWaitFor([&] { return tried->isRight(); }, window.patienceMs)) {
            if (++agains > fault.agains) {
                fail(u"it never shows what the frame is like"_s);
                break;
            }
            connect();
            tried->again();
        }
    }
    // What no plan says.
    void disturb()
    {
        if (fault.name == u"Reset"_s) {
            Frame reset = command::request(command::Settings, command::settings::Reset);
            main->OnWrite03(reset.data());
            reset = command::request(command::OldReset, command::oldreset::Reset);
            main->OnWrite03(reset.data());
            QTest::qWait(300);
            return;
        }
        for (int i = 0; i < 12; ++i) {
            for (const UCHAR axis : {command::scan::AxisX, command::scan::AxisY}) {
                Frame request = command::request(command::Scan, axis);
                main->OnWrite03(request.data());
            }
            QTest::qWait(130);
        }
    }

    const Window window;
    const Fault fault;
    const int transfer;
    int lastFault = 0;
    QTemporaryDir home;
    QString problem;
    std::unique_ptr<TriedFrame> frame;
    Reported reported;
    std::unique_ptr<MainWindow> main;
    std::unique_ptr<TriedWindow> tried;
    bool opened = false;
    bool working = false;
    int beats = 0;
    int ends = 0; // of links
    int lastReached = 0;
    QElapsedTimer sinceTransfer;
    QElapsedTimer sinceFault; // the last one
    bool lost = false;
    bool closed = false;
    bool unknown = false;
    bool wasAway = false;
    int agains = 0;
};

// Runs in processes of their own, in the order that they are asked for in, some ahead.
class Runs
{
public:
    ~Runs()
    {
        for (const auto &[key, process] : running) {
            process->kill();
            process->waitForFinished();
        }
    }
    void add(const QStringList &run)
    {
        if (!known.contains(run))
            waiting += run;
        known.insert(run);
    }
    QJsonObject take(const QStringList &run)
    {
        while (!results.contains(run)) {
            while (int(running.size()) < RunsAtOnce && !waiting.isEmpty())
                begin(waiting.takeFirst());
            QTest::qWait(20);
            std::erase_if(running,
                          [this](const auto &one) { return hasEnded(one.first, *one.second); });
        }
        return results.take(run);
    }

private:
    void begin(const QStringList &run)
    {
        auto process = std::make_unique<QProcess>();
        process->start(QCoreApplication::applicationFilePath(), QStringList{u"--run"_s} + run);
        since[run].start();
        running.emplace_back(run, std::move(process));
    }
    bool hasEnded(const QStringList &run, QProcess &process)
    {
        if (process.state() != QProcess::NotRunning) {
            if (!since[run].hasExpired(MostMs))
                return false;
            process.kill();
            process.waitForFinished();
        }
        QJsonObject result =
            QJsonDocument::fromJson(process.readAllStandardOutput().split('\n').last()).object();
        if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0 ||
            result.isEmpty())
            result = {{u"problem"_s, u"it crashed, or hung: "_s +
                                         QString::fromUtf8(process.readAllStandardError())}};
        results[run] = result;
        return true;
    }

    QSet<QStringList> known;
    QList<QStringList> waiting;
    std::vector<std::pair<QStringList, std::unique_ptr<QProcess>>> running;
    QHash<QStringList, QElapsedTimer> since;
    QHash<QStringList, QJsonObject> results;
};

} // namespace

class tst_window_faults : public QObject
{
    Q_OBJECT

private:
    QHash<QStringList, QString> words; // of the tables, by link, window and fault
    Runs runs;

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
    tst_window_faults test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_window_faults.moc"
