// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "filedescriptor.h"

#include <QByteArray>
#include <QString>

// Files in a folder that others may write to as well: nothing here follows a symbolic link, waits
// for the other end of a pipe or touches a device.
namespace plainfile {

// Makes the file, or empties the one that is there. Not valid, with the reason in errno, when it
// cannot be written or is no file.
FileDescriptor openEmpty(const QString &path);

// Copies a file, with its permissions, into a folder where nothing has its name; leaves nothing
// half-written. The source may be a link to a file. False when nothing was copied.
bool copyInto(const QString &source, const QString &folder);

enum class Readers {
    AsTheMaskSays, // what the user allows others for new files
    Everybody
};

// Puts a file of this content in the place of a file or a link of this name: whole, and safe
// from a power cut, or not at all. An empty text, or why it failed.
QString replace(const QString &path, const QByteArray &content,
                Readers readers = Readers::AsTheMaskSays);

} // namespace plainfile
