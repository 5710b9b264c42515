// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/filedescriptor.h"
#include "tests/support/smalldisk.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <grp.h>
#include <memory>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using Stat = struct stat;

namespace {

constexpr uid_t Stranger = 65534;

// One start of the program under test, as a process of its own.
class Start
{
public:
    Start(const QString &program, const QStringList &arguments,
          const QProcessEnvironment &environment, uid_t user = geteuid())
    {
        process.setProcessEnvironment(environment);
        if (user != geteuid())
            process.setChildProcessModifier([user] {
                if (setgroups(0, nullptr) != 0 || setgid(user) != 0 || setuid(user) != 0)
                    _exit(99);
            });
        process.start(program, arguments);
        if (!process.waitForStarted(10000))
            qFatal("%s: %s", qPrintable(program), qPrintable(process.errorString()));
    }
    ~Start()
    {
        process.kill();
        process.waitForFinished(10000);
    }
    Start(const Start &) = delete;
    Start &operator=(const Start &) = delete;

    // The next line of output within the time; empty when none comes.
    QString line(int milliseconds = 20000)
    {
        const QDeadlineTimer deadline(milliseconds);
        while (!process.canReadLine())
            if (!process.waitForReadyRead(int(deadline.remainingTime())))
                return {};
        return QString::fromUtf8(process.readLine()).chopped(1);
    }

    // The exit code; -1 when it is killed, or does not end in time.
    int result(int milliseconds = 20000)
    {
        if (process.state() != QProcess::NotRunning && !process.waitForFinished(milliseconds))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    bool runs() { return !process.waitForFinished(0) && process.state() == QProcess::Running; }
    void signalled(int number) const { ::kill(pid_t(process.processId()), number); }
    // What it said on standard error; Qt's own word about a missing run-time folder left out.
    QString complaint()
    {
        process.waitForFinished(0);
        QStringList lines = QString::fromLocal8Bit(process.readAllStandardError()).split(u'\n');
        lines.removeIf([](const QString &line) { return line.startsWith(u"QStandardPaths: "); });
        return lines.join(u'\n');
    }
    qint64 pid() const { return process.processId(); }

private:
    QProcess process;
};

// A peer that does not keep to the rules.
class RawPeer
{
public:
    explicit RawPeer(const QString &path)
        : fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray encoded = QFile::encodeName(path);
        memcpy(address.sun_path, encoded.constData(),
               std::min(size_t(encoded.size()), sizeof address.sun_path - 1));
        connected =
            ::connect(fd.get(), reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    }

