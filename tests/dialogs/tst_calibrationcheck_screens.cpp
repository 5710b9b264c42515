// SPDX-License-Identifier: GPL-3.0-or-later

// Each function here belongs to a desktop of its own: CMakeLists.txt names it and the screens.

#include "dialogs/calibrationcheck_dlg.h"
#include "tests/support/hand.h"

#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCalibrationCheckScreens : public QObject
{
    Q_OBJECT

private:
    static void show(CalibrationCheck_dlg &page)
    {
        page.show();
        QVERIFY(QTest::qWaitForWindowActive(&page));
        QTRY_COMPARE(page.size(), page.screen()->size());
        // A press is lost while the window manager is still busy with the window.
        QTest::qWait(200);
    }

    // The part of a picture that is not of the colour of its corner.
    static QImage ink(const QImage &picture)
    {
        QRect all;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                if (picture.pixel(x, y) != picture.pixel(0, 0))
                    all |= QRect(x, y, 1, 1);
            }
        }
        return picture.copy(all);
    }

    // Neither while touches are asked for nor when all words are there.
    static void look(qreal scale)
    {
        CalibrationCheck_dlg page;
        show(page);
        const auto *panel = page.findChild<QWidget *>(u"panel"_s);
        const auto isClear = [&] {
            for (int number = 0; number < CalibrationCheck::Crosses; ++number) {
                const QPointF cross = QPointF(page.check().cross(number)) / scale;
                const QRectF arms(cross - QPointF(20, 20), QSizeF(40, 40));
                if (!QRectF(page.rect()).contains(arms) ||
                    QRectF(panel->geometry()).intersects(arms))
                    return false;
            }
            return true;
        };
        for (int number = 0; number < CalibrationCheck::Crosses; ++number) {
            QVERIFY2(isClear(), qPrintable(QString::number(number)));
            QVERIFY(page.rect().contains(panel->geometry()));
            QVERIFY(hand::click(page.check().cross(number)));
            QTRY_COMPARE(page.check().asked(), number + 1);
            QTest::qWait(310);
        }
        // Nor do they go up to the edges, where a bezel may be.
        QVERIFY(page.rect().adjusted(5, 0, -5, 0).contains(panel->geometry()));
        for (const char *name : {"taskLab", "resultLab", "againButton", "closeButton"}) {
            const auto *widget = page.findChild<QWidget *>(QString::fromLatin1(name));
            QVERIFY(widget->isVisible());
            QVERIFY2(panel->rect().contains(widget->geometry()), name);
            const auto *label = qobject_cast<const QLabel *>(widget);
            QVERIFY2(!label || label->heightForWidth(label->width()) <= label->height(), name);
        }
    }

