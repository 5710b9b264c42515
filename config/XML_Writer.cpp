// SPDX-License-Identifier: GPL-3.0-or-later

#include "XML_Writer.h"

#include "fields.h"

using namespace Qt::StringLiterals;

namespace {

QString textOf(const QString &value)
{
    // With half a character the rest of the document would be lost.
    return value.isValidUtf16() ? value : QString::fromUtf8(value.toUtf8());
}

// Of integers and enumerations.
QString textOf(auto value)
{
    return QString::number(long(value));
}

} // namespace

void xml_writer::write(QIODevice *device, const _XML_DATA &data)
{
    setDevice(device);
    Xml_Data = data;
    setAutoFormatting(true);
    writeStartDocument(u"1.0"_s);
    write_data();
    writeEndDocument();
    setDevice(nullptr);
}

void xml_writer::write_data()
{
    writeStartElement(element::Data);
    write_easysetting();
    write_setting();
    write_smoothing();
    write_connect();
    writeEndElement();
}

void xml_writer::write_easysetting()
{
    writeSection(element::EasySetting, Xml_Data.EasySettingData);
}

void xml_writer::write_setting()
{
    writeSection(element::Setting, Xml_Data.SettingData);
}

void xml_writer::write_smoothing()
{
    writeSection(element::Smoothing, Xml_Data.SmoothingData);
}

void xml_writer::write_connect()
{
    writeSection(element::Connect, Xml_Data.ConnectData);
}

void xml_writer::writeSection(QLatin1StringView name, const auto &section)
{
    writeStartElement(name);
    element::visitFields(section, [this](QLatin1StringView field, const auto &value) {
        this->writeTextElement(field, textOf(value));
    });
    writeEndElement();
}
