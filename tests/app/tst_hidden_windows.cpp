// SPDX-License-Identifier: GPL-3.0-or-later

// What windows that draw a whole screen keep in memory when nobody sees them any more: what the
// toolkit has for a window, and no picture of their own.

#include "app/heap.h"
#include "device/records.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/test_win.h"

#include <QApplication>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int Showings = 8;
// Of a window's other things, which are made at its first showing.
constexpr qint64 OnceKiB = 512;
constexpr qint64 EachTimeKiB = 16;

// This process's own and what it shares with the X server.
qint64 memoryKiB()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    qint64 sum = 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("RssAnon:") || line.startsWith("RssShmem:"))
            sum += line.simplified().split(' ').value(1).toLongLong();
    }
    return sum;
}

void say(LightSet_dlg &screen, UCHAR commandClass, UCHAR sub, std::initializer_list<UCHAR> value)
{
    UCHAR report[64] = {0xFC, commandClass, sub};
    std::copy(value.begin(), value.end(), report + 5);
    screen.DoRecv03(report);
}

} // namespace

class TestHiddenWindows : public QObject
{
    Q_OBJECT

private:
    // Shows a window again and again, and looks at what is left of it.
    static void isGivenBack(QWidget &window, const std::function<void()> &show)
    {
        const qint64 screenKiB = [] {
            const QSize size = QGuiApplication::primaryScreen()->size();
            return qint64(size.width()) * size.height() * 4 / 1024;
        }();
        // A picture of the whole screen is told from what else a window takes.
        QVERIFY(screenKiB > 4 * OnceKiB);
        const qint64 before = memoryKiB();
        QVERIFY(before > 0);
        QList<qint64> growth;
        for (int i = 0; i < Showings; ++i) {
            show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            QTest::qWait(50);
            QVERIFY2(memoryKiB() - before > screenKiB,
                     "its picture was not seen while it was there");
            window.hide();
            QTest::qWait(100);
            growth += memoryKiB() - before;
        }
        const QString told = QDebug::toString(growth);
        QVERIFY2(growth.first() <= screenKiB + OnceKiB, qPrintable(told));
        QVERIFY2(growth.last() - growth.at(1) <= EachTimeKiB * Showings, qPrintable(told));
    }

    QWidget main; // where the others belong

private slots:
    void initTestCase()
    {
        // Fonts, styles and the like.
        main.resize(300, 200);
        main.show();
        QVERIFY(QTest::qWaitForWindowExposed(&main));
        test_win other;
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        QTest::qWait(100);
    }

    void the_calibration_screen_keeps_no_picture()
    {
        Calibration_Dlg window;
        isGivenBack(window, [&window] {
            window.setPrimaryScr(0);
            window.setWindowFlags(Qt::SubWindow);
            window.show();
        });
    }

    void the_light_screen_keeps_no_picture()
    {
        LightSet_dlg window(&main);
        isGivenBack(window, [&window] {
            window.show();
            for (int tick = 0; tick < 6; ++tick)
                window.ontimer();
            say(window, 0xA5, 0x80, {96, 0, 54, 0});
            say(window, 0xA5, 0x81, {0});
            window.update();
        });
    }
};

int main(int argc, char **argv)
{
    settleHeap();
    QApplication app(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    TestHiddenWindows tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "tst_hidden_windows.moc"