    bool isConnected() const { return connected; }
    bool send(const QByteArray &bytes) const
    {
        return ::send(fd.get(), bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) ==
               bytes.size();
    }
    // What the owner answers before it closes the connection; "open" when it does not close.
    QByteArray answer(int milliseconds) const
    {
        QByteArray all;
        const QDeadlineTimer deadline(milliseconds);
        for (;;) {
            pollfd p{.fd = fd.get(), .events = POLLIN, .revents = 0};
            const int heard = poll(&p, 1, int(deadline.remainingTime()));
            if (heard < 0 && errno == EINTR) // a program that was started here has ended
                continue;
            if (heard != 1)
                return "open"_ba;
            char c = 0;
            if (::recv(fd.get(), &c, 1, 0) != 1)
                return all;
            all += c;
        }
    }

private:
    FileDescriptor fd;
    bool connected = false;
};

QByteArray framed(const QByteArray &text)
{
    const auto n = quint32(text.size());
    return "qsa1"_ba + char(n >> 24) + char(n >> 16) + char(n >> 8) + char(n) + text;
}

// User and system time of a process, in ms.
qint64 processorTime(qint64 pid)
{
    QFile stat(u"/proc/%1/stat"_s.arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        qFatal("no /proc/<pid>/stat");
    const QByteArray all = stat.readAll();
    const QList<QByteArray> fields = all.sliced(all.lastIndexOf(')') + 2).split(' ');
    return (fields.at(11).toLongLong() + fields.at(12).toLongLong()) * 1000 / sysconf(_SC_CLK_TCK);
}

} // namespace

class TestQtSingleApplication : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void the_first_stays_and_the_second_hands_over();
    void a_start_that_only_sends_never_becomes_the_first();
    void a_message_arrives_as_it_is_data();
    void a_message_arrives_as_it_is();
    void a_message_may_be_long_data();
    void a_message_may_be_long();
    void a_message_beyond_the_bound_is_not_sent();
    void two_builds_of_a_program_find_each_other();
    void a_program_that_was_replaced_while_it_runs_is_found();
    void programs_of_other_names_do_not_meet_data();
    void programs_of_other_names_do_not_meet();
    void the_owner_does_not_send_to_itself();
    void the_name_is_free_after_a_quit();
    void an_end_that_begins_in_a_receiver_is_answered();
    void the_name_is_free_after_an_end_without_event_loop();
    void a_killed_owner_is_replaced();
    void a_lock_that_another_program_seems_to_hold_is_taken();
    void an_unreadable_lock_is_taken_in_the_end_data();
    void an_unreadable_lock_is_taken_in_the_end();
    void of_fifty_starts_one_stays_data();
    void of_fifty_starts_one_stays();
    void a_start_during_the_owners_shutdown_stays();
    void a_stopped_owner_costs_the_sender_its_time_out();
    void garbage_does_no_harm_data();
    void garbage_does_no_harm();
    void a_message_in_pieces_is_whole();
    void a_silent_peer_is_dropped();
    void a_half_message_is_dropped_data();
    void a_half_message_is_dropped();
    void many_silent_peers_keep_nobody_out();
    void another_user_neither_connects_nor_takes_the_name();
    void another_user_is_turned_away_even_behind_an_open_door();
    void without_a_run_time_folder_starts_meet_in_the_temporary_folder();
    void a_folder_that_is_not_this_users_alone_is_left_alone_data();
    void a_folder_that_is_not_this_users_alone_is_left_alone();
    void what_cleans_up_old_files_leaves_these_alone();
    void the_longest_name_of_a_socket_will_do();
    void a_run_time_folder_that_will_not_do_is_left_alone_data();
    void a_run_time_folder_that_will_not_do_is_left_alone();
    void without_any_safe_place_the_program_runs_and_says_so();
    void without_room_for_its_lock_the_program_runs_and_says_so();
    void without_its_socket_the_program_runs_and_says_so();

private:
    std::unique_ptr<Start> start(const QStringList &step) const
    {
        return std::make_unique<Start>(program, QStringList{id} + step, environment);
    }
    std::unique_ptr<Start> startAs(uid_t user, const QStringList &step) const
    {
        return std::make_unique<Start>(program, QStringList{id} + step, environment, user);
    }
    QString runtime(const QString &name) const { return home->filePath(u"run/"_s + name); }
    QString socketPath() const { return runtime(id + u".socket"_s); }
    QString lockPath() const { return runtime(id + u".lock"_s); }
    QString longFolder(int more) const;
    QString temporary(uid_t user = geteuid()) const { return u"/tmp/%1-%2"_s.arg(id).arg(user); }

    std::unique_ptr<QTemporaryDir> home;
    QString program;
    QString id;
    QProcessEnvironment environment;
};

void TestQtSingleApplication::init()
{
    umask(022);
    // Other users must be able to start the program from here.
    home = std::make_unique<QTemporaryDir>(u"/tmp/quorvel-instance-XXXXXX"_s);
    QVERIFY(home->isValid());
    QCOMPARE(chmod(home->path().toLocal8Bit().constData(), 0755), 0);
    program = home->filePath(u"probe"_s);
    QVERIFY(QFile::copy(QStringLiteral(INSTANCE_PROBE), program));
    QCOMPARE(chmod(program.toLocal8Bit().constData(), 0755), 0);
    QVERIFY(QDir(home->path()).mkdir(u"run"_s));
    QCOMPARE(chmod(home->filePath(u"run"_s).toLocal8Bit().constData(), 0700), 0);
    id = home->path().sliced(5); // as unique as the folder

    environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_RUNTIME_DIR"_s, home->filePath(u"run"_s));
    environment.insert(u"HOME"_s, home->path());
    environment.insert(u"TMPDIR"_s, home->path()); // where Qt makes what it misses
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.remove(u"XDG_CACHE_HOME"_s);
}

void TestQtSingleApplication::cleanup()
{
    for (const uid_t user : {geteuid(), Stranger}) {
        if (!QFile::remove(temporary(user))) // a file or a link
            QDir(temporary(user)).removeRecursively();
    }
    home.reset();
    QVERIFY(QDir(u"/tmp"_s).entryList({id + u'*'}, QDir::AllEntries | QDir::System).isEmpty());
}

void TestQtSingleApplication::the_first_stays_and_the_second_hands_over()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    for (int i = 0; i < 2; i++) {
        const auto second = start({u"serve"_s});
        QVERIFY(second->line().startsWith(u"sent"));
        QCOMPARE(second->result(), 0);
        QCOMPARE(first->line(), u"got -W"_s);
    }
    QVERIFY(first->runs());
}

