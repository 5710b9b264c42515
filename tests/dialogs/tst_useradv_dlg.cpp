// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/advset_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "tests/support/clipped.h"
#include "tests/support/hides.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLoggingCategory>
#include <QPushButton>
#include <QSet>
#include <QSlider>
#include <QTest>
#include <QToolTip>

#include <memory>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<useradv_dlg>);

namespace {

const QString Notice = u"No touch frame is connected. The settings are kept and will be sent when "
                       "one is connected by USB."_s;

// A frame of 64 bytes that begins so; the rest is zero.
QByteArray frame(const char *begin)
{
    return QByteArray::fromHex(begin).leftJustified(64, '\0');
}

} // namespace

class TestUserAdvDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::unique_ptr<QWidget> window; // stands for the main window
    useradv_dlg *dialog = nullptr;   // its child
    QList<QByteArray> sent;          // 64 bytes each

    QSlider *slider(const QString &name) const { return in<QSlider>(dialog, name); }
    QCheckBox *box(const QString &name) const { return in<QCheckBox>(dialog, name); }
    void create()
    {
        window = std::make_unique<QWidget>();
        dialog = new useradv_dlg(window.get());
        sent.clear();
        connect(dialog, &useradv_dlg::Write03, this, [this](UCHAR *bytes) {
            sent.append(QByteArray(reinterpret_cast<const char *>(bytes), 64));
        });
    }
    void open()
    {
        create();
        dialog->show();
        dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
    }
    // Check boxes, then sliders, from top to bottom.
    QList<int> shown() const
    {
        return {box(u"checkBox"_s)->isChecked() ? 1 : 0,
                box(u"checkBox_2"_s)->isChecked() ? 1 : 0,
                box(u"WheelEn"_s)->isChecked() ? 1 : 0,
                slider(u"rbspeed"_s)->value(),
                slider(u"rbran"_s)->value(),
                slider(u"dbspeed"_s)->value(),
                slider(u"dbran"_s)->value(),
                slider(u"WheelSen"_s)->value()};
    }
    void changeEverything() const
    {
        for (const QString &name : {u"checkBox"_s, u"checkBox_2"_s, u"WheelEn"_s})
            box(name)->setChecked(false);
        slider(u"rbspeed"_s)->setValue(2000);
        slider(u"rbran"_s)->setValue(5);
        slider(u"dbspeed"_s)->setValue(900);
        slider(u"dbran"_s)->setValue(60);
        slider(u"WheelSen"_s)->setValue(3);
    }
    static QList<int> everythingChanged() { return {0, 0, 0, 2000, 5, 900, 60, 3}; }
    static QList<int> fileDefaults() { return {1, 1, 1, 1500, 3, 600, 30, 2}; }

