// SPDX-License-Identifier: GPL-3.0-or-later

// What tshark, an ordinary capture tool, reads in a recording with the dissector that is installed
// with the package. Packets and values are typed by hand.

#include "tests/support/files.h"
#include "tests/support/typedrecording.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <grp.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongEnoughMs = 120'000;

// A file of these packets, at times a second apart.
QByteArray captureOf(const QByteArrayList &packets)
{
    QByteArray file = RecordingHeader;
    for (int i = 0; i < packets.size(); ++i)
        file += typedPacket(QByteArray(1, char(i % 128)).toHex() + "000000 00000000", packets[i]);
    return file;
}

QByteArray packet(const QByteArray &header, const QByteArray &frame)
{
    return filledUp("5176 01" + header, 12) + filledUp(frame, 64);
}

QByteArray sent(const QByteArray &bytes)
{
    return packet("00 01 00", "00 " + bytes);
}

QByteArray received(const QByteArray &bytes)
{
    return packet("01 01 00", "FC " + bytes);
}

struct Seen
{
    QStringList fields; // "class=0xa7" and so on, of the dissector alone
    QStringList experts;
};

class Tshark
{
public:
    // One entry a packet; fewer, with words, when tshark is not content.
    QList<Seen> read(const QByteArrayList &packets)
    {
        return seenIn(run(captureOf(packets), {u"-T"_s, u"pdml"_s}));
    }
    // What tshark says of a capture file, with the dissector.
    QByteArray run(const QByteArray &capture, const QStringList &arguments)
    {
        const QString dissector = keep(u"quorvel.lua"_s, contentOf(QStringLiteral(DISSECTOR)));
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, place.path());
        process.setProcessEnvironment(environment);
        // It runs no scripts for root.
        if (geteuid() == 0)
            process.setChildProcessModifier([] {
                constexpr uid_t SomeUser = 65534;
                if (setgroups(0, nullptr) != 0 || setgid(SomeUser) != 0 || setuid(SomeUser) != 0)
                    _exit(126);
            });
        process.start(u"tshark"_s, QStringList{u"-r"_s, keep(u"typed.pcap"_s, capture), u"-n"_s,
                                               u"-X"_s, u"lua_script:"_s + dissector} +
                                       arguments);
        if (!process.waitForFinished(LongEnoughMs)) {
            words = "tshark: " + process.errorString().toUtf8();
            return {};
        }
        words = process.readAllStandardError();
        return process.exitCode() == 0 ? process.readAllStandardOutput() : QByteArray();
    }

    QByteArray words;

private:
    // A file that any user can read.
    QString keep(const QString &name, const QByteArray &content)
    {
        QFile::setPermissions(place.path(), QFile::permissions(place.path()) | QFile::ReadOther |
                                                QFile::ExeOther);
        QFile file(place.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
            !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther))
            qFatal("a file of the test cannot be written");
        return file.fileName();
    }
    static QList<Seen> seenIn(const QByteArray &document)
    {
        QList<Seen> all;
        QXmlStreamReader xml(document);
        bool ours = false;
        while (!xml.atEnd()) {
            if (!xml.readNextStartElement() && xml.tokenType() != QXmlStreamReader::EndElement)
                continue;
            const bool begins = xml.isStartElement();
            const QString name = xml.attributes().value("name"_L1).toString();
            if (xml.name() == "packet"_L1 && begins)
                all.append(Seen());
            else if (xml.name() == "proto"_L1)
                ours = begins && name == "quorvel"_L1;
            else if (ours && begins && name.startsWith(u"quorvel."_s) && !all.isEmpty()) {
                const QString show = xml.attributes().value("show"_L1).toString();
                const QString word = name.sliced(8);
                if (word == "missing"_L1 || word == "unknown"_L1 || word == "unsent"_L1)
                    all.last().experts += word;
                else
                    all.last().fields += word + u'=' + show;
            }
        }
        return all;
    }

    QTemporaryDir place;
};

