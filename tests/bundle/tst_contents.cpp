// SPDX-License-Identifier: GPL-3.0-or-later

#include "bundle/contents.h"
#include "tests/support/madeupmachine.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using bundle::Entry;

namespace {

capture::Record recordOf(capture::Kind kind, std::chrono::microseconds time, const QByteArray &hex)
{
    capture::Record record;
    record.kind = kind;
    record.time = time;
    record.over = capture::Over::Usb;
    const QByteArray bytes = QByteArray::fromHex(hex);
    std::copy(bytes.begin(), bytes.end(), record.frame.begin());
    return record;
}

QStringList namesOf(const QList<Entry> &entries)
{
    QStringList names;
    for (const Entry &entry : entries)
        names += entry.name;
    return names;
}

QString textOf(const QList<Entry> &entries, const QString &name)
{
    for (const Entry &entry : entries)
        if (entry.name == name)
            return entry.shown;
    return {};
}

} // namespace

class TestContents : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<MadeUpMachine> machine;
    std::optional<doctor::Examination> examination;
    bundle::Sources sources;

private slots:
    void init()
    {
        hidver = {};
        machine = std::make_unique<MadeUpMachine>();
        machine->write(u"/etc/passwd"_s, "anna:x:1000:1000:Anna Muster:/home/anna:/bin/sh\n");
        machine->who.name = u"anna"_s;
        const QString settings = machine->root() + u"/home/anna/ForQuorvel"_s;
        machine->variables.insert(u"HOME"_s, machine->root() + u"/home/anna"_s);
        machine->write(u"/home/anna/ForQuorvel"_s, "<data><by>anna@made-up-machine</by></data>");
        examination = doctor::Examination::of(
            *machine, {.usbNode = {}, .serialPort = {}, .settingsFile = settings, .hasTray = {}},
            {});
        sources = {};
        sources.machine = machine.get();
        sources.examination = &*examination;
        sources.program = u"quorvel"_s;
        sources.settingsFile = settings;
    }

    void everything_is_there_and_told_of()
    {
        hidver = {.VendorID = 0x5156,
                  .ProductID = 1,
                  .VersionNumber = 0x3010,
                  .SVNNUM = 0x003812,
                  .CHECKSUM = 0x5A17C0DE,
                  .P_FID = 0x21,
                  .P_DATE = 0x1605,
                  .P_NUM = 0x01234};
        sources.linked = u"/dev/usb/hiddev0"_s;
        sources.screens = {u"screen 1: 1280 x 800 at 0, 0"_s};
        sources.recording = "bytes of a recording";
        sources.frames = {recordOf(capture::Kind::ToFrame, 12h + 34min + 56s + 789ms, "00 A7 02")};
        const QList<Entry> entries = bundle::contentsOf(sources);
        QCOMPARE(namesOf(entries),
                 QStringList({u"about.txt"_s, u"doctor.txt"_s, u"doctor.json"_s, u"versions.txt"_s,
                              u"settings.xml"_s, u"screens.txt"_s, u"frames.pcap"_s}));
        const QString about = textOf(entries, u"about.txt"_s);
        for (const Entry &entry : entries.mid(1)) {
            QVERIFY2(about.contains(entry.name + u' ') && about.contains(entry.about),
                     qPrintable(about));
            if (entry.name != "frames.pcap"_L1)
                QCOMPARE(entry.content, entry.shown.toUtf8());
        }
        QCOMPARE(textOf(entries, u"screens.txt"_s), u"screen 1: 1280 x 800 at 0, 0\n"_s);
        QCOMPARE(entries.last().content, QByteArray("bytes of a recording"));
        QCOMPARE(entries.last().shown, u"12:34:56.789  rotation: read\n"_s);
        const QString versions = textOf(entries, u"versions.txt"_s);
        for (
            const QString &line :
            {u"program: quorvel "_s, u"toolkit: Qt %1"_s.arg(QLatin1StringView(qVersion())),
             u"6.1.0-made-up on "_s, u"link: /dev/usb/hiddev0\n"_s,
             u"frame: 5156:0001, release 3010\n"_s,
             u"firmware: revision 003812, checksum 5a17c0de, family 21, date 1605, number 01234"_s})
            QVERIFY2(versions.contains(line), qPrintable(versions));
        const QJsonObject json =
            QJsonDocument::fromJson(textOf(entries, u"doctor.json"_s).toUtf8()).object();
        QVERIFY(json.contains(u"findings"_s));
    }

    void no_file_names_a_person_or_a_machine()
    {
        sources.screens = {u"screen of anna"_s};
        const QList<Entry> entries = bundle::contentsOf(sources);
        QVERIFY(textOf(entries, u"doctor.txt"_s).contains(u"<home>/ForQuorvel"_s));
        QCOMPARE(textOf(entries, u"settings.xml"_s), u"<data><by><user>@<machine></by></data>"_s);
        for (const Entry &entry : entries) {
            for (const char *name : {"anna", "muster", "made-up-machine"})
                QVERIFY2(!entry.content.toLower().contains(name), entry.content);
        }
    }

    void what_is_missing_is_said()
    {
        sources.settingsFile = machine->root() + u"/none"_s;
        const QList<Entry> entries = bundle::contentsOf(sources);
        QCOMPARE(namesOf(entries), QStringList({u"about.txt"_s, u"doctor.txt"_s, u"doctor.json"_s,
                                                u"versions.txt"_s}));
        const QString about = textOf(entries, u"about.txt"_s);
        QVERIFY(about.contains(u"no settings file that can be read"_s));
        QVERIFY(about.contains(u"does not know the screens"_s));
        QVERIFY(about.contains(u"No frames went"_s));
        QVERIFY(textOf(entries, u"versions.txt"_s).contains(u"link: none\n"_s));
        QVERIFY(!textOf(entries, u"versions.txt"_s).contains(u"frame:"_s));
    }

    void frames_that_come_again_are_told_once()
    {
        using capture::Kind;
        sources.recording = "x";
        sources.frames = {
            recordOf(Kind::LinkBegan, 0s, {}), recordOf(Kind::FromFrame, 1s, "FC A7 82 02 00 02"),
            recordOf(Kind::FromFrame, 2s, "FC A7 82 02 00 02"),
            recordOf(Kind::FromFrame, 3s, "FC A7 82 02 00 02"), recordOf(Kind::LinkEnded, 4s, {})};
        const QString shown = bundle::contentsOf(sources).last().shown;
        QCOMPARE(shown.count(u'\n'), 4);
        QVERIFY2(shown.startsWith(u"00:00:00.000  the link begins\n00:00:01.000  rotation: "_s),
                 qPrintable(shown));
        QVERIFY2(shown.contains(u"    (2 more time"_s), qPrintable(shown));
        QVERIFY2(shown.endsWith(u"00:00:04.000  the link ends\n"_s), qPrintable(shown));
    }
};

QTEST_GUILESS_MAIN(TestContents)
#include "tst_contents.moc"
