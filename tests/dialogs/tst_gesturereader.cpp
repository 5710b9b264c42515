// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/gesturereader.h"

#include <QTest>

using Kind = Gesture::Kind;

namespace {

constexpr GestureReader::Limits Limits{
    .doubleClickMs = 400, .doubleTapPixels = 20, .dragPixels = 10, .holdMs = 800};

enum class With { Mouse, Finger };
using enum With;

} // namespace

class TestGestureReader : public QObject
{
    Q_OBJECT

private:
    GestureReader reader{Limits};
    QList<Gesture> seen;

    void take(const PointerEvent &event)
    {
        if (const auto gesture = reader.take(event))
            seen.append(*gesture);
    }
    void press(qint64 ms, QPointF at, With with = Mouse)
    {
        take({.type = PointerEvent::Type::Press, .ms = ms, .at = at, .byTouch = with == Finger});
    }
    void doublePress(qint64 ms, QPointF at)
    {
        take({.type = PointerEvent::Type::DoublePress, .ms = ms, .at = at});
    }
    void move(qint64 ms, QPointF at, With with = Mouse)
    {
        take({.type = PointerEvent::Type::Move, .ms = ms, .at = at, .byTouch = with == Finger});
    }
    void release(qint64 ms, QPointF at, With with = Mouse)
    {
        take({.type = PointerEvent::Type::Release, .ms = ms, .at = at, .byTouch = with == Finger});
    }
    void rightPress(qint64 ms, QPointF at)
    {
        take({.type = PointerEvent::Type::RightPress, .ms = ms, .at = at});
    }
    void rightRelease(qint64 ms, QPointF at)
    {
        take({.type = PointerEvent::Type::RightRelease, .ms = ms, .at = at});
    }
    void turn(qint64 ms, QPoint angle)
    {
        take({.type = PointerEvent::Type::Wheel, .ms = ms, .at = {50, 50}, .angle = angle});
    }
    static Gesture gesture(Kind kind, int time, qreal distance, With with = Mouse,
                           bool replaces = false)
    {
        return {.kind = kind,
                .time = time,
                .distance = distance,
                .byTouch = with == Finger,
                .replaces = replaces};
    }
    static Gesture wheel(int time, QPoint angle, bool replaces = false)
    {
        return {.kind = Kind::Wheel,
                .time = time,
                .distance = 0,
                .byTouch = false,
                .angle = angle,
                .replaces = replaces};
    }

private slots:
    void init()
    {
        reader = GestureReader(Limits);
        seen.clear();
    }