void TestQtSingleApplication::a_start_that_only_sends_never_becomes_the_first()
{
    const auto sender = start({u"send"_s, u"-C"_s, u"5000"_s});
    const QString line = sender->line();
    QVERIFY2(line.startsWith(u"failed "), qPrintable(line));
    QVERIFY2(line.sliced(7).toInt() < 500, qPrintable(line));
    QCOMPARE(sender->result(), 1);
    QCOMPARE(QDir(runtime({})).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList());
}

void TestQtSingleApplication::a_message_arrives_as_it_is_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("show") << u"-W"_s;
    QTest::newRow("a part of a longer word") << u"please -Wait"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("other scripts") << u"Größe 触摸 \U0001F446"_s;
}

void TestQtSingleApplication::a_message_arrives_as_it_is()
{
    QFETCH(QString, text);
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const auto sender = start({u"send"_s, text, u"5000"_s});
    QVERIFY(sender->line().startsWith(u"sent"));
    QCOMPARE(first->line(), u"got "_s + text);
    // A message that only holds the request to quit among other text is one, too.
    const auto quitter = start({u"send"_s, u"now-Close-W"_s, u"5000"_s});
    QVERIFY(quitter->line().startsWith(u"sent"));
    QCOMPARE(first->line(), u"got now-Close-W"_s);
    QCOMPARE(first->result(), 0);
}

void TestQtSingleApplication::a_message_may_be_long_data()
{
    QTest::addColumn<int>("bytes");
    QTest::newRow("64 KiB") << 65536;
    QTest::newRow("64 KiB and one") << 65537;
    QTest::newRow("200 KiB") << 204800;
    QTest::newRow("1 MiB") << 1048576;
}

void TestQtSingleApplication::a_message_may_be_long()
{
    QFETCH(int, bytes);
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const auto sender = start({u"sendlong"_s, QString::number(bytes), u"5000"_s});
    QVERIFY(sender->line().startsWith(u"sent"));
    const QByteArray sum =
        QCryptographicHash::hash(QByteArray(bytes, 'm'), QCryptographicHash::Sha1).toHex();
    QCOMPARE(first->line(), u"got %1 %2"_s.arg(bytes).arg(QString::fromLatin1(sum)));
}

void TestQtSingleApplication::a_message_beyond_the_bound_is_not_sent()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const auto sender = start({u"sendlong"_s, u"1048577"_s, u"5000"_s});
    const QString line = sender->line();
    QVERIFY2(line.startsWith(u"failed "), qPrintable(line));
    QVERIFY2(line.sliced(7).toInt() < 500, qPrintable(line));
    // Nor is it received from somebody who sends it all the same.
    const RawPeer peer(socketPath());
    QVERIFY(peer.isConnected());
    peer.send("qsa1\x00\x10\x00\x01"_ba);
    QCOMPARE(peer.answer(1500), QByteArray());
    QCOMPARE(first->line(300), QString());
}

void TestQtSingleApplication::two_builds_of_a_program_find_each_other()
{
    const QString other = home->filePath(u"elsewhere/probe"_s);
    QVERIFY(QDir(home->path()).mkdir(u"elsewhere"_s));
    QVERIFY(QFile::copy(program, other));
    Start first(program, {QString(), u"serve"_s}, environment);
    QCOMPARE(first.line(), u"first"_s);
    Start second(other, {QString(), u"serve"_s}, environment);
    QVERIFY(second.line().startsWith(u"sent"));
    QCOMPARE(first.line(), u"got -W"_s);
    // Another program next to them is somebody else.
    const QString third = home->filePath(u"probe2"_s);
    QVERIFY(QFile::copy(program, third));
    Start stranger(third, {QString(), u"serve"_s}, environment);
    QCOMPARE(stranger.line(), u"first"_s);
}

// As an upgrade does it.
void TestQtSingleApplication::a_program_that_was_replaced_while_it_runs_is_found()
{
    Start first(program, {QString(), u"serve"_s}, environment);
    QCOMPARE(first.line(), u"first"_s);
    const QString newer = home->filePath(u"newer"_s);
    QVERIFY(QFile::copy(program, newer) && QFile::remove(program));
    QVERIFY(QFile::rename(newer, program));
    Start second(program, {QString(), u"serve"_s}, environment);
    QVERIFY(second.line().startsWith(u"sent"));
    QCOMPARE(first.line(), u"got -W"_s);
    // It is no dead one either, whose place nobody would wait for.
    QVERIFY(QFile::remove(runtime(u"probe.socket"_s)));
    Start sender(program, {QString(), u"send"_s, u"-W"_s, u"300"_s}, environment);
    const QString line = sender.line();
    QVERIFY2(line.startsWith(u"failed ") && line.sliced(7).toInt() >= 300, qPrintable(line));
}

