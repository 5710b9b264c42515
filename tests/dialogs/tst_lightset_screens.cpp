// SPDX-License-Identifier: GPL-3.0-or-later

// Each function here belongs to a desktop of its own: CMakeLists.txt names it and the screens.

#include "dialogs/lightset_dlg.h"
#include "tests/support/hand.h"
#include "tests/support/photograph.h"
#include "tests/support/plainlights.h"

#include <QApplication>
#include <QGroupBox>
#include <QLineEdit>
#include <QPainter>
#include <QProcess>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int LightsX = 96;
constexpr int LightsY = 54;

int adcX(int i)
{
    return 240 - 2 * i;
}
int adcY(int i)
{
    return 120 + 2 * i;
}

void sendScans(LightSet_dlg &screen)
{
    UCHAR counts[64] = {0xFC, 0xA5, 0x80, 0x00, 0x00, LightsX, 0, LightsY, 0};
    screen.DoRecv03(counts);
    for (int first = 0; first < LightsY; first += 27) {
        UCHAR page[64] = {0xFC, 0xA5, 0x82, 0x00, 0x00, UCHAR(first)};
        for (int k = 0; k < 27; ++k) {
            page[7 + 2 * k] = UCHAR(adcY(first + k));
            page[8 + 2 * k] = 20;
        }
        screen.DoRecv03(page);
    }
    for (int first = 0; first < LightsX; first += 27) {
        UCHAR page[64] = {0xFC, 0xA5, 0x81, 0x00, 0x00, UCHAR(first)};
        for (int k = 0; k < 27; ++k) {
            page[7 + 2 * k] = UCHAR(adcX(first + k));
            page[8 + 2 * k] = 30;
        }
        screen.DoRecv03(page);
    }
}

PlainLights plainFor(QSize size)
{
    PlainLights plain{size.width(), size.height(), LightsX, LightsY, {}, {}};
    for (int i = 0; i < LightsX; ++i)
        plain.x.emplace_back(adcX(i), 30);
    for (int i = 0; i < LightsY; ++i)
        plain.y.emplace_back(adcY(i), 20);
    return plain;
}

// The panel, in logical pixels, lies over the picture.
QImage withoutPanel(QImage picture, qreal scale)
{
    const QRectF panel(280 * scale - 1, 50 * scale - 1, 501 * scale + 2, 471 * scale + 2);
    QPainter(&picture).fillRect(panel.toAlignedRect(), Qt::gray);
    return picture.convertToFormat(QImage::Format_RGB32);
}

QString chosen(const LightSet_dlg &screen)
{
    return screen.findChild<QLineEdit *>(u"LightDir"_s)->text() +
           screen.findChild<QLineEdit *>(u"LightNum"_s)->text();
}

} // namespace

class TestLightSetScreens : public QObject
{
    Q_OBJECT

private:
    static void present(LightSet_dlg &screen)
    {
        auto *timer = screen.findChild<QTimer *>();
        const QSignalBlocker noTicks(timer);
        screen.show();
        QVERIFY(QTest::qWaitForWindowExposed(&screen));
        timer->stop();
        QTRY_COMPARE(screen.geometry(), screen.screen()->geometry());
        for (int tick = 0; tick < 6; ++tick)
            QMetaObject::invokeMethod(&screen, "ontimer");
        sendScans(screen);
    }

    static void compareOnGlass(QRect native, qreal scale)
    {
        const QImage expected = withoutPanel(plainFor(native.size()).picture(), scale);
        QTRY_COMPARE(withoutPanel(photograph(native), scale), expected);
    }