struct Row
{
    const char *name;
    QByteArray bytes;
    QString fields; // of the frame, without its class, sub-command and length
};

// Each is the frame from byte 1 on, in the order of a recording.
const Row Rows[] = {
    {"calibration begin", sent("01 00"), u"command=calibration: begin"_s},
    {"calibration step 1", sent("01 01"), u"command=calibration: step 1"_s},
    {"calibration step 2", sent("01 02"), u"command=calibration: step 2"_s},
    {"calibration step 3", sent("01 03"), u"command=calibration: step 3"_s},
    {"calibration step 4", sent("01 04"), u"command=calibration: step 4"_s},
    {"calibration check", sent("01 05 0005 0001 8007 3804 800C B804"),
     u"command=calibration: check calibration.x=1280 calibration.y=256 calibration.width=1920 "
     "calibration.height=1080 calibration.desktop_width=3200 calibration.desktop_height=1208"_s},
    {"calibration discard", sent("01 06"), u"command=calibration: discard"_s},
    {"calibration save", sent("01 FF"), u"command=calibration: save"_s},
    {"calibration begun", received("01 00 01"), u"command=calibration: begun"_s},
    {"calibration ready 1", received("01 01"), u"command=calibration: ready for step 1"_s},
    {"calibration ready 2", received("01 02"), u"command=calibration: ready for step 2"_s},
    {"calibration ready 3", received("01 03"), u"command=calibration: ready for step 3"_s},
    {"calibration ready 4", received("01 04"), u"command=calibration: ready for step 4"_s},
    {"calibration ready 5", received("01 05"), u"command=calibration: ready to check"_s},
    {"calibration finished", received("01 FF 00 FE 03"),
     u"command=calibration: finished calibration.deviation_x=-2 calibration.deviation_y=3"_s},
    {"old reset", sent("10 00"), u"command=reset (older devices)"_s},
    {"gestures", sent("A2 00 05 00 01 00 DC 05 03 01 02"),
     u"command=gestures: set gestures.all=1 gestures.right_button=0 "
     "gestures.right_button_time=1500 gestures.right_button_range=3 gestures.wheel=1 "
     "gestures.wheel_sensitivity=2"_s},
    {"reset", sent("A2 03"), u"command=reset"_s},
    {"adc set", sent("A2 04 0C 00 D80E A00F B80B 800C E803 5802"),
     u"command=adc: set adc.min=3800 adc.max=4000 adc.edge_min=3000 adc.edge_max=3200 "
     "adc.threshold=1000 adc.edge_threshold=600"_s},
    {"light set", sent("A2 06 04 00 01 2C01 FB"),
     u"command=light: set offset light.axis=1 light.number=300 light.offset=-5"_s},
    {"light read", sent("A2 07 03 00 02 3000"),
     u"command=light: read light.axis=2 light.number=48"_s},
    {"light switch", sent("A2 08 04 00 02 1A00 01"),
     u"command=light: switch light.axis=2 light.number=26 light.switch=1"_s},
    {"light", received("A2 87 0B 00 01 3000 FB 30 200D 700D 01"),
     u"command=light light.axis=1 light.number=48 light.offset=-5 light.agc=48 light.adc=3360 "
     "light.org=3440 light.off=1"_s},
    {"firmware read", sent("A3 00"), u"command=firmware: read"_s},
    {"firmware", received("A3 80 0E 00 123800 DEC0175A 341250 6001 21"),
     u"command=firmware firmware.revision=0x003812 firmware.checksum=0x5a17c0de "
     "firmware.number=0x001234 firmware.date=0x1605 firmware.family=0x21"_s},
    {"firmware, all bits in use", received("A3 80 0E 00 A1B2C3 01020384 5678F9 CDEA 7F"),
     u"command=firmware firmware.revision=0xc3b2a1 firmware.checksum=0x84030201 "
     "firmware.number=0x097856 firmware.date=0xacdf firmware.family=0x7f"_s},
    {"counts read", sent("A5 00"), u"command=scan: read light counts"_s},
    {"counts", received("A5 80 05 00 F401 5E01"),
     u"command=scan: light counts lights.x=500 lights.y=350"_s},
    {"scan x", sent("A5 01"), u"command=scan: read X"_s},
    {"scan y", sent("A5 02"), u"command=scan: read Y"_s},
    {"page of levels", received("A5 81 07 00 3701 D8 D5 C3 C2"),
     u"command=scan: X page scan.first=311 scan.level=216 scan.level=213 scan.level=195 "
     "scan.level=194"_s},
    {"adc read", sent("A2 05"), u"command=adc: read settings"_s},
    {"adc", received("A2 85 11 00 D80E A00F B80B 800C E803 5802 6000 3600"),
     u"command=adc: settings adc.min=3800 adc.max=4000 adc.edge_min=3000 adc.edge_max=3200 "
     "adc.threshold=1000 adc.edge_threshold=600 lights.x=96 lights.y=54"_s},
    {"page of pairs", received("A5 82 07 00 1B00 D8 30 C3 31"),
     u"command=scan: Y page scan.first=27 scan.level=216 scan.gain=48 scan.level=195 "
     "scan.gain=49"_s},
    {"rotation set", sent("A7 00 02 00 02"), u"command=rotation: set rotation.code=2"_s},
    {"rotation read", sent("A7 02"), u"command=rotation: read"_s},
    {"rotation default", received("A7 81 02 00 01"),
     u"command=rotation: default rotation.code=1"_s},
    {"rotation now", received("A7 82 02 00 03"), u"command=rotation: now rotation.code=3"_s},
    {"rate", sent("B1 00 03 00 130000"), u"command=serial rate: set baud.code=19"_s},
};