void TestQtSingleApplication::programs_of_other_names_do_not_meet_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::newRow("plain") << u"tool"_s << u"tool2"_s;
    QTest::newRow("case") << u"tool"_s << u"Tool"_s;
    QTest::newRow("letters that no file name needs") << u"a/b"_s << u"a_b"_s;
    QTest::newRow("other such letters") << u"a/b"_s << u"a b"_s;
    QTest::newRow("climbing") << u"../x"_s << u"..-x"_s;
    QTest::newRow("long") << QString(300, u'x') << QString(301, u'x');
}

void TestQtSingleApplication::programs_of_other_names_do_not_meet()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    Start first(program, {one, u"serve"_s}, environment);
    QCOMPARE(first.line(), u"first"_s);
    Start second(program, {other, u"serve"_s}, environment);
    QCOMPARE(second.line(), u"first"_s);
    Start third(program, {one, u"serve"_s}, environment);
    QVERIFY(third.line().startsWith(u"sent"));
    // Two locks and two sockets, all of them here.
    QCOMPARE(QDir(runtime({}))
                 .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot | QDir::Hidden)
                 .size(),
             4);
}

void TestQtSingleApplication::the_owner_does_not_send_to_itself()
{
    const auto owner = start({u"self"_s});
    const QString line = owner->line();
    QVERIFY2(line.startsWith(u"failed "), qPrintable(line));
    QVERIFY2(line.sliced(7).toInt() < 100, qPrintable(line));
    QCOMPARE(owner->result(), 1);
}

void TestQtSingleApplication::the_name_is_free_after_a_quit()
{
    for (int i = 0; i < 2; i++) {
        const auto first = start({u"serve"_s});
        QCOMPARE(first->line(), u"first"_s);
        QVERIFY(QFile::exists(socketPath()));
        QVERIFY(QFile::exists(lockPath()));
        const auto quitter = start({u"send"_s, u"-C"_s, u"5000"_s});
        QVERIFY(quitter->line().startsWith(u"sent"));
        QCOMPARE(first->result(), 0);
        QVERIFY(!QFile::exists(socketPath()));
        QVERIFY(!QFile::exists(lockPath()));
    }
}

void TestQtSingleApplication::an_end_that_begins_in_a_receiver_is_answered()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const auto quitter = start({u"send"_s, u"-Q"_s, u"5000"_s});
    const QString line = quitter->line();
    QVERIFY2(line.startsWith(u"sent"), qPrintable(line));
    QCOMPARE(first->result(), 0);
    QVERIFY(!QFile::exists(socketPath()));
}

void TestQtSingleApplication::the_name_is_free_after_an_end_without_event_loop()
{
    for (int i = 0; i < 2; i++) {
        const auto asker = start({u"ask"_s});
        QCOMPARE(asker->line(), u"first"_s);
        QCOMPARE(asker->result(), 0);
        QVERIFY(!QFile::exists(socketPath()));
        QVERIFY(!QFile::exists(lockPath()));
    }
}

void TestQtSingleApplication::a_killed_owner_is_replaced()
{
    for (int i = 0; i < 3; i++) {
        const auto first = start({u"serve"_s});
        QCOMPARE(first->line(), u"first"_s);
        first->signalled(SIGKILL);
        QCOMPARE(first->result(), -1);
        QVERIFY(QFile::exists(socketPath()));
        QVERIFY(QFile::exists(lockPath()));
        // Who only sends finds out at once that nobody is there.
        const auto sender = start({u"send"_s, u"-C"_s, u"5000"_s});
        const QString line = sender->line();
        QVERIFY2(line.startsWith(u"failed "), qPrintable(line));
        QVERIFY2(line.sliced(7).toInt() < 500, qPrintable(line));
    }
    const auto next = start({u"serve"_s});
    QCOMPARE(next->line(), u"first"_s);
    const auto second = start({u"serve"_s});
    QVERIFY(second->line().startsWith(u"sent"));
    QCOMPARE(next->line(), u"got -W"_s);
}

