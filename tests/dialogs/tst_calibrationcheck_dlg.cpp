// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/calibrationcheck_dlg.h"
#include "tests/support/hand.h"
#include "tests/support/hides.h"
#include "tests/support/paints.h"
#include "tests/support/widgets.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPointingDevice>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

// On a screen of 1280 x 800 at scale 1, of 338 x 211 mm.
class TestCalibrationCheckDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<CalibrationCheck_dlg> page;
    const std::unique_ptr<QPointingDevice> screen{QTest::createTouchDevice()};

    QString task() const { return in<QLabel>(page, "taskLab")->text(); }
    QString result() const { return in<QLabel>(page, "resultLab")->text(); }
    bool isCovering() const { return page->size() == QSize(1280, 800); }
    static void mouse(QPoint at, const QString &does)
    {
        // A press is lost while the window manager is still busy with the window; and one that
        // follows another at once does not count.
        QTest::qWait(310);
        QVERIFY(hand::mouse(at, does));
    }
    void touch(QPoint at)
    {
        QTest::touchEvent(page.get(), screen.get()).press(0, at);
        QTest::touchEvent(page.get(), screen.get()).release(0, at);
    }
    // Each cross, so far beside it: a second after each other, as the events have it.
    void pressAll(const std::function<QPoint(int)> &beside)
    {
        for (int number = 0; number < CalibrationCheck::Crosses; ++number) {
            QCOMPARE(page->check().asked(), number);
            const QPointF at = page->check().cross(number) + beside(number);
            QMouseEvent press(QEvent::MouseButtonPress, at, page->mapToGlobal(at), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            press.setTimestamp(1000 * quint64(number + 1));
            QCoreApplication::sendEvent(page.get(), &press);
        }
        QVERIFY(page->check().isFinished());
    }
    void pressAll(QPoint beside)
    {
        pressAll([beside](int) { return beside; });
    }

private slots:
    void init()
    {
        page = std::make_unique<CalibrationCheck_dlg>();
        page->show();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        QTRY_VERIFY(isCovering());
    }

    void every_cross_is_asked_for_and_touches_are_measured_by_mouse()
    {
        const QPoint places[] = {{50, 50},    {1229, 50}, {1229, 749}, {50, 749}, {640, 50},
                                 {1229, 400}, {640, 749}, {50, 400},   {640, 400}};
        for (int number = 0; number < CalibrationCheck::Crosses; ++number) {
            QCOMPARE(task(), u"Touch the middle of cross %1 of 9."_s.arg(number + 1));
            QCOMPARE(page->check().cross(number), places[number]);
            mouse(places[number] + QPoint(3, 4), u"click 1"_s);
            QTRY_COMPARE(page->check().asked(), number + 1);
            QCOMPARE(page->check().distance(number), 5.0);
        }
        QCOMPARE(task(), u"Passed"_s);
        QCOMPARE(result(), u"Touches were 5.0 px (1.3 mm) off on average, and at the most 5.0 px "
                           "(1.3 mm), at cross 1.\nGood are up to 7.5 px on average and 15.1 px at "
                           "the most."_s);
    }

    void by_touch_too()
    {
        for (int number = 0; number < CalibrationCheck::Crosses; ++number) {
            touch(page->check().cross(number) + QPoint(0, 3));
            QCOMPARE(page->check().asked(), number + 1);
            QTest::qWait(310);
        }
        QCOMPARE(task(), u"Passed"_s);
    }

    void again_begins_anew()
    {
        pressAll({0, 3});
        QCOMPARE(task(), u"Passed"_s);
        in(page, "againButton")->click();
        QCOMPARE(task(), u"Touch the middle of cross 1 of 9."_s);
        QCOMPARE(result(), QString());
        pressAll({16, 0});
        QCOMPARE(task(), u"Calibrate again"_s);
    }

    void the_press_counts_and_not_where_it_is_let_go()
    {
        QTest::touchEvent(page.get(), screen.get()).press(0, QPoint(60, 50));
        QTest::touchEvent(page.get(), screen.get()).move(0, QPoint(50, 50));
        QTest::touchEvent(page.get(), screen.get()).release(0, QPoint(50, 50));
        QCOMPARE(page->check().asked(), 1);
        QCOMPARE(page->check().distance(0), 10.0);
        QCOMPARE(result(), u"Cross 1: 10.0 px off, which is 2.6 mm."_s);
    }

    // It is taken as it comes, not as what the toolkit would make of it for who knows mice only.
    void a_touch_makes_no_mouse_event()
    {
        struct Mice : QObject
        {
            int seen = 0;
            bool eventFilter(QObject * /*watched*/, QEvent *event) override
            {
                seen += event->type() == QEvent::MouseButtonPress ? 1 : 0;
                return false;
            }
        } mice;
        page->installEventFilter(&mice);
        touch({60, 50});
        QCOMPARE(page->check().asked(), 1);
        QCOMPARE(mice.seen, 0);
    }

    void a_second_finger_and_other_buttons_do_not_count()
    {
        QTest::touchEvent(page.get(), screen.get()).press(0, QPoint(50, 50));
        QTest::qWait(310);
        QTest::touchEvent(page.get(), screen.get()).stationary(0).press(1, QPoint(1229, 50));
        QTest::touchEvent(page.get(), screen.get())
            .release(0, QPoint(50, 50))
            .release(1, QPoint(9, 9));
        QCOMPARE(page->check().asked(), 1);
        QTest::mouseClick(page.get(), Qt::RightButton, {}, QPoint(1229, 50));
        QCOMPARE(page->check().asked(), 1);
    }

    // Where a frame that is badly off puts a touch.
    void the_panel_takes_no_touch_before_the_end()
    {
        const auto *panel = in<QWidget>(page, "panel");
        QVERIFY(panel->isVisible());
        for (const char *name : {"againButton", "closeButton"})
            QVERIFY2(!in(page, name)->isVisible(), name);
        QVERIFY(in<QLabel>(page, "hintLab")->isVisible());
        const QPoint inside = panel->geometry().center();
        touch(inside);
        QCOMPARE(page->check().asked(), 1);
        QCOMPARE(page->check().touch(0), QPointF(inside));
        mouse(page->mapToGlobal(inside), u"click 1"_s);
        QTRY_COMPARE(page->check().asked(), 2);
    }

    void at_the_end_the_buttons_are_touched()
    {
        pressAll({0, 0});
        auto *again = in(page, "againButton");
        QTRY_VERIFY(again->isVisible());
        // A button that loses the focus while it is held, to a window manager that is still busy
        // with the window, is let go.
        const auto begins = [this, again] {
            touch(again->mapTo(page.get(), again->rect().center()));
            return QTest::qWaitFor([this] { return !page->check().isFinished(); }, 1000);
        };
        QVERIFY(QTest::qWaitFor(begins));
        pressAll({0, 0});
        const auto *close = in(page, "closeButton");
        mouse(close->mapToGlobal(close->rect().center()), u"click 1"_s);
        QTRY_VERIFY(!page->isVisible());
    }

    void at_the_end_return_closes()
    {
        pressAll({0, 0});
        QVERIFY(!in<QLabel>(page, "hintLab")->isVisible());
        QCOMPARE(page->focusWidget(), in(page, "closeButton"));
        QVERIFY(hand::press(u"Return"_s));
        QTRY_VERIFY(!page->isVisible());
    }

    void backspace_takes_a_touch_back()
    {
        touch({400, 300});
        QCOMPARE(page->check().asked(), 1);
        QTest::keyClick(page.get(), Qt::Key_Backspace);
        QCOMPARE(task(), u"Touch the middle of cross 1 of 9."_s);
        QCOMPARE(result(), QString());
    }

    void no_other_key_takes_one_back()
    {
        touch({400, 300});
        const QString after = result();
        for (const Qt::Key key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Delete, Qt::Key_Left})
            QTest::keyClick(page.get(), key);
        QCOMPARE(page->check().asked(), 1);
        QCOMPARE(result(), after);
    }

    void minimised_it_keeps_its_touches_and_is_still_left_by_itself()
    {
        touch({50, 50});
        const auto *hides = new Hides(page.get());
        page->setWindowState(page->windowState() | Qt::WindowMinimized);
        QTRY_VERIFY(hides->bySystem > 0);
        QVERIFY(page->findChild<QTimer *>()->isActive());
        page->setWindowState(Qt::WindowFullScreen);
        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        QCOMPARE(page->check().asked(), 1);
        QCOMPARE(task(), u"Touch the middle of cross 2 of 9."_s);
    }

    void escape_leaves_at_any_time_and_the_next_showing_begins_anew()
    {
        touch({50, 50});
        QVERIFY(hand::press(u"Escape"_s));
        QTRY_VERIFY(!page->isVisible());
        page->show();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        QCOMPARE(page->check().asked(), 0);
        QTRY_VERIFY(isCovering());
    }

    // A touch frame that reaches no button locks nobody in.
    void it_leaves_by_itself_when_nothing_is_touched()
    {
        auto *timer = page->findChild<QTimer *>();
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 60000);
        timer->start(1);
        touch({50, 50});
        QCOMPARE(timer->interval(), 60000);
        timer->start(50000);
        QTest::keyClick(page.get(), Qt::Key_A);
        QCOMPARE(timer->interval(), 60000);
        timer->start(1);
        QTRY_VERIFY(!page->isVisible());
        QVERIFY(!timer->isActive());
    }

    void every_touch_is_spoken_and_the_verdict()
    {
        QStringList spoken;
        connect(page.get(), &CalibrationCheck_dlg::spoken, this,
                [&spoken](const QString &words) { spoken.append(words); });
        pressAll({10, 0});
        QCOMPARE(spoken.size(), 9);
        QCOMPARE(spoken[0], u"Cross 1: 10.0 px off, which is 2.6 mm.\n"
                            "Touch the middle of cross 2 of 9."_s);
        QVERIFY2(spoken[8].startsWith(u"Touches were 10.0 px"_s), qPrintable(spoken[8]));
        QVERIFY2(spoken[8].endsWith(u"\nCalibrate again"_s), qPrintable(spoken[8]));
    }

    void letters_grow_with_the_screen_and_the_task_is_in_larger_ones()
    {
        QCOMPARE(page->font().pointSize(), 13);
        QCOMPARE(in<QLabel>(page, "taskLab")->font().pointSize(), 19);
        QVERIFY(in<QLabel>(page, "taskLab")->font().bold());
    }

    void the_task_stands_between_the_crosses_of_the_middle_and_of_the_bottom()
    {
        const auto *panel = in<QWidget>(page, "panel");
        const auto isInPlace = [this, panel] {
            const QRect place = panel->geometry();
            return qAbs(place.center().x() - 640) <= 1 &&
                   place.top() > page->check().cross(8).y() + 20 &&
                   place.bottom() < page->check().cross(6).y() - 20;
        };
        QVERIFY(isInPlace());
        pressAll({0, 3});
        QVERIFY(isInPlace());
    }

    void the_cross_that_is_asked_for_stands_out()
    {
        const auto ink = [this](int number) {
            const QPoint cross = page->check().cross(number);
            const QImage picture = page->grab().toImage();
            int dark = 0;
            for (int x = -24; x <= 24; ++x)
                for (int y = -24; y <= 24; ++y)
                    dark += picture.pixelColor(cross + QPoint(x, y)).lightness() < 100 ? 1 : 0;
            return dark;
        };
        QVERIFY(ink(0) > 2 * ink(1));
        QCOMPARE(ink(1), ink(2));
        QCoreApplication::processEvents();
        const Paints paints(page.get());
        touch({50, 50});
        QTRY_VERIFY(paints.region.contains(page->check().cross(0)));
        QVERIFY(paints.region.contains(page->check().cross(1)));
        QVERIFY(ink(1) > 2 * ink(2));
    }

    void a_touch_is_a_dot_at_the_end_of_a_line_and_the_worst_has_a_ring()
    {
        const auto isInk = [this](int number, QPoint beside) {
            const QPoint at = page->check().touch(number).toPoint() + beside;
            return page->grab().toImage().pixelColor(at).lightness() < 200;
        };
        touch({62, 50});
        QVERIFY(isInk(0, {0, 0}));
        QVERIFY(isInk(0, {0, 2}));
        QVERIFY(isInk(0, {1, -1}));
        QVERIFY(!isInk(0, {0, 6}));
        QVERIFY(!isInk(0, {0, 8}));
        QTest::keyClick(page.get(), Qt::Key_Backspace);
        touch({80, 20});
        QVERIFY(isInk(0, {-15, 15}));
        QVERIFY(!isInk(0, {-15, 10}) && !isInk(0, {-15, 20}));
        QTest::keyClick(page.get(), Qt::Key_Backspace);
        pressAll([](int number) { return QPoint(number == 5 ? 12 : 3, 0); });
        QCOMPARE(page->check().worst(), 5);
        for (int number = 0; number < CalibrationCheck::Crosses; ++number)
            QCOMPARE(isInk(number, {0, 8}), number == 5);
        // The ring goes round the dot and does not hide it.
        QVERIFY(isInk(5, {0, 2}) && !isInk(5, {0, 5}));
    }

    // Where a hand does not hide them, the edge does not cut them off and no arm crosses them.
    void words_stand_below_the_upper_crosses_and_above_the_others()
    {
        const QImage picture = page->grab().toImage();
        const QColor ground = picture.pixelColor(2, 2);
        const auto isWritten = [&](int number, int from, int rows = 20) {
            const QPoint cross = page->check().cross(number);
            for (int x = -8; x <= 8; ++x)
                for (int y = from; y < from + rows; ++y)
                    if (picture.pixelColor(cross + QPoint(x, y)) != ground)
                        return true;
            return false;
        };
        for (int number = 0; number < CalibrationCheck::Crosses; ++number) {
            const QPoint cross = page->check().cross(number);
            if (in<QWidget>(page, "panel")->geometry().contains(cross + QPoint(0, 40)))
                continue; // the panel with the task stands there
            const bool isUpper = cross.y() < 800 / 3;
            QVERIFY2(isWritten(number, 28) == isUpper, qPrintable(u"cross %1"_s.arg(number + 1)));
            QVERIFY2(isWritten(number, -48) != isUpper, qPrintable(u"cross %1"_s.arg(number + 1)));
            QVERIFY(!isWritten(number, 22, 4) && !isWritten(number, -25, 4));
        }
    }

    void no_words_are_cut_off_at_the_sides()
    {
        pressAll({0, 3});
        const QImage picture = page->grab().toImage();
        const QColor ground = picture.pixelColor(2, 2);
        const auto isClear = [&](int from, int to) {
            for (int x = from; x < to; ++x)
                for (int y = 0; y < picture.height(); ++y)
                    if (picture.pixelColor(x, y) != ground)
                        return false;
            return true;
        };
        // Longer than twice the way from the cross to the edge.
        QVERIFY(isClear(0, 6) && !isClear(6, 16));
        QVERIFY(isClear(1274, 1280) && !isClear(1264, 1274));
    }
};

QTEST_MAIN(TestCalibrationCheckDlg)
#include "tst_calibrationcheck_dlg.moc"
