// SPDX-License-Identifier: GPL-3.0-or-later

#include "lights/history.h"
#include "lights/judge.h"
#include "lights/trend.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <cmath>

using namespace lights;
using namespace Qt::StringLiterals;

namespace {

const QDate Begin(2026, 1, 10);

// A frame of 40 lights on X, all at 200 but one.
Measurement measured(int day, double weakest, const QString &unit = u"21-01234-1605"_s)
{
    Measurement measurement;
    measurement.unit.identification = unit;
    measurement.date = QDateTime(Begin.addDays(day), QTime(12, 0), QTimeZone::utc());
    measurement.x.lights = 40;
    for (int s = 0; s < 4; ++s) {
        Scan scan(40, 200.0F);
        scan[12] = float(std::round(weakest));
        measurement.x.scans.push_back(scan);
    }
    return measurement;
}

} // namespace

class TestKept : public QObject
{
    Q_OBJECT

private slots:
    void init() { folder = std::make_unique<QTemporaryDir>(); }

    void what_is_remembered_is_recalled_by_date()
    {
        const History history(folder->path());
        QString problem;
        for (const int day : {30, 0, 90})
            QVERIFY2(history.remember(measured(day, 150), &problem), qPrintable(problem));
        QVERIFY(history.remember(measured(5, 120, u"other"_s), &problem));
        QStringList problems;
        const auto kept = history.recall({u"21-01234-1605"_s, {}}, &problems);
        QVERIFY(problems.isEmpty());
        QCOMPARE(int(kept.size()), 3);
        QCOMPARE(kept[0], measured(0, 150));
        QCOMPARE(kept[1], measured(30, 150));
        QCOMPARE(kept[2], measured(90, 150));
    }

