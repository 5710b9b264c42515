// SPDX-License-Identifier: GPL-3.0-or-later

// On small screens every control of every window can be reached. Each run belongs to a desktop of
// its own: CMakeLists.txt gives the screen.

#include "app/helpaction.h"
#include "app/helpwindow.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/present.h"
#include "dialogs/test_win.h"
#include "dialogs/useradv_dlg.h"
#include "resources/resources.h"
#include "tests/support/allwindows.h"
#include "tests/support/photograph.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

class TestSmallScreens : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::optional<AllWindows> all;

    static QRect room() { return QGuiApplication::primaryScreen()->availableGeometry(); }
    static QList<QScrollBar *> barsIn(const QWidget *window)
    {
        QList<QScrollBar *> bars;
        for (QScrollBar *bar : window->findChildren<QScrollBar *>())
            if (bar->isVisible() && bar->accessibleName().startsWith(u"Scroll"))
                bars.append(bar);
        return bars;
    }
    static QRect placeOf(const QWidget *widget)
    {
        return {widget->mapTo(widget->window(), QPoint(0, 0)), widget->size()};
    }
    // Whether a user sees that part of a widget, or all of it.
    static bool isSeen(const QWidget *widget, const QList<QScrollBar *> &bars)
    {
        return isSeen(widget, widget->rect(), bars);
    }
    static bool isSeen(const QWidget *widget, const QRect &part, const QList<QScrollBar *> &bars)
    {
        // Within the window, since places on a scaled screen are rounded.
        const QRect place(widget->mapTo(widget->window(), part.topLeft()), part.size());
        for (const QWidget *around = widget; !around->isWindow();) {
            around = around->parentWidget();
            if (!placeOf(around).contains(place))
                return false;
        }
        return std::none_of(bars.begin(), bars.end(), [place](const QScrollBar *bar) {
            return placeOf(bar).intersects(place);
        });
    }
    // A widget; or its corners, if it is larger than what one sees of the window.
    static QList<std::pair<QWidget *, QRect>> partsOf(QWidget *widget)
    {
        const QSize size = widget->size();
        const QSize view = room().size() - QSize(40, 60); // a frame, and bars to scroll with
        if (size.width() <= view.width() && size.height() <= view.height())
            return {{widget, widget->rect()}};
        const QSize corner(std::min(size.width(), 16), std::min(size.height(), 16));
        QList<std::pair<QWidget *, QRect>> corners;
        for (const int x : {0, size.width() - corner.width()})
            for (const int y : {0, size.height() - corner.height()})
                corners.append({widget, QRect(QPoint(x, y), corner)});
        return corners;
    }
    // Scrolls through the window; names what was never seen.
    static QStringList unreachable(QWidget *window)
    {
        QList<std::pair<QWidget *, QRect>> left;
        for (QWidget *widget : window->findChildren<QWidget *>()) {
            const bool isControl =
                qobject_cast<QLabel *>(widget) || (widget->focusPolicy() & Qt::TabFocus) != 0;
            const bool isPart =
                qobject_cast<QLineEdit *>(widget) && widget->parentWidget()->inherits("QComboBox");
            if (widget->window() == window && widget->isVisible() && isControl && !isPart)
                left += partsOf(widget);
        }
        const QList<QScrollBar *> bars = barsIn(window);
        QScrollBar *across = nullptr;
        QScrollBar *down = nullptr;
        for (QScrollBar *bar : bars)
            (bar->orientation() == Qt::Horizontal ? across : down) = bar;
        const auto last = [](const QScrollBar *bar) { return bar ? bar->maximum() : 0; };
        for (int y = 0; y <= last(down) + 7; y += 8) {
            for (int x = 0; x <= last(across) + 7; x += 8) {
                if (across)
                    across->setValue(x);
                if (down)
                    down->setValue(y);
                left.removeIf([&bars](const std::pair<QWidget *, QRect> &part) {
                    return isSeen(part.first, part.second, bars);
                });
            }
        }
        for (QScrollBar *bar : bars)
            bar->setValue(0);
        QStringList names;
        for (const auto &[widget, part] : left)
            names.append(window->objectName() + u'/' + widget->objectName());
        return names;
    }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void init()
    {
        home = std::make_unique<SettingsHome>();
        all.emplace();
        all->main.show();
        QVERIFY(QTest::qWaitForWindowActive(&all->main));
    }
    void cleanup()
    {
        all.reset();
        home.reset();
    }

    void every_control_can_be_reached()
    {
        QStringList bad;
        int windows = 0;
        for (QWidget *window : windowsOfTool()) {
            if (window->inherits("Calibration_Dlg"))
                continue;
            ++windows;
            present(window);
            QVERIFY(QTest::qWaitForWindowExposed(window));
            if (!window->isFullScreen()) {
                // The window manager frames it a moment later.
                QTest::qWait(100);
                const QSize size = window->frameGeometry().size();
                if (size.width() > room().width() || size.height() > room().height())
                    bad.append(u"%1 is %2 x %3"_s.arg(window->objectName())
                                   .arg(size.width())
                                   .arg(size.height()));
            }
            bad += unreachable(window);
            if (window != &all->main)
                window->close();
        }
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(u'\n')));
        QVERIFY(windows > 10);
    }

    void the_manual_keeps_inside_the_screen()
    {
        all->main.findChild<HelpAction *>()->trigger();
        auto *manual = topLevel<HelpWindow>();
        QVERIFY(manual);
        QVERIFY(QTest::qWaitForWindowExposed(manual));
        QTest::qWait(100); // until the window manager has framed it
        const QSize size = manual->frameGeometry().size();
        QVERIFY2(size.width() <= room().width() && size.height() <= room().height(),
                 qPrintable(u"%1 x %2"_s.arg(size.width()).arg(size.height())));
        QCOMPARE(unreachable(manual), QStringList());
    }

    void the_keyboard_brings_into_view_what_it_reaches()
    {
        auto *window = all->main.findChild<test_win *>();
        present(window);
        // Its parent's being active counts for the toolkit.
        QTRY_COMPARE(QApplication::activeWindow(), window);
        QVERIFY(!barsIn(window).isEmpty());
        window->findChild<QPushButton *>(u"Xbtn"_s)->setFocus();
        QStringList bad;
        // All of them there and back.
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            for (int i = 0; i < 13; ++i) {
                QWidget *focus = QApplication::focusWidget();
                QVERIFY(focus && focus->window() == window);
                if (!isSeen(focus, barsIn(window)))
                    bad.append(focus->objectName());
                QTest::keyClick(focus, key);
            }
        }
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(u'\n')));
    }

    void the_picture_scrolls_with_its_window()
    {
        auto *window = all->main.findChild<test_win *>();
        present(window);
        QTRY_COMPARE(QApplication::activeWindow(), window);
        const auto *button = window->findChild<QPushButton *>(u"Xbtn"_s);
        // The window shows what gets the keyboard.
        QTRY_VERIFY(window->focusWidget());
        for (QScrollBar *bar : barsIn(window))
            bar->setValue(0);
        const QPoint before = button->pos();
        const QImage still = window->grab().toImage();
        QPoint by;
        for (QScrollBar *bar : barsIn(window)) {
            bar->setValue(20);
            (bar->orientation() == Qt::Horizontal ? by.rx() : by.ry()) = bar->value();
        }
        QVERIFY(!by.isNull());
        QCOMPARE(button->pos(), before - by);
        // Where the white of the picture begins.
        const qreal ratio = window->devicePixelRatioF();
        const QImage moved = window->grab().toImage();
        const QPoint inside = (QPointF(30, 30) * ratio).toPoint();
        const QPoint shift = (QPointF(by) * ratio).toPoint();
        QCOMPARE(still.pixelColor(inside), QColor(Qt::white));
        for (int x = 0; x < 300; x += 7)
            for (int y = 30; y < 300; y += 7)
                QCOMPARE(moved.pixel(inside + QPoint(x, y)),
                         still.pixel(inside + shift + QPoint(x, y)));
        // Nothing of what was there before is left on the screen. The place of a window on a
        // scaled one is known by halves.
        if (ratio == 1)
            QTRY_COMPARE(photograph(window->geometry()),
                         window->grab().toImage().convertToFormat(QImage::Format_RGB32));
    }

    void a_window_scrolls_as_far_as_it_goes()
    {
        auto *window = all->main.findChild<test_win *>();
        present(window);
        QVERIFY(QTest::qWaitForWindowActive(window));
        QVERIFY(!barsIn(window).isEmpty());
        for (const QScrollBar *bar : barsIn(window)) {
            const bool isAcross = bar->orientation() == Qt::Horizontal;
            QCOMPARE(bar->minimum(), 0);
            QCOMPARE(bar->maximum() + (isAcross ? bar->width() : bar->height()),
                     isAcross ? 1000 : 650);
        }
    }

    void the_wheel_scrolls()
    {
        auto *window = all->main.findChild<test_win *>();
        present(window);
        QVERIFY(QTest::qWaitForWindowActive(window));
        const QScrollBar *bar = barsIn(window).last();
        const auto turn = [window](QPoint angle) {
            QWheelEvent event(QPointF(100, 100), window->mapToGlobal(QPointF(100, 100)), {}, angle,
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(window->centralWidget(), &event);
        };
        turn({0, -120});
        QVERIFY(bar->value() >= std::min(30, bar->maximum()));
        for (int i = 0; i < 50; ++i)
            turn({0, -120});
        QCOMPARE(bar->value(), bar->maximum());
        for (int i = 0; i < 50; ++i)
            turn({0, 120});
        QCOMPARE(bar->value(), 0);
        for (const QScrollBar *across : barsIn(window)) {
            if (across->orientation() != Qt::Horizontal)
                continue;
            turn({-120, 0});
            QVERIFY(across->value() >= std::min(30, across->maximum()));
            turn({120, 0});
            QCOMPARE(across->value(), 0);
        }
    }

    void the_panel_of_the_lights_keeps_inside_the_screen()
    {
        auto *window = all->main.findChild<LightSet_dlg *>();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QTRY_COMPARE(window->size(), window->screen()->size());
        const auto *panel = window->findChild<QGroupBox *>(u"groupBox_3"_s);
        QVERIFY(window->rect().contains(panel->geometry()));
        QCOMPARE(panel->size(), QSize(501, 471).boundedTo(window->size()));
        window->close();
    }
};

QTEST_MAIN(TestSmallScreens)
#include "tst_small_screens.moc"
