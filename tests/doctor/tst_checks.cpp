// SPDX-License-Identifier: GPL-3.0-or-later

#include "doctor/desktopchecks.h"
#include "doctor/serialchecks.h"
#include "doctor/settingscheck.h"
#include "doctor/usbchecks.h"
#include "tests/support/madeupmachine.h"

#include <QCoreApplication>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace doctor;

using Cause = Finding::Cause;
using Verdict = Finding::Verdict;

namespace {

const QString Node = u"/dev/usb/hiddev0"_s;

// As the tool writes it.
const QByteArray WholeFile = R"(<?xml version="1.0" encoding="UTF-8"?>
<data>
    <easysetting><ENVIRONMENT>Indoor</ENVIRONMENT><USE>Write</USE></easysetting>
    <setting>
        <ALL_EN>1</ALL_EN><RB_EN>1</RB_EN><RB_DURATION>1500</RB_DURATION><RB_RAN>3</RB_RAN>
        <DB_SPEED>600</DB_SPEED><DB_RAN>30</DB_RAN><WHEEL_EN>1</WHEEL_EN><WHEEL_SEN>2</WHEEL_SEN>
    </setting>
    <smoothing><SMO_EN>1</SMO_EN><SMO_LV>5</SMO_LV></smoothing>
    <connect>
        <CONNECT>1</CONNECT><TUIO_EN>0</TUIO_EN><OS_EN>1</OS_EN><UARTPORT>COM1</UARTPORT>
        <BAUDRATE>12</BAUDRATE><DATABITS>3</DATABITS><FLOWCONTROL>0</FLOWCONTROL>
        <PARITY>0</PARITY><STOPBITS>0</STOPBITS><TIMEOUT>500</TIMEOUT>
    </connect>
</data>
)";

} // namespace

// Verdict, cause, and what the words have to name; "|" stands between several.
#define EXPECT(finding, theVerdict, theCause, names)                                               \
    do {                                                                                           \
        const Finding made = finding;                                                              \
        QCOMPARE(made.verdict, theVerdict);                                                        \
        QCOMPARE(made.cause, theCause);                                                            \
        const QString words = made.evidence + u" / "_s + made.nextStep;                            \
        for (const QString &name : QString(names).split(u'|'))                                     \
            QVERIFY2(words.contains(name), qPrintable(words));                                     \
        QVERIFY2(made.verdict != Verdict::Trouble || !made.nextStep.isEmpty(), qPrintable(words)); \
    } while (false)

class TestChecks : public QObject
{
    Q_OBJECT

private slots:
    // The kernel

    void a_kernel_with_the_driver_is_good()
    {
        EXPECT(checkKernel(MadeUpMachine()), Verdict::Good, Cause::None, u"usbhid"_s);
    }

    void a_kernel_without_usb_is_trouble()
    {
        MadeUpMachine machine;
        machine.remove(u"/sys/bus/usb"_s);
        EXPECT(checkKernel(machine), Verdict::Trouble, Cause::Failed, u"6.1.0-made-up|no USB"_s);
    }

    void a_driver_that_is_not_loaded_is_told_how_to_be()
    {
        MadeUpMachine machine;
        machine.remove(u"/sys/bus/usb/drivers/usbhid"_s);
        machine.write(u"/lib/modules/6.1.0-made-up/modules.dep"_s,
                      "kernel/drivers/hid/usbhid/usbhid.ko.xz: kernel/drivers/hid/hid.ko.xz\n");
        EXPECT(checkKernel(machine), Verdict::Trouble, Cause::Failed, u"modprobe usbhid"_s);
    }

    void a_kernel_that_lacks_the_driver_is_trouble()
    {
        MadeUpMachine machine;
        machine.remove(u"/sys/bus/usb/drivers/usbhid"_s);
        EXPECT(checkKernel(machine), Verdict::Trouble, Cause::Failed, u"no driver usbhid"_s);
    }

    void a_kernel_built_without_hiddev_is_trouble()
    {
        MadeUpMachine machine;
        machine.write(u"/boot/config-6.1.0-made-up"_s, "# CONFIG_USB_HIDDEV is not set\n");
        EXPECT(checkKernel(machine), Verdict::Trouble, Cause::Failed, u"CONFIG_USB_HIDDEV"_s);
    }

    void without_sysfs_the_kernel_is_not_looked_at()
    {
        MadeUpMachine machine;
        machine.remove(u"/sys"_s);
        EXPECT(checkKernel(machine), Verdict::NotLooked, Cause::None, u"/sys"_s);
    }

