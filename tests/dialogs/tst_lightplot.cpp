// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/lightplot.h"
#include "tests/support/plainlights.h"

#include <QGuiApplication>
#include <QTest>

#include <algorithm>
#include <functional>
#include <random>

using namespace Qt::StringLiterals;
using Axis = LightPlot::Axis;
using Light = LightPlot::Light;
using Levels = std::vector<std::pair<int, int>>;

namespace {

const QColor Green(Qt::darkGreen);
const QColor Red(Qt::darkRed);
const QColor White(Qt::white);

// A page as it comes from the device, up to 27 pairs; what is not given is 0.
command::ScanPage page(UCHAR sub, int first, const Levels &pairs)
{
    Frame frame{0xFC, 0xA5, sub, 0x00, 0x00, UCHAR(first % 256), UCHAR(first / 256)};
    for (size_t k = 0; k < pairs.size() && k < 27; ++k) {
        frame[7 + 2 * k] = UCHAR(pairs[k].first);
        frame[8 + 2 * k] = UCHAR(pairs[k].second);
    }
    return command::ScanPage::decode(frame).value();
}

// All pages of both axes; true if the X scan was complete with the last page and not before.
bool scan(LightPlot &plot, const Levels &x, const Levels &y)
{
    for (size_t first = 0; first < y.size(); first += 27)
        plot.storeY(page(0x82, int(first), Levels(y.begin() + qptrdiff(first), y.end())));
    bool complete = false;
    for (size_t first = 0; first < x.size(); first += 27) {
        if (complete)
            return false;
        complete =
            plot.storeX(page(0x81, int(first), Levels(x.begin() + qptrdiff(first), x.end())));
    }
    return complete;
}

Levels levels(size_t count, const std::function<std::pair<int, int>(int)> &level)
{
    Levels result;
    for (size_t i = 0; i < count; ++i)
        result.push_back(level(int(i)));
    return result;
}

QImage image(LightPlot &plot)
{
    return plot.picture().toImage();
}

// Where two pictures of one size differ, for the message of a failure.
QByteArray firstDifference(const QImage &shown, const QImage &expected)
{
    if (shown.size() != expected.size())
        return "sizes differ";
    if (shown == expected)
        return "none";
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            if (shown.pixelColor(x, y) != expected.pixelColor(x, y))
                return QByteArray::number(x) + ',' + QByteArray::number(y) + ' ' +
                       shown.pixelColor(x, y).name().toLatin1() + " instead of " +
                       expected.pixelColor(x, y).name().toLatin1();
        }
    }
    return "none";
}

} // namespace

class TestLightPlot : public QObject
{
    Q_OBJECT

private slots:
    void pixels_of_two_lights_a_side()
    {
        LightPlot plot;
        plot.setScreen({600, 400}, 1);
        plot.setCounts(2, 2);
        // X: lights at x = 0 and 300; signal 200 and 100, gain 20 and 30, five pixels a step.
        QVERIFY(plot.storeX(page(0x81, 0, {{200, 20}, {100, 30}})));
        // Y: lights at y = 400 and 200; signal 50 and 150, gain 60 and 60.
        plot.storeY(page(0x82, 0, {{50, 60}, {150, 60}}));
        const QImage shown = image(plot);
        QCOMPARE(shown.size(), QSize(600, 400));

        // X signal: from (0, 200) to (300, 300), then to (400, 300), three pixels wide.
        QCOMPARE(shown.pixelColor(240, 280), Green);
        for (const int y : {299, 300, 301})
            QCOMPARE(shown.pixelColor(350, y), Green);
        for (const int y : {297, 303})
            QCOMPARE(shown.pixelColor(350, y), White);
        QCOMPARE(shown.pixelColor(399, 300), Green);
        QCOMPARE(shown.pixelColor(404, 300), White);
        // X gain: from (0, 300) to (300, 250), then to (400, 250), one pixel wide.
        QCOMPARE(shown.pixelColor(240, 260), Green);
        QCOMPARE(shown.pixelColor(350, 250), Green);
        QCOMPARE(shown.pixelColor(350, 249), White);
        QCOMPARE(shown.pixelColor(350, 251), White);
        QCOMPARE(shown.pixelColor(400, 250), Green);
        QCOMPARE(shown.pixelColor(401, 250), White);
        // Y signal: from (50, 400) to (150, 200), then to (150, 100).
        QCOMPARE(shown.pixelColor(100, 300), Red);
        for (const int x : {149, 150, 151})
            QCOMPARE(shown.pixelColor(x, 150), Red);
        for (const int x : {147, 153})
            QCOMPARE(shown.pixelColor(x, 150), White);
        QCOMPARE(shown.pixelColor(150, 95), White);
        // Y gain: from (300, 400) to (300, 200), then to (300, 100).
        QCOMPARE(shown.pixelColor(300, 350), Red);
        QCOMPARE(shown.pixelColor(300, 150), Red);
        QCOMPARE(shown.pixelColor(299, 150), White);
        QCOMPARE(shown.pixelColor(301, 150), White);
        QCOMPARE(shown.pixelColor(300, 98), White);
        // Y is drawn over X.
        QCOMPARE(shown.pixelColor(300, 250), Red);
        QCOMPARE(shown.pixelColor(599, 0), White);
    }

