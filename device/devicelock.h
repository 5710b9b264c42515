// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "filedescriptor.h"

#include <QList>
#include <QString>

// A program that uses a device node.
struct DeviceUser
{
    qint64 pid = 0;  // 0: nobody can tell which one
    QString program; // its name, as the kernel has it; empty when that cannot be told

    bool operator==(const DeviceUser &) const = default;
};

// An advisory lock on a device node: whoever uses a frame holds it, so that two programs do not
// take each other's replies. The kernel frees it with the last descriptor, also of a program that
// was killed, and it keeps root out as well. Programs that do not ask for it are not kept out.
namespace devicelock {

enum class Outcome {
    Taken,
    Held,  // by somebody else, be it in this process
    Barred // errno says why the node cannot be opened or has no locks
};

// Locks what an open descriptor stands for until it is closed.
Outcome take(int fd);
// Opens a character device for its lock alone; what is returned in lock keeps it. Anything else
// than a character device is left alone and Barred with ENODEV.
Outcome takeAt(const QString &node, FileDescriptor &lock);

// Who holds the lock of a node. Folders are the system's, other ones are for tests.
DeviceUser holder(const QString &node, const QString &proc = QStringLiteral("/proc"));
// Every other process that has a character device open, locked or not, by rising number. Those of
// other users are seen by root only.
QList<DeviceUser> openedBy(const QString &node, const QString &proc = QStringLiteral("/proc"));
// The file in which programs of serial ports tell each other by an older habit that they use one;
// empty when there is none.
QString lockFileOf(const QString &node);
// Who such a file names. The program is empty when that process is no longer there.
DeviceUser lockFileUser(const QString &file, const QString &proc = QStringLiteral("/proc"));
// A process and its name.
DeviceUser processOf(qint64 pid, const QString &proc = QStringLiteral("/proc"));

} // namespace devicelock
