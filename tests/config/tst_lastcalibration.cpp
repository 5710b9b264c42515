// What is remembered of the last saved calibration.

#include "config/lastcalibration.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

class tst_lastcalibration : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir data;
    const LastCalibration good{QDateTime(QDate(2026, 5, 4), QTime(3, 2, 1), QTimeZone::utc()), 3};

    static void write(const QByteArray &text)
    {
        QFile file(LastCalibration::filePath());
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }

private slots:
    void initTestCase() { qputenv("XDG_DATA_HOME", QFile::encodeName(data.path())); }
    void init() { QDir(data.filePath(u"quorvel"_s)).removeRecursively(); }

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
};

QTEST_GUILESS_MAIN(tst_lastcalibration)
#include "tst_lastcalibration.moc"
