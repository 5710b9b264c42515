// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "capturefile.h"
#include "record.h"

#include <QCoreApplication>
#include <QString>

#include <cstdio>
#include <memory>

namespace capture {

// Reads a recording, one record after the other. Whoever made the file: what is no recording, or
// too large for one, is refused with a reason.
class Reader
{
    Q_DECLARE_TR_FUNCTIONS(Reader)

public:
    // Nothing, and the reason in problem, for what cannot be opened or is no capture file of ours.
    static std::unique_ptr<Reader> open(const QString &path, QString *problem);
    // The same with a file that is open; takes it. The name is what its problems call it.
    static std::unique_ptr<Reader> read(std::FILE *file, const QString &name, QString *problem);

    // Nothing at the end, and from the first packet on that is no record: see problem().
    std::optional<Record> next();
    // What is wrong with the file behind the records that were read; empty when nothing is.
    QString problem() const { return trouble; }
    // It ends in the middle of a packet, as when the program that wrote it is killed there. The
    // records before are whole.
    bool isCutShort() const { return cutShort; }

private:
    Reader(std::unique_ptr<CaptureFile::Unpacker> opened, QString name);

    const std::unique_ptr<CaptureFile::Unpacker> file;
    const QString path;
    quint64 packets = 0;
    QString trouble;
    bool cutShort = false;
    bool ended = false;
};

} // namespace capture
