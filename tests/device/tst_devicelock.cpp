// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/advice.h"
#include "device/devicelock.h"
#include "device/link.h"
#include "device/linux_hid_adapter.h"
#include "device/posix_qextserialport.h"
#include "tests/support/farend.h"
#include "tests/support/filenode.h"
#include "tests/support/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <sys/sysmacros.h>

using namespace Qt::StringLiterals;
using namespace HID_AdpterPacket;

namespace {

// Another program, at work on a frame.
class Other
{
public:
    Other(const QString &kind, const QString &path)
    {
        process.start(QStringLiteral(LOCK_PROBE), {kind, path});
        const QByteArray prefix("outcome: ");
        QByteArray line;
        while (!line.startsWith(prefix)) {
            if (!process.canReadLine() && !process.waitForReadyRead())
                qFatal("lock_probe says nothing");
            line = process.readLine();
        }
        said = QString::fromLocal8Bit(line.mid(prefix.size())).trimmed();
    }
    ~Other()
    {
        process.closeWriteChannel();
        if (process.state() != QProcess::NotRunning && !process.waitForFinished())
            qCritical("lock_probe does not end");
    }
    Other(const Other &) = delete;
    Other &operator=(const Other &) = delete;

    void kill()
    {
        process.kill();
        process.waitForFinished();
    }
    qint64 pid() const { return process.processId(); }

    QString said;

private:
    QProcess process;
};

// A frame's node of this test's.
struct Node
{
    Node()
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no temporary file");
    }
    QString path() const { return folder.filePath(u"node"_s); }

    QTemporaryDir folder;
    FileNode io{QFile::encodeName(path())};
};

// A port that anybody may use, and a lock file of root's beside it; somebody else opens that port.
struct LeftByRoot
{
    explicit LeftByRoot(const QByteArray &content)
    {
        writeFile(file, content);
        if (chmod(qPrintable(far.node), 0666) != 0 || seteuid(65534) != 0)
            qFatal("this cannot be two users");
        opens = port.open(QIODevice::ReadWrite);
        if (seteuid(0) != 0 || !QFile::remove(file))
            qFatal("this cannot be root again");
    }

    FarEnd far;
    QString file = u"/var/lock/LCK..pts_%1"_s.arg(far.node.section(u'/', -1));
    Posix_QextSerialPort port{far.node, {}};
    bool opens = false;
};

} // namespace

class TestDeviceLock : public QObject
{
    Q_OBJECT

private slots:
    void words_say_as_much_as_is_known()
    {
        const DeviceUser program{7, u"quorvel"_s};
        const DeviceUser process{7, {}};
        QCOMPARE(Advice::frameInUse(u"/dev/x"_s, program).evidence,
                 u"The touch frame at /dev/x is in use by quorvel (process 7)."_s);
        QCOMPARE(Advice::frameInUse(u"/dev/x"_s, process).evidence,
                 u"The touch frame at /dev/x is in use by process 7."_s);
        QCOMPARE(Advice::frameInUse(u"/dev/x"_s, {}).evidence,
                 u"The touch frame at /dev/x is in use by another program."_s);
        QCOMPARE(Advice::frameOpened(u"/dev/x"_s, program).evidence,
                 u"quorvel (process 7) has /dev/x open without saying that it uses the frame."_s);
        QCOMPARE(Advice::frameOpened(u"/dev/x"_s, process).evidence,
                 u"Process 7 has /dev/x open without saying that it uses the frame."_s);
        QCOMPARE(Advice::portInUse(u"/dev/x"_s, program).evidence,
                 u"The serial port /dev/x is in use by quorvel (process 7)."_s);
        QCOMPARE(Advice::portInUse(u"/dev/x"_s, {}).evidence,
                 u"The serial port /dev/x is in use by another program."_s);
    }

    // A frame on USB

    void a_frame_that_another_program_uses_is_refused_by_name_and_number()
    {
        Node node;
        const Other other(u"usb"_s, node.path());
        QCOMPARE(other.said, u"uses it"_s);
        OP_HID_Adapter adapter(node.io);
        QVERIFY(adapter.DoFindDev({}, true));
        QVERIFY(!adapter.IsDevOpened());
        QCOMPARE(adapter.LastProblem(),
                 (NodeProblem{u"/dev/usb/hiddev0"_s, EBUSY, {other.pid(), u"lock_probe"_s}}));
    }

