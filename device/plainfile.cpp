// SPDX-License-Identifier: GPL-3.0-or-later

#include "plainfile.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace plainfile {

namespace {

constexpr int Cautious = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
constexpr mode_t ForAll = 0666; // as the user's mask has it
constexpr mode_t ReadByAll = 0644;
constexpr int Tries = 100; // for a name that nothing has

// A new file beside this one; its name is put in place of the word it is given.
FileDescriptor openBeside(const QByteArray &name, QByteArray &temporary)
{
    for (int tries = 0; tries < Tries; ++tries) {
        temporary = name + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 36);
        FileDescriptor made(
            ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ForAll));
        if (made.isValid() || errno != EEXIST)
            return made;
    }
    return {};
}

bool isFile(const FileDescriptor &descriptor)
{
    struct stat status = {};
    return descriptor.isValid() && ::fstat(descriptor.get(), &status) == 0 &&
           S_ISREG(status.st_mode);
}

} // namespace

FileDescriptor openEmpty(const QString &path)
{
    FileDescriptor descriptor(::open(QFile::encodeName(path).constData(),
                                     O_WRONLY | O_CREAT | O_NOFOLLOW | Cautious, ForAll));
    if (!descriptor.isValid())
        return {};
    if (!isFile(descriptor)) {
        errno = EINVAL;
        return {};
    }
    if (::ftruncate(descriptor.get(), 0) != 0)
        return {};
    return descriptor;
}

bool copyInto(const QString &source, const QString &folder)
{
    const FileDescriptor from(::open(QFile::encodeName(source).constData(), O_RDONLY | Cautious));
    const FileDescriptor place(::open(QFile::encodeName(folder).constData(),
                                      O_DIRECTORY | O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!isFile(from) || !place.isValid() || ::fstat(from.get(), &status) != 0)
        return false;
    const QByteArray name = QFile::encodeName(QFileInfo(source).fileName());
    const FileDescriptor to(::openat(place.get(), name.constData(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!to.isValid())
        return false;
    QFile in;
    QFile out;
    bool whole = in.open(from.get(), QIODevice::ReadOnly) &&
                 out.open(to.get(), QIODevice::WriteOnly | QIODevice::Unbuffered);
    while (whole && !in.atEnd()) {
        const QByteArray some = in.read(64 * 1024);
        whole = !some.isEmpty() && out.write(some) == some.size();
    }
    whole = whole && ::fchmod(to.get(), status.st_mode & ALLPERMS) == 0;
    if (!whole)
        ::unlinkat(place.get(), name.constData(), 0);
    return whole;
}

QString replace(const QString &path, const QByteArray &content, Readers readers)
{
    const auto reason = [] { return QString::fromLocal8Bit(std::strerror(errno)); };
    const QByteArray name = QFile::encodeName(path);
    struct stat there = {};
    if (::lstat(name.constData(), &there) == 0 && !S_ISREG(there.st_mode) &&
        !S_ISLNK(there.st_mode)) {
        errno = S_ISDIR(there.st_mode) ? EISDIR : EINVAL;
        return reason();
    }
    QByteArray temporary;
    const FileDescriptor file = openBeside(name, temporary);
    if (!file.isValid())
        return reason();
    const auto giveUp = [&] {
        QString why = reason();
        ::unlink(temporary.constData());
        return why;
    };
    for (qsizetype done = 0; done < content.size();) {
        const ssize_t count =
            ::write(file.get(), content.constData() + done, size_t(content.size() - done));
        if (count < 0 && errno != EINTR)
            return giveUp();
        done += std::max<ssize_t>(count, 0);
    }
    if (readers == Readers::Everybody && ::fchmod(file.get(), ReadByAll) != 0)
        return giveUp();
    if (::fsync(file.get()) != 0 || ::rename(temporary.constData(), name.constData()) != 0)
        return giveUp();
    return {};
}

} // namespace plainfile
