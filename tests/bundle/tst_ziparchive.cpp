// SPDX-License-Identifier: GPL-3.0-or-later

#include "bundle/ziparchive.h"
#include "tests/support/files.h"
#include "tests/support/smalldisk.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <unistd.h>

using namespace Qt::StringLiterals;
using bundle::Entry;

namespace {

const QByteArray Binary = QByteArray::fromHex("00ff1a0d0a00").repeated(2000);

QList<Entry> entries()
{
    return {{u"about.txt"_s, {}, "what there is\n", {}},
            {u"frames.pcap"_s, {}, Binary, {}},
            {u"empty.txt"_s, {}, {}, {}}};
}

// Another program's idea of an archive.
bool unpack(const QString &archive, const QString &folder)
{
    return QProcess::execute(u"python3"_s, {u"-m"_s, u"zipfile"_s, u"-e"_s, archive, folder}) == 0;
}

} // namespace

class TestZipArchive : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;
    QString path;

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        path = folder->filePath(u"support.zip"_s);
    }

    void another_program_unpacks_what_was_written()
    {
        QCOMPARE(bundle::writeArchive(path, entries()), QString());
        const QString out = folder->filePath(u"out"_s);
        QVERIFY(unpack(path, out));
        QCOMPARE(QDir(out).entryList(QDir::Files),
                 QStringList({u"about.txt"_s, u"empty.txt"_s, u"frames.pcap"_s}));
        QCOMPARE(contentOf(out + u"/about.txt"_s), QByteArray("what there is\n"));
        QCOMPARE(contentOf(out + u"/frames.pcap"_s), Binary);
        QCOMPARE(contentOf(out + u"/empty.txt"_s), QByteArray());
        QVERIFY(QFileInfo(path).size() < Binary.size()); // it is compressed
    }

    void an_older_archive_is_replaced()
    {
        QCOMPARE(bundle::writeArchive(path, {{u"old.txt"_s, {}, "old", {}}}), QString());
        QCOMPARE(bundle::writeArchive(path, entries()), QString());
        QVERIFY(unpack(path, folder->filePath(u"out"_s)));
        QVERIFY(!QFile::exists(folder->filePath(u"out/old.txt"_s)));
    }

    void what_is_no_archive_stays()
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("letters");
        file.close();
        const QString problem = bundle::writeArchive(path, entries());
        QVERIFY2(problem.contains(u"is no support file. Choose another name."_s),
                 qPrintable(problem));
        QCOMPARE(contentOf(path), QByteArray("letters"));
        QVERIFY(!bundle::writeArchive(folder->path(), entries()).isEmpty());
    }

    void a_full_disk_leaves_the_older_archive_whole_and_nothing_else()
    {
        QCOMPARE(bundle::writeArchive(path, {{u"old.txt"_s, {}, "old", {}}}), QString());
        const QByteArray before = contentOf(path);
        std::optional<SmallDisk> disk(64);
        const QString problem = bundle::writeArchive(path, entries());
        disk.reset();
        QVERIFY2(problem.contains(u"cannot be written"_s), qPrintable(problem));
        QCOMPARE(contentOf(path), before);
        QCOMPARE(
            QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList{u"support.zip"_s});
    }

    void a_folder_that_is_not_there_is_told()
    {
        const QString problem =
            bundle::writeArchive(folder->filePath(u"none/support.zip"_s), entries());
        QVERIFY2(problem.contains(u"none/support.zip cannot be written"_s), qPrintable(problem));
    }
};

QTEST_GUILESS_MAIN(TestZipArchive)
#include "tst_ziparchive.moc"