    void a_click_is_told_when_it_ends()
    {
        press(1000, {50, 50});
        QCOMPARE(seen, QList<Gesture>());
        move(1040, {53, 54});
        release(1120, {51, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Click, 120, 5)}));
    }

    void a_pointer_that_moves_about_does_nothing()
    {
        move(1000, {10, 10});
        move(1100, {200, 10});
        release(1200, {200, 10});
        QCOMPARE(seen, QList<Gesture>());
    }

    void a_double_click_is_what_the_desktop_says_it_is()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        doublePress(1240, {53, 50});
        release(1300, {53, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Click, 80, 0),
                                       gesture(Kind::DoubleClick, 240, 3, Mouse, true)}));
    }

    void two_clicks_that_are_no_double_click_tell_how_far_they_were_from_one()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        press(1620, {50, 80});
        release(1700, {50, 80});
        QCOMPARE(seen,
                 QList<Gesture>({gesture(Kind::Click, 80, 0), gesture(Kind::LateClick, 620, 30)}));
    }

    void the_third_of_three_clicks_is_one_of_its_own()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        doublePress(1240, {50, 50});
        release(1300, {50, 50});
        press(1400, {50, 50});
        release(1450, {50, 50});
        QCOMPARE(seen.last(), gesture(Kind::Click, 50, 0));
    }

    void clicks_that_have_nothing_to_do_with_each_other_are_told_alone()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        press(2501, {50, 50});
        release(2600, {50, 50});
        QCOMPARE(seen.last(), gesture(Kind::Click, 99, 0));
        press(4001, {50, 50});
        release(4080, {50, 50});
        QCOMPARE(seen.last(), gesture(Kind::LateClick, 1500, 0));
        // One is the mouse's, the other a finger's.
        press(4200, {50, 50}, Finger);
        release(4250, {50, 50}, Finger);
        QCOMPARE(seen.last(), gesture(Kind::Click, 50, 0, Finger));
    }

    void a_click_after_a_drag_or_a_hold_is_told_alone()
    {
        press(1000, {50, 50});
        release(1050, {50, 50});
        press(1100, {50, 50});
        release(1200, {90, 50});
        press(1300, {50, 50});
        release(1350, {50, 50});
        QCOMPARE(seen.last(), gesture(Kind::Click, 50, 0));
        press(1400, {50, 50});
        release(2200, {50, 50});
        press(2300, {50, 50});
        release(2340, {50, 50});
        QCOMPARE(seen.last(), gesture(Kind::Click, 40, 0));
    }

    void two_taps_are_a_double_tap_within_time_and_distance_data()
    {
        QTest::addColumn<int>("apart");
        QTest::addColumn<int>("aside");
        QTest::addColumn<bool>("isDouble");
        QTest::newRow("near") << 400 << 20 << true;
        QTest::newRow("late") << 401 << 0 << false;
        QTest::newRow("aside") << 100 << 21 << false;
    }
    void two_taps_are_a_double_tap_within_time_and_distance()
    {
        QFETCH(const int, apart);
        QFETCH(const int, aside);
        QFETCH(const bool, isDouble);
        press(1000, {50, 50}, Finger);
        release(1050, {50, 50}, Finger);
        press(1000 + apart, QPointF(50 + aside, 50), Finger);
        release(1050 + apart, QPointF(50 + aside, 50), Finger);
        QCOMPARE(seen.size(), 2);
        QCOMPARE(seen.last(), isDouble ? gesture(Kind::DoubleClick, apart, aside, Finger, true)
                                       : gesture(Kind::LateClick, apart, aside, Finger));
    }

    void two_taps_with_something_else_between_are_no_double_tap_data()
    {
        QTest::addColumn<bool>("byWheel");
        QTest::newRow("the wheel") << true;
        QTest::newRow("the right button") << false;
    }
    void two_taps_with_something_else_between_are_no_double_tap()
    {
        QFETCH(const bool, byWheel);
        press(1000, {50, 50}, Finger);
        release(1050, {50, 50}, Finger);
        if (byWheel) {
            turn(1300, {0, 120});
        } else {
            rightPress(1300, {50, 50});
            rightRelease(1320, {50, 50});
        }
        press(1350, {50, 50}, Finger);
        release(1390, {50, 50}, Finger);
        QCOMPARE(seen.size(), 3);
        QCOMPARE(seen.last(), gesture(Kind::Click, 40, 0, Finger));
    }

    void what_is_held_and_let_go_is_told_with_its_time()
    {
        press(1000, {50, 50});
        move(1500, {52, 50});
        release(1799, {50, 50});
        press(3000, {50, 50});
        release(3800, {50, 50});
        press(5000, {50, 50}, Finger);
        release(6600, {50, 52}, Finger);
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Click, 799, 2), gesture(Kind::Hold, 800, 0),
                                       gesture(Kind::Hold, 1600, 2, Finger)}));
    }

    void a_right_click_that_comes_of_holding_tells_after_what_time()
    {
        press(1000, {50, 50});
        move(1300, {50, 52});
        rightPress(1812, {50, 52});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::HeldRightClick, 812, 2)}));
        // The rest of it is no gesture of its own, in whatever order it comes.
        rightRelease(1830, {50, 52});
        release(1900, {50, 52});
        QCOMPARE(seen.size(), 1);
    }

    void a_right_click_of_a_finger_that_is_held_does_too()
    {
        press(1000, {50, 50}, Finger);
        rightPress(2500, {50, 50});
        release(2600, {50, 50}, Finger);
        rightRelease(2610, {50, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::HeldRightClick, 1500, 0, Finger)}));
    }

    void a_frame_may_let_the_left_button_go_first()
    {
        press(1000, {50, 50});
        release(2500, {53, 50});
        rightPress(2510, {53, 50});
        rightRelease(2520, {53, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Hold, 1500, 3),
                                       gesture(Kind::HeldRightClick, 1510, 3, Mouse, true)}));
    }

    void only_what_the_right_button_follows_at_once_was_held_for_it()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        rightPress(1180, {50, 50});
        QCOMPARE(seen.last(), gesture(Kind::HeldRightClick, 180, 0, Mouse, true));
        rightRelease(1190, {50, 50});
        // The wheel came between.
        press(3000, {50, 50});
        release(4500, {50, 50});
        turn(4510, {0, 120});
        rightPress(4520, {50, 50});
        rightRelease(4550, {50, 50});
        QCOMPARE(seen.last(), gesture(Kind::RightClick, 30, 0));
    }

    void a_right_button_within_a_double_click_is_nothing()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        doublePress(1100, {50, 50});
        QCOMPARE(seen.size(), 2);
        rightPress(1120, {50, 50});
        rightRelease(1130, {50, 50});
        release(1140, {50, 50});
        QCOMPARE(seen.size(), 2);
    }

    void what_was_held_makes_one_right_click_only()
    {
        press(1000, {50, 50});
        release(2500, {50, 50});
        rightPress(2510, {50, 50});
        rightRelease(2520, {50, 50});
        rightPress(2540, {50, 50});
        rightRelease(2560, {50, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Hold, 1500, 0),
                                       gesture(Kind::HeldRightClick, 1510, 0, Mouse, true),
                                       gesture(Kind::RightClick, 20, 0)}));
    }

    void a_right_click_of_a_mouse_is_one_of_its_own()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        rightPress(1181, {50, 50});
        move(1200, {50, 54});
        rightRelease(1271, {50, 50});
        QCOMPARE(seen,
                 QList<Gesture>({gesture(Kind::Click, 80, 0), gesture(Kind::RightClick, 90, 4)}));
    }

    void a_finger_does_not_move_the_right_button()
    {
        rightPress(1000, {50, 50});
        move(1010, {300, 50}, Finger);
        rightRelease(1090, {50, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::RightClick, 90, 0)}));
    }

    void a_drag_tells_how_far_it_got()
    {
        press(1000, {0, 0});
        move(1300, {312, 0});
        move(1500, {200, 0});
        release(1640, {100, 0});
        press(2000, {0, 0}, Finger);
        release(2100, {6, 8}, Finger);
        press(3000, {0, 0}, Finger);
        release(3100, {9, 0}, Finger);
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Drag, 640, 312),
                                       gesture(Kind::Drag, 100, 10, Finger),
                                       gesture(Kind::Click, 100, 9, Finger)}));
    }

    void a_double_click_may_be_dragged()
    {
        press(1000, {50, 50});
        release(1080, {50, 50});
        doublePress(1240, {50, 50});
        release(1500, {90, 50});
        QCOMPARE(seen.last(), gesture(Kind::Drag, 260, 40));
    }

    void the_wheels_steps_are_one_gesture_until_it_rests_or_turns_back()
    {
        turn(1000, {0, -120});
        turn(1200, {0, -120});
        turn(1700, {0, -120});
        turn(2201, {0, -120});
        turn(2300, {0, 120});
        turn(2400, {120, 0});
        QCOMPARE(seen, QList<Gesture>({wheel(0, {0, -120}), wheel(200, {0, -240}, true),
                                       wheel(700, {0, -360}, true), wheel(0, {0, -120}),
                                       wheel(0, {0, 120}), wheel(0, {120, 0})}));
    }

    void a_wheel_that_is_turned_again_after_a_click_begins_anew()
    {
        turn(1000, {0, -120});
        press(1100, {50, 50});
        release(1150, {50, 50});
        turn(1200, {0, -120});
        QCOMPARE(seen.last(), wheel(0, {0, -120}));
    }

    void a_pointer_that_moves_does_not_end_the_wheels_gesture()
    {
        turn(1000, {0, -30});
        move(1010, {51, 50});
        turn(1020, {0, -30});
        QCOMPARE(seen.last(), wheel(20, {0, -60}, true));
    }

    void one_pointer_counts_at_a_time()
    {
        press(1000, {50, 50}, Finger);
        press(1010, {300, 300});
        move(1020, {400, 300});
        release(1030, {400, 300});
        release(1100, {50, 50}, Finger);
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Click, 100, 0, Finger)}));
    }

    void a_touch_that_is_taken_back_was_none()
    {
        press(1000, {50, 50}, Finger);
        take({.type = PointerEvent::Type::Cancel, .ms = 1050, .at = {50, 50}, .byTouch = true});
        release(1100, {50, 50}, Finger);
        QCOMPARE(seen, QList<Gesture>());
        // One of a finger takes nothing from the mouse.
        press(2000, {50, 50});
        take({.type = PointerEvent::Type::Cancel, .ms = 2050, .at = {50, 50}, .byTouch = true});
        release(2100, {50, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Click, 100, 0)}));
    }

    void a_press_whose_release_was_lost_is_forgotten()
    {
        press(1000, {50, 50});
        press(5000, {90, 50});
        release(5100, {90, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Click, 100, 0)}));
    }

    void no_time_is_below_zero()
    {
        press(1000, {50, 50});
        release(900, {50, 50});
        QCOMPARE(seen, QList<Gesture>({gesture(Kind::Click, 0, 0)}));
    }
};

QTEST_APPLESS_MAIN(TestGestureReader)
#include "tst_gesturereader.moc"