private slots:
    void init() { home = std::make_unique<SettingsHome>(); }
    void cleanup()
    {
        QToolTip::hideText();
        window.reset();
        home.reset();
    }

    // The form

    void the_form_is_as_drawn()
    {
        open();
        QCOMPARE(dialog->objectName(), u"useradv_dlg"_s);
        QCOMPARE(dialog->windowTitle(), u"Advanced Setting"_s);
        QCOMPARE(dialog->size(), QSize(332, 447));
        QCOMPARE(dialog->minimumSize(), QSize(332, 447));
        QCOMPARE(dialog->maximumSize(), QSize(332, 447));
        QCOMPARE(dialog->windowFlags() & Qt::WindowType_Mask, Qt::WindowFlags(7));
        QCOMPARE(in<QGroupBox>(dialog, "groupBox_2")->title(), u"Right-button setting"_s);
        QCOMPARE(in<QGroupBox>(dialog, "groupBox")->title(), u"Double-click setting"_s);
        QCOMPARE(in<QGroupBox>(dialog, "groupBox_3")->title(), u"Wheel setting"_s);
        QCOMPARE(box(u"checkBox"_s)->text(), u"Use your finger as an input device"_s);
        QCOMPARE(box(u"checkBox_2"_s)->text(), u"Enable press and hold for right-button"_s);
        QCOMPARE(box(u"WheelEn"_s)->text(), u"Enable Use your finger for wheel"_s);
        QCOMPARE(in<QLabel>(dialog, "label")->text(),
                 u"You must restart the computer to make double-click setting take effect."_s);
        QCOMPARE(in(dialog, "applybtn")->text(), u"Apply"_s);
        QCOMPARE(in(dialog, "resbtn")->text(), u"Default"_s);
        QCOMPARE(in(dialog, "okbtn")->text(), u"OK"_s);
        QCOMPARE(in(dialog, "canbtn")->text(), u"Cancel"_s);
        for (const QWidget *widget : dialog->findChildren<QWidget *>()) {
            QCOMPARE(widget->font().family(), u"Tahoma"_s);
            const QString name = widget->objectName();
            QCOMPARE(widget->font().pointSize(), name.endsWith(u"Number"_s) ? 8 : 9);
        }
    }

    void every_slider_has_its_range_steps_and_default_data()
    {
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("singleStep");
        QTest::addColumn<int>("pageStep");
        QTest::addColumn<int>("byDefault");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("text");
        QTest::newRow("rbspeed") << 500 << 2500 << 500 << 500 << 1500 << u"label_5"_s
                                 << u"Duration:"_s;
        QTest::newRow("rbran") << 1 << 5 << 1 << 1 << 3 << u"label_4"_s << u"Spatial tolerance:"_s;
        QTest::newRow("dbspeed") << 300 << 900 << 100 << 100 << 600 << u"label_2"_s << u"Speed:"_s;
        QTest::newRow("dbran") << 20 << 60 << 10 << QSlider().pageStep() << 40 << u"label_3"_s
                               << u"Spatial tolerance:"_s;
        QTest::newRow("WheelSen") << 1 << 3 << 1 << 1 << 2 << u"label_7"_s << u"Sensitivity:"_s;
    }
    void every_slider_has_its_range_steps_and_default()
    {
        QFETCH(const QString, label);
        open();
        auto *tested = slider(QString::fromLatin1(QTest::currentDataTag()));
        QTEST(tested->minimum(), "minimum");
        QTEST(tested->maximum(), "maximum");
        QTEST(tested->singleStep(), "singleStep");
        QTEST(tested->pageStep(), "pageStep");
        QCOMPARE(tested->orientation(), Qt::Horizontal);
        QVERIFY(tested->focusPolicy() & Qt::TabFocus);
        QTEST(in<QLabel>(dialog, label)->text(), "text");
        QCOMPARE(in<QLabel>(dialog, label)->buddy(), tested);
        tested->setValue(tested->minimum());
        press(dialog, "resbtn");
        QTEST(tested->value(), "byDefault");
    }

    void a_stepper_moves_its_slider_by_its_step_within_the_range_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QList<int>>("values"); // at first and after each click
        QTest::newRow("pushButton_11")
            << u"Short"_s << u"rbspeed"_s << QList<int>{2500, 2000, 1500, 1000, 500, 500};
        QTest::newRow("pushButton_8")
            << u"Long"_s << u"rbspeed"_s << QList<int>{500, 1000, 1500, 2000, 2500, 2500};
        QTest::newRow("pushButton_10") << u"Small"_s << u"rbran"_s << QList<int>{5, 4, 3, 2, 1, 1};
        QTest::newRow("pushButton_9") << u"Large"_s << u"rbran"_s << QList<int>{1, 2, 3, 4, 5, 5};
        QTest::newRow("pushButton_4")
            << u"Slow"_s << u"dbspeed"_s << QList<int>{900, 800, 700, 600, 500, 400, 300, 300};
        QTest::newRow("pushButton_7")
            << u"Fast"_s << u"dbspeed"_s << QList<int>{300, 400, 500, 600, 700, 800, 900, 900};
        QTest::newRow("pushButton_5")
            << u"Small"_s << u"dbran"_s << QList<int>{60, 50, 40, 30, 20, 20};
        QTest::newRow("pushButton_6")
            << u"Large"_s << u"dbran"_s << QList<int>{20, 30, 40, 50, 60, 60};
        QTest::newRow("pushButton_15") << u"Low"_s << u"WheelSen"_s << QList<int>{3, 2, 1, 1};
        QTest::newRow("pushButton_12") << u"High"_s << u"WheelSen"_s << QList<int>{1, 2, 3, 3};
        QTest::newRow("pushButton_11 from between")
            << u"Short"_s << u"rbspeed"_s << QList<int>{700, 500};
        QTest::newRow("pushButton_6 from between")
            << u"Large"_s << u"dbran"_s << QList<int>{33, 43, 53, 60};
    }
    void a_stepper_moves_its_slider_by_its_step_within_the_range()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, name);
        QFETCH(const QList<int>, values);
        const QString button = QString::fromLatin1(QTest::currentDataTag()).section(u' ', 0, 0);
        open();
        const QByteArray before = home->content();
        QCOMPARE(in(dialog, button)->text(), text);
        slider(name)->setValue(values.first());
        const QList<int> others = shown();
        for (const int value : values.sliced(1)) {
            press(dialog, button);
            QCOMPARE(slider(name)->value(), value);
        }
        slider(name)->setValue(values.first());
        QCOMPARE(shown(), others);
        QCOMPARE(home->content(), before);
        QVERIFY(sent.isEmpty());
    }

    void Short_at_500_leaves_500()
    {
        open();
        slider(u"rbspeed"_s)->setValue(500);
        press(dialog, "pushButton_11");
        QCOMPARE(slider(u"rbspeed"_s)->value(), 500);
    }

    void the_steppers_stand_at_the_two_ends_of_their_slider_data()
    {
        QTest::addColumn<QString>("less");
        QTest::addColumn<QString>("more");
        QTest::newRow("rbspeed") << u"pushButton_11"_s << u"pushButton_8"_s;
        QTest::newRow("rbran") << u"pushButton_10"_s << u"pushButton_9"_s;
        QTest::newRow("dbspeed") << u"pushButton_4"_s << u"pushButton_7"_s;
        QTest::newRow("dbran") << u"pushButton_5"_s << u"pushButton_6"_s;
        QTest::newRow("WheelSen") << u"pushButton_15"_s << u"pushButton_12"_s;
    }
    void the_steppers_stand_at_the_two_ends_of_their_slider()
    {
        QFETCH(const QString, less);
        QFETCH(const QString, more);
        open();
        const QRect between = slider(QString::fromLatin1(QTest::currentDataTag()))->geometry();
        const QRect left = in(dialog, less)->geometry();
        const QRect right = in(dialog, more)->geometry();
        QVERIFY(left.right() < between.left() && between.left() - left.right() < 10);
        const QRect number =
            in<QLabel>(dialog, QLatin1StringView(QTest::currentDataTag()) + u"Number"_s)
                ->geometry();
        QVERIFY(between.right() < number.left() && number.left() - between.right() < 10);
        QVERIFY(number.right() < right.left() && right.left() - number.right() < 10);
        QCOMPARE(left.center().y(), between.center().y());
        QCOMPARE(right.center().y(), between.center().y());
    }

    void nothing_is_clipped()
    {
        open();
        QCOMPARE(clipped(*dialog), QStringList());
    }

    void the_tab_key_goes_along_the_rows()
    {
        open();
        const QStringList order{
            u"checkBox"_s,     u"checkBox_2"_s,    u"pushButton_11"_s, u"rbspeed"_s,
            u"pushButton_8"_s, u"pushButton_10"_s, u"rbran"_s,         u"pushButton_9"_s,
            u"pushButton_4"_s, u"dbspeed"_s,       u"pushButton_7"_s,  u"pushButton_5"_s,
            u"dbran"_s,        u"pushButton_6"_s,  u"WheelEn"_s,       u"pushButton_15"_s,
            u"WheelSen"_s,     u"pushButton_12"_s, u"resbtn"_s,        u"okbtn"_s,
            u"canbtn"_s,       u"applybtn"_s};
        box(u"checkBox"_s)->setFocus();
        QStringList reached;
        for (qsizetype i = 0; i < order.size(); ++i) {
            reached.append(dialog->focusWidget()->objectName());
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached, order);
        QCOMPARE(dialog->focusWidget()->objectName(), u"checkBox"_s);
    }

    void no_two_controls_have_the_same_name_or_description()
    {
        open();
        QSet<QString> names;
        QSet<QString> descriptions;
        int count = 0;
        for (const QPushButton *button : dialog->findChildren<QPushButton *>()) {
            const bool stepper = button->objectName().startsWith(u"pushButton_"_s);
            QCOMPARE(button->accessibleName().isEmpty(), !stepper);
            QCOMPARE(button->accessibleDescription().isEmpty(), !stepper);
            names.insert(stepper ? button->accessibleName() : button->text());
            if (stepper) {
                // Whoever speaks what is to be read finds the button.
                QVERIFY(button->accessibleName().startsWith(button->text()));
                descriptions.insert(button->accessibleDescription());
            }
            ++count;
        }
        for (const QSlider *tested : dialog->findChildren<QSlider *>()) {
            QVERIFY(!tested->accessibleName().isEmpty());
            names.insert(tested->accessibleName());
            ++count;
        }
        QCOMPARE(count, 19);
        QCOMPARE(names.size(), 19);
        QCOMPARE(descriptions.size(), 10);
    }

    void a_slider_tells_its_value()
    {
        open();
        const auto numbers = [this] {
            QStringList texts;
            for (const QString &name :
                 {u"rbspeed"_s, u"rbran"_s, u"dbspeed"_s, u"dbran"_s, u"WheelSen"_s})
                texts += in<QLabel>(dialog, name + u"Number"_s)->text();
            return texts.join(u' ');
        };
        QCOMPARE(numbers(), u"1500 3 600 30 2"_s);
        QCOMPARE(slider(u"rbspeed"_s)->toolTip(), u"1500 ms"_s);
        press(dialog, "pushButton_8");
        QCOMPARE(slider(u"rbspeed"_s)->toolTip(), u"2000 ms"_s);
        QCOMPARE(numbers(), u"2000 3 600 30 2"_s);
        QCOMPARE(slider(u"rbran"_s)->toolTip(), u"3"_s);
        QCOMPARE(slider(u"dbspeed"_s)->toolTip(), u"600"_s);
        QCOMPARE(slider(u"dbran"_s)->toolTip(), u"30"_s);
        QCOMPARE(slider(u"WheelSen"_s)->toolTip(), u"2"_s);
        press(dialog, "resbtn");
        QCOMPARE(slider(u"rbspeed"_s)->toolTip(), u"1500 ms"_s);
        QCOMPARE(slider(u"dbran"_s)->toolTip(), u"40"_s);
        changeEverything();
        QCOMPARE(numbers(), u"2000 5 900 60 3"_s);
        // The widest of all.
        press(dialog, "pushButton_8");
        QCOMPARE(numbers(), u"2500 5 900 60 3"_s);
        QCOMPARE(clipped(*dialog), QStringList());
    }

    // What is shown and kept

    void with_no_settings_file_it_shows_the_defaults_of_the_file()
    {
        open();
        QCOMPARE(shown(), fileDefaults());
    }

    void it_shows_what_is_stored()
    {
        XML_CLASS().write_setting({.all_en = 0,
                                   .rb_en = 1,
                                   .rb_duration = 2500,
                                   .rb_ran = 5,
                                   .db_speed = 300,
                                   .db_ran = 60,
                                   .wheel_en = 0,
                                   .wheel_sen = 3});
        open();
        QCOMPARE(shown(), QList<int>({0, 1, 0, 2500, 5, 300, 60, 1}));
    }

    void wheel_sensitivity_is_stored_the_other_way_round_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<int>("value");
        QTest::addColumn<QByteArray>("kept");
        QTest::newRow("high") << "1"_ba << 3 << "1"_ba;
        QTest::newRow("middle") << "2"_ba << 2 << "2"_ba;
        QTest::newRow("low") << "3"_ba << 1 << "3"_ba;
        QTest::newRow("below") << "0"_ba << 3 << "1"_ba;
        QTest::newRow("above") << "4"_ba << 1 << "3"_ba;
        QTest::newRow("far below") << "-2147483648"_ba << 3 << "1"_ba;
        QTest::newRow("far above") << "2147483647"_ba << 1 << "3"_ba;
    }
    void wheel_sensitivity_is_stored_the_other_way_round()
    {
        QFETCH(const QByteArray, stored);
        QFETCH(const QByteArray, kept);
        XML_CLASS().read_setting();
        home->edit("WHEEL_SEN", stored);
        open();
        QTEST(slider(u"WheelSen"_s)->value(), "value");
        press(dialog, "applybtn");
        QCOMPARE(home->element("WHEEL_SEN"), kept);
    }

    void a_stored_wheel_sensitivity_of_1_shows_3_and_is_sent_as_1()
    {
        XML_CLASS().read_setting();
        home->edit("WHEEL_SEN", "1");
        open();
        QCOMPARE(slider(u"WheelSen"_s)->value(), 3);
        press(dialog, "applybtn");
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 DC05 03 01 01")}));
    }

    void values_outside_the_ranges_are_shown_clamped_and_kept_so_by_Apply_alone()
    {
        XML_CLASS().read_setting();
        home->edit("ALL_EN", "2");
        home->edit("RB_EN", "-1");
        home->edit("RB_DURATION", "9000");
        home->edit("RB_RAN", "0");
        home->edit("DB_SPEED", "-5");
        home->edit("DB_RAN", "61");
        home->edit("WHEEL_EN", "0");
        const QByteArray before = home->content();
        open();
        QCOMPARE(shown(), QList<int>({1, 1, 0, 2500, 1, 300, 60, 2}));
        press(dialog, "canbtn");
        dialog->show();
        dialog->OnUSBConnect();
        dialog->close();
        QCOMPARE(home->content(), before);
        dialog->show();
        press(dialog, "applybtn");
        QCOMPARE(home->element("ALL_EN"), "1"_ba);
        QCOMPARE(home->element("RB_EN"), "1"_ba);
        QCOMPARE(home->element("RB_DURATION"), "2500"_ba);
        QCOMPARE(home->element("RB_RAN"), "1"_ba);
        QCOMPARE(home->element("DB_SPEED"), "300"_ba);
        QCOMPARE(home->element("DB_RAN"), "60"_ba);
        QCOMPARE(home->element("WHEEL_EN"), "0"_ba);
    }

    void without_a_config_directory_it_shows_zeros_clamped_and_creates_nothing()
    {
        home->removeConfigDirectory();
        open();
        QCOMPARE(shown(), QList<int>({0, 0, 0, 500, 1, 300, 20, 3}));
        press(dialog, "applybtn");
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        QVERIFY(!home->hasConfigDirectory());
    }

    void Apply_keeps_and_sends_and_stays_open()
    {
        open();
        changeEverything();
        QCOMPARE(shown(), everythingChanged());
        QVERIFY(sent.isEmpty());
        QCOMPARE(home->element("RB_DURATION"), "1500"_ba);
        press(dialog, "applybtn");
        QVERIFY(dialog->isVisible());
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 00 00 D007 05 00 01")}));
        QCOMPARE(home->element("ALL_EN"), "0"_ba);
        QCOMPARE(home->element("RB_EN"), "0"_ba);
        QCOMPARE(home->element("RB_DURATION"), "2000"_ba);
        QCOMPARE(home->element("RB_RAN"), "5"_ba);
        QCOMPARE(home->element("DB_SPEED"), "900"_ba);
        QCOMPARE(home->element("DB_RAN"), "60"_ba);
        QCOMPARE(home->element("WHEEL_EN"), "0"_ba);
        QCOMPARE(home->element("WHEEL_SEN"), "1"_ba);
    }

    void its_steps_are_there_one_by_one()
    {
        open();
        changeEverything();
        dialog->Data2Setting();
        QCOMPARE(shown(), fileDefaults());
        changeEverything();
        dialog->Setting2Data();
        QCOMPARE(home->element("RB_DURATION"), "1500"_ba);
        dialog->SendSettingData();
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 00 00 D007 05 00 01")}));
        dialog->Set_Data();
        QCOMPARE(home->element("RB_DURATION"), "2000"_ba);
        home->edit("RB_DURATION", "2500");
        dialog->Get_Data();
        QCOMPARE(slider(u"rbspeed"_s)->value(), 2500);
        QCOMPARE(sent.size(), 1);
    }

    void every_switch_has_its_own_byte_and_element_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<QByteArray>("element");
        QTest::newRow("finger") << u"checkBox"_s << frame("00A2000500 00 01 DC05 03 01 02")
                                << "ALL_EN"_ba;
        QTest::newRow("right button")
            << u"checkBox_2"_s << frame("00A2000500 01 00 DC05 03 01 02") << "RB_EN"_ba;
        QTest::newRow("wheel") << u"WheelEn"_s << frame("00A2000500 01 01 DC05 03 00 02")
                               << "WHEEL_EN"_ba;
    }
    void every_switch_has_its_own_byte_and_element()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, expected);
        QFETCH(const QByteArray, element);
        open();
        box(name)->setChecked(false);
        press(dialog, "applybtn");
        QCOMPARE(sent, QList<QByteArray>({expected}));
        for (const QByteArray &one : {"ALL_EN"_ba, "RB_EN"_ba, "WHEEL_EN"_ba})
            QCOMPARE(home->element(one), one == element ? "0"_ba : "1"_ba);
    }

    void a_duration_of_1500_is_sent_low_byte_first()
    {
        open();
        press(dialog, "applybtn");
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 DC05 03 01 02")}));
        QCOMPARE(UCHAR(sent.first().at(7)), UCHAR(0xDC));
        QCOMPARE(UCHAR(sent.first().at(8)), UCHAR(0x05));
    }

    void double_click_settings_are_never_sent()
    {
        open();
        press(dialog, "applybtn");
        slider(u"dbspeed"_s)->setValue(900);
        slider(u"dbran"_s)->setValue(60);
        press(dialog, "applybtn");
        QCOMPARE(sent.size(), 2);
        QCOMPARE(sent.at(1), sent.at(0));
        QCOMPARE(home->element("DB_SPEED"), "900"_ba);
        QCOMPARE(home->element("DB_RAN"), "60"_ba);
    }

    void OK_keeps_and_sends_once_and_closes()
    {
        open();
        changeEverything();
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 00 00 D007 05 00 01")}));
        QCOMPARE(home->element("RB_DURATION"), "2000"_ba);
        QCOMPARE(shown(), everythingChanged());
    }

    void any_close_drops_what_was_not_applied_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Cancel") << 0;
        QTest::newRow("the window's close button") << 1;
        QTest::newRow("hidden by the program") << 2;
    }
    void any_close_drops_what_was_not_applied()
    {
        QFETCH(const int, way);
        open();
        const QByteArray before = home->content();
        changeEverything();
        switch (way) {
        case 0:
            press(dialog, "canbtn");
            break;
        case 1:
            dialog->close();
            break;
        default:
            dialog->hide();
        }
        QVERIFY(!dialog->isVisible());
        QCOMPARE(shown(), fileDefaults());
        QCOMPARE(home->content(), before);
        QVERIFY(sent.isEmpty());
    }

    void being_minimised_keeps_what_was_not_applied()
    {
        open();
        Hides hides(dialog);
        changeEverything();
        dialog->setWindowState(Qt::WindowMinimized);
        QTRY_VERIFY(hides.bySystem > 0);
        QCOMPARE(shown(), everythingChanged());
        dialog->setWindowState(Qt::WindowNoState);
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        QCOMPARE(shown(), everythingChanged());
    }

    void Default_shows_its_values_and_neither_keeps_nor_sends_them()
    {
        open();
        changeEverything();
        const QByteArray before = home->content();
        press(dialog, "resbtn");
        QCOMPARE(shown(), QList<int>({1, 1, 1, 1500, 3, 600, 40, 2}));
        QVERIFY(dialog->isVisible());
        QCOMPARE(home->content(), before);
        QVERIFY(sent.isEmpty());
    }

    void Default_then_Cancel_changes_neither_file_nor_device()
    {
        XML_CLASS().write_setting({.all_en = 0,
                                   .rb_en = 0,
                                   .rb_duration = 500,
                                   .rb_ran = 1,
                                   .db_speed = 300,
                                   .db_ran = 20,
                                   .wheel_en = 0,
                                   .wheel_sen = 3});
        const QByteArray before = home->content();
        open();
        press(dialog, "resbtn");
        press(dialog, "canbtn");
        QVERIFY(!dialog->isVisible());
        QCOMPARE(home->content(), before);
        QVERIFY(sent.isEmpty());
        dialog->OnUSBConnect();
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 00 00 F401 01 00 03")}));
    }

    void Default_then_Apply_stores_a_double_click_range_of_40()
    {
        open();
        QCOMPARE(home->element("DB_RAN"), "30"_ba);
        press(dialog, "resbtn");
        press(dialog, "applybtn");
        QCOMPARE(home->element("DB_RAN"), "40"_ba);
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 DC05 03 01 02")}));
    }

    void other_sections_are_kept()
    {
        open();
        XML_CLASS().write_easysetting({.Environment = u"Indoor"_s, .Use = u"Percussion"_s});
        press(dialog, "pushButton_8");
        press(dialog, "applybtn");
        QCOMPARE(home->element("RB_DURATION"), "2000"_ba);
        QCOMPARE(home->element("USE"), "Percussion"_ba);
    }

    // The device

    void a_connection_sends_and_shows_what_is_stored()
    {
        open();
        changeEverything();
        XML_CLASS().write_setting({.all_en = 1,
                                   .rb_en = 0,
                                   .rb_duration = 2500,
                                   .rb_ran = 4,
                                   .db_speed = 700,
                                   .db_ran = 50,
                                   .wheel_en = 1,
                                   .wheel_sen = 3});
        const QByteArray before = home->content();
        dialog->OnUSBConnect();
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 00 C409 04 01 03")}));
        QCOMPARE(shown(), QList<int>({1, 0, 1, 2500, 4, 700, 50, 1}));
        QCOMPARE(home->content(), before);
        QVERIFY(dialog->isVisible());
    }

    void what_goes_out_is_what_the_form_shows_data()
    {
        QTest::addColumn<QList<QByteArray>>("edits"); // element, text, element, text ...
        QTest::addColumn<QList<int>>("form");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("far above")
            << QList<QByteArray>{"ALL_EN", "256", "RB_DURATION", "99999", "RB_RAN", "300"}
            << QList<int>{1, 1, 1, 2500, 5, 600, 30, 2} << frame("00A2000500 01 01 C409 05 01 02");
        QTest::newRow("below") << QList<QByteArray>{"RB_EN",     "-1", "RB_DURATION", "-1",
                                                    "RB_RAN",    "0",  "WHEEL_EN",    "512",
                                                    "WHEEL_SEN", "0"}
                               << QList<int>{1, 1, 1, 500, 1, 600, 30, 3}
                               << frame("00A2000500 01 01 F401 01 01 01");
        QTest::newRow("words") << QList<QByteArray>{"ALL_EN", "on",        "RB_DURATION",
                                                    "long",   "WHEEL_SEN", "high"}
                               << QList<int>{0, 1, 1, 500, 3, 600, 30, 3}
                               << frame("00A2000500 00 01 F401 03 01 01");
    }
    void what_goes_out_is_what_the_form_shows()
    {
        QFETCH(const QList<QByteArray>, edits);
        QFETCH(const QList<int>, form);
        QFETCH(const QByteArray, expected);
        XML_CLASS().read_setting();
        for (qsizetype i = 0; i < edits.size(); i += 2)
            home->edit(edits.at(i), edits.at(i + 1));
        const QByteArray before = home->content();
        open();
        QCOMPARE(shown(), form);
        dialog->OnUSBConnect();
        QCOMPARE(shown(), form);
        QCOMPARE(home->content(), before);
        press(dialog, "applybtn");
        QCOMPARE(sent, QList<QByteArray>({expected, expected}));
    }

    void a_connection_sends_nothing_that_no_file_gave_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("hasDirectory");
        QTest::addColumn<bool>("isSent");
        QTest::newRow("no directory for the file") << ""_ba << false << false;
        QTest::newRow("an empty file") << ""_ba << true << false;
        QTest::newRow("cut before the gestures")
            << "<data><easysetting><USE>Write</USE></easysetting>"_ba << true << false;
        QTest::newRow("cut within the gestures")
            << "<data><setting><ALL_EN>1</ALL_EN><RB_EN>1</RB_EN><RB_DURATION>15"_ba << true
            << false;
        QTest::newRow("one is missing")
            << "<data><setting><ALL_EN>1</ALL_EN><RB_EN>1</RB_EN><RB_DURATION>1500</RB_DURATION>"
               "<RB_RAN>3</RB_RAN><DB_SPEED>600</DB_SPEED><DB_RAN>30</DB_RAN>"
               "<WHEEL_EN>1</WHEEL_EN></setting></data>"_ba
            << true << false;
        QTest::newRow("zeros that another window wrote for what was missing")
            << "<data><setting><ALL_EN>0</ALL_EN><RB_EN>0</RB_EN><RB_DURATION>0</RB_DURATION>"
               "<RB_RAN>0</RB_RAN><DB_SPEED>0</DB_SPEED><DB_RAN>0</DB_RAN>"
               "<WHEEL_EN>0</WHEEL_EN><WHEEL_SEN>0</WHEEL_SEN></setting></data>"_ba
            << true << false;
        QTest::newRow("all are there")
            << "<data><setting><ALL_EN>1</ALL_EN><RB_EN>1</RB_EN><RB_DURATION>1500</RB_DURATION>"
               "<RB_RAN>3</RB_RAN><DB_SPEED>600</DB_SPEED><DB_RAN>30</DB_RAN>"
               "<WHEEL_EN>1</WHEEL_EN><WHEEL_SEN>2</WHEEL_SEN></setting></data>"_ba
            << true << true;
    }
    void a_connection_sends_nothing_that_no_file_gave()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const bool, hasDirectory);
        QFETCH(const bool, isSent);
        if (hasDirectory) {
            QFile file(home->path());
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(content), content.size());
        } else {
            home->removeConfigDirectory();
        }
        create();
        QLoggingCategory::setFilterRules(u"quorvel.settings=true"_s);
        const auto quiet = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });
        static QStringList lines;
        lines.clear();
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &context, const QString &text) {
                if (text.contains(u"gestures"_s))
                    lines += QString::fromLatin1(context.category) + u": "_s + text;
            });
        dialog->OnUSBConnect();
        qInstallMessageHandler(before);
        if (isSent) {
            QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 DC05 03 01 02")}));
            QCOMPARE(lines, QStringList());
        } else {
            QCOMPARE(sent, QList<QByteArray>());
            QCOMPARE(lines, QStringList({u"quorvel.settings: the touch frame is not told gestures: "
                                         "%1 does not give all of them"_s.arg(home->path())}));
        }
    }

    void what_a_file_gave_before_it_was_emptied_is_not_sent_either()
    {
        open();
        dialog->OnUSBConnect();
        QCOMPARE(sent.size(), 1);
        QVERIFY(QFile::resize(home->path(), 0));
        dialog->OnUSBConnect();
        QCOMPARE(sent.size(), 1);
        // Who presses Apply has seen what goes out.
        press(dialog, "applybtn");
        QCOMPARE(sent.size(), 2);
        dialog->OnUSBConnect();
        QCOMPARE(sent.size(), 3);
    }

    void a_connection_is_served_without_the_dialog_being_shown()
    {
        create();
        dialog->OnUSBConnect();
        dialog->OnUSBConnect();
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 DC05 03 01 02"),
                                          frame("00A2000500 01 01 DC05 03 01 02")}));
        QVERIFY(!dialog->isVisible());
    }

    void a_frame_that_may_have_forgotten_is_told_what_is_kept_and_the_form_stays()
    {
        open();
        press(dialog, "applybtn");
        sent.clear();
        const QString notice = in<QLabel>(dialog, "noticeLab")->text();
        QVERIFY(!notice.isEmpty());
        dialog->OnWakeUp();
        QCOMPARE(in<QLabel>(dialog, "noticeLab")->text(), notice);
        changeEverything();
        dialog->OnWakeUp();
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 DC05 03 01 02"),
                                          frame("00A2000500 01 01 DC05 03 01 02")}));
        QCOMPARE(shown(), everythingChanged());
    }

    void a_report_changes_nothing()
    {
        open();
        changeEverything();
        const QByteArray before = home->content();
        QByteArray report(64, '\xFF');
        dialog->DoRecv03(reinterpret_cast<UCHAR *>(report.data()));
        QCOMPARE(report, QByteArray(64, '\xFF'));
        QCOMPARE(shown(), everythingChanged());
        QCOMPARE(home->content(), before);
        QVERIFY(sent.isEmpty());
    }

    void the_outcome_of_Apply_is_told_in_the_window_data()
    {
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("canKeep");
        QTest::addColumn<QString>("line");     // %1 stands for the file
        QTest::addColumn<QString>("sentence"); // at the button, likewise
        QTest::newRow("sent and kept")
            << true << true << u"Kept, and sent to the touch frame."_s << QString();
        QTest::newRow("kept for later")
            << false << true << u"Kept. Sent when a frame is connected by USB."_s << Notice;
        QTest::newRow("sent, not kept")
            << true << false << u"Sent. Not kept: cannot write %1"_s
            << u"The settings are sent, but %1 cannot be written: they are not kept."_s;
        QTest::newRow("neither") << false << false << u"Not kept: cannot write %1"_s
                                 << u"No touch frame is connected, and %1 cannot be written: the "
                                    "settings are not kept."_s;
    }
    void the_outcome_of_Apply_is_told_in_the_window()
    {
        QFETCH(const bool, connected);
        QFETCH(const bool, canKeep);
        QFETCH(const QString, line);
        QFETCH(const QString, sentence);
        open();
        const auto *notice = in<QLabel>(dialog, "noticeLab");
        QCOMPARE(notice->text(), QString());
        dialog->setConnected(connected);
        if (!canKeep)
            home->removeConfigDirectory();
        press(dialog, "applybtn");
        const auto withFile = [this](QString words) {
            return words.replace(u"%1"_s, home->path());
        };
        QCOMPARE(notice->text(), withFile(line));
        QCOMPARE(in(dialog, "applybtn")->toolTip(), withFile(sentence));
        QCOMPARE(in(dialog, "applybtn")->accessibleDescription(), withFile(sentence));
        QVERIFY(notice->isVisible());
        QVERIFY(notice->sizeHint().width() <= notice->width() ||
                notice->toolTip() == notice->text());
        QVERIFY(notice->sizeHint().height() <= notice->height());
        QVERIFY(!canKeep || notice->font().pointSize() == 9);
        // The slow reader has time.
        QTest::qWait(200);
        QVERIFY(!notice->text().isEmpty());
        QVERIFY(!QToolTip::isVisible());
    }

    void the_outcome_stays_until_the_next_change_or_closing_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"slider", "check box", "stepper", "Cancel", "connection"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void the_outcome_stays_until_the_next_change_or_closing()
    {
        QFETCH(const QString, way);
        open();
        press(dialog, "applybtn");
        const auto *notice = in<QLabel>(dialog, "noticeLab");
        QVERIFY(!notice->text().isEmpty());
        in<QWidget>(dialog, "dbran")->setFocus();
        QTest::keyClick(slider(u"dbran"_s), Qt::Key_F1);
        QVERIFY(!notice->text().isEmpty());
        if (way == "slider"_L1)
            QTest::keyClick(slider(u"dbran"_s), Qt::Key_Right);
        else if (way == "check box"_L1)
            box(u"WheelEn"_s)->click();
        else if (way == "stepper"_L1)
            press(dialog, "pushButton_15");
        else if (way == "Cancel"_L1)
            press(dialog, "canbtn");
        else
            dialog->OnUSBConnect();
        QCOMPARE(notice->text(), QString());
        QCOMPARE(in(dialog, "applybtn")->toolTip(), QString());
        QCOMPARE(in(dialog, "applybtn")->accessibleDescription(), QString());
    }

    void OK_leaves_its_outcome_for_the_next_opening_unless_all_went_well()
    {
        open();
        const auto *notice = in<QLabel>(dialog, "noticeLab");
        press(dialog, "okbtn");
        dialog->show();
        QCOMPARE(notice->text(), u"Kept. Sent when a frame is connected by USB."_s);
        dialog->setConnected(true);
        press(dialog, "okbtn");
        dialog->show();
        QCOMPARE(notice->text(), QString());
        home->removeConfigDirectory();
        press(dialog, "pushButton_8");
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        dialog->show();
        QCOMPARE(notice->text(), u"Sent. Not kept: cannot write "_s + home->path());
    }

    void settings_that_were_kept_before_are_not_kept_when_their_file_is_gone()
    {
        open();
        dialog->setConnected(true);
        press(dialog, "applybtn");
        home->removeConfigDirectory();
        press(dialog, "applybtn");
        QCOMPARE(in<QLabel>(dialog, "noticeLab")->text(),
                 u"Sent. Not kept: cannot write "_s + home->path());
    }

    void what_a_file_that_can_only_be_read_does_not_take_is_not_called_kept()
    {
        open();
        dialog->setConnected(true);
        QVERIFY(QFile::setPermissions(home->path(), QFile::ReadOwner));
        const OrdinaryUser user;
        press(dialog, "pushButton_8");
        press(dialog, "applybtn");
        QCOMPARE(in<QLabel>(dialog, "noticeLab")->text(),
                 u"Sent. Not kept: cannot write "_s + home->path());
        QCOMPARE(home->element("RB_DURATION"), "1500"_ba);
    }

    void Apply_without_a_frame_says_so_at_the_button()
    {
        open();
        QCOMPARE(in(dialog, "applybtn")->toolTip(), QString());
        press(dialog, "pushButton_8");
        press(dialog, "applybtn");
        QCOMPARE(in(dialog, "applybtn")->toolTip(), Notice);
        QCOMPARE(in(dialog, "applybtn")->accessibleDescription(), Notice);
        QCOMPARE(home->element("RB_DURATION"), "2000"_ba);
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 D007 03 01 02")}));
    }

    void Apply_without_a_frame_does_not_claim_to_have_kept_what_it_could_not()
    {
        home->removeConfigDirectory();
        open();
        press(dialog, "pushButton_8");
        press(dialog, "applybtn");
        const QString note = in(dialog, "applybtn")->toolTip();
        QVERIFY(note.contains(home->path()));
        QVERIFY(note.endsWith(u"the settings are not kept."_s));
        QVERIFY(!home->hasConfigDirectory());
    }

    void another_program_s_edit_shows_at_the_next_opening()
    {
        open();
        dialog->close();
        home->edit("RB_DURATION", "2500");
        dialog->show();
        QCOMPARE(in<QSlider>(dialog, "rbspeed")->value(), 2500);
    }

    void OK_without_a_frame_leaves_the_note_at_the_button()
    {
        open();
        press(dialog, "okbtn");
        QVERIFY(!dialog->isVisible());
        dialog->show();
        QCOMPARE(in(dialog, "applybtn")->toolTip(), Notice);
        QCOMPARE(in(dialog, "applybtn")->accessibleDescription(), Notice);
    }

    void what_was_kept_without_a_frame_is_sent_on_connection_and_the_note_goes()
    {
        open();
        press(dialog, "pushButton_8");
        press(dialog, "applybtn");
        sent.clear();
        dialog->setConnected(true);
        QCOMPARE(in(dialog, "applybtn")->toolTip(), Notice);
        dialog->OnUSBConnect();
        QCOMPARE(sent, QList<QByteArray>({frame("00A2000500 01 01 D007 03 01 02")}));
        QCOMPARE(in(dialog, "applybtn")->toolTip(), QString());
        QCOMPARE(in(dialog, "applybtn")->accessibleDescription(), QString());
    }

    void Apply_with_a_frame_takes_the_note_away()
    {
        open();
        press(dialog, "applybtn");
        dialog->setConnected(true);
        press(dialog, "applybtn");
        QCOMPARE(in(dialog, "applybtn")->toolTip(), QString());
        QCOMPARE(in(dialog, "applybtn")->accessibleDescription(), QString());
        QCOMPARE(sent.size(), 2);
    }

    void after_a_frame_is_gone_Apply_says_so_again()
    {
        open();
        dialog->setConnected(true);
        press(dialog, "applybtn");
        dialog->setConnected(false);
        QCOMPARE(in(dialog, "applybtn")->toolTip(), QString());
        press(dialog, "applybtn");
        QCOMPARE(in(dialog, "applybtn")->toolTip(), Notice);
    }

    // Keys

    void C_on_the_double_click_range_shows_the_diagnostics()
    {
        open();
        advset_dlg diagnostics(window.get());
        slider(u"dbran"_s)->setFocus();
        QTest::keyClick(slider(u"dbran"_s), Qt::Key_C);
        QVERIFY(diagnostics.isVisible());
        QVERIFY(QTest::qWaitForWindowActive(&diagnostics));
        QVERIFY(dialog->isVisible());
    }

    void C_elsewhere_and_other_keys_there_show_no_diagnostics()
    {
        open();
        const advset_dlg diagnostics(window.get());
        for (const QString &name : {u"rbspeed"_s, u"rbran"_s, u"dbspeed"_s, u"WheelSen"_s}) {
            slider(name)->setFocus();
            QTest::keyClick(slider(name), Qt::Key_C);
        }
        for (const QString &name : {u"checkBox"_s, u"pushButton_5"_s, u"pushButton_6"_s}) {
            in<QWidget>(dialog, name)->setFocus();
            QTest::keyClick(in<QWidget>(dialog, name), Qt::Key_C);
        }
        slider(u"dbran"_s)->setFocus();
        for (const Qt::Key key : {Qt::Key_B, Qt::Key_D, Qt::Key_3, Qt::Key_F1})
            QTest::keyClick(slider(u"dbran"_s), key);
        QVERIFY(!diagnostics.isVisible());
    }

    void C_without_diagnostics_does_nothing()
    {
        open();
        slider(u"dbran"_s)->setFocus();
        QTest::keyClick(slider(u"dbran"_s), Qt::Key_C);
        QVERIFY(dialog->isVisible());
        useradv_dlg alone(nullptr);
        alone.show();
        alone.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&alone));
        auto *range = alone.findChild<QSlider *>(u"dbran"_s);
        range->setFocus();
        QVERIFY(range->hasFocus());
        QTest::keyClick(range, Qt::Key_C);
        QVERIFY(alone.isVisible());
    }

    // The mouse beside the controls

    void a_click_on_the_words_of_a_slider_gives_it_the_keyboard_and_moves_nothing()
    {
        open();
        const QList<int> before = shown();
        box(u"checkBox"_s)->setFocus();
        for (const auto &[words, name] : {std::pair(u"label_5"_s, u"rbspeed"_s),
                                          {u"label_4"_s, u"rbran"_s},
                                          {u"label_2"_s, u"dbspeed"_s},
                                          {u"label_3"_s, u"dbran"_s},
                                          {u"label_7"_s, u"WheelSen"_s}}) {
            QTest::mouseClick(in<QLabel>(dialog, words), Qt::LeftButton);
            QCOMPARE(dialog->focusWidget(), slider(name));
        }
        // Other words, and what lies between, have none to give it to.
        QTest::mouseClick(in<QLabel>(dialog, "label"), Qt::LeftButton);
        QTest::mouseClick(in<QGroupBox>(dialog, "groupBox"), Qt::LeftButton, {}, QPoint(3, 30));
        QTest::mouseClick(dialog, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(dialog->focusWidget(), slider(u"WheelSen"_s));
        QCOMPARE(shown(), before);
    }

    void Escape_and_Enter_do_nothing_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Escape") << Qt::Key_Escape;
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
    }
    void Escape_and_Enter_do_nothing()
    {
        QFETCH(const Qt::Key, key);
        open();
        const QByteArray before = home->content();
        changeEverything();
        QTest::keyClick(dialog, key);
        for (const QString &name : {u"checkBox"_s, u"dbran"_s, u"pushButton_11"_s, u"resbtn"_s,
                                    u"okbtn"_s, u"canbtn"_s, u"applybtn"_s}) {
            in<QWidget>(dialog, name)->setFocus();
            QTest::keyClick(in<QWidget>(dialog, name), key);
        }
        QVERIFY(dialog->isVisible());
        QCOMPARE(shown(), everythingChanged());
        QCOMPARE(home->content(), before);
        QVERIFY(sent.isEmpty());
    }

    void no_button_looks_as_if_Enter_would_press_it()
    {
        open();
        for (QPushButton *button : dialog->findChildren<QPushButton *>()) {
            button->setFocus();
            QVERIFY(!button->isDefault());
            QVERIFY(!button->autoDefault());
        }
    }

    void the_space_bar_presses_the_button_in_focus_and_arrows_move_a_slider()
    {
        open();
        in(dialog, "pushButton_8")->setFocus();
        QTest::keyClick(in(dialog, "pushButton_8"), Qt::Key_Space);
        QCOMPARE(slider(u"rbspeed"_s)->value(), 2000);
        slider(u"rbspeed"_s)->setFocus();
        QTest::keyClick(slider(u"rbspeed"_s), Qt::Key_Left);
        QCOMPARE(slider(u"rbspeed"_s)->value(), 1500);
        in(dialog, "canbtn")->setFocus();
        QTest::keyClick(in(dialog, "canbtn"), Qt::Key_Space);
        QVERIFY(!dialog->isVisible());
    }
};

QTEST_MAIN(TestUserAdvDlg)
#include "tst_useradv_dlg.moc"
