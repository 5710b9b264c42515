// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "settings_data.h"

#include <QHash>
#include <QSet>
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
    // Whether what was read last named every field of a section (element::Setting and the like).
    // The record may hold the rest from before, or from nowhere.
    bool gaveWhole(QLatin1StringView sectionName) const { return whole.contains(sectionName); }

private:
    void read_data();
    void read_easysetting();
    void read_setting();
    void read_smoothing();
    void read_connect();
    void readSection(QLatin1StringView sectionName, auto &section);
    // The number of the field within its section, if it is one and has been taken.
    int readField(auto &section);

    _XML_DATA XmlData;                       // what was read last
    QHash<QLatin1StringView, quint32> given; // by the last document: a bit for each field
    QSet<QLatin1StringView> whole;           // sections of which it gave all
};
