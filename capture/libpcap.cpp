// SPDX-License-Identifier: GPL-3.0-or-later

#include "capturefile.h"
#include "modules/module.h"

#include <array>
#include <cstdlib>
#include <pcap/pcap.h>

namespace capture {

namespace {

// In memory: a file that is written through a stream keeps half a packet on a full disk.
class PcapPacker final : public CaptureFile::Packer
{
public:
    PcapPacker(int linkType, int packetSize)
        : stream(::open_memstream(&bytes, &size))
    {
        if (!stream)
            qFatal("no memory for a packet");
        dead = pcap_open_dead(linkType, packetSize);
        dumper = dead ? pcap_dump_fopen(dead, stream) : nullptr;
        if (!dumper)
            qFatal("no memory for a packet");
    }
    PcapPacker(const PcapPacker &) = delete;
    PcapPacker &operator=(const PcapPacker &) = delete;
    ~PcapPacker() override
    {
        pcap_dump_close(dumper);
        pcap_close(dead);
        std::free(bytes);
    }

    void pack(std::chrono::microseconds time, const QByteArray &packet) override
    {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
        pcap_pkthdr header = {};
        header.ts.tv_sec = seconds.count();
        header.ts.tv_usec = (time - seconds).count();
        header.caplen = header.len = bpf_u_int32(packet.size());
        pcap_dump(reinterpret_cast<u_char *>(dumper), &header,
                  reinterpret_cast<const u_char *>(packet.constData()));
    }
    QByteArrayView take() override
    {
        std::fflush(stream);
        const QByteArrayView packed(bytes, qsizetype(size));
        std::rewind(stream);
        return packed;
    }

private:
    char *bytes = nullptr;
    size_t size = 0;
    std::FILE *stream; // of dumper, which closes it
    pcap_t *dead = nullptr;
    pcap_dumper_t *dumper = nullptr;
};

struct Close
{
    void operator()(pcap_t *opened) const { pcap_close(opened); }
};

class PcapUnpacker final : public CaptureFile::Unpacker
{
public:
    explicit PcapUnpacker(pcap_t *opened)
        : file(opened)
    {
    }

    int linkType() const override { return pcap_datalink(file.get()); }
    CaptureFile::Outcome next(std::chrono::microseconds &time, QByteArrayView &packet) override
    {
        using Outcome = CaptureFile::Outcome;
        pcap_pkthdr *header = nullptr;
        const u_char *bytes = nullptr;
        const int outcome = pcap_next_ex(file.get(), &header, &bytes);
        if (outcome == PCAP_ERROR)
            return std::feof(pcap_file(file.get())) != 0 ? Outcome::CutShort : Outcome::Damaged;
        if (outcome != 1)
            return Outcome::End;
        time =
            std::chrono::seconds(header->ts.tv_sec) + std::chrono::microseconds(header->ts.tv_usec);
        packet = {bytes, qsizetype(header->caplen == header->len ? header->caplen : 0)};
        return Outcome::Packet;
    }
    QString problem() const override { return QString::fromLocal8Bit(pcap_geterr(file.get())); }

private:
    std::unique_ptr<pcap_t, Close> file;
};

class Libpcap final : public CaptureFile
{
public:
    std::unique_ptr<Packer> packer(int linkType, int packetSize) override
    {
        return std::make_unique<PcapPacker>(linkType, packetSize);
    }
    std::unique_ptr<Unpacker> unpacker(std::FILE *stream, QString *problem) override
    {
        std::array<char, PCAP_ERRBUF_SIZE> reason{};
        pcap_t *const opened = pcap_fopen_offline(stream, reason.data());
        if (opened)
            return std::make_unique<PcapUnpacker>(opened);
        std::fclose(stream);
        *problem = QString::fromLocal8Bit(reason.data());
        return nullptr;
    }
};

Libpcap libpcap;

} // namespace

QUORVEL_MODULE(CaptureFile, capture, &libpcap)

} // namespace capture
