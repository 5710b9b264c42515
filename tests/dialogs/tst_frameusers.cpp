// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/frameusers.h"

#include <QTest>

class TestFrameUsers : public QObject
{
    Q_OBJECT

private slots:
    void at_first_nobody_has_the_frame()
    {
        const FrameUsers users;
        QVERIFY(!users.any());
        QVERIFY(!users.has(FrameUsers::LightScreen));
        QVERIFY(!users.has(FrameUsers::LightCheck));
    }

    void the_first_who_takes_it_and_the_last_who_gives_it_back_change_something()
    {
        FrameUsers users;
        QVERIFY(!users.set(FrameUsers::LightScreen, false));
        QVERIFY(users.set(FrameUsers::LightScreen, true));
        QVERIFY(users.any());
        QVERIFY(!users.set(FrameUsers::LightCheck, true));
        QVERIFY(!users.set(FrameUsers::LightScreen, false));
        QVERIFY(users.any());
        QVERIFY(users.set(FrameUsers::LightCheck, false));
        QVERIFY(!users.any());
    }

    void who_takes_it_twice_gives_it_back_once()
    {
        FrameUsers users;
        QVERIFY(users.set(FrameUsers::LightCheck, true));
        QVERIFY(!users.set(FrameUsers::LightCheck, true));
        QVERIFY(users.set(FrameUsers::LightCheck, false));
        QVERIFY(!users.set(FrameUsers::LightCheck, false));
        QVERIFY(!users.any());
    }

    void each_is_known_by_itself()
    {
        FrameUsers users;
        users.set(FrameUsers::LightScreen, true);
        QVERIFY(users.has(FrameUsers::LightScreen));
        QVERIFY(!users.has(FrameUsers::LightCheck));
        users.set(FrameUsers::LightCheck, true);
        QVERIFY(users.has(FrameUsers::LightScreen));
        QVERIFY(users.has(FrameUsers::LightCheck));
        users.set(FrameUsers::LightScreen, false);
        QVERIFY(!users.has(FrameUsers::LightScreen));
        QVERIFY(users.has(FrameUsers::LightCheck));
    }
};

QTEST_APPLESS_MAIN(TestFrameUsers)
#include "tst_frameusers.moc"
