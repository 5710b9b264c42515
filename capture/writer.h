// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "capturefile.h"
#include "device/filedescriptor.h"
#include "record.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

namespace capture {

// Writes a recording: each record is in the file, whole, when add() returns. A record that the disk
// has no room for is counted and leaves nothing behind, and the next one that fits tells how many
// are missing before it.
class Writer
{
    Q_DECLARE_TR_FUNCTIONS(Writer)

public:
    // Makes the file, or empties one that is a recording. Anything else that is at this path, a
    // symbolic link too, stays as it is. Nothing, and the reason in problem, when that fails.
    static std::unique_ptr<Writer> create(const QString &path, QString *problem);

    // False when it is lost. The record's own count of lost ones is replaced.
    bool add(Record record);

    quint64 written() const { return writtenRecords; }
    quint64 lost() const { return lostRecords; }
    // Why the last record was lost; empty when it was not.
    QString problem() const { return trouble; }

private:
    Writer(FileDescriptor descriptor, std::unique_ptr<CaptureFile::Packer> packing);
    bool append(QByteArrayView bytes);

    FileDescriptor file;
    std::unique_ptr<CaptureFile::Packer> packer;
    qint64 end = 0; // of what is whole
    quint64 writtenRecords = 0;
    quint64 lostRecords = 0;
    quint32 lostSinceWritten = 0;
    QString trouble;
};

} // namespace capture
