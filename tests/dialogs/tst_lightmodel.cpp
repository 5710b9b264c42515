// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/lightmodel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using lights::Axis;
using lights::LightPlace;
using lights::LightVerdict;

namespace {

lights::Light light(LightVerdict verdict, double level, double expected, double noise)
{
    lights::Light one;
    one.verdict = verdict;
    one.level = level;
    one.expected = expected;
    one.noise = noise;
    return one;
}

// Two lights of X and one of Y, as more than one scan has them.
lights::Report threeLights()
{
    lights::Report report;
    report.verdicts.x.lights = {light(LightVerdict::Healthy, 200.04, 201, 1.26),
                                light(LightVerdict::Weak, 60, 199, 0.5)};
    report.verdicts.x.noiseKnown = true;
    report.verdicts.y.lights = {light(LightVerdict::Dead, 0, 180, 0)};
    report.verdicts.y.noiseKnown = true;
    return report;
}

} // namespace

class TestLightModel : public QObject
{
    Q_OBJECT

private:
    LightModel model;
    QAbstractItemModelTester tester{&model};

    QStringList texts(int row) const
    {
        QStringList all;
        for (int column = 0; column < model.columnCount(); ++column)
            all += model.index(row, column).data().toString();
        return all;
    }
    QVariant sorted(int row, int column) const
    {
        return model.index(row, column).data(LightModel::SortRole);
    }

private slots:
    void init() { model.setReport(threeLights()); }

    void every_light_has_a_row_and_those_of_x_come_first()
    {
        QCOMPARE(model.rowCount(), 3);
        const LightPlace places[] = {{Axis::X, 0}, {Axis::X, 1}, {Axis::Y, 0}};
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(model.rowOf(places[row]), row);
            QVERIFY(model.placeOf(row) == places[row]);
        }
        QCOMPARE(model.rowOf({Axis::X, 2}), -1);
        QCOMPARE(model.rowOf({Axis::Y, 1}), -1);
        QCOMPARE(texts(0), QStringList({u"X 0"_s, u"healthy"_s, u"200.0"_s, u"201.0"_s, u"1.3"_s,
                                        QString()}));
        QCOMPARE(texts(2),
                 QStringList({u"Y 0"_s, u"dead"_s, u"0.0"_s, u"180.0"_s, u"0.0"_s, QString()}));
    }

    void noise_that_is_not_known_is_not_told()
    {
        lights::Report report = threeLights();
        report.verdicts.x.noiseKnown = false;
        model.setReport(report);
        QCOMPARE(texts(0)[LightModel::Noise], QString());
        QVERIFY(!sorted(0, LightModel::Noise).isValid());
        QCOMPARE(texts(2)[LightModel::Noise], u"0.0"_s); // that of its own axis is
    }

    void a_change_is_told_in_percent_for_the_light_that_has_one()
    {
        lights::Report report = threeLights();
        report.changes = {{.axis = Axis::X, .light = 1, .then = 200, .now = 60, .alone = -0.7012},
                          {.axis = Axis::Y, .light = 0, .then = 180, .now = 0, .alone = -1}};
        model.setReport(report);
        QCOMPARE(texts(0)[LightModel::Change], QString());
        QCOMPARE(texts(1)[LightModel::Change], u"-70.1"_s);
        QCOMPARE(texts(2)[LightModel::Change], u"-100.0"_s);
        QVERIFY(!sorted(0, LightModel::Change).isValid());
        QCOMPARE(sorted(1, LightModel::Change).toDouble(), -70.12);
    }

    void rows_are_sorted_by_numbers_and_not_by_their_texts()
    {
        QCOMPARE(sorted(2, LightModel::Name), QVariant(2));
        QVERIFY(sorted(2, LightModel::Verdict).toInt() > sorted(0, LightModel::Verdict).toInt());
        QCOMPARE(sorted(0, LightModel::Level), QVariant(200.04));
        QCOMPARE(sorted(1, LightModel::Expected), QVariant(199.0));
        QCOMPARE(sorted(0, LightModel::Noise), QVariant(1.26));
    }

    void only_columns_have_titles()
    {
        QCOMPARE(model.headerData(LightModel::Noise, Qt::Horizontal).toString(), u"Noise"_s);
        QVERIFY(!model.headerData(LightModel::Noise, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
    }

    // What is chosen and in view stays with the rows.
    void as_many_lights_as_before_are_the_same_rows()
    {
        const QSignalSpy anew(&model, &QAbstractItemModel::modelReset);
        const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        const QPersistentModelIndex chosen(model.index(1, 0));
        lights::Report report = threeLights();
        report.verdicts.x.lights[1].verdict = LightVerdict::Healthy;
        model.setReport(report);
        QCOMPARE(texts(1)[LightModel::Verdict], u"healthy"_s);
        QCOMPARE(anew.size(), 0);
        QCOMPARE(changed.size(), 1);
        QVERIFY(chosen.isValid());
        report.verdicts.y.lights.clear();
        model.setReport(report);
        QCOMPARE(anew.size(), 1);
        QCOMPARE(model.rowCount(), 2);
        model.setReport({});
        model.setReport({});
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(anew.size(), 2);
        QCOMPARE(changed.size(), 1);
    }
};

QTEST_APPLESS_MAIN(TestLightModel)
#include "tst_lightmodel.moc"
