// SPDX-License-Identifier: GPL-3.0-or-later

#include "bundle/ziparchive.h"
#include "capture/writer.h"
#include "modules/module.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool isLoaded(const QByteArray &library)
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

} // namespace

class TestModules : public QObject
{
    Q_OBJECT

private slots:
    void what_is_loaded_is_found() { QVERIFY(isLoaded("libQt6Core")); }

    void the_first_recording_loads_its_library()
    {
        const QTemporaryDir folder;
        QVERIFY(!isLoaded("libpcap"));
        QString problem;
        QVERIFY2(capture::Writer::create(folder.filePath(u"a.pcap"_s), &problem),
                 qPrintable(problem));
        QVERIFY(isLoaded("libpcap"));
    }

    void the_first_support_file_loads_its_library()
    {
        const QTemporaryDir folder;
        QVERIFY(!isLoaded("libarchive"));
        QCOMPARE(bundle::writeArchive(folder.filePath(u"a.zip"_s), {{u"a"_s, {}, "b", {}}}),
                 QString());
        QVERIFY(isLoaded("libarchive"));
    }

    void a_module_that_is_not_there_is_told_of_with_what_helps()
    {
        QString problem;
        QVERIFY(!modules::load("nowhere", &problem));
        QVERIFY2(problem.startsWith(u"A part of Quorvel is missing: install it again."_s),
                 qPrintable(problem));
        QVERIFY2(problem.contains(u"quorvel-nowhere.so"_s), qPrintable(problem));
    }

    void a_module_of_another_version_is_not_used()
    {
        QString problem;
        QVERIFY(!modules::load("elder", &problem));
        QVERIFY2(problem.contains(u"quorvel-elder.so is of another version"_s),
                 qPrintable(problem));
    }

    void a_library_that_is_no_module_is_not_used()
    {
        QString problem;
        QVERIFY(!modules::load("empty", &problem));
        QVERIFY2(problem.contains(u"quorvel_empty"_s), qPrintable(problem));
    }
};

QTEST_GUILESS_MAIN(TestModules)
#include "tst_modules.moc"
