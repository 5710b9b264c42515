// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/signalplot.h"
#include "tests/support/plainplot.h"

#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using Axis = SignalPlot::Axis;

namespace {

struct Curve
{
    Axis axis;
    QList<QPoint> points;
};

std::vector<SignalPlot::Curve> spans(const QList<Curve> &curves)
{
    std::vector<SignalPlot::Curve> result;
    for (const Curve &curve : curves)
        result.push_back({curve.axis, std::span(curve.points.begin(), curve.points.end())});
    return result;
}

// Points over the whole width, as high and low as noise takes them.
QList<QPoint> noisy(int count, unsigned seed)
{
    QList<QPoint> points;
    for (int i = 0; i < count; ++i) {
        seed = seed * 1103515245U + 12345U;
        points.append({(i + 1) * 870 / count, int((seed >> 16) % 491)});
    }
    return points;
}

// Short lines of every direction, and some that are a little longer.
QList<QPoint> allDirections()
{
    QList<QPoint> points;
    for (int right = 0; right <= 33; ++right) {
        for (int down = -33; down <= 33; ++down) {
            const QPoint begin(20 + 25 * right, 40 + 6 * (down + 33));
            points += {begin, begin + QPoint(right, down)};
        }
    }
    return points;
}

QList<QPoint> flat(int count, int y)
{
    QList<QPoint> points;
    for (int i = 0; i < count; ++i)
        points.append({(i + 1) * 870 / count, y});
    return points;
}

} // namespace

class TestSignalPlot : public QObject
{
    Q_OBJECT

private slots:
    void the_picture_is_the_one_drawn_point_by_point_data()
    {
        QTest::addColumn<QList<Curve>>("curves");
        QTest::addColumn<int>("ratio");
        const QList<Curve> all = {{Axis::X, noisy(500, 1)}, {Axis::X, flat(500, 0)},
                                  {Axis::X, noisy(500, 2)}, {Axis::Y, noisy(350, 3)},
                                  {Axis::Y, flat(350, 0)},  {Axis::Y, noisy(350, 4)}};
        const QList<Curve> level = {{Axis::X, flat(500, 200)}, {Axis::Y, flat(350, 201)}};
        QTest::newRow("none") << QList<Curve>() << 1;
        QTest::newRow("no points") << QList<Curve>{{Axis::X, {}}} << 1;
        QTest::newRow("one point") << QList<Curve>{{Axis::X, {{870, 36}}}} << 1;
        QTest::newRow("two points at one place")
            << QList<Curve>{{Axis::Y, {{100, 100}, {100, 100}}}} << 1;
        QTest::newRow("corners")
            << QList<Curve>{{Axis::X, {{0, 0}, {880, 490}, {0, 490}, {880, 0}, {879, 489}}}} << 1;
        QTest::newRow("far outside")
            << QList<Curve>{{Axis::Y, {{870, 300}, {304500, 400}, {1740, -40}}}} << 1;
        QTest::newRow("all directions") << QList<Curve>{{Axis::X, allDirections()}} << 1;
        QTest::newRow("levels side by side") << level << 1;
        QTest::newRow("all curves of the largest frame") << all << 1;
        QTest::newRow("all curves, twice the pixels") << all << 2;
        QTest::newRow("levels side by side, three times the pixels") << level << 3;
    }
    void the_picture_is_the_one_drawn_point_by_point()
    {
        QFETCH(const QList<Curve>, curves);
        QFETCH(const int, ratio);
        QPixmap plain(SignalPlot::Size * ratio);
        plain.setDevicePixelRatio(ratio);
        QImage fast = SignalPlot::makePicture(ratio);
        drawPlainly(plain, spans(curves), 1000, 650);
        SignalPlot plot;
        plot.draw(fast, spans(curves), 1000, 650);
        QCOMPARE(fast, plain.toImage().convertToFormat(QImage::Format_RGB32));
        // And with what was kept the first time.
        plot.draw(fast, spans(curves), 1000, 650);
        QCOMPARE(fast, plain.toImage().convertToFormat(QImage::Format_RGB32));
    }

    void a_change_of_the_ratio_draws_the_numbers_anew()
    {
        const QList<Curve> curves = {{Axis::X, noisy(20, 7)}};
        SignalPlot plot;
        for (const int ratio : {1, 2, 1}) {
            QPixmap plain(SignalPlot::Size * ratio);
            plain.setDevicePixelRatio(ratio);
            QImage fast = SignalPlot::makePicture(ratio);
            drawPlainly(plain, spans(curves), 900, 100);
            plot.draw(fast, spans(curves), 900, 100);
            QCOMPARE(fast, plain.toImage().convertToFormat(QImage::Format_RGB32));
        }
    }

