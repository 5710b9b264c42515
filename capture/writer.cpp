// SPDX-License-Identifier: GPL-3.0-or-later

#include "writer.h"

#include "modules/module.h"
#include "reader.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace capture {

namespace {

QString textOf(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

// Empty, or read to its first packet, is this a recording?
bool isRecording(int file)
{
    const int copy = ::fcntl(file, F_DUPFD_CLOEXEC, 0);
    std::FILE *stream = copy >= 0 ? ::fdopen(copy, "rb") : nullptr;
    if (!stream) {
        if (copy >= 0)
            ::close(copy);
        return false;
    }
    QString reason;
    const std::unique_ptr<Reader> reader = Reader::read(stream, {}, &reason);
    return reader && (reader->next() || reader->problem().isEmpty());
}

} // namespace

Writer::Writer(FileDescriptor descriptor, std::unique_ptr<CaptureFile::Packer> packing)
    : file(std::move(descriptor))
    , packer(std::move(packing))
{
}

std::unique_ptr<Writer> Writer::create(const QString &path, QString *problem)
{
    auto *const format = modules::load<CaptureFile>(problem);
    if (!format)
        return nullptr;
    const QByteArray name = QFile::encodeName(path);
    constexpr int Flags = O_RDWR | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW | O_NONBLOCK;
    constexpr mode_t Mode = 0666;
    FileDescriptor descriptor(::open(name.constData(), Flags | O_CREAT | O_EXCL, Mode));
    const bool isNew = descriptor.isValid();
    if (!isNew && errno == EEXIST)
        descriptor = FileDescriptor(::open(name.constData(), Flags));
    if (!descriptor.isValid()) {
        *problem = errno == ELOOP
                       ? tr("%1: is a symbolic link, which a recording does not follow: name the "
                            "file itself")
                             .arg(path)
                       : tr("%1: cannot be written: %2").arg(path, textOf(errno));
        return nullptr;
    }
    struct stat status = {};
    if (::fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        *problem = tr("%1: is no file: choose another name").arg(path);
        return nullptr;
    }
    if (::flock(descriptor.get(), LOCK_EX | LOCK_NB) != 0) {
        *problem = tr("%1: another program is recording into it: choose another name").arg(path);
        return nullptr;
    }
    if (status.st_size > 0 && !isRecording(descriptor.get())) {
        *problem = tr("%1: exists and is no recording: choose another name").arg(path);
        return nullptr;
    }
    std::unique_ptr<Writer> writer(
        new Writer(std::move(descriptor), format->packer(LinkType, PacketSize)));
    // The header first: it takes the place of the old one, so a full disk keeps the old recording.
    if (!writer->append(writer->packer->take()) ||
        ::ftruncate(writer->file.get(), writer->end) != 0) {
        *problem = tr("%1: cannot be written: %2").arg(path, textOf(errno));
        if (isNew)
            ::unlink(name.constData());
        return nullptr;
    }
    return writer;
}

bool Writer::add(Record record)
{
    record.lost = lostSinceWritten;
    packer->pack(record.time, encode(record));
    const QByteArrayView bytes = packer->take();
    if (end + bytes.size() > MaxFileSize) {
        trouble = tr("a recording has at most %1 MiB").arg(MaxFileSize / 1024 / 1024);
    } else if (append(bytes)) {
        ++writtenRecords;
        lostSinceWritten = 0;
        trouble.clear();
        return true;
    } else {
        trouble = textOf(errno);
    }
    ++lostRecords;
    if (lostSinceWritten < std::numeric_limits<quint32>::max())
        ++lostSinceWritten;
    return false;
}

// All of it, or nothing with errno set.
bool Writer::append(QByteArrayView bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            ::pwrite(file.get(), bytes.data() + done, size_t(bytes.size() - done), end + done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            const int error = count < 0 ? errno : ENOSPC;
            // Half a packet would end what can be read.
            if (done > 0 && ::ftruncate(file.get(), end) != 0)
                qWarning("half a packet stays at the end of a recording");
            errno = error;
            return false;
        }
        done += count;
    }
    end += done;
    return true;
}

} // namespace capture
