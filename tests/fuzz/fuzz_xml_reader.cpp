// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/XML_Reader.h"
#include "config/XML_Writer.h"
#include "demand.h"

#include <QBuffer>

namespace {

_XML_DATA readWith(xml_reader &reader, QByteArray document)
{
    QBuffer buffer(&document);
    demand(buffer.open(QIODevice::ReadOnly | QIODevice::Text), "a buffer can be read");
    return reader.read(&buffer);
}

_XML_DATA read(const QByteArray &document)
{
    xml_reader reader;
    return readWith(reader, document);
}

QByteArray written(const _XML_DATA &record)
{
    QBuffer buffer;
    demand(buffer.open(QIODevice::WriteOnly | QIODevice::Text), "a buffer can be written");
    xml_writer().write(&buffer, record);
    return buffer.data();
}

// A reader's texts can be written, but for the carriage returns of "&#13;": a file in text mode
// loses them.
void dropCarriageReturns(_XML_DATA &record)
{
    for (QString *text : {&record.EasySettingData.Environment, &record.EasySettingData.Use,
                          &record.ConnectData.uartport})
        text->remove(u'\r');
}

} // namespace

// Any bytes are a settings file, and what a reader makes of them is a record like any other.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    const QByteArray document(reinterpret_cast<const char *>(bytes), qsizetype(size));
    xml_reader reader;
    _XML_DATA record = readWith(reader, document);
    demand(readWith(reader, document) == record, "a second reading changes nothing");
    demand(readWith(reader, {}) == record, "an empty file changes nothing");

    const QByteArray first = written(record);
    dropCarriageReturns(record);
    demand(read(first) == record, "what was written reads back as the same record");
    demand(written(read(first)) == written(record), "it is written the same way again");
    demand(readWith(reader, first) == record, "it replaces every field that a reader held");
    return 0;
}
