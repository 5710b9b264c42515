// SPDX-License-Identifier: GPL-3.0-or-later

// What is remembered of the last saved calibration.

#include "config/lastcalibration.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestLastCalibration : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir data;
    std::unique_ptr<QTemporaryDir> shared; // for each test its own

    QString sharedFile(uid_t user) const
    {
        return shared->filePath(u"calibration-%1.json"_s.arg(user));
    }
    static void share(const QString &folder)
    {
        qputenv("QUORVEL_STATE_DIRECTORY", QFile::encodeName(folder));
    }
    // As the service sees it, which has kept nothing itself.
    std::optional<LastCalibration> loadWithoutOwn() const
    {
        QFile::remove(LastCalibration::filePath());
        return LastCalibration::load();
    }
    const LastCalibration good{QDateTime(QDate(2026, 5, 4), QTime(3, 2, 1), QTimeZone::utc()), 3};

    static void write(const QByteArray &text, const QString &path = LastCalibration::filePath())
    {
        QFile file(path);
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }

private slots:
    void initTestCase() { qputenv("XDG_DATA_HOME", QFile::encodeName(data.path())); }
    void init()
    {
        QDir(data.filePath(u"quorvel"_s)).removeRecursively();
        shared = std::make_unique<QTemporaryDir>();
        share(shared->path());
    }

    void nothing_is_known_at_first() { QVERIFY(!LastCalibration::load()); }

    void it_is_read_as_it_was_kept()
    {
        QVERIFY(good.keep());
        QVERIFY(LastCalibration::load() == good);
        const LastCalibration later{good.date.addDays(1), 0};
        QVERIFY(later.keep());
        QVERIFY(LastCalibration::load() == later);
    }

    void a_file_of_the_format_is_read()
    {
        write(R"({"version": 1, "date": "2026-05-04T03:02:01Z", "deviation_percent": 3})");
        QVERIFY(LastCalibration::load() == good);
    }

    void a_file_that_is_no_such_thing_says_nothing_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut")
            << QByteArray(
                   R"({"version": 1, "date": "2026-05-04T03:02:01Z", "deviation_percent": 3})")
                   .chopped(4);
        QTest::newRow("of a later version") << QByteArray(
            R"({"version": 2, "date": "2026-05-04T03:02:01Z", "deviation_percent": 3})");
        QTest::newRow("no date") << QByteArray(
            R"({"version": 1, "date": "", "deviation_percent": 3})");
        QTest::newRow("below nothing") << QByteArray(
            R"({"version": 1, "date": "2026-05-04T03:02:01Z", "deviation_percent": -3})");
    }
    void a_file_that_is_no_such_thing_says_nothing()
    {
        QFETCH(const QByteArray, text);
        write(text);
        QVERIFY(!LastCalibration::load());
    }

    void a_folder_in_its_place_is_no_file_and_stays()
    {
        QVERIFY(QDir().mkpath(LastCalibration::filePath()));
        QVERIFY(!LastCalibration::load());
        QVERIFY(!good.keep());
        QVERIFY(QFileInfo(LastCalibration::filePath()).isDir());
    }

    // The folder that users share

    void a_user_without_a_file_of_his_own_knows_what_others_kept()
    {
        QVERIFY(good.keep());
        QVERIFY(loadWithoutOwn() == good);
        const QFileInfo file(sharedFile(::geteuid()));
        QVERIFY(file.permission(QFile::ReadOther));
        QVERIFY(!file.permission(QFile::WriteGroup) && !file.permission(QFile::WriteOther));
        const auto all = QDir::Files | QDir::Hidden | QDir::System;
        QCOMPARE(QDir(shared->path()).entryList(all), QStringList(file.fileName()));
    }

    void the_latest_counts()
    {
        const LastCalibration later{good.date.addDays(1), 7};
        QVERIFY(later.keep());
        write(R"({"version": 1, "date": "2026-05-04T03:02:01Z", "deviation_percent": 3})");
        QVERIFY(LastCalibration::load() == later);
        QVERIFY(good.keep());
        write(R"({"version": 1, "date": "2026-05-05T03:02:01Z", "deviation_percent": 7})");
        QVERIFY(LastCalibration::load() == later);
    }

    void a_file_in_another_users_name_says_nothing()
    {
        QVERIFY(good.keep());
        QVERIFY(QFile::rename(sharedFile(::geteuid()), sharedFile(::geteuid() + 1)));
        QVERIFY(!loadWithoutOwn());
    }

    void a_link_is_neither_read_nor_written_through()
    {
        const QString precious = data.filePath(u"precious"_s);
        const QByteArray text =
            R"({"version": 1, "date": "2026-05-04T03:02:01Z", "deviation_percent": 3})";
        write(text, precious);
        QVERIFY(QFile::link(precious, sharedFile(::geteuid())));
        QVERIFY(!LastCalibration::load());
        const LastCalibration later{good.date.addDays(1), 7};
        QVERIFY(later.keep());
        QVERIFY(loadWithoutOwn() == later);
        QVERIFY(!QFileInfo(sharedFile(::geteuid())).isSymLink());
        QFile file(precious);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), text);
    }

    void a_pipe_is_not_waited_for()
    {
        const QByteArray pipe = QFile::encodeName(sharedFile(::geteuid()));
        QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
        QVERIFY(!LastCalibration::load());
    }

    void what_cannot_be_shared_is_kept_all_the_same()
    {
        QVERIFY(QDir().mkpath(sharedFile(::geteuid()) + u"/in the way"_s));
        QVERIFY(good.keep());
        QVERIFY(LastCalibration::load() == good);
        const auto hidden = QDir::Files | QDir::Hidden;
        QCOMPARE(QDir(shared->path()).entryList(hidden), QStringList());
        // No folder is made where users share none.
        const QString missing = shared->filePath(u"missing"_s);
        share(missing);
        QVERIFY(good.keep());
        QVERIFY(LastCalibration::load() == good);
        QVERIFY(!QFileInfo::exists(missing));
    }
};

QTEST_GUILESS_MAIN(TestLastCalibration)
#include "tst_lastcalibration.moc"