    // The node

    void a_frame_with_its_node_is_good()
    {
        const MadeUpMachine machine;
        const QList<UsbFrame> frames = UsbFrame::allOf(machine);
        QCOMPARE(frames.size(), 1);
        QCOMPARE(frames[0].device, u"1-2"_s);
        QCOMPARE(frames[0].interfaceName, u"1-2:1.0"_s);
        QCOMPARE(frames[0].driver, u"usbhid"_s);
        QCOMPARE(frames[0].product, quint16(1));
        QCOMPARE(frames[0].release, quint16(0x3010));
        EXPECT(checkNode(machine, frames), Verdict::Good, Cause::None, Node);
    }

    void without_a_frame_it_is_to_be_plugged_in()
    {
        MadeUpMachine machine;
        machine.unplug();
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::NoFrame,
               u"No touch frame is on USB.|Plug the frame in"_s);
    }

    void a_node_that_is_asked_for_is_named()
    {
        EXPECT(checkNode(MadeUpMachine(), {}, u"/dev/usb/hiddev7"_s), Verdict::Trouble,
               Cause::NoFrame, u"No touch frame is at /dev/usb/hiddev7."_s);
    }

    void nodes_of_other_makers_are_named()
    {
        MadeUpMachine machine;
        machine.unplug();
        machine.addUsb("051d", u"1-3"_s, u"usbhid"_s, u"hiddev1"_s);
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::NoFrame,
               u"other makers': hiddev1"_s);
    }

    void a_frame_that_no_driver_uses_is_trouble()
    {
        MadeUpMachine machine;
        machine.unplug();
        machine.addUsb("5156", u"1-2"_s, {}, {});
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::NoFrame,
               u"no driver uses it|write \"1-2:1.0\" to /sys/bus/usb/drivers/usbhid/bind"_s);
    }

    void a_frame_that_another_driver_uses_is_trouble()
    {
        MadeUpMachine machine;
        machine.unplug();
        machine.addUsb("5156", u"1-2"_s, u"usbfs"_s, {});
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::NoFrame,
               u"the driver usbfs uses it"_s);
    }

    void a_frame_for_which_the_driver_made_no_node_is_trouble()
    {
        MadeUpMachine machine;
        machine.unplug();
        machine.addUsb("5156", u"1-2"_s, u"usbhid"_s, {});
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::NoFrame,
               u"made no hiddev node|16 nodes"_s);
    }

    void a_frame_that_was_not_set_up_is_trouble()
    {
        MadeUpMachine machine;
        machine.remove(u"/sys/bus/usb/devices/1-2:1.0"_s);
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::NoFrame,
               u"has not been set up"_s);
    }

    void a_node_that_is_not_in_dev_is_trouble()
    {
        MadeUpMachine machine;
        machine.remove(Node);
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::NoFrame,
               u"not in /dev|container the device /dev/usb/hiddev0"_s);
    }

    void of_two_frames_the_first_is_used()
    {
        MadeUpMachine machine;
        machine.addUsb("5156", u"1-3"_s, u"usbhid"_s, u"hiddev1"_s);
        EXPECT(checkNode(machine, UsbFrame::allOf(machine)), Verdict::Note, Cause::None,
               u"2 touch|/dev/usb/hiddev0 is the first"_s);
    }

    void ids_and_release_are_told()
    {
        MadeUpMachine machine;
        EXPECT(checkIds(UsbFrame::allOf(machine)), Verdict::Good, Cause::None,
               u"5156:0001, release 3010"_s);
        machine.write(u"/sys/bus/usb/devices/1-2/idProduct"_s, "0051\n");
        EXPECT(checkIds(UsbFrame::allOf(machine)), Verdict::Note, Cause::None,
               u"5156:0051|not a known one"_s);
        EXPECT(checkIds({}), Verdict::NotLooked, Cause::None, u"no touch frame"_s);
    }

    // Rights

    void a_node_that_may_be_opened_is_good()
    {
        const MadeUpMachine machine;
        EXPECT(checkPermission(machine, UsbFrame::allOf(machine)), Verdict::Good, Cause::None,
               u"This user may open /dev/usb/hiddev0."_s);
    }

    void a_node_that_may_not_be_opened_is_told_with_what_is_there_data()
    {
        QTest::addColumn<bool>("rule");
        QTest::addColumn<QByteArray>("groups"); // of the system
        QTest::addColumn<bool>("applied");
        QTest::addColumn<bool>("session");
        QTest::addColumn<QString>("advice");
        const QByteArray without("root:x:0:\n");
        const QByteArray stranger("root:x:0:\nplugdev:x:46:other\n");
        const QByteArray member("root:x:0:\nplugdev:x:46:other,somebody\n");
        QTest::newRow("no rule") << false << stranger << false << false
                                 << u"Install the udev rule 70-quorvel.rules"_s;
        QTest::newRow("no group") << true << without << false << false
                                  << u"groupadd --system plugdev"_s;
        QTest::newRow("rule came late") << true << member << false << true
                                        << u"does not have its rights yet. Plug the frame in"_s;
        QTest::newRow("session came early")
            << true << member << true << false << u"joined it after this session began. Log in"_s;
        QTest::newRow("no member")
            << true << stranger << true << false << u"Join the group plugdev, then log in again."_s;
    }
    void a_node_that_may_not_be_opened_is_told_with_what_is_there()
    {
        QFETCH(const bool, rule);
        QFETCH(const QByteArray, groups);
        QFETCH(const bool, applied);
        QFETCH(const bool, session);
        QFETCH(const QString, advice);
        if (geteuid() != 0)
            QFAIL("needs root, to give a file to a group");
        MadeUpMachine machine;
        machine.closed.insert(Node);
        machine.write(u"/etc/group"_s, groups);
        if (rule)
            machine.write(u"/usr/lib/udev/rules.d/70-quorvel.rules"_s, "x");
        const QByteArray path = QFile::encodeName(machine.root() + Node);
        QCOMPARE(chown(path.constData(), 0, applied ? 46 : 0), 0);
        QCOMPARE(chmod(path.constData(), applied ? 0660 : 0600), 0);
        if (session)
            machine.who.groups += 46;
        EXPECT(checkPermission(machine, UsbFrame::allOf(machine)), Verdict::Trouble,
               Cause::NoPermission,
               u"/dev/usb/hiddev0 but this user may not open it (Permission denied).|"_s + advice +
                   (applied ? u"|root and the group plugdev, with the mode 0660."_s
                            : u"|root and the group root, with the mode 0600."_s));
    }

    // Other programs

    void a_frame_that_nobody_uses_is_good()
    {
        const MadeUpMachine machine;
        EXPECT(checkProgram(machine, UsbFrame::allOf(machine)), Verdict::Good, Cause::None,
               u"No other program"_s);
    }

    void a_program_that_uses_the_frame_is_named()
    {
        MadeUpMachine machine;
        machine.holders[Node] = {4711, u"quorvel"_s};
        EXPECT(
            checkProgram(machine, UsbFrame::allOf(machine)), Verdict::Trouble, Cause::InUse,
            u"The touch frame at /dev/usb/hiddev0 is in use by quorvel (process 4711).|let go"_s);
        machine.holders[Node].pid = QCoreApplication::applicationPid();
        EXPECT(checkProgram(machine, UsbFrame::allOf(machine)), Verdict::Good, Cause::None,
               u"This program"_s);
    }

    void a_program_that_has_the_node_open_without_a_lock_is_noted()
    {
        MadeUpMachine machine;
        machine.users[Node] = {{99, u"upsd"_s}};
        EXPECT(checkProgram(machine, UsbFrame::allOf(machine)), Verdict::Note, Cause::None,
               u"upsd (process 99) has /dev/usb/hiddev0 open"_s);
    }

    // Serial ports

    void a_machine_without_serial_ports_is_good()
    {
        MadeUpMachine machine;
        machine.makeFolder(u"/sys/class/tty/tty1"_s);
        machine.write(u"/sys/class/tty/ttyS3/type"_s, "0\n");
        machine.makeFolder(u"/sys/class/tty/ttyS3/device/driver"_s);
        EXPECT(checkSerialPorts(machine, {}), Verdict::Good, Cause::None, u"no serial ports"_s);
    }

    void serial_ports_are_told_with_their_group()
    {
        MadeUpMachine machine;
        machine.makeFolder(u"/sys/class/tty/ttyUSB0/device/driver"_s);
        machine.write(u"/sys/class/tty/ttyS0/type"_s, "4\n");
        machine.makeFolder(u"/sys/class/tty/ttyS0/device/driver"_s);
        machine.write(u"/dev/ttyUSB0"_s, {});
        machine.write(u"/dev/ttyS0"_s, {});
        EXPECT(checkSerialPorts(machine, {}), Verdict::Good, Cause::None,
               u"/dev/ttyS0, /dev/ttyUSB0"_s);
        machine.closed.insert(u"/dev/ttyUSB0"_s);
        QCOMPARE(chown(qPrintable(machine.root() + u"/dev/ttyUSB0"_s), 0, 20), 0);
        QCOMPARE(chmod(qPrintable(machine.root() + u"/dev/ttyUSB0"_s), 0660), 0);
        EXPECT(checkSerialPorts(machine, {}), Verdict::Note, Cause::None,
               u"may not open these serial ports: /dev/ttyUSB0.|Join the group dialout"_s);
    }

    void nobody_is_told_to_join_root()
    {
        MadeUpMachine machine;
        for (const QString &port : {u"ttyS0"_s, u"ttyS1"_s, u"ttyUSB0"_s}) {
            const QString node = u"/dev/"_s + port;
            machine.makeFolder(u"/sys/class/tty/%1/device/driver"_s.arg(port));
            machine.write(node, {});
            machine.closed.insert(node);
            const gid_t group = port == u"ttyUSB0" ? 20 : 0;
            QCOMPARE(chown(qPrintable(machine.root() + node), 0, group), 0);
            QCOMPARE(chmod(qPrintable(machine.root() + node), group == 0 ? 0600 : 0660), 0);
        }
        const QString notSetUp =
            u"The device manager (udev) has usually not set up such a port. Plug its adapter in "
            "again, run \"sudo udevadm trigger\" or restart this machine."_s;
        QCOMPARE(checkSerialPorts(machine, {}).nextStep,
                 notSetUp + u" Join the group dialout, then log in again."_s);
        EXPECT(checkSerialPorts(machine, u"ttyS0"_s), Verdict::Trouble, Cause::NoPermission,
               u"serial port /dev/ttyS0: it belongs to root alone.|"_s + notSetUp);
    }

    void the_port_of_a_frame_has_to_be_usable()
    {
        MadeUpMachine machine;
        const QString port = u"/dev/ttyUSB0"_s;
        EXPECT(checkSerialPorts(machine, u"ttyUSB0"_s), Verdict::Trouble, Cause::NoFrame,
               u"There is no serial port /dev/ttyUSB0.|Check the cable"_s);
        machine.write(port, {});
        EXPECT(checkSerialPorts(machine, port), Verdict::Good, Cause::None, port);
        machine.users[port] = {{7, u"minicom"_s}};
        EXPECT(checkSerialPorts(machine, port), Verdict::Trouble, Cause::InUse,
               u"in use by minicom (process 7)"_s);
        machine.holders[port] = {8, u"quorvelctl"_s};
        EXPECT(checkSerialPorts(machine, port), Verdict::Trouble, Cause::InUse,
               u"in use by quorvelctl (process 8)"_s);
        machine.closed.insert(port);
        QCOMPARE(chown(qPrintable(machine.root() + port), 0, 20), 0);
        QCOMPARE(chmod(qPrintable(machine.root() + port), 0660), 0);
        EXPECT(checkSerialPorts(machine, port), Verdict::Trouble, Cause::NoPermission,
               u"may not open the serial port /dev/ttyUSB0.|Join the group dialout"_s);
    }

    // The settings file

    void a_settings_file_is_judged_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<Verdict>("verdict");
        QTest::addColumn<QString>("names");
        QTest::newRow("whole") << WholeFile << Verdict::Good << u"is whole"_s;
        QTest::newRow("cut") << WholeFile.first(WholeFile.indexOf("</RB_EN>")) << Verdict::Trouble
                             << u"damaged (line 5|choose OK"_s;
        QTest::newRow("empty") << QByteArray() << Verdict::Trouble << u"damaged (line 1"_s;
        QTest::newRow("a field is missing")
            << QByteArray(WholeFile).replace("<SMO_LV>5</SMO_LV>", "") << Verdict::Note
            << u"lacks values of smoothing"_s;
        QTest::newRow("out of range")
            << QByteArray(WholeFile).replace(">1500<", ">9000<").replace(">5<", ">7<")
            << Verdict::Note << u"out of range: RB_DURATION, SMO_LV"_s;
        QTest::newRow("a rate of no meaning")
            << QByteArray(WholeFile).replace(">12<", ">99<") << Verdict::Note << u"BAUDRATE"_s;
        QTest::newRow("a connection of no meaning")
            << QByteArray(WholeFile).replace("<CONNECT>1", "<CONNECT>7") << Verdict::Note
            << u"out of range: CONNECT."_s;
    }
    void a_settings_file_is_judged()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const Verdict, verdict);
        QFETCH(const QString, names);
        MadeUpMachine home;
        home.write(u"/settings"_s, content);
        EXPECT(checkSettings(home.root() + u"/settings"_s), verdict,
               verdict == Verdict::Trouble ? Cause::Failed : Cause::None, names);
        QCOMPARE(home.text(u"/settings"_s), QString::fromUtf8(content.trimmed()));
    }

    void a_missing_settings_file_is_noted_and_not_made()
    {
        MadeUpMachine home;
        EXPECT(checkSettings(home.root() + u"/settings"_s), Verdict::Note, Cause::None,
               u"no settings file|keeps its own gestures"_s);
        QVERIFY(!home.exists(u"/settings"_s));
        EXPECT(checkSettings(home.root() + u"/none/settings"_s), Verdict::Trouble, Cause::Failed,
               u"none can be made|Make the folder"_s);
    }

    void a_settings_file_that_is_a_folder_or_of_somebody_else_is_told()
    {
        if (geteuid() != 0)
            QFAIL("needs root, to be two users");
        MadeUpMachine home;
        home.makeFolder(u"/settings"_s);
        EXPECT(checkSettings(home.root() + u"/settings"_s), Verdict::Trouble, Cause::Failed,
               u"cannot be read"_s);
        home.write(u"/file"_s, WholeFile);
        const QByteArray path = QFile::encodeName(home.root() + u"/file"_s);
        QCOMPARE(chmod(QFile::encodeName(home.root()).constData(), 0755), 0);
        QCOMPARE(chmod(path.constData(), 0644), 0);
        QCOMPARE(seteuid(65534), 0);
        const Finding readable = checkSettings(home.root() + u"/file"_s);
        QCOMPARE(seteuid(0), 0);
        EXPECT(readable, Verdict::Note, Cause::None, u"can be read, but not written"_s);
        QCOMPARE(chmod(path.constData(), 0600), 0);
        QCOMPARE(seteuid(65534), 0);
        const Finding unreadable = checkSettings(home.root() + u"/file"_s);
        QCOMPARE(seteuid(0), 0);
        EXPECT(unreadable, Verdict::Trouble, Cause::Failed, u"cannot be read"_s);
    }

    // The desktop

    void the_desktop_is_what_the_session_says()
    {
        MadeUpMachine machine;
        EXPECT(checkDesktop(machine), Verdict::Good, Cause::None, u"X11, on XFCE"_s);
        machine.variables.insert(u"WAYLAND_DISPLAY"_s, u"wayland-0"_s);
        EXPECT(checkDesktop(machine), Verdict::Good, Cause::None, u"Wayland, on XFCE"_s);
        machine.variables = {};
        EXPECT(checkDesktop(machine), Verdict::Note, Cause::None, u"no desktop|ssh"_s);
    }

    void the_tray_is_told_by_who_can_ask_for_it()
    {
        EXPECT(checkTray({}), Verdict::NotLooked, Cause::None, u"without windows"_s);
        EXPECT(checkTray(true), Verdict::Good, Cause::None, u"has a tray"_s);
        EXPECT(checkTray(false), Verdict::Note, Cause::None, u"no tray|quorvel -close"_s);
    }

    // For a tool tip

    void the_first_thing_in_the_way_is_told_in_short()
    {
        MadeUpMachine machine;
        QVERIFY(whyNothingIsLinked(machine).evidence.contains(u"is at /dev/usb/hiddev0"_s));
        machine.unplug();
        QVERIFY(whyNothingIsLinked(machine).evidence.contains(u"No touch frame is on USB."_s));
        machine.addUsb("5156", u"1-2"_s, {}, {});
        QVERIFY(whyNothingIsLinked(machine).evidence.contains(u"no driver uses it"_s));
        machine.remove(u"/sys/bus/usb/drivers/usbhid"_s);
        QVERIFY(whyNothingIsLinked(machine).evidence.contains(u"no driver usbhid"_s));
    }
};

QTEST_GUILESS_MAIN(TestChecks)
#include "tst_checks.moc"
