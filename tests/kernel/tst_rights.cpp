// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/outside.h"
#include "udev.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <memory>
#include <optional>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

using namespace outside;

namespace {

const QString Seats = u"/run/systemd/seats"_s;
const QString Node = u"/dev/usb/hiddev0"_s;
// Where every user may go, wherever the checkout lies.
const QString Programs = u"/usr/local/bin"_s;

// Both are ordinary users; this one is in the group that the rule gives nodes to.
const QString Member = u"technician"_s;
const QString Stranger = u"visitor"_s;

const QByteArray Forbidden = "A touch frame is at /dev/usb/hiddev0 but this user may not open it "
                             "(Permission denied).";

enum class Session { Usual, OlderThanItsGroups };

struct Ended
{
    int code = -1; // none: it did not end by itself
    QByteArray output;
    QByteArray errors;
};

QString runtimeFolder(const QString &user)
{
    return u"/run/user/"_s + user;
}

Ended run(const QString &program, const QStringList &arguments)
{
    Program process;
    Ended ended;
    if (!process.start(program, arguments) ||
        !within(5 * PatienceMs, [&] { return process.process.state() == QProcess::NotRunning; }) ||
        process.process.exitStatus() != QProcess::NormalExit)
        return ended;
    return {process.process.exitCode(), process.output, process.errors};
}

// As somebody who has logged in, with nothing of root's around.
Ended runAs(const QString &user, const QStringList &command, Session session = Session::Usual)
{
    const QString home = u"/home/"_s + user;
    QStringList whole{u"--reuid"_s,
                      user,
                      u"--regid"_s,
                      user,
                      session == Session::Usual ? u"--init-groups"_s : u"--clear-groups"_s,
                      u"env"_s,
                      u"-i"_s};
    for (const char *kept :
         {"PATH", "LC_ALL", "DISPLAY", "QT_QPA_PLATFORM", "QT_XCB_GL_INTEGRATION"})
        whole += QString::fromLatin1(kept) + u'=' + qEnvironmentVariable(kept);
    whole += u"HOME="_s + home;
    whole += u"XDG_RUNTIME_DIR="_s + runtimeFolder(user);
    whole += u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"_s;
    return run(u"setpriv"_s, whole + command);
}

Ended ctl(const QString &user, const QStringList &arguments, Session session = Session::Usual)
{
    // Emulated, an answer may be late.
    return runAs(user,
                 QStringList{Programs + u"/quorvelctl"_s} + arguments +
                     QStringList{u"--timeout"_s, u"20"_s},
                 session);
}

// What the program tells by a sense of its own each, once it has told of the node.
QJsonObject surfaces(const QString &user, Session session, QByteArray *problem)
{
    const Ended ended = runAs(user,
                              {u"dbus-run-session"_s, u"--"_s, Programs + u"/surfaces.py"_s,
                               Programs + u"/quorvel"_s, Node},
                              session);
    *problem = QByteArray::number(ended.code) + ": " + ended.output + ended.errors;
    // Before that, those speak who run the bus.
    return QJsonDocument::fromJson(ended.output.trimmed().split('\n').last()).object();
}

// One of its own, as a login gives it.
bool makeRuntimeFolder(const QString &user)
{
    const QByteArray folder = runtimeFolder(user).toUtf8();
    const passwd *entry = getpwnam(qPrintable(user));
    return entry && QDir().mkpath(runtimeFolder(user)) && chmod(folder.constData(), 0700) == 0 &&
           chown(folder.constData(), entry->pw_uid, entry->pw_gid) == 0;
}

bool makeUser(const QString &name, const QStringList &options)
{
    return run(u"useradd"_s, QStringList{u"--create-home"_s} + options + QStringList{name}).code ==
               0 &&
           makeRuntimeFolder(name);
}

bool copyTo(const QString &folder, const QString &file)
{
    const QString copy = folder + u'/' + QFileInfo(file).fileName();
    return QFile::exists(copy) || (QFile::copy(file, copy) && chmod(qPrintable(copy), 0755) == 0);
}

} // namespace

// Who may use a frame by the packaged rule, as real users of a machine with udevd meet it; and what
// everybody else is told.
class TestRights : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_member_of_the_group_uses_the_frame();
    void who_sits_at_the_screen_uses_the_frame();
    void anybody_else_is_told_everywhere_what_to_do_data();
    void anybody_else_is_told_everywhere_what_to_do();

private:
    // The seat has that user in front of it, as the login manager notes it.
    static bool seat(const QString &user);
    bool plugIn();
    static void uses(const QString &user);

    std::optional<Udev> udev; // of one test
    std::unique_ptr<VirtualFrame> frame;
};

void TestRights::initTestCase()
{
    QVERIFY2(QFile::exists(u"/sys/devices/platform/vhci_hcd.0/attach"_s),
             "no virtual USB controller: run this with tests/kernel/run");
    QCOMPARE(geteuid(), uid_t(0));
    // What desktops give every new user.
    QVERIFY(QDir().mkpath(u"/etc/skel/.config"_s));
    QVERIFY(makeUser(Member, {u"--groups"_s, u"plugdev"_s}));
    QVERIFY(makeUser(Stranger, {}));
    for (const QString &file : {QStringLiteral(QUORVEL_PROGRAM), QStringLiteral(QUORVELCTL_PROGRAM),
                                QStringLiteral(SURFACES), QStringLiteral(READER)})
        QVERIFY2(copyTo(Programs, file), qPrintable(file));
}

