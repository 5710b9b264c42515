// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/signallog.h"
#include "tests/support/files.h"

#include <QDir>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using Row = SignalLog::Row;

class TestSignalLog : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> place;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<SignalLog> log;

    // Lights of an axis one after the other.
    void levels(Row axis, int first, const QList<int> &values) const
    {
        for (qsizetype i = 0; i < values.size(); ++i)
            log->level(axis, first + int(i), values[i]);
    }
    static bool isThere() { return QFile::exists(u"TestLog.csv"_s); }
    // Below the title, with D,T for each date and time.
    static QStringList rows()
    {
        static const QRegularExpression Time(u"\\d{6},\\d\\d:\\d\\d:\\d\\d:\\d{3},"_s);
        QString text = QString::fromLatin1(contentOf(u"TestLog.csv"_s, {}));
        return text.replace(Time, u"D,T,"_s).split(u'\n').mid(1);
    }
    QStringList rowsAtItsEnd() const
    {
        log->end();
        return rows();
    }
    qsizetype warnings() const { return window->findChildren<QMessageBox *>().size(); }

private slots:
    void init()
    {
        place = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir::setCurrent(place->path()));
        window = std::make_unique<QWidget>();
        log = std::make_unique<SignalLog>(window.get());
    }
    void cleanup()
    {
        log.reset();
        window.reset();
        QDir::setCurrent(QDir::rootPath());
        place.reset();
    }

    void a_log_that_has_not_begun_takes_nothing()
    {
        QVERIFY(!log->isRunning() && !log->isUnsaved());
        levels(Row::X, 0, {1, 2, 3});
        log->endRow();
        log->end();
        log.reset();
        QVERIFY(!isThere());
    }

    void without_a_level_the_file_stays_as_it_is()
    {
        log->begin(3, 2);
        QVERIFY(log->isRunning() && !log->isUnsaved());
        log->end();
        QVERIFY(!log->isRunning());
        QVERIFY(!isThere());
    }

    void what_was_taken_is_unsaved_until_the_end()
    {
        log->begin(2, 1);
        levels(Row::X, 0, {7, 8});
        QVERIFY(log->isUnsaved() && !isThere());
        QCOMPARE(rowsAtItsEnd(), QStringList({u"D,T,7,8,"_s, {}}));
        QVERIFY(!log->isUnsaved() && !log->isRunning());
        QCOMPARE(contentOf(u"TestLog.csv"_s, {}).split('\n').first(),
                 "Date,Time,X000,X001,Y000,NG/PASS");
        // It is at its end.
        levels(Row::X, 0, {9, 9});
        QVERIFY(!log->isUnsaved());
    }

    void every_scan_of_x_begins_a_row_and_one_of_y_goes_on_with_it()
    {
        log->begin(2, 2);
        levels(Row::X, 0, {1, 2});
        levels(Row::Y, 0, {3, 4});
        levels(Row::X, 0, {5, 6});
        levels(Row::X, 0, {7, 8});
        levels(Row::Y, 0, {9, 10});
        QCOMPARE(rowsAtItsEnd(),
                 QStringList({u"D,T,1,2,3,,4,,"_s, u"D,T,5,6,"_s, u"D,T,7,8,9,,10,,"_s, {}}));
    }

    // The one of X between them was lost.
    void a_second_scan_of_y_has_a_row_of_its_own()
    {
        log->begin(2, 2);
        levels(Row::X, 0, {1, 2});
        levels(Row::Y, 0, {3, 4});
        levels(Row::Y, 0, {5, 6});
        levels(Row::Y, 0, {7, 8});
        QCOMPARE(rowsAtItsEnd(), QStringList({u"D,T,1,2,3,,4,,"_s, u"5,,6,,"_s, u"7,,8,,"_s, {}}));
    }

    void lights_of_a_lost_page_have_empty_fields()
    {
        log->begin(4, 3);
        levels(Row::X, 0, {1});
        levels(Row::X, 2, {3});
        levels(Row::Y, 0, {5}); // X 3 is lost too
        levels(Row::Y, 2, {7});
        QCOMPARE(rowsAtItsEnd(), QStringList({u"D,T,1,,3,,5,,,,7,,"_s, {}}));
    }

    void what_does_not_go_on_with_the_row_is_left_out()
    {
        log->begin(4, 3);
        levels(Row::Y, 1, {9}); // no row has begun
        levels(Row::X, 2, {9});
        levels(Row::X, 0, {1, 2, 3});
        levels(Row::X, 1, {9, 9}); // once more
        levels(Row::Y, 1, {9, 9}); // whose beginning got lost
        levels(Row::X, 3, {4});
        log->endRow();
        levels(Row::X, 3, {9});
        QCOMPARE(rowsAtItsEnd(), QStringList({u"D,T,1,2,3,4,"_s, {}}));
    }

    void a_row_ends_once()
    {
        log->begin(1, 1);
        log->endRow();
        levels(Row::X, 0, {1});
        log->endRow();
        log->endRow();
        QCOMPARE(rowsAtItsEnd(), QStringList({u"D,T,1,"_s, {}}));
    }

    void a_row_that_goes_on_is_whole_in_the_file_and_goes_on_behind_that()
    {
        log->begin(2, 1);
        levels(Row::X, 0, {1});
        log->writeLog();
        QCOMPARE(rows(), QStringList({u"D,T,1,"_s, {}}));
        QVERIFY(!log->isUnsaved() && log->isRunning());
        levels(Row::X, 1, {2});
        QCOMPARE(rowsAtItsEnd(), QStringList({u"D,T,1,2,"_s, {}}));
    }

    void another_log_takes_the_place_of_the_last_one()
    {
        log->begin(2, 1);
        levels(Row::X, 0, {1, 2});
        log->beginTest();
        QCOMPARE(rows(), QStringList({u"D,T,1,2,"_s, {}}));
        log->begin(1, 1);
        QVERIFY(!log->isUnsaved());
        levels(Row::X, 0, {3});
        QCOMPARE(rowsAtItsEnd(), QStringList({u"D,T,3,"_s, {}}));
        QCOMPARE(contentOf(u"TestLog.csv"_s, {}).split('\n').first(),
                 "Date,Time,X000,Y000,NG/PASS");
    }

    void a_file_that_cannot_be_written_is_told_once_a_test()
    {
        QVERIFY(QDir::current().mkdir(u"TestLog.csv"_s));
        log->begin(1, 1);
        levels(Row::X, 0, {1});
        log->end();
        QVERIFY(log->isUnsaved());
        QCOMPARE(warnings(), 1);
        log->writeLog();
        QCOMPARE(warnings(), 1);
        log->beginTest(); // tries once more, for the same test
        QCOMPARE(warnings(), 1);
        log->begin(1, 1);
        levels(Row::X, 0, {2});
        log->end();
        QCOMPARE(warnings(), 2);
        QVERIFY(QDir::current().rmdir(u"TestLog.csv"_s));
        log.reset(); // and for the last time
        QCOMPARE(rows(), QStringList({u"D,T,2,"_s, {}}));
    }

    void what_is_never_written_is_told_to_who_started_the_program()
    {
        QVERIFY(QDir::current().mkdir(u"TestLog.csv"_s));
        log->begin(1, 1);
        levels(Row::X, 0, {1});
        QTest::ignoreMessage(QtWarningMsg, "TestLog.csv was not written");
        log.reset();
        QCOMPARE(warnings(), 0);
    }
};

QTEST_MAIN(TestSignalLog)
#include "tst_signallog.moc"
