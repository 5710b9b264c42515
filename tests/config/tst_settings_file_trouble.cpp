// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/filedescriptor.h"
#include "documents.h"
#include "tests/support/files.h"
#include "words.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr uid_t Stranger = 65534;
constexpr int LimitMs = 60000;

const QString OtherWithSmoothing = QString(OtherWords).replace(u"/ 21 22 /"_s, u"/ 0 4 /"_s);
const QString NoFile = u"No such file or directory"_s;

struct Result
{
    QStringList output; // lines
    QStringList errors;
};

QStringList linesOf(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

// The store in surroundings that are really troublesome, in a process of its own that sees them.
class TestSettingsFileTrouble : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> home;

    QByteArray encoded(const QString &name) const
    {
        return QFile::encodeName(home->filePath(name));
    }
    QString path() const { return home->filePath(u".config/ForQuorvel"_s); }
    QByteArray content() const { return contentOf(path(), {}); }

    void run(const QStringList &arguments, Result &result, const QString &rules = {}) const
    {
        QProcessEnvironment surroundings = QProcessEnvironment::systemEnvironment();
        surroundings.insert(u"HOME"_s, home->path());
        surroundings.insert(u"XDG_CONFIG_HOME"_s, home->filePath(u"none"_s));
        surroundings.insert(u"LC_ALL"_s, u"C"_s);
        surroundings.insert(u"QT_FORCE_STDERR_LOGGING"_s, u"1"_s);
        surroundings.remove(u"QT_LOGGING_CONF"_s);
        surroundings.remove(u"QT_LOGGING_RULES"_s);
        surroundings.remove(u"QT_MESSAGE_PATTERN"_s);
        if (!rules.isEmpty())
            surroundings.insert(u"QT_LOGGING_RULES"_s, rules);
        QProcess probe;
        probe.setProcessEnvironment(surroundings);
        probe.start(QStringLiteral(STORE_PROBE), arguments);
        const bool ended = probe.waitForFinished(LimitMs);
        if (!ended) {
            probe.kill();
            probe.waitForFinished(LimitMs);
        }
        QVERIFY2(ended, "the store waits for something");
        result.output = linesOf(probe.readAllStandardOutput());
        result.errors = linesOf(probe.readAllStandardError());
        QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
        QVERIFY2(probe.exitCode() == 0, qPrintable(result.errors.join(u'\n')));
    }

    // Silent unless asked; then it says what could not be done and why, {} being the file.
    void expect(const QStringList &arguments, const QStringList &output,
                const QStringList &complaints) const
    {
        Result result;
        run(arguments, result);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(result.output, output);
        QCOMPARE(result.errors, QStringList());

        for (const QString &rules :
             {u"quorvel.settings=true"_s, u"quorvel.settings.warning=true"_s}) {
            remake();
            run(arguments, result, rules);
            if (QTest::currentTestFailed())
                return;
            QCOMPARE(result.output, output);
            QStringList expected;
            for (QString complaint : complaints)
                expected += u"quorvel.settings: "_s + complaint.replace(u"{}"_s, path());
            QCOMPARE(result.errors, expected);
        }
    }
    // The settings file as the test put it, where an earlier run changed it.
    void remake() const
    {
        if (again)
            again();
    }
    std::function<void()> again;

    // The words that make the probe a user whom modes mean something.
    QStringList asUser() const
    {
        if (geteuid() != 0)
            return {};
        return {u"user=%1"_s.arg(Stranger)};
    }
    void handOver(const QStringList &names) const
    {
        for (const QString &name : names)
            QVERIFY(geteuid() != 0 || ::lchown(encoded(name).constData(), Stranger, Stranger) == 0);
    }

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        QVERIFY(home->isValid());
        QVERIFY(QDir(home->path()).mkdir(u".config"_s));
    }
    void cleanup()
    {
        again = nullptr;
        ::chmod(encoded(u".config"_s).constData(), 0700);
        home.reset();
    }

    void a_file_that_another_program_locks_is_used_all_the_same()
    {
        again = [this] { writeFile(path(), OtherFile); };
        again();
        const FileDescriptor lock(
            ::open(encoded(u".config/ForQuorvel"_s).constData(), O_RDWR | O_CLOEXEC));
        QVERIFY(::flock(lock.get(), LOCK_EX | LOCK_NB) == 0);
        expect({u"read"_s, u"write"_s, u"read"_s}, {OtherWords, OtherWithSmoothing}, {});
    }

    void a_file_that_another_program_writes_is_used_all_the_same()
    {
        again = [this] { writeFile(path(), OtherFile); };
        again();
        const FileDescriptor writer(
            ::open(encoded(u".config/ForQuorvel"_s).constData(), O_WRONLY | O_APPEND | O_CLOEXEC));
        QVERIFY(writer.get() >= 0);
        expect({u"read"_s, u"write"_s, u"read"_s}, {OtherWords, OtherWithSmoothing}, {});
    }

    void what_another_program_has_written_so_far_counts()
    {
        again = [this] { writeFile(path(), "<data><setting><RB_RAN>4</RB_RAN><DB_RAN>2"); };
        again();
        expect({u"read"_s}, {u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s}, {});
    }

    void a_home_without_config_stays_as_it_is()
    {
        QVERIFY(QDir(home->path()).rmdir(u".config"_s));
        const QStringList twice = {u"cannot read {}: "_s + NoFile, u"cannot write {}: "_s + NoFile,
                                   u"cannot read {}: "_s + NoFile};
        expect({u"read"_s, u"write"_s, u"file"_s}, {EmptyWords, u"none"_s},
               twice + twice + twice + twice + twice +
                   QStringList{u"cannot write {}: "_s + NoFile});
        QVERIFY(QDir(home->path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

    // What lies where the settings belong; it can neither be read nor written.
    void something_else_in_its_place_is_let_alone_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a directory") << u"directory"_s << u"it is not a file"_s;
        QTest::newRow("a named pipe") << u"pipe"_s << u"it is not a file"_s;
        QTest::newRow("a link to a named pipe") << u"pipe link"_s << u"it is not a file"_s;
        QTest::newRow("a socket") << u"socket"_s << u"it is not a file"_s;
        QTest::newRow("a link to a device") << u"device link"_s << u"it is not a file"_s;
        QTest::newRow("a link to itself") << u"loop"_s << u"Too many levels of symbolic links"_s;
        QTest::newRow("a link into nowhere") << u"nowhere"_s << NoFile;
        QTest::newRow(".config is a file") << u"config file"_s << u"Not a directory"_s;
    }
    void something_else_in_its_place_is_let_alone()
    {
        QFETCH(const QString, kind);
        QFETCH(const QString, reason);
        const QByteArray there = encoded(u".config/ForQuorvel"_s);
        const QByteArray elsewhere = encoded(u"elsewhere"_s);
        FileDescriptor listening;
        if (kind == "directory"_L1) {
            QVERIFY(::mkdir(there.constData(), 0700) == 0);
        } else if (kind == "pipe"_L1) {
            QVERIFY(::mkfifo(there.constData(), 0600) == 0);
        } else if (kind == "pipe link"_L1) {
            QVERIFY(::mkfifo(elsewhere.constData(), 0600) == 0);
            QVERIFY(::symlink(elsewhere.constData(), there.constData()) == 0);
        } else if (kind == "socket"_L1) {
            sockaddr_un address{};
            address.sun_family = AF_UNIX;
            QVERIFY(size_t(there.size()) < sizeof address.sun_path);
            std::copy(there.begin(), there.end(), address.sun_path);
            listening = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
            QVERIFY(::bind(listening.get(), reinterpret_cast<sockaddr *>(&address),
                           sizeof address) == 0);
        } else if (kind == "device link"_L1) {
            QVERIFY(::symlink("/dev/zero", there.constData()) == 0);
        } else if (kind == "loop"_L1) {
            QVERIFY(::symlink("ForQuorvel", there.constData()) == 0);
        } else if (kind == "nowhere"_L1) {
            QVERIFY(::symlink("none/none", there.constData()) == 0);
        } else {
            QVERIFY(QDir(home->path()).rmdir(u".config"_s));
            writeFile(home->filePath(u".config"_s), "mine");
        }
        using Stat = struct stat;
        const QByteArray first = kind == "config file"_L1 ? encoded(u".config"_s) : there;
        Stat before{};
        QVERIFY(::lstat(first.constData(), &before) == 0);

        QStringList complaints;
        for (int section = 0; section < 4; ++section)
            complaints += {u"cannot read {}: "_s + reason, u"cannot write {}: "_s + reason,
                           u"cannot read {}: "_s + reason};
        complaints += complaints.first(3) + QStringList{u"cannot write {}: "_s + reason};
        expect({u"read"_s, u"write"_s}, {EmptyWords}, complaints);

        Stat after{};
        QVERIFY(::lstat(first.constData(), &after) == 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(after.st_mode, before.st_mode);
        QCOMPARE(after.st_size, before.st_size);
    }

    void a_link_to_the_file_stays_a_link()
    {
        writeFile(home->filePath(u"elsewhere"_s), OtherFile);
        QVERIFY(::symlink("../elsewhere", encoded(u".config/ForQuorvel"_s).constData()) == 0);
        again = [this] { writeFile(home->filePath(u"elsewhere"_s), OtherFile); };
        expect({u"write"_s, u"read"_s}, {OtherWithSmoothing}, {});
        QVERIFY(QFileInfo(path()).isSymLink());
    }

    void a_link_to_a_file_not_made_yet_makes_it()
    {
        QVERIFY(::symlink("../elsewhere", encoded(u".config/ForQuorvel"_s).constData()) == 0);
        again = [this] { QFile::remove(home->filePath(u"elsewhere"_s)); };
        expect({u"read"_s}, {DefaultWords}, {u"cannot read {}: "_s + NoFile});
        QVERIFY(QFile::exists(home->filePath(u"elsewhere"_s)));
    }

    void a_file_that_may_be_read_but_not_written_is_read()
    {
        writeFile(path(), OtherFile);
        QVERIFY(::chmod(encoded(u".config/ForQuorvel"_s).constData(), 0444) == 0);
        handOver({u""_s, u".config"_s, u".config/ForQuorvel"_s});
        expect(asUser() << u"read"_s << u"write"_s << u"read"_s, {OtherWords, OtherWords},
               {u"cannot write {}: Permission denied"_s});
        QCOMPARE(content(), QByteArray(OtherFile));
    }

    void a_file_that_may_neither_be_read_nor_written_stays_as_it_is()
    {
        writeFile(path(), OtherFile);
        QVERIFY(::chmod(encoded(u".config/ForQuorvel"_s).constData(), 0) == 0);
        handOver({u""_s, u".config"_s, u".config/ForQuorvel"_s});
        const QStringList each = {u"cannot read {}: Permission denied"_s,
                                  u"cannot write {}: Permission denied"_s,
                                  u"cannot read {}: Permission denied"_s};
        expect(asUser() << u"read"_s << u"write"_s, {EmptyWords},
               each + each + each + each + each +
                   QStringList{u"cannot write {}: Permission denied"_s});
        QVERIFY(::chmod(encoded(u".config/ForQuorvel"_s).constData(), 0600) == 0);
        QCOMPARE(content(), QByteArray(OtherFile));
    }

    // Unreadable is as good as missing: the defaults are written, though nobody can read them.
    void a_file_that_may_only_be_written_gets_the_defaults()
    {
        writeFile(path(), OtherFile);
        QVERIFY(::chmod(encoded(u".config/ForQuorvel"_s).constData(), 0200) == 0);
        handOver({u""_s, u".config"_s, u".config/ForQuorvel"_s});
        QStringList complaints;
        for (int i = 0; i < 8; ++i)
            complaints += u"cannot read {}: Permission denied"_s;
        expect(asUser() << u"read"_s, {EmptyWords}, complaints);
        QVERIFY(::chmod(encoded(u".config/ForQuorvel"_s).constData(), 0600) == 0);
        QCOMPARE(content(), QByteArray(DefaultFile));
    }

    void a_config_that_may_not_be_entered_reads_as_nothing()
    {
        writeFile(path(), OtherFile);
        handOver({u""_s, u".config"_s, u".config/ForQuorvel"_s});
        QVERIFY(::chmod(encoded(u".config"_s).constData(), 0) == 0);
        QStringList complaints;
        for (int i = 0; i < 4; ++i)
            complaints +=
                {u"cannot read {}: Permission denied"_s, u"cannot write {}: Permission denied"_s,
                 u"cannot read {}: Permission denied"_s};
        expect(asUser() << u"read"_s, {EmptyWords}, complaints);
        QVERIFY(::chmod(encoded(u".config"_s).constData(), 0700) == 0);
        QCOMPARE(content(), QByteArray(OtherFile));
    }

    void a_read_only_home_is_read_and_not_written()
    {
        expect({u"tmpfs"_s, u"put"_s, u"read-only"_s, u"read"_s, u"write"_s, u"read"_s},
               {OtherWords, OtherWords}, {u"cannot write {}: Read-only file system"_s});
    }

    void a_read_only_home_without_settings_reads_as_nothing()
    {
        QStringList complaints;
        for (int section = 0; section < 4; ++section)
            complaints +=
                {u"cannot read {}: "_s + NoFile, u"cannot write {}: Read-only file system"_s,
                 u"cannot read {}: "_s + NoFile};
        expect({u"tmpfs"_s, u"read-only"_s, u"read"_s, u"file"_s}, {EmptyWords, u"none"_s},
               complaints);
    }

    // The file is made and stays empty, so the defaults reach nobody.
    void a_full_disk_without_settings_reads_as_nothing()
    {
        expect(
            {u"tmpfs"_s, u"fill"_s, u"read"_s, u"file"_s, u"new"_s, u"read"_s},
            {EmptyWords, u"0"_s, EmptyWords},
            {u"cannot read {}: "_s + NoFile, u"cannot write all of {}: No space left on device"_s});
    }

    void a_full_disk_is_no_trouble_for_what_fits_where_it_was()
    {
        expect({u"tmpfs"_s, u"put"_s, u"fill"_s, u"read"_s, u"write"_s, u"read"_s},
               {OtherWords, OtherWithSmoothing}, {});
    }

    // The file was emptied first and keeps what fits. The store that wrote it still has the rest.
    void a_full_disk_cuts_a_longer_file()
    {
        expect(
            {u"tmpfs"_s, u"put"_s, u"fill"_s, u"write-use=6000"_s, u"file"_s, u"read"_s, u"new"_s,
             u"read"_s},
            {u"4096"_s, OtherWords, u"'Rain' '' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s},
            {u"cannot write all of {}: No space left on device"_s});
    }

    // With texts beyond what is written at once, too.
    void a_store_writes_again_once_there_is_room_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {6000, 20000, 100000})
            QTest::addRow("%d", length) << length;
    }
    void a_store_writes_again_once_there_is_room()
    {
        QFETCH(const int, length);
        expect({u"tmpfs"_s, u"put"_s, u"fill"_s, u"write-use=%1"_s.arg(length), u"file"_s,
                u"free"_s, u"write"_s, u"read"_s, u"new"_s, u"read"_s},
               {u"4096"_s, OtherWithSmoothing, OtherWithSmoothing},
               {u"cannot write all of {}: No space left on device"_s});
    }
};

QTEST_GUILESS_MAIN(TestSettingsFileTrouble)
#include "tst_settings_file_trouble.moc"
