// SPDX-License-Identifier: GPL-3.0-or-later

// Every record against bytes typed by hand, in both directions.

#include "device/records.h"

#include <QTest>

#include <cstring>

using namespace command;

namespace {

Frame bytes(const char *hex)
{
    const QByteArray typed = QByteArray::fromHex(hex);
    Frame frame{};
    memcpy(frame.data(), typed.constData(), size_t(typed.size()));
    return frame;
}

QByteArray hex(const Frame &frame)
{
    return QByteArray(reinterpret_cast<const char *>(frame.data()), FrameSize).toHex(' ').toUpper();
}

// The record makes these bytes, and these bytes make the record.
template <typename Record>
void both(const Record &record, const char *typed)
{
    const Frame frame = bytes(typed);
    QCOMPARE(hex(record.encode()), hex(frame));
    const auto read = Record::decode(frame);
    QVERIFY(read.has_value());
    QVERIFY(*read == record);
}

// Frames of another class and of another sub-command are none of this record's.
template <typename Record>
void others(const char *typed)
{
    Frame frame = bytes(typed);
    frame[1] = 0x77;
    QVERIFY(!Record::decode(frame));
    frame = bytes(typed);
    frame[2] = 0x6E;
    QVERIFY(!Record::decode(frame));
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void gestures()
    {
        const char *typed = "00 A2 00 05 00 01 01 DC 05 03 01 02";
        both(Gestures{1, 1, 1500, 3, 1, 2}, typed);
        others<Gestures>(typed);
    }

    void adc_lines()
    {
        const char *typed = "00 A2 04 0C 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02";
        both(AdcLines{3800, 4000, 3000, 3200, 1000, 600}, typed);
        others<AdcLines>(typed);
    }

    void an_adc_report_adds_the_light_counts()
    {
        const char *typed = "FC A2 85 11 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02 F4 01 5E 01";
        both(AdcReport{{3800, 4000, 3000, 3200, 1000, 600}, {500, 350}}, typed);
        others<AdcReport>(typed);
    }

    void light_counts()
    {
        const char *typed = "FC A5 80 05 00 60 00 36 01";
        both(LightCounts{96, 310}, typed);
        others<LightCounts>(typed);
    }

    void requests_for_a_light()
    {
        both(LightRequest{0x06, {1, 300}, -2}, "00 A2 06 04 00 01 2C 01 FE");
        both(LightRequest{0x07, {2, 7}}, "00 A2 07 03 00 02 07 00");
        both(LightRequest{0x08, {2, 7}, 0, true}, "00 A2 08 04 00 02 07 00 01");
        both(LightRequest{0x08, {2, 7}, 0, false}, "00 A2 08 04 00 02 07 00 00");
        others<LightRequest>("00 A2 07 03 00 02 07 00");
    }

    void a_light_report()
    {
        const char *typed = "FC A2 87 0B 00 01 2C 01 80 30 34 12 78 56 01";
        both(LightReport{{1, 300}, -128, 0x30, 0x1234, 0x5678, true}, typed);
        both(LightReport{{2, 7}, 127, 0x31, 0x4321, 0x8765, false},
             "FC A2 87 0B 00 02 07 00 7F 31 21 43 65 87 00");
        others<LightReport>(typed);
    }

    void any_value_but_zero_switches_a_light_off()
    {
        QVERIFY(LightReport::decode(bytes("FC A2 87 0B 00 01 00 00 00 00 00 00 00 00 40"))->off);
        QVERIFY(!LightReport::decode(bytes("FC A2 87 0B 00 01"))->off);
        QVERIFY(LightRequest::decode(bytes("00 A2 08 04 00 01 00 00 80"))->off);
    }

    void a_scan_page()
    {
        ScanPage page{0x01, 330};
        page.bytes = {0x10, 0x20, 0x30};
        page.size = 3;
        both(page, "FC A5 81 06 00 4A 01 10 20 30");
        page.axis = 0x02;
        both(page, "FC A5 82 06 00 4A 01 10 20 30");
        others<ScanPage>("FC A5 81 06 00 4A 01 10 20 30");
    }

    void a_scan_page_is_read_by_level_or_by_pair()
    {
        const auto page = ScanPage::decode(bytes("FC A5 81 07 00 00 00 11 22 33 44"));
        QCOMPARE(page->level(0), 0x11);
        QCOMPARE(page->level(3), 0x44);
        QCOMPARE(page->pairLevel(0), 0x11);
        QCOMPARE(page->pairGain(0), 0x22);
        QCOMPARE(page->pairLevel(1), 0x33);
        QCOMPARE(page->pairGain(1), 0x44);
    }

    void a_scan_page_has_no_more_bytes_than_a_frame_whatever_it_says()
    {
        QCOMPARE(ScanPage::decode(bytes("FC A5 81 FF"))->size, 57);
        QCOMPARE(ScanPage::decode(bytes("FC A5 81 00"))->size, 0);
    }

    void rotation()
    {
        both(RotationCommand{2}, "00 A7 00 02 00 02");
        others<RotationCommand>("00 A7 00 02 00 02");
        both(RotationReport{0x82, 3}, "FC A7 82 02 00 03");
        both(RotationReport{0x81, 1}, "FC A7 81 02 00 01");
        others<RotationReport>("FC A7 82 02 00 03");
    }

    void a_firmware_record()
    {
        const char *typed = "FC A3 80 0E 00 12 38 00 DE C0 17 5A 34 12 50 60 01 21";
        both(FirmwareRecord{0x003812, 0x5A17C0DE, 0x01234, 0x1605, 0x21}, typed);
        others<FirmwareRecord>(typed);
    }

    void number_and_date_of_a_firmware_record_share_a_byte()
    {
        const auto read =
            FirmwareRecord::decode(bytes("FC A3 80 0E 00 FF FF FF FF FF FF FF 67 45 A3 BC FD 02"));
        QCOMPARE(read->revision, 0xFFFFFFu);
        QCOMPARE(read->checksum, 0xFFFFFFFFu);
        QCOMPARE(read->number, 0x34567u);
        QCOMPARE(read->date, 0xDBCAu);
        both(FirmwareRecord{0x003812, 0x5A17C0DE, 0x34567, 0xDBCA, 0x02},
             "FC A3 80 0E 00 12 38 00 DE C0 17 5A 67 45 A3 BC 0D 02");
        QCOMPARE(int(read->family), 2);
    }

    void calibration()
    {
        both(CalibrationStep{0x00}, "00 01 00");
        both(CalibrationStep{0x04}, "00 01 04");
        both(CalibrationStep{0xFF}, "00 01 FF");
        QVERIFY(!CalibrationStep::decode(bytes("FC 02 01")));
        const char *check = "00 01 05 80 07 00 00 80 07 38 04 00 0F 38 04";
        both(CalibrationCheck{1920, 0, 1920, 1080, 3840, 1080}, check);
        others<CalibrationCheck>(check);
        both(CalibrationCheck{0x0201, 0x0403, 0x0605, 0x0807, 0x0A09, 0x0C0B},
             "00 01 05 01 02 03 04 05 06 07 08 09 0A 0B 0C");
        both(CalibrationEnd{-2, 3}, "FC 01 FF 00 FE 03");
        others<CalibrationEnd>("FC 01 FF 00 FE 03");
    }

    void the_baud_command()
    {
        both(BaudCommand{19}, "00 B1 00 03 00 13");
        both(BaudCommand{0x030201}, "00 B1 00 03 00 01 02 03");
        others<BaudCommand>("00 B1 00 03 00 13");
    }

    void values_are_cut_to_their_bits()
    {
        QCOMPARE(hex(Gestures{256, 257, 99999, 300, 1, 2}.encode()),
                 hex(bytes("00 A2 00 05 00 00 01 9F 86 2C 01 02")));
        QCOMPARE(hex(CalibrationCheck{65536 + 5, 0, 1, 1, 1, 1}.encode()),
                 hex(bytes("00 01 05 05 00 00 00 01 00 01 00 01 00 01 00")));
    }

    void what_a_link_cut_off_reads_as_zero()
    {
        const auto check = CalibrationCheck::decode(bytes("00 01 05 00 00 00"));
        QVERIFY(*check == CalibrationCheck());
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
