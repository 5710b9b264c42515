// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/helpaction.h"
#include "app/mainwindow.h"
#include "resources/resources.h"
#include "tests/support/capture.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/settingshome.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class TestNoTray : public QObject
{
    Q_OBJECT

private:
    static QMessageBox *shownBox()
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *box = qobject_cast<QMessageBox *>(widget); box && box->isVisible())
                return box;
        return nullptr;
    }
    static QAbstractButton *button(const QMessageBox *box, const QString &text)
    {
        for (QAbstractButton *one : box->buttons())
            if (one->text() == text)
                return one;
        qFatal("no such button");
    }

private slots:
    void a_window_that_hides_without_a_tray_says_how_to_get_it_back()
    {
        QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
        initResources();
        const SettingsHome home;
        MainWindow window(std::make_shared<FakeAdapter>());
        window.show();
        Capture errors(stderr);
        QVERIFY(!window.close());
        QVERIFY(!window.isVisible());
        QCOMPARE(errors.text(), "This desktop has no tray to hide in. Start quorvel again to show "
                                "its window, or quorvel -close to end it.\n");
        QTRY_VERIFY(shownBox());
        const QPointer<QMessageBox> box = shownBox();
        QCOMPARE(box->text() + u'\n', QString::fromUtf8(errors.text()));
        QVERIFY(!box->isModal());
        QCOMPARE(HelpAction::placeOf(box), u"first-connection.html#hiding-and-ending"_s);
        button(box, u"Show the window"_s)->click();
        QVERIFY(window.isVisible());
        QVERIFY(!box || !box->isVisible());

        // Once is enough.
        QVERIFY(!window.close());
        QVERIFY(!shownBox());
        window.handleMessage(u"-W"_s);
        QVERIFY(window.isVisible());
    }

    void that_words_window_ends_the_program_too()
    {
        const SettingsHome home;
        MainWindow window(std::make_shared<FakeAdapter>());
        window.show();
        window.close();
        QTRY_VERIFY(shownBox());
        QTimer::singleShot(0, this, [] { button(shownBox(), u"End Quorvel"_s)->click(); });
        QTimer late;
        connect(&late, &QTimer::timeout, this, [] { QCoreApplication::exit(1); });
        late.start(5000);
        QCOMPARE(QApplication::exec(), 0);
    }
};

QTEST_MAIN(TestNoTray)
#include "tst_no_tray.moc"
