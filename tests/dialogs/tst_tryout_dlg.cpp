// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/gesturefield.h"
#include "dialogs/tryout_dlg.h"
#include "tests/support/hand.h"
#include "tests/support/paints.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPointingDevice>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

#include <memory>

using namespace Qt::StringLiterals;
using Kind = Gesture::Kind;

// Fingers are made up by the toolkit; all that a mouse does comes from the X server.
class TestTryOutDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TryOut_dlg> dialog;
    const std::unique_ptr<QPointingDevice> screen{QTest::createTouchDevice()};

    GestureField *field() const { return in<GestureField>(dialog, "field"); }
    QString last() const { return in<QLabel>(dialog, "lastLab")->text(); }
    QStringList log() const
    {
        const auto *list = in<QListWidget>(dialog, "logList");
        QStringList all;
        for (int row = 0; row < list->count(); ++row)
            all.append(list->item(row)->text());
        return all;
    }
    // With the pointer in the field, so far from its corner.
    void mouse(QPoint at, const QString &does) const
    {
        // A press is lost while the window manager is still busy with the window.
        QTest::qWait(200);
        QVERIFY(hand::mouse(field()->mapToGlobal(at), does));
    }
    // The numbers in what was told last, if its words are these.
    QList<int> numbers(const QString &words) const
    {
        const auto match =
            QRegularExpression(u'^' + QString(words).replace(u'#', u"([\\d,]+)"_s) + u'$')
                .match(last());
        QList<int> all;
        for (const QString &number : match.capturedTexts().mid(1))
            all.append(QLocale().toInt(number));
        return all;
    }
    static Gesture click() { return {.kind = Kind::Click, .time = 90, .distance = 1.6}; }

