#include "reader.h"

#include "device/filedescriptor.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <pcap/pcap.h>
#include <sys/stat.h>
#include <utility>

namespace capture {

namespace {

QString errorText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

void Reader::Close::operator()(pcap *opened) const
{
    pcap_close(opened);
}

Reader::Reader(pcap *opened, QString name)
    : file(opened)
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
    std::array<char, PCAP_ERRBUF_SIZE> reason{};
    pcap *const opened = pcap_fopen_offline(stream, reason.data());
    if (!opened) {
        std::fclose(stream);
        *problem =
            tr("%1: is no capture file: %2").arg(name, QString::fromLocal8Bit(reason.data()));
        return nullptr;
    }
    std::unique_ptr<Reader> reader(new Reader(opened, name));
    if (const int type = pcap_datalink(opened); type != LinkType) {
        *problem = tr("%1: is a capture file of something else: its link type is %2, that of a "
                      "recording %3")
                       .arg(name)
                       .arg(type)
                       .arg(LinkType);
        return nullptr;
    }
    return reader;
}

std::optional<Record> Reader::next()
{
    if (ended)
        return {};
    pcap_pkthdr *header = nullptr;
    const UCHAR *bytes = nullptr;
    const int outcome = pcap_next_ex(file.get(), &header, &bytes);
    if (outcome == 1) {
        ++packets;
        const auto time =
            std::chrono::seconds(header->ts.tv_sec) + std::chrono::microseconds(header->ts.tv_usec);
        if (header->caplen == header->len) {
            if (auto record = decode({bytes, qsizetype(header->caplen)}, time))
                return record;
        }
        trouble = tr("%1: packet %2 tells of no traffic with a touch frame, or in a newer format")
                      .arg(path)
                      .arg(packets);
    } else if (outcome == PCAP_ERROR && std::feof(pcap_file(file.get())) != 0) {
        cutShort = true;
    } else if (outcome == PCAP_ERROR) {
        trouble = tr("%1: behind packet %2: %3")
                      .arg(path)
                      .arg(packets)
                      .arg(QString::fromLocal8Bit(pcap_geterr(file.get())));
    }
    ended = true;
    return {};
}

} // namespace capture
