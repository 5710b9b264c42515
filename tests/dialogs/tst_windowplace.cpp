// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/windowplaces.h"
#include "dialogs/windowplace.h"
#include "tests/support/hand.h"
#include "tests/support/settingshome.h"

#include <QDialog>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize Size(200, 150);
constexpr int SettleMs = 200; // until the window manager has placed a window

std::unique_ptr<QDialog> makeWindow(const QString &name = u"some_dlg"_s)
{
    auto window = std::make_unique<QDialog>();
    window->setObjectName(name);
    window->resize(Size);
    keepPlace(window.get());
    return window;
}

bool show(QWidget &window)
{
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return false;
    QTest::qWait(SettleMs);
    return true;
}

// As a user does it.
bool drag(const QWidget &window, QPoint place)
{
    return hand::move(window.winId(), place) && QTest::qWaitFor([&] {
               return window.pos() == place || window.geometry().topLeft() == place;
           });
}

bool isOnOneScreen(const QWidget &window)
{
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (screen->geometry().contains(window.frameGeometry()))
            return true;
    }
    return false;
}

} // namespace

class TestWindowPlace : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;

private slots:
    void init() { home = std::make_unique<SettingsHome>(); }
    void cleanup() { home.reset(); }

    void a_window_made_anew_is_where_the_last_one_was()
    {
        auto window = makeWindow();
        QVERIFY(show(*window));
        QVERIFY(drag(*window, {81, 92}));
        const QPoint place = window->pos();
        window.reset();
        // Again and again: it does not wander by the width of its frame.
        for (int run = 0; run < 3; ++run) {
            window = makeWindow();
            QVERIFY(show(*window));
            QCOMPARE(window->pos(), place);
            window.reset();
        }
    }

    void a_window_that_was_never_shown_before_is_placed_by_the_window_manager()
    {
        QDialog plain;
        plain.resize(Size);
        QVERIFY(show(plain));
        const QPoint usual = plain.pos();
        plain.close();
        windowplaces::keep(u"other_dlg"_s, {5, 6});
        const auto window = makeWindow();
        QVERIFY(show(*window));
        // The toolkit may hear of a frame late, and then counts a place without it.
        const QPoint off = window->pos() - usual;
        QVERIFY2(off.manhattanLength() <= 40, qPrintable(u"%1, %2"_s.arg(off.x()).arg(off.y())));
    }

    void a_place_beyond_every_screen_is_not_gone_to()
    {
        windowplaces::keep(u"some_dlg"_s, {5000, 300});
        const auto window = makeWindow();
        QVERIFY(show(*window));
        QVERIFY(isOnOneScreen(*window));
    }

    void a_window_at_the_edge_of_what_is_a_smaller_screen_now_is_moved_inwards()
    {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        windowplaces::keep(u"some_dlg"_s, screen.bottomRight() - QPoint(110, 80));
        const auto window = makeWindow();
        QVERIFY(show(*window));
        QVERIFY(isOnOneScreen(*window));
        QVERIFY(window->frameGeometry().right() > screen.right() - 40);
    }

    void a_window_on_a_second_screen_comes_back_there_or_to_the_first()
    {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        auto window = makeWindow();
        QVERIFY(show(*window));
        const QPoint onSecond =
            QGuiApplication::screens()[1]->geometry().topLeft() + QPoint(60, 70);
        QVERIFY(drag(*window, onSecond));
        const QPoint place = window->pos();
        window.reset();
        window = makeWindow();
        QVERIFY(show(*window));
        QCOMPARE(window->pos(), place);
        window->close();

        QCOMPARE(QProcess::execute(u"xrandr"_s, {u"--delmonitor"_s, u"RIGHT"_s}), 0);
        QTRY_COMPARE(QGuiApplication::screens().size(), 1);
        window = makeWindow();
        QVERIFY(show(*window));
        QVERIFY(isOnOneScreen(*window));
    }

    void a_window_that_is_told_where_to_be_stays_there_and_is_not_remembered()
    {
        windowplaces::keep(u"some_dlg"_s, {5, 6});
        const auto window = makeWindow();
        window->move(300, 200);
        QVERIFY(show(*window));
        QCOMPARE(window->pos(), QPoint(300, 200));
        window->close();
        QCOMPARE(windowplaces::of(u"some_dlg"_s), QPoint(5, 6));
    }

    void a_place_is_kept_where_programs_know_theirs()
    {
        const auto window = makeWindow();
        QVERIFY(show(*window));
        window->close();
        const bool isKnown = !QGuiApplication::platformName().startsWith("wayland"_L1);
        QCOMPARE(windowplaces::of(u"some_dlg"_s).has_value(), isKnown);
        QCOMPARE(QFile::exists(windowplaces::filePath()), isKnown);
    }

    void a_window_that_fills_the_screen_leaves_its_place_as_it_was()
    {
        windowplaces::keep(u"some_dlg"_s, {81, 92});
        const auto window = makeWindow();
        QVERIFY(show(*window));
        window->showMaximized();
        QTRY_VERIFY(window->width() > Size.width());
        window->close();
        QCOMPARE(windowplaces::of(u"some_dlg"_s), QPoint(81, 92));
    }
};

QTEST_MAIN(TestWindowPlace)
#include "tst_windowplace.moc"
