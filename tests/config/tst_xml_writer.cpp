// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/XML_Writer.h"

#include "documents.h"

#include <QBuffer>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QByteArray written(const _XML_DATA &record)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly | QIODevice::Text);
    xml_writer writer;
    writer.write(&buffer, record);
    return buffer.data();
}

// The text of the only element of that name.
QByteArray textOf(const QByteArray &element, const QByteArray &document)
{
    const qsizetype from = document.indexOf('<' + element + '>') + element.size() + 2;
    return document.mid(from, document.indexOf("</" + element + '>') - from);
}

} // namespace

class TestXmlWriter : public QObject
{
    Q_OBJECT

private slots:
    void every_field_stands_in_its_place()
    {
        _XML_DATA record;
        record.EasySettingData = {.Environment = u"Rain"_s, .Use = u"Multipoint"_s};
        record.SettingData = {11, 12, 13, 14, 15, 16, 17, 18};
        record.SmoothingData = {21, 22};
        record.ConnectData = {.connect = 31,
                              .TUIO_en = 32,
                              .OS_en = 33,
                              .uartport = u"ttyS4"_s,
                              .uartsetting = {.BaudRate = BAUD115200,
                                              .DataBits = DATA_7,
                                              .Parity = PAR_SPACE,
                                              .StopBits = StopBitsType(3),
                                              .FlowControl = FLOW_HARDWARE,
                                              .Timeout_Millisec = 34}};
        QCOMPARE(written(record), QByteArray(OtherFile));
    }

    void the_flow_control_stands_before_parity_and_stop_bits()
    {
        const QByteArray document = written({});
        QVERIFY(document.indexOf("<DATABITS>") < document.indexOf("<FLOWCONTROL>"));
        QVERIFY(document.indexOf("<FLOWCONTROL>") < document.indexOf("<PARITY>"));
        QVERIFY(document.indexOf("<PARITY>") < document.indexOf("<STOPBITS>"));
        QVERIFY(document.indexOf("<STOPBITS>") < document.indexOf("<TIMEOUT>"));
    }

    void an_empty_record_has_every_element()
    {
        const QByteArray document = written({});
        QCOMPARE(document.count('\n'), QByteArray(OtherFile).count('\n'));
        QCOMPARE(textOf("USE", document), QByteArray());
        QCOMPARE(textOf("TIMEOUT", document), QByteArray("0"));
    }

    void numbers_are_decimal()
    {
        _XML_DATA record;
        record.SettingData.rb_ran = std::numeric_limits<int>::min();
        record.SettingData.db_ran = std::numeric_limits<int>::max();
        record.ConnectData.uartsetting.BaudRate = BaudRateType(-1);
        record.ConnectData.uartsetting.Timeout_Millisec = std::numeric_limits<long>::min();
        const QByteArray document = written(record);
        QCOMPARE(textOf("RB_RAN", document), QByteArray("-2147483648"));
        QCOMPARE(textOf("DB_RAN", document), QByteArray("2147483647"));
        QCOMPARE(textOf("BAUDRATE", document), QByteArray("-1"));
        QCOMPARE(textOf("TIMEOUT", document), QByteArray("-9223372036854775808"));
    }

    void texts_stay_what_they_are_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("expected");

        QTest::newRow("blanks") << u"  a  b "_s << QByteArray("  a  b ");
        QTest::newRow("signs of XML")
            << u"<a>&\"']]>"_s << QByteArray("&lt;a&gt;&amp;&quot;']]&gt;");
        QTest::newRow("beyond ASCII") << u"ä\U0001F600"_s << QByteArray("\xc3\xa4\xf0\x9f\x98\x80");
        QTest::newRow("what XML has no way to write") << u"a\u0001b\uFFFE"_s << QByteArray("ab");
    }
    void texts_stay_what_they_are()
    {
        QFETCH(const QString, text);
        QFETCH(const QByteArray, expected);
        _XML_DATA record;
        record.EasySettingData.Use = text;
        const QByteArray document = written(record);
        QCOMPARE(textOf("USE", document), expected);
        QVERIFY(document.endsWith("</data>\n"));
    }

    // Which sign stands for the missing half is up to Qt.
    void half_a_character_does_not_spoil_the_document()
    {
        _XML_DATA record;
        record.EasySettingData.Use = u"a"_s + QChar(0xd800) + u'b';
        xml_writer writer;
        for (int i = 0; i < 2; ++i) {
            QBuffer buffer;
            QVERIFY(buffer.open(QIODevice::WriteOnly));
            writer.write(&buffer, record);
            const QByteArray text = textOf("USE", buffer.data());
            QVERIFY(text.startsWith('a') && text.endsWith('b'));
            QCOMPARE(buffer.data().count('\n'), QByteArray(OtherFile).count('\n'));
            QVERIFY(buffer.data().endsWith("</data>\n"));
        }
    }

    void a_writer_writes_one_document_after_the_other()
    {
        QBuffer first;
        QBuffer second;
        QVERIFY(first.open(QIODevice::WriteOnly) && second.open(QIODevice::WriteOnly));
        xml_writer writer;
        writer.write(&first, {});
        writer.write(&second, {});
        QVERIFY(!first.data().isEmpty());
        QCOMPARE(first.data(), second.data());
        QCOMPARE(writer.device(), nullptr);
    }
};

QTEST_GUILESS_MAIN(TestXmlWriter)
#include "tst_xml_writer.moc"