void TestQtSingleApplication::a_lock_that_another_program_seems_to_hold_is_taken()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    first->signalled(SIGKILL);
    QCOMPARE(first->result(), -1);
    // The dead owner's number has gone to another program, this test.
    QFile lock(lockPath());
    QVERIFY(lock.open(QIODevice::ReadWrite));
    QList<QByteArray> lines = lock.readAll().split('\n');
    QCOMPARE(lines.at(1), "probe"_ba);
    lines[0] = QByteArray::number(getpid());
    QVERIFY(lock.resize(0) && lock.seek(0));
    lock.write(lines.join('\n'));
    lock.close();

    const auto sender = start({u"send"_s, u"-C"_s, u"5000"_s});
    const QString line = sender->line();
    QVERIFY2(line.startsWith(u"failed "), qPrintable(line));
    QVERIFY2(line.sliced(7).toInt() < 500, qPrintable(line));
    const auto next = start({u"serve"_s});
    QCOMPARE(next->line(), u"first"_s);
}

void TestQtSingleApplication::an_unreadable_lock_is_taken_in_the_end_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("text") << "power lost"_ba;
}

void TestQtSingleApplication::an_unreadable_lock_is_taken_in_the_end()
{
    QFETCH(QByteArray, content);
    QFile lock(lockPath());
    QVERIFY(lock.open(QIODevice::WriteOnly));
    lock.write(content);
    lock.close();
    // Two starts do not both take it.
    const auto one = start({u"serve"_s});
    const auto other = start({u"serve"_s});
    QStringList said{one->line(), other->line()};
    said[0] = said[0].section(u' ', 0, 0);
    said[1] = said[1].section(u' ', 0, 0);
    said.sort();
    QCOMPARE(said, (QStringList{u"first"_s, u"sent"_s}));
}

void TestQtSingleApplication::of_fifty_starts_one_stays_data()
{
    QTest::addColumn<bool>("afterKill");
    QTest::newRow("fresh") << false;
    QTest::newRow("after a kill") << true;
}

void TestQtSingleApplication::of_fifty_starts_one_stays()
{
    QFETCH(bool, afterKill);
    if (afterKill) {
        const auto killed = start({u"serve"_s});
        QCOMPARE(killed->line(), u"first"_s);
        killed->signalled(SIGKILL);
        QCOMPARE(killed->result(), -1);
    }
    std::vector<std::unique_ptr<Start>> all;
    all.reserve(50);
    for (int i = 0; i < 50; i++)
        all.push_back(start({u"serve"_s}));
    Start *first = nullptr;
    int handedOver = 0;
    for (const auto &each : all) {
        const QString line = each->line(60000);
        if (line == u"first") {
            QVERIFY(first == nullptr);
            first = each.get();
        } else {
            QVERIFY2(line.startsWith(u"sent"), qPrintable(line));
            QCOMPARE(each->result(), 0);
            handedOver++;
        }
    }
    QCOMPARE(handedOver, 49);
    QVERIFY(first != nullptr);
    for (int i = 0; i < 49; i++)
        QCOMPARE(first->line(), u"got -W"_s);
    QVERIFY(first->runs());
    QCOMPARE(first->line(200), QString());
}

void TestQtSingleApplication::a_start_during_the_owners_shutdown_stays()
{
    const auto slow = start({u"linger"_s, u"3000"_s});
    QCOMPARE(slow->line(), u"first"_s);
    const auto quitter = start({u"send"_s, u"-C"_s, u"5000"_s});
    QVERIFY(quitter->line().startsWith(u"sent"));
    QCOMPARE(slow->line(), u"got -C"_s);
    QCOMPARE(slow->line(), u"lingering"_s);
    const auto next = start({u"serve"_s});
    QCOMPARE(next->line(), u"first"_s);
    QVERIFY(slow->runs());
    // The old owner's end takes nothing away from the new one.
    QCOMPARE(slow->result(), 0);
    const auto second = start({u"serve"_s});
    QVERIFY(second->line().startsWith(u"sent"));
    QCOMPARE(next->line(), u"got -W"_s);
}

void TestQtSingleApplication::a_stopped_owner_costs_the_sender_its_time_out()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    first->signalled(SIGSTOP);
    for (const QString &step : {u"send"_s, u"sendlong"_s}) {
        const auto sender = start({step, u"300000"_s, u"1000"_s});
        const QString line = sender->line();
        QVERIFY2(line.startsWith(u"failed "), qPrintable(line));
        const int took = line.sliced(7).toInt();
        QVERIFY2(took >= 990 && took < 1500, qPrintable(line));
        QCOMPARE(sender->result(), 1);
    }
    first->signalled(SIGCONT);
    // Messages whose senders have given up may arrive; what comes now is delivered.
    const auto sender = start({u"send"_s, u"-C"_s, u"5000"_s});
    QVERIFY(sender->line().startsWith(u"sent"));
    QCOMPARE(first->result(), 0);
}

