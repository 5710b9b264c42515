// SPDX-License-Identifier: GPL-3.0-or-later

#include "capture/reader.h"
#include "config/xml_class.h"
#include "run.h"
#include "tests/support/madeupmachine.h"
#include "tests/support/settingshome.h"

#include <QJsonArray>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

class TestBundle : public QObject
{
    Q_OBJECT

private:
    const SettingsHome home;
    MadeUpMachine machine;

    Outcome run(const QString &arguments, const Adapter &adapter)
    {
        ctl::Surroundings around;
        around.machine = &machine;
        return runCtl(arguments, adapter, {}, around);
    }

private slots:
    void initTestCase()
    {
        XML_CLASS().read_setting(); // makes the file
    }

    void the_archive_holds_what_was_said_while_it_was_made()
    {
        const QString file = home.filePath(u"support.zip"_s);
        const Outcome outcome = run(u"bundle --timeout 1 "_s + file, quickFrame());
        QVERIFY2(outcome.code == 0, outcome.err);
        QVERIFY2(outcome.out.contains("frames.pcap"), outcome.out);
        const QString out = home.filePath(u"out"_s);
        QCOMPARE(QProcess::execute(u"python3"_s, {u"-m"_s, u"zipfile"_s, u"-e"_s, file, out}), 0);
        QString problem;
        const auto reader = capture::Reader::open(out + u"/frames.pcap"_s, &problem);
        QVERIFY2(reader, qPrintable(problem));
        bool asked = false;
        bool answered = false;
        while (const auto record = reader->next()) {
            asked = asked || (record->kind == capture::Kind::ToFrame && record->frame[1] == 0xA7 &&
                              record->frame[2] == 0x02);
            answered = answered || (asked && record->kind == capture::Kind::FromFrame &&
                                    record->frame[1] == 0xA7 && record->frame[2] == 0x82);
        }
        QCOMPARE(reader->problem(), QString());
        QVERIFY(asked);
        QVERIFY(answered);
        QFile doctor(out + u"/doctor.txt"_s);
        QVERIFY(doctor.open(QIODevice::ReadOnly));
        QVERIFY(doctor.readAll().contains("generation  good"));
    }

    void a_list_shows_every_file_and_writes_nothing()
    {
        const QString file = home.filePath(u"listed.zip"_s);
        const Outcome outcome = run(u"bundle --list --timeout 1 "_s + file, quickFrame());
        QCOMPARE(outcome.code, 0);
        QVERIFY(!QFile::exists(file));
        for (const char *part : {"about.txt ", "doctor.txt ", "settings.xml ",
                                 "    kernel      good", "  rotation: read\n"})
            QVERIFY2(outcome.out.contains(part), outcome.out);
        const QJsonObject json = run(u"--json bundle --list --timeout 1"_s, quickFrame()).json();
        QCOMPARE(json[u"ok"_s].toBool(), true);
        const QJsonArray files = json[u"files"_s].toArray();
        QCOMPARE(files.size(), 6);
        QCOMPARE(files[0][u"name"_s].toString(), u"about.txt"_s);
        QVERIFY(files[1][u"content"_s].toString().contains(u"kernel"_s));
    }

    void without_a_frame_there_is_a_file_too()
    {
        const QString file = home.filePath(u"without.zip"_s);
        const Outcome outcome = run(u"--json bundle "_s + file, quickFrame({}, {}, false));
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.json()[u"file"_s].toString(), file);
        QVERIFY(QFile::exists(file));
        QVERIFY2(!outcome.out.contains("frames.pcap"), outcome.out);
    }

    void no_file_is_wrong_usage() { QCOMPARE(run(u"bundle"_s, quickFrame()).code, 2); }

    void a_file_that_cannot_be_written_is_told()
    {
        const Outcome outcome =
            run(u"bundle --timeout 1 /nowhere/support.zip"_s, quickFrame({}, {}, false));
        QCOMPARE(outcome.code, 7);
        QVERIFY2(outcome.err.contains("/nowhere/support.zip cannot be written"), outcome.err);
    }
};

QTEST_GUILESS_MAIN(TestBundle)
#include "tst_bundle.moc"
