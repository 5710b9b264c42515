// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/calibration_dlg.h"
#include "dialogs/connect_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/setting_dlg.h"
#include "dialogs/showing.h"
#include "dialogs/smoothing_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/useradv_dlg.h"
#include "tests/support/settingshome.h"

#include <QApplication>
#include <QComboBox>
#include <QHideEvent>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>
#include <QSlider>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

class Window : public QWidget
{
public:
    int begun = 0;
    int ended = 0;

protected:
    void showEvent(QShowEvent *) override { begun += showing.begins() ? 1 : 0; }
    void hideEvent(QHideEvent *) override { ended += showing.ends() ? 1 : 0; }

private:
    Showing showing{this};
};

// What newer toolkits do when a window fills the screen, is minimised or comes back.
void tellAgain(QWidget &window)
{
    QShowEvent shown;
    QCoreApplication::sendEvent(&window, &shown);
    QHideEvent hidden;
    QCoreApplication::sendEvent(&window, &hidden);
    QCoreApplication::sendEvent(&window, &shown);
}

} // namespace

// That a window is hidden is told in more than one way, and more than once.
class TestShowing : public QObject
{
    Q_OBJECT

private slots:
    void events_of_one_showing_count_once()
    {
        Window window;
        for (int round = 1; round <= 3; ++round) {
            window.show();
            tellAgain(window);
            QCOMPARE(window.begun, round);
            QCOMPARE(window.ended, round - 1);
            window.close();
            QCOMPARE(window.ended, round);
        }
    }

    void a_minimised_window_is_still_shown_and_can_be_left()
    {
        Window window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.showMinimized();
        QTRY_VERIFY(window.isMinimized() && !window.windowHandle()->isExposed());
        QCOMPARE(window.ended, 0);
        window.showNormal();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.begun, 1);
        window.showMinimized();
        window.hide();
        QCOMPARE(window.ended, 1);
    }

    void a_calibration_begins_and_ends_once()
    {
        Calibration_Dlg window;
        QByteArrayList sent;
        connect(&window, &Calibration_Dlg::Write03, this,
                [&](const UCHAR *frame) { sent.append(QByteArray::number(frame[2], 16)); });
        window.setPrimaryScr(0);
        window.show();
        tellAgain(window);
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        tellAgain(window);
        QCOMPARE(sent, QByteArrayList({"0"}));
        window.close();
        QHideEvent hidden;
        QCoreApplication::sendEvent(&window, &hidden);
        QCOMPARE(sent, QByteArrayList({"0", "6"}));
    }

    void the_light_screen_reads_its_settings_once_and_once_more_at_its_end()
    {
        LightSet_dlg window;
        int reads = 0;
        connect(&window, &LightSet_dlg::Write03, this,
                [&](const UCHAR *frame) { reads += frame[1] == 0xA2 && frame[2] == 0x05 ? 1 : 0; });
        window.show();
        tellAgain(window);
        QCOMPARE(reads, 1);
        window.close();
        QCOMPARE(reads, 2);
    }

    void the_rotation_is_asked_for_once()
    {
        Rotation_dlg window;
        int questions = 0;
        connect(&window, &Rotation_dlg::Write03, this, [&](const UCHAR *) { ++questions; });
        window.show();
        tellAgain(window);
        QCOMPARE(questions, 1);
        window.close();
        window.show();
        QCOMPARE(questions, 2);
    }

    void a_continuous_test_goes_on()
    {
        test_win window;
        window.show();
        auto *button = window.findChild<QPushButton *>(u"ALL_btn"_s);
        button->click();
        QCOMPARE(button->text(), u"Stop"_s);
        tellAgain(window);
        QCOMPARE(button->text(), u"Stop"_s);
        window.close();
        QCOMPARE(button->text(), u"All Test"_s);
    }

    void what_was_not_applied_is_kept_for_as_long_as_the_window_is_shown()
    {
        const SettingsHome home;
        smoothing_dlg smoothing;
        auto *level = smoothing.findChild<QSlider *>(u"smo_lv"_s);
        useradv_dlg gestures;
        auto *tolerance = gestures.findChild<QSlider *>(u"rbran"_s);
        Setting_dlg usage;
        auto *use = usage.findChild<QLabel *>(u"UseLab"_s);
        connect_dlg connection;
        auto *port = connection.findChild<QComboBox *>(u"portBox"_s);
        for (QWidget *window :
             std::initializer_list<QWidget *>{&smoothing, &gestures, &usage, &connection})
            window->show();
        const QString before = use->text();
        level->setValue(4);
        tolerance->setValue(5);
        usage.findChild<QPushButton *>(u"Percussionbtn"_s)->click();
        port->setEditText(u"/dev/ttyWhatever"_s);
        for (QWidget *window :
             std::initializer_list<QWidget *>{&smoothing, &gestures, &usage, &connection})
            tellAgain(*window);
        QCOMPARE(level->value(), 4);
        QCOMPARE(tolerance->value(), 5);
        QCOMPARE(use->text(), u"Percussion"_s);
        QCOMPARE(port->currentText(), u"/dev/ttyWhatever"_s);
        usage.close();
        QCOMPARE(use->text(), before);
    }
};

QTEST_MAIN(TestShowing)
#include "tst_showing.moc"