    void numbers_are_of_six_points_in_the_default_font()
    {
        QCOMPARE(SignalPlot::numberFont().pointSize(), 6);
        QCOMPARE(SignalPlot::numberFont().family(), QFont().family());
    }

    void the_limits_are_dashed_and_black_over_the_whole_width()
    {
        QImage image = SignalPlot::makePicture(1);
        SignalPlot().draw(image, {}, 1000, 650);
        for (int y = 0; y < 490; ++y) {
            int black = 0;
            for (int x = 0; x < 880; ++x) {
                const QColor colour = image.pixelColor(x, y);
                QVERIFY(colour == QColor(Qt::black) || colour == QColor(Qt::white));
                if (colour == QColor(Qt::black))
                    ++black;
            }
            // 1000 lies in row 45, 650 in row 201; dashes of four and gaps of two pixels.
            if (y == 45 || y == 201) {
                for (int x = 0; x < 876; x += 6) {
                    QCOMPARE(image.pixelColor(x, y), QColor(Qt::black));
                    QCOMPARE(image.pixelColor(x + 3, y), QColor(Qt::black));
                    QCOMPARE(image.pixelColor(x + 4, y), QColor(Qt::white));
                    QCOMPARE(image.pixelColor(x + 5, y), QColor(Qt::white));
                }
            } else {
                QCOMPARE(black, 0);
            }
        }
    }

    void rows_are_truncated_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("row");
        QTest::newRow("0") << 0 << 490;
        QTest::newRow("4, the smallest level") << 4 << 489;
        QTest::newRow("2") << 2 << 490;
        QTest::newRow("650") << 650 << 201;
        QTest::newRow("1000") << 1000 << 45;
        QTest::newRow("1020, the largest level") << 1020 << 36;
        QTest::newRow("1100") << 1100 << 0;
    }
    void rows_are_truncated()
    {
        QFETCH(const int, level);
        QFETCH(const int, row);
        QCOMPARE(SignalPlot::row(level), row);
    }

    void the_scale_has_ticks_every_44_pixels_and_labels_beside_them()
    {
        QPixmap background(SignalPlot::BackgroundSize);
        background.fill(Qt::white);
        QFont font(u"Tahoma"_s, 8);
        SignalPlot::drawScale(background, font);

        QPixmap expected(950, 535);
        expected.fill(Qt::white);
        QPainter painter(&expected);
        painter.setFont(font);
        painter.drawLine(35, 25, 35, 515);
        painter.drawLine(35, 515, 935, 515);
        const QStringList labels = {u"1100"_s, u"1000"_s, u"900"_s, u"800"_s, u"700"_s, u"600"_s,
                                    u"500"_s,  u"400"_s,  u"300"_s, u"200"_s, u"100"_s};
        for (int i = 0; i <= 10; ++i) {
            painter.drawLine(35, 25 + 44 * i, 40, 25 + 44 * i);
            painter.drawLine(35, 47 + 44 * i, 37, 47 + 44 * i);
            painter.drawText(8, 30 + 44 * i, labels.at(i));
        }
        painter.end();
        const QImage image = background.toImage();
        QCOMPARE(image, expected.toImage());

        const QColor black(Qt::black);
        const QColor white(Qt::white);
        for (int y = 25; y <= 515; ++y)
            QCOMPARE(image.pixelColor(35, y), black);
        QCOMPARE(image.pixelColor(35, 516), white);
        for (int x = 35; x <= 935; ++x)
            QCOMPARE(image.pixelColor(x, 515), black);
        QCOMPARE(image.pixelColor(936, 515), white);
        QCOMPARE(image.pixelColor(40, 465), black); // i = 10: major
        QCOMPARE(image.pixelColor(41, 465), white);
        QCOMPARE(image.pixelColor(37, 487), black); // and minor
        QCOMPARE(image.pixelColor(38, 487), white);
        QCOMPARE(image.pixelColor(40, 509), white); // no eleventh
        // The label 0 would stand at (8, 514).
        for (int y = 500; y < 520; ++y) {
            for (int x = 0; x < 35; ++x)
                QCOMPARE(image.pixelColor(x, y), white);
        }
    }
};

QTEST_MAIN(TestSignalPlot)
#include "tst_signalplot.moc"