void TestRights::init()
{
    udev.emplace();
    frame = std::make_unique<VirtualFrame>();
    QVERIFY2(frame->begin({u"usb"_s, u"--unplugged"_s}), "quorvel-sim did not start");
}

void TestRights::cleanup()
{
    if (frame)
        QVERIFY(frame->quit());
    frame.reset();
    QVERIFY(udev->end());
    udev.reset();
    QDir(Seats).removeRecursively();
}

bool TestRights::seat(const QString &user)
{
    const passwd *entry = getpwnam(qPrintable(user));
    QFile file(Seats + u"/seat0"_s);
    return entry && QDir().mkpath(Seats) && file.open(QIODevice::WriteOnly) &&
           file.write("IS_SEAT0=1\nACTIVE=1\nACTIVE_UID=" + QByteArray::number(entry->pw_uid) +
                      '\n') > 0;
}

// With its node and what udevd does to that.
bool TestRights::plugIn()
{
    return frame->does("plug") && inTime([] { return QFile::exists(Node); }) &&
           run(u"udevadm"_s, {u"settle"_s}).code == 0;
}

void TestRights::uses(const QString &user)
{
    const Ended doctor = ctl(user, {u"doctor"_s});
    QVERIFY2(doctor.code == 0, doctor.output + doctor.errors);
    QVERIFY2(doctor.output.simplified().contains("permission good This user may open "
                                                 "/dev/usb/hiddev0."),
             doctor.output);
    const Ended versions = ctl(user, {u"versions"_s});
    QVERIFY2(versions.code == 0 && versions.output.contains("5156"),
             versions.output + versions.errors);
    QByteArray problem;
    const QJsonObject told = surfaces(user, Session::Usual, &problem);
    QVERIFY2(!told.isEmpty(), problem);
    QCOMPARE(told[u"status"_s].toString(), u"Already link equipment"_s);
    for (const QString &surface : {u"description"_s, u"tip"_s, u"window"_s})
        QCOMPARE(told[surface].toString(), u"Linked by USB, at /dev/usb/hiddev0."_s);
    QCOMPARE(told[u"errors"_s].toString(), QString());
}

void TestRights::a_member_of_the_group_uses_the_frame()
{
    QVERIFY(Udev::installRule());
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QVERIFY(plugIn());
    uses(Member);
}

void TestRights::who_sits_at_the_screen_uses_the_frame()
{
    QVERIFY(Udev::installRule());
    QVERIFY(seat(Stranger));
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QVERIFY(plugIn());
    uses(Stranger);
}

void TestRights::anybody_else_is_told_everywhere_what_to_do_data()
{
    QTest::addColumn<bool>("rule");
    QTest::addColumn<QString>("user");
    QTest::addColumn<bool>("olderSession");
    QTest::addColumn<QByteArray>("advice");
    QTest::newRow("no member") << true << Stranger << false
                               << QByteArray("Join the group plugdev, then log in again.");
    QTest::newRow("a member since this session began")
        << true << Member << true
        << QByteArray("This user is in the group plugdev, but joined it after this session began. "
                      "Log in again.");
    QTest::newRow("no rule") << false << Stranger << false
                             << QByteArray("Install the udev rule 70-quorvel.rules and plug the "
                                           "frame in again. Without a session at the screen, join "
                                           "the group plugdev too.");
}

void TestRights::anybody_else_is_told_everywhere_what_to_do()
{
    constexpr int NoPermission = 4;
    QFETCH(bool, rule);
    QFETCH(QString, user);
    QFETCH(bool, olderSession);
    QFETCH(QByteArray, advice);
    const Session session = olderSession ? Session::OlderThanItsGroups : Session::Usual;
    const QByteArray words = Forbidden + ' ' + advice;
    if (rule)
        QVERIFY(Udev::installRule());
    // Somebody else sits at the screen.
    QVERIFY(seat(u"root"_s));
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QVERIFY(plugIn());

    for (const QString &command : {u"status"_s, u"versions"_s, u"rotation show"_s}) {
        const Ended ended = ctl(user, command.split(u' '), session);
        QCOMPARE(ended.errors, "quorvelctl: " + words + '\n');
        QCOMPARE(ended.output, QByteArray());
        QCOMPARE(ended.code, NoPermission);
    }
    const Ended doctor = ctl(user, {u"doctor"_s}, session);
    const QByteArray said = doctor.output.simplified();
    QVERIFY2(said.contains("permission TROUBLE " + Forbidden), doctor.output);
    QVERIFY2(said.contains(advice), doctor.output);
    QCOMPARE(doctor.code, NoPermission);

    QByteArray problem;
    const QJsonObject told = surfaces(user, session, &problem);
    QVERIFY2(!told.isEmpty(), problem);
    QCOMPARE(told[u"status"_s].toString(), u"Have not linked equipment"_s);
    for (const QString &surface : {u"description"_s, u"tip"_s, u"window"_s})
        QCOMPARE(told[surface].toString().toUtf8(), words);
    QCOMPARE(told[u"errors"_s].toString().toUtf8(), words + '\n');
}

QTEST_MAIN(TestRights)
#include "tst_rights.moc"