    void at_1920_with_96_lights_a_light_stands_every_20_pixels_and_a_bar_is_20_wide()
    {
        LightPlot plot;
        plot.setScreen({1920, 1080}, 1);
        plot.setCounts(96, 54);
        QVERIFY(scan(plot, levels(96, [](int i) { return std::pair(i == 50 ? 200 : 100, 0); }),
                     levels(54, [](int) { return std::pair(0, 0); })));
        // The peak of light 50.
        QImage shown = image(plot);
        QCOMPARE(shown.pixelColor(1000, 880), Green);
        QCOMPARE(shown.pixelColor(980, 880), White);
        QCOMPARE(shown.pixelColor(1020, 880), White);
        QCOMPARE(shown.pixelColor(1010, 1000), White);
        // Between the outlines, which are as wide as the pen, lie 20 pixels.
        plot.choose(Light{Axis::X, 50}, u"1"_s, u"2"_s);
        shown = image(plot);
        for (int x = 999; x <= 1021; ++x)
            QCOMPARE(shown.pixelColor(x, 1060), Green);
        QCOMPARE(shown.pixelColor(998, 1060), White);
        QCOMPARE(shown.pixelColor(1022, 1060), White);
        QCOMPARE(shown.pixelColor(1010, 1079), Green);
        QCOMPARE(shown.pixelColor(1010, 878), White);
    }

    void a_chosen_y_light_has_its_bar_above_its_point()
    {
        LightPlot plot;
        plot.setScreen({600, 400}, 1);
        plot.setCounts(1, 10);
        scan(plot, {{0, 0}}, levels(10, [](int) { return std::pair(30, 0); }));
        plot.choose(Light{Axis::Y, 2}, {}, {});
        const QImage shown = image(plot);
        // Light 2 at y = 400 - 80 = 320: from 280 to 320, 30 wide.
        QCOMPARE(shown.pixelColor(15, 278), White);
        QCOMPARE(shown.pixelColor(15, 280), Red);
        QCOMPARE(shown.pixelColor(15, 300), Red);
        QCOMPARE(shown.pixelColor(15, 320), Red);
        QCOMPARE(shown.pixelColor(15, 323), White);
    }

