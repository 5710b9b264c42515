// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/setting_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "tests/support/clipped.h"
#include "tests/support/hides.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<Setting_dlg>);

class TestSettingDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::unique_ptr<QWidget> window; // stands for the main window
    Setting_dlg *dialog = nullptr;   // its child

    QString use() const { return in<QLabel>(dialog, "UseLab")->text(); }
    QString environment() const { return in<QLabel>(dialog, "EnvironmentLab")->text(); }
    void open()
    {
        window = std::make_unique<QWidget>();
        dialog = new Setting_dlg(window.get());
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
    }

private slots:
    void init() { home = std::make_unique<SettingsHome>(); }
    void cleanup()
    {
        window.reset();
        home.reset();
    }

    void the_form_is_as_drawn()
    {
        open();
        QCOMPARE(dialog->objectName(), u"Setting_dlg"_s);
        QCOMPARE(dialog->windowTitle(), u"MalvoTools"_s);
        QCOMPARE(dialog->size(), QSize(332, 307));
        QCOMPARE(dialog->minimumSize(), QSize(332, 307));
        QCOMPARE(dialog->maximumSize(), QSize(332, 307));
        QCOMPARE(dialog->windowFlags() & Qt::WindowType_Mask, Qt::WindowFlags(7));
        QCOMPARE(in<QGroupBox>(dialog, "groupBox_4")->title(), u"Use"_s);
        QCOMPARE(in<QGroupBox>(dialog, "groupBox_3")->title(), u"Environment"_s);
        QCOMPARE(in<QLabel>(dialog, "label_7")->text(), u"This equipment is mainly used for:"_s);
        QCOMPARE(in<QLabel>(dialog, "label_6")->text(), u"The environment around you is:"_s);
        for (const QString &name : {u"UseLab"_s, u"EnvironmentLab"_s})
            QCOMPARE(in<QLabel>(dialog, name)->palette().color(QPalette::WindowText),
                     QColor(0, 0, 255));
        for (const QWidget *widget : dialog->findChildren<QWidget *>()) {
            QCOMPARE(widget->font().family(), u"Tahoma"_s);
            QCOMPARE(widget->font().pointSize(), 9);
        }
    }

    void every_button_is_as_drawn_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("group");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("Operatebtn") << u"Operate"_s << u"groupBox_4"_s << true;
        QTest::newRow("Writebtn") << u"Write"_s << u"groupBox_4"_s << true;
        QTest::newRow("Percussionbtn") << u"Percussion"_s << u"groupBox_4"_s << true;
        QTest::newRow("Multipointbtn") << u"Multipoint"_s << u"groupBox_4"_s << true;
        QTest::newRow("Indoorbtn") << u"Indoor"_s << u"groupBox_3"_s << true;
        QTest::newRow("Rainbtn") << u"Rain"_s << u"groupBox_3"_s << false;
        QTest::newRow("Sunshinebtn") << u"Sunshine"_s << u"groupBox_3"_s << false;
        QTest::newRow("Shockbtn") << u"Shock"_s << u"groupBox_3"_s << false;
        QTest::newRow("AdvBtn") << u"Advance"_s << u"Setting_dlg"_s << true;
        QTest::newRow("okbtn") << u"OK"_s << u"Setting_dlg"_s << true;
        QTest::newRow("canbtn") << u"Cancel"_s << u"Setting_dlg"_s << true;
        QTest::newRow("applybtn") << u"Apply"_s << u"Setting_dlg"_s << true;
    }
    void every_button_is_as_drawn()
    {
        open();
        const auto *button = in(dialog, QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(button != nullptr);
        QTEST(button->text(), "text");
        QTEST(button->parentWidget()->objectName(), "group");
        QTEST(button->isEnabled(), "enabled");
    }

    void nothing_is_clipped()
    {
        open();
        for (const QString &name :
             {u"Operatebtn"_s, u"Writebtn"_s, u"Multipointbtn"_s, u"Percussionbtn"_s}) {
            press(dialog, name);
            QCOMPARE(clipped(*dialog), QStringList());
        }
        in<QLabel>(dialog, "EnvironmentLab")->setText(u"Sunshine"_s);
        QCOMPARE(clipped(*dialog), QStringList());
    }

    void the_tab_key_goes_from_top_to_bottom()
    {
        open();
        dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        in(dialog, "Operatebtn")->setFocus();
        QStringList reached;
        for (int i = 0; i < 9; ++i) {
            reached.append(dialog->focusWidget()->objectName());
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached, QStringList({u"Operatebtn"_s, u"Writebtn"_s, u"Percussionbtn"_s,
                                       u"Multipointbtn"_s, u"Indoorbtn"_s, u"AdvBtn"_s, u"okbtn"_s,
                                       u"canbtn"_s, u"applybtn"_s}));
        QCOMPARE(dialog->focusWidget()->objectName(), u"Operatebtn"_s);
    }

    void with_no_settings_file_it_shows_Indoor_and_Write()
    {
        QVERIFY(home->content().isEmpty());
        open();
        QCOMPARE(environment(), u"Indoor"_s);
        QCOMPARE(use(), u"Write"_s);
    }

    void it_shows_what_is_stored()
    {
        XML_CLASS().write_easysetting({.Environment = u"Shock"_s, .Use = u"Multipoint"_s});
        open();
        QCOMPARE(environment(), u"Shock"_s);
        QCOMPARE(use(), u"Multipoint"_s);
    }

    void a_chosen_use_is_kept_by_Apply_and_not_before_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("stored");
        QTest::newRow("Operate") << u"Operatebtn"_s << u"Write"_s;
        QTest::newRow("Write") << u"Writebtn"_s << u"Operate"_s;
        QTest::newRow("Percussion") << u"Percussionbtn"_s << u"Write"_s;
        QTest::newRow("Multipoint") << u"Multipointbtn"_s << u"Write"_s;
    }
    void a_chosen_use_is_kept_by_Apply_and_not_before()
    {
        QFETCH(const QString, button);
        QFETCH(const QString, stored);
        XML_CLASS().write_easysetting({.Environment = u"Indoor"_s, .Use = stored});
        const QByteArray before = home->content();
        open();
        press(dialog, button);
        QCOMPARE(use(), QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(environment(), u"Indoor"_s);
        QCOMPARE(home->content(), before);
        press(dialog, "applybtn");
        QVERIFY(dialog->isVisible());
        QCOMPARE(home->element("USE"), QByteArray(QTest::currentDataTag()));
        QCOMPARE(home->element("ENVIRONMENT"), QByteArray("Indoor"));
    }

    void Indoor_replaces_another_stored_environment()
    {
        XML_CLASS().write_easysetting({.Environment = u"Rain"_s, .Use = u"Operate"_s});
        open();
        QCOMPARE(environment(), u"Rain"_s);
        press(dialog, "Indoorbtn");
        QCOMPARE(environment(), u"Indoor"_s);
        QCOMPARE(home->element("ENVIRONMENT"), QByteArray("Rain"));
        press(dialog, "applybtn");
        QCOMPARE(home->element("ENVIRONMENT"), QByteArray("Indoor"));
        QCOMPARE(home->element("USE"), QByteArray("Operate"));
    }

    void clicking_a_disabled_environment_does_nothing_data()
    {
        QTest::addColumn<QString>("button");
        QTest::newRow("Rain") << u"Rainbtn"_s;
        QTest::newRow("Sunshine") << u"Sunshinebtn"_s;
        QTest::newRow("Shock") << u"Shockbtn"_s;
    }
    void clicking_a_disabled_environment_does_nothing()
    {
        QFETCH(const QString, button);
        open();
        QVERIFY(in(dialog, button)->isVisible());
        QVERIFY(!in(dialog, button)->isEnabled());
        press(dialog, button);
        QCOMPARE(environment(), u"Indoor"_s);
    }

    // Only the button keeps these from being chosen: each has its own text once enabled.
    void an_enabled_environment_would_show_its_text()
    {
        open();
        for (const QString &name : {u"Rain"_s, u"Sunshine"_s, u"Shock"_s}) {
            in(dialog, name + u"btn"_s)->setEnabled(true);
            press(dialog, name + u"btn"_s);
            QCOMPARE(environment(), name);
        }
    }

    void OK_keeps_the_choice_and_closes()
    {
        open();
        press(dialog, "Multipointbtn");
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        QCOMPARE(home->element("USE"), QByteArray("Multipoint"));
        dialog->show();
        QCOMPARE(use(), u"Multipoint"_s);
    }

    void its_steps_are_there_one_by_one()
    {
        open();
        press(dialog, "Percussionbtn");
        dialog->Data2Easysetting();
        QCOMPARE(use(), u"Write"_s);
        press(dialog, "Percussionbtn");
        dialog->Easysetting2Data();
        dialog->Data2Easysetting();
        QCOMPARE(use(), u"Percussion"_s);
        QCOMPARE(home->element("USE"), "Write"_ba);
        dialog->Easyset_Data();
        QCOMPARE(home->element("USE"), "Percussion"_ba);
        home->edit("USE", "Operate");
        dialog->Get_Data();
        QCOMPARE(use(), u"Operate"_s);
        dialog->SendSettingData();
        dialog->setStringFont();
        QCOMPARE(dialog->font(), QFont(u"Tahoma"_s, 9));
    }

    void the_window_tells_what_became_of_Apply()
    {
        open();
        const auto *notice = in<QLabel>(dialog, "noticeLab");
        press(dialog, "Percussionbtn");
        QCOMPARE(notice->text(), QString());
        press(dialog, "applybtn");
        QCOMPARE(notice->text(), u"Kept."_s);
        QVERIFY(notice->isVisible());
        QCOMPARE(clipped(*dialog), QStringList());
        press(dialog, "Writebtn");
        QCOMPARE(notice->text(), QString());
        press(dialog, "applybtn");
        press(dialog, "canbtn");
        dialog->show();
        QCOMPARE(notice->text(), QString());

        home->removeConfigDirectory();
        press(dialog, "applybtn");
        QCOMPARE(notice->text(), u"Not kept: cannot write "_s + home->path());
        press(dialog, "Indoorbtn");
        QCOMPARE(notice->text(), QString());
    }

    void what_a_file_that_can_only_be_read_does_not_take_is_not_called_kept()
    {
        open();
        const auto *notice = in<QLabel>(dialog, "noticeLab");
        QVERIFY(QFile::setPermissions(home->path(), QFile::ReadOwner));
        const OrdinaryUser user;
        press(dialog, "applybtn");
        QCOMPARE(notice->text(), u"Kept."_s); // as it was before
        press(dialog, "Percussionbtn");
        press(dialog, "applybtn");
        QCOMPARE(notice->text(), u"Not kept: cannot write "_s + home->path());
        QCOMPARE(home->element("USE"), "Write"_ba);
    }

    void a_file_in_the_home_directory_is_called_from_there_on()
    {
        open();
        home->removeConfigDirectory();
        const auto toldAt = [this](const QString &homeDirectory) {
            const QByteArray before = qgetenv("HOME");
            const auto back = qScopeGuard([&before] { qputenv("HOME", before); });
            qputenv("HOME", homeDirectory.toUtf8());
            press(dialog, "applybtn");
            return in<QLabel>(dialog, "noticeLab")->text();
        };
        QCOMPARE(toldAt(home->folder()), u"Not kept: cannot write ~/.config/ForQuorvel"_s);
        // Another one whose name begins alike.
        QCOMPARE(toldAt(home->folder().chopped(1)), u"Not kept: cannot write "_s + home->path());
    }

    void OK_tells_at_the_next_opening_what_it_could_not_keep()
    {
        open();
        const auto *notice = in<QLabel>(dialog, "noticeLab");
        press(dialog, "Percussionbtn");
        press(dialog, "okbtn");
        dialog->show();
        QCOMPARE(notice->text(), QString());
        home->removeConfigDirectory();
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        dialog->show();
        QCOMPARE(notice->text(), u"Not kept: cannot write "_s + home->path());
    }

    void Percussion_then_Cancel_leaves_what_is_stored()
    {
        open();
        const QByteArray before = home->content();
        press(dialog, "Percussionbtn");
        press(dialog, "canbtn");
        QVERIFY(!dialog->isVisible());
        QCOMPARE(home->content(), before);
        QCOMPARE(home->element("USE"), QByteArray("Write"));
        dialog->show();
        QCOMPARE(use(), u"Write"_s);
    }

    void any_close_drops_a_choice_that_was_not_applied_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Cancel") << 0;
        QTest::newRow("the window's close button") << 1;
        QTest::newRow("Escape") << 2;
        QTest::newRow("hidden by the program") << 3;
    }
    void any_close_drops_a_choice_that_was_not_applied()
    {
        QFETCH(const int, way);
        open();
        const QByteArray before = home->content();
        press(dialog, "Percussionbtn");
        QCOMPARE(use(), u"Percussion"_s);
        switch (way) {
        case 0:
            press(dialog, "canbtn");
            break;
        case 1:
            dialog->close();
            break;
        case 2:
            QTest::keyClick(dialog, Qt::Key_Escape);
            break;
        default:
            dialog->hide();
        }
        QVERIFY(!dialog->isVisible());
        QCOMPARE(use(), u"Write"_s);
        QCOMPARE(home->content(), before);
    }

    void being_minimised_keeps_a_choice_that_was_not_applied()
    {
        open();
        Hides hides(dialog);
        press(dialog, "Percussionbtn");
        dialog->setWindowState(Qt::WindowMinimized);
        QTRY_VERIFY(hides.bySystem > 0);
        QCOMPARE(use(), u"Percussion"_s);
        dialog->setWindowState(Qt::WindowNoState);
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        QCOMPARE(use(), u"Percussion"_s);
    }

    void a_file_that_is_shown_and_closed_is_not_changed()
    {
        XML_CLASS().write_easysetting({.Environment = u"Indoor"_s, .Use = u"Write"_s});
        home->edit("USE", "Juggle");
        const QByteArray before = home->content();
        open();
        QCOMPARE(use(), u"Juggle"_s);
        dialog->close();
        QCOMPARE(home->content(), before);
    }

    void another_program_s_edit_shows_at_the_next_opening()
    {
        open();
        dialog->close();
        home->edit("USE", "Operate");
        dialog->show();
        QCOMPARE(use(), u"Operate"_s);
    }

    void what_looks_like_markup_is_shown_as_it_stands()
    {
        XML_CLASS().write_easysetting({.Environment = u"Indoor"_s, .Use = u"<b>Write</b>"_s});
        open();
        QCOMPARE(in<QLabel>(dialog, "UseLab")->textFormat(), Qt::PlainText);
        QCOMPARE(in<QLabel>(dialog, "EnvironmentLab")->textFormat(), Qt::PlainText);
        QCOMPARE(use(), u"<b>Write</b>"_s);
    }

    void other_sections_are_kept()
    {
        XML_CLASS().write_smoothing({.smo_en = 0, .smo_lv = 6});
        open();
        press(dialog, "Operatebtn");
        XML_CLASS().write_setting({.rb_duration = 2500});
        press(dialog, "applybtn");
        QCOMPARE(home->element("USE"), QByteArray("Operate"));
        QCOMPARE(home->element("SMO_LV"), QByteArray("6"));
        QCOMPARE(home->element("RB_DURATION"), QByteArray("2500"));
    }

    void without_a_config_directory_it_shows_nothing_and_creates_nothing()
    {
        home->removeConfigDirectory();
        open();
        QCOMPARE(use(), QString());
        QCOMPARE(environment(), QString());
        press(dialog, "Operatebtn");
        press(dialog, "applybtn");
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        QVERIFY(!home->hasConfigDirectory());
    }

    void Advance_shows_the_gesture_dialog_of_the_parent()
    {
        open();
        auto *advanced = new useradv_dlg(window.get());
        press(dialog, "AdvBtn");
        QVERIFY(advanced->isVisible());
        QVERIFY(QTest::qWaitForWindowActive(advanced));
        QVERIFY(dialog->isVisible());
        press(dialog, "AdvBtn");
        QVERIFY(advanced->isVisible());
    }

    void Advance_without_a_gesture_dialog_does_nothing()
    {
        open();
        press(dialog, "AdvBtn");
        QVERIFY(dialog->isVisible());
        Setting_dlg alone(nullptr);
        press(&alone, "AdvBtn");
    }

    void a_connection_shows_what_is_stored()
    {
        open();
        press(dialog, "Percussionbtn");
        XML_CLASS().write_easysetting({.Environment = u"Indoor"_s, .Use = u"Operate"_s});
        dialog->OnUSBConnect();
        QCOMPARE(use(), u"Operate"_s);
    }

    void nothing_is_ever_sent()
    {
        open();
        QSignalSpy sent(dialog, &Setting_dlg::Write03);
        for (const QString &button : {u"Operatebtn"_s, u"Indoorbtn"_s, u"applybtn"_s, u"AdvBtn"_s})
            press(dialog, button);
        dialog->OnUSBConnect();
        press(dialog, "okbtn");
        QCOMPARE(sent.size(), 0);
    }

    void a_report_changes_nothing()
    {
        open();
        press(dialog, "Percussionbtn");
        const QByteArray before = home->content();
        QByteArray report(64, '\xFF');
        dialog->DoRecv03(reinterpret_cast<UCHAR *>(report.data()));
        QCOMPARE(report, QByteArray(64, '\xFF'));
        QCOMPARE(use(), u"Percussion"_s);
        QCOMPARE(environment(), u"Indoor"_s);
        QCOMPARE(home->content(), before);
    }

    void Enter_takes_the_button_in_focus_or_else_OK()
    {
        open();
        in(dialog, "Percussionbtn")->setFocus();
        QTest::keyClick(in(dialog, "Percussionbtn"), Qt::Key_Return);
        QCOMPARE(use(), u"Percussion"_s);
        QVERIFY(dialog->isVisible());
        in(dialog, "Percussionbtn")->clearFocus();
        QTest::keyClick(dialog, Qt::Key_Return);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(home->element("USE"), QByteArray("Percussion"));
    }
};

QTEST_MAIN(TestSettingDlg)
#include "tst_setting_dlg.moc"
