// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/XML_Reader.h"
#include "config/XML_Writer.h"
#include "config/xml_class.h"

#include "tests/support/settingshome.h"
#include "words.h"

#include <QBuffer>
#include <QTest>

#include <array>
#include <limits>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int Records = 1000;
constexpr std::mt19937::result_type UsualSeed = 20240611;
constexpr auto Largest = std::numeric_limits<int>::max();
constexpr auto Smallest = std::numeric_limits<int>::min();

// Records with anything that an XML file can carry.
class Maker
{
public:
    explicit Maker(std::mt19937::result_type seed)
        : random(seed)
    {
    }

    _XML_DATA record()
    {
        _XML_DATA data;
        data.EasySettingData = {text(), text()};
        data.SettingData = {number(), number(), number(), number(),
                            number(), number(), number(), number()};
        data.SmoothingData = {number(), number()};
        data.ConnectData = {number(),
                            number(),
                            number(),
                            text(),
                            {BaudRateType(number()), DataBitsType(number()), ParityType(number()),
                             StopBitsType(number()), FlowType(number()), longNumber()}};
        return data;
    }

private:
    int upTo(int last) { return std::uniform_int_distribution(0, last)(random); }

    int number()
    {
        constexpr std::array special = {0, 1, -1, Largest, Smallest, Largest - 1, Smallest + 1};
        return upTo(1) == 0 ? special[size_t(upTo(int(special.size()) - 1))]
                            : std::uniform_int_distribution(Smallest, Largest)(random);
    }

    long longNumber()
    {
        using Limits = std::numeric_limits<long>;
        constexpr std::array special = {0L, -1L, Limits::max(), Limits::min()};
        return upTo(1) == 0 ? special[size_t(upTo(int(special.size()) - 1))]
                            : std::uniform_int_distribution(Limits::min(), Limits::max())(random);
    }

    // Carriage returns are left out: XML makes line feeds of them.
    char32_t character()
    {
        constexpr std::u32string_view special = U"<>&\"'];\t\n \u0085\u2028\ufeff\U0001F600";
        switch (upTo(4)) {
        case 0:
            return special[size_t(upTo(int(special.size()) - 1))];
        case 1:
            return char32_t(0x20 + upTo(0x5e));
        case 2:
            return char32_t(0xa0 + upTo(0xd7ff - 0xa0));
        case 3:
            return char32_t(0xe000 + upTo(0xfffd - 0xe000));
        default:
            return char32_t(0x10000 + upTo(0xfffff));
        }
    }

    QString text()
    {
        // Mostly short ones, some longer than what is written to a file at once.
        const int length = upTo(99) == 0 ? upTo(20000) : upTo(20);
        std::u32string characters;
        for (int i = 0; i < length; ++i)
            characters += character();
        return QString::fromStdU32String(characters);
    }

    std::mt19937 random;
};

} // namespace

class TestXmlRoundTrip : public QObject
{
    Q_OBJECT

private:
    std::mt19937::result_type seed = UsualSeed;

private slots:
    void initTestCase()
    {
        if (qEnvironmentVariableIsSet("QUORVEL_TEST_SEED")) {
            bool valid = false;
            seed = qEnvironmentVariable("QUORVEL_TEST_SEED").toUInt(&valid);
            QVERIFY2(valid, "QUORVEL_TEST_SEED is no number from 0 to 4294967295");
        }
        qInfo("seed %lu; another one: QUORVEL_TEST_SEED=...", seed);
    }

    void any_record_is_read_as_it_was_written()
    {
        Maker maker(seed);
        xml_reader reader;
        for (int i = 0; i < Records; ++i) {
            const _XML_DATA record = maker.record();
            QBuffer file;
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Text));
            xml_writer().write(&file, record);
            file.close();
            QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
            const _XML_DATA read = reader.read(&file);
            QVERIFY2(read == record, qPrintable(u"record %1: wrote %2, read %3"_s.arg(
                                         QString::number(i), words(record), words(read))));
        }
    }

    void any_record_goes_through_the_file_section_by_section()
    {
        const SettingsHome home;
        Maker maker(seed + 1);
        XML_CLASS writing;
        for (int i = 0; i < Records; ++i) {
            const _XML_DATA record = maker.record();
            writing.write_connect(record.ConnectData);
            writing.write_easysetting(record.EasySettingData);
            writing.write_smoothing(record.SmoothingData);
            writing.write_setting(record.SettingData);
            XML_CLASS reading;
            const _XML_DATA read = {reading.read_easysetting(), reading.read_setting(),
                                    reading.read_smoothing(), reading.read_connect()};
            QVERIFY2(read == record, qPrintable(u"record %1: wrote %2, read %3"_s.arg(
                                         QString::number(i), words(record), words(read))));
        }
    }
};

QTEST_GUILESS_MAIN(TestXmlRoundTrip)
#include "tst_xml_round_trip.moc"
