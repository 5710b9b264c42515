// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/windowplaces.h"
#include "tests/support/files.h"
#include "tests/support/settingshome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <optional>
#include <sys/ioctl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class TestWindowPlaces : public QObject
{
    Q_OBJECT

private:
    std::optional<SettingsHome> home;

    QString path() const { return home->filePath(u".config/ForQuorvel-windows"_s); }
    QByteArray text() const { return contentOf(path(), {}); }
    bool write(const QByteArray &content) const
    {
        QFile file(path());
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

private slots:
    void init() { home.emplace(); }
    void cleanup() { home.reset(); }

    void a_place_is_kept_beside_the_settings()
    {
        QCOMPARE(windowplaces::of(u"MainWindow"_s), std::nullopt);
        windowplaces::keep(u"MainWindow"_s, {81, -92});
        QCOMPARE(windowplaces::of(u"MainWindow"_s), QPoint(81, -92));
        QCOMPARE(windowplaces::of(u"Main"_s), std::nullopt);
        QCOMPARE(text(), QByteArray("MainWindow 81 -92\n"));
    }

    void each_window_has_its_own()
    {
        windowplaces::keep(u"MainWindow"_s, {1, 2});
        windowplaces::keep(u"connect_dlg"_s, {3, 4});
        windowplaces::keep(u"MainWindow"_s, {5, 6});
        QCOMPARE(windowplaces::of(u"MainWindow"_s), QPoint(5, 6));
        QCOMPARE(windowplaces::of(u"connect_dlg"_s), QPoint(3, 4));
        QCOMPARE(text().count('\n'), 2);
    }

    void the_same_place_is_not_written_again()
    {
        windowplaces::keep(u"MainWindow"_s, {1, 2});
        struct stat before = {};
        QCOMPARE(stat(qPrintable(path()), &before), 0);
        windowplaces::keep(u"MainWindow"_s, {1, 2});
        struct stat after = {};
        QCOMPARE(stat(qPrintable(path()), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        windowplaces::keep(u"MainWindow"_s, {1, 3});
        QCOMPARE(stat(qPrintable(path()), &after), 0);
        QVERIFY(after.st_ino != before.st_ino);
    }

    void what_is_no_place_is_passed_over_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("half a line") << QByteArray("MainWindow 1");
        QTest::newRow("a word more") << QByteArray("MainWindow 1 2 3");
        QTest::newRow("no number") << QByteArray("MainWindow 1 x2");
        QTest::newRow("beyond any desktop") << QByteArray("MainWindow 1 40000");
        QTest::newRow("beyond numbers") << QByteArray("MainWindow 99999999999 1");
        QTest::newRow("bytes") << QByteArray("\x00\xff\xfe \n\n ", 6);
    }

    void what_is_no_place_is_passed_over()
    {
        QFETCH(QByteArray, line);
        QVERIFY(write(line + "\nconnect_dlg 3 4\n"));
        QCOMPARE(windowplaces::of(u"MainWindow"_s), std::nullopt);
        QCOMPARE(windowplaces::of(u"connect_dlg"_s), QPoint(3, 4));
        windowplaces::keep(u"MainWindow"_s, {5, 6});
        QCOMPARE(text(), QByteArray("connect_dlg 3 4\nMainWindow 5 6\n"));
    }

    void the_farthest_place_that_display_servers_count_to_is_kept()
    {
        windowplaces::keep(u"MainWindow"_s, {32767, -32767});
        QCOMPARE(windowplaces::of(u"MainWindow"_s), QPoint(32767, -32767));
        windowplaces::keep(u"connect_dlg"_s, {32768, 0});
        windowplaces::keep(u"useradv_dlg"_s, {0, -32768});
        QCOMPARE(text(), QByteArray("MainWindow 32767 -32767\n"));
    }

    void what_no_line_can_hold_is_not_kept()
    {
        for (const QString &name : {QString(), u"two words"_s, u"two\nlines"_s})
            windowplaces::keep(name, {1, 2});
        windowplaces::keep(u"MainWindow"_s, {1, 1 << 20});
        QVERIFY(!QFile::exists(path()));
    }

    void a_pipe_is_not_waited_for()
    {
        QCOMPARE(mkfifo(qPrintable(path()), 0600), 0);
        QCOMPARE(windowplaces::of(u"MainWindow"_s), std::nullopt);
        windowplaces::keep(u"MainWindow"_s, {1, 2});
        struct stat there = {};
        QCOMPARE(stat(qPrintable(path()), &there), 0);
        QVERIFY(S_ISFIFO(there.st_mode));
    }

    void what_somebody_put_into_a_pipe_is_neither_believed_nor_taken()
    {
        QCOMPARE(mkfifo(qPrintable(path()), 0600), 0);
        QFile pipe(path());
        QVERIFY(pipe.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
        const QByteArray line("MainWindow 1 2\n");
        QCOMPARE(pipe.write(line), line.size());
        QCOMPARE(windowplaces::of(u"MainWindow"_s), std::nullopt);
        int waiting = 0;
        QCOMPARE(ioctl(pipe.handle(), FIONREAD, &waiting), 0);
        QCOMPARE(waiting, line.size());
    }

    void without_a_folder_for_settings_nothing_is_made()
    {
        QVERIFY(QDir(home->folder()).rmdir(u".config"_s));
        windowplaces::keep(u"MainWindow"_s, {1, 2});
        QVERIFY(
            QDir(home->folder()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }
};

QTEST_GUILESS_MAIN(TestWindowPlaces)
#include "tst_windowplaces.moc"