void TestQtSingleApplication::garbage_does_no_harm_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << "GET / HTTP/1.1\r\n\r\n"_ba;
    QTest::newRow("one wrong byte") << "x"_ba;
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("a length without a greeting") << "\0\0\0\2-C"_ba;
    QTest::newRow("too long") << "qsa1\xff\xff\xff\xff-C"_ba;
    QTest::newRow("more than announced") << "qsa1\0\0\0\2-C and more"_ba;
    QTest::newRow("no UTF-8") << "qsa1\0\0\0\4-C\xff\xfe"_ba;
    QTest::newRow("cut UTF-8") << "qsa1\0\0\0\3-C\xc3"_ba;
    QTest::newRow("a million bytes") << QByteArray(1000000, 'q');
}

void TestQtSingleApplication::garbage_does_no_harm()
{
    QFETCH(QByteArray, bytes);
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    for (int i = 0; i < 20; i++) {
        const RawPeer peer(socketPath());
        QVERIFY(peer.isConnected());
        peer.send(bytes);
        QCOMPARE(peer.answer(1500), QByteArray());
    }
    const auto sender = start({u"send"_s, u"hello"_s, u"5000"_s});
    QVERIFY(sender->line().startsWith(u"sent"));
    // Nothing but this one message was taken for one.
    QCOMPARE(first->line(), u"got hello"_s);
    const qint64 before = processorTime(first->pid());
    QTest::qSleep(300);
    QVERIFY(processorTime(first->pid()) - before <= 100);
    QVERIFY(first->runs());
}

void TestQtSingleApplication::a_message_in_pieces_is_whole()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const RawPeer peer(socketPath());
    for (const char c : framed("\xef\xbb\xbfpiece by piece"_ba)) {
        QVERIFY(peer.send(QByteArray(1, c)));
        QTest::qSleep(5);
    }
    QCOMPARE(peer.answer(2000), "\x06"_ba);
    QCOMPARE(first->line(), u"got \uFEFFpiece by piece"_s);
}

void TestQtSingleApplication::a_silent_peer_is_dropped()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const RawPeer silent(socketPath());
    QVERIFY(silent.isConnected());
    // It is in nobody's way meanwhile.
    const auto sender = start({u"send"_s, u"hello"_s, u"5000"_s});
    const QString line = sender->line();
    QVERIFY2(line.startsWith(u"sent "), qPrintable(line));
    QVERIFY2(line.sliced(5).toInt() < 1000, qPrintable(line));
    QCOMPARE(silent.answer(6000), QByteArray());
}

void TestQtSingleApplication::a_half_message_is_dropped_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("vanishes");
    for (const bool vanishes : {false, true}) {
        const char *how = vanishes ? "vanishing" : "silent";
        QTest::addRow("greeting, %s", how) << "qs"_ba << vanishes;
        QTest::addRow("header, %s", how) << "qsa1\0\0\0"_ba << vanishes;
        QTest::addRow("text, %s", how) << "qsa1\0\0\0\5-C"_ba << vanishes;
    }
}

void TestQtSingleApplication::a_half_message_is_dropped()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, vanishes);
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    {
        const RawPeer peer(socketPath());
        QVERIFY(peer.send(bytes));
        if (!vanishes)
            QCOMPARE(peer.answer(6000), QByteArray());
    }
    const auto sender = start({u"send"_s, u"hello"_s, u"5000"_s});
    QVERIFY(sender->line().startsWith(u"sent"));
    QCOMPARE(first->line(), u"got hello"_s);
    QVERIFY(first->runs());
}

void TestQtSingleApplication::many_silent_peers_keep_nobody_out()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    std::vector<std::unique_ptr<RawPeer>> silent;
    silent.reserve(200);
    for (int i = 0; i < 200; i++) {
        silent.push_back(std::make_unique<RawPeer>(socketPath()));
        QVERIFY(silent.back()->isConnected());
    }
    const auto sender = start({u"send"_s, u"hello"_s, u"5000"_s});
    const QString line = sender->line();
    QVERIFY2(line.startsWith(u"sent "), qPrintable(line));
    QCOMPARE(first->line(), u"got hello"_s);
    // Few of them hold a place at any time.
    const QDir descriptors(u"/proc/%1/fd"_s.arg(first->pid()));
    QVERIFY(descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size() <
            64);
    for (const auto &peer : silent)
        QCOMPARE(peer->answer(10000), QByteArray());
    QVERIFY(first->runs());
}

