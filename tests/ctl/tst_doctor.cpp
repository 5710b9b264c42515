// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/xml_class.h"
#include "device/hid_adapter.h"
#include "run.h"
#include "tests/support/fakehiddev.h"
#include "tests/support/madeupmachine.h"
#include "tests/support/settingshome.h"

#include <QJsonArray>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Node = u"/dev/usb/hiddev0"_s;

Outcome examined(const MadeUpMachine &machine, const Adapter &adapter,
                 const QString &arguments = u"doctor --timeout 1"_s)
{
    ctl::Surroundings around;
    around.machine = &machine;
    return runCtl(arguments, adapter, {}, around);
}

QJsonObject findingOf(const QJsonObject &document, const QString &check)
{
    for (const QJsonValue &finding : document[u"findings"_s].toArray())
        if (finding[u"check"_s].toString() == check)
            return finding.toObject();
    return {};
}

} // namespace

class TestDoctor : public QObject
{
    Q_OBJECT

private:
    const SettingsHome home;

private slots:
    void initTestCase()
    {
        XML_CLASS().read_setting(); // makes the file
    }

    void a_frame_that_works_has_no_trouble()
    {
        const MadeUpMachine machine;
        const Outcome outcome = examined(machine, quickFrame());
        QVERIFY2(outcome.code == 0, outcome.out);
        QCOMPARE(outcome.err, QByteArray());
        QVERIFY2(outcome.lines()[0].startsWith("kernel      good           The kernel's driver "),
                 outcome.out);
        QVERIFY2(outcome.out.contains("\ngeneration  good           It is of the current "
                                      "generation, with the firmware 5A17C0DE-003812.\n"),
                 outcome.out);
        QVERIFY2(outcome.out.contains("\ntray        not looked at  "), outcome.out);
    }

    void json_is_one_document()
    {
        const MadeUpMachine machine;
        const QJsonObject document =
            examined(machine, quickFrame(), u"--json doctor --timeout 1"_s).json();
        QCOMPARE(document[u"command"_s].toString(), u"doctor"_s);
        QCOMPARE(document[u"ok"_s].toBool(), true);
        QVERIFY(document[u"first_trouble"_s].isNull());
        QVERIFY(document[u"cause"_s].isNull());
        QCOMPARE(document[u"findings"_s].toArray().size(), 12);
        QCOMPARE(findingOf(document, u"answer"_s)[u"verdict"_s].toString(), u"good"_s);
    }

    void the_exit_code_tells_the_first_trouble()
    {
        MadeUpMachine machine;
        machine.unplug();
        const Adapter none = quickFrame({}, {}, false);
        Outcome outcome = examined(machine, none, u"doctor --json"_s);
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.json()[u"ok"_s].toBool(true), false);
        QCOMPARE(outcome.json()[u"first_trouble"_s].toString(), u"node"_s);
        QCOMPARE(outcome.json()[u"cause"_s].toString(), u"no-frame"_s);

        machine.remove(u"/sys/bus/usb/drivers/usbhid"_s);
        QCOMPARE(examined(machine, none).code, 1);
    }

    void a_frame_that_may_not_be_opened_ends_with_its_code()
    {
        MadeUpMachine machine;
        machine.closed.insert(Node);
        const auto frame = quickFrame();
        frame->setProblem({Node, EACCES});
        const Outcome outcome = examined(machine, frame);
        QCOMPARE(outcome.code, 4);
        QVERIFY2(outcome.out.contains("permission  TROUBLE        A touch frame is at "
                                      "/dev/usb/hiddev0 but this user may not open it"),
                 outcome.out);
    }

    void a_frame_in_use_ends_with_its_code()
    {
        const MadeUpMachine machine;
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"].heldBy = DeviceUser{42, u"quorvel"_s};
        const auto adapter = std::make_shared<HID_AdpterPacket::OP_HID_Adapter>(io);
        const Outcome outcome = examined(machine, adapter);
        QCOMPARE(outcome.code, 5);
        QVERIFY2(outcome.out.contains("in use by quorvel (process 42)"), outcome.out);
    }

    void a_silent_frame_ends_with_its_code()
    {
        const MadeUpMachine machine;
        QString problem;
        const auto faults = sim::FaultPlan::parse(u"at 1 silent 1000000\n"_s, u"plan"_s, &problem);
        QVERIFY2(faults.has_value(), qPrintable(problem));
        const Outcome outcome = examined(machine, quickFrame({}, *faults));
        QCOMPARE(outcome.code, 6);
        QVERIFY2(outcome.out.contains("does not answer"), outcome.out);
    }

    void a_frame_that_is_seen_and_cannot_be_linked_is_trouble()
    {
        const MadeUpMachine machine;
        const Outcome outcome = examined(machine, quickFrame({}, {}, false));
        QCOMPARE(outcome.code, 3);
        QVERIFY2(outcome.out.contains("answer      TROUBLE        No touch frame is connected"),
                 outcome.out);
    }

    void an_unplug_meanwhile_is_a_frame_that_does_not_answer()
    {
        const MadeUpMachine machine;
        QString problem;
        const auto faults = sim::FaultPlan::parse(u"at 2 unplug\n"_s, u"plan"_s, &problem);
        QVERIFY2(faults.has_value(), qPrintable(problem));
        QCOMPARE(examined(machine, quickFrame({}, *faults)).code, 6);
    }

    void a_node_without_a_frame_is_named()
    {
        const MadeUpMachine machine;
        const Outcome outcome =
            examined(machine, quickFrame({}, {}, false), u"doctor --usb /dev/usb/hiddev9"_s);
        QCOMPARE(outcome.code, 3);
        QVERIFY2(outcome.out.contains("No touch frame is at /dev/usb/hiddev9."), outcome.out);
    }

    void a_port_that_is_not_there_is_told()
    {
        const MadeUpMachine machine;
        const Outcome outcome = examined(machine, {}, u"doctor --port /dev/ttyUSB7"_s);
        QCOMPARE(outcome.code, 3);
        QVERIFY2(outcome.out.contains("serial      TROUBLE        There is no serial port "
                                      "/dev/ttyUSB7."),
                 outcome.out);
    }
};

QTEST_GUILESS_MAIN(TestDoctor)
#include "tst_doctor.moc"
