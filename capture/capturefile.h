// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdio>
#include <memory>

namespace capture {

// A capture file of libpcap: packets with their time, whatever they mean. Its implementation is a
// module, since only recordings need that library and all that it brings along.
class CaptureFile
{
public:
    static constexpr const char *Name = "capture";

    // Makes the bytes of a file, in memory.
    class Packer
    {
    public:
        virtual ~Packer() = default;
        virtual void pack(std::chrono::microseconds time, const QByteArray &packet) = 0;
        // What was packed since the last call, with the file's header before the first packet.
        // Valid until the next call.
        virtual QByteArrayView take() = 0;
    };

    enum class Outcome { Packet, End, CutShort, Damaged };
    // Reads a file from its beginning.
    class Unpacker
    {
    public:
        virtual ~Unpacker() = default;
        virtual int linkType() const = 0;
        // A packet is valid until the next call; empty if whoever made the file has shortened it.
        virtual Outcome next(std::chrono::microseconds &time, QByteArrayView &packet) = 0;
        // What is Damaged, in words.
        virtual QString problem() const = 0;
    };

    // The link type, and the most bytes that a packet has.
    virtual std::unique_ptr<Packer> packer(int linkType, int packetSize) = 0;
    // Takes the file. Nothing, and the reason in problem, when it is no capture file.
    virtual std::unique_ptr<Unpacker> unpacker(std::FILE *file, QString *problem) = 0;

protected:
    ~CaptureFile() = default;
};

} // namespace capture