void TestQtSingleApplication::another_user_neither_connects_nor_takes_the_name()
{
    if (geteuid() != 0)
        QFAIL("needs root, to start the program as another user");
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);

    const auto sender = startAs(Stranger, {u"send"_s, u"-C"_s, u"1000"_s});
    QVERIFY(sender->line().startsWith(u"failed"));
    // Even with this user's run-time folder in the environment the other one is on its own.
    const auto other = startAs(Stranger, {u"serve"_s});
    QCOMPARE(other->line(), u"first"_s);
    QVERIFY(other->complaint().contains(u"run is no place to find the running program in"));
    const auto otherSecond = startAs(Stranger, {u"serve"_s});
    QVERIFY(otherSecond->line().startsWith(u"sent"));
    QCOMPARE(other->line(), u"got -W"_s);

    QVERIFY(first->runs());
    QCOMPARE(first->line(200), QString());
    const auto second = start({u"serve"_s});
    QVERIFY(second->line().startsWith(u"sent"));
    QCOMPARE(first->line(), u"got -W"_s);
}

void TestQtSingleApplication::another_user_is_turned_away_even_behind_an_open_door()
{
    if (geteuid() != 0)
        QFAIL("needs root, to become another user");
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    QCOMPARE(chmod(runtime({}).toLocal8Bit().constData(), 0777), 0);
    QCOMPARE(chmod(socketPath().toLocal8Bit().constData(), 0666), 0);
    QCOMPARE(seteuid(Stranger), 0);
    const RawPeer peer(socketPath());
    QCOMPARE(seteuid(0), 0);
    QVERIFY(peer.isConnected());
    peer.send(framed("-C"_ba));
    QCOMPARE(peer.answer(2000), QByteArray());
    QVERIFY(first->runs());
    QCOMPARE(first->line(200), QString());
}

void TestQtSingleApplication::without_a_run_time_folder_starts_meet_in_the_temporary_folder()
{
    environment.remove(u"XDG_RUNTIME_DIR"_s);
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    Stat entry{};
    QCOMPARE(lstat(temporary().toLocal8Bit().constData(), &entry), 0);
    QCOMPARE(entry.st_mode, mode_t(S_IFDIR | 0700));
    const auto second = start({u"serve"_s});
    QVERIFY(second->line().startsWith(u"sent"));
    QCOMPARE(first->complaint(), QString());
    QCOMPARE(second->complaint(), QString());
}

void TestQtSingleApplication::a_folder_that_is_not_this_users_alone_is_left_alone_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("another user's") << u"foreign"_s << u"it belongs to another user"_s;
    QTest::newRow("others enter it") << u"loose"_s << u"others can enter it"_s;
    QTest::newRow("link") << u"link"_s << u"it is not a folder"_s;
    QTest::newRow("file") << u"file"_s << u"it is not a folder"_s;
}

void TestQtSingleApplication::a_folder_that_is_not_this_users_alone_is_left_alone()
{
    QFETCH(QString, what);
    QFETCH(QString, complaint);
    environment.remove(u"XDG_RUNTIME_DIR"_s);
    const QByteArray path = temporary().toLocal8Bit();
    if (what == u"link") {
        QVERIFY(QFile::link(runtime({}), temporary()));
    } else if (what == u"file") {
        QVERIFY(QFile(temporary()).open(QIODevice::WriteOnly));
    } else {
        QCOMPARE(mkdir(path.constData(), 0700), 0);
        if (what == u"loose")
            QCOMPARE(chmod(path.constData(), 0710), 0);
        else
            QVERIFY2(chown(path.constData(), Stranger, Stranger) == 0,
                     "needs root, to give a folder to another user");
    }
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const auto second = start({u"serve"_s});
    QVERIFY(second->line().startsWith(u"sent"));
    QCOMPARE(first->line(), u"got -W"_s);
    const QString said = first->complaint();
    QVERIFY2(said.contains(temporary()) && said.contains(complaint), qPrintable(said));
    // Nothing was put there, and the meeting place is in the home directory.
    QVERIFY(what == u"file" || QDir(temporary()).isEmpty());
    const QString place = home->filePath(u".cache/%1-%2"_s.arg(id, QSysInfo::machineHostName()));
    Stat entry{};
    QCOMPARE(lstat(place.toLocal8Bit().constData(), &entry), 0);
    QCOMPARE(entry.st_mode, mode_t(S_IFDIR | 0700));
    QVERIFY(QFile::exists(place + u'/' + id + u".socket"_s));
}

