#include "app/mainwindow.h"
#include "config/xml_class.h"
#include "resources/resources.h"
#include "tests/support/capture.h"
#include "tests/support/fakeadapter.h"

#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_no_tray : public QObject
{
    Q_OBJECT

private slots:
    void a_window_that_hides_without_a_tray_says_how_to_get_it_back()
    {
        QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
        initResources();
        const QTemporaryDir home;
        XML_CLASS::useHome(home.path());
        MainWindow window(std::make_shared<FakeAdapter>());
        window.show();
        Capture errors(stderr);
        QVERIFY(!window.close());
        QVERIFY(!window.isVisible());
        QCOMPARE(errors.text(), "This desktop has no tray to hide in. Start quorvel again to show "
                                "its window, or quorvel -close to end it.\n");
        window.handleMessage(u"-W"_s);
        QVERIFY(window.isVisible());
    }
};

QTEST_MAIN(tst_no_tray)
#include "tst_no_tray.moc"