    void another_program_is_told_of_this_one()
    {
        Node node;
        OP_HID_Adapter adapter(node.io);
        QVERIFY(adapter.DoFindDev({}, true));
        QVERIFY(adapter.IsDevOpened());
        const Other other(u"usb"_s, node.path());
        QCOMPARE(other.said, Advice::frameInUse(node.path(), {QCoreApplication::applicationPid(),
                                                              u"tst_devicelock"_s})
                                 .evidence);
        adapter.CloseDevice();
        const Other next(u"usb"_s, node.path());
        QCOMPARE(next.said, u"uses it"_s);
    }

    void a_killed_program_frees_its_frame()
    {
        Node node;
        Other other(u"usb"_s, node.path());
        OP_HID_Adapter adapter(node.io);
        adapter.DoFindDev({}, true);
        QVERIFY(!adapter.IsDevOpened());
        other.kill();
        QVERIFY(adapter.DoFindDev({}, true));
        QVERIFY(adapter.IsDevOpened());
        QCOMPARE(adapter.LastProblem(), NodeProblem());
    }

    void a_link_waits_for_a_frame_and_takes_it_when_it_is_free()
    {
        Node node;
        Other other(u"usb"_s, node.path());
        Link link(std::make_shared<OP_HID_Adapter>(node.io));
        link.start();
        const QString problem =
            u"The touch frame at /dev/usb/hiddev0 is in use by lock_probe (process %1). It can be "
            "used here as soon as that program has let go of it."_s.arg(other.pid());
        QTRY_COMPARE(link.state().problem, problem);
        QVERIFY(link.isInUse());
        QCOMPARE(link.kind(), Link::NotConnected);
        other.kill();
        QTRY_COMPARE_WITH_TIMEOUT(link.kind(), Link::UsbConnected, 2000);
        QTRY_COMPARE(link.state().problem, QString());
        QVERIFY(!link.isInUse());
    }

    // A serial port

    void a_port_that_another_program_uses_is_refused_by_name_and_number()
    {
        const FarEnd far;
        Other other(u"serial"_s, far.node);
        QCOMPARE(other.said, u"uses it"_s);
        Posix_QextSerialPort port(far.node, {});
        QVERIFY(!port.open(QIODevice::ReadWrite));
        QVERIFY(port.isInUse());
        QCOMPARE(port.errorString(),
                 u"The serial port %1 is in use by lock_probe (process %2). It can be used here as "
                 "soon as that program has let go of it."_s.arg(far.node)
                     .arg(other.pid()));
        other.kill();
        QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
        QVERIFY(!port.isInUse());
    }

    // The older habit, a file named like the port, takes each name for a port of its own.
    void a_port_is_the_same_by_any_name()
    {
        const FarEnd far;
        const QTemporaryDir folder;
        const QString name = folder.filePath(u"frame"_s);
        QVERIFY(QFile::link(far.node, name));
        const Other other(u"serial"_s, far.node);
        Posix_QextSerialPort port(name, {});
        QVERIFY(!port.open(QIODevice::ReadWrite));
        QVERIFY2(port.errorString().contains(u"lock_probe (process %1)"_s.arg(other.pid())),
                 qPrintable(port.errorString()));
    }

    void a_refused_port_keeps_its_rate()
    {
        const FarEnd far;
        Posix_QextSerialPort first(far.node, {.BaudRate = BAUD115200});
        QVERIFY(first.open(QIODevice::ReadWrite));
        const Other other(u"serial"_s, far.node);
        QVERIFY(other.said != u"uses it"_s);
        QCOMPARE(int(far.settings().c_ospeed), 115200);
    }

    // Such a program takes no lock; its mark keeps everybody out but root.
    void a_port_that_a_foreign_program_made_its_own_is_refused_to_root_too()
    {
        const FarEnd far;
        QProcess foreign;
        foreign.start(u"python3"_s, {u"-c"_s,
                                     u"import fcntl, os, sys, termios\n"
                                     "fd = os.open(sys.argv[1], os.O_RDWR | os.O_NOCTTY)\n"
                                     "fcntl.ioctl(fd, termios.TIOCEXCL)\n"
                                     "print('ready', flush=True)\n"
                                     "sys.stdin.read()"_s,
                                     far.node});
        QVERIFY(foreign.waitForReadyRead());
        Posix_QextSerialPort port(far.node, {});
        QVERIFY(!port.open(QIODevice::ReadWrite));
        QVERIFY(port.isInUse());
        if (geteuid() == 0)
            QVERIFY2(port.errorString().contains(
                         u"is in use by python3 (process %1)."_s.arg(foreign.processId())),
                     qPrintable(port.errorString()));
        foreign.closeWriteChannel();
        QVERIFY(foreign.waitForFinished());
        // A pseudo-terminal stays marked, for nobody: root may have it.
        if (geteuid() == 0)
            QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
    }

