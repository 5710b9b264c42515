// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/setting_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "tests/support/clipped.h"
#include "tests/support/hides.h"
#include "tests/support/settingshome.h"

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

    template <typename Widget = QPushButton>
    Widget *child(const QString &name) const
    {
        return dialog->findChild<Widget *>(name);
    }
    void click(const QString &button) const { QTest::mouseClick(child(button), Qt::LeftButton); }
    QString use() const { return child<QLabel>(u"UseLab"_s)->text(); }
    QString environment() const { return child<QLabel>(u"EnvironmentLab"_s)->text(); }
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
        QCOMPARE(child<QGroupBox>(u"groupBox_4"_s)->title(), u"Use"_s);
        QCOMPARE(child<QGroupBox>(u"groupBox_3"_s)->title(), u"Environment"_s);
        QCOMPARE(child<QLabel>(u"label_7"_s)->text(), u"This equipment is mainly used for:"_s);
        QCOMPARE(child<QLabel>(u"label_6"_s)->text(), u"The environment around you is:"_s);
        for (const QString &name : {u"UseLab"_s, u"EnvironmentLab"_s})
            QCOMPARE(child<QLabel>(name)->palette().color(QPalette::WindowText), QColor(0, 0, 255));
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
        const auto *button = child(QString::fromLatin1(QTest::currentDataTag()));
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
            click(name);
            QCOMPARE(clipped(*dialog), QStringList());
        }
        child<QLabel>(u"EnvironmentLab"_s)->setText(u"Sunshine"_s);
        QCOMPARE(clipped(*dialog), QStringList());
    }

    void the_tab_key_goes_from_top_to_bottom()
    {
        open();
        dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        child(u"Operatebtn"_s)->setFocus();
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
        click(button);
        QCOMPARE(use(), QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(environment(), u"Indoor"_s);
        QCOMPARE(home->content(), before);
        click(u"applybtn"_s);
        QVERIFY(dialog->isVisible());
        QCOMPARE(home->element("USE"), QByteArray(QTest::currentDataTag()));
        QCOMPARE(home->element("ENVIRONMENT"), QByteArray("Indoor"));
    }

    void Indoor_replaces_another_stored_environment()
    {
        XML_CLASS().write_easysetting({.Environment = u"Rain"_s, .Use = u"Operate"_s});
        open();
        QCOMPARE(environment(), u"Rain"_s);
        click(u"Indoorbtn"_s);
        QCOMPARE(environment(), u"Indoor"_s);
        QCOMPARE(home->element("ENVIRONMENT"), QByteArray("Rain"));
        click(u"applybtn"_s);
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
        QVERIFY(child(button)->isVisible());
        QVERIFY(!child(button)->isEnabled());
        click(button);
        QCOMPARE(environment(), u"Indoor"_s);
    }

    // Only the button keeps these from being chosen: each has its own text once enabled.
    void an_enabled_environment_would_show_its_text()
    {
        open();
        for (const QString &name : {u"Rain"_s, u"Sunshine"_s, u"Shock"_s}) {
            child(name + u"btn"_s)->setEnabled(true);
            click(name + u"btn"_s);
            QCOMPARE(environment(), name);
        }
    }

    void OK_keeps_the_choice_and_closes()
    {
        open();
        click(u"Multipointbtn"_s);
        click(u"okbtn"_s);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(home->element("USE"), QByteArray("Multipoint"));
        dialog->show();
        QCOMPARE(use(), u"Multipoint"_s);
    }

    void its_steps_are_there_one_by_one()
    {
        open();
        click(u"Percussionbtn"_s);
        dialog->Data2Easysetting();
        QCOMPARE(use(), u"Write"_s);
        click(u"Percussionbtn"_s);
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
        const auto *notice = child<QLabel>(u"noticeLab"_s);
        click(u"Percussionbtn"_s);
        QCOMPARE(notice->text(), QString());
        click(u"applybtn"_s);
        QCOMPARE(notice->text(), u"Kept."_s);
        QVERIFY(notice->isVisible());
        QCOMPARE(clipped(*dialog), QStringList());
        click(u"Writebtn"_s);
        QCOMPARE(notice->text(), QString());
        click(u"applybtn"_s);
        click(u"canbtn"_s);
        dialog->show();
        QCOMPARE(notice->text(), QString());

        home->removeConfigDirectory();
        click(u"applybtn"_s);
        QCOMPARE(notice->text(), u"Not kept: cannot write "_s + home->path());
        click(u"Indoorbtn"_s);
        QCOMPARE(notice->text(), QString());
    }

    void a_file_in_the_home_directory_is_called_from_there_on()
    {
        open();
        home->removeConfigDirectory();
        const auto toldAt = [this](const QString &homeDirectory) {
            const QByteArray before = qgetenv("HOME");
            const auto back = qScopeGuard([&before] { qputenv("HOME", before); });
            qputenv("HOME", homeDirectory.toUtf8());
            click(u"applybtn"_s);
            return child<QLabel>(u"noticeLab"_s)->text();
        };
        QCOMPARE(toldAt(home->folder()), u"Not kept: cannot write ~/.config/ForQuorvel"_s);
        // Another one whose name begins alike.
        QCOMPARE(toldAt(home->folder().chopped(1)), u"Not kept: cannot write "_s + home->path());
    }

    void OK_tells_at_the_next_opening_what_it_could_not_keep()
    {
        open();
        const auto *notice = child<QLabel>(u"noticeLab"_s);
        click(u"Percussionbtn"_s);
        click(u"okbtn"_s);
        dialog->show();
        QCOMPARE(notice->text(), QString());
        home->removeConfigDirectory();
        click(u"okbtn"_s);
        QVERIFY(!dialog->isVisible());
        dialog->show();
        QCOMPARE(notice->text(), u"Not kept: cannot write "_s + home->path());
    }

    void Percussion_then_Cancel_leaves_what_is_stored()
    {
        open();
        const QByteArray before = home->content();
        click(u"Percussionbtn"_s);
        click(u"canbtn"_s);
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
        click(u"Percussionbtn"_s);
        QCOMPARE(use(), u"Percussion"_s);
        switch (way) {
        case 0:
            click(u"canbtn"_s);
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
        click(u"Percussionbtn"_s);
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
        QCOMPARE(child<QLabel>(u"UseLab"_s)->textFormat(), Qt::PlainText);
        QCOMPARE(child<QLabel>(u"EnvironmentLab"_s)->textFormat(), Qt::PlainText);
        QCOMPARE(use(), u"<b>Write</b>"_s);
    }

    void other_sections_are_kept()
    {
        XML_CLASS().write_smoothing({.smo_en = 0, .smo_lv = 6});
        open();
        click(u"Operatebtn"_s);
        XML_CLASS().write_setting({.rb_duration = 2500});
        click(u"applybtn"_s);
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
        click(u"Operatebtn"_s);
        click(u"applybtn"_s);
        click(u"okbtn"_s);
        QVERIFY(!dialog->isVisible());
        QVERIFY(!home->hasConfigDirectory());
    }

    void Advance_shows_the_gesture_dialog_of_the_parent()
    {
        open();
        auto *advanced = new useradv_dlg(window.get());
        click(u"AdvBtn"_s);
        QVERIFY(advanced->isVisible());
        QVERIFY(QTest::qWaitForWindowActive(advanced));
        QVERIFY(dialog->isVisible());
        click(u"AdvBtn"_s);
        QVERIFY(advanced->isVisible());
    }

    void Advance_without_a_gesture_dialog_does_nothing()
    {
        open();
        click(u"AdvBtn"_s);
        QVERIFY(dialog->isVisible());
        Setting_dlg alone(nullptr);
        QTest::mouseClick(alone.findChild<QPushButton *>(u"AdvBtn"_s), Qt::LeftButton);
    }

    void a_connection_shows_what_is_stored()
    {
        open();
        click(u"Percussionbtn"_s);
        XML_CLASS().write_easysetting({.Environment = u"Indoor"_s, .Use = u"Operate"_s});
        dialog->OnUSBConnect();
        QCOMPARE(use(), u"Operate"_s);
    }

    void nothing_is_ever_sent()
    {
        open();
        QSignalSpy sent(dialog, &Setting_dlg::Write03);
        for (const QString &button : {u"Operatebtn"_s, u"Indoorbtn"_s, u"applybtn"_s, u"AdvBtn"_s})
            click(button);
        dialog->OnUSBConnect();
        click(u"okbtn"_s);
        QCOMPARE(sent.size(), 0);
    }

    void a_report_changes_nothing()
    {
        open();
        click(u"Percussionbtn"_s);
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
        child(u"Percussionbtn"_s)->setFocus();
        QTest::keyClick(child(u"Percussionbtn"_s), Qt::Key_Return);
        QCOMPARE(use(), u"Percussion"_s);
        QVERIFY(dialog->isVisible());
        child(u"Percussionbtn"_s)->clearFocus();
        QTest::keyClick(dialog, Qt::Key_Return);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(home->element("USE"), QByteArray("Percussion"));
    }
};

QTEST_MAIN(TestSettingDlg)
#include "tst_setting_dlg.moc"
