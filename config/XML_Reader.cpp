// SPDX-License-Identifier: GPL-3.0-or-later

#include "XML_Reader.h"

#include "fields.h"

namespace {

void take(QString &field, const QString &text)
{
    field = text;
}

// Into integers and enumerations; text that is no base-10 integer, or too large a one, gives 0.
template <typename Number>
void take(Number &field, const QString &text)
{
    if constexpr (std::same_as<Number, long>)
        field = text.toLong();
    else
        field = Number(text.toInt());
}

// A bit for each field of a section.
quint32 allFieldsOf(auto &section)
{
    int count = 0;
    element::visitFields(section, [&count](QLatin1StringView, auto &) { ++count; });
    return (1U << count) - 1;
}

} // namespace

_XML_DATA xml_reader::read(QIODevice *device)
{
    given.clear();
    whole.clear();
    if (!device->isReadable())
        return XmlData;
    setDevice(device);
    while (!atEnd()) {
        readNext();
        if (isStartElement() && name() == element::Data)
            read_data();
    }
    clear();
    return XmlData;
}

void xml_reader::read_data()
{
    while (!atEnd()) {
        readNext();
        if (isEndElement() && name() == element::Data)
            return;
        if (!isStartElement())
            continue;
        if (name() == element::EasySetting)
            read_easysetting();
        else if (name() == element::Setting)
            read_setting();
        else if (name() == element::Smoothing)
            read_smoothing();
        else if (name() == element::Connect)
            read_connect();
    }
}

void xml_reader::read_easysetting()
{
    readSection(element::EasySetting, XmlData.EasySettingData);
}

void xml_reader::read_setting()
{
    readSection(element::Setting, XmlData.SettingData);
}

void xml_reader::read_smoothing()
{
    readSection(element::Smoothing, XmlData.SmoothingData);
}

void xml_reader::read_connect()
{
    readSection(element::Connect, XmlData.ConnectData);
}

void xml_reader::readSection(QLatin1StringView sectionName, auto &section)
{
    while (!atEnd()) {
        readNext();
        if (isEndElement() && name() == sectionName)
            return;
        if (!isStartElement())
            continue;
        if (const int field = readField(section); field >= 0)
            given[sectionName] |= 1U << field;
        if (given.value(sectionName) == allFieldsOf(section))
            whole.insert(sectionName);
    }
}

int xml_reader::readField(auto &section)
{
    const QString wanted = name().toString();
    int number = 0;
    int taken = -1;
    element::visitFields(section, [&](QLatin1StringView fieldName, auto &field) {
        const int own = number++;
        if (wanted != fieldName)
            return;
        const QString text = readElementText(SkipChildElements);
        // A number that a mistake cuts short is another number.
        if (hasError())
            return;
        take(field, text);
        taken = own;
    });
    return taken;
}