QString joined(const QStringList &fields)
{
    return fields.join(u' ');
}

} // namespace

class TestDissector : public QObject
{
    Q_OBJECT

private:
    QList<Seen> all;

private slots:
    void initTestCase()
    {
        QByteArrayList packets;
        for (const Row &row : Rows)
            packets += row.bytes;
        Tshark tshark;
        all = tshark.read(packets);
        QCOMPARE(all.size(), qsizetype(std::size(Rows)));
        QVERIFY2(!tshark.words.contains("Lua"), tshark.words.constData());
    }

    void every_field_of_every_command_has_its_name_and_value_data()
    {
        QTest::addColumn<qsizetype>("number");
        for (qsizetype i = 0; i < qsizetype(std::size(Rows)); ++i)
            QTest::newRow(Rows[i].name) << i;
    }
    void every_field_of_every_command_has_its_name_and_value()
    {
        QFETCH(const qsizetype, number);
        const QByteArray &bytes = Rows[number].bytes;
        const QString direction = bytes[3] == 1 ? u"kind=1"_s : u"kind=0"_s;
        const QString id = bytes[3] == 1 ? u"0xfc"_s : u"0x00"_s;
        const auto hex = [](char byte) {
            return u"0x"_s + QString::fromLatin1(QByteArray(1, byte).toHex());
        };
        QString expected =
            u"version=1 %1 link=1 result=0 lost=0 report_id=%2 class=%3 sub=%4"_s.arg(
                direction, id, hex(bytes[13]), hex(bytes[14]));
        if (bytes[13] != 1)
            expected += u" length=%1"_s.arg(int(bytes[15]));
        QCOMPARE(joined(all[number].fields), expected + u' ' + Rows[number].fields);
        QCOMPARE(all[number].experts, QStringList());
    }