    void a_user_is_told_of_a_program_of_roots()
    {
        if (geteuid() != 0)
            QFAIL("needs root, to be two users");
        const FarEnd far;
        QCOMPARE(chmod(qPrintable(far.node), 0666), 0);
        const Other other(u"serial"_s, far.node);
        Posix_QextSerialPort port(far.node, {});
        QCOMPARE(seteuid(65534), 0);
        const bool opened = port.open(QIODevice::ReadWrite);
        QCOMPARE(seteuid(0), 0);
        QVERIFY(!opened);
        QVERIFY(port.isInUse());
        QVERIFY2(port.errorString().contains(u"lock_probe (process %1)"_s.arg(other.pid())),
                 qPrintable(port.errorString()));
    }

    void a_file_that_a_program_of_roots_left_behind_is_named_to_a_user()
    {
        constexpr int NoProcess = 4'194'305; // one more than there can be
        if (geteuid() != 0)
            QFAIL("needs root, to be two users");
        LeftByRoot left(QByteArray::number(NoProcess) + "\nquorvel\n\n");
        QVERIFY(!left.opens);
        QVERIFY(!left.port.isInUse());
        QCOMPARE(left.port.errorString(),
                 u"A program that has ended left the file %1 behind, which keeps the serial port "
                 "%2 closed. Remove that file, as its owner root or as root."_s.arg(left.file,
                                                                                    left.far.node));
    }

