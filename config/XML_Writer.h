#pragma once

#include "settings_data.h"

#include <QXmlStreamWriter>

// Writes the settings file.
class xml_writer : public QXmlStreamWriter
{
public:
    // Writes the whole document for a record. What goes wrong, the device knows.
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
