// SPDX-License-Identifier: GPL-3.0-or-later

// The curves of the light check, as somebody uses them with a mouse and with the keyboard. What is
// in view is found out by pointing everywhere.

#include "dialogs/curves.h"
#include "dialogs/readable.h"
#include "modules/module.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QImage>
#include <QPen>
#include <QRegion>
#include <QSet>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

#include <map>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int LightsX = 60;
constexpr int LightsY = 40;

using Place = std::pair<int, int>; // axis and light
using Places = QList<Place>;

AxisCurves healthy(int lights)
{
    AxisCurves curves;
    curves.levels = QVector<double>(lights, 200);
    curves.expected = QVector<double>(lights, 210);
    return curves;
}

} // namespace

class TestPlottedCurves : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QWidget> window;
    Curves *curves = nullptr;
    QWidget *plot = nullptr;
    Places chosen;
    Places opened;
    Places told;

    void mouse(QEvent::Type type, QPointF at, Qt::MouseButtons down = {}) const
    {
        QMouseEvent event(type, at, plot->mapToGlobal(at),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, down,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(plot, &event);
    }
    void drag(QPointF from, QPointF by) const
    {
        mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
        mouse(QEvent::MouseMove, from + by, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, from + by);
    }
    void press(int key) const { QTest::keyClick(plot, Qt::Key(key)); }

    // The light that is told of where the pointer is, if one is.
    std::optional<Place> pointAt(QPointF at)
    {
        told.clear();
        mouse(QEvent::MouseMove, at);
        return told.isEmpty() ? std::nullopt : std::optional(told.last());
    }
    // The columns of pixels of each light of an axis that is in view.
    std::map<int, QList<int>> columns(int axis)
    {
        std::map<int, QList<int>> all;
        for (int x = 0; x < plot->width(); ++x) {
            const auto place = pointAt(QPointF(x, plot->height() / 2.));
            if (place && place->first == axis)
                all[place->second] += x;
        }
        return all;
    }
    // The first and the last light of an axis that are in view.
    Place view(int axis)
    {
        const auto all = columns(axis);
        return all.empty() ? Place(-1, -1) : Place(all.begin()->first, all.rbegin()->first);
    }
    QPointF middleOf(int axis, int light)
    {
        const QList<int> all = columns(axis)[light];
        return {(all.first() + all.last()) / 2., plot->height() / 2.};
    }
    QImage picture() const
    {
        QCoreApplication::processEvents(); // it is drawn when there is time
        return plot->grab().toImage();
    }
    // With nothing told.
    QImage quietPicture()
    {
        pointAt({1, 1});
        return picture();
    }
    // The places that look otherwise.
    static QRegion difference(const QImage &one, const QImage &other)
    {
        QRegion region;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x) {
                if (one.pixel(x, y) != other.pixel(x, y))
                    region += QRect(x, y, 1, 1);
            }
        }
        return region;
    }
    // The axes that are drawn, as everybody can ask for them.
    QList<QObject *> axes() const
    {
        QList<QObject *> all = plot->findChildren<QObject *>();
        all.removeIf([](const QObject *one) { return !one->inherits("QCPAxis"); });
        return all;
    }