// Files of temporary folders that nobody changes for some days are cleaned up, but for such.
void TestQtSingleApplication::what_cleans_up_old_files_leaves_these_alone()
{
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    for (const QString &path : {socketPath(), lockPath()}) {
        Stat entry{};
        QCOMPARE(lstat(path.toLocal8Bit().constData(), &entry), 0);
        QCOMPARE(entry.st_mode & ALLPERMS, mode_t(S_ISVTX | S_IRUSR | S_IWUSR));
    }
}

// A folder whose socket has the longest name that the toolkit takes, and so many letters more.
QString TestQtSingleApplication::longFolder(int more) const
{
    constexpr qsizetype Longest = 106;
    const QString inside = u'/' + id + u".socket"_s;
    return (home->path() + u'/').leftJustified(Longest - inside.size() + more, u'l');
}

void TestQtSingleApplication::the_longest_name_of_a_socket_will_do()
{
    const QString folder = longFolder(0);
    QCOMPARE(mkdir(folder.toLocal8Bit().constData(), 0700), 0);
    environment.insert(u"XDG_RUNTIME_DIR"_s, folder);
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    QCOMPARE(first->complaint(), QString());
    QVERIFY(QFile::exists(folder + u'/' + id + u".socket"_s));
    QVERIFY(start({u"serve"_s})->line().startsWith(u"sent"));
}

void TestQtSingleApplication::a_run_time_folder_that_will_not_do_is_left_alone_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("relative") << u"run"_s << QString();
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("absent") << u"/proc/nowhere"_s << u"it cannot be used"_s;
    QTest::newRow("others enter it") << u"@"_s << u"others can enter it"_s;
    QTest::newRow("long") << u"long"_s << u"its name is too long"_s;
}

void TestQtSingleApplication::a_run_time_folder_that_will_not_do_is_left_alone()
{
    QFETCH(QString, folder);
    QFETCH(QString, complaint);
    folder = folder == u"long" ? longFolder(1) : folder.replace(u'@', home->path());
    if (folder.startsWith(home->path()) && !QFile::exists(folder))
        QCOMPARE(mkdir(folder.toLocal8Bit().constData(), 0700), 0);
    environment.insert(u"XDG_RUNTIME_DIR"_s, folder);
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const auto second = start({u"serve"_s});
    QVERIFY(second->line().startsWith(u"sent"));
    QVERIFY(QFile::exists(temporary() + u'/' + id + u".socket"_s));
    const QString said = first->complaint();
    QVERIFY2(complaint.isEmpty() ? said.isEmpty() : said.contains(complaint), qPrintable(said));
}

void TestQtSingleApplication::without_any_safe_place_the_program_runs_and_says_so()
{
    environment.remove(u"XDG_RUNTIME_DIR"_s);
    environment.insert(u"HOME"_s, u"/proc/nowhere"_s);
    QVERIFY(QFile(temporary()).open(QIODevice::WriteOnly));
    for (int i = 0; i < 2; i++) {
        const auto each = start({u"serve"_s});
        QCOMPARE(each->line(), u"first"_s);
        const QString said = each->complaint();
        QVERIFY2(said.contains(u"A second start of this program cannot be noticed."),
                 qPrintable(said));
    }
    const auto sender = start({u"send"_s, u"-C"_s, u"5000"_s});
    QVERIFY(sender->line().startsWith(u"failed"));
}

void TestQtSingleApplication::without_room_for_its_lock_the_program_runs_and_says_so()
{
    for (int i = 0; i < 2; i++) {
        std::unique_ptr<Start> each;
        {
            const SmallDisk full(0); // for what is started meanwhile, too
            each = start({u"serve"_s});
        }
        QCOMPARE(each->line(), u"first"_s);
        const QString said = each->complaint();
        QVERIFY2(said.contains(lockPath() +
                               u" cannot be written, so a second start of this program "
                               "is not noticed."_s),
                 qPrintable(said));
    }
    // As soon as there is room again.
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    QCOMPARE(first->complaint(), QString());
    QVERIFY(start({u"serve"_s})->line().startsWith(u"sent"));
}

void TestQtSingleApplication::without_its_socket_the_program_runs_and_says_so()
{
    QVERIFY(QDir().mkpath(socketPath() + u"/in the way"_s));
    const auto first = start({u"serve"_s});
    QCOMPARE(first->line(), u"first"_s);
    const QString said = first->complaint();
    QVERIFY2(said.contains(socketPath() + u" cannot be made ("_s), qPrintable(said));
    QVERIFY(first->runs());
    const auto second = start({u"serve"_s});
    QVERIFY(second->line().startsWith(u"failed"));
    QCOMPARE(second->result(), 1);
}

QTEST_GUILESS_MAIN(TestQtSingleApplication)
#include "tst_qtsingleapplication.moc"