private slots:
    void init()
    {
        dialog = std::make_unique<TryOut_dlg>();
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    }

    void a_size_that_somebody_gave_the_window_stays()
    {
        const QSize larger = dialog->size() + QSize(90, 60);
        dialog->resize(larger);
        QTest::qWait(100); // for the window manager
        for (int times = 0; times < 2; ++times) {
            dialog->close();
            dialog->show();
            QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
            QCOMPARE(dialog->size(), larger);
        }
        dialog->showMaximized();
        QTRY_VERIFY(dialog->width() > 1000);
        dialog->close();
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        QTest::qWait(100);
        QVERIFY(dialog->isMaximized());
        QVERIFY(dialog->width() > 1000);
    }

    void a_window_that_was_shown_on_a_smaller_screen_gets_its_size_back()
    {
        const QSize usual = dialog->size();
        dialog->close();
        const auto monitors = [](const QStringList &words) {
            return QProcess::execute(u"xrandr"_s, words) == 0;
        };
        const auto desktop = [] { return QGuiApplication::primaryScreen()->size(); };
        const QSize whole = desktop();
        QVERIFY(monitors({u"--setmonitor"_s, u"SMALL"_s, u"520/138x400/106+0+0"_s, u"screen"_s}));
        QTRY_COMPARE(desktop(), QSize(520, 400));
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        const QSize small = dialog->size();
        dialog->close();
        QVERIFY(monitors({u"--delmonitor"_s, u"SMALL"_s}));
        QTRY_COMPARE(desktop(), whole);
        QVERIFY(small.width() <= 520 && small.height() < 400);
        dialog->show();
        QCOMPARE(dialog->size(), usual);
        // One that was made larger than any screen is none the next time.
        dialog->resize(whole + QSize(100, 100));
        dialog->close();
        dialog->show();
        QVERIFY(dialog->width() <= whole.width() && dialog->height() < whole.height());
    }

    void the_field_has_an_edge()
    {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        const QImage image = field()->grab().toImage();
        const int row = image.height() - 1;
        QVERIFY(image.pixelColor(image.width() / 2, row) !=
                image.pixelColor(image.width() / 2, row - 5));
    }

    // Its own right clicks are what is tried.
    void the_field_hands_no_right_click_on_for_a_menu()
    {
        QCOMPARE(field()->contextMenuPolicy(), Qt::PreventContextMenu);
    }

    void a_click_of_a_mouse_is_told()
    {
        mouse({100, 40}, u"click 1"_s);
        QTRY_COMPARE(numbers(u"Click: down for # ms, moved # px"_s).size(), 2);
        QCOMPARE(numbers(u"Click: down for # ms, moved # px"_s)[1], 0);
        QVERIFY(!in<QLabel>(dialog, "hintLab")->isVisible());
    }

    void a_double_click_of_a_mouse_is_told_with_what_lies_between()
    {
        // Far from the clicks of other tests.
        mouse({300, 60}, u"click 1 mousemove_relative 3 0 click 1"_s);
        const QString words = u"Double click: # ms and # px apart"_s;
        QTRY_COMPARE(numbers(words).size(), 2);
        QVERIFY(numbers(words)[0] < 400);
        QCOMPARE(numbers(words)[1], 3);
        // The click that it began with is no gesture of its own.
        QCOMPARE(log(), QStringList());
    }

    void two_clicks_that_are_too_far_apart_tell_why_they_are_none()
    {
        mouse({100, 40}, u"click 1 mousemove_relative 30 0 click 1"_s);
        const QString words =
            u"Click # ms after the one before and # px from it: no double click"_s;
        QTRY_COMPARE(numbers(words).size(), 2);
        QCOMPARE(numbers(words)[1], 30);
        QCOMPARE(log().size(), 1);
    }

    void what_a_mouse_holds_is_told_when_it_lets_go()
    {
        mouse({100, 40}, u"mousedown 1 sleep 1.2 mousemove_relative 2 0 mouseup 1"_s);
        const QString words = u"Pressed for # ms, moved # px: no right click"_s;
        QTRY_COMPARE(numbers(words).size(), 2);
        QVERIFY(numbers(words)[0] >= 900);
        QCOMPARE(numbers(words)[1], 2);
    }

    // As a frame does it whose press and hold gives the right button.
    void a_right_click_that_comes_of_holding_is_told_with_its_time_data()
    {
        QTest::addColumn<QString>("does");
        QTest::newRow("held on") << u"mousedown 1 sleep 0.5 click 3 mouseup 1"_s;
        QTest::newRow("let go") << u"mousedown 1 sleep 0.5 mouseup 1 click 3"_s;
    }
    void a_right_click_that_comes_of_holding_is_told_with_its_time()
    {
        QFETCH(const QString, does);
        mouse({100, 40}, does);
        const QString words = u"Right click after # ms, moved # px"_s;
        QTRY_COMPARE(numbers(words).size(), 2);
        QVERIFY(numbers(words)[0] >= 300);
        QCOMPARE(log(), QStringList());
    }

    void a_right_click_opens_nothing()
    {
        mouse({100, 40}, u"click 3"_s);
        QTRY_COMPARE(numbers(u"Right click: down for # ms, moved # px"_s).size(), 2);
        QVERIFY(!QApplication::activePopupWidget());
    }

    void a_drag_of_a_mouse_is_told_with_length_and_time()
    {
        // A busy server sees the press late.
        mouse({40, 40}, u"mousedown 1 sleep 0.3 mousemove_relative 120 0 sleep 0.1 "
                        "mousemove_relative 40 0 mouseup 1"_s);
        const QString words = u"Drag of # px in # ms"_s;
        QTRY_COMPARE(numbers(words).size(), 2);
        QCOMPARE(numbers(words)[0], 160);
        QVERIFY(numbers(words)[1] >= 200);
    }

    void a_wheel_is_told_with_its_steps_data()
    {
        QTest::addColumn<QString>("does");
        QTest::addColumn<QString>("words");
        QTest::newRow("down") << u"click --repeat 3 --delay 20 5"_s
                              << u"Wheel: 3 step\\(s\\) down in # ms"_s;
        QTest::newRow("up") << u"click 4"_s << u"Wheel: 1 step\\(s\\) up in # ms"_s;
        QTest::newRow("left") << u"click 6"_s << u"Wheel: 1 step\\(s\\) to the left in # ms"_s;
        QTest::newRow("right") << u"click 7"_s << u"Wheel: 1 step\\(s\\) to the right in # ms"_s;
    }
    void a_wheel_is_told_with_its_steps()
    {
        QFETCH(const QString, does);
        QFETCH(const QString, words);
        mouse({100, 40}, does);
        QTRY_COMPARE(numbers(words).size(), 1);
        QCOMPARE(log(), QStringList());
    }

    void less_than_a_step_of_a_wheel_is_told_too()
    {
        QWheelEvent event(QPointF(50, 50), field()->mapToGlobal(QPointF(50, 50)), {}, {0, -40},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(field(), &event);
        QCOMPARE(last(), u"Wheel: less than a step in 0 ms"_s);
        // As a touchpad ends its gesture.
        dialog->on_clearButton_clicked();
        QWheelEvent end(QPointF(50, 50), field()->mapToGlobal(QPointF(50, 50)), {}, {},
                        Qt::NoButton, Qt::NoModifier, Qt::ScrollEnd, false);
        QCoreApplication::sendEvent(field(), &end);
        QVERIFY(end.isAccepted());
        QCOMPARE(last(), QString());
    }

    void a_finger_taps_twice()
    {
        for (const QPoint at : {QPoint(50, 50), QPoint(54, 53)}) {
            QTest::touchEvent(field(), screen.get()).press(0, at);
            QTest::touchEvent(field(), screen.get()).release(0, at);
        }
        QCOMPARE(numbers(u"Double tap: # ms and 5 px apart"_s).size(), 1);
        QCOMPARE(log(), QStringList());
    }

    void a_finger_is_held()
    {
        QTest::touchEvent(field(), screen.get()).press(0, QPoint(50, 50));
        QTest::qWait(850);
        QTest::touchEvent(field(), screen.get()).move(0, QPoint(50, 53));
        QTest::touchEvent(field(), screen.get()).release(0, QPoint(50, 50));
        const QString words = u"Touched for # ms, moved 3 px: no right click"_s;
        QCOMPARE(numbers(words).size(), 1);
        QVERIFY(numbers(words)[0] >= 850);
    }

    void a_finger_drags_and_another_one_does_not_count()
    {
        QTest::touchEvent(field(), screen.get()).press(0, QPoint(50, 50));
        QTest::touchEvent(field(), screen.get()).stationary(0).press(1, QPoint(200, 80));
        QTest::touchEvent(field(), screen.get()).move(0, QPoint(80, 90)).move(1, QPoint(10, 10));
        QTest::touchEvent(field(), screen.get()).stationary(0).release(1, QPoint(10, 10));
        QCOMPARE(last(), QString());
        QTest::touchEvent(field(), screen.get()).release(0, QPoint(80, 90));
        QCOMPARE(numbers(u"Drag by touch of 50 px in # ms"_s).size(), 1);
        QCOMPARE(log(), QStringList());
    }

    void a_touch_that_the_system_takes_away_is_none_and_the_next_one_counts()
    {
        QTest::touchEvent(field(), screen.get()).press(0, QPoint(50, 50));
        QTest::touchEvent(field(), screen.get()).move(0, QPoint(80, 90));
        QTouchEvent takenAway(QEvent::TouchCancel, screen.get());
        QCoreApplication::sendEvent(field(), &takenAway);
        QVERIFY(takenAway.isAccepted());
        QCOMPARE(last(), QString());
        QTest::touchEvent(field(), screen.get()).press(1, QPoint(200, 60));
        QTest::touchEvent(field(), screen.get()).release(1, QPoint(200, 60));
        QVERIFY2(last().startsWith(u"Tap: "_s), qPrintable(last()));
        QCOMPARE(log(), QStringList());
        // What was drawn goes with it.
        in<QLabel>(dialog, "hintLab")->hide();
        const QImage picture = field()->grab().toImage();
        for (int x = 40; x < 90; ++x)
            QVERIFY(picture.pixelColor(x, 50).lightness() > 100);
    }

    void a_middle_button_is_nothing_that_a_frame_gives()
    {
        mouse({100, 40}, u"click 2"_s);
        QTest::qWait(200);
        QCOMPARE(last(), QString());
        mouse({100, 40}, u"click 1"_s);
        QTRY_COMPARE(numbers(u"Click: down for # ms, moved # px"_s).size(), 2);
        QCOMPARE(log(), QStringList());
    }

    void a_drawing_without_an_end_loses_its_beginning()
    {
        const auto inkAt = [this](QPoint place) {
            in<QLabel>(dialog, "hintLab")->hide();
            const QImage picture = field()->grab().toImage();
            int dark = 0;
            for (int x = -12; x <= 12; ++x)
                dark += picture.pixelColor(place.x() + x, place.y()).lightness() < 100 ? 1 : 0;
            return dark;
        };
        const auto drawTo = [this](QPoint at) {
            QMouseEvent moved(QEvent::MouseMove, at, field()->mapToGlobal(QPointF(at)),
                              Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(field(), &moved);
        };
        QTest::mousePress(field(), Qt::LeftButton, {}, QPoint(40, 30));
        drawTo({200, 60});
        QVERIFY(inkAt({40, 30}) > 0);
        for (int place = 2; place < 5000; ++place)
            drawTo({200 + place % 2, 60});
        QVERIFY(inkAt({40, 30}) > 0);
        drawTo({200, 60});
        QCOMPARE(inkAt({40, 30}), 0);
        QVERIFY(inkAt({200, 60}) > 0);
        QTest::mouseRelease(field(), Qt::LeftButton, {}, QPoint(200, 60));
    }

    void the_way_of_the_pointer_is_drawn()
    {
        const auto ink = [this] {
            const QImage picture = field()->grab().toImage();
            int dark = 0;
            for (int x = 60; x < 140; ++x)
                dark += picture.pixelColor(x, 30).lightness() < 100 ? 1 : 0;
            return dark;
        };
        QTest::touchEvent(field(), screen.get()).press(0, QPoint(40, 30));
        in<QLabel>(dialog, "hintLab")->hide();
        QCOMPARE(ink(), 0);
        QTest::touchEvent(field(), screen.get()).move(0, QPoint(160, 30));
        QCOMPARE(ink(), 80);
        QTest::touchEvent(field(), screen.get()).release(0, QPoint(160, 30));
        QCOMPARE(ink(), 80);
        // A ring where it began, a dot where it ended.
        const QImage picture = field()->grab().toImage();
        const auto isInk = [&picture](QPoint at) {
            return picture.pixelColor(at).lightness() < 100;
        };
        QVERIFY(isInk({40, 22}) && !isInk({40, 26}));
        QVERIFY(isInk({160, 32}) && isInk({160, 28}) && !isInk({160, 38}));
        dialog->on_clearButton_clicked();
        in<QLabel>(dialog, "hintLab")->hide();
        QCOMPARE(ink(), 0);
    }

    void each_press_begins_a_way_of_its_own()
    {
        const auto inkAt = [this](int y) {
            in<QLabel>(dialog, "hintLab")->hide();
            const QImage picture = field()->grab().toImage();
            int dark = 0;
            for (int x = 60; x < 140; ++x)
                dark += picture.pixelColor(x, y).lightness() < 100 ? 1 : 0;
            return dark;
        };
        const auto dragMiddleButtonTo = [this](QPoint at) {
            QMouseEvent moved(QEvent::MouseMove, at, field()->mapToGlobal(QPointF(at)),
                              Qt::NoButton, Qt::MiddleButton, Qt::NoModifier);
            QCoreApplication::sendEvent(field(), &moved);
        };
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            // The end is where it was let go, be it told of before or not.
            QTest::mousePress(field(), button, {}, QPoint(40, 30));
            QTest::mouseRelease(field(), button, {}, QPoint(160, 30));
            QCOMPARE(inkAt(30), 80);
            dragMiddleButtonTo({160, 50});
            dragMiddleButtonTo({40, 50});
            QCOMPARE(inkAt(50), 0);
            QTest::mousePress(field(), button, {}, QPoint(40, 70));
            QTest::mouseRelease(field(), button, {}, QPoint(160, 70));
            QCOMPARE(inkAt(70), 80);
            QCOMPARE(inkAt(30), 0);
        }
        // A right button that comes of holding belongs to what is held.
        QTest::mousePress(field(), Qt::LeftButton, {}, QPoint(40, 30));
        QTest::mousePress(field(), Qt::RightButton, {}, QPoint(160, 30));
        QTest::mouseRelease(field(), Qt::RightButton, {}, QPoint(160, 30));
        QTest::mouseRelease(field(), Qt::LeftButton, {}, QPoint(160, 30));
        QCOMPARE(inkAt(30), 80);
    }

    void what_is_drawn_is_seen_at_once_and_so_is_that_it_is_gone()
    {
        in<QLabel>(dialog, "hintLab")->hide();
        QTest::touchEvent(field(), screen.get()).press(0, QPoint(40, 30));
        QVERIFY(isPaintedFor(field(), [this] {
            QTest::touchEvent(field(), screen.get()).move(0, QPoint(160, 30));
        }));
        QVERIFY(isPaintedFor(field(), [this] { field()->clear(); }));
        QTest::touchEvent(field(), screen.get()).release(0, QPoint(160, 30));
    }

    void the_gestures_before_are_listed_the_last_one_first()
    {
        dialog->tell(click());
        dialog->tell({.kind = Kind::Drag, .time = 640, .distance = 312});
        dialog->tell({.kind = Kind::RightClick, .time = 70, .distance = 0});
        QCOMPARE(last(), u"Right click: down for 70 ms, moved 0 px"_s);
        QCOMPARE(log(), QStringList({u"Drag of 312 px in 640 ms"_s,
                                     u"Click: down for 90 ms, moved 2 px"_s}));
        for (int i = 0; i < 30; ++i)
            dialog->tell(click());
        QCOMPARE(log().size(), 20);
        press(dialog, "clearButton");
        QCOMPARE(last(), QString());
        QCOMPARE(log(), QStringList());
        QVERIFY(in<QLabel>(dialog, "hintLab")->isVisible());
    }

    void every_gesture_is_spoken_once_and_as_what_it_became()
    {
        QStringList spoken;
        connect(dialog.get(), &TryOut_dlg::spoken, this,
                [&spoken](const QString &words) { spoken.append(words); });
        dialog->tell(click());
        dialog->tell({.kind = Kind::DoubleClick, .time = 240, .distance = 3, .replaces = true});
        QCOMPARE(spoken, QStringList());
        QTRY_COMPARE(spoken, QStringList(u"Double click: 240 ms and 3 px apart"_s));
        // What comes fast is not lost; what is cleared is.
        dialog->tell({.kind = Kind::Drag, .time = 640, .distance = 312});
        dialog->tell(click());
        QCOMPARE(spoken.mid(1), QStringList(u"Drag of 312 px in 640 ms"_s));
        dialog->on_clearButton_clicked();
        QTest::qWait(700);
        QCOMPARE(spoken.size(), 2);
    }

    void what_the_desktop_goes_by_is_told()
    {
        const GestureReader::Limits limits = GestureField::limits();
        QCOMPARE(
            in<QLabel>(dialog, "limitsLab")->text(),
            u"On this desktop two clicks within %1 ms are a double click, two taps also within "
            "%2 px; what is down for %3 ms is held, and what moves %4 px is dragged."_s
                .arg(limits.doubleClickMs)
                .arg(limits.doubleTapPixels)
                .arg(limits.holdMs)
                .arg(limits.dragPixels));
    }

    void the_keyboard_reaches_everything_and_leaves()
    {
        in<QListWidget>(dialog, "logList")->setFocus();
        for (const char *next : {"clearButton", "closeButton"}) {
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
            QCOMPARE(dialog->focusWidget()->objectName(), QString::fromLatin1(next));
        }
        for (const char *named : {"logList", "field"})
            QVERIFY(!in<QWidget>(dialog, named)->accessibleName().isEmpty());
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        QVERIFY(!dialog->isVisible());
    }
};

QTEST_MAIN(TestTryOutDlg)
#include "tst_tryout_dlg.moc"
