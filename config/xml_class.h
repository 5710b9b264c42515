// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "XML_Reader.h"
#include "XML_Writer.h"

#include <QLoggingCategory>

class QFile;

// Why the settings file could not be read or written; off unless asked for.
Q_DECLARE_LOGGING_CATEGORY(lcSettings)

// The settings of the user, in one file of the home directory. Every operation goes to the file,
// so stores of several dialogs agree, and a writer keeps the sections that it does not write. A
// missing file is made with the defaults. Nothing is told when the file cannot be used: reading
// then returns what this store read before, at first empty texts and zeros. Main thread only.
class XML_CLASS
{
public:
    // Keeps the settings of this process in another directory than the user's home.
    static void useHome(const QString &directory);
    static QString filePath();

    void set_XmlData_default();

    void write_easysetting(const _EASYSETTING_DATA &data);
    void write_setting(const _SETTING_DATA &data);
    void write_smoothing(const _SMOOTHING_DATA &data);
    void write_connect(const _CONNECT_DATA &data);

    _EASYSETTING_DATA read_easysetting();
    _SETTING_DATA read_setting();
    _SMOOTHING_DATA read_smoothing();
    _CONNECT_DATA read_connect();

    // Whether the file named every field of a section (element::Setting and the like) when it was
    // read last. Otherwise what was read is partly older, or nothing that anybody chose.
    bool gaveWhole(QLatin1StringView sectionName) const { return xmlReader.gaveWhole(sectionName); }

private:
    void readFile();
    void writeFile();
    void writeTo(QFile &file);

    xml_writer xmlWriter;
    xml_reader xmlReader;
    _XML_DATA XmlData; // the file as it was last read or written

public:
    // Each section as it was last read by its own name.
    _EASYSETTING_DATA EasysettingData;
    _SETTING_DATA SettingData;
    _SMOOTHING_DATA SmoothingData;
    _CONNECT_DATA ConnectData;
};
