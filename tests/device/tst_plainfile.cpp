// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/plainfile.h"
#include "tests/support/files.h"
#include "tests/support/smalldisk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class TestPlainFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QVERIFY(folder->isValid());
    }

    void a_file_is_made_with_the_rights_that_the_mask_leaves()
    {
        const mode_t before = ::umask(027);
        const QString problem = plainfile::replace(at(u"new"_s), "content");
        ::umask(before);
        QCOMPARE(problem, QString());
        QCOMPARE(content(u"new"_s), QByteArray("content"));
        struct stat status = {};
        QCOMPARE(::stat(qPrintable(at(u"new"_s)), &status), 0);
        QCOMPARE(status.st_mode & ALLPERMS, mode_t(0640));
    }

    void a_file_for_everybody_can_be_read_whatever_the_mask_says()
    {
        const mode_t before = ::umask(077);
        const QString problem =
            plainfile::replace(at(u"shared"_s), "content", plainfile::Readers::Everybody);
        ::umask(before);
        QCOMPARE(problem, QString());
        struct stat status = {};
        QCOMPARE(::stat(qPrintable(at(u"shared"_s)), &status), 0);
        QCOMPARE(status.st_mode & ALLPERMS, mode_t(0644));
    }

    void a_file_that_is_there_is_replaced_and_nothing_else_stays()
    {
        QCOMPARE(plainfile::replace(at(u"file"_s), "a longer content"), QString());
        QCOMPARE(plainfile::replace(at(u"file"_s), "short"), QString());
        QCOMPARE(content(u"file"_s), QByteArray("short"));
        QCOMPARE(QDir(folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 {u"file"_s});
    }

    void a_link_is_replaced_and_what_it_led_to_stays()
    {
        QCOMPARE(plainfile::replace(at(u"other"_s), "of somebody"), QString());
        QVERIFY(QFile::link(at(u"other"_s), at(u"report"_s)));
        QCOMPARE(plainfile::replace(at(u"report"_s), "ours"), QString());
        QCOMPARE(content(u"other"_s), QByteArray("of somebody"));
        QCOMPARE(content(u"report"_s), QByteArray("ours"));
        QVERIFY(!QFileInfo(at(u"report"_s)).isSymLink());
    }

    void what_cannot_be_replaced_stays_and_the_reason_is_told()
    {
        QVERIFY(QDir().mkpath(at(u"folder/inner"_s)));
        QVERIFY(!plainfile::replace(at(u"folder"_s), "content").isEmpty());
        QVERIFY(!plainfile::replace(at(u"none/file"_s), "content").isEmpty());
        QCOMPARE(::mkfifo(qPrintable(at(u"pipe"_s)), 0600), 0);
        QVERIFY(!plainfile::replace(at(u"pipe"_s), "content").isEmpty());
        QVERIFY(!QFileInfo(at(u"pipe"_s)).isFile());
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files), QStringList());
    }

    void a_full_disk_leaves_the_old_file()
    {
        QCOMPARE(plainfile::replace(at(u"file"_s), "old"), QString());
        QString problem;
        {
            const SmallDisk full(4096);
            problem = plainfile::replace(at(u"file"_s), QByteArray(8192, 'x'));
        }
        QVERIFY(!problem.isEmpty());
        QCOMPARE(content(u"file"_s), QByteArray("old"));
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files), {u"file"_s});
    }

    void a_file_is_made_empty_or_emptied()
    {
        QVERIFY(plainfile::openEmpty(at(u"log"_s)).isValid());
        QCOMPARE(content(u"log"_s), QByteArray());
        writeFile(at(u"log"_s), "a longer content");
        const FileDescriptor log = plainfile::openEmpty(at(u"log"_s));
        QVERIFY(log.isValid());
        QCOMPARE(content(u"log"_s), QByteArray());
        QCOMPARE(::write(log.get(), "new", 3), ssize_t(3));
        QCOMPARE(content(u"log"_s), QByteArray("new"));
    }

    void what_is_no_file_is_not_emptied_and_errno_tells_why()
    {
        writeFile(at(u"other"_s), "of somebody");
        QVERIFY(QFile::link(at(u"other"_s), at(u"link"_s)));
        QCOMPARE(::mkfifo(qPrintable(at(u"pipe"_s)), 0600), 0);
        // A pipe that somebody reads can be opened.
        QFile pipe(at(u"pipe"_s));
        QVERIFY(pipe.open(QIODevice::ReadWrite));
        QVERIFY(QDir().mkpath(at(u"folder"_s)));
        const auto refused = [this](const QString &name) {
            errno = 0;
            return plainfile::openEmpty(at(name)).isValid() ? 0 : errno;
        };
        QCOMPARE(refused(u"link"_s), ELOOP);
        QCOMPARE(refused(u"pipe"_s), EINVAL);
        QCOMPARE(refused(u"folder"_s), EISDIR);
        QCOMPARE(refused(u"none/log"_s), ENOENT);
        QCOMPARE(content(u"other"_s), QByteArray("of somebody"));
    }

    void a_copy_has_every_byte_and_the_rights_of_its_source()
    {
        QByteArray pages;
        for (int i = 0; i < 70'000; ++i)
            pages += QByteArray::number(i) + '\n';
        writeFile(at(u"source"_s), pages);
        QCOMPARE(::chmod(qPrintable(at(u"source"_s)), 0640), 0);
        QVERIFY(QDir().mkpath(at(u"folder"_s)));
        QVERIFY(plainfile::copyInto(at(u"source"_s), at(u"folder"_s)));
        QVERIFY(content(u"folder/source"_s) == pages);
        struct stat status = {};
        QCOMPARE(::stat(qPrintable(at(u"folder/source"_s)), &status), 0);
        QCOMPARE(status.st_mode & ALLPERMS, mode_t(0640));

        QVERIFY(QFile::link(at(u"source"_s), at(u"link"_s)));
        QVERIFY(plainfile::copyInto(at(u"link"_s), at(u"folder"_s)));
        QVERIFY(!QFileInfo(at(u"folder/link"_s)).isSymLink());
        QVERIFY(content(u"folder/link"_s) == pages);
    }

    void what_cannot_be_copied_leaves_the_folder_as_it_was()
    {
        QVERIFY(QDir().mkpath(at(u"folder"_s)));
        writeFile(at(u"folder/file"_s), "older");
        writeFile(at(u"file"_s), "newer");
        writeFile(at(u"other"_s), "of somebody");
        QVERIFY(QFile::link(at(u"folder"_s), at(u"way"_s)));
        QCOMPARE(::mkfifo(qPrintable(at(u"pipe"_s)), 0600), 0);
        QVERIFY(!plainfile::copyInto(at(u"file"_s), at(u"folder"_s)));
        QVERIFY(!plainfile::copyInto(at(u"none"_s), at(u"folder"_s)));
        QVERIFY(!plainfile::copyInto(at(u"pipe"_s), at(u"folder"_s)));
        QVERIFY(!plainfile::copyInto(at(u"folder"_s), at(u"folder"_s)));
        QVERIFY(!plainfile::copyInto(at(u"other"_s), at(u"way"_s)));
        QVERIFY(!plainfile::copyInto(at(u"other"_s), at(u"none"_s)));
        QVERIFY(!plainfile::copyInto(at(u"other"_s), at(u"file"_s)));
        QCOMPARE(content(u"folder/file"_s), QByteArray("older"));
        QCOMPARE(
            QDir(at(u"folder"_s)).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
            {u"file"_s});
    }

    void half_a_copy_is_taken_back()
    {
        QVERIFY(QDir().mkpath(at(u"folder"_s)));
        writeFile(at(u"source"_s), QByteArray(8192, 'x'));
        bool copied = false;
        {
            const SmallDisk full(4096);
            copied = plainfile::copyInto(at(u"source"_s), at(u"folder"_s));
        }
        QVERIFY(!copied);
        QVERIFY(QDir(at(u"folder"_s)).isEmpty());
    }

private:
    QString at(const QString &name) const { return folder->filePath(name); }
    QByteArray content(const QString &name) const { return contentOf(at(name), {}); }

    std::unique_ptr<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestPlainFile)
#include "tst_plainfile.moc"