    void a_file_that_a_running_program_of_roots_has_left_keeps_the_port_in_use_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("user");
        const qint64 pid = QCoreApplication::applicationPid();
        QTest::newRow("by its number") << QByteArray::number(pid) + "\nquorvel\n\n"
                                       << u"tst_devicelock (process %1)"_s.arg(pid);
        QTest::newRow("without a number") << QByteArray("?\n") << u"another program"_s;
    }
    void a_file_that_a_running_program_of_roots_has_left_keeps_the_port_in_use()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, user);
        if (geteuid() != 0)
            QFAIL("needs root, to be two users");
        LeftByRoot left(content);
        QVERIFY(!left.opens);
        QVERIFY(left.port.isInUse());
        QVERIFY2(left.port.errorString().startsWith(
                     u"The serial port %1 is in use by %2."_s.arg(left.far.node, user)),
                 qPrintable(left.port.errorString()));
    }

    void a_link_waits_for_a_port_and_opens_it_when_it_is_free()
    {
        const FarEnd far;
        auto other = std::make_unique<Other>(u"serial"_s, far.node);
        const QTemporaryDir nowhere;
        FileNode none(QFile::encodeName(nowhere.filePath(u"none"_s)));
        Link link(std::make_shared<OP_HID_Adapter>(none));
        link.start();
        QVERIFY(!link.openSerial(far.node, {.BaudRate = BAUD57600}));
        QCOMPARE(link.kind(), Link::SerialFailed);
        QVERIFY(link.isInUse());
        QVERIFY2(link.state().problem.contains(u"lock_probe (process %1)"_s.arg(other->pid())),
                 qPrintable(link.state().problem));
        other.reset();
        QTRY_COMPARE_WITH_TIMEOUT(link.kind(), Link::SerialOpen, 5000);
        QCOMPARE(link.state().problem, QString());
        QCOMPARE(int(far.settings().c_ospeed), 57600);
    }

    void a_port_that_is_no_longer_wanted_is_not_opened()
    {
        const FarEnd far;
        auto other = std::make_unique<Other>(u"serial"_s, far.node);
        const QTemporaryDir nowhere;
        FileNode none(QFile::encodeName(nowhere.filePath(u"none"_s)));
        Link link(std::make_shared<OP_HID_Adapter>(none));
        link.start();
        QVERIFY(!link.openSerial(far.node, {}));
        link.closeSerial();
        other.reset();
        QTest::qWait(1200); // twice as long as it would take
        QCOMPARE(link.kind(), Link::SerialClosed);
        QVERIFY(!link.isInUse());
    }

    // What the kernel and other programs say

    void the_list_of_locks_is_read_as_the_kernel_writes_it()
    {
        const QTemporaryDir proc;
        const Node node;
        struct stat status = {};
        QCOMPARE(stat(qPrintable(node.path()), &status), 0);
        const QString name =
            QString::asprintf("%02x:%02x:%llu", major(status.st_dev), minor(status.st_dev),
                              static_cast<unsigned long long>(status.st_ino));
        QFile locks(proc.filePath(u"locks"_s));
        QVERIFY(locks.open(QIODevice::WriteOnly));
        locks.write(QString(u"1: POSIX  ADVISORY  WRITE 11 %1 0 EOF\n"
                            "2: FLOCK  ADVISORY  WRITE 12 ff:ff:1 0 EOF\n"
                            "3: FLOCK  ADVISORY  WRITE 13 %1 0 EOF\n"
                            "3: -> FLOCK  ADVISORY  WRITE 14 %1 0 EOF\n"_s.arg(name))
                        .toLatin1());
        locks.close();
        QCOMPARE(devicelock::holder(node.path(), proc.path()), (DeviceUser{13, {}}));
        QVERIFY(QDir(proc.path()).mkdir(u"13"_s));
        QFile comm(proc.filePath(u"13/comm"_s));
        QVERIFY(comm.open(QIODevice::WriteOnly));
        comm.write("quorvel\n");
        comm.close();
        QCOMPARE(devicelock::holder(node.path(), proc.path()), (DeviceUser{13, u"quorvel"_s}));
    }

    void a_holder_of_another_container_is_another_program()
    {
        QCOMPARE(devicelock::processOf(0), DeviceUser());
        QCOMPARE(devicelock::processOf(-1), DeviceUser());
    }

    void a_file_of_the_older_habit_names_its_program_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray pid = QByteArray::number(QCoreApplication::applicationPid());
        QTest::newRow("ten places") << pid.rightJustified(10) + '\n';
        QTest::newRow("with more words") << pid.rightJustified(10) + " program user\n";
        QTest::newRow("three lines") << pid + "\nprogram\nmachine\n";
    }
    void a_file_of_the_older_habit_names_its_program()
    {
        QFETCH(const QByteArray, content);
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write(content);
        file.close();
        QCOMPARE(devicelock::lockFileUser(file.fileName()),
                 (DeviceUser{QCoreApplication::applicationPid(), u"tst_devicelock"_s}));
    }

    void every_other_process_that_has_a_device_open_is_listed_by_number()
    {
        const QTemporaryDir proc;
        const FarEnd far;
        const auto opens = [&proc](const QString &name, const QString &what) {
            const QString descriptors = proc.filePath(name + u"/fd"_s);
            return QDir().mkpath(descriptors) && QFile::link(what, descriptors + u"/3"_s);
        };
        QVERIFY(opens(u"30"_s, far.node));
        QVERIFY(opens(u"4"_s, far.node));
        QVERIFY(opens(u"1"_s, far.node));
        QVERIFY(opens(u"5"_s, u"/dev/null"_s));
        QVERIFY(opens(u"6"_s, proc.path()));
        QVERIFY(opens(u"sys"_s, far.node));
        QVERIFY(opens(QString::number(QCoreApplication::applicationPid()), far.node));
        QFile comm(proc.filePath(u"4/comm"_s));
        QVERIFY(comm.open(QIODevice::WriteOnly));
        comm.write("terminal\n");
        comm.close();
        QCOMPARE(devicelock::openedBy(far.node, proc.path()),
                 (QList<DeviceUser>{{1, {}}, {4, u"terminal"_s}, {30, {}}}));
    }

    void what_is_not_there_is_opened_by_nobody()
    {
        QVERIFY(devicelock::openedBy(u"/dev/none"_s, u"/proc"_s).isEmpty());
    }

    void only_a_device_is_opened_for_its_lock()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        FileDescriptor lock;
        QVERIFY(devicelock::takeAt(file.fileName(), lock) == devicelock::Outcome::Barred);
        QCOMPARE(errno, ENODEV);
        QVERIFY(!lock.isValid());
    }
};

QTEST_GUILESS_MAIN(TestDeviceLock)
#include "tst_devicelock.moc"