    // On the glass a light is where a click on it finds it.
    static void curvesAndClicksAgree(QRect native, qreal ratio)
    {
        const int W = native.width();
        const int H = native.height();
        LightSet_dlg screen;
        present(screen);
        QCOMPARE(screen.devicePixelRatioF(), ratio);
        compareOnGlass(native, ratio);

        for (const int light : {0, 1, 33, 63, 64, 95}) {
            // Into the bar: behind its light's place, before the next one's.
            const int x = W * light / LightsX + W / LightsX / 2;
            const int y = H - 1;
            QTest::mouseClick(&screen, Qt::LeftButton, {},
                              QPoint(int(std::ceil(x / ratio)), int(y / ratio)));
            QCOMPARE(chosen(screen), u"X%1"_s.arg(light));
            screen.update();
            const int left = W * light / LightsX;
            // Two rows above the bottom lies no curve, only the bar.
            QTRY_COMPARE(photograph(native).pixelColor(left + W / LightsX / 2, H - 2),
                         QColor(Qt::darkGreen));
            const QImage glass = photograph(native);
            QCOMPARE(glass.pixelColor(left, H - 2), QColor(Qt::darkGreen));
            const int behind = left + W / LightsX + 2;
            if (behind < W)
                QCOMPARE(glass.pixelColor(behind, H - 2), QColor(Qt::white));
            if (left > 2)
                QCOMPARE(glass.pixelColor(left - 2, H - 2), QColor(Qt::white));
        }

        // The strips are as wide as the tallest curve, in native pixels.
        const auto clickAt = [&](int x, int y) {
            screen.findChild<QLineEdit *>(u"LightDir"_s)->clear();
            screen.findChild<QLineEdit *>(u"LightNum"_s)->clear();
            QTest::mouseClick(&screen, Qt::LeftButton, {}, QPoint(int(x / ratio), int(y / ratio)));
            return chosen(screen);
        };
        const int inside = int(249 / ratio) - 1;
        const int outside = int(251 / ratio) + 1;
        QVERIFY(clickAt(int(inside * ratio), 30).startsWith(u'Y'));
        QCOMPARE(clickAt(int(outside * ratio) + 2, 30), QString());
        // What a click there names lies there: the native height of the click decides.
        const int y = int(int(100 / ratio) * ratio);
        QCOMPARE(clickAt(60, 100), u"Y%1"_s.arg((H - y) * LightsY / (H + 1)));

        // The pixel that a click lies on decides, and not the nearest one.
        const auto clickLogical = [&](QPoint at) {
            QTest::mouseClick(&screen, Qt::LeftButton, {}, at);
            return chosen(screen);
        };
        const auto lightX = [W](int pixel) { return pixel * LightsX / (W + 1); };
        const auto lightY = [H](int pixel) { return (H - pixel) * LightsY / (H + 1); };
        int clicksX = 0;
        for (int at = 300; at < W / ratio - 1 && clicksX < 3; ++at) {
            if (lightX(int(at * ratio)) == lightX(qRound(at * ratio)))
                continue;
            ++clicksX;
            QCOMPARE(clickLogical({at, int((H - 1) / ratio)}),
                     u"X%1"_s.arg(lightX(int(at * ratio))));
        }
        QVERIFY(clicksX > 0);
        int clicksY = 0;
        for (int at = 10; at < 300 / ratio && clicksY < 3; ++at) {
            if (lightY(int(at * ratio)) == lightY(qRound(at * ratio)))
                continue;
            ++clicksY;
            QCOMPARE(clickLogical({40, at}), u"Y%1"_s.arg(lightY(int(at * ratio))));
        }
        QVERIFY(clicksY > 0);
    }

private slots:
    void curves_and_clicks_agree_at_scale_one_and_a_half()
    {
        curvesAndClicksAgree(QRect(0, 0, 1280, 800), 1.5);
    }

    void curves_and_clicks_agree_at_scale_one_and_a_quarter()
    {
        curvesAndClicksAgree(QRect(0, 0, 1366, 768), 1.25);
    }