    void what_became_of_a_frame_and_of_the_link_is_named()
    {
        const auto bare = [](const QByteArray &header) {
            return QByteArray::fromHex("5176 01" + header).leftJustified(12, '\0');
        };
        Tshark tshark;
        const QList<Seen> seen = tshark.read({
            bare("02 02"),
            packet("00 02 01", "00 A7 02"),
            packet("00 00 02", "00 A7 02"),
            packet("01 01 00 0000 2A010000", "FC A7 82 02 00 03"),
            bare("03 02 01"),
            packet("01 01 00", "FC"),
            packet("00 01 00", "00 A9 07 01"),
        });
        QCOMPARE(seen.size(), 7);
        QVERIFY2(!tshark.words.contains("Lua"), tshark.words.constData());
        QCOMPARE(joined(seen[0].fields), u"version=1 kind=2 link=2 lost=0"_s);
        QVERIFY(joined(seen[1].fields).startsWith(u"version=1 kind=0 link=2 result=1 lost=0 "_s));
        QCOMPARE(seen[1].experts, QStringList(u"unsent"_s));
        QVERIFY(joined(seen[2].fields).startsWith(u"version=1 kind=0 link=0 result=2 lost=0 "_s));
        QCOMPARE(seen[2].experts, QStringList(u"unsent"_s));
        QVERIFY(joined(seen[3].fields).startsWith(u"version=1 kind=1 link=1 result=0 lost=298 "_s));
        QCOMPARE(seen[3].experts, QStringList(u"missing"_s));
        QCOMPARE(joined(seen[4].fields), u"version=1 kind=3 link=2 end=1 lost=0"_s);
        QCOMPARE(joined(seen[5].fields), u"version=1 kind=1 link=1 result=0 lost=0 report_id=0xfc "
                                         "command=nothing yet"_s);
        QCOMPARE(joined(seen[6].fields), u"version=1 kind=0 link=1 result=0 lost=0 report_id=0x00 "
                                         "class=0xa9 sub=0x07 length=1"_s);
        QCOMPARE(seen[6].experts, QStringList(u"unknown"_s));
    }

    void a_recording_of_the_real_program_is_told_in_words()
    {
        Tshark tshark;
        const QByteArray told = tshark.run(
            contentOf(QStringLiteral(RECORDINGS "/calibration.pcap")),
            {u"-T"_s, u"fields"_s, u"-E"_s, u"separator=|"_s, u"-e"_s, u"quorvel.kind"_s, u"-e"_s,
             u"quorvel.link"_s, u"-e"_s, u"quorvel.result"_s, u"-e"_s, u"quorvel.command"_s});
        QCOMPARE(told, "2|2||\n"
                       "0|2|0|serial rate: set\n"
                       "0|2|0|serial rate: set\n"
                       "0|2|0|serial rate: set\n"
                       "0|2|0|rotation: read\n"
                       "1|2|0|rotation: default\n"
                       "1|2|0|rotation: now\n"
                       "0|2|0|calibration: begin\n"
                       "1|2|0|calibration: begun\n"
                       "1|2|0|calibration: ready for step 1\n"
                       "0|2|0|calibration: step 1\n"
                       "1|2|0|calibration: ready for step 2\n"
                       "0|2|0|calibration: step 2\n"
                       "1|2|0|calibration: ready for step 3\n"
                       "0|2|0|calibration: step 3\n"
                       "1|2|0|calibration: ready for step 4\n"
                       "0|2|0|calibration: step 4\n"
                       "1|2|0|calibration: ready to check\n"
                       "0|2|0|calibration: check\n"
                       "1|2|0|calibration: finished\n"
                       "0|2|0|calibration: save\n"
                       "3|2||\n");
    }

    void another_use_of_the_link_type_is_left_alone()
    {
        Tshark tshark;
        const QList<Seen> seen = tshark.read({QByteArray("Quite something else, of any length"),
                                              QByteArray("Qv"), QByteArray::fromHex("5176 02")});
        QCOMPARE(seen.size(), 3);
        for (const Seen &one : seen)
            QCOMPARE(one.fields, QStringList());
        QVERIFY2(!tshark.words.contains("Lua"), tshark.words.constData());
    }
};

QTEST_GUILESS_MAIN(TestDissector)
#include "tst_dissector.moc"
