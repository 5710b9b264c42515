// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/lightset_dlg.h"
#include "dialogs/test_win.h"
#include "tests/support/paints.h"
#include "tests/support/plainlights.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int W = 1920;
constexpr int H = 1080;
constexpr QRect Panel(280, 50, 501, 471);

// The 64 bytes of a frame that begins like this and goes on with zeros, as hexadecimal text.
QByteArray whole(const char *beginning)
{
    return QByteArray::fromHex(beginning).leftJustified(64, '\0').toHex(' ');
}

const QByteArray ReadAdc = whole("00 A2 05");
const QByteArray ScanX = whole("00 A5 01");
const QByteArray ScanY = whole("00 A5 02");

const char *const SixFields[] = {"MinADC",     "MaxADC",       "MinEdgeADC",
                                 "MaxEdgeADC", "ADCThreshold", "EdgeADCThreshold"};

QString hex(const char *digits)
{
    return QString::fromLatin1(digits);
}

QImage withoutPanel(const QImage &picture)
{
    QImage image = picture.convertToFormat(QImage::Format_RGB32);
    QPainter(&image).fillRect(Panel, Qt::gray);
    return image;
}

// Text that does not fit into its widget.
QStringList clippedTexts(const QWidget &window)
{
    QStringList clipped;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        const int height =
            label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
        if (height > label->height() ||
            (!label->wordWrap() && label->sizeHint().width() > label->width()))
            clipped.append(label->objectName());
    }
    for (const QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->fontMetrics().horizontalAdvance(button->text()) + 8 > button->width() ||
            button->fontMetrics().height() + 4 > button->height())
            clipped.append(button->objectName());
    }
    return clipped;
}

} // namespace

class TestLightSetDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LightSet_dlg> screen;
    QByteArrayList frames;

    QByteArrayList sent() { return std::exchange(frames, {}); }
    QString text(const char *field) const { return in<QLineEdit>(screen, field)->text(); }
    void type(const char *field, const char *typed) const
    {
        in<QLineEdit>(screen, field)->clear();
        QTest::keyClicks(in<QLineEdit>(screen, field), QString::fromLatin1(typed));
    }
    QPushButton *button(const char *name) const { return in(screen, name); }
    void tick(int times = 1) const
    {
        for (int i = 0; i < times; ++i)
            QMetaObject::invokeMethod(screen.get(), "ontimer");
    }
    void report(std::initializer_list<UCHAR> bytes) const
    {
        UCHAR buffer[64] = {};
        std::copy(bytes.begin(), bytes.end(), buffer);
        screen->DoRecv03(buffer);
        // Whoever sent it may use the buffer again at once.
        std::memset(buffer, 0xEE, sizeof buffer);
    }
    // Time goes on by tick() alone, from the first one on.
    void show()
    {
        auto *timer = screen->findChild<QTimer *>();
        const QSignalBlocker noTicks(timer);
        screen->show();
        QVERIFY(QTest::qWaitForWindowExposed(screen.get()));
        timer->stop();
        QTRY_COMPARE(screen->size(), QSize(W, H));
        sent();
    }
    // 96 X and 54 Y lights; the next tick reads the chosen light.
    void showWithLights()
    {
        show();
        tick(5);
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 96, 0, 54, 0});
    }
    // The lines, and 96 X and 54 Y lights. The least line is 0x0E00 and this byte.
    void answerSettings(UCHAR least = 0xD8) const
    {
        report({0xFC, 0xA2, 0x85, 0x00, 0x00, least, 0x0E, 0xA0, 0x0F, 0xB8, 0x0B,
                0x80, 0x0C, 0xE8, 0x03, 0x58, 0x02,  96,   0,    54,   0});
    }
    // X light 10, offset -5, AGC 50, ADC 3980, ORG 3892, on.
    void answerLight() const
    {
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, 0xFB, 50, 0x8C, 0x0F, 0x34, 0x0F, 0});
    }
    // The same light with another offset.
    void answerOffset(int offset) const
    {
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, UCHAR(offset), 50, 0x8C, 0x0F, 0x34,
                0x0F, 0});
    }
    QString notice() const
    {
        const auto *label = in<QLabel>(screen, "notice");
        return label->isVisible() ? label->text() : QString();
    }
    void release(QPoint at) const { QTest::mouseClick(screen.get(), Qt::LeftButton, {}, at); }