    void a_unit_that_says_nothing_goes_by_its_name()
    {
        const History history(folder->path());
        Measurement nameless = measured(0, 150, {});
        QString problem;
        QVERIFY(!history.remember(nameless, &problem));
        QCOMPARE(problem, u"The unit says nothing of itself: give it a name to remember it by."_s);
        nameless.unit.name = u"../Entrance, left"_s;
        QVERIFY2(history.remember(nameless, &problem), qPrintable(problem));
        QCOMPARE(QDir(folder->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
        QStringList problems;
        QCOMPARE(int(history.recall(nameless.unit, &problems).size()), 1);
        QVERIFY(history.recall({{}, u"Entrance"_s}, &problems).empty());
    }

    void a_measurement_without_a_date_is_not_remembered()
    {
        Measurement dateless = measured(0, 150);
        dateless.date = {};
        QString problem;
        QVERIFY(!History(folder->path()).remember(dateless, &problem));
        QCOMPARE(problem, u"The measurement has no date."_s);
    }

    void files_that_are_damaged_or_of_another_unit_are_left_out_with_a_reason()
    {
        const History history(folder->path());
        QString problem;
        QVERIFY(history.remember(measured(0, 150, u"one"_s), &problem));
        QVERIFY(history.remember(measured(1, 150, u"two"_s), &problem));
        const QString one = folder->filePath(u"one"_s);
        const QString strange = one + u"/20260111T120000Z.json"_s;
        QVERIFY(QFile::copy(folder->filePath(u"two/20260111T120000Z.json"_s), strange));
        QFile damaged(one + u"/20260112T120000Z.json"_s);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(R"({"format": "quorvel-lights", )");
        damaged.close();
        QStringList problems;
        QCOMPARE(int(history.recall({u"one"_s, {}}, &problems).size()), 1);
        QCOMPARE(problems.size(), 2);
        QVERIFY(problems[0].startsWith(damaged.fileName() + u": damaged, at byte "_s));
        QCOMPARE(problems[1], strange + u": it is of another unit, two and not one"_s);
    }

    void a_folder_that_takes_nothing_is_told()
    {
        QFile inTheWay(folder->filePath(u"file"_s));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        QString problem;
        QVERIFY(!History(inTheWay.fileName()).remember(measured(0, 150), &problem));
        QVERIFY2(problem.endsWith(u"cannot be made."_s), qPrintable(problem));
    }

    void a_change_is_told_without_what_the_whole_axis_did()
    {
        Measurement later = measured(1, 120);
        for (Scan &scan : later.x.scans) {
            for (float &level : scan)
                level = std::round(level * 0.9F);
        }
        const auto changes = changesSince(judge(measured(0, 150)), judge(later));
        QCOMPARE(int(changes.size()), 40);
        QVERIFY(std::abs(changes[12].alone - (120.0 / 150 - 1)) < 0.01);
        QVERIFY(std::abs(changes[11].alone) < 0.01);
        QVERIFY(std::abs(changes[11].now - 180) < 1);
    }

    void a_steady_fall_has_a_date()
    {
        // A level each four days: from 150 at the beginning to 37.5 after 450.
        std::vector<Measurement> kept;
        for (int day = 0; day <= 200; day += 20)
            kept.push_back(measured(day, 150 - day / 4.0));
        const auto trend = trendOf(kept);
        QVERIFY(trend);
        QCOMPARE(trend->axis, Axis::X);
        QCOMPARE(trend->light, 12);
        QCOMPARE(trend->measurements, 11);
        QVERIFY(std::abs(trend->perYear + 91.3) < 2);
        QVERIFY(trend->fall);
        QVERIFY(std::abs(trend->fall->expected.daysTo(Begin.addDays(450))) < 8);
        QVERIFY(trend->fall->earliest < trend->fall->expected);
        QVERIFY(trend->fall->latest > trend->fall->expected);
        QVERIFY(trend->fall->earliest <= Begin.addDays(450));
        QVERIFY(trend->fall->latest >= Begin.addDays(450));
    }

    void without_evidence_there_is_no_date_data()
    {
        QTest::addColumn<QList<double>>("levels"); // ten days apart
        QTest::newRow("one measurement") << QList<double>{150};
        QTest::newRow("two measurements") << QList<double>{150, 140};
        QTest::newRow("nothing happens") << QList<double>{150, 150, 150, 150, 150};
        QTest::newRow("up and down") << QList<double>{150, 120, 148, 118, 149, 121};
        QTest::newRow("it gets better") << QList<double>{120, 125, 130, 135, 140};
        QTest::newRow("a fall that may be chance") << QList<double>{150, 139, 148, 138};
        QTest::newRow("in a lifetime") << QList<double>(12, 200) + QList<double>(12, 199);
    }
    void without_evidence_there_is_no_date()
    {
        QFETCH(QList<double>, levels);
        std::vector<Measurement> kept;
        for (int i = 0; i < levels.size(); ++i)
            kept.push_back(measured(10 * i, levels[i]));
        const auto trend = trendOf(kept);
        QVERIFY(trend);
        QCOMPARE(trend->measurements, int(levels.size()));
        QVERIFY(!trend->fall);
    }

    // The interval has to hold the truth as often as it says.
    void the_interval_holds_the_day_nineteen_times_in_twenty()
    {
        const auto wobble = [](int seed, int i) {
            const double a = std::fmod(std::sin(seed * 12.9898 + i * 78.233) * 43758.5453, 1.0);
            const double b = std::fmod(std::sin(seed * 39.346 + i * 11.135) * 24634.6345, 1.0);
            return 6 * (a + b); // nearly normal, some five levels wide
        };
        int claims = 0;
        int held = 0;
        for (int seed = 1; seed <= 120; ++seed) {
            std::vector<Measurement> kept;
            for (int i = 0; i < 8; ++i)
                kept.push_back(measured(30 * i, 150 - 30 * i / 4.0 + wobble(seed, i)));
            const auto trend = trendOf(kept);
            if (!trend->fall)
                continue;
            ++claims;
            const QDate truth = Begin.addDays(450);
            held += trend->fall->earliest <= truth && truth <= trend->fall->latest;
        }
        QVERIFY2(claims > 100, QByteArray::number(claims));
        QVERIFY2(held >= 0.9 * claims, QByteArray::number(held));
    }

private:
    std::unique_ptr<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestKept)
#include "tst_kept.moc"
