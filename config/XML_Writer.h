// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "settings_data.h"

#include <QXmlStreamWriter>

// Writes the settings file. After a device that took only a part of a document, Qt's writer writes
// nothing more to any device; so give it one that takes all.
class xml_writer : public QXmlStreamWriter
{
public:
    // Writes the whole document for a record. What goes wrong, the device knows. Characters that
    // XML has no way to write are left out, halves of characters replaced.
    void write(QIODevice *device, const _XML_DATA &data);

private:
    void write_data();
    void write_easysetting();
    void write_setting();
    void write_smoothing();
    void write_connect();
    void writeSection(QLatin1StringView name, const auto &section);

    _XML_DATA Xml_Data; // being written
};