private slots:
    void init()
    {
        screen = std::make_unique<LightSet_dlg>();
        connect(screen.get(), &LightSet_dlg::Write03, screen.get(), [this](const UCHAR *frame) {
            frames.append(QByteArray(reinterpret_cast<const char *>(frame), 64).toHex(' '));
        });
        frames.clear();
    }
    void cleanup() { screen.reset(); }

    // The form

    void every_widget_is_in_its_place_data()
    {
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const char *parent, QRect geometry,
                            const char *text = "") {
            QTest::newRow(name) << QString::fromLatin1(parent) << geometry
                                << QString::fromLatin1(text);
        };
        row("groupBox_3", "LightSet_dlg", Panel);
        row("groupBox", "groupBox_3", {20, 20, 241, 221}, "ADCline Setting");
        row("label_3", "groupBox", {20, 30, 91, 20}, "ADC range:");
        row("label_6", "groupBox", {20, 70, 91, 20}, "Edge ADC range: ");
        row("label_4", "groupBox", {20, 110, 101, 20}, "ADC threshold:");
        row("label_5", "groupBox", {20, 150, 101, 20}, "Edge ADC threshold:");
        row("label", "groupBox", {130, 20, 54, 12}, "Min");
        row("label_10", "groupBox", {180, 20, 54, 12}, "Max");
        row("label_12", "groupBox", {130, 60, 54, 12}, "Min");
        row("label_11", "groupBox", {180, 60, 54, 12}, "Max");
        row("MinADC", "groupBox", {130, 30, 41, 20});
        row("MaxADC", "groupBox", {180, 30, 41, 20});
        row("MinEdgeADC", "groupBox", {130, 70, 41, 20});
        row("MaxEdgeADC", "groupBox", {180, 70, 41, 20});
        row("ADCThreshold", "groupBox", {130, 110, 41, 20});
        row("EdgeADCThreshold", "groupBox", {130, 150, 41, 20});
        row("ADCDefBtn", "groupBox", {30, 180, 71, 23}, "Default");
        row("ADCSetBtn", "groupBox", {140, 180, 71, 23}, "Set");
        row("groupBox_2", "groupBox_3", {20, 250, 241, 201}, "Light Setting");
        row("label_7", "groupBox_2", {25, 30, 101, 20}, "Light Num:");
        row("LightDir", "groupBox_2", {85, 30, 21, 20});
        row("LightNum", "groupBox_2", {110, 30, 41, 20});
        row("LightChooseBtn_2", "groupBox_2", {160, 30, 61, 21}, "Disable");
        row("label_9", "groupBox_2", {25, 58, 51, 20}, "ADC:");
        row("LightADC", "groupBox_2", {85, 58, 51, 20});
        row("LightChooseBtn", "groupBox_2", {160, 60, 61, 21}, "Choose");
        row("label_13", "groupBox_2", {25, 88, 51, 20}, "ORG:");
        row("LightORG", "groupBox_2", {85, 88, 51, 20});
        row("label_8", "groupBox_2", {25, 118, 51, 20}, "AGC:");
        row("LightAGC", "groupBox_2", {85, 118, 51, 20});
        row("LightAGCSet", "groupBox_2", {150, 118, 51, 20});
        row("label_2", "groupBox_2", {20, 160, 91, 16}, "signal intensity:");
        row("LightAddBtn", "groupBox_2", {110, 158, 51, 23}, "+");
        row("LightDecBtn", "groupBox_2", {170, 158, 51, 23}, "-");
        row("ExitBtn", "groupBox_3", {280, 410, 75, 41}, "Exit");
        QTest::newRow("label_15")
            << u"groupBox_3"_s << QRect(280, 30, 201, 261)
            << u"WARNING!\n\nPlease don't touch the screan, and use your mouse to operat this dialog\uFF01"_s;
    }
    void every_widget_is_in_its_place()
    {
        QFETCH(const QString, parent);
        QFETCH(const QRect, geometry);
        QFETCH(const QString, text);
        const auto *widget = in<QWidget>(screen, QTest::currentDataTag());
        QVERIFY(widget);
        QCOMPARE(widget->parentWidget()->objectName(), parent);
        QCOMPARE(widget->geometry(), geometry);
        const bool isBox = qobject_cast<const QGroupBox *>(widget);
        QCOMPARE(widget->property(isBox ? "title" : "text").toString(), text);
        QCOMPARE(widget->font().family(), u"Tahoma"_s);
    }

    void the_window_is_as_drawn()
    {
        QCOMPARE(screen->windowTitle(), u"Dialog"_s);
        QCOMPARE(screen->size(), QSize(999, 714));
        QCOMPARE(in<QLabel>(screen, "label_7")->font().pointSize(), 8);
        QCOMPARE(in<QLabel>(screen, "label_11")->font().pointSize(), 7);
        QCOMPARE(in<QLabel>(screen, "label_12")->font().pointSize(), 7);
        QCOMPARE(in<QLabel>(screen, "label_15")->font().pointSize(), 13);
        QVERIFY(in<QLabel>(screen, "label_15")->font().bold());
        QCOMPARE(in<QLabel>(screen, "label_15")->styleSheet(), u"color: rgb(255, 40, 12);"_s);
    }

    void at_first_only_what_can_be_used_is_enabled()
    {
        QVERIFY(button("LightChooseBtn")->isHidden());
        for (const char *name : {"LightChooseBtn_2", "LightAddBtn", "LightDecBtn"})
            QVERIFY(!button(name)->isEnabled());
        for (const char *name : {"LightADC", "LightORG", "LightAGC", "LightAGCSet"}) {
            QVERIFY(!in<QLineEdit>(screen, name)->isEnabled());
            QVERIFY(in<QLineEdit>(screen, name)->isReadOnly());
            // Their values are as easy to read as what is typed.
            QCOMPARE(
                in<QLineEdit>(screen, name)->palette().color(QPalette::Disabled, QPalette::Text),
                in<QLineEdit>(screen, "LightNum")
                    ->palette()
                    .color(QPalette::Active, QPalette::Text));
        }
        for (const char *name : {"LightDir", "LightNum", "MinADC", "MaxADC", "MinEdgeADC",
                                 "MaxEdgeADC", "ADCThreshold", "EdgeADCThreshold"}) {
            QVERIFY(in<QLineEdit>(screen, name)->isEnabled());
            QVERIFY(!in<QLineEdit>(screen, name)->isReadOnly());
            QCOMPARE(text(name), QString());
        }
    }

    void nothing_is_clipped() { QCOMPARE(clippedTexts(*screen), QStringList()); }

    void four_digits_and_an_axis_fit_into_their_fields()
    {
        show();
        for (const char *name : {"MinADC", "MaxADC", "MinEdgeADC", "MaxEdgeADC", "ADCThreshold",
                                 "EdgeADCThreshold", "LightDir", "LightNum"}) {
            const bool isAxis = qstrcmp(name, "LightDir") == 0;
            const QString longest = isAxis                           ? u"X"_s
                                    : qstrcmp(name, "LightNum") == 0 ? u"499"_s
                                                                     : u"4095"_s;
            in<QLineEdit>(screen, name)->setText(longest);
            in<QLineEdit>(screen, name)->setCursorPosition(0);
            // The place behind the last letter is within the field.
            in<QLineEdit>(screen, name)->end(false);
            QVERIFY2(in<QLineEdit>(screen, name)->fontMetrics().horizontalAdvance(longest) + 8 <=
                         in<QLineEdit>(screen, name)->width(),
                     name);
            QVERIFY2(in<QLineEdit>(screen, name)->fontMetrics().height() <=
                         in<QLineEdit>(screen, name)->height() - 4,
                     name);
        }
    }

    void everything_is_reachable_by_keyboard_and_named()
    {
        showWithLights();
        answerLight();
        QStringList reached;
        in<QLineEdit>(screen, "LightDir")->setFocus();
        for (int i = 0; i < 15; ++i) {
            const QWidget *focused = screen->focusWidget();
            reached.append(focused->objectName());
            QVERIFY(!focused->accessibleName().isEmpty() ||
                    focused->property("text").toString().size() > 3);
            QTest::keyClick(screen->focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached,
                 QStringList({u"LightDir"_s, u"LightNum"_s, u"LightChooseBtn_2"_s, u"LightAddBtn"_s,
                              u"LightDecBtn"_s, u"MinADC"_s, u"MaxADC"_s, u"MinEdgeADC"_s,
                              u"MaxEdgeADC"_s, u"ADCThreshold"_s, u"EdgeADCThreshold"_s,
                              u"ADCDefBtn"_s, u"ADCSetBtn"_s, u"ExitBtn"_s, u"LightDir"_s}));
    }

    void enter_in_a_field_presses_no_button()
    {
        showWithLights();
        answerLight();
        for (const char *field : {"LightNum", "MinADC"}) {
            in<QLineEdit>(screen, field)->setFocus();
            QTest::keyClick(in<QLineEdit>(screen, field), Qt::Key_Return);
        }
        QCOMPARE(text("MinADC"), QString());
        QCOMPARE(text("LightAGCSet"), u"-5"_s);
        QCOMPARE(sent(), QByteArrayList());
        QVERIFY(screen->isVisible());
    }

    void the_slots_are_in_their_order()
    {
        QByteArrayList slotsFound;
        const QMetaObject &meta = LightSet_dlg::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Slot)
                slotsFound.append(meta.method(i).name());
        }
        QCOMPARE(slotsFound,
                 QByteArrayList({"on_LightChooseBtn_2_clicked", "on_LightChooseBtn_clicked",
                                 "on_LightDecBtn_clicked", "on_LightAddBtn_clicked",
                                 "on_ADCSetBtn_clicked", "on_ADCDefBtn_clicked",
                                 "on_ExitBtn_clicked", "ontimer", "DoRecv03", "OnLinkEnded"}));
    }

    // Showing, polling, hiding

    void showing_reads_the_settings_at_once_and_fills_the_screen()
    {
        screen->show();
        QCOMPARE(sent(), QByteArrayList({ReadAdc}));
        const auto *timer = screen->findChild<QTimer *>();
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 180);
        QVERIFY(QTest::qWaitForWindowExposed(screen.get()));
        QTRY_COMPARE(screen->geometry(), QRect(0, 0, W, H));
        QVERIFY(screen->isFullScreen());
        QCOMPARE(sent(), QByteArrayList());
    }

    void it_goes_back_to_full_screen_when_that_is_taken_away()
    {
        show();
        screen->setWindowState(Qt::WindowNoState);
        QTRY_VERIFY(screen->isFullScreen());
        QTRY_COMPARE(screen->geometry(), QRect(0, 0, W, H));
        QVERIFY(screen->isVisible());
        QCOMPARE(sent(), QByteArrayList());
    }

    void it_fills_the_screen_above_a_visible_parent_too()
    {
        QWidget parent;
        parent.setGeometry(300, 300, 200, 100);
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        LightSet_dlg child(&parent);
        child.show();
        QVERIFY(QTest::qWaitForWindowExposed(&child));
        QTRY_COMPARE(child.geometry(), QRect(0, 0, W, H));
        QTest::keyClick(&child, Qt::Key_Escape);
        QVERIFY(!child.isVisible());
    }

    void the_first_light_read_goes_out_on_the_sixth_tick()
    {
        show();
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 96, 0, 54, 0});
        type("LightDir", "X");
        type("LightNum", "7");
        for (int i = 1; i <= 5; ++i) {
            tick();
            QCOMPARE(sent(), QByteArrayList());
        }
        tick();
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 07 03 00 01 07 00")}));
    }

    void polling_goes_light_y_scan_x_scan()
    {
        showWithLights();
        type("LightDir", "Y");
        type("LightNum", "53");
        const QByteArray light = whole("00 A2 07 03 00 02 35 00");
        tick(7);
        QCOMPARE(sent(), QByteArrayList({light, ScanY, ScanX, light, ScanY, ScanX, light}));
    }

    void without_a_chosen_light_the_scans_go_on()
    {
        showWithLights();
        tick(6);
        QCOMPARE(sent(), QByteArrayList({ScanY, ScanX, ScanY, ScanX}));
    }

    void what_waited_for_the_last_page_of_a_scan_is_asked_for_at_once()
    {
        showWithLights();
        tick(2);
        QCOMPARE(sent(), QByteArrayList({ScanY}));
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 0, 0, 200, 20});
        tick();
        QCOMPARE(sent(), QByteArrayList());
        screen->findChild<QTimer *>()->start(60000);
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 27, 0, 200, 20});
        QTRY_COMPARE(frames, QByteArrayList({ScanX}));
        // The end of a scan is where its last light is, whichever light that page begins with.
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 200, 20});
        tick(2);
        sent();
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 200, 20});
        QTRY_COMPARE(frames, QByteArrayList({ScanY}));
    }

    void what_waited_for_a_scan_stays_unasked_in_a_pause_and_behind_the_end_of_the_showing()
    {
        showWithLights();
        const auto waitForY = [this](UCHAR gain) {
            tick(2);
            QCOMPARE(sent().last(), ScanY);
            report({0xFC, 0xA5, 0x82, 0x00, 0x00, 0, 0, 200, gain});
            tick();
            QCOMPARE(sent(), QByteArrayList());
            screen->findChild<QTimer *>()->start(60000);
        };
        waitForY(20);
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        sent();
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 27, 0, 200, 20});
        QTest::qWait(50);
        QCOMPARE(sent(), QByteArrayList());
        tick(11);
        QVERIFY(sent().contains(ScanX));
        waitForY(21);
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 27, 0, 200, 21});
        screen->close();
        QCOMPARE(sent(), QByteArrayList({ReadAdc}));
        QTest::qWait(50);
        QCOMPARE(sent(), QByteArrayList());
        QVERIFY(!screen->findChild<QTimer *>()->isActive());
    }

    void the_timer_drives_the_polling()
    {
        screen->show();
        QTRY_VERIFY(frames.size() >= 3);
        QCOMPARE(frames.mid(0, 3), QByteArrayList({ReadAdc, ScanY, ScanX}));
    }

    void writing_pauses_the_polling_for_ten_ticks_and_it_resumes_where_it_was()
    {
        showWithLights();
        tick(2);
        QCOMPARE(sent(), QByteArrayList({ScanY}));
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent().size(), 1);
        tick(10);
        QCOMPARE(sent(), QByteArrayList());
        tick(2);
        QCOMPARE(sent(), QByteArrayList({ScanX}));
    }

    void hiding_reads_the_settings_again_and_stops_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"escape", "exit", "close", "hide"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void hiding_reads_the_settings_again_and_stops()
    {
        QFETCH(const QString, way);
        showWithLights();
        tick();
        screen->findChild<QTimer *>()->start();
        sent();
        if (way == u"escape"_s)
            QTest::keyClick(screen.get(), Qt::Key_Escape);
        else if (way == u"exit"_s)
            press(screen, "ExitBtn");
        else if (way == u"close"_s)
            screen->close();
        else
            screen->hide();
        QVERIFY(!screen->isVisible());
        QCOMPARE(sent(), QByteArrayList({ReadAdc}));
        QVERIFY(!screen->findChild<QTimer *>()->isActive());
    }

    void showing_again_begins_anew()
    {
        showWithLights();
        type("LightDir", "X");
        type("LightNum", "7");
        tick(2);
        screen->hide();
        sent();
        screen->show();
        QCOMPARE(sent(), QByteArrayList({ReadAdc}));
        screen->findChild<QTimer *>()->stop();
        tick(5);
        QCOMPARE(sent(), QByteArrayList());
        // The counts are unknown again: no light is read.
        tick(3);
        QCOMPARE(sent(), QByteArrayList({ScanY, ScanX}));
        type("LightDir", "Y");
        type("LightNum", "0");
        tick(3);
        QCOMPARE(sent(), QByteArrayList({ScanY, ScanX}));
    }

    void minimised_and_restored_it_goes_on()
    {
        showWithLights();
        screen->findChild<QTimer *>()->start();
        screen->showMinimized();
        QTRY_VERIFY(screen->isMinimized());
        QTest::qWait(300);
        screen->setWindowState(Qt::WindowFullScreen);
        QVERIFY(QTest::qWaitForWindowExposed(screen.get()));
        QVERIFY(screen->findChild<QTimer *>()->isActive());
        QVERIFY(!frames.contains(ReadAdc));
    }

    // ADC line settings

    void the_settings_reply_fills_the_fields()
    {
        show();
        report({0xFC, 0xA2, 0x85, 0x00, 0x00, 0xD8, 0x0E, 0xA0, 0x0F, 0xB8, 0x0B,
                0x80, 0x0C, 0xE8, 0x03, 0x58, 0x02, 0x2C, 0x01, 0xFF, 0x00});
        QCOMPARE(text("MinADC"), u"3800"_s);
        QCOMPARE(text("MaxADC"), u"4000"_s);
        QCOMPARE(text("MinEdgeADC"), u"3000"_s);
        QCOMPARE(text("MaxEdgeADC"), u"3200"_s);
        QCOMPARE(text("ADCThreshold"), u"1000"_s);
        QCOMPARE(text("EdgeADCThreshold"), u"600"_s);
        // 300 X lights and 255 Y lights: just these are read.
        tick(5);
        for (const auto &[axis, number, frame] :
             {std::tuple("X", "299", whole("00 A2 07 03 00 01 2B 01")),
              std::tuple("Y", "254", whole("00 A2 07 03 00 02 FE 00")),
              std::tuple("X", "300", QByteArray()), std::tuple("Y", "255", QByteArray())}) {
            type("LightDir", axis);
            type("LightNum", number);
            sent();
            tick();
            QCOMPARE(sent(), frame.isEmpty() ? QByteArrayList() : QByteArrayList({frame}));
            tick(2);
        }
    }

    void values_of_sixteen_bits_are_shown_unsigned()
    {
        show();
        report({0xFC, 0xA2, 0x85, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x80, 0x00, 0x01, 0x01, 0x00, 0x00,
                0x00, 0xFE, 0xFF});
        QCOMPARE(text("MinADC"), u"65535"_s);
        QCOMPARE(text("MaxADC"), u"32768"_s);
        QCOMPARE(text("MinEdgeADC"), u"256"_s);
        QCOMPARE(text("MaxEdgeADC"), u"1"_s);
        QCOMPARE(text("ADCThreshold"), u"0"_s);
        QCOMPARE(text("EdgeADCThreshold"), u"65534"_s);
    }

    void default_fills_the_fields_and_sends_nothing()
    {
        show();
        type("MinADC", "1");
        press(screen, "ADCDefBtn");
        QCOMPARE(text("MinADC"), u"3800"_s);
        QCOMPARE(text("MaxADC"), u"4000"_s);
        QCOMPARE(text("MinEdgeADC"), u"3000"_s);
        QCOMPARE(text("MaxEdgeADC"), u"3200"_s);
        QCOMPARE(text("ADCThreshold"), u"1000"_s);
        QCOMPARE(text("EdgeADCThreshold"), u"600"_s);
        QCOMPARE(sent(), QByteArrayList());
    }

    void set_sends_the_six_fields()
    {
        show();
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent(),
                 QByteArrayList({whole("00 A2 04 0C 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02")}));
    }

    void the_largest_settings_are_sent()
    {
        show();
        for (const char *name : SixFields)
            type(name, "65535");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent(),
                 QByteArrayList({whole("00 A2 04 0C 00 FF FF FF FF FF FF FF FF FF FF FF FF")}));
        QCOMPARE(notice(), QString());
        for (const char *name : SixFields)
            type(name, "0");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 04 0C")}));
    }

    void settings_that_are_no_numbers_of_sixteen_bits_are_not_sent_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("nothing") << QString();
        QTest::newRow("letters") << u"abc"_s;
        QTest::newRow("a number and letters") << u"12a"_s;
        QTest::newRow("a fraction") << u"1.5"_s;
        QTest::newRow("digits in groups") << u"1,000"_s;
        QTest::newRow("other digits") << u"\u0661\u0660"_s;
        QTest::newRow("more than an integer holds") << u"99999999999"_s;
        QTest::newRow("one more than the largest") << u"65536"_s;
        QTest::newRow("negative") << u"-1"_s;
    }
    void settings_that_are_no_numbers_of_sixteen_bits_are_not_sent()
    {
        QFETCH(const QString, typed);
        show();
        for (const char *chosen : SixFields) {
            press(screen, "ADCDefBtn");
            in<QLineEdit>(screen, chosen)->clear();
            in<QLineEdit>(screen, chosen)->insert(typed);
            press(screen, "ADCSetBtn");
            QCOMPARE(sent(), QByteArrayList());
            QVERIFY2(screen->focusWidget() == in<QLineEdit>(screen, chosen), chosen);
            QCOMPARE(in<QLineEdit>(screen, chosen)->selectedText(), typed);
            QCOMPARE(notice(), in<QLineEdit>(screen, chosen)->accessibleName() +
                                   u": enter a whole number from 0 to 65535"_s);
        }
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent().size(), 1);
        QCOMPARE(notice(), QString());
    }

    void what_was_wrong_with_a_field_is_no_matter_at_the_next_showing()
    {
        show();
        // Nor is what the frame made of them.
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        QTRY_COMPARE(frames.size(), 2);
        answerSettings(0xD9);
        QVERIFY(!notice().isEmpty());
        in<QLineEdit>(screen, "MinADC")->clear();
        press(screen, "ADCSetBtn");
        QVERIFY(!notice().isEmpty());
        screen->close();
        show();
        QTest::qWait(2 * ScanWatch::LookMs);
        QCOMPARE(notice(), QString());
    }

    void a_smallest_value_above_the_largest_is_not_sent()
    {
        show();
        press(screen, "ADCDefBtn");
        type("MinADC", "4001");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent(), QByteArrayList());
        QCOMPARE(screen->focusWidget(), in<QLineEdit>(screen, "MinADC"));
        QCOMPARE(in<QLineEdit>(screen, "MinADC")->selectedText(), u"4001"_s);
        QCOMPARE(notice(), u"The smallest ADC value is above the largest"_s);
        type("MinADC", "4000");
        type("MinEdgeADC", "3201");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent(), QByteArrayList());
        QCOMPARE(screen->focusWidget(), in<QLineEdit>(screen, "MinEdgeADC"));
        QCOMPARE(notice(), u"The smallest ADC value at the edges is above the largest"_s);
        type("MinEdgeADC", "3200");
        press(screen, "ADCSetBtn");
        QCOMPARE(sent(),
                 QByteArrayList({whole("00 A2 04 0C 00 A0 0F A0 0F 80 0C 80 0C E8 03 58 02")}));
    }

    void what_became_of_settings_is_not_read_behind_the_end_of_the_showing()
    {
        show();
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        screen->close();
        QCOMPARE(sent().last(), ReadAdc);
        QTest::qWait(400);
        QCOMPARE(sent(), QByteArrayList());
        show();
        answerSettings(0xD9);
        QCOMPARE(text("MinADC"), u"3801"_s);
        QCOMPARE(notice(), QString());
    }

    void what_the_frame_makes_of_settings_is_read_and_shown()
    {
        show();
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        sent();
        // What was read before says nothing of them.
        answerSettings(0xD0);
        QCOMPARE(text("MinADC"), u"3800"_s);
        QCOMPARE(notice(), QString());
        tick(10);
        QTRY_VERIFY(!frames.isEmpty());
        QCOMPARE(sent(), QByteArrayList({ReadAdc}));
        // The answer has its time.
        tick(5);
        QCOMPARE(sent(), QByteArrayList());
        // The frame has kept another smallest value: 3801.
        answerSettings(0xD9);
        QCOMPARE(text("MinADC"), u"3801"_s);
        QCOMPARE(notice(), u"The touch frame has set other values"_s);
        press(screen, "ADCSetBtn");
        QTRY_COMPARE(frames.size(), 2);
        QCOMPARE(sent().last(), ReadAdc);
        QTRY_COMPARE(notice(), QString());
        // The same report is an answer again.
        answerSettings(0xD9);
        QCOMPARE(text("MinADC"), u"3801"_s);
        QCOMPARE(notice(), QString());
        // What it has later is somebody else's.
        answerSettings(0xDA);
        QCOMPARE(text("MinADC"), u"3802"_s);
        QCOMPARE(notice(), QString());
    }

    void a_setting_that_is_being_typed_is_left_alone()
    {
        show();
        type("MinADC", "37");
        answerSettings();
        QCOMPARE(text("MinADC"), u"37"_s);
        QCOMPARE(text("MaxADC"), u"4000"_s);
        screen->hide();
        show();
        answerSettings(0xD7);
        QCOMPARE(text("MinADC"), u"3799"_s);
    }

    // One light

    void a_light_reply_shows_the_light()
    {
        showWithLights();
        answerLight();
        QCOMPARE(text("LightDir"), u"X"_s);
        QCOMPARE(text("LightNum"), u"10"_s);
        QCOMPARE(text("LightAGCSet"), u"-5"_s);
        QCOMPARE(text("LightAGC"), u"50"_s);
        QCOMPARE(text("LightADC"), u"3980"_s);
        QCOMPARE(text("LightORG"), u"3892"_s);
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Disable"_s);
        for (const char *name : {"LightChooseBtn_2", "LightAddBtn", "LightDecBtn"})
            QVERIFY(button(name)->isEnabled());
    }

    void a_light_reply_at_the_limits()
    {
        showWithLights();
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x02, 0x2C, 0x01, 0x80, 0xFF, 0xFF, 0xFF, 0x00, 0x80,
                0x02});
        QCOMPARE(text("LightDir"), u"Y"_s);
        QCOMPARE(text("LightNum"), u"300"_s);
        QCOMPARE(text("LightAGCSet"), u"-128"_s);
        QCOMPARE(text("LightAGC"), u"255"_s);
        QCOMPARE(text("LightADC"), u"65535"_s);
        QCOMPARE(text("LightORG"), u"32768"_s);
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Enable"_s);
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x02, 0x2C, 0x01, 0x7F});
        QCOMPARE(text("LightAGCSet"), u"127"_s);
    }

    void a_reply_of_an_unknown_axis_leaves_axis_and_number_as_they_are()
    {
        showWithLights();
        answerLight();
        for (const UCHAR axis : {0, 3, 255}) {
            report({0xFC, 0xA2, 0x87, 0x00, 0x00, axis, 33, 0, axis, 1, 2, 0, 3, 0, 1});
            QCOMPARE(text("LightDir"), u"X"_s);
            QCOMPARE(text("LightNum"), u"10"_s);
            QCOMPARE(text("LightAGCSet"), axis == 255 ? u"-1"_s : QString::number(axis));
            QCOMPARE(text("LightAGC"), u"1"_s);
            QCOMPARE(text("LightADC"), u"2"_s);
            QCOMPARE(text("LightORG"), u"3"_s);
            QCOMPARE(button("LightChooseBtn_2")->text(), u"Enable"_s);
        }
    }

    void a_reply_of_an_unknown_axis_is_shown_before_there_is_a_light_too()
    {
        showWithLights();
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x03, 33, 0, 0x05, 1, 2, 0, 3, 0, 1});
        QCOMPARE(text("LightDir"), QString());
        QCOMPARE(text("LightNum"), QString());
        QCOMPARE(text("LightAGCSet"), u"5"_s);
        QCOMPARE(text("LightAGC"), u"1"_s);
        QCOMPARE(text("LightADC"), u"2"_s);
        QCOMPARE(text("LightORG"), u"3"_s);
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Enable"_s);
    }

    void reports_of_other_kinds_are_ignored_data()
    {
        QTest::addColumn<int>("classOf");
        QTest::addColumn<int>("sub");
        QTest::newRow("calibration") << 0x01 << 0x87;
        QTest::newRow("firmware") << 0xA3 << 0x80;
        QTest::newRow("scan, light reply's number") << 0xA5 << 0x87;
        QTest::newRow("scan, settings reply's number") << 0xA5 << 0x85;
        QTest::newRow("settings, scan's number") << 0xA2 << 0x81;
        QTest::newRow("settings, counts' number") << 0xA2 << 0x80;
        QTest::newRow("our own request") << 0xA2 << 0x07;
        QTest::newRow("zeros") << 0 << 0;
    }
    void reports_of_other_kinds_are_ignored()
    {
        QFETCH(const int, classOf);
        QFETCH(const int, sub);
        showWithLights();
        answerLight();
        tick();
        sent();
        const QImage before = screen->grab().toImage();
        report({0xFC,       UCHAR(classOf),
                UCHAR(sub), 0x00,
                0x00,       0x02,
                33,         0,
                77,         88,
                99,         77,
                88,         99,
                77,         88,
                99,         77,
                88,         99});
        QCOMPARE(screen->grab().toImage(), before);
        QCOMPARE(sent(), QByteArrayList());
        type("LightNum", "95");
        tick(3);
        QCOMPARE(sent(), QByteArrayList({ScanY, ScanX, whole("00 A2 07 03 00 01 5F 00")}));
    }

    void the_report_id_is_not_looked_at()
    {
        showWithLights();
        report({0x00, 0xA2, 0x87, 0x00, 0x00, 0x01, 11});
        QCOMPARE(text("LightNum"), u"11"_s);
    }

    void plus_from_minus_5_sends_minus_4_and_waits_for_the_reply()
    {
        showWithLights();
        answerLight();
        press(screen, "LightAddBtn");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FC")}));
        QCOMPARE(text("LightAGCSet"), u"-4"_s);
        QVERIFY(!button("LightAddBtn")->isEnabled());
        QVERIFY(!button("LightDecBtn")->isEnabled());
        QVERIFY(button("LightChooseBtn_2")->isEnabled());
        answerOffset(-4);
        QVERIFY(button("LightAddBtn")->isEnabled());
        QVERIFY(button("LightDecBtn")->isEnabled());
    }

    void presses_while_a_step_is_unanswered_add_up()
    {
        showWithLights();
        answerLight();
        for (int i = 0; i < 4; ++i)
            press(screen, "LightAddBtn");
        press(screen, "LightDecBtn");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FC")}));
        QCOMPARE(text("LightAGCSet"), u"-2"_s);
        answerOffset(-4);
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FE")}));
        QCOMPARE(text("LightAGCSet"), u"-2"_s);
        QVERIFY(!button("LightAddBtn")->isEnabled());
        answerOffset(-2);
        QCOMPARE(sent(), QByteArrayList());
        QVERIFY(button("LightAddBtn")->isEnabled());
    }

    void quick_presses_add_up_and_those_of_another_button_do_not()
    {
        showWithLights();
        answerLight();
        auto *more = button("LightAddBtn");
        press(screen, "LightAddBtn");
        QVERIFY(!more->isEnabled());
        const QPointF at(more->rect().center());
        QMouseEvent again(QEvent::MouseButtonDblClick, at, more->mapToGlobal(at), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(more, &again);
        QCOMPARE(text("LightAGCSet"), u"-3"_s);
        QTest::mouseClick(more, Qt::RightButton);
        QCOMPARE(text("LightAGCSet"), u"-3"_s);
    }

    void presses_of_a_key_add_up_too_data()
    {
        QTest::addColumn<QByteArray>("pressed");
        QTest::addColumn<int>("by");
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("last");
        QTest::newRow("+") << QByteArray("LightAddBtn") << 1 << whole("00 A2 06 04 00 01 0A 00 FC")
                           << whole("00 A2 06 04 00 01 0A 00 FE");
        QTest::newRow("-") << QByteArray("LightDecBtn") << -1 << whole("00 A2 06 04 00 01 0A 00 FA")
                           << whole("00 A2 06 04 00 01 0A 00 F8");
    }
    void presses_of_a_key_add_up_too()
    {
        QFETCH(const QByteArray, pressed);
        QFETCH(const int, by);
        QFETCH(const QByteArray, first);
        QFETCH(const QByteArray, last);
        showWithLights();
        answerLight();
        button(pressed.constData())->setFocus();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(screen->focusWidget(), Qt::Key_Space);
        QCOMPARE(text("LightAGCSet"), QString::number(-5 + 3 * by));
        QCOMPARE(text("MinADC"), QString());
        answerOffset(-5 + by);
        answerOffset(-5 + 3 * by);
        QCOMPARE(screen->focusWidget(), button(pressed.constData()));
        QCOMPARE(sent(), QByteArrayList({first, last}));
    }

    void escape_leaves_while_a_step_is_unanswered_too()
    {
        showWithLights();
        answerLight();
        button("LightAddBtn")->setFocus();
        QTest::keyClick(screen->focusWidget(), Qt::Key_Space);
        QTest::keyClick(screen->focusWidget(), Qt::Key_Escape);
        QVERIFY(!screen->isVisible());
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FC"), ReadAdc}));
    }

    void steps_that_wait_go_out_when_the_frame_speaks_of_another_light()
    {
        showWithLights();
        answerLight();
        for (int i = 0; i < 3; ++i)
            press(screen, "LightAddBtn");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FC")}));
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x02, 11, 0, 0x03, 50});
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FE")}));
        QCOMPARE(text("LightDir") + text("LightNum"), u"Y11"_s);
        QCOMPARE(text("LightAGCSet"), u"3"_s);
        QVERIFY(button("LightAddBtn")->isEnabled());
    }

    void a_step_that_is_unanswered_takes_the_keyboard_from_no_field()
    {
        showWithLights();
        answerLight();
        press(screen, "LightAddBtn");
        in<QLineEdit>(screen, "LightNum")->setFocus();
        answerLight(); // still as it was before
        QVERIFY(!button("LightAddBtn")->isEnabled());
        QCOMPARE(screen->focusWidget(), in<QLineEdit>(screen, "LightNum"));
        answerOffset(-4);
        QVERIFY(button("LightAddBtn")->isEnabled());
        QCOMPARE(screen->focusWidget(), in<QLineEdit>(screen, "LightNum"));
    }

    void steps_that_add_up_stop_at_the_bounds_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<QByteArray>("pressed");
        QTest::addColumn<QString>("end");
        QTest::newRow("50") << 20 << QByteArray("LightAddBtn") << u"50"_s;
        QTest::newRow("-AGC") << -20 << QByteArray("LightDecBtn") << u"-50"_s;
    }
    void steps_that_add_up_stop_at_the_bounds()
    {
        QFETCH(const int, from);
        QFETCH(const QByteArray, pressed);
        QFETCH(const QString, end);
        showWithLights();
        answerOffset(from);
        for (int i = 0; i < 60; ++i)
            press(screen, pressed.constData());
        QCOMPARE(text("LightAGCSet"), end);
    }

    void an_answer_from_before_the_step_does_not_count()
    {
        showWithLights();
        answerLight();
        tick();
        press(screen, "LightAddBtn");
        sent();
        answerLight(); // the link repeats it
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, 0xFB, 50, 0x8E, 0x0F, 0x34, 0x0F, 0});
        QVERIFY(!button("LightAddBtn")->isEnabled());
        QCOMPARE(text("LightAGCSet"), u"-4"_s);
        QCOMPARE(text("LightADC"), u"3980"_s);
        QCOMPARE(sent(), QByteArrayList());
        answerOffset(-4);
        QVERIFY(button("LightAddBtn")->isEnabled());
    }

    void what_the_frame_makes_of_a_step_instead_is_believed_in_the_end()
    {
        showWithLights();
        answerLight();
        press(screen, "LightAddBtn");
        QTest::qWait(8100);
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, 0xFB, 50, 0x8E, 0x0F, 0x34, 0x0F, 0});
        QVERIFY(button("LightAddBtn")->isEnabled());
        QCOMPARE(text("LightAGCSet"), u"-5"_s);
        sent();
        press(screen, "LightAddBtn");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FC")}));
    }

    void an_answer_that_does_not_come_is_told_of()
    {
        showWithLights();
        answerSettings();
        answerLight();
        press(screen, "LightAddBtn");
        QElapsedTimer time;
        time.start();
        const auto noticeWhileAsking = [this] {
            screen->on_LightChooseBtn_clicked();
            return notice();
        };
        QTRY_COMPARE(noticeWhileAsking(), u"No answer about light X 10"_s);
        QVERIFY(time.elapsed() >= 1900);
        // Who chooses it once more has no answer either.
        release({205, H - 20}); // 205 * 96 / 1921
        QCOMPARE(text("LightNum"), u"10"_s);
        QCOMPARE(notice(), u"No answer about light X 10"_s);
        answerOffset(-4);
        QCOMPARE(notice(), QString());
    }

    void what_was_not_answered_before_is_no_matter_at_the_next_showing()
    {
        show(); // asks for the settings
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 96, 0, 54, 0});
        answerLight();
        screen->on_LightChooseBtn_clicked();
        screen->close();
        QTest::qWait(ScanWatch::PatienceMs + 100);
        show();
        QTest::qWait(2 * ScanWatch::LookMs);
        QCOMPARE(notice(), QString());
    }

    void what_was_not_answered_before_a_light_check_is_no_matter_behind_it()
    {
        show();
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 96, 0, 54, 0});
        answerLight();
        screen->on_LightChooseBtn_clicked();
        screen->standAside(true);
        QTest::qWait(ScanWatch::PatienceMs + 100);
        screen->standAside(false);
        QCOMPARE(notice(), QString());
    }

    void a_light_that_is_as_before_has_answered_too()
    {
        show();
        report({0xFC, 0xA2, 0x85, 0x00, 0x00, 0xD8, 0x0E, 0xA0, 0x0F, 0xB8, 0x0B,
                0x80, 0x0C, 0xE8, 0x03, 0x58, 0x02, 0x2C, 0x01, 54,   0});
        const auto answer = [this] {
            report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 0x2B, 0x01, 0xFB, 50, 0x8C, 0x0F});
        };
        answer();
        sent();
        screen->on_LightChooseBtn_clicked();
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 07 03 00 01 2B 01")}));
        answer();
        QTest::qWait(2600);
        QCOMPARE(notice(), QString());
    }

    void while_a_light_check_has_the_frame_no_light_is_switched_or_set()
    {
        showWithLights();
        answerLight();
        sent();
        screen->standAside(true);
        QCOMPARE(notice(), u"This waits until the light check has ended"_s);
        press(screen, "LightChooseBtn_2");
        press(screen, "LightAddBtn");
        press(screen, "LightDecBtn");
        QCOMPARE(sent(), QByteArrayList());
        QCOMPARE(text("LightAGCSet"), u"-5"_s);
        for (const char *name : {"LightChooseBtn_2", "LightAddBtn", "LightDecBtn"})
            QVERIFY2(button(name)->isEnabled(), name);
        screen->standAside(false);
        sent();
        press(screen, "LightChooseBtn_2");
        QVERIFY(sent().contains(whole("00 A2 08 04 00 01 0A 00 01")));
    }

    void while_a_light_check_has_the_frame_no_settings_are_sent()
    {
        show();
        screen->standAside(true);
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        QTest::qWait(400);
        screen->standAside(false);
        QCOMPARE(sent(), QByteArrayList({ReadAdc}));
        // Nobody has set what the frame then says.
        answerSettings(0xD9);
        QCOMPARE(notice(), QString());
    }

    void a_light_check_that_does_not_measure_changes_nothing()
    {
        showWithLights();
        tick();
        sent();
        screen->standAside(false);
        QCOMPARE(sent(), QByteArrayList());
        QCOMPARE(notice(), QString());
    }

    void a_light_that_is_opened_from_elsewhere_stays_chosen()
    {
        showWithLights();
        screen->chooseLight({LightPlot::Axis::Y, 7});
        // The frame still tells of the one that it had chosen.
        answerLight();
        QCOMPARE(text("LightDir"), u"Y"_s);
        QCOMPARE(text("LightNum"), u"7"_s);
        QCOMPARE(text("LightADC"), QString());
    }

    void what_waited_for_a_scan_stays_unasked_when_another_window_needs_the_frame_data()
    {
        QTest::addColumn<bool>("closed");
        QTest::newRow("a light check begins") << false;
        QTest::newRow("the screen is closed") << true;
    }
    void what_waited_for_a_scan_stays_unasked_when_another_window_needs_the_frame()
    {
        QFETCH(const bool, closed);
        showWithLights();
        tick(2);
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 0, 0, 200, 20});
        tick();
        auto *timer = screen->findChild<QTimer *>();
        timer->start(60000);
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 27, 0, 200, 20});
        if (closed)
            screen->close();
        else
            screen->standAside(true);
        QTest::qWait(50);
        QVERIFY(!timer->isActive());
    }

    void pages_from_before_the_end_of_a_light_check_are_not_taken()
    {
        showWithLights();
        tick();
        const QImage none = withoutPanel(screen->grab().toImage());
        screen->standAside(true);
        screen->standAside(false);
        screen->findChild<QTimer *>()->stop();
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 100, 10});
        QCOMPARE(withoutPanel(screen->grab().toImage()), none);
        answerSettings();
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 100, 11});
        QVERIFY(withoutPanel(screen->grab().toImage()) != none);
    }

    void minus_from_minus_5_sends_minus_6_and_waits_for_the_reply()
    {
        showWithLights();
        answerLight();
        press(screen, "LightDecBtn");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 01 0A 00 FA")}));
        QCOMPARE(text("LightAGCSet"), u"-6"_s);
        QVERIFY(!button("LightAddBtn")->isEnabled());
        QVERIFY(!button("LightDecBtn")->isEnabled());
    }

    void a_light_of_the_y_axis_above_255_is_named_in_two_bytes()
    {
        show();
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 0xF4, 0x01, 0x5E, 0x01});
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x02, 0x5D, 0x01, 0x00, 9});
        press(screen, "LightAddBtn");
        press(screen, "LightChooseBtn_2");
        tick(6);
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 06 04 00 02 5D 01 01"),
                                         whole("00 A2 08 04 00 02 5D 01 01"),
                                         whole("00 A2 07 03 00 02 5D 01")}));
    }

    void offsets_stop_at_their_bounds_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("agc");
        QTest::addColumn<QString>("afterPlus");
        QTest::addColumn<QString>("afterMinus");
        const QString refused;
        QTest::newRow("0") << 0 << 200 << hex("01") << hex("FF");
        QTest::newRow("49") << 49 << 200 << hex("32") << hex("30");
        QTest::newRow("50") << 50 << 200 << refused << hex("31");
        QTest::newRow("above") << 127 << 200 << refused << hex("7E");
        QTest::newRow("-49") << -49 << 200 << hex("D0") << hex("CE");
        QTest::newRow("-50") << -50 << 200 << hex("CF") << refused;
        QTest::newRow("below") << -128 << 200 << hex("81") << refused;
        QTest::newRow("AGC above 0") << -9 << 10 << hex("F8") << hex("F6");
        QTest::newRow("AGC at 0") << -10 << 10 << hex("F7") << refused;
        QTest::newRow("AGC below 0") << -11 << 10 << hex("F6") << refused;
        QTest::newRow("no AGC") << 0 << 0 << hex("01") << refused;
        QTest::newRow("no AGC, offset 1") << 1 << 0 << hex("02") << hex("00");
    }
    void offsets_stop_at_their_bounds()
    {
        QFETCH(const int, offset);
        QFETCH(const int, agc);
        QFETCH(const QString, afterPlus);
        QFETCH(const QString, afterMinus);
        showWithLights();
        for (const auto &[name, byte] :
             {std::pair("LightAddBtn", afterPlus), std::pair("LightDecBtn", afterMinus)}) {
            screen->OnLinkEnded();
            report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, UCHAR(offset), UCHAR(agc)});
            press(screen, name);
            if (byte.isEmpty()) {
                QCOMPARE(sent(), QByteArrayList());
                QCOMPARE(text("LightAGCSet"), QString::number(offset));
                QVERIFY(button("LightAddBtn")->isEnabled());
                QVERIFY(button("LightDecBtn")->isEnabled());
            } else {
                QCOMPARE(sent(), QByteArrayList(
                                     {whole((u"00 A2 06 04 00 01 0A 00 "_s + byte).toLatin1())}));
                QVERIFY(!button("LightAddBtn")->isEnabled());
                QVERIFY(!button("LightDecBtn")->isEnabled());
            }
        }
    }

    void a_hundred_steps_lead_from_bound_to_bound()
    {
        showWithLights();
        int offset = -50;
        int steps = 0;
        for (; steps < 200; ++steps) {
            report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, UCHAR(offset), 200});
            press(screen, "LightAddBtn");
            const QByteArrayList frame = sent();
            if (frame.isEmpty())
                break;
            QCOMPARE(frame.size(), 1);
            const int byte = UCHAR(QByteArray::fromHex(frame.first())[8]);
            offset = byte < 128 ? byte : byte - 256;
        }
        QCOMPARE(steps, 100);
        QCOMPARE(offset, 50);
    }

    void a_light_is_switched_off_and_on_again()
    {
        showWithLights();
        answerLight();
        press(screen, "LightChooseBtn_2");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 08 04 00 01 0A 00 01")}));
        QVERIFY(!button("LightChooseBtn_2")->isEnabled());
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, 0xFB, 50, 0, 0, 0, 0, 1});
        QVERIFY(button("LightChooseBtn_2")->isEnabled());
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Enable"_s);
        press(screen, "LightChooseBtn_2");
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 08 04 00 01 0A 00 00")}));
        QVERIFY(!button("LightChooseBtn_2")->isEnabled());
        answerLight();
        QVERIFY(button("LightChooseBtn_2")->isEnabled());
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Disable"_s);
    }

    void a_light_chosen_while_a_scan_comes_is_asked_for_at_once_and_once()
    {
        showWithLights();
        tick(2);
        QCOMPARE(sent(), QByteArrayList({ScanY}));
        // Its first page, over and over.
        UCHAR gain = 20;
        const auto tickInScan = [&] {
            report({0xFC, 0xA5, 0x82, 0x00, 0x00, 0, 0, 200, ++gain});
            tick();
            return sent();
        };
        QCOMPARE(tickInScan(), QByteArrayList());
        release({205, H - 20}); // 205 * 96 / 1921
        QCOMPARE(sent(), QByteArrayList());
        QCOMPARE(tickInScan(), QByteArrayList({whole("00 A2 07 03 00 01 0A 00")}));
        QCOMPARE(tickInScan(), QByteArrayList());
    }

    void what_is_typed_as_a_light_data()
    {
        QTest::addColumn<QString>("axis");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("named"); // bytes 5 to 7; empty: nothing is sent
        const auto row = [](const char *name, const char *axis, const char *number,
                            const char *named) {
            QTest::newRow(name) << hex(axis) << hex(number) << hex(named);
        };
        row("X", "X", "0", "01 00 00");
        row("Y", "Y", "0", "02 00 00");
        row("lower-case x", "x", "95", "01 5F 00");
        row("lower-case y", "y", "53", "02 35 00");
        row("last X", "X", "95", "01 5F 00");
        row("behind the last X", "X", "96", "");
        row("last Y", "Y", "53", "02 35 00");
        row("behind the last Y", "Y", "54", "");
        row("negative", "X", "-1", "");
        row("no number", "X", " ", "");
        row("letters", "X", "abc", "");
        row("a number and letters", "X", "1b", "");
        row("a fraction", "Y", "1.0", "");
        row("digits in groups", "X", "1,0", "");
        row("too large a number", "Y", "99999999999", "");
        row("spaces around", "X", " 7 ", "01 07 00");
        row("no axis", " ", "7", "");
        row("another axis", "Z", "7", "");
        row("two axes", "XY", "7", "");
        row("a space behind", "X ", "7", "");
    }
    void what_is_typed_as_a_light()
    {
        QFETCH(const QString, axis);
        QFETCH(const QString, number);
        QFETCH(const QString, named);
        showWithLights();
        answerLight();
        type("LightDir", axis.toLatin1());
        type("LightNum", number.toLatin1());
        const auto frame = [](const char *command, const QString &bytes, const char *last) {
            return whole((hex(command) + bytes + hex(last)).toLatin1());
        };
        // Neither the light before nor one that the frame has not spoken of.
        for (const char *name : {"LightAddBtn", "LightDecBtn", "LightChooseBtn_2"}) {
            QVERIFY(!button(name)->isEnabled());
            press(screen, name);
        }
        QCOMPARE(sent(), QByteArrayList());
        tick();
        QCOMPARE(sent(), named.isEmpty() ? QByteArrayList()
                                         : QByteArrayList({frame("00 A2 07 03 00 ", named, "")}));
        QCOMPARE(text("LightDir"), axis);
        QCOMPARE(text("LightNum"), number);
        if (named.isEmpty())
            return;
        const QByteArray light = QByteArray::fromHex(named.toLatin1());
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, UCHAR(light[0]), UCHAR(light[1]), 0, 0x02, 60});
        press(screen, "LightAddBtn");
        press(screen, "LightChooseBtn_2");
        QCOMPARE(sent(), QByteArrayList({frame("00 A2 06 04 00 ", named, " 03"),
                                         frame("00 A2 08 04 00 ", named, " 01")}));
    }

    void a_light_that_the_frame_does_not_have_is_told_of()
    {
        // Which is not known before it has told its counts.
        show();
        type("LightDir", "X");
        type("LightNum", "96");
        QCOMPARE(notice(), QString());
        screen->close();
        showWithLights();
        answerSettings();
        type("LightDir", "X");
        type("LightNum", "96");
        QCOMPARE(notice(), u"The touch frame has no such light"_s);
        type("LightNum", "95");
        QCOMPARE(notice(), QString());
    }

    void a_number_that_is_typed_over_another_is_that_number()
    {
        showWithLights();
        type("LightDir", "X");
        type("LightNum", "7");
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 7, 0, 0x00, 50, 0x8C, 0x0F});
        in<QLineEdit>(screen, "LightNum")->selectAll();
        // The poll goes on meanwhile.
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 7, 0, 0x00, 50, 0x8D, 0x0F});
        QCOMPARE(text("LightADC"), u"3981"_s);
        QTest::keyClicks(in<QLineEdit>(screen, "LightNum"), u"3"_s);
        QCOMPARE(text("LightNum"), u"3"_s);
        sent();
        tick();
        QCOMPARE(sent(), QByteArrayList({whole("00 A2 07 03 00 01 03 00")}));
    }

    void before_a_choice_the_frame_s_light_keeps_a_selection_too()
    {
        showWithLights();
        answerLight();
        in<QLineEdit>(screen, "LightNum")->setFocus();
        in<QLineEdit>(screen, "LightNum")->selectAll();
        answerOffset(3);
        QTest::keyClicks(in<QLineEdit>(screen, "LightNum"), u"5"_s);
        QCOMPARE(text("LightNum"), u"5"_s);
    }

    void an_axis_that_is_being_typed_is_left_alone()
    {
        showWithLights();
        type("LightNum", "10");
        in<QLineEdit>(screen, "LightDir")->setFocus();
        type("LightDir", "x");
        answerLight();
        QCOMPARE(text("LightADC"), u"3980"_s);
        QCOMPARE(text("LightDir"), u"x"_s);
        in<QLineEdit>(screen, "LightNum")->setFocus();
        answerOffset(-3);
        QCOMPARE(text("LightDir"), u"X"_s);
        QCOMPARE(text("LightNum"), u"10"_s);
    }

    void a_switch_waits_for_its_own_answer()
    {
        showWithLights();
        answerLight();
        press(screen, "LightChooseBtn_2");
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, 0xFB, 50, 0x8E, 0x0F, 0x34, 0x0F, 0});
        QVERIFY(!button("LightChooseBtn_2")->isEnabled());
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Disable"_s);
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, 0xFB, 50, 0, 0, 0x34, 0x0F, 1});
        QVERIFY(button("LightChooseBtn_2")->isEnabled());
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Enable"_s);
    }

    void without_counts_no_light_is_read_and_none_switched()
    {
        show();
        answerLight();
        press(screen, "LightChooseBtn_2");
        tick(6);
        QCOMPARE(sent(), QByteArrayList());
        QVERIFY(!button("LightChooseBtn_2")->isEnabled());
    }

    void an_answer_to_an_earlier_read_does_not_take_back_the_choice()
    {
        showWithLights();
        answerLight();
        tick();
        sent();
        release({500, H - 20}); // 500 * 96 / 1921
        QCOMPARE(text("LightNum"), u"24"_s);
        answerLight();
        QCOMPARE(text("LightDir"), u"X"_s);
        QCOMPARE(text("LightNum"), u"24"_s);
        QCOMPARE(text("LightADC"), u"3980"_s);
        tick(3);
        QCOMPARE(sent(), QByteArrayList({ScanY, ScanX, whole("00 A2 07 03 00 01 18 00")}));
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 24, 0, 0x02, 51, 0x10, 0x00});
        QCOMPARE(text("LightADC"), u"16"_s);

        // The same while a number is being typed.
        type("LightNum", "3");
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 24, 0, 0x02, 51, 0x11, 0x00});
        QTest::keyClicks(in<QLineEdit>(screen, "LightNum"), u"1"_s);
        QCOMPARE(text("LightNum"), u"31"_s);
        QCOMPARE(text("LightADC"), u"16"_s);
    }

    // Beside a signal test

    void pages_of_the_signal_test_are_not_taken()
    {
        QWidget parent;
        test_win test(&parent);
        LightSet_dlg lights(&parent);
        const auto take = [&lights](std::initializer_list<UCHAR> bytes) {
            UCHAR buffer[64] = {};
            std::copy(bytes.begin(), bytes.end(), buffer);
            lights.DoRecv03(buffer);
        };
        lights.show();
        QVERIFY(QTest::qWaitForWindowExposed(&lights));
        QTRY_COMPARE(lights.size(), QSize(W, H));
        lights.findChild<QTimer *>()->stop();
        for (int i = 0; i < 6; ++i)
            lights.ontimer();
        // What it has asked for comes after all: one byte a light.
        take({0xFC, 0xA5, 0x80, 0x00, 0x00, 2, 0, 2, 0});
        take({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 200, 210});
        take({0xFC, 0xA5, 0x82, 0x00, 0x00, 0, 0, 200, 210});
        take({0xFC, 0xA2, 0x85, 0x00, 0x00, 0xD8, 0x0E, 0xA0, 0x0F, 0xB8, 0x0B,
              0x80, 0x0C, 0xE8, 0x03, 0x58, 0x02, 2,    0,    2,    0});
        const PlainLights none{W, H, 2, 2, {{0, 0}, {0, 0}}, {{0, 0}, {0, 0}}};
        QCOMPARE(withoutPanel(lights.grab().toImage()), withoutPanel(none.picture()));
        take({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 200, 20, 100, 30});
        const PlainLights some{W, H, 2, 2, {{200, 20}, {100, 30}}, {{0, 0}, {0, 0}}};
        QCOMPARE(withoutPanel(lights.grab().toImage()), withoutPanel(some.picture()));
        // Somebody has asked for the other layout since.
        take({0xFC, 0xA5, 0x80, 0x00, 0x00, 2, 0, 2, 0});
        take({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 90, 80, 70, 60});
        QCOMPARE(withoutPanel(lights.grab().toImage()), withoutPanel(some.picture()));
    }

    void pages_of_a_frame_that_was_reset_are_not_shown_before_it_has_this_layout_again()
    {
        showWithLights();
        tick();
        const QImage none = withoutPanel(screen->grab().toImage());
        // The first 55 levels, and the last 41.
        report({0xFC, 0xA5, 0x81, 0x3A, 0x00, 0, 0, 100, 101, 102});
        QCOMPARE(withoutPanel(screen->grab().toImage()), none);
        report({0xFC, 0xA5, 0x81, 0x2C, 0x00, 55, 0, 100, 101, 102});
        QCOMPARE(withoutPanel(screen->grab().toImage()), none);
        sent();
        tick();
        QCOMPARE(sent().first(), ReadAdc);
        answerSettings(0xA0);
        report({0xFC, 0xA5, 0x81, 0x39, 0x00, 69, 0, 100, 10});
        QVERIFY(withoutPanel(screen->grab().toImage()) != none);
    }

    void the_last_page_of_a_frame_that_was_reset_tells_it_too_data()
    {
        QTest::addColumn<int>("lights");
        QTest::newRow("41 lights on it") << 96;
        QTest::newRow("one light on it") << 56;
    }
    void the_last_page_of_a_frame_that_was_reset_tells_it_too()
    {
        QFETCH(const int, lights);
        show();
        tick(6);
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, UCHAR(lights), 0, 54, 0});
        const QImage none = withoutPanel(screen->grab().toImage());
        report({0xFC, 0xA5, 0x81, UCHAR(3 + lights - 55), 0x00, 55, 0, 100, 101, 102});
        QCOMPARE(withoutPanel(screen->grab().toImage()), none);
        sent();
        tick();
        QCOMPARE(sent().first(), ReadAdc);
    }

    // The end of a link

    void what_one_device_said_is_not_shown_for_the_next()
    {
        showWithLights();
        tick();
        const QImage none = withoutPanel(screen->grab().toImage());
        answerSettings();
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 10, 0, 0xFB, 50, 0x8C, 0x0F, 0x34, 0x0F, 1});
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 100, 10});
        QVERIFY(withoutPanel(screen->grab().toImage()) != none);
        screen->OnLinkEnded();
        for (const char *name :
             {"MinADC", "MaxADC", "MinEdgeADC", "MaxEdgeADC", "ADCThreshold", "EdgeADCThreshold",
              "LightDir", "LightNum", "LightADC", "LightORG", "LightAGC", "LightAGCSet"})
            QVERIFY2(text(name).isEmpty(), name);
        for (const char *name : {"LightChooseBtn_2", "LightAddBtn", "LightDecBtn"})
            QVERIFY2(!button(name)->isEnabled(), name);
        QCOMPARE(button("LightChooseBtn_2")->text(), u"Disable"_s);
        // The settings are asked for anew. The counts are unknown: no light is read.
        type("LightDir", "X");
        type("LightNum", "7");
        sent();
        tick(3);
        QCOMPARE(sent(), QByteArrayList({ReadAdc, ScanY, ScanX}));
        // And no level of the other device is left.
        in<QLineEdit>(screen, "LightDir")->clear();
        in<QLineEdit>(screen, "LightNum")->clear();
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 96, 0, 54, 0});
        tick();
        QCOMPARE(withoutPanel(screen->grab().toImage()), none);
        // Before it has answered, its pages have the layout that a device begins with.
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 100, 10});
        QCOMPARE(withoutPanel(screen->grab().toImage()), none);
        answerSettings(0xA0);
        QCOMPARE(text("MinADC"), u"3744"_s);
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 100, 11});
        QVERIFY(withoutPanel(screen->grab().toImage()) != none);
    }

    void what_was_to_be_told_of_one_device_is_not_told_of_the_next()
    {
        show();
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        QTRY_COMPARE(frames.size(), 2);
        answerSettings(0xD9);
        QCOMPARE(notice(), u"The touch frame has set other values"_s);
        screen->OnLinkEnded();
        QCOMPARE(notice(), QString());
        press(screen, "ADCSetBtn"); // of empty fields
        QVERIFY(!notice().isEmpty());
        screen->OnLinkEnded();
        QCOMPARE(notice(), QString());
        // Nor was the next one set to anything.
        press(screen, "ADCDefBtn");
        press(screen, "ADCSetBtn");
        screen->OnLinkEnded();
        answerSettings(0xDA);
        QCOMPARE(text("MinADC"), u"3802"_s);
        QCOMPARE(notice(), QString());
        sent();
        QTest::qWait(400);
        QCOMPARE(sent(), QByteArrayList());
    }

    void the_picture_of_one_device_goes_with_it()
    {
        showWithLights();
        tick();
        answerSettings();
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 100, 10});
        QTest::qWait(100); // it is painted
        Paints paints(screen.get());
        screen->OnLinkEnded();
        QTRY_VERIFY(paints.region.contains(QPoint(1000, 900)));
    }

    void what_the_next_device_says_is_news_even_if_the_last_one_said_the_same()
    {
        showWithLights();
        answerLight();
        screen->OnLinkEnded();
        answerLight();
        QCOMPARE(text("LightNum"), u"10"_s);
        QVERIFY(button("LightAddBtn")->isEnabled());
        // Nor does a choice of the last one's hold.
        type("LightNum", "11");
        screen->OnLinkEnded();
        answerLight();
        QCOMPARE(text("LightNum"), u"10"_s);
    }

    // Choosing with the mouse

    void a_click_near_an_edge_chooses_a_light_and_sends_nothing_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<QString>("axis");
        QTest::addColumn<QString>("number");
        QTest::newRow("left strip") << QPoint(100, H - 300) << u"Y"_s << u"14"_s;
        QTest::newRow("bottom strip") << QPoint(100, H - 50) << u"X"_s << u"4"_s;
        QTest::newRow("neither") << QPoint(400, H - 400) << QString() << QString();
    }
    void a_click_near_an_edge_chooses_a_light_and_sends_nothing()
    {
        QFETCH(const QPoint, at);
        QFETCH(const QString, axis);
        QFETCH(const QString, number);
        showWithLights();
        release(at);
        QCOMPARE(text("LightDir"), axis);
        QCOMPARE(text("LightNum"), number);
        QCOMPARE(sent(), QByteArrayList());
        tick();
        QCOMPARE(sent().size(), axis.isEmpty() ? 0 : 1);
    }

    void a_click_on_the_panel_chooses_nothing()
    {
        showWithLights();
        // As on a low screen, where the panel reaches into the strip.
        in<QGroupBox>(screen, "groupBox_3")->move(280, H - 480);
        for (const char *name : {"LightAddBtn", "label_2", "groupBox_2", "groupBox_3", "LightADC"})
            QTest::mouseClick(in<QWidget>(screen, name), Qt::LeftButton);
        QCOMPARE(text("LightDir"), QString());
        QCOMPARE(text("LightNum"), QString());
        release({300, H - 3});
        QCOMPARE(text("LightDir"), u"X"_s);
    }

    // The picture

    void nothing_is_painted_before_the_first_poll()
    {
        show();
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 2, 0, 2, 0});
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 200, 20, 100, 30});
        const QColor background = screen->palette().color(QPalette::Window);
        QVERIFY(background != QColor(Qt::white));
        tick(5);
        const QImage before = screen->grab().toImage();
        QCOMPARE(before.pixelColor(0, 0), background);
        QCOMPARE(before.pixelColor(960, 980), background);
        tick();
        QCOMPARE(screen->grab().toImage().pixelColor(960, 980), QColor(Qt::darkGreen));
        screen->hide();
        QCOMPARE(screen->grab().toImage().pixelColor(960, 980), background);
    }

    void without_counts_the_picture_is_white()
    {
        show();
        tick(6);
        QImage white(W, H, QImage::Format_RGB32);
        white.fill(Qt::white);
        QCOMPARE(withoutPanel(screen->grab().toImage()), withoutPanel(white));
    }

    void a_scan_typed_by_hand_has_its_pixels()
    {
        showWithLights();
        tick();
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 4, 0, 2, 0});
        // Y: signal 100 and 255, gain 40 and 40.
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 0, 0, 100, 40, 255, 40});
        // X: signal 255, 255, 50, 0, gain 10, 10, 10, 102.
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 255, 10, 255, 10, 50, 10, 0, 102});
        report({0xFC, 0xA2, 0x87, 0x00, 0x00, 0x01, 2, 0, 0, 10, 50, 0, 0, 0, 0});
        const QImage shown = screen->grab().toImage();
        const QColor green(Qt::darkGreen);
        const QColor red(Qt::darkRed);
        const QColor white(Qt::white);
        const QList<std::tuple<int, int, QColor>> pixels = {
            // X light i at 480 i. Signal at 1080 - 255 from 0 to 480, three pixels wide.
            {300, 823, white},
            {300, 824, green},
            {300, 825, green},
            {300, 826, green},
            {300, 827, white},
            // Then down to 1080 - 50 at 960.
            {720, 928, green},
            // Gain at 1080 - 50 from 0 to 960, one pixel wide.
            {700, 1029, white},
            {700, 1030, green},
            {700, 1031, white},
            // Then up to 1080 - 510 at 1440, and on to 1540.
            {1200, 800, green},
            {1500, 569, white},
            {1500, 570, green},
            {1500, 571, white},
            {1540, 570, green},
            {1541, 570, white},
            // The bar of light 2 from (960, 1030), 480 wide, down to the bottom.
            {970, 1040, green},
            {1430, 1079, green},
            {1450, 1060, white},
            // Y light 0 at (100, 1080), light 1 at (255, 540), then up to 440.
            {177, 812, red},
            {253, 500, white},
            {254, 500, red},
            {255, 500, red},
            {256, 500, red},
            {257, 500, white},
            {255, 436, white},
            // Gain at 200, one pixel wide, over the X signal too.
            {199, 700, white},
            {200, 700, red},
            {201, 700, white},
            {200, 825, red},
            {200, 438, white},
            {1900, 20, white},
        };
        for (const auto &[x, y, color] : pixels) {
            QVERIFY2(shown.pixelColor(x, y) == color,
                     (QByteArray::number(x) + ',' + QByteArray::number(y) + ' ' +
                      shown.pixelColor(x, y).name().toLatin1())
                         .constData());
        }
    }

    void what_is_on_the_screen_equals_the_plain_order_of_drawing_data()
    {
        QTest::addColumn<QString>("direction");
        QTest::newRow("X") << u"X"_s;
        QTest::newRow("lower-case x") << u"x"_s;
        QTest::newRow("Y") << u"Y"_s;
        QTest::newRow("lower-case y") << u"y"_s;
        QTest::newRow("none") << u"Z"_s;
    }
    void what_is_on_the_screen_equals_the_plain_order_of_drawing()
    {
        QFETCH(const QString, direction);
        showWithLights();
        tick();
        PlainLights plain{W, H, 30, 20, {}, {}, direction, 10, u"3980"_s, u"50"_s};
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 30, 0, 20, 0});
        UCHAR y[64] = {0xFC, 0xA5, 0x82};
        for (int i = 0; i < 20; ++i) {
            plain.y.emplace_back(120 + 5 * i, 100 - 3 * i);
            y[7 + 2 * i] = UCHAR(120 + 5 * i);
            y[8 + 2 * i] = UCHAR(100 - 3 * i);
        }
        screen->DoRecv03(y);
        for (const int first : {0, 27}) {
            UCHAR x[64] = {0xFC, 0xA5, 0x81, 0x00, 0x00, UCHAR(first)};
            for (int k = 0; k < 27 && first + k < 30; ++k) {
                plain.x.emplace_back(250 - 4 * (first + k), 20 + first + k);
                x[7 + 2 * k] = UCHAR(250 - 4 * (first + k));
                x[8 + 2 * k] = UCHAR(20 + first + k);
            }
            screen->DoRecv03(x);
        }
        answerLight();
        type("LightDir", direction.toLatin1());
        QCOMPARE(withoutPanel(screen->grab().toImage()), withoutPanel(plain.picture()));
    }

    void a_light_that_is_none_has_no_bar()
    {
        showWithLights();
        tick();
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 69, 0, 100, 10});
        const QImage none = withoutPanel(screen->grab().toImage());
        for (const char *number : {"", "abc", "-1", "96"}) {
            type("LightDir", "X");
            type("LightNum", number);
            QCOMPARE(withoutPanel(screen->grab().toImage()), none);
        }
        type("LightNum", "69");
        QVERIFY(withoutPanel(screen->grab().toImage()) != none);
    }

    void an_x_scan_repaints_with_its_last_light_and_a_y_scan_does_not()
    {
        showWithLights();
        tick();
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 100, 0, 54, 0});
        QTest::qWait(100);
        Paints paints(screen.get());
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 27, 0, 200, 20});
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 200, 20});
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 54, 0, 200, 20});
        QTest::qWait(100);
        QVERIFY(!paints.region.contains(QPoint(1000, 900)));
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 81, 0, 200, 20});
        QTRY_VERIFY(paints.region.contains(QPoint(1000, 900)));
        paints.region = {};
        answerLight();
        QTRY_VERIFY(paints.region.contains(QPoint(1000, 900)));
    }

    void pages_before_any_counts_are_ignored()
    {
        show();
        tick(6);
        report({0xFC, 0xA5, 0x81, 0x00, 0x00, 0, 0, 200, 20, 100, 30});
        report({0xFC, 0xA5, 0x82, 0x00, 0x00, 0, 0, 200, 20, 100, 30});
        report({0xFC, 0xA5, 0x80, 0x00, 0x00, 2, 0, 2, 0});
        const PlainLights plain{W, H, 2, 2, {{0, 0}, {0, 0}}, {{0, 0}, {0, 0}}};
        QCOMPARE(withoutPanel(screen->grab().toImage()), withoutPanel(plain.picture()));
    }
};

QTEST_MAIN(TestLightSetDlg)
#include "tst_lightset_dlg.moc"
