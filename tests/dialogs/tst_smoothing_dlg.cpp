// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/smoothing_dlg.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QHideEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<smoothing_dlg>);

// The dialog on a home directory of its own.
class TestSmoothingDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;

    static QSlider *level(const smoothing_dlg &dialog) { return in<QSlider>(&dialog, "smo_lv"); }
    static QCheckBox *use(const smoothing_dlg &dialog)
    {
        return in<QCheckBox>(&dialog, "checkBox");
    }
    static void appear(smoothing_dlg &dialog)
    {
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    }
    void writeFile(const QByteArray &content) const { home->setContent(content); }
    QByteArray content() const { return home->content(); }
    static QByteArray smoothingFile(const char *enabled, const char *smoothingLevel)
    {
        return QByteArray("<data><smoothing><SMO_EN>") + enabled + "</SMO_EN><SMO_LV>" +
               smoothingLevel + "</SMO_LV></smoothing></data>";
    }

private slots:
    void init() { home = std::make_unique<SettingsHome>(); }
    void cleanup() { home.reset(); }

    void the_form_is_as_drawn()
    {
        const smoothing_dlg dialog(nullptr);
        QCOMPARE(dialog.objectName(), u"smoothing_dlg"_s);
        QCOMPARE(dialog.windowTitle(), u"MalvoTools"_s);
        QCOMPARE(dialog.minimumSize(), dialog.maximumSize());
        QCOMPARE(dialog.size(), dialog.minimumSize());
        QCOMPARE(in<QGroupBox>(&dialog, "groupBox")->title(), u"Smoothing"_s);
        QCOMPARE(use(dialog)->text(), u"Use of smoothing on writing"_s);
        QCOMPARE(in<QLabel>(&dialog, "label")->text(),
                 u"We strongly recommend that you use the smoothing mode, which will optimize the "
                 "use of your experience, and almost no side effects."_s);
        QCOMPARE(in<QLabel>(&dialog, "label_2")->text(), u"Smoothing Level:"_s);
        QCOMPARE(in(&dialog, "pushButton_3")->text(), u"Low"_s);
        QCOMPARE(in(&dialog, "pushButton_4")->text(), u"High"_s);
        QCOMPARE(in(&dialog, "pushButton")->text(), u"OK"_s);
        QCOMPARE(in(&dialog, "pushButton_2")->text(), u"Cancel"_s);
        const QSlider *slider = level(dialog);
        QCOMPARE(slider->minimum(), 4);
        QCOMPARE(slider->maximum(), 6);
        QCOMPARE(slider->singleStep(), 1);
        QCOMPARE(slider->pageStep(), 1);
    }

    void every_text_is_in_tahoma_9()
    {
        const smoothing_dlg dialog(nullptr);
        const QList<QWidget *> widgets = dialog.findChildren<QWidget *>();
        QCOMPARE(widgets.size(), 10);
        for (const QWidget *widget : widgets) {
            QCOMPARE(widget->font().family(), u"Tahoma"_s);
            QCOMPARE(widget->font().pointSize(), 9);
        }
    }

    void nothing_is_clipped()
    {
        smoothing_dlg dialog(nullptr);
        appear(dialog);
        const auto *note = in<QLabel>(&dialog, "label");
        QVERIFY(note->wordWrap());
        QVERIFY(note->heightForWidth(note->width()) <= note->height());
        const auto *levelLabel = in<QLabel>(&dialog, "label_2");
        QVERIFY(levelLabel->sizeHint().width() <= levelLabel->width());
        QVERIFY(levelLabel->sizeHint().height() <= levelLabel->height());
        QVERIFY(use(dialog)->sizeHint().width() <= use(dialog)->width());
        QVERIFY(use(dialog)->sizeHint().height() <= use(dialog)->height());
        QVERIFY(level(dialog)->sizeHint().height() <= level(dialog)->height());
        for (const char *name : {"pushButton", "pushButton_2", "pushButton_3", "pushButton_4"}) {
            const QPushButton *button = in(&dialog, name);
            QVERIFY(button->fontMetrics().horizontalAdvance(button->text()) + 8 <= button->width());
            QVERIFY(button->fontMetrics().height() + 6 <= button->height());
        }
    }

    void everything_is_reachable_by_keyboard_and_named()
    {
        smoothing_dlg dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        use(dialog)->setFocus();
        QStringList reached;
        for (int i = 0; i < 6; ++i) {
            reached.append(QApplication::focusWidget()->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached, QStringList({u"checkBox"_s, u"pushButton_3"_s, u"smo_lv"_s,
                                       u"pushButton_4"_s, u"pushButton"_s, u"pushButton_2"_s}));
        QCOMPARE(in<QLabel>(&dialog, "label_2")->buddy(), level(dialog));
        QCOMPARE(level(dialog)->accessibleName(), u"Smoothing Level"_s);
        QCOMPARE(in(&dialog, "pushButton_3")->accessibleName(), u"Low smoothing level"_s);
        QCOMPARE(in(&dialog, "pushButton_4")->accessibleName(), u"High smoothing level"_s);
    }

    void without_a_settings_file_it_shows_smoothing_on_and_level_5()
    {
        const smoothing_dlg dialog(nullptr);
        QVERIFY(use(dialog)->isChecked());
        QCOMPARE(level(dialog)->value(), 5);
        QVERIFY(content().contains("<SMO_EN>1</SMO_EN>"));
        QVERIFY(content().contains("<SMO_LV>5</SMO_LV>"));
    }

    void the_file_s_values_are_shown_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<bool>("checked");
        QTest::addColumn<int>("shown");
        QTest::newRow("off, low") << smoothingFile("0", "4") << false << 4;
        QTest::newRow("on, high") << smoothingFile("1", "6") << true << 6;
        QTest::newRow("any other number is on") << smoothingFile("-7", "5") << true << 5;
        QTest::newRow("level above the range") << smoothingFile("1", "9") << true << 6;
        QTest::newRow("level below the range") << smoothingFile("1", "-3") << true << 4;
        QTest::newRow("no numbers") << smoothingFile("abc", "abc") << false << 4;
    }
    void the_file_s_values_are_shown()
    {
        QFETCH(const QByteArray, file);
        QFETCH(const bool, checked);
        QFETCH(const int, shown);
        writeFile(file);
        const smoothing_dlg dialog(nullptr);
        QCOMPARE(use(dialog)->isChecked(), checked);
        QCOMPARE(level(dialog)->value(), shown);
        // Showing alone writes nothing.
        QCOMPARE(content(), file);
    }

    void high_at_level_6_stays_6()
    {
        const smoothing_dlg dialog(nullptr);
        press(&dialog, "pushButton_4");
        QCOMPARE(level(dialog)->value(), 6);
        press(&dialog, "pushButton_4");
        QCOMPARE(level(dialog)->value(), 6);
    }

    void low_at_level_4_stays_4()
    {
        const smoothing_dlg dialog(nullptr);
        press(&dialog, "pushButton_3");
        QCOMPARE(level(dialog)->value(), 4);
        press(&dialog, "pushButton_3");
        QCOMPARE(level(dialog)->value(), 4);
    }

    void high_and_low_go_by_one_level()
    {
        writeFile(smoothingFile("1", "4"));
        const smoothing_dlg dialog(nullptr);
        for (const auto &[button, reached] : {std::pair("pushButton_4", 5),
                                              {"pushButton_4", 6},
                                              {"pushButton_3", 5},
                                              {"pushButton_3", 4}}) {
            press(&dialog, button);
            QCOMPARE(level(dialog)->value(), reached);
        }
    }

    void level_9_of_the_file_shows_6_and_only_ok_writes_6()
    {
        writeFile(smoothingFile("1", "9"));
        smoothing_dlg dialog(nullptr);
        QCOMPARE(level(dialog)->value(), 6);
        appear(dialog);
        press(&dialog, "pushButton_2");
        QVERIFY(!dialog.isVisible());
        QCOMPARE(content(), smoothingFile("1", "9"));
        appear(dialog);
        press(&dialog, "pushButton");
        QVERIFY(content().contains("<SMO_LV>6</SMO_LV>"));
    }

    void ok_saves_both_and_closes()
    {
        smoothing_dlg dialog(nullptr);
        appear(dialog);
        use(dialog)->setChecked(false);
        press(&dialog, "pushButton_3");
        QVERIFY(content().contains("<SMO_EN>1</SMO_EN>"));
        press(&dialog, "pushButton");
        QVERIFY(!dialog.isVisible());
        QVERIFY(content().contains("<SMO_EN>0</SMO_EN>"));
        QVERIFY(content().contains("<SMO_LV>4</SMO_LV>"));
        QVERIFY(!use(dialog)->isChecked());
        QCOMPARE(level(dialog)->value(), 4);
    }

    void ok_saves_smoothing_that_was_switched_on()
    {
        writeFile(smoothingFile("0", "5"));
        smoothing_dlg dialog(nullptr);
        appear(dialog);
        QVERIFY(!use(dialog)->isChecked());
        use(dialog)->setChecked(true);
        press(&dialog, "pushButton");
        QVERIFY(content().contains("<SMO_EN>1</SMO_EN>"));
        QVERIFY(content().contains("<SMO_LV>5</SMO_LV>"));
    }

    void ok_keeps_what_another_dialog_has_saved()
    {
        smoothing_dlg dialog(nullptr);
        XML_CLASS().write_easysetting({u"Rain"_s, u"Multipoint"_s});
        appear(dialog);
        press(&dialog, "pushButton");
        QVERIFY(content().contains("<ENVIRONMENT>Rain</ENVIRONMENT>"));
        QVERIFY(content().contains("<USE>Multipoint</USE>"));
    }

    void another_program_s_edit_shows_at_the_next_opening()
    {
        smoothing_dlg dialog(nullptr);
        appear(dialog);
        dialog.close();
        writeFile(smoothingFile("0", "4"));
        dialog.show();
        QCOMPARE(level(dialog)->value(), 4);
        QVERIFY(!use(dialog)->isChecked());
    }

    void every_other_way_out_discards_what_was_not_saved_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Cancel") << 0;
        QTest::newRow("escape") << 1;
        QTest::newRow("the window's own button") << 2;
        QTest::newRow("hidden by the program") << 3;
    }
    void every_other_way_out_discards_what_was_not_saved()
    {
        QFETCH(const int, way);
        smoothing_dlg dialog(nullptr);
        appear(dialog);
        use(dialog)->setChecked(false);
        level(dialog)->setValue(6);
        switch (way) {
        case 0:
            press(&dialog, "pushButton_2");
            break;
        case 1:
            QTest::keyClick(&dialog, Qt::Key_Escape);
            break;
        case 2:
            dialog.close();
            break;
        default:
            dialog.hide();
            break;
        }
        QVERIFY(!dialog.isVisible());
        QVERIFY(use(dialog)->isChecked());
        QCOMPARE(level(dialog)->value(), 5);
        QVERIFY(content().contains("<SMO_EN>1</SMO_EN>"));
        QVERIFY(content().contains("<SMO_LV>5</SMO_LV>"));
    }

    void cancel_closes_by_the_form_s_connection_and_by_its_slot()
    {
        smoothing_dlg dialog(nullptr);
        appear(dialog);
        QVERIFY(QMetaObject::invokeMethod(&dialog, "on_pushButton_2_clicked"));
        QVERIFY(!dialog.isVisible());
        // Without the slot the form's own connection is left.
        QPushButton *cancel = in(&dialog, "pushButton_2");
        QVERIFY(disconnect(cancel, SIGNAL(clicked()), &dialog, SLOT(on_pushButton_2_clicked())));
        appear(dialog);
        press(&dialog, "pushButton_2");
        QVERIFY(!dialog.isVisible());
    }

    void a_window_that_is_only_minimised_keeps_what_was_not_saved()
    {
        smoothing_dlg dialog(nullptr);
        appear(dialog);
        use(dialog)->setChecked(false);
        level(dialog)->setValue(6);
        QHideEvent minimised;
        QSpontaneKeyEvent::setSpontaneous(&minimised);
        QVERIFY(minimised.spontaneous());
        QVERIFY(qApp->notify(&dialog, &minimised));
        QVERIFY(!use(dialog)->isChecked());
        QCOMPARE(level(dialog)->value(), 6);
    }

    void enter_saves_and_does_not_change_the_level()
    {
        smoothing_dlg dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        use(dialog)->setFocus();
        use(dialog)->setChecked(false);
        QTest::keyClick(use(dialog), Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
        QVERIFY(content().contains("<SMO_EN>0</SMO_EN>"));
        QVERIFY(content().contains("<SMO_LV>5</SMO_LV>"));
    }

    void nothing_is_sent_by_any_button()
    {
        smoothing_dlg dialog(nullptr);
        const QSignalSpy sent(&dialog, &smoothing_dlg::Write03);
        appear(dialog);
        for (const char *name : {"pushButton_3", "pushButton_4", "pushButton", "pushButton_2"})
            press(&dialog, name);
        QCOMPARE(sent.size(), 0);
    }

    void its_steps_are_there_one_by_one()
    {
        smoothing_dlg dialog;
        level(dialog)->setValue(6);
        dialog.Data2Smoothing();
        QCOMPARE(level(dialog)->value(), 5);
        level(dialog)->setValue(6);
        dialog.Smoothing2Data();
        QVERIFY(content().contains("<SMO_LV>5<"));
        dialog.Set_Data();
        QVERIFY(content().contains("<SMO_LV>6<"));
        writeFile(smoothingFile("0", "4"));
        dialog.Get_Data();
        QCOMPARE(level(dialog)->value(), 4);
        QVERIFY(!use(dialog)->isChecked());
    }

    void ok_tells_at_the_next_opening_what_it_could_not_keep()
    {
        smoothing_dlg dialog;
        const auto *notice = in<QLabel>(&dialog, "noticeLab");
        appear(dialog);
        press(&dialog, "pushButton");
        appear(dialog);
        QCOMPARE(notice->text(), QString());
        home->removeConfigDirectory();
        press(&dialog, "pushButton");
        QVERIFY(!dialog.isVisible());
        appear(dialog);
        QCOMPARE(notice->text(), u"Not kept: cannot write "_s + home->path());
        press(&dialog, "pushButton_4");
        QCOMPARE(notice->text(), QString());
    }

    void what_was_not_kept_is_told_until_the_next_change_or_closing()
    {
        smoothing_dlg dialog;
        const auto *notice = in<QLabel>(&dialog, "noticeLab");
        home->removeConfigDirectory();
        const auto tryInVain = [&] {
            appear(dialog);
            press(&dialog, "pushButton");
            appear(dialog);
            return notice->text();
        };
        const QString words = u"Not kept: cannot write "_s + home->path();
        QCOMPARE(tryInVain(), words);
        use(dialog)->click();
        QCOMPARE(notice->text(), QString());
        dialog.close();
        QCOMPARE(tryInVain(), words);
        press(&dialog, "pushButton_2");
        appear(dialog);
        QCOMPARE(notice->text(), QString());
    }

    void what_a_file_that_can_only_be_read_does_not_take_is_not_called_kept()
    {
        smoothing_dlg dialog;
        appear(dialog);
        QVERIFY(QFile::setPermissions(home->path(), QFile::ReadOwner));
        const OrdinaryUser user;
        press(&dialog, "pushButton_4");
        press(&dialog, "pushButton");
        appear(dialog);
        QCOMPARE(in<QLabel>(&dialog, "noticeLab")->text(),
                 u"Not kept: cannot write "_s + home->path());
        QCOMPARE(level(dialog)->value(), 5);
    }

    void the_send_step_sends_64_zeros()
    {
        smoothing_dlg dialog(nullptr);
        QList<QByteArray> sent;
        connect(&dialog, &smoothing_dlg::Write03, this, [&](const UCHAR *buf) {
            sent.append(QByteArray(reinterpret_cast<const char *>(buf), 64));
        });
        dialog.SendSmoothingData();
        QCOMPARE(sent,
                 {QByteArray("\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
                             "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
                             "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
                             "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00",
                             64)});
    }

    void a_report_of_the_other_channel_changes_nothing()
    {
        smoothing_dlg dialog(nullptr);
        const QSignalSpy sent(&dialog, &smoothing_dlg::Write03);
        const QByteArray before = content();
        Frame report;
        report.fill(0xFF);
        dialog.DoRecv04(report.data());
        QVERIFY(use(dialog)->isChecked());
        QCOMPARE(level(dialog)->value(), 5);
        QCOMPARE(content(), before);
        QCOMPARE(sent.size(), 0);
    }
};

QTEST_MAIN(TestSmoothingDlg)
#include "tst_smoothing_dlg.moc"
