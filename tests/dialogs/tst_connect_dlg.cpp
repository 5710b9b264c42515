// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/connect_dlg.h"
#include "dialogs/portchoice.h"
#include "tests/support/clipped.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<connect_dlg>);

using Link = connect_dlg::Link;

// The dialog on a home directory of its own and a system with two ports.
class TestConnectDlg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    QList<connect_dlg::Port> systemPorts;
    std::unique_ptr<connect_dlg> dialog;

    const QString LongName =
        u"Extraordinarily Long Manufacturer Incorporated Universal Serial Adapter 4711-B"_s;

    void makeDialog()
    {
        dialog = std::make_unique<connect_dlg>(nullptr, [this] { return systemPorts; });
    }
    void appear()
    {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    }
    QPushButton *button(const char *name) const { return in(dialog, name); }
    QComboBox *box(const char *name) const { return in<QComboBox>(dialog, name); }
    QRadioButton *usb() const { return in<QRadioButton>(dialog, "usbRadio"); }
    QRadioButton *uart() const { return in<QRadioButton>(dialog, "uartRadio"); }
    QString state() const { return in<QPlainTextEdit>(dialog, "stateText")->toPlainText(); }
    void choose(const char *name, const QString &text) const
    {
        const int row = box(name)->findText(text);
        QVERIFY2(row >= 0, qPrintable(text));
        box(name)->setCurrentIndex(row);
    }
    QStringList items(const char *name) const
    {
        QStringList texts;
        for (int i = 0; i < box(name)->count(); ++i)
            texts.append(box(name)->itemText(i));
        return texts;
    }
    // The file as it was made, with other numbers in some of its elements.
    void editFile(std::initializer_list<std::pair<const char *, const char *>> elements)
    {
        XML_CLASS().read_connect();
        for (const auto &[name, value] : elements)
            home->edit(name, value);
    }

    // The link as the main window has it, with a frame that listens at one rate.
    class Line : public QObject
    {
    public:
        explicit Line(connect_dlg &dialog)
        {
            connect(&dialog, &connect_dlg::openUart, this,
                    [this, &dialog](const QString &port, const PortSettings &settings) {
                        rates += int(settings.BaudRate);
                        last = settings;
                        dialog.setState(Link::None, QString(), QString());
                        if (opens)
                            dialog.setState(Link::Serial, port, QString());
                        else
                            dialog.setState(Link::None, QString(), u"It is broken."_s);
                    });
            connect(&dialog, &connect_dlg::closeUart, this, [this, &dialog] {
                ++closings;
                dialog.setState(Link::None, QString(), QString());
            });
            connect(&dialog, &connect_dlg::Write03, this, [this, &dialog](const UCHAR *frame) {
                asked +=
                    QByteArray(reinterpret_cast<const char *>(frame + 1), 3).toHex(' ').toUpper();
                if (int(last.BaudRate) != frameAt)
                    return;
                QTimer::singleShot(20, &dialog, [&dialog] {
                    Frame report{0xFC, 0xA7, 0x82, 0x02};
                    dialog.DoRecv03(report.data());
                });
            });
        }

        bool opens = true;
        int frameAt = -1; // a number of BaudRateType
        QList<int> rates;
        PortSettings last;
        QByteArrayList asked;
        int closings = 0;
    };
    // With the button, at 115200 baud.
    void openUart()
    {
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}, {"BAUDRATE", "19"}});
        appear();
        press(dialog, "openButton");
    }

