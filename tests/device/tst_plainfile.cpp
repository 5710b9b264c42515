// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/plainfile.h"
#include "tests/support/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <sys/resource.h>
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
        // A limit of the process ends a write as a full disk does, and says so by a signal too.
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit small = {4096, before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const QString problem = plainfile::replace(at(u"file"_s), QByteArray(8192, 'x'));
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
        std::signal(SIGXFSZ, handler);
        QVERIFY(!problem.isEmpty());
        QCOMPARE(content(u"file"_s), QByteArray("old"));
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files), {u"file"_s});
    }

private:
    QString at(const QString &name) const { return folder->filePath(name); }
    QByteArray content(const QString &name) const { return contentOf(at(name), {}); }

    std::unique_ptr<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestPlainFile)
#include "tst_plainfile.moc"
