// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader.h"

#include "device/filedescriptor.h"
#include "modules/module.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace capture {

namespace {

QString errorText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

Reader::Reader(std::unique_ptr<CaptureFile::Unpacker> opened, QString name)
    : file(std::move(opened))
    , path(std::move(name))
{
}

std::unique_ptr<Reader> Reader::open(const QString &path, QString *problem)
{
    // Without waiting: a pipe at this path may have no writer.
    FileDescriptor descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status = {};
    if (!descriptor.isValid() || ::fstat(descriptor.get(), &status) != 0) {
        *problem = tr("%1: cannot be read: %2").arg(path, errorText(errno));
        return nullptr;
    }
    if (!S_ISREG(status.st_mode)) {
        *problem = tr("%1: is no file, and so no recording").arg(path);
        return nullptr;
    }
    if (status.st_size > MaxFileSize) {
        *problem = tr("%1: is larger than %2 MiB, which no recording is")
                       .arg(path)
                       .arg(MaxFileSize / 1024 / 1024);
        return nullptr;
    }
    std::FILE *stream = ::fdopen(descriptor.get(), "rb");
    if (!stream) {
        *problem = tr("%1: cannot be read: %2").arg(path, errorText(errno));
        return nullptr;
    }
    descriptor.release();
    return read(stream, path, problem);
}

std::unique_ptr<Reader> Reader::read(std::FILE *stream, const QString &name, QString *problem)
{
    auto *const format = modules::load<CaptureFile>(problem);
    if (!format) {
        std::fclose(stream);
        return nullptr;
    }
    QString reason;
    std::unique_ptr<CaptureFile::Unpacker> opened = format->unpacker(stream, &reason);
    if (!opened) {
        *problem = tr("%1: is no capture file: %2").arg(name, reason);
        return nullptr;
    }
    if (const int type = opened->linkType(); type != LinkType) {
        *problem = tr("%1: is a capture file of something else: its link type is %2, that of a "
                      "recording %3")
                       .arg(name)
                       .arg(type)
                       .arg(LinkType);
        return nullptr;
    }
    return std::unique_ptr<Reader>(new Reader(std::move(opened), name));
}

std::optional<Record> Reader::next()
{
    if (ended)
        return {};
    std::chrono::microseconds time{0};
    QByteArrayView packet;
    switch (file->next(time, packet)) {
    case CaptureFile::Outcome::Packet:
        ++packets;
        if (auto record = decode(packet, time))
            return record;
        trouble = tr("%1: packet %2 tells of no traffic with a touch frame, or in a newer format")
                      .arg(path)
                      .arg(packets);
        break;
    case CaptureFile::Outcome::CutShort:
        cutShort = true;
        break;
    case CaptureFile::Outcome::Damaged:
        trouble = tr("%1: behind packet %2: %3").arg(path).arg(packets).arg(file->problem());
        break;
    case CaptureFile::Outcome::End:
        break;
    }
    ended = true;
    return {};
}

} // namespace capture
