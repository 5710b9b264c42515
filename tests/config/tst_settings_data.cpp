// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/settings_data.h"

#include <QTest>

class TestSettingsData : public QObject
{
    Q_OBJECT

private slots:
    void what_is_out_of_range_becomes_the_nearest_that_is_not_data()
    {
        QTest::addColumn<_SETTING_DATA>("given");
        QTest::addColumn<_SETTING_DATA>("within");
        const _SETTING_DATA least{.all_en = 0,
                                  .rb_en = 0,
                                  .rb_duration = 500,
                                  .rb_ran = 1,
                                  .db_speed = 300,
                                  .db_ran = 20,
                                  .wheel_en = 0,
                                  .wheel_sen = 1};
        const _SETTING_DATA most{.all_en = 1,
                                 .rb_en = 1,
                                 .rb_duration = 2500,
                                 .rb_ran = 5,
                                 .db_speed = 900,
                                 .db_ran = 60,
                                 .wheel_en = 1,
                                 .wheel_sen = 3};
        QTest::newRow("the least there is") << least << least;
        QTest::newRow("the most there is") << most << most;
        QTest::newRow("less than anything") << _SETTING_DATA{.all_en = 0,
                                                             .rb_en = 0,
                                                             .rb_duration = -2147483647,
                                                             .rb_ran = 0,
                                                             .db_speed = 299,
                                                             .db_ran = 19,
                                                             .wheel_en = 0,
                                                             .wheel_sen = 0}
                                            << least;
        QTest::newRow("more than anything") << _SETTING_DATA{.all_en = 2,
                                                             .rb_en = -1,
                                                             .rb_duration = 2147483647,
                                                             .rb_ran = 6,
                                                             .db_speed = 901,
                                                             .db_ran = 61,
                                                             .wheel_en = 256,
                                                             .wheel_sen = 4}
                                            << most;
    }

    void what_is_out_of_range_becomes_the_nearest_that_is_not()
    {
        QFETCH(_SETTING_DATA, given);
        QFETCH(_SETTING_DATA, within);
        const _SETTING_DATA found = withinRanges(given);
        QCOMPARE(found.all_en, within.all_en);
        QCOMPARE(found.rb_en, within.rb_en);
        QCOMPARE(found.rb_duration, within.rb_duration);
        QCOMPARE(found.rb_ran, within.rb_ran);
        QCOMPARE(found.db_speed, within.db_speed);
        QCOMPARE(found.db_ran, within.db_ran);
        QCOMPARE(found.wheel_en, within.wheel_en);
        QCOMPARE(found.wheel_sen, within.wheel_sen);
    }
};

QTEST_GUILESS_MAIN(TestSettingsData)
#include "tst_settings_data.moc"