    void another_screen_is_filled_and_drawn_for()
    {
        const QRect left(0, 0, 1280, 800);
        const QRect right(1280, 0, 800, 1280);
        QWidget window;
        window.move(100, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        LightSet_dlg screen(&window);
        present(screen);
        QCOMPARE(screen.geometry(), left);
        compareOnGlass(left, 1);

        // Next time on the other screen, where its parent is by then.
        screen.hide();
        window.move(right.topLeft() + QPoint(100, 100));
        QTRY_COMPARE(window.screen()->geometry(), right);
        present(screen);
        QCOMPARE(screen.geometry(), right);
        compareOnGlass(right, 1);
        // 300 pixels above the bottom: 300 * 54 / 1281, and 100 * 96 / 801 along the bottom.
        QTest::mouseClick(&screen, Qt::LeftButton, {}, QPoint(100, 980));
        QCOMPARE(chosen(screen), u"Y12"_s);
        QTest::mouseClick(&screen, Qt::LeftButton, {}, QPoint(100, 1230));
        QCOMPARE(chosen(screen), u"X11"_s);
    }

    void a_screen_that_changes_is_followed()
    {
        LightSet_dlg screen;
        present(screen);
        compareOnGlass(QRect(0, 0, 1280, 800), 1);
        // A monitor of another name takes the place of the one that was there, which older servers
        // take away themselves.
        QString there = u"ONLY"_s;
        const auto change = [&](const QString &name, const QString &geometry, QSize size) {
            QCOMPARE(
                QProcess::execute(u"xrandr"_s, {u"--setmonitor"_s, name, geometry, u"screen"_s}),
                0);
            QProcess::execute(u"xrandr"_s, {u"--delmonitor"_s, std::exchange(there, name)});
            QTRY_COMPARE(screen.screen()->geometry(), QRect(QPoint(0, 0), size));
            QTRY_COMPARE(screen.size(), size);
            // The levels shown are the ones that came before: no scan has come since.
            compareOnGlass(QRect(QPoint(0, 0), size), 1);
            QTest::mouseClick(&screen, Qt::LeftButton, {}, QPoint(100, size.height() - 50));
            QCOMPARE(chosen(screen), u"X%1"_s.arg(100 * LightsX / (size.width() + 1)));
        };
        change(u"UPRIGHT"_s, u"800/211x1080/338+0+0"_s, QSize(800, 1080));
        screen.findChild<QLineEdit *>(u"LightDir"_s)->clear();
        change(u"WIDE"_s, u"1920/508x1080/285+0+0"_s, QSize(1920, 1080));
    }

    // A compositor may change mode and scaling together.
    void a_screen_that_gets_more_pixels_and_no_larger_is_followed()
    {
        LightSet_dlg screen;
        present(screen);
        const QRect place = screen.geometry();
        const auto shown = [&screen](int ratio) {
            QImage picture = screen.grab().toImage();
            picture.setDevicePixelRatio(1);
            return withoutPanel(picture, ratio);
        };
        const auto expected = [&place](int ratio) {
            return withoutPanel(plainFor(place.size() * ratio).picture(), ratio);
        };
        QCOMPARE(screen.devicePixelRatioF(), 1.);
        QCOMPARE(shown(1), expected(1));
        QCOMPARE(QProcess::execute(u"swaymsg"_s, {u"output HEADLESS-1 resolution %1x%2 scale 2"_s
                                                      .arg(2 * place.width())
                                                      .arg(2 * place.height())}),
                 0);
        QTRY_COMPARE(screen.devicePixelRatioF(), 2.);
        QTRY_COMPARE(screen.geometry(), place);
        QTRY_COMPARE(shown(2), expected(2));
    }

    // A kiosk runs the tool alone.
    void escape_leaves_at_once_without_a_window_manager()
    {
        LightSet_dlg screen;
        present(screen);
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        // As from the keyboard, to whatever window has it.
        QVERIFY(hand::press(u"Escape"_s));
        QTRY_VERIFY(!screen.isVisible());
    }

    void without_an_x_server_the_screen_is_filled_drawn_and_left_all_the_same()
    {
        QCOMPARE(QGuiApplication::platformName(), u"offscreen"_s);
        LightSet_dlg screen;
        present(screen);
        const QSize size = QGuiApplication::primaryScreen()->size();
        QCOMPARE(screen.size(), size);
        QCOMPARE(withoutPanel(screen.grab().toImage(), 1),
                 withoutPanel(plainFor(size).picture(), 1));
        QTest::mouseClick(&screen, Qt::LeftButton, {}, QPoint(100, size.height() - 50));
        QCOMPARE(chosen(screen), u"X%1"_s.arg(100 * LightsX / (size.width() + 1)));
        QTest::keyClick(&screen, Qt::Key_Escape);
        QVERIFY(!screen.isVisible());
    }
};

QTEST_MAIN(TestLightSetScreens)
#include "tst_lightset_screens.moc"