private slots:
    void crosses_are_native_pixels_at_scale_two()
    {
        CalibrationCheck_dlg page;
        show(page);
        QCOMPARE(page.devicePixelRatioF(), 2.0);
        QCOMPARE(page.check().size(), QSize(1600, 1200));
        const QPoint cross = page.check().cross(0);
        QCOMPARE(cross, QPoint(75, 75));
        // On the glass its thick arms leave as much on either side of it.
        const QImage picture = page.grab().toImage();
        QCOMPARE(picture.size(), QSize(1600, 1200));
        const QColor ink = picture.pixelColor(cross);
        for (int aside = 0; aside <= 6; ++aside) {
            const bool isInk = aside <= 3;
            QCOMPARE(picture.pixelColor(cross + QPoint(aside, 16)) == ink, isInk);
            QCOMPARE(picture.pixelColor(cross + QPoint(-aside, 16)) == ink, isInk);
            QCOMPARE(picture.pixelColor(cross + QPoint(16, aside)) == ink, isInk);
            QCOMPARE(picture.pixelColor(cross + QPoint(16, -aside)) == ink, isInk);
        }
        // A mouse is told of in whole pixels of the desktop.
        QVERIFY(hand::click(cross + QPoint(11, 0)));
        QTRY_COMPARE(page.check().asked(), 1);
        QVERIFY2(qAbs(page.check().distance(0) - 11) <= 1.5,
                 qPrintable(QString::number(page.check().distance(0))));
        QCOMPARE(page.check().largestGoodWorst(), 24.0);
        // The dot is as high as it is wide.
        const QPoint touch = page.check().touch(0).toPoint();
        const QImage touched = page.grab().toImage();
        for (const QPoint beside : {QPoint(4, 0), QPoint(-4, 0), QPoint(0, 4), QPoint(0, -4)})
            QCOMPARE(touched.pixelColor(touch + beside), ink);
        // And so is the ring of the worst.
        for (int number = 1; number < CalibrationCheck::Crosses; ++number) {
            const QPointF at = QPointF(page.check().cross(number)) / 2;
            QMouseEvent press(QEvent::MouseButtonPress, at, page.mapToGlobal(at), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            press.setTimestamp(1000 * quint64(number));
            QCoreApplication::sendEvent(&page, &press);
        }
        QCOMPARE(page.check().worst(), 0);
        const QImage finished = page.grab().toImage();
        for (const QPoint beside : {QPoint(0, 16), QPoint(0, -16), QPoint(11, 11), QPoint(11, -11)})
            QVERIFY(finished.pixelColor(touch + beside).lightness() < 200);
    }

    void nothing_covers_a_cross_on_a_small_screen() { look(1); }
    void nothing_covers_a_cross_on_a_small_scaled_screen() { look(2); }

    void the_screen_of_the_parent_is_covered()
    {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QWidget parent;
        CalibrationCheck_dlg page(&parent);
        for (const int number : {1, 0, 1}) {
            QScreen *wanted = QGuiApplication::screens().at(number);
            parent.move(wanted->geometry().topLeft() + QPoint(60, 60));
            parent.show();
            QVERIFY(QTest::qWaitForWindowExposed(&parent));
            QTRY_COMPARE(parent.screen(), wanted);
            show(page);
            QCOMPARE(page.geometry(), wanted->geometry());
            QCOMPARE(page.check().size(), wanted->geometry().size());
            QVERIFY(
                hand::click(wanted->geometry().topLeft() + page.check().cross(0) + QPoint(0, 2)));
            QTRY_COMPARE(page.check().asked(), 1);
            QCOMPARE(page.check().distance(0), 2.0);
            page.close();
            parent.hide();
        }
    }

    void a_screen_that_changes_is_checked_anew()
    {
        CalibrationCheck_dlg page;
        show(page);
        QVERIFY(hand::click(page.check().cross(0)));
        QTRY_COMPARE(page.check().asked(), 1);
        // A monitor of another name takes the place of the one that was there, which older servers
        // take away themselves.
        QCOMPARE(QProcess::execute(u"xrandr"_s, {u"--setmonitor"_s, u"WIDE"_s,
                                                 u"1920/508x1080/285+0+0"_s, u"screen"_s}),
                 0);
        QProcess::execute(u"xrandr"_s, {u"--delmonitor"_s, u"ONLY"_s});
        QTRY_COMPARE(page.size(), QSize(1920, 1080));
        QTRY_COMPARE(page.check().size(), QSize(1920, 1080));
        QCOMPARE(page.check().asked(), 0);
        QCOMPARE(page.findChild<QLabel *>(u"taskLab"_s)->text(),
                 u"Touch the middle of cross 1 of 9."_s);
    }

    // So small that it is not believed to be a screen.
    void a_screen_that_does_not_know_its_size_is_told_of_in_pixels()
    {
        CalibrationCheck_dlg page;
        show(page);
        QVERIFY(!page.check().pixelMillimetres());
        QCOMPARE(page.font().pointSize(), 9); // never smaller
        const QPoint cross = page.check().cross(0);
        QVERIFY(hand::click(cross + QPoint(3, 0)));
        QTRY_COMPARE(page.check().asked(), 1);
        QCOMPARE(page.findChild<QLabel *>(u"resultLab"_s)->text(), u"Cross 1: 3.0 px off."_s);
        const QImage seen = page.grab().toImage().convertToFormat(QImage::Format_RGB32);
        const int height = page.fontMetrics().height() + 10;
        // What stands below the upper crosses, and the same drawn here.
        for (const auto &[left, words] :
             {std::pair(0, u"1: 3.0 px"_s), std::pair(page.width() - 120, u"2"_s)}) {
            const QRect below(left, cross.y() + 21, 120, height);
            QImage expected(below.size(), QImage::Format_RGB32);
            expected.fill(page.palette().color(QPalette::Window));
            QPainter painter(&expected);
            painter.setFont(page.font());
            painter.setPen(page.palette().color(QPalette::WindowText));
            painter.drawText(20, below.height() - 8, words);
            painter.end();
            QCOMPARE(ink(seen.copy(below)).size(), ink(expected).size());
            QVERIFY(ink(seen.copy(below)) == ink(expected));
        }
    }

    // A kiosk runs the tool alone.
    void escape_leaves_without_a_window_manager()
    {
        CalibrationCheck_dlg page;
        show(page);
        QVERIFY(hand::press(u"Escape"_s));
        QTRY_VERIFY(!page.isVisible());
    }
};

QTEST_MAIN(TestCalibrationCheckScreens)
#include "tst_calibrationcheck_screens.moc"
