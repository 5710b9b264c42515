// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/scrolled.h"

#include <QDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QTest>
#include <QWheelEvent>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize Whole(400, 300);
constexpr QRect Near(10, 12, 40, 20);
constexpr QRect Far(355, 275, 40, 20);

} // namespace

// A window of two buttons in opposite corners, and of a large one between them.
class TestScrolled : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QWidget> window;
    Scrolled *scrolled = nullptr; // its child, as are these
    QPushButton *nearOne = nullptr;
    QPushButton *farOne = nullptr;
    QPushButton *large = nullptr;

    int extent() const { return window->style()->pixelMetric(QStyle::PM_ScrollBarExtent); }
    // The one that is seen, if one is.
    QScrollBar *bar(Qt::Orientation orientation) const
    {
        for (QScrollBar *one : window->findChildren<QScrollBar *>()) {
            if (one->orientation() == orientation && one->isVisible())
                return one;
        }
        return nullptr;
    }
    QScrollBar *across() const { return bar(Qt::Horizontal); }
    QScrollBar *down() const { return bar(Qt::Vertical); }
    void turn(QPoint angle) const
    {
        QWheelEvent event(QPointF(5, 5), window->mapToGlobal(QPointF(5, 5)), {}, angle,
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window.get(), &event);
    }
    // What the bars leave of the window.
    QRect view() const
    {
        return window->rect().adjusted(0, 0, down() ? -extent() : 0, across() ? -extent() : 0);
    }