private slots:
    void init()
    {
        QString problem;
        auto *maker = modules::load<CurvesMaker>(&problem);
        QVERIFY2(maker, qPrintable(problem));
        window = std::make_unique<QWidget>();
        window->resize(900, 400);
        curves = maker->make(window.get(),
                             {.chosen =
                                  [this](int axis, int light) {
                                      chosen += {axis, light};
                                  },
                              .opened =
                                  [this](int axis, int light) {
                                      opened += {axis, light};
                                  },
                              .wordsFor =
                                  [this](int axis, int light) {
                                      told += {axis, light};
                                      return u"%1 %2"_s.arg(axis == 0 ? u"X"_s : u"Y"_s).arg(light);
                                  }});
        plot = curves->widget();
        plot->setGeometry(0, 0, 900, 400);
        curves->setCurves({healthy(LightsX), healthy(LightsY)}, 100);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTRY_COMPARE(view(0), Place(0, LightsX - 1));
        chosen.clear();
        opened.clear();
    }
    void cleanup() { window.reset(); }

    void each_of_the_curves_is_drawn()
    {
        AxisCurves all = healthy(LightsX);
        all.baseline = QVector<double>(LightsX, 190);
        all.change = QVector<double>(LightsX, -5);
        const auto drawn = [this](const AxisCurves &x) {
            curves->setCurves({x, healthy(LightsY)}, 100);
            return picture();
        };
        const QImage before = drawn(all);
        QVERIFY(drawn(all) == before);
        for (QVector<double> AxisCurves::*curve : {&AxisCurves::levels, &AxisCurves::expected,
                                                   &AxisCurves::baseline, &AxisCurves::change}) {
            AxisCurves other = all;
            for (double &value : other.*curve)
                value /= 2;
            QVERIFY(drawn(other) != before);
        }
    }

    void without_a_baseline_the_levels_have_the_room_of_the_changes()
    {
        AxisCurves compared = healthy(LightsX);
        compared.baseline = compared.levels;
        compared.change = QVector<double>(LightsX, 0);
        // Where a low level is, as a share of the height.
        const auto bottom = [this](const std::array<AxisCurves, 2> &all) {
            curves->setCurves(all, -10);
            const QImage before = quietPicture();
            curves->setCurves(all, 5);
            return difference(quietPicture(), before).boundingRect().bottom() /
                   double(plot->height());
        };
        const AxisCurves x = healthy(LightsX);
        const AxisCurves y = healthy(LightsY);
        QVERIFY(bottom({x, y}) > 0.8);
        QVERIFY(bottom({compared, y}) < 0.7);
        QVERIFY(bottom({x, y}) > 0.8);
        compared = healthy(LightsY);
        compared.change = QVector<double>(LightsY, 0);
        QVERIFY(bottom({x, compared}) < 0.7);
    }

    void other_levels_leave_what_is_in_view()
    {
        curves->zoomTo(0, 30, 31);
        AxisCurves other = healthy(LightsX);
        other.levels[30] = 20;
        curves->setCurves({other, healthy(LightsY)}, 100);
        QCOMPARE(view(0), Place(22, 39));
        // Another frame is seen whole.
        curves->setCurves({healthy(LightsX - 1), healthy(LightsY)}, 100);
        QCOMPARE(view(0), Place(0, LightsX - 2));
    }

    void the_limit_is_drawn_at_its_level_over_both_axes()
    {
        const auto drawn = [this](double limit) {
            curves->setCurves({healthy(LightsX), healthy(LightsY)}, limit);
            return quietPicture();
        };
        const QImage none = drawn(-10);
        int before = plot->height();
        for (const double limit : {20., 100., 180.}) {
            const QRegion changed = difference(drawn(limit), none);
            const QRect line = changed.boundingRect();
            QCOMPARE(line.height(), 1);
            QVERIFY(line.top() < before);
            before = line.top();
            for (const auto &all : {columns(0), columns(1)}) {
                const QRect first(all.begin()->second.first(), line.top(), 20, 1);
                const QRect last(all.rbegin()->second.last() - 20, line.top(), 20, 1);
                QVERIFY(changed.intersects(first) && changed.intersects(last));
            }
        }
    }

    void a_bad_light_is_marked_at_its_level()
    {
        AxisCurves one = healthy(LightsX);
        one.levels[40] = 120;
        const auto drawn = [&](const QVector<int> &bad) {
            one.bad = bad;
            curves->setCurves({one, healthy(LightsY)}, 100);
            return quietPicture();
        };
        const QImage before = drawn({});
        const auto markOf = [&](int light) {
            return difference(drawn({light}), before).boundingRect();
        };
        for (const int light : {10, 40}) {
            const QRect mark = markOf(light);
            QVERIFY2(mark.width() < 12 && mark.height() < 12, qPrintable(QString::number(light)));
            QVERIFY(columns(0)[light].contains(mark.center().x()));
        }
        QVERIFY(markOf(10).bottom() < markOf(40).top());
        // Nothing connects them.
        QCOMPARE(difference(drawn({10, 40}), before),
                 difference(drawn({10}), before) | difference(drawn({40}), before));
    }

    void each_axis_is_called_by_its_name()
    {
        std::map<QString, int> axisOf;
        for (const QObject *axis : axes()) {
            const QString label = axis->property("label").toString();
            if (!label.startsWith(u"Lights of "_s))
                continue;
            const auto *area = axis->property("axisRect").value<QObject *>();
            QVERIFY(area);
            const auto place = pointAt(area->property("rect").toRect().center());
            QVERIFY(place);
            axisOf[label] = place->first;
        }
        QCOMPARE(axisOf, (std::map<QString, int>{{u"Lights of X"_s, 0}, {u"Lights of Y"_s, 1}}));
    }

    void the_light_under_the_pointer_is_told()
    {
        const auto x = columns(0);
        const auto y = columns(1);
        QCOMPARE(int(x.size()), LightsX);
        QCOMPARE(int(y.size()), LightsY);
        QVERIFY(x.rbegin()->second.last() < y.begin()->second.first());
        // Each has as much room as the others, in its order.
        for (const auto &lights : {x, y}) {
            int before = 0;
            for (const auto &[light, places] : lights) {
                QVERIFY(places.first() > before);
                before = places.last();
                QVERIFY(std::abs(places.size() - lights.begin()->second.size()) <= 1);
            }
        }
        QCOMPARE(chosen, Places());
    }

    void what_is_told_is_seen_while_the_pointer_is_there()
    {
        plot->clearFocus();
        const QPointF beside(1, 1);
        QVERIFY(!pointAt(beside));
        const QImage nothing = picture();
        QVERIFY(pointAt(middleOf(0, 20)));
        const QImage first = picture();
        // Whole, in the middle above the curves.
        const QRect words = difference(first, nothing).boundingRect();
        QVERIFY(std::abs(words.center().x() - plot->width() / 2) <= 2);
        QVERIFY(words.top() >= 0 && words.bottom() < plot->height() / 4);
        QVERIFY(pointAt(middleOf(1, 20)));
        const QImage second = picture();
        QVERIFY(second != nothing && second != first);
        QVERIFY(!pointAt(beside));
        QVERIFY(picture() == nothing);
        pointAt(middleOf(0, 20));
        QEvent leaving(QEvent::Leave);
        QCoreApplication::sendEvent(plot, &leaving);
        QVERIFY(picture() == nothing);
    }

    void no_curve_runs_through_what_is_told()
    {
        QRect words;
        const auto wordsOver = [&](double level) {
            AxisCurves one = healthy(LightsX);
            one.levels.fill(level);
            one.expected.fill(level);
            curves->setCurves({one, healthy(LightsY)}, 100);
            const QImage nothing = quietPicture();
            pointAt(middleOf(0, 20));
            const QImage shown = picture();
            words = difference(shown, nothing).boundingRect() | words;
            return shown;
        };
        const QImage below = wordsOver(100);
        const QImage behind = wordsOver(255);
        QVERIFY(difference(below, behind).boundingRect().top() < words.bottom());
        QVERIFY(behind.copy(words) == below.copy(words));
    }

    void a_change_stands_below_the_level_of_its_light()
    {
        AxisCurves one = healthy(LightsX);
        one.baseline = one.levels;
        one.change = QVector<double>(LightsX, 0);
        const auto pictureOfChange = [&](double change) {
            one.change[2] = change;
            curves->setCurves({one, healthy(LightsY)}, 100);
            pointAt({1, 1});
            return picture();
        };
        const QImage before = pictureOfChange(0);
        const QImage after = pictureOfChange(-80);
        QList<int> changed;
        for (int x = 0; x < before.width(); ++x) {
            for (int y = before.height() / 2; y < before.height(); ++y) {
                if (before.pixel(x, y) != after.pixel(x, y) && !changed.contains(x))
                    changed += x;
            }
        }
        QVERIFY(!changed.isEmpty());
        const QList<int> places = columns(0)[2];
        for (const int x : changed)
            QVERIFY2(places.contains(x), qPrintable(QString::number(x)));
        QCOMPARE(pointAt(QPointF(changed.first(), before.height() - 60)), Place(0, 2));
    }

    void the_chosen_light_is_told_while_the_keyboard_is_there()
    {
        plot->clearFocus();
        const QImage nothing = quietPicture();
        plot->setFocus();
        QVERIFY(picture() != nothing);
        plot->clearFocus();
        QVERIFY(picture() == nothing);
    }

    void with_the_keyboard_the_chosen_light_is_told_again_when_the_pointer_leaves()
    {
        curves->choose(1, 7);
        plot->setFocus();
        QCOMPARE(told.last(), Place(1, 7));
        QCOMPARE(pointAt(middleOf(0, 20)), Place(0, 20));
        QEvent leaving(QEvent::Leave);
        QCoreApplication::sendEvent(plot, &leaving);
        QCOMPARE(told.last(), Place(1, 7));
    }

    void without_lights_nothing_is_told_chosen_or_opened()
    {
        curves->setCurves({}, 0);
        for (int x = 0; x < plot->width(); x += 10) {
            QVERIFY(!pointAt(QPointF(x, 100)));
            QTest::mouseClick(plot, Qt::LeftButton, {}, QPoint(x, 100));
            QTest::mouseDClick(plot, Qt::LeftButton, {}, QPoint(x, 100));
        }
        QCOMPARE(chosen, Places());
        plot->setFocus();
        press(Qt::Key_Return);
        QCOMPARE(opened, Places());
    }

    void a_click_chooses_a_light_and_marks_it()
    {
        const QPointF beside(1, 1);
        pointAt(beside);
        const QImage before = picture();
        const QPoint at = middleOf(0, 17).toPoint();
        QTest::mouseClick(plot, Qt::LeftButton, {}, at);
        QCOMPARE(chosen, Places({{0, 17}}));
        QCOMPARE(opened, Places());
        plot->clearFocus();
        pointAt(beside);
        const QImage marked = picture();
        QVERIFY(marked != before);
        // The mark is where the light is.
        int first = plot->width();
        int last = -1;
        for (int x = 0; x < marked.width(); ++x) {
            if (marked.pixel(x, at.y()) != before.pixel(x, at.y()) && x > 20) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
        }
        const QList<int> places = columns(0)[17];
        QVERIFY2(places.contains(last), qPrintable(u"%1 to %2"_s.arg(first).arg(last)));
        QTest::mouseClick(plot, Qt::LeftButton, {}, middleOf(1, 39).toPoint());
        QCOMPARE(chosen.last(), Place(1, 39));
        plot->clearFocus();
        const QImage other = quietPicture();
        const auto isDrawnAnew = [&](int axis, int light) {
            const QPoint place = middleOf(axis, light).toPoint();
            return difference(other, marked).intersects(QRect(place - QPoint(3, 0), QSize(7, 1)));
        };
        QVERIFY(isDrawnAnew(1, 39) && isDrawnAnew(0, 17));
        QVERIFY(!isDrawnAnew(1, 17) && !isDrawnAnew(0, 39));
        QTest::mouseClick(plot, Qt::LeftButton, {}, beside.toPoint());
        QCOMPARE(chosen.size(), 2);
    }

    void the_first_light_looks_chosen_only_when_it_is()
    {
        for (const int axis : {0, 1}) {
            const QPoint at = middleOf(axis, 0).toPoint();
            curves->choose(axis, 9);
            const QImage before = quietPicture();
            curves->choose(axis, 0);
            const QRegion marked = difference(before, quietPicture());
            QVERIFY(marked.intersects(QRect(at - QPoint(4, 0), QSize(9, 1))));
        }
    }

    void a_hand_that_trembles_clicks_and_one_that_drags_does_not()
    {
        const QPointF at = middleOf(0, 30);
        drag(at, {0, 4});
        QCOMPARE(chosen, Places({{0, 30}}));
        drag(at, {2, -3});
        QCOMPARE(chosen.size(), 1);
        drag(at, {0, 5});
        QCOMPARE(chosen.size(), 1);
    }

    void a_double_click_opens_a_light()
    {
        QTest::mouseDClick(plot, Qt::LeftButton, {}, middleOf(1, 11).toPoint());
        QCOMPARE(opened, Places({{1, 11}}));
        QTest::mouseDClick(plot, Qt::LeftButton, {}, QPoint(1, 1));
        QCOMPARE(opened.size(), 1);
    }

    void the_keyboard_goes_along_the_lights_and_stops_at_the_ends()
    {
        plot->setFocus();
        const std::pair<int, Place> steps[] = {
            {Qt::Key_Right, {0, 1}},  {Qt::Key_Right, {0, 2}}, {Qt::Key_Left, {0, 1}},
            {Qt::Key_Left, {0, 0}},   {Qt::Key_Left, {0, 0}},  {Qt::Key_End, {0, 59}},
            {Qt::Key_Right, {0, 59}}, {Qt::Key_Down, {1, 39}}, {Qt::Key_Left, {1, 38}},
            {Qt::Key_Up, {0, 38}},    {Qt::Key_Down, {1, 38}}, {Qt::Key_Home, {1, 0}},
            {Qt::Key_End, {1, 39}},
        };
        for (const auto &[key, place] : steps) {
            press(key);
            QCOMPARE(chosen.last(), place);
            QCOMPARE(told.last(), place);
        }
        QCOMPARE(chosen.size(), qsizetype(std::size(steps)));
        QCOMPARE(opened, Places());
    }

    void enter_opens_the_chosen_light()
    {
        plot->setFocus();
        curves->choose(1, 5);
        press(Qt::Key_Return);
        curves->choose(0, 59);
        press(Qt::Key_Enter);
        QCOMPARE(opened, Places({{1, 5}, {0, 59}}));
        QCOMPARE(chosen, Places());
        // It is none for the window, which would press a button.
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(plot, &event);
        QVERIFY(event.isAccepted());
    }

    void with_fewer_lights_the_last_one_is_chosen()
    {
        plot->setFocus();
        curves->choose(0, 59);
        for (const int lights : {10, 1}) {
            curves->setCurves({healthy(lights), healthy(1)}, 100);
            press(Qt::Key_Return);
            QCOMPARE(opened.last(), Place(0, lights - 1));
        }
    }

    void other_keys_are_for_the_window()
    {
        for (const int key : {Qt::Key_Escape, Qt::Key_F1, Qt::Key_Space}) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QCoreApplication::sendEvent(plot, &event);
            QVERIFY(!event.isAccepted());
        }
        QCOMPARE(chosen, Places());
    }

    void the_keyboard_zooms_around_the_chosen_light()
    {
        plot->setFocus();
        curves->choose(0, 30);
        press(Qt::Key_Plus);
        QCOMPARE(view(0), Place(12, 48)); // six tenths
        QCOMPARE(view(1), Place(0, LightsY - 1));
        press(Qt::Key_Minus);
        QCOMPARE(view(0), Place(0, LightsX - 1));
        // No closer than some lights.
        for (int i = 0; i < 10; ++i)
            press(Qt::Key_Plus);
        QCOMPARE(view(0), Place(26, 34));
        press(Qt::Key_Minus);
        QCOMPARE(view(0), Place(23, 37));
        press(Qt::Key_0);
        QCOMPARE(view(0), Place(0, LightsX - 1));
        // Nor beyond the ends.
        press(Qt::Key_Minus);
        QCOMPARE(view(0), Place(0, LightsX - 1));
        press(Qt::Key_Home);
        press(Qt::Key_Plus);
        QCOMPARE(view(0), Place(0, 35));
        press(Qt::Key_End);
        QCOMPARE(view(0), Place(24, 59));
    }

    void a_place_is_shown_among_its_neighbours()
    {
        curves->zoomTo(0, 30, 31);
        QCOMPARE(view(0), Place(22, 39));
        curves->zoomTo(0, 20, 39);
        QCOMPARE(view(0), Place(0, 59));
        curves->zoomTo(1, 2, 3);
        QCOMPARE(view(1), Place(0, 16));
    }

    void a_light_that_is_chosen_elsewhere_comes_into_view()
    {
        curves->zoomTo(0, 2, 3);
        QCOMPARE(view(0), Place(0, 16));
        curves->choose(0, 10);
        QCOMPARE(view(0), Place(0, 16));
        curves->choose(0, 40);
        QCOMPARE(view(0), Place(32, 48));
        curves->choose(0, 59);
        QCOMPARE(view(0), Place(43, 59));
        QCOMPARE(view(1), Place(0, LightsY - 1));
    }

    void the_wheel_zooms_where_the_pointer_is()
    {
        const QPointF at = middleOf(0, 10);
        QWheelEvent closer(at, plot->mapToGlobal(at), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                           Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(plot, &closer);
        const Place seen = view(0);
        QVERIFY2(seen.second - seen.first < LightsX - 10, qPrintable(QString::number(seen.second)));
        QCOMPARE(pointAt(at), Place(0, 10));
        QCOMPARE(view(1), Place(0, LightsY - 1));
    }

    void dragging_moves_what_is_in_view_as_far_as_there_are_lights()
    {
        curves->zoomTo(0, 30, 31);
        const QPointF at = middleOf(0, 30);
        drag(at, middleOf(0, 35) - at);
        QCOMPARE(pointAt(middleOf(0, 30)), Place(0, 30));
        QCOMPARE(view(0), Place(17, 34));
        QCOMPARE(chosen, Places());
        for (int i = 0; i < 5; ++i)
            drag({60, 100}, {300, 0});
        QCOMPARE(view(0).first, 0);
        QCOMPARE(view(1), Place(0, LightsY - 1));
    }

    void other_colours_of_the_desktop_are_taken()
    {
        pointAt({1, 1});
        const QImage light = picture();
        QPalette dark;
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::white);
        plot->setPalette(dark);
        const QImage night = picture();
        QCOMPARE(night.pixelColor(1, 1), QColor(Qt::black));
        QVERIFY(light.pixelColor(1, 1) != night.pixelColor(1, 1));
        // Nothing is left in the dark.
        QVERIFY(axes().size() >= 8);
        for (const QObject *axis : axes()) {
            for (const char *pen : {"basePen", "tickPen", "subTickPen"})
                QCOMPARE(axis->property(pen).value<QPen>().color(), QColor(Qt::white));
            for (const char *color : {"tickLabelColor", "labelColor"})
                QCOMPARE(axis->property(color).value<QColor>(), QColor(Qt::white));
        }
        // Words are bright and stand on black, with a frame around them.
        pointAt(middleOf(0, 20));
        const QImage spoken = picture();
        const QImage words =
            spoken.copy(difference(spoken, night).boundingRect().adjusted(2, 2, -2, -2));
        int brightest = 0;
        for (int x = 0; x < words.width(); ++x) {
            for (int y = 0; y < words.height(); ++y)
                brightest = std::max(brightest, words.pixelColor(x, y).lightness());
        }
        QVERIFY2(brightest > 180, qPrintable(QString::number(brightest)));
        QVERIFY(pixelsOf(words, Qt::black) > words.width() * words.height() / 2);
    }

    void every_curve_stands_out_from_its_ground_data()
    {
        QTest::addColumn<QColor>("base");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(35, 35, 35) << QColor(Qt::white);
    }
    void every_curve_stands_out_from_its_ground()
    {
        constexpr qreal LeastContrast = 3; // of lines
        QFETCH(const QColor, base);
        QFETCH(const QColor, text);
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, text);
        plot->setPalette(palette);
        QSet<QRgb> colors;
        for (const QObject *graph : plot->findChildren<QObject *>()) {
            if (!graph->inherits("QCPGraph") || graph->property("lineStyle").toInt() == 0)
                continue;
            const QColor color = graph->property("pen").value<QPen>().color();
            QVERIFY2(readable::contrast(color, base) >= LeastContrast, qPrintable(color.name()));
            colors += color.rgb();
        }
        QCOMPARE(colors.size(), 3); // of levels, of what is expected, and of those before
        AxisCurves one = healthy(LightsX);
        one.bad = {10};
        const QImage before = quietPicture();
        curves->setCurves({one, healthy(LightsY)}, 100);
        const QImage marked = quietPicture();
        const QRect mark = difference(marked, before).boundingRect();
        QVERIFY(!mark.isEmpty());
        qreal most = 1;
        for (int x = mark.left(); x <= mark.right(); ++x) {
            for (int y = mark.top(); y <= mark.bottom(); ++y) {
                if (marked.pixel(x, y) != before.pixel(x, y))
                    most = std::max(most, readable::contrast(marked.pixelColor(x, y), base));
            }
        }
        QVERIFY2(most >= LeastContrast, qPrintable(QString::number(most)));
    }

    void another_font_of_the_desktop_is_taken()
    {
        QFont larger = plot->font();
        larger.setPointSize(larger.pointSize() + 7);
        plot->setFont(larger);
        for (const QObject *axis : axes()) {
            for (const char *font : {"tickLabelFont", "labelFont"})
                QCOMPARE(axis->property(font).value<QFont>().pointSize(), larger.pointSize());
        }
    }
};

QTEST_MAIN(TestPlottedCurves)
#include "tst_plottedcurves.moc"
