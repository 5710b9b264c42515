#pragma once

#include "settings_data.h"

#include <QXmlStreamReader>

// Reads the settings file. Keeps its record from one file to the next: what a file does not name
// keeps the value that it had. Order does not matter, later values win, unknown elements are
// skipped, and what stands before the first mistake in a file counts.
class xml_reader : public QXmlStreamReader
{
public:
    // Reads what the device holds and returns the record; one that is not open for
    // reading holds nothing.
    _XML_DATA read(QIODevice *device);

private:
    void read_data();
    void read_easysetting();
    void read_setting();
    void read_smoothing();
    void read_connect();
    void readSection(QLatin1StringView sectionName, auto &section);
    void readField(auto &section);

    _XML_DATA XmlData; // what was read last
};