private slots:
    void init()
    {
        window = std::make_unique<QWidget>();
        nearOne = new QPushButton(window.get());
        nearOne->setGeometry(Near);
        farOne = new QPushButton(window.get());
        farOne->setGeometry(Far);
        large = new QPushButton(window.get());
        large->setGeometry(60, 40, 290, 230);
        scrolled = new Scrolled(window.get(), Whole);
        window->resize(Whole);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    void cleanup() { window.reset(); }

    void with_room_for_everything_nothing_scrolls()
    {
        farOne->setFocus();
        turn({0, -120});
        QVERIFY(!across() && !down());
        QCOMPARE(scrolled->offset(), QPoint());
        QCOMPARE(farOne->geometry(), Far);
    }

    void bars_are_where_there_is_no_room_and_go_as_far_as_there_is_something_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("isNarrow");
        QTest::addColumn<bool>("isLow");
        QTest::newRow("low") << QSize(450, 200) << false << true;
        QTest::newRow("narrow") << QSize(250, 350) << true << false;
        QTest::newRow("both") << QSize(250, 200) << true << true;
        QTest::newRow("low, and the bar takes the width") << QSize(405, 200) << true << true;
        QTest::newRow("narrow, and the bar takes the height") << QSize(250, 305) << true << true;
        QTest::newRow("one pixel too narrow") << QSize(399, 350) << true << false;
    }
    void bars_are_where_there_is_no_room_and_go_as_far_as_there_is_something()
    {
        QFETCH(const QSize, size);
        QFETCH(const bool, isNarrow);
        QFETCH(const bool, isLow);
        window->resize(size);
        QCOMPARE(across() != nullptr, isNarrow);
        QCOMPARE(down() != nullptr, isLow);
        if (isNarrow) {
            QCOMPARE(across()->geometry(), QRect(0, view().height(), view().width(), extent()));
            QCOMPARE(across()->accessibleName(), u"Scroll to the side"_s);
            across()->setValue(10000);
        }
        if (isLow) {
            QCOMPARE(down()->geometry(), QRect(view().width(), 0, extent(), view().height()));
            QCOMPARE(down()->accessibleName(), u"Scroll up and down"_s);
            down()->setValue(10000);
        }
        QCOMPARE(scrolled->offset(),
                 QPoint(isNarrow ? 400 - view().width() : 0, isLow ? 300 - view().height() : 0));
        QCOMPARE(farOne->geometry(), Far.translated(-scrolled->offset()));
        // Bars stay where they are, and children where they are to each other.
        QCOMPARE(nearOne->geometry(), Near.translated(-scrolled->offset()));
        if (isNarrow)
            QCOMPARE(across()->geometry(), QRect(0, view().height(), view().width(), extent()));
        if (isLow)
            QCOMPARE(down()->geometry(), QRect(view().width(), 0, extent(), view().height()));
    }

    void with_room_again_everything_is_back_in_its_place()
    {
        window->resize(250, 200);
        across()->setValue(70);
        down()->setValue(80);
        QCOMPARE(nearOne->geometry(), Near.translated(-70, -80));
        window->resize(Whole);
        QVERIFY(!across() && !down());
        QCOMPARE(scrolled->offset(), QPoint());
        QCOMPARE(nearOne->geometry(), Near);
        QCOMPARE(farOne->geometry(), Far);
        window->resize(250, 200);
        QVERIFY(across() && down());
    }

    void a_window_of_the_window_is_not_scrolled()
    {
        QDialog dialog(window.get());
        dialog.move(120, 130);
        window->resize(250, 200);
        down()->setValue(50);
        QCOMPARE(dialog.pos(), QPoint(120, 130));
    }

    void each_way_of_the_wheel_scrolls_its_own_way()
    {
        window->resize(250, 200);
        turn({0, -120});
        QCOMPARE(scrolled->offset(), QPoint(0, 3 * extent()));
        turn({-120, 0});
        QCOMPARE(scrolled->offset(), QPoint(3 * extent(), 3 * extent()));
        turn({0, 240});
        QCOMPARE(scrolled->offset(), QPoint(3 * extent(), 0));
        turn({120, 0});
        QCOMPARE(scrolled->offset(), QPoint());
    }

    // Most mice have no other.
    void the_wheel_scrolls_to_the_side_where_there_is_nothing_below()
    {
        window->resize(250, 350);
        turn({0, -120});
        QCOMPARE(scrolled->offset(), QPoint(3 * extent(), 0));
        turn({0, 120});
        QCOMPARE(scrolled->offset(), QPoint());
        window->resize(450, 200);
        turn({-120, 0});
        QCOMPARE(scrolled->offset(), QPoint());
    }

    void what_gets_the_keyboard_comes_into_view_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("both") << QSize(250, 200);
        QTest::newRow("low") << QSize(450, 200);
        QTest::newRow("narrow") << QSize(250, 350);
    }
    void what_gets_the_keyboard_comes_into_view()
    {
        QFETCH(const QSize, size);
        window->resize(size);
        const auto isSeen = [this](const QWidget *one) { return view().contains(one->geometry()); };
        // No further than it takes.
        farOne->setFocus();
        QVERIFY(isSeen(farOne) && !isSeen(nearOne));
        QCOMPARE(farOne->geometry().right() == view().right(), across() != nullptr);
        QCOMPARE(farOne->geometry().bottom() == view().bottom(), down() != nullptr);
        nearOne->setFocus();
        QVERIFY(isSeen(nearOne) && !isSeen(farOne));
        QCOMPARE(nearOne->geometry().left() == 0, across() != nullptr);
        QCOMPARE(nearOne->geometry().top() == 0, down() != nullptr);
        // Of what is larger than the view, the beginning.
        farOne->setFocus();
        large->setFocus();
        QCOMPARE(large->geometry().left() == 0, across() != nullptr);
        QCOMPARE(large->geometry().top() == 0, down() != nullptr);
        // What is in view already stays.
        const QPoint before = scrolled->offset();
        window->setFocus();
        large->setFocus();
        QCOMPARE(scrolled->offset(), before);
    }

    void the_keyboard_elsewhere_scrolls_nothing()
    {
        window->resize(250, 200);
        down()->setValue(30);
        QWidget other;
        QPushButton button(&other);
        button.move(500, 500);
        other.show();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        button.setFocus();
        QCOMPARE(scrolled->offset(), QPoint(0, 30));
        button.clearFocus();
        QCOMPARE(scrolled->offset(), QPoint(0, 30));
    }
};

QTEST_MAIN(TestScrolled)
#include "tst_scrolled.moc"