private slots:
    void init()
    {
        home = std::make_unique<SettingsHome>();
        systemPorts = {{u"ttyS0"_s, QString()}, {u"ttyUSB0"_s, LongName}};
        makeDialog();
    }
    void cleanup()
    {
        dialog.reset();
        home.reset();
    }

    // Form

    void the_form_offers_what_a_line_can_be()
    {
        QCOMPARE(dialog->windowTitle(), u"Connect"_s);
        QCOMPARE(dialog->font().family(), u"Tahoma"_s);
        dialog->show();
        QCOMPARE(items("portBox"), QStringList({u"ttyS0"_s, u"ttyUSB0"_s}));
        QVERIFY(box("portBox")->isEditable());
        QCOMPARE(
            items("rateBox"),
            QStringList({u"50"_s,    u"75"_s,     u"110"_s,    u"134"_s,   u"150"_s,   u"200"_s,
                         u"300"_s,   u"600"_s,    u"1200"_s,   u"1800"_s,  u"2400"_s,  u"4800"_s,
                         u"9600"_s,  u"14400"_s,  u"19200"_s,  u"38400"_s, u"56000"_s, u"57600"_s,
                         u"76800"_s, u"115200"_s, u"128000"_s, u"256000"_s}));
        QCOMPARE(items("dataBitsBox"), QStringList({u"5"_s, u"6"_s, u"7"_s, u"8"_s}));
        QCOMPARE(items("parityBox"),
                 QStringList({u"None"_s, u"Odd"_s, u"Even"_s, u"Mark"_s, u"Space"_s}));
        QCOMPARE(items("stopBitsBox"), QStringList({u"1"_s, u"1.5"_s, u"2"_s}));
    }

    void nothing_is_clipped()
    {
        dialog->setState(
            Link::Serial, u"ttyUSB0"_s,
            u"This user may not open the serial port /dev/ttyUSB0: it belongs to root "
            "alone. The device manager (udev) has usually not set up such a port. Plug "
            "its adapter in again, run \"sudo udevadm trigger\" or restart this "
            "machine."_s);
        appear();
        QCOMPARE(clipped(*dialog), QStringList());
        QVERIFY(!in<QPlainTextEdit>(dialog, "stateText")->verticalScrollBar()->isVisible());
        for (const char *name : {"rateBox", "dataBitsBox", "parityBox", "stopBitsBox"})
            QVERIFY2(box(name)->sizeHint().width() <= box(name)->width(), name);
    }

    void a_path_longer_than_the_window_can_be_read_whole()
    {
        const QString path = u"/dev/serial/by-id/"_s + QString(400, u'x');
        dialog->setState(Link::Serial, path, QString());
        appear();
        auto *text = in<QPlainTextEdit>(dialog, "stateText");
        QVERIFY(text->toPlainText().contains(path));
        QVERIFY(!text->horizontalScrollBar()->isVisible());
        // It is there to be read and not to be written into.
        const QImage seen = text->viewport()->grab().toImage();
        QCOMPARE(seen.pixelColor(seen.rect().bottomRight()),
                 dialog->palette().color(QPalette::Window));
    }

    void every_field_is_reached_and_named_for_a_keyboard_and_a_screen_reader()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        dialog->setState(Link::Serial, u"ttyS0"_s, QString());
        uart()->setFocus();
        QStringList reached;
        for (int i = 0; i < 10; ++i) {
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
            reached += dialog->focusWidget()->objectName();
        }
        QCOMPARE(reached,
                 QStringList({u"portBox"_s, u"refreshButton"_s, u"rateBox"_s, u"dataBitsBox"_s,
                              u"parityBox"_s, u"stopBitsBox"_s, u"openButton"_s, u"findButton"_s,
                              u"closeButton"_s, u"stateText"_s}));
        for (const char *name :
             {"portLabel", "rateLabel", "dataBitsLabel", "parityLabel", "stopBitsLabel"})
            QVERIFY2(in<QLabel>(dialog, name)->buddy() != nullptr, name);
        QStringList mnemonics;
        for (const QWidget *widget : dialog->findChildren<QWidget *>()) {
            const QString text = widget->property("text").toString();
            if (const qsizetype at = text.indexOf(u'&'); at >= 0)
                mnemonics += text.sliced(at + 1, 1).toUpper();
        }
        QCOMPARE(mnemonics.size(), 11);
        QCOMPARE(mnemonics.removeDuplicates(), 0);
    }

    void enter_in_the_port_opens_it()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        box("portBox")->setFocus();
        QTest::keyClick(box("portBox")->lineEdit(), Qt::Key_Return);
        QCOMPARE(asked.size(), 1);
    }

    // Ports

    void without_a_list_of_its_callers_it_offers_the_ports_of_the_system()
    {
        QStringList names;
        for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
            names.append(info.portName());
        dialog = std::make_unique<connect_dlg>(nullptr);
        QCOMPARE(items("portBox"), QStringList()); // a start does not wait for the list
        dialog->show();
        QCOMPARE(items("portBox"), names);
    }

    void a_chosen_port_is_called_by_its_name_and_shown_with_its_adapter()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        QCOMPARE(box("portBox")->itemData(1, Qt::ToolTipRole).toString(),
                 u"ttyUSB0: "_s + LongName);
        QCOMPARE(box("portBox")->itemData(0, Qt::ToolTipRole).toString(), u"ttyS0"_s);
        QCOMPARE(box("portBox")->itemData(1, Qt::AccessibleTextRole).toString(),
                 u"ttyUSB0: "_s + LongName);
        choose("portBox", u"ttyUSB0"_s);
        QCOMPARE(box("portBox")->toolTip(), u"ttyUSB0: "_s + LongName);
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        press(dialog, "openButton");
        QCOMPARE(asked.first().first().toString(), u"ttyUSB0"_s);
    }

    void a_port_is_called_by_what_is_known_of_it_wherever_it_stands_in_the_list()
    {
        editFile({{"CONNECT", "2"}});
        systemPorts = {{u"ttyUSB0"_s, u"Adapter"_s}, {u"ttyS0"_s, QString()}};
        appear();
        auto *ports = box("portBox");
        ports->setEditText(u"ttyUSB0"_s);
        QCOMPARE(ports->toolTip(), u"ttyUSB0: Adapter"_s);
        // Names of files: none is another one in capitals.
        for (const QString &other : {u"TTYUSB0"_s, u"ttyUSB"_s, u"/dev/ttyUSB0"_s}) {
            ports->setEditText(other);
            QCOMPARE(ports->toolTip(), other);
        }
        // Typed before it is plugged in.
        ports->setEditText(u"ttyACM0"_s);
        QCOMPARE(ports->toolTip(), u"ttyACM0"_s);
        systemPorts.append({u"ttyACM0"_s, u"Board"_s});
        press(dialog, "refreshButton");
        QCOMPARE(ports->toolTip(), u"ttyACM0: Board"_s);
    }

    void long_adapter_names_are_shortened_within_the_list()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        box("portBox")->showPopup();
        const QAbstractItemView *list = box("portBox")->view();
        QTRY_VERIFY(list->isVisible());
        QVERIFY(list->window()->width() <= dialog->width());
        QVERIFY(list->fontMetrics().horizontalAdvance(LongName) > list->width());
        QVERIFY(list->textElideMode() != Qt::ElideNone);
        // It would be shown whole if there were room.
        const QModelIndex row = list->model()->index(1, 0);
        QVERIFY(list->sizeHintForIndex(row).width() >
                list->fontMetrics().horizontalAdvance(u"ttyUSB0: "_s + LongName));
        QVERIFY(!list->horizontalScrollBar()->isVisible());
        box("portBox")->hidePopup();
    }

    void a_typed_path_is_taken_as_it_is()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        box("portBox")->lineEdit()->selectAll();
        QTest::keyClicks(box("portBox")->lineEdit(), u"ttyU"_s);
        QCOMPARE(box("portBox")->currentText(), u"ttyU"_s);
        box("portBox")->lineEdit()->selectAll();
        QTest::keyClicks(box("portBox")->lineEdit(), u"/dev/serial/by-id/frame"_s);
        press(dialog, "openButton");
        QCOMPARE(asked.first().first().toString(), u"/dev/serial/by-id/frame"_s);
        QCOMPARE(home->element("UARTPORT"), "/dev/serial/by-id/frame");
        QCOMPARE(items("portBox"), QStringList({u"ttyS0"_s, u"ttyUSB0"_s}));
    }

    void a_typed_name_is_taken_without_blanks_around_it()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        box("portBox")->setEditText(u" \tttyUSB1 "_s);
        press(dialog, "openButton");
        QCOMPARE(asked.first().first().toString(), u"ttyUSB1"_s);
        QCOMPARE(home->element("UARTPORT"), "ttyUSB1");
        QCOMPARE(box("portBox")->currentText(), u"ttyUSB1"_s);
    }

    void an_adapter_that_comes_or_goes_is_listed_by_itself()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        auto *edit = box("portBox")->lineEdit();
        edit->setFocus();
        edit->setText(u"being typed"_s);
        edit->setSelection(3, 2);
        systemPorts.append({u"ttyACM0"_s, QString()});
        QTRY_COMPARE(items("portBox"), QStringList({u"ttyS0"_s, u"ttyUSB0"_s, u"ttyACM0"_s}));
        QCOMPARE(edit->text(), u"being typed"_s);
        QCOMPARE(edit->selectionStart(), 3);
        QCOMPARE(edit->selectedText(), u"ng"_s);
        edit->deselect();
        edit->setCursorPosition(5);
        systemPorts.removeFirst();
        QTRY_COMPARE(items("portBox"), QStringList({u"ttyUSB0"_s, u"ttyACM0"_s}));
        QCOMPARE(edit->cursorPosition(), 5);
        QVERIFY(!edit->hasSelectedText());
    }

    void what_is_selected_stays_so_when_ports_are_listed_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("length");
        QTest::newRow("forwards") << 6 << 3;
        QTest::newRow("backwards") << 9 << -3;
        QTest::newRow("from the beginning") << 0 << 5;
        QTest::newRow("back to the beginning") << 5 << -5;
        QTest::newRow("all") << 0 << 11;
        QTest::newRow("nothing") << 0 << 0;
    }
    void what_is_selected_stays_so_when_ports_are_listed()
    {
        QFETCH(const int, from);
        QFETCH(const int, length);
        editFile({{"CONNECT", "2"}});
        appear();
        auto *edit = box("portBox")->lineEdit();
        edit->setText(u"being typed"_s);
        edit->setSelection(from, length);
        const QString selected = edit->selectedText();
        const int cursor = edit->cursorPosition();
        QCOMPARE(selected.size(), std::abs(length));
        systemPorts.append({u"ttyACM0"_s, QString()});
        box("portBox")->findChild<PortChoice *>()->list();
        QCOMPARE(items("portBox").size(), 3);
        QCOMPARE(edit->text(), u"being typed"_s);
        QCOMPARE(edit->selectedText(), selected);
        QCOMPARE(edit->cursorPosition(), cursor);
    }

    void an_open_list_stays_until_it_is_closed()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        box("portBox")->showPopup();
        QTRY_VERIFY(box("portBox")->view()->isVisible());
        systemPorts.append({u"ttyACM0"_s, QString()});
        QTest::qWait(1500);
        QVERIFY(box("portBox")->view()->isVisible());
        QCOMPARE(items("portBox").size(), 2);
        box("portBox")->hidePopup();
        QTRY_COMPARE(items("portBox").size(), 3);
    }

    void behind_a_closed_dialog_nobody_looks_for_ports()
    {
        int looks = 0;
        dialog = std::make_unique<connect_dlg>(nullptr, [&looks] {
            ++looks;
            return QList<connect_dlg::Port>();
        });
        appear();
        QTRY_VERIFY(looks >= 2);
        dialog->close();
        const int before = looks;
        QTest::qWait(1300);
        QCOMPARE(looks, before);
    }

    void without_a_port_there_is_nothing_to_open()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        box("portBox")->setEditText(QString());
        QVERIFY(!button("openButton")->isEnabled());
        QVERIFY(!button("findButton")->isEnabled());
        box("portBox")->setEditText(u"  "_s);
        QVERIFY(!button("openButton")->isEnabled());
        QVERIFY(!button("findButton")->isEnabled());
        box("portBox")->setEditText(u"ttyS0"_s);
        QVERIFY(button("openButton")->isEnabled());
    }

    void the_list_is_refreshed_when_the_dialog_opens_and_by_its_button()
    {
        editFile({{"CONNECT", "2"}});
        systemPorts.append({u"ttyACM0"_s, QString()});
        appear();
        QCOMPARE(items("portBox"), QStringList({u"ttyS0"_s, u"ttyUSB0"_s, u"ttyACM0"_s}));
        box("portBox")->setEditText(u"being typed"_s);
        systemPorts.clear();
        press(dialog, "refreshButton");
        QCOMPARE(items("portBox"), QStringList());
        QCOMPARE(box("portBox")->currentText(), u"being typed"_s);
    }

    void a_frame_on_usb_is_neither_looked_for_nor_wants_a_port()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        QVERIFY(button("findButton")->isEnabled());
        usb()->setChecked(true);
        QVERIFY(!button("findButton")->isEnabled());
        for (const char *name :
             {"portLabel", "portBox", "refreshButton", "rateLabel", "rateBox", "dataBitsLabel",
              "dataBitsBox", "parityLabel", "parityBox", "stopBitsLabel", "stopBitsBox"})
            QVERIFY2(!in<QWidget>(dialog, name)->isEnabled(), name);
        box("portBox")->setEditText(QString());
        QVERIFY(button("openButton")->isEnabled());
    }

    // Choices

    void a_new_file_says_usb_and_com1_at_9600()
    {
        QVERIFY(usb()->isChecked());
        QVERIFY(!box("portBox")->isEnabled() && !box("rateBox")->isEnabled());
        QCOMPARE(box("portBox")->currentText(), u"COM1"_s);
        QCOMPARE(box("rateBox")->currentText(), u"9600"_s);
        QCOMPARE(box("dataBitsBox")->currentText(), u"8"_s);
        QCOMPARE(box("parityBox")->currentText(), u"None"_s);
        QCOMPARE(box("stopBitsBox")->currentText(), u"1"_s);
    }

    void opening_asks_for_and_keeps_what_is_chosen()
    {
        appear();
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        QTest::mouseClick(uart(), Qt::LeftButton, {}, QPoint(10, 10));
        QVERIFY(box("portBox")->isEnabled());
        choose("portBox", u"ttyUSB0"_s);
        choose("rateBox", u"115200"_s);
        choose("dataBitsBox", u"7"_s);
        choose("parityBox", u"Even"_s);
        choose("stopBitsBox", u"2"_s);
        press(dialog, "openButton");
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked.first().first().toString(), u"ttyUSB0"_s);
        const auto settings = asked.first().at(1).value<PortSettings>();
        QCOMPARE(int(settings.BaudRate), 19);
        QCOMPARE(int(settings.DataBits), 2);
        QCOMPARE(int(settings.Parity), 2);
        QCOMPARE(int(settings.StopBits), 2);

        const QList<QPair<QByteArray, QByteArray>> kept = {
            {"CONNECT", "2"},  {"UARTPORT", "ttyUSB0"}, {"BAUDRATE", "19"},
            {"DATABITS", "2"}, {"PARITY", "2"},         {"STOPBITS", "2"}};
        for (const auto &[name, value] : kept)
            QCOMPARE(home->element(name), value);

        makeDialog();
        QVERIFY(uart()->isChecked());
        QCOMPARE(box("portBox")->currentText(), u"ttyUSB0"_s);
        QCOMPARE(box("rateBox")->currentText(), u"115200"_s);
        QCOMPARE(box("dataBitsBox")->currentText(), u"7"_s);
        QCOMPARE(box("parityBox")->currentText(), u"Even"_s);
        QCOMPARE(box("stopBitsBox")->currentText(), u"2"_s);
    }

    void usb_is_asked_for_and_kept()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        QSignalSpy usbAsked(dialog.get(), &connect_dlg::useUsb);
        QSignalSpy uartAsked(dialog.get(), &connect_dlg::openUart);
        QTest::mouseClick(usb(), Qt::LeftButton, {}, QPoint(10, 10));
        press(dialog, "openButton");
        QCOMPARE(usbAsked.size(), 1);
        QCOMPARE(uartAsked.size(), 0);
        QCOMPARE(home->element("CONNECT"), "1");
    }

    void what_is_not_shown_stays_as_it_is_in_the_file()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        // Another program, while the dialog is open.
        editFile({{"TUIO_EN", "7"},
                  {"OS_EN", "-3"},
                  {"FLOWCONTROL", "55"},
                  {"TIMEOUT", "123456"},
                  {"SMO_LV", "6"}});
        choose("rateBox", u"57600"_s);
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        press(dialog, "openButton");
        const QList<QPair<QByteArray, QByteArray>> kept = {
            {"TUIO_EN", "7"},      {"OS_EN", "-3"}, {"FLOWCONTROL", "55"},
            {"TIMEOUT", "123456"}, {"SMO_LV", "6"}, {"BAUDRATE", "17"}};
        for (const auto &[name, value] : kept)
            QCOMPARE(home->element(name), value);
    }

    void leaving_without_open_drops_what_was_changed()
    {
        appear();
        const QByteArray before = home->content();
        uart()->setChecked(true);
        choose("portBox", u"ttyUSB0"_s);
        choose("parityBox", u"Mark"_s);
        dialog->close();
        QCOMPARE(home->content(), before);
        QVERIFY(usb()->isChecked());
        QCOMPARE(box("portBox")->currentText(), u"COM1"_s);
        QCOMPARE(box("parityBox")->currentText(), u"None"_s);
    }

    void what_another_program_wrote_shows_when_the_dialog_opens()
    {
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyS7"}, {"BAUDRATE", "21"}});
        appear();
        QVERIFY(uart()->isChecked());
        QCOMPARE(box("portBox")->currentText(), u"ttyS7"_s);
        QCOMPARE(box("rateBox")->currentText(), u"256000"_s);
    }

    void values_in_no_list_are_shown_and_kept_until_changed()
    {
        editFile({{"CONNECT", "2"},
                  {"BAUDRATE", "22"},
                  {"DATABITS", "-1"},
                  {"PARITY", "2147483647"},
                  {"STOPBITS", "3"}});
        appear();
        QCOMPARE(box("rateBox")->currentText(), u"unknown (22)"_s);
        QCOMPARE(box("dataBitsBox")->currentText(), u"unknown (-1)"_s);
        QCOMPARE(box("parityBox")->currentText(), u"unknown (2147483647)"_s);
        QCOMPARE(box("stopBitsBox")->currentText(), u"unknown (3)"_s);
        choose("dataBitsBox", u"8"_s);
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        press(dialog, "openButton");
        const auto settings = asked.first().at(1).value<PortSettings>();
        QCOMPARE(int(settings.BaudRate), 22);
        QCOMPARE(int(settings.Parity), 2147483647);
        QCOMPARE(home->element("BAUDRATE"), "22");
        QCOMPARE(home->element("DATABITS"), "3");
        QCOMPARE(home->element("PARITY"), "2147483647");
        QCOMPARE(home->element("STOPBITS"), "3");

        // A value that the file does not hold any more is no choice either.
        editFile({{"BAUDRATE", "12"}});
        dialog->close();
        appear();
        QCOMPARE(box("rateBox")->count(), 22);
        QCOMPARE(box("dataBitsBox")->count(), 4);
        QCOMPARE(box("stopBitsBox")->count(), 4);
    }

    void one_and_a_half_stop_bits_are_kept_but_cannot_be_chosen()
    {
        editFile({{"CONNECT", "2"}, {"STOPBITS", "1"}});
        appear();
        QCOMPARE(box("stopBitsBox")->currentText(), u"1.5"_s);
        press(dialog, "openButton");
        QCOMPARE(home->element("STOPBITS"), "1");
        box("stopBitsBox")->setCurrentIndex(0);
        QTest::keyClick(box("stopBitsBox"), Qt::Key_Down);
        QCOMPARE(box("stopBitsBox")->currentText(), u"2"_s);
        for (const int role : {Qt::ToolTipRole, Qt::AccessibleDescriptionRole})
            QCOMPARE(box("stopBitsBox")->itemData(1, role).toString(),
                     u"Serial ports cannot be set to 1.5 stop bits here."_s);
    }

    void another_connect_number_chooses_nothing_and_stays_until_the_user_chooses()
    {
        editFile({{"CONNECT", "7"}});
        appear();
        QVERIFY(!usb()->isChecked() && !uart()->isChecked());
        QVERIFY(!button("openButton")->isEnabled());
        dialog->close();
        QCOMPARE(home->element("CONNECT"), "7");
        appear();
        QTest::mouseClick(uart(), Qt::LeftButton, {}, QPoint(10, 10));
        QVERIFY(uart()->isChecked() && !usb()->isChecked());
        press(dialog, "openButton");
        QCOMPARE(home->element("CONNECT"), "2");
        dialog->close();
        editFile({{"CONNECT", "7"}});
        appear();
        QTest::mouseClick(usb(), Qt::LeftButton, {}, QPoint(10, 10));
        QVERIFY(usb()->isChecked() && !uart()->isChecked());
        QVERIFY(button("openButton")->isEnabled());
    }

    void a_port_name_that_a_field_cannot_show_is_kept()
    {
        editFile({{"CONNECT", "2"}, {"UARTPORT", "two\nlines"}});
        appear();
        QSignalSpy asked(dialog.get(), &connect_dlg::openUart);
        press(dialog, "openButton");
        QCOMPARE(asked.first().first().toString(), u"two\nlines"_s);
        QCOMPARE(home->element("UARTPORT"), "two\nlines");
    }

    void choices_that_were_kept_before_their_file_went_say_so_too()
    {
        appear();
        uart()->setChecked(true);
        press(dialog, "openButton");
        QVERIFY(!state().contains(u" cannot be written"_s));
        home->removeConfigDirectory();
        press(dialog, "openButton");
        QVERIFY(state().contains(home->path() + u" cannot be written"_s));
    }

    void choices_that_cannot_be_kept_say_so_until_they_can_data()
    {
        QTest::addColumn<QString>("next");
        for (const char *next : {"openButton", "findButton"})
            QTest::newRow(next) << QString::fromLatin1(next);
    }
    void choices_that_cannot_be_kept_say_so_until_they_can()
    {
        QFETCH(const QString, next);
        appear();
        home->removeConfigDirectory();
        uart()->setChecked(true);
        press(dialog, "openButton");
        QVERIFY(state().contains(home->path() + u" cannot be written"_s));
        QVERIFY(QDir().mkdir(QFileInfo(home->path()).path()));
        press(dialog, next);
        QVERIFY2(!state().contains(u" cannot be written"_s), qPrintable(state()));
    }

    // State

    void it_says_when_nothing_is_connected()
    {
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open."_s);
        QVERIFY(!button("closeButton")->isEnabled());
    }

    void a_usb_link_shows()
    {
        dialog->setState(Link::Usb, QString(), QString());
        QCOMPARE(state(), u"A touch frame is connected by USB."_s);
        QVERIFY(!button("closeButton")->isEnabled());
    }

    void an_open_port_shows_and_can_be_closed()
    {
        appear();
        dialog->setState(Link::Serial, u"ttyUSB0"_s, QString());
        QCOMPARE(state(), u"The serial port ttyUSB0 is open.\n"
                          u"Nothing has come from a touch frame there yet."_s);
        QSignalSpy asked(dialog.get(), &connect_dlg::closeUart);
        press(dialog, "closeButton");
        QCOMPARE(asked.size(), 1);
    }

    void the_first_frame_on_a_serial_port_shows()
    {
        Frame report{};
        dialog->DoRecv03(report.data());
        dialog->setState(Link::Serial, u"ttyUSB0"_s, QString());
        QVERIFY(state().contains(u"Nothing has come"_s));
        dialog->DoRecv03(report.data());
        QCOMPARE(state(), u"The serial port ttyUSB0 is open.\nA touch frame answers there."_s);
        dialog->setState(Link::None, QString(), QString());
        dialog->setState(Link::Serial, u"ttyUSB0"_s, QString());
        QVERIFY(state().contains(u"Nothing has come"_s));
    }

    void another_opening_forgets_that_a_frame_answered()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        Frame report{};
        dialog->setState(Link::Serial, u"ttyUSB0"_s, QString());
        dialog->DoRecv03(report.data());
        QVERIFY(state().contains(u"A touch frame answers there."_s));
        // Whoever opens it answers without another state in between.
        connect(dialog.get(), &connect_dlg::openUart, this,
                [&] { dialog->setState(Link::Serial, u"ttyUSB0"_s, QString()); });
        press(dialog, "openButton");
        QVERIFY(!state().contains(u"A touch frame answers there."_s));
        QVERIFY(state().contains(u"Nothing has come from a touch frame there yet."_s));
    }

    // Whether a frame answers

    void an_opened_port_is_asked_for_the_rotation_until_a_frame_answers()
    {
        Line line(*dialog);
        openUart();
        QCOMPARE(line.asked, QByteArrayList({"A7 02 00"}));
        QCOMPARE(state(), u"The serial port ttyUSB0 is open.\n"
                          u"Nothing has come from a touch frame there yet."_s);
        QTRY_COMPARE(line.asked.size(), 3);
        Frame report{};
        dialog->DoRecv03(report.data());
        QCOMPARE(state(), u"The serial port ttyUSB0 is open.\n"
                          u"A touch frame answers there.\n"
                          u"A frame answers at 115200 baud."_s);
        QTest::qWait(700);
        QCOMPARE(line.asked.size(), 3);
    }

    void no_answer_within_a_second_is_told_and_a_late_one_too()
    {
        Line line(*dialog);
        QElapsedTimer time;
        time.start();
        openUart();
        QTRY_VERIFY(state().endsWith(u"\nNo answer: check cable and rate."_s));
        QVERIFY(time.elapsed() >= 990);
        QVERIFY(time.elapsed() < 3000);
        QVERIFY(state().contains(u"Nothing has come from a touch frame there yet."_s));
        QCOMPARE(line.asked.size(), 4);
        Frame report{};
        dialog->DoRecv03(report.data());
        QVERIFY(state().endsWith(u"\nA frame answers at 115200 baud."_s));
        QVERIFY(!state().contains(u"No answer"_s));
    }

    void what_was_asked_on_one_port_says_nothing_of_the_next()
    {
        Line line(*dialog);
        openUart();
        QTRY_VERIFY(state().contains(u"No answer"_s));
        dialog->setState(Link::None, QString(), QString());
        QVERIFY(!state().contains(u"No answer"_s));
        dialog->setState(Link::Serial, u"ttyS0"_s, QString());
        QVERIFY(!state().contains(u"No answer"_s));
        // Opened by somebody else: nothing is asked for by itself.
        const qsizetype before = line.asked.size();
        QTest::qWait(400);
        QCOMPARE(line.asked.size(), before);
    }

    void a_rate_without_a_name_is_not_told()
    {
        Line line(*dialog);
        editFile({{"CONNECT", "2"}, {"BAUDRATE", "22"}});
        appear();
        press(dialog, "openButton");
        Frame report{};
        dialog->DoRecv03(report.data());
        QVERIFY2(state().endsWith(u"\nA touch frame answers there.\nA frame answers."_s),
                 qPrintable(state()));
    }

    void a_port_that_does_not_open_is_not_asked()
    {
        Line line(*dialog);
        line.opens = false;
        openUart();
        QTest::qWait(400);
        QCOMPARE(line.asked, QByteArrayList());
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open.\n"
                          u"It is broken."_s);
    }

    void a_usb_frame_that_takes_over_ends_the_question()
    {
        Line line(*dialog);
        openUart();
        dialog->setState(Link::Usb, u"ttyUSB0"_s, QString());
        const qsizetype before = line.asked.size();
        QTest::qWait(1300);
        QCOMPARE(line.asked.size(), before);
        QVERIFY(!state().contains(u"No answer"_s));
    }

    // Finding the rate

    void find_tries_the_chosen_rate_and_then_the_usual_ones()
    {
        Line line(*dialog);
        line.frameAt = 14; // 19200
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}, {"BAUDRATE", "17"}, {"PARITY", "2"}});
        appear();
        press(dialog, "findButton");
        QCOMPARE(button("findButton")->text(), u"Stop"_s);
        QVERIFY(!button("openButton")->isEnabled());
        QVERIFY(!box("rateBox")->isEnabled());
        QVERIFY(!uart()->isEnabled());
        QVERIFY(state().contains(u"Looking for a frame at 57600 baud."_s));
        QTRY_VERIFY(state().contains(u"A frame answers at 19200 baud."_s));
        QCOMPARE(line.rates, QList<int>({17, 12, 14}));
        QCOMPARE(int(line.last.Parity), 2);
        QCOMPARE(button("findButton")->text(), u"Fi&nd"_s);
        QVERIFY(box("rateBox")->isEnabled());
        // What was found is chosen and kept.
        QCOMPARE(box("rateBox")->currentText(), u"19200"_s);
        QCOMPARE(home->element("BAUDRATE"), "14");
        QCOMPARE(line.closings, 0);
    }

    void find_leaves_out_a_rate_without_a_name()
    {
        Line line(*dialog);
        line.frameAt = 14; // 19200
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}, {"BAUDRATE", "22"}});
        appear();
        press(dialog, "findButton");
        QTRY_VERIFY(state().contains(u"A frame answers at 19200 baud."_s));
        QCOMPARE(line.rates, QList<int>({12, 14}));
    }

    void find_says_what_it_tried_in_vain_and_closes_the_port()
    {
        Line line(*dialog);
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}, {"BAUDRATE", "19"}});
        appear();
        press(dialog, "findButton");
        QTRY_COMPARE_WITH_TIMEOUT(button("findButton")->text(), u"Fi&nd"_s, 10'000);
        QCOMPARE(line.rates, QList<int>({19, 12, 14, 15, 17}));
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open.\n"
                          u"No frame answers at 115200, 9600, 19200, 38400, 57600 baud. Check the "
                          u"cable and the port."_s);
        QCOMPARE(line.closings, 1);
        QCOMPARE(home->element("BAUDRATE"), "19");
        QCOMPARE(box("rateBox")->currentText(), u"115200"_s);
    }

    void find_after_a_search_that_was_stopped_begins_anew()
    {
        Line line(*dialog);
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}, {"BAUDRATE", "19"}});
        appear();
        press(dialog, "findButton");
        press(dialog, "findButton");
        QCOMPARE(line.rates, QList<int>({19}));
        press(dialog, "findButton");
        QTRY_COMPARE_WITH_TIMEOUT(button("findButton")->text(), u"Fi&nd"_s, 10'000);
        QCOMPARE(line.rates, QList<int>({19, 19, 12, 14, 15, 17}));
        QVERIFY2(state().contains(u"No frame answers at 115200, 9600, 19200, 38400, 57600 baud."_s),
                 qPrintable(state()));
    }

    void find_can_be_stopped_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("by its button") << u"findButton"_s;
        QTest::newRow("by closing the port") << u"closeButton"_s;
        QTest::newRow("by closing the window") << QString();
    }
    void find_can_be_stopped()
    {
        QFETCH(const QString, how);
        Line line(*dialog);
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}, {"BAUDRATE", "19"}});
        appear();
        press(dialog, "findButton");
        if (how.isEmpty())
            dialog->close();
        else
            press(dialog, how.toLatin1().constData());
        QCOMPARE(line.closings >= 1, true);
        QCOMPARE(button("findButton")->text(), u"Fi&nd"_s);
        QCOMPARE(state().contains(u"The search was stopped."_s), how == u"findButton"_s);
        QTest::qWait(800);
        QCOMPARE(line.rates, QList<int>({19}));
    }

    void find_ends_with_a_port_that_does_not_open_or_is_lost()
    {
        Line line(*dialog);
        line.opens = false;
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}});
        appear();
        press(dialog, "findButton");
        QCOMPARE(button("findButton")->text(), u"Fi&nd"_s);
        QVERIFY(state().endsWith(u"It is broken."_s));
        line.opens = true;
        press(dialog, "findButton");
        QCOMPARE(button("findButton")->text(), u"Stop"_s);
        dialog->setState(Link::None, QString(), u"It is gone."_s);
        QCOMPARE(button("findButton")->text(), u"Fi&nd"_s);
        QVERIFY(state().endsWith(u"It is gone."_s));
        QTest::qWait(800);
        QCOMPARE(line.rates.size(), 2);
    }

    void find_ends_with_a_usb_frame_that_takes_over_and_waits_for_its_unplugging()
    {
        Line line(*dialog);
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}});
        appear();
        press(dialog, "findButton");
        dialog->setState(Link::Usb, u"ttyUSB0"_s, QString());
        QCOMPARE(button("findButton")->text(), u"Fi&nd"_s);
        QVERIFY(!button("findButton")->isEnabled());
        QVERIFY(state().contains(u"The frame took over from the serial port."_s));
        dialog->setState(Link::None, QString(), QString());
        QVERIFY(button("findButton")->isEnabled());
        QTest::qWait(800);
        QCOMPARE(line.rates.size(), 1);
    }

    void a_failure_stays_until_another_attempt()
    {
        editFile({{"CONNECT", "2"}});
        appear();
        const QString why = u"There is no serial port /dev/COM1."_s;
        connect(dialog.get(), &connect_dlg::openUart, this,
                [&] { dialog->setState(Link::None, QString(), why); });
        press(dialog, "openButton");
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open.\n"_s + why);
        dialog->setState(Link::Usb, QString(), QString());
        QCOMPARE(state(), u"A touch frame is connected by USB.\n"_s + why);
        usb()->setChecked(true);
        press(dialog, "openButton");
        QCOMPARE(state(), u"A touch frame is connected by USB."_s);
    }

    void a_port_that_opens_after_all_takes_its_failure_away()
    {
        appear();
        dialog->setState(Link::None, QString(), u"It is in use."_s);
        dialog->setState(Link::Serial, u"ttyUSB0"_s, QString());
        QCOMPARE(state(), u"The serial port ttyUSB0 is open.\n"
                          u"Nothing has come from a touch frame there yet."_s);
    }

    void a_port_that_is_closed_takes_what_was_wrong_with_it_along()
    {
        appear();
        connect(dialog.get(), &connect_dlg::closeUart, this,
                [this] { dialog->setState(Link::None, QString(), QString()); });
        dialog->setState(Link::Serial, u"ttyUSB0"_s, u"It hangs."_s);
        QVERIFY(state().endsWith(u"\nIt hangs."_s));
        press(dialog, "closeButton");
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open."_s);
    }

    void a_failure_is_forgotten_with_the_dialog()
    {
        appear();
        dialog->setState(Link::None, QString(), u"It is broken."_s);
        QVERIFY(state().contains(u"It is broken."_s));
        dialog->close();
        QVERIFY(!state().contains(u"It is broken."_s));
    }

    void what_happens_behind_a_closed_dialog_is_there_when_it_opens()
    {
        dialog->setState(Link::None, QString(), u"The serial port is gone."_s);
        appear();
        QVERIFY(state().contains(u"The serial port is gone."_s));
    }

    void usb_without_a_frame_says_what_to_do()
    {
        appear();
        press(dialog, "openButton");
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open.\n"
                          u"No touch frame was found by USB. One that is plugged in is connected "
                          u"at once."_s);
    }

    void usb_with_a_frame_that_cannot_be_used_says_why()
    {
        appear();
        connect(dialog.get(), &connect_dlg::useUsb, this,
                [this] { dialog->setState(Link::None, QString(), u"It may not be read."_s); });
        press(dialog, "openButton");
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open.\n"
                          u"It may not be read."_s);
    }

    void usb_taking_over_from_an_open_port_shows()
    {
        dialog->setState(Link::Serial, u"ttyUSB0"_s, QString());
        dialog->setState(Link::Usb, u"ttyUSB0"_s, QString());
        QCOMPARE(state(),
                 u"A touch frame is connected by USB.\n"
                 u"The serial port ttyUSB0 is open but not used.\n"
                 u"The frame took over from the serial port. Unplug it to use the port."_s);
        QVERIFY(button("closeButton")->isEnabled());
    }

    void a_reply_never_answers_for_another_link()
    {
        Frame report{};
        dialog->setState(Link::Usb, QString(), QString());
        dialog->DoRecv03(report.data());
        dialog->setState(Link::Serial, u"ttyS0"_s, QString());
        QVERIFY(state().contains(u"Nothing has come"_s));
    }

    void an_unchanged_state_leaves_the_selection_of_the_text()
    {
        appear();
        auto *text = in<QPlainTextEdit>(dialog, "stateText");
        text->selectAll();
        dialog->setState(Link::None, QString(), QString());
        QVERIFY(text->textCursor().hasSelection());
    }

    void nothing_is_asked_for_by_itself()
    {
        editFile({{"CONNECT", "2"}, {"UARTPORT", "ttyUSB0"}});
        makeDialog();
        QSignalSpy usbAsked(dialog.get(), &connect_dlg::useUsb);
        QSignalSpy uartAsked(dialog.get(), &connect_dlg::openUart);
        QSignalSpy closeAsked(dialog.get(), &connect_dlg::closeUart);
        appear();
        dialog->close();
        QCOMPARE(usbAsked.size() + uartAsked.size() + closeAsked.size(), 0);
    }
};

QTEST_MAIN(TestConnectDlg)
#include "tst_connect_dlg.moc"
