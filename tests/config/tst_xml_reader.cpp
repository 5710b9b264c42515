// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/XML_Reader.h"

#include "documents.h"
#include "words.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

_XML_DATA read(xml_reader &reader, QByteArray document)
{
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    return reader.read(&buffer);
}

} // namespace

class TestXmlReader : public QObject
{
    Q_OBJECT

private slots:
    void a_new_reader_holds_empty_texts_and_zeros()
    {
        xml_reader reader;
        QCOMPARE(words(read(reader, QByteArray())), EmptyWords);
    }

    void every_field_is_read()
    {
        xml_reader reader;
        QCOMPARE(words(read(reader, OtherFile)), OtherWords);
        QCOMPARE(words(read(reader, DefaultFile)), DefaultWords);
    }

    void a_section_is_whole_once_every_field_was_named_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QStringList>("expected");
        const auto without = [](const char *element) {
            QByteArray text = DefaultFile;
            const qsizetype from = text.indexOf(QByteArray("<") + element);
            const QByteArray end = QByteArray("</") + element + '>';
            return text.remove(from, text.indexOf(end) + end.size() - from);
        };
        const QStringList all{u"easysetting"_s, u"setting"_s, u"smoothing"_s, u"connect"_s};
        QTest::newRow("all") << QByteArray(DefaultFile) << all;
        QTest::newRow("an empty file") << QByteArray() << QStringList();
        QTest::newRow("empty sections")
            << "<data><easysetting/><setting/><smoothing/><connect/></data>"_ba << QStringList();
        QTest::newRow("no USE") << without("USE")
                                << QStringList{u"setting"_s, u"smoothing"_s, u"connect"_s};
        QTest::newRow("no ALL_EN")
            << without("ALL_EN") << QStringList{u"easysetting"_s, u"smoothing"_s, u"connect"_s};
        QTest::newRow("no WHEEL_SEN")
            << without("WHEEL_SEN") << QStringList{u"easysetting"_s, u"smoothing"_s, u"connect"_s};
        QTest::newRow("no SMO_LV")
            << without("SMO_LV") << QStringList{u"easysetting"_s, u"setting"_s, u"connect"_s};
        QTest::newRow("no TIMEOUT")
            << without("TIMEOUT") << QStringList{u"easysetting"_s, u"setting"_s, u"smoothing"_s};
        const QByteArray file = DefaultFile;
        QTest::newRow("cut before the gestures")
            << file.first(file.indexOf("<setting>")) << QStringList{u"easysetting"_s};
        QTest::newRow("cut in the last gesture")
            << file.first(file.indexOf("</WHEEL_SEN>")) << QStringList{u"easysetting"_s};
        QTest::newRow("cut behind the last gesture") << file.first(file.indexOf("</setting>"))
                                                     << QStringList{u"easysetting"_s, u"setting"_s};
        QTest::newRow("one field many times")
            << "<data><smoothing><SMO_EN>1</SMO_EN><SMO_EN>1</SMO_EN></smoothing></data>"_ba
            << QStringList();
        QTest::newRow("in two halves, and words for numbers")
            << "<data><smoothing><SMO_LV>x</SMO_LV></smoothing>"
               "<smoothing><SMO_EN>1</SMO_EN></smoothing></data>"_ba
            << QStringList{u"smoothing"_s};
    }
    void a_section_is_whole_once_every_field_was_named()
    {
        QFETCH(const QByteArray, document);
        QFETCH(const QStringList, expected);
        xml_reader reader;
        // What an earlier document named does not count.
        read(reader, DefaultFile);
        read(reader, document);
        QStringList found;
        for (const QLatin1StringView name :
             {"easysetting"_L1, "setting"_L1, "smoothing"_L1, "connect"_L1}) {
            if (reader.gaveWhole(name))
                found.append(name);
        }
        QCOMPARE(found, expected);
    }

    void a_device_that_cannot_be_read_gives_nothing_whole()
    {
        xml_reader reader;
        read(reader, DefaultFile);
        QVERIFY(reader.gaveWhole("setting"_L1));
        QBuffer closed;
        reader.read(&closed);
        QVERIFY(!reader.gaveWhole("setting"_L1));
    }

    // What a new reader makes of a document.
    void what_is_read_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("expected");

        QTest::newRow("no data element")
            << "<x><setting><RB_RAN>4</RB_RAN></setting></x>"_ba << EmptyWords;
        QTest::newRow("a data element inside another")
            << "<x><y><data><setting><RB_RAN>4</RB_RAN></setting></data></y></x>"_ba
            << u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("two data elements")
            << "<x><data><setting><RB_RAN>4</RB_RAN></setting></data>"
               "<data><smoothing><SMO_LV>6</SMO_LV></smoothing></data></x>"_ba
            << u"'' '' / 0 0 0 4 0 0 0 0 / 0 6 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("the end of a data element within data ends both")
            << "<data><data><setting><RB_RAN>4</RB_RAN></setting></data>"
               "<smoothing><SMO_LV>6</SMO_LV></smoothing></data>"_ba
            << u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("sections in another order")
            << "<data><connect><OS_EN>1</OS_EN></connect><smoothing><SMO_LV>6</SMO_LV></smoothing>"
               "<setting><RB_RAN>4</RB_RAN></setting>"
               "<easysetting><USE>Write</USE></easysetting></data>"_ba
            << u"'' 'Write' / 0 0 0 4 0 0 0 0 / 0 6 / 0 0 1 '' 0 0 0 0 0 0"_s;
        QTest::newRow("fields in another order")
            << "<data><connect><TIMEOUT>7</TIMEOUT><STOPBITS>2</STOPBITS><PARITY>1</PARITY>"
               "<CONNECT>3</CONNECT></connect></data>"_ba
            << u"'' '' / 0 0 0 0 0 0 0 0 / 0 0 / 3 0 0 '' 0 0 1 2 0 7"_s;
        QTest::newRow("a section twice")
            << "<data><setting><RB_RAN>4</RB_RAN><DB_RAN>20</DB_RAN></setting>"
               "<setting><RB_RAN>5</RB_RAN></setting></data>"_ba
            << u"'' '' / 0 0 0 5 0 20 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("a field twice")
            << "<data><setting><RB_RAN>4</RB_RAN><RB_RAN>5</RB_RAN></setting></data>"_ba
            << u"'' '' / 0 0 0 5 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("a field of another section")
            << "<data><setting><SMO_LV>6</SMO_LV><RB_RAN>4</RB_RAN></setting></data>"_ba
            << u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("a field outside its section")
            << "<data><RB_RAN>4</RB_RAN></data>"_ba << EmptyWords;
        QTest::newRow("a section within a section is none")
            << "<data><setting><smoothing><SMO_LV>6</SMO_LV></smoothing><RB_RAN>4</RB_RAN>"
               "</setting></data>"_ba
            << u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("a section and a field deeper than usual")
            << "<data><x><setting><y><RB_RAN>4</RB_RAN></y></setting></x></data>"_ba
            << u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("unknown elements, attributes and everything else that XML knows")
            << "<?xml version='1.0'?><!DOCTYPE data><!-- a --><data version='3'><?b c?><new>8</new>"
               "text<setting since='1'><NEW>8</NEW>text<RB_RAN unit='mm'>4</RB_RAN><!-- d -->"
               "</setting></data>"_ba
            << u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("unknown elements within a field")
            << "<data><setting><RB_RAN>1<x>8</x>2</RB_RAN><DB_RAN><x/>20</DB_RAN></setting>"
               "<smoothing><SMO_LV>6</SMO_LV></smoothing></data>"_ba
            << u"'' '' / 0 0 0 12 0 20 0 0 / 0 6 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("a comment and raw text within a field")
            << "<data><easysetting><USE>Wr<!-- a -->it<![CDATA[e<]]></USE></easysetting></data>"_ba
            << u"'' 'Write<' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("names in another case")
            << "<data><setting><rb_ran>4</rb_ran></setting><Setting><RB_RAN>4</RB_RAN></Setting>"
               "<SETTING><RB_RAN>4</RB_RAN></SETTING></data>"_ba
            << EmptyWords;
        QTest::newRow("data in another case")
            << "<Data><setting><RB_RAN>4</RB_RAN></setting></Data>"_ba << EmptyWords;
        QTest::newRow("empty fields")
            << "<data><easysetting><USE/></easysetting><setting><RB_RAN></RB_RAN></setting></data>"_ba
            << EmptyWords;
        QTest::newRow("texts as they are")
            << "<data><easysetting><ENVIRONMENT> In\n door "
               "</ENVIRONMENT><USE>&lt;&amp;&#228;\xc3\xa4"
               "\xf0\x9f\x98\x80</USE></easysetting></data>"_ba
            << u"' In\n door ' '<&ää\U0001F600' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("line ends of another system")
            << "<data>\r\n<easysetting>\r\n<USE>a\r\nb</USE>\r\n</easysetting>\r\n</data>\r\n"_ba
            << u"'' 'a\nb' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("another encoding")
            << "<?xml version='1.0' encoding='ISO-8859-1'?>"
               "<data><easysetting><USE>\xe4</USE></easysetting></data>"_ba
            << u"'' 'ä' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s;
        QTest::newRow("enumeration numbers outside their lists")
            << "<data><connect><BAUDRATE>22</BAUDRATE><DATABITS>-1</DATABITS>"
               "<FLOWCONTROL>2147483647</FLOWCONTROL><PARITY>-2147483648</PARITY>"
               "<STOPBITS>99</STOPBITS></connect></data>"_ba
            << u"'' '' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 22 -1 -2147483648 99 2147483647 0"_s;
        QTest::newRow("a time-out larger than an int")
            << "<data><connect><TIMEOUT>3000000000</TIMEOUT></connect></data>"_ba
            << u"'' '' / 0 0 0 0 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 3000000000"_s;
    }
    void what_is_read()
    {
        QFETCH(const QByteArray, document);
        QFETCH(const QString, expected);
        xml_reader reader;
        QCOMPARE(words(read(reader, document)), expected);
    }

    void numbers_are_base_ten_integers_or_nothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");

        QTest::newRow("zero") << u"0"_s << 0;
        QTest::newRow("negative") << u"-5"_s << -5;
        QTest::newRow("with a plus") << u"+5"_s << 5;
        QTest::newRow("leading zeros are no base") << u"010"_s << 10;
        QTest::newRow("between blanks") << u"\n    12 \t"_s << 12;
        QTest::newRow("largest") << u"2147483647"_s << 2147483647;
        QTest::newRow("smallest") << u"-2147483648"_s << -2147483647 - 1;
        QTest::newRow("one too large") << u"2147483648"_s << 0;
        QTest::newRow("one too small") << u"-2147483649"_s << 0;
        QTest::newRow("much too large") << u"99999999999999999999999999"_s << 0;
        QTest::newRow("hexadecimal") << u"0x10"_s << 0;
        QTest::newRow("a word") << u"abc"_s << 0;
        QTest::newRow("digits and a word") << u"12abc"_s << 0;
        QTest::newRow("two numbers") << u"1 2"_s << 0;
        QTest::newRow("a fraction") << u"5.0"_s << 0;
        QTest::newRow("a power") << u"1e3"_s << 0;
        QTest::newRow("thousands") << u"1,000"_s << 0;
        QTest::newRow("digits of another script") << u"١٢"_s << 0;
        QTest::newRow("only a sign") << u"-"_s << 0;
        QTest::newRow("blanks") << u"  "_s << 0;
        QTest::newRow("nothing") << QString() << 0;
    }
    void numbers_are_base_ten_integers_or_nothing()
    {
        QFETCH(const QString, text);
        QFETCH(const int, number);
        xml_reader reader;
        read(reader, OtherFile);
        const _XML_DATA got = read(
            reader, u"<data><setting><RB_DURATION>%1</RB_DURATION></setting><smoothing>"
                    "<SMO_LV>%1</SMO_LV></smoothing><connect><BAUDRATE>%1</BAUDRATE><TIMEOUT>%1"
                    "</TIMEOUT></connect></data>"_s.arg(text)
                        .toUtf8());
        QCOMPARE(got.SettingData.rb_duration, number);
        QCOMPARE(got.SmoothingData.smo_lv, number);
        QCOMPARE(int(got.ConnectData.uartsetting.BaudRate), number);
        if (qAbs(text.toLongLong()) <= 2147483647)
            QCOMPARE(got.ConnectData.uartsetting.Timeout_Millisec, long(number));
    }

    // What a reader makes of a document after it read another.
    void what_a_document_does_not_name_stays_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("expected");

        QTest::newRow("an empty document") << ""_ba << OtherWords;
        QTest::newRow("blanks") << " \n "_ba << OtherWords;
        QTest::newRow("no XML") << "rb_ran=4\n"_ba << OtherWords;
        QTest::newRow("zeros") << QByteArray(600, '\0') << OtherWords;
        QTest::newRow("an empty data element") << "<data/>"_ba << OtherWords;
        QTest::newRow("empty sections")
            << "<data><easysetting/><setting/><smoothing/><connect/></data>"_ba << OtherWords;
        QTest::newRow("no data element")
            << "<x><setting><RB_RAN>4</RB_RAN></setting></x>"_ba << OtherWords;
        QTest::newRow("a connect section without a time-out")
            << "<data><connect><CONNECT>1</CONNECT><TUIO_EN>0</TUIO_EN><OS_EN>1</OS_EN>"
               "<UARTPORT>COM1</UARTPORT><BAUDRATE>12</BAUDRATE><DATABITS>3</DATABITS>"
               "<FLOWCONTROL>0</FLOWCONTROL><PARITY>0</PARITY><STOPBITS>0</STOPBITS>"
               "</connect></data>"_ba
            << u"'Rain' 'Multipoint' / 11 12 13 14 15 16 17 18 / 21 22 / "
               "1 0 1 'COM1' 12 3 0 0 0 34"_s;
        QTest::newRow("one field only")
            << "<data><setting><RB_RAN>4</RB_RAN></setting></data>"_ba
            << u"'Rain' 'Multipoint' / 11 12 13 4 15 16 17 18 / 21 22 / "
               "31 32 33 'ttyS4' 19 2 4 3 1 34"_s;
        QTest::newRow("an empty text is a text")
            << "<data><easysetting><USE></USE></easysetting></data>"_ba
            << u"'Rain' '' / 11 12 13 14 15 16 17 18 / 21 22 / 31 32 33 'ttyS4' 19 2 4 3 1 34"_s;
    }
    void what_a_document_does_not_name_stays()
    {
        QFETCH(const QByteArray, document);
        QFETCH(const QString, expected);
        xml_reader reader;
        read(reader, OtherFile);
        QCOMPARE(words(read(reader, document)), expected);
    }

    // Each document sets RB_RAN to 4 and then has a mistake; nothing behind that counts.
    void what_stands_before_a_mistake_counts_data()
    {
        QTest::addColumn<QByteArray>("document");

        const QByteArray begin = "<data><setting><RB_RAN>4</RB_RAN>";
        const QByteArray end = "<DB_RAN>20</DB_RAN></setting></data>";
        QTest::newRow("ends after a field") << begin;
        QTest::newRow("ends in a tag") << begin + "<DB_RAN";
        QTest::newRow("ends before a text") << begin + "<DB_RAN>";
        QTest::newRow("ends in a text") << begin + "<DB_RAN>2";
        QTest::newRow("ends in an end tag") << begin + "<DB_RAN>20</DB_RA";
        QTest::newRow("ends in a comment") << begin + "<!-- " + end;
        QTest::newRow("a wrong end tag") << begin + "</smoothing>" + end;
        QTest::newRow("a wrong end tag in a field") << begin + "<DB_RAN>20</DB_RUN>" + end;
        QTest::newRow("a name that is none") << begin + "<1/>" + end;
        QTest::newRow("an attribute twice") << begin + "<x a='1' a='1'/>" + end;
        QTest::newRow("an unknown entity") << begin + "&x;" + end;
        QTest::newRow("an unknown entity in a field") << begin + "<DB_RAN>2&x;</DB_RAN>" + end;
        QTest::newRow("a reference to no character") << begin + "&#1;" + end;
        QTest::newRow("a control character") << begin + "\x01" + end;
        QTest::newRow("an open angle") << begin + "<" + end;
        QTest::newRow("an undeclared prefix") << begin + "<x:y/>" + end;
    }
    void what_stands_before_a_mistake_counts()
    {
        QFETCH(const QByteArray, document);
        xml_reader reader;
        read(reader, OtherFile);
        QCOMPARE(words(read(reader, document)),
                 u"'Rain' 'Multipoint' / 11 12 13 4 15 16 17 18 / 21 22 / "
                 "31 32 33 'ttyS4' 19 2 4 3 1 34"_s);
    }

    // How much in front of them counts is up to Qt, which decodes a file in larger pieces.
    void nothing_behind_bytes_that_are_no_text_counts()
    {
        xml_reader reader;
        read(reader, OtherFile);
        _XML_DATA got = read(reader, "<data><setting><RB_RAN>4</RB_RAN>\xff\xfe"
                                     "<DB_RAN>20</DB_RAN></setting></data>");
        QVERIFY(got.SettingData.rb_ran == 4 || got.SettingData.rb_ran == 14);
        got.SettingData.rb_ran = 14;
        QCOMPARE(words(got), OtherWords);
    }

    void a_document_cut_anywhere_gives_whole_values_only()
    {
        const QByteArray whole(OtherFile);
        const QStringList before = DefaultWords.split(u' ');
        const QStringList after = OtherWords.split(u' ');
        qsizetype changed = 0;
        for (qsizetype length = 0; length <= whole.size(); ++length) {
            xml_reader reader;
            read(reader, DefaultFile);
            const QStringList got = words(read(reader, whole.left(length))).split(u' ');
            QCOMPARE(got.size(), before.size());
            qsizetype now = 0;
            for (qsizetype i = 0; i < got.size(); ++i) {
                QVERIFY2(got[i] == before[i] || got[i] == after[i],
                         qPrintable(u"cut after %1 bytes: %2"_s.arg(length).arg(got[i])));
                if (got[i] != before[i])
                    ++now;
            }
            QVERIFY(now >= changed);
            changed = now;
        }
        QCOMPARE(changed, 22);
    }

    void a_mistake_does_not_spoil_the_next_document()
    {
        xml_reader reader;
        read(reader, "<data><setting><RB_RAN>4</setting>");
        QCOMPARE(words(read(reader, OtherFile)), OtherWords);
    }

    void what_is_read_is_a_copy()
    {
        xml_reader reader;
        _XML_DATA first = read(reader, OtherFile);
        first.SettingData.rb_ran = 99;
        QCOMPARE(words(read(reader, "")), OtherWords);
    }

    void two_readers_share_nothing()
    {
        xml_reader one;
        xml_reader other;
        read(one, OtherFile);
        QCOMPARE(words(read(other, "")), EmptyWords);
    }

    void entities_that_grow_without_bound_are_a_mistake()
    {
        xml_reader reader;
        const _XML_DATA got = read(reader, "<!DOCTYPE data [<!ENTITY a 'aaaaaaaaaa'>"
                                           "<!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>"
                                           "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'>"
                                           "<!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;'>]>"
                                           "<data><setting><RB_RAN>4</RB_RAN></setting>"
                                           "<easysetting><USE>&d;</USE></easysetting></data>");
        QCOMPARE(words(got), u"'' '' / 0 0 0 4 0 0 0 0 / 0 0 / 0 0 0 '' 0 0 0 0 0 0"_s);
    }

    void a_device_that_cannot_be_read_holds_nothing()
    {
        xml_reader reader;
        read(reader, OtherFile);
        QBuffer closed;
        QCOMPARE(words(reader.read(&closed)), OtherWords);
        QBuffer written;
        QVERIFY(written.open(QIODevice::WriteOnly));
        QCOMPARE(words(reader.read(&written)), OtherWords);
    }

    void the_device_may_go_before_the_reader()
    {
        xml_reader reader;
        read(reader, OtherFile);
        QCOMPARE(reader.device(), nullptr);
    }
};

QTEST_GUILESS_MAIN(TestXmlReader)
#include "tst_xml_reader.moc"
