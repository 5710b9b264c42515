// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "app/supportfileaction.h"
#include "config/xml_class.h"
#include "dialogs/supportfile_dlg.h"
#include "resources/resources.h"
#include "resources/translations.h"
#include "sim/sim_adapter.h"
#include "tests/support/openline.h"
#include "tests/support/settingshome.h"
#include "tests/support/shownwindow.h"

#include <QApplication>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>

using namespace Qt::StringLiterals;

// The support file as the window gathers and shows it.
class TestSupportFile : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<sim::SimAdapter> frame;
    std::unique_ptr<MainWindow> window;

    void choose() const { window->findChild<SupportFileAction *>()->trigger(); }
    SupportFile_dlg *dialog() const { return window->findChild<SupportFile_dlg *>(); }
    QString shown(const QString &name) const
    {
        auto *files = dialog()->findChild<QListWidget *>(u"fileList"_s);
        const QList<QListWidgetItem *> found = files->findItems(name, Qt::MatchExactly);
        if (found.size() != 1)
            return {};
        files->setCurrentItem(found.first());
        return dialog()->findChild<QPlainTextEdit *>(u"contentView"_s)->toPlainText();
    }

private slots:
    void initTestCase() { initResources(); }
    void init()
    {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<sim::SimAdapter>(
            sim::Profile(), sim::FaultPlan(),
            sim::SimOptions{.plugged = false, .paced = false, .clock = {}});
        window = shownWindow(frame);
        QVERIFY(window);
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        home.reset();
    }

    void the_menu_shows_what_would_be_written()
    {
        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        choose();
        QVERIFY(!QGuiApplication::overrideCursor()); // it has waited for the frame
        QVERIFY(dialog());
        QVERIFY(dialog()->isVisible());
        QVERIFY(shown(u"about.txt"_s).contains(u"frames.pcap"_s));
        const QString doctor = shown(u"doctor.txt"_s);
        QVERIFY2(doctor.contains(u"It is of the current generation, with the firmware "
                                 "5A17C0DE-003812."_s),
                 qPrintable(doctor));
        QVERIFY2(doctor.contains(u"The desktop has a tray."_s), qPrintable(doctor));
        QCOMPARE(shown(u"screens.txt"_s),
                 u"screen 1: 1280 x 800 at 0, 0; scale 1\ndesktop: 1280 x 800, by xcb\n"_s);
        QVERIFY(shown(u"settings.xml"_s).contains(u"<setting>"_s));
        QVERIFY(shown(u"versions.txt"_s).contains(u"program: quorvel "_s));
        QVERIFY2(shown(u"versions.txt"_s).contains(u"\nlink: USB\n"_s),
                 qPrintable(shown(u"versions.txt"_s)));
        const QString frames = shown(u"frames.pcap"_s);
        QVERIFY2(frames.contains(u"the link begins\n"_s) &&
                     frames.contains(u"  firmware: read\n"_s) &&
                     frames.contains(u"  rotation: read\n"_s),
                 qPrintable(frames));
    }

    void what_is_shown_is_gathered_anew_each_time()
    {
        choose();
        QVERIFY(shown(u"frames.pcap"_s).isEmpty());
        QVERIFY(shown(u"versions.txt"_s).contains(u"link: none"_s));
        const SupportFile_dlg *first = dialog();
        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        choose();
        QCOMPARE(dialog(), first);
        QVERIFY(shown(u"frames.pcap"_s).contains(u"rotation: read"_s));
    }

    void the_serial_port_is_looked_at_that_a_frame_is_wanted_on()
    {
        const auto lookedAt = [this](const QString &port) {
            choose();
            return shown(u"doctor.txt"_s).contains(port);
        };
        // What the settings say while nothing is linked.
        const QString chosen = u"/dev/quorvel-nowhere"_s;
        XML_CLASS store;
        _CONNECT_DATA connection = store.read_connect();
        connection.connect = 1;
        connection.uartport = chosen;
        store.write_connect(connection);
        QVERIFY(!lookedAt(chosen));
        connection.connect = 2;
        store.write_connect(connection);
        QVERIFY(lookedAt(chosen));
        // What is open counts for more.
        {
            const auto line = openLine(*window);
            QVERIFY(lookedAt(line->node));
            QVERIFY(!shown(u"doctor.txt"_s).contains(chosen));
            window->CLoseUart();
        }
        // A frame on USB needs none.
        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        QVERIFY(!lookedAt(chosen));
    }

    void the_file_is_English_and_explained_in_the_users_language()
    {
        const Translations translations(u"de"_s);
        choose();
        const auto *files = dialog()->findChild<QListWidget *>(u"fileList"_s);
        const QListWidgetItem *doctor = files->findItems(u"doctor.txt"_s, Qt::MatchExactly).first();
        QCOMPARE(doctor->toolTip(), u"was den Rahmen am Arbeiten hindert"_s);
        QVERIFY(shown(u"about.txt"_s).contains(u"what keeps the frame from working"_s));
        for (const QString &name : {u"doctor.txt"_s, u"doctor.json"_s})
            QVERIFY2(shown(name).contains(u"The desktop has a tray."_s), qPrintable(shown(name)));
        QVERIFY(shown(u"versions.txt"_s).contains(u"link: none"_s));
        QVERIFY(shown(u"screens.txt"_s).startsWith(u"screen 1: "_s));
        QCOMPARE(dialog()->windowTitle(), u"Supportdatei"_s);
    }
};

QTEST_MAIN(TestSupportFile)
#include "tst_supportfile.moc"