    void the_picture_equals_the_plain_order_of_drawing_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("lightsX");
        QTest::addColumn<int>("lightsY");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("direction");
        QTest::addColumn<int>("number");
        const QSize common(1920, 1080);
        const auto row = [](const char *name, QSize size, int x, int y, const char *kind,
                            const char *direction, int number) {
            QTest::newRow(name) << size << x << y << QString::fromLatin1(kind)
                                << QString::fromLatin1(direction) << number;
        };
        row("nothing chosen", common, 96, 54, "healthy", "", -1);
        row("the first X light", common, 96, 54, "healthy", "X", 0);
        row("the last X light labelled on its right", common, 96, 54, "healthy", "X", 62);
        row("the first X light labelled on its left", common, 96, 54, "healthy", "X", 63);
        row("the last X light", common, 96, 54, "healthy", "X", 95);
        row("the first Y light", common, 96, 54, "healthy", "Y", 0);
        row("the last Y light labelled below", common, 96, 54, "healthy", "Y", 17);
        row("the first Y light labelled above", common, 96, 54, "healthy", "Y", 18);
        row("the last Y light", common, 96, 54, "healthy", "Y", 53);
        row("all levels 0", common, 96, 54, "dead", "X", 10);
        row("all levels 255", common, 96, 54, "full", "X", 10);
        row("all levels 255, Y", common, 96, 54, "full", "Y", 10);
        row("one light a side", common, 1, 1, "full", "X", 0);
        row("one light a side, Y", common, 1, 1, "full", "Y", 0);
        row("fewer Y lights", common, 120, 2, "noise", "Y", 1);
        row("as many as there can be", common, 500, 350, "noise", "X", 499);
        row("as many as there can be, Y", common, 500, 350, "noise", "Y", 349);
        row("more than are kept", common, 600, 400, "noise", "X", 499);
        row("far more than pixels", common, 65535, 65535, "noise", "Y", 200);
        row("not one pixel a light", {300, 200}, 500, 350, "noise", "X", 33);
        row("upright", {800, 1280}, 97, 53, "noise", "Y", 30);
        row("4K", {3840, 2160}, 251, 143, "noise", "X", 200);
    }
    void the_picture_equals_the_plain_order_of_drawing()
    {
        QFETCH(const QSize, size);
        QFETCH(const int, lightsX);
        QFETCH(const int, lightsY);
        QFETCH(const QString, kind);
        QFETCH(const QString, direction);
        QFETCH(const int, number);
        std::minstd_rand random(7);
        const auto level = [&](int i) {
            if (kind == u"dead"_s)
                return std::pair(0, 0);
            if (kind == u"full"_s)
                return std::pair(255, 255);
            if (kind == u"noise"_s)
                return std::pair(int(random() % 256), int(random() % 256));
            return std::pair(200 + i % 7, 30 + i % 3);
        };
        const PlainLights plain{size.width(),
                                size.height(),
                                lightsX,
                                lightsY,
                                levels(size_t(std::min(lightsX, 500)), level),
                                levels(size_t(std::min(lightsY, 350)), level),
                                direction,
                                number,
                                u"3980"_s,
                                u"255"_s};
        LightPlot plot;
        plot.setScreen(size, 1);
        plot.setCounts(lightsX, lightsY);
        QVERIFY(scan(plot, plain.x, plain.y));
        if (number >= 0)
            plot.choose(Light{direction == u"X"_s ? Axis::X : Axis::Y, number}, u"3980"_s,
                        u"255"_s);
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
    }

    void without_lights_on_an_axis_the_picture_is_white_data()
    {
        QTest::addColumn<int>("lightsX");
        QTest::addColumn<int>("lightsY");
        QTest::newRow("none") << 0 << 0;
        QTest::newRow("no X") << 0 << 5;
        QTest::newRow("no Y") << 5 << 0;
    }
    void without_lights_on_an_axis_the_picture_is_white()
    {
        QFETCH(const int, lightsX);
        QFETCH(const int, lightsY);
        LightPlot plot;
        plot.setScreen({300, 200}, 1);
        plot.setCounts(5, 5);
        scan(plot, levels(5, [](int) { return std::pair(99, 9); }),
             levels(5, [](int) { return std::pair(99, 9); }));
        plot.setCounts(lightsX, lightsY);
        QImage white(300, 200, QImage::Format_RGB32);
        white.fill(Qt::white);
        QCOMPARE(firstDifference(image(plot), white), QByteArray("none"));
    }

    void an_x_page_at_81_of_100_lights_fills_81_to_99_and_is_the_last()
    {
        PlainLights plain{1000, 600, 100, 1, Levels(100), Levels(1)};
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(100, 1);
        const Levels sent = levels(27, [](int k) { return std::pair(100 + k, 50 + k); });
        QVERIFY(plot.storeX(page(0x81, 81, sent)));
        std::copy(sent.begin(), sent.begin() + 19, plain.x.begin() + 81);
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
        // What the page held behind light 99 went nowhere.
        plot.setCounts(110, 1);
        plain.XTotal = 110;
        plain.x.resize(110);
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
    }

    void an_x_page_that_does_not_reach_the_last_light_completes_nothing()
    {
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(100, 1);
        QVERIFY(!plot.storeX(page(0x81, 0, {{1, 1}})));
        QVERIFY(!plot.storeX(page(0x81, 54, {{1, 1}})));
        QVERIFY(!plot.storeX(page(0x81, 72, {{1, 1}})));
        QVERIFY(plot.storeX(page(0x81, 73, {{1, 1}})));
        QVERIFY(plot.storeX(page(0x81, 99, {{1, 1}})));
        QVERIFY(!plot.storeX(page(0x81, 100, {{1, 1}})));
    }

    void light_499_is_the_last_that_is_kept()
    {
        PlainLights plain{1000, 600, 600, 400, Levels(500), Levels(350)};
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(600, 400);
        const Levels sent = levels(27, [](int k) { return std::pair(100 + k, 50 + k); });
        QVERIFY(!plot.storeX(page(0x81, 472, sent)));
        QVERIFY(plot.storeX(page(0x81, 490, sent)));
        plot.storeY(page(0x82, 340, sent));
        std::copy(sent.begin(), sent.begin() + 18, plain.x.begin() + 472);
        std::copy(sent.begin(), sent.begin() + 10, plain.x.begin() + 490);
        std::copy(sent.begin(), sent.begin() + 10, plain.y.begin() + 340);
        for (const int first : {500, 513, 600, 65535}) {
            QVERIFY(!plot.storeX(page(0x81, first, sent)));
            plot.storeY(page(0x82, first - 150, sent));
        }
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
    }

    void a_y_page_is_kept_whole_whatever_the_count()
    {
        PlainLights plain{1000, 600, 1, 10, Levels(1), Levels(10)};
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(1, 10);
        const Levels sent = levels(27, [](int k) { return std::pair(100 + k, 50 + k); });
        plot.storeY(page(0x82, 5, sent));
        std::copy(sent.begin(), sent.begin() + 5, plain.y.begin() + 5);
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
        plot.setCounts(1, 32);
        plain.YTotal = 32;
        plain.y.resize(32);
        std::copy(sent.begin(), sent.end(), plain.y.begin() + 5);
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
    }

    void pages_of_an_axis_without_lights_are_ignored()
    {
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        QVERIFY(!plot.storeX(page(0x81, 0, {{200, 20}, {200, 20}})));
        plot.storeY(page(0x82, 0, {{200, 20}, {200, 20}}));
        plot.setCounts(2, 2);
        const PlainLights plain{1000, 600, 2, 2, Levels(2), Levels(2)};
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
    }

    void a_device_that_is_forgotten_leaves_no_level()
    {
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(30, 20);
        const auto some = [](int i) { return std::pair(100 + i, 50 + i); };
        QVERIFY(scan(plot, levels(30, some), levels(20, some)));
        plot.forget();
        QImage white(1000, 600, QImage::Format_RGB32);
        white.fill(Qt::white);
        QCOMPARE(firstDifference(image(plot), white), QByteArray("none"));
        plot.setCounts(30, 20);
        const PlainLights plain{1000, 600, 30, 20, Levels(30), Levels(20)};
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
    }

    void another_screen_shows_the_same_levels_in_their_new_places()
    {
        PlainLights plain{1920,
                          1080,
                          30,
                          20,
                          levels(30, [](int i) { return std::pair(100 + 3 * i, i); }),
                          levels(20, [](int i) { return std::pair(200 - 3 * i, 2 * i); }),
                          u"X"_s,
                          7,
                          u"1"_s,
                          u"2"_s};
        LightPlot plot;
        plot.setScreen({1920, 1080}, 1);
        plot.setCounts(30, 20);
        QVERIFY(scan(plot, plain.x, plain.y));
        plot.choose(Light{Axis::X, 7}, u"1"_s, u"2"_s);
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
        for (const QSize size : {QSize(1080, 1920), QSize(1280, 800)}) {
            plot.setScreen(size, 1);
            plain.W = size.width();
            plain.H = size.height();
            QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
        }
    }

    void other_counts_put_the_lights_where_they_belong_by_now()
    {
        PlainLights plain{1000,
                          600,
                          10,
                          10,
                          levels(10, [](int i) { return std::pair(100 + i, i); }),
                          levels(10, [](int i) { return std::pair(200 - i, i); })};
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(10, 10);
        QVERIFY(scan(plot, plain.x, plain.y));
        plot.setCounts(20, 5);
        plain.XTotal = 20;
        plain.x.resize(20);
        plain.YTotal = 5;
        plain.y.resize(5);
        QCOMPARE(firstDifference(image(plot), plain.picture()), QByteArray("none"));
    }

    void lines_stay_as_they_are_at_any_scaling_and_only_the_label_grows()
    {
        const auto shown = [](qreal scale, std::optional<Light> light) {
            LightPlot plot;
            plot.setScreen({1500, 900}, scale);
            plot.setCounts(10, 10);
            scan(plot, levels(10, [](int) { return std::pair(20, 10); }),
                 levels(10, [](int) { return std::pair(20, 10); }));
            plot.choose(light, u"3980"_s, u"50"_s);
            return image(plot);
        };
        QCOMPARE(firstDifference(shown(1.5, {}), shown(1, {})), QByteArray("none"));
        // Light 3 of 10: its bar ends at 600, so the label begins at 610 or, grown, at 615; its
        // foot is at 800 or at 750.
        const auto ink = [](const QImage &picture) {
            QRect box;
            for (int y = 700; y < 830; ++y) {
                for (int x = 604; x < 1000; ++x) {
                    if (picture.pixelColor(x, y) != White)
                        box |= QRect(x, y, 1, 1);
                }
            }
            return box;
        };
        const QRect small = ink(shown(1, Light{Axis::X, 3}));
        const QRect large = ink(shown(1.5, Light{Axis::X, 3}));
        QVERIFY(small.left() >= 610 && small.left() <= 612);
        QCOMPARE(small.bottom(), 799);
        QVERIFY(large.left() >= 615 && large.left() <= 618);
        QVERIFY(qAbs(large.bottom() - 749) <= 1);
        QVERIFY(large.width() > small.width() * 13 / 10);
    }

    void a_label_on_its_left_ends_before_the_bar_and_the_screen()
    {
        LightPlot plot;
        plot.setScreen({1920, 1080}, 1);
        plot.setCounts(500, 350);
        scan(plot, levels(500, [](int) { return std::pair(0, 0); }),
             levels(350, [](int) { return std::pair(0, 0); }));
        plot.choose(Light{Axis::X, 499}, u"3980"_s, u"255"_s);
        const QImage shown = image(plot);
        int inked = 0;
        for (int y = 960; y < 985; ++y) {
            QCOMPARE(shown.pixelColor(1919, y), White);
            QCOMPARE(shown.pixelColor(1759, y), White);
            for (int x = 1760; x < 1919; ++x)
                inked += shown.pixelColor(x, y) != White ? 1 : 0;
        }
        QVERIFY(inked > 100);
    }

    void a_point_near_an_edge_names_a_light_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QString>("light");
        // 1920 x 1080 with 96 and 54 lights
        QTest::newRow("left strip") << QPoint(100, 780) << u"Y14"_s;   // 300 * 54 / 1081
        QTest::newRow("bottom strip") << QPoint(100, 1030) << u"X4"_s; // 100 * 96 / 1921
        QTest::newRow("neither") << QPoint(400, 680) << QString();
        // 1061 * 54 / 1081 = 53.0009 and 1060 * 54 / 1081 = 52.95, and likewise across.
        QTest::newRow("the first row of Y53") << QPoint(100, 19) << u"Y53"_s;
        QTest::newRow("the last row of Y52") << QPoint(100, 20) << u"Y52"_s;
        QTest::newRow("the first column of X95") << QPoint(1901, 1000) << u"X95"_s;
        QTest::newRow("the last column of X94") << QPoint(1900, 1000) << u"X94"_s;
        QTest::newRow("left strip's last column") << QPoint(249, 400) << u"Y33"_s;
        QTest::newRow("right of the left strip") << QPoint(250, 400) << QString();
        QTest::newRow("bottom strip's first row") << QPoint(1000, 831) << u"X49"_s;
        QTest::newRow("above the bottom strip") << QPoint(1000, 830) << QString();
        QTest::newRow("on the diagonal") << QPoint(200, 880) << u"Y9"_s;
        QTest::newRow("below the diagonal") << QPoint(200, 881) << u"X9"_s;
        QTest::newRow("the diagonal's end") << QPoint(249, 830) << u"Y12"_s;
        QTest::newRow("behind the diagonal's end") << QPoint(250, 830) << QString();
        QTest::newRow("top left") << QPoint(0, 0) << u"Y53"_s;
        QTest::newRow("bottom left") << QPoint(0, 1079) << u"Y0"_s;
        QTest::newRow("beside it") << QPoint(2, 1079) << u"X0"_s;
        QTest::newRow("bottom right") << QPoint(1919, 1079) << u"X95"_s;
        QTest::newRow("outside, left") << QPoint(-1, 500) << QString();
        QTest::newRow("outside, above") << QPoint(100, -1) << QString();
        QTest::newRow("outside, below") << QPoint(100, 1080) << QString();
        QTest::newRow("outside, right") << QPoint(1920, 1000) << QString();
    }
    void a_point_near_an_edge_names_a_light()
    {
        QFETCH(const QPoint, point);
        QFETCH(const QString, light);
        LightPlot plot;
        plot.setScreen({1920, 1080}, 1);
        plot.setCounts(96, 54);
        const auto found = plot.lightAt(point);
        QCOMPARE(found ? (found->axis == Axis::X ? u"X%1"_s : u"Y%1"_s).arg(found->number)
                       : QString(),
                 light);
    }

    void nothing_is_drawn_again_unless_something_has_changed()
    {
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(10, 10);
        const Levels some = levels(10, [](int i) { return std::pair(i, i); });
        scan(plot, some, some);
        plot.choose(Light{Axis::X, 3}, u"1"_s, u"2"_s);
        const qint64 key = plot.picture().cacheKey();
        QCOMPARE(plot.picture().cacheKey(), key);
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(10, 10);
        scan(plot, some, some);
        plot.choose(Light{Axis::X, 3}, u"1"_s, u"2"_s);
        QCOMPARE(plot.picture().cacheKey(), key);

        const std::function<void()> changes[] = {
            [&] {
                plot.setScreen({1000, 601}, 1);
            },
            [&] {
                plot.setScreen({1000, 601}, 2);
            },
            [&] { plot.setCounts(11, 10); },
            [&] { plot.setCounts(11, 11); },
            [&] {
                plot.storeX(page(0x81, 10, {{1, 0}}));
            },
            [&] {
                plot.storeY(page(0x82, 10, {{0, 1}}));
            },
            [&] {
                plot.choose(Light{Axis::Y, 3}, u"1"_s, u"2"_s);
            },
            [&] {
                plot.choose(Light{Axis::Y, 3}, u"9"_s, u"2"_s);
            },
            [&] {
                plot.choose(Light{Axis::Y, 3}, u"9"_s, u"9"_s);
            },
            [&] { plot.choose({}, u"9"_s, u"9"_s); },
        };
        qint64 before = plot.picture().cacheKey();
        for (const auto &change : changes) {
            change();
            QVERIFY(plot.picture().cacheKey() != before);
            before = plot.picture().cacheKey();
        }
    }

    void a_picture_that_was_dropped_is_drawn_again_when_it_is_wanted()
    {
        LightPlot plot;
        plot.setScreen({1000, 600}, 1);
        plot.setCounts(10, 10);
        const Levels some = levels(10, [](int i) { return std::pair(100 + i, i); });
        QVERIFY(scan(plot, some, some));
        const QImage before = image(plot);
        plot.dropPicture();
        QCOMPARE(firstDifference(image(plot), before), QByteArray("none"));
    }

    void without_a_screen_there_is_no_picture()
    {
        LightPlot plot;
        plot.setCounts(3, 3);
        QVERIFY(plot.picture().isNull());
    }
};

QTEST_MAIN(TestLightPlot)
#include "tst_lightplot.moc"
