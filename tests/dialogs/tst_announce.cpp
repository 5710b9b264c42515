// SPDX-License-Identifier: GPL-3.0-or-later

// On a desktop with a screen reader's bus: without one nothing is announced.

#include "dialogs/announce.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightwall.h"
#include "sim/firmware.h"
#include "tests/support/madeupreport.h"
#include "tests/support/widgets.h"

#include <QAccessible>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestAnnounce : public QObject
{
    Q_OBJECT

private:
    static inline QStringList heard; // as screen readers do: notifications that come up
    static inline QStringList alerts;
    static inline QStringList renamed;

    static void hear(QAccessibleEvent *event)
    {
        const QAccessibleInterface *source = event->accessibleInterface();
        const QString words = source ? source->text(QAccessible::Name) : QString();
        if (words.isEmpty())
            return;
        if (event->type() == QAccessible::ObjectShow && source->role() == QAccessible::Notification)
            heard += words;
        if (event->type() == QAccessible::Alert)
            alerts += words;
        if (event->type() == QAccessible::NameChanged)
            renamed += words;
    }

public:
    static void initMain() { qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }

private slots:
    void initTestCase()
    {
        // The bus of the readers comes up when somebody asks for it.
        QCOMPARE(QProcess::execute(u"dbus-send"_s,
                                   {u"--session"_s, u"--print-reply"_s, u"--dest=org.a11y.Bus"_s,
                                    u"/org/a11y/bus"_s, u"org.a11y.Bus.GetAddress"_s}),
                 0);
        QTRY_VERIFY(QAccessible::isActive());
        QAccessible::installUpdateHandler(&hear);
    }
    void init()
    {
        heard.clear();
        alerts.clear();
        renamed.clear();
    }

    void words_about_what_is_seen_are_heard_each_time()
    {
        QWidget window;
        auto *label = new QLabel(u"Kept."_s, &window);
        window.show();
        announce(label, u"Kept."_s);
        QCOMPARE(heard, QStringList({u"Kept."_s}));
        announce(label, u"Kept."_s);
        announce(label, u"Not kept."_s);
        QCOMPARE(heard, QStringList({u"Kept."_s, u"Kept."_s, u"Not kept."_s}));
    }

    void what_nobody_sees_is_not_heard()
    {
        QWidget window;
        auto *label = new QLabel(&window);
        announce(label, u"Behind a window that is closed"_s);
        window.show();
        label->hide();
        announce(label, u"Hidden"_s);
        label->show();
        announce(label, QString());
        QCOMPARE(heard, QStringList());
        QCOMPARE(window.children(), QObjectList({label})); // not even that there is nothing
    }

    void however_much_is_said_the_window_stays_as_it_is()
    {
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        auto *label = new QLabel(u"Some words"_s, &window);
        layout->addWidget(label);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QImage before = window.grab().toImage();
        announce(label, u"Once"_s);
        const auto children = window.findChildren<QWidget *>().size();
        announce(label, u"Twice"_s);
        QCOMPARE(heard.size(), 2);
        QCOMPARE(window.findChildren<QWidget *>().size(), children);
        QCOMPARE(window.grab().toImage(), before);
    }

    // Readers may listen to one window only.
    void each_window_speaks_for_itself()
    {
        QWidget one;
        QWidget other;
        QDialog within(&one);
        for (QWidget *window : std::initializer_list<QWidget *>{&within, &one, &other}) {
            window->show();
            const qsizetype before = window->children().size();
            announce(window, u"Some words"_s);
            QCOMPARE(window->children().size(), before + 1);
        }
        QCOMPARE(heard.size(), 3);
    }

    void a_light_that_is_chosen_on_the_wall_is_told_once()
    {
        const lights::Report report = madeUpReport(210);
        LightWall wall;
        wall.setReport(report);
        wall.show();
        renamed.clear();
        wall.choose({lights::Axis::X, 17});
        QCOMPARE(renamed, QStringList({wall.accessibleName()}));
        QVERIFY2(renamed.first().contains(u"X 17"_s), qPrintable(renamed.first()));
    }

    void the_verdict_of_a_light_check_is_an_alert_when_it_is_another_one()
    {
        const QTemporaryDir home;
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
        std::chrono::milliseconds now{0};
        const auto clock = [&now] { return now += 100ms; };
        sim::Firmware frame({}, clock);
        LightCheck_dlg check;
        connect(&check, &LightCheck_dlg::Write03, this, [&](const UCHAR *bytes) {
            frame.command(command::frameAt(bytes));
            QTimer::singleShot(0, &check, [&] {
                while (frame.queuedReplies() > 0) {
                    Frame report = frame.report();
                    check.DoRecv03(report.data());
                }
            });
        });
        check.linkBegan(lights::Measuring::Source::Usb);
        check.show();
        alerts.clear();
        const auto measure = [&check] {
            auto *button = in(&check, "measureButton");
            button->click();
            return QTest::qWaitFor([button] { return button->text() == u"&Measure"_s; }, 20000);
        };
        QVERIFY(measure());
        QCOMPARE(alerts, QStringList({u"PASS"_s}));
        QVERIFY(measure());
        QCOMPARE(alerts.size(), 1);
        sim::Profile worn;
        worn.oddLights = {{.axis = command::settings::AxisX, .number = 17, .level = 60}};
        frame = sim::Firmware(worn, clock);
        QVERIFY(measure());
        QCOMPARE(alerts, QStringList({u"PASS"_s, u"SERVICE NEEDED"_s}));
    }
};

QTEST_MAIN(TestAnnounce)
#include "tst_announce.moc"
