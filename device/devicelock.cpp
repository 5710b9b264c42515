// SPDX-License-Identifier: GPL-3.0-or-later

#include "devicelock.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

std::optional<struct stat> statusOf(const QString &path)
{
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return status;
}

QList<QByteArray> linesOf(const QString &path)
{
    // Files of the kernel have no size until they are read.
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
}

// A file as the list of locks names it.
QByteArray nameInLocks(const struct stat &status)
{
    return QString::asprintf("%02x:%02x:", major(status.st_dev), minor(status.st_dev)).toLatin1() +
           QByteArray::number(qulonglong(status.st_ino));
}

} // namespace

namespace devicelock {

Outcome take(int fd)
{
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0)
        return Outcome::Taken;
    return errno == EWOULDBLOCK ? Outcome::Held : Outcome::Barred;
}

Outcome takeAt(const QString &node, FileDescriptor &lock)
{
    const std::optional<struct stat> status = statusOf(node);
    if (!status || !S_ISCHR(status->st_mode)) {
        errno = status ? ENODEV : errno;
        return Outcome::Barred;
    }
    // A serial line without a carrier would be waited for, and one could become our terminal.
    FileDescriptor opened(
        ::open(QFile::encodeName(node).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!opened.isValid())
        return Outcome::Barred;
    const Outcome outcome = take(opened.get());
    if (outcome == Outcome::Taken)
        lock = std::move(opened);
    return outcome;
}

// A line reads "1: FLOCK  ADVISORY  WRITE 1234 00:05:678 0 EOF"; one that waits has "->" in front.
DeviceUser holder(const QString &node, const QString &proc)
{
    constexpr qsizetype Kind = 1;
    constexpr qsizetype Pid = 4;
    constexpr qsizetype File = 5;
    const std::optional<struct stat> status = statusOf(node);
    if (!status)
        return {};
    const QByteArray wanted = nameInLocks(*status);
    for (const QByteArray &line : linesOf(proc + "/locks"_L1)) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() > File && words[Kind] == "FLOCK" && words[File] == wanted)
            return processOf(words[Pid].toLongLong(), proc);
    }
    return {};
}

QList<DeviceUser> openedBy(const QString &node, const QString &proc)
{
    const std::optional<struct stat> status = statusOf(node);
    if (!status || !S_ISCHR(status->st_mode))
        return {};
    QList<DeviceUser> users;
    for (const QString &name : QDir(proc).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const qint64 pid = name.toLongLong();
        if (pid <= 0 || pid == QCoreApplication::applicationPid())
            continue;
        const QDir descriptors(proc + u'/' + name + "/fd"_L1);
        const QStringList numbers =
            descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        const bool uses = std::any_of(numbers.begin(), numbers.end(), [&](const QString &number) {
            const std::optional<struct stat> file = statusOf(descriptors.filePath(number));
            return file && S_ISCHR(file->st_mode) && file->st_rdev == status->st_rdev;
        });
        if (uses)
            users.append(processOf(pid, proc));
    }
    std::sort(users.begin(), users.end(),
              [](const DeviceUser &a, const DeviceUser &b) { return a.pid < b.pid; });
    return users;
}

QString lockFileOf(const QString &node)
{
    QString name = node.startsWith("/dev/"_L1) ? node.mid(5) : node;
    name.replace(u'/', u'_');
    // In the order in which the toolkit looks for a folder.
    for (const auto folder :
         {"/var/lock"_L1, "/etc/locks"_L1, "/var/spool/locks"_L1, "/var/spool/uucp"_L1, "/tmp"_L1,
          "/var/tmp"_L1, "/var/lock/lockdev"_L1, "/run/lock"_L1}) {
        QString file = folder + "/LCK.."_L1 + name;
        if (QFile::exists(file))
            return file;
    }
    return {};
}

DeviceUser lockFileUser(const QString &file, const QString &proc)
{
    const QList<QByteArray> lines = linesOf(file);
    if (lines.isEmpty())
        return {};
    return processOf(lines.first().simplified().split(' ').first().toLongLong(), proc);
}

DeviceUser processOf(qint64 pid, const QString &proc)
{
    // Locks of other containers come without a number.
    if (pid <= 0)
        return {};
    const QList<QByteArray> lines = linesOf(u"%1/%2/comm"_s.arg(proc).arg(pid));
    return {pid, lines.isEmpty() ? QString() : QString::fromLocal8Bit(lines.first())};
}

} // namespace devicelock
