// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/linux_hid_adapter.h"
#include "device/usblink.h"
#include "doctor/examination.h"
#include "sim/sim_adapter.h"
#include "tests/support/fakehiddev.h"
#include "tests/support/farend.h"
#include "tests/support/madeupmachine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace doctor;

using Cause = Finding::Cause;
using Verdict = Finding::Verdict;

namespace {

sim::FaultPlan planOf(const QByteArray &text)
{
    QString problem;
    const std::optional<sim::FaultPlan> plan =
        sim::FaultPlan::parse(QString::fromLatin1(text), u"faults"_s, &problem);
    if (!plan)
        qFatal("%s", qPrintable(problem));
    return *plan;
}

// What a frame says that is linked by USB.
Interview said(const sim::Profile &profile, const QByteArray &faults = {},
               std::chrono::milliseconds patience = 3s)
{
    Link link(std::make_shared<sim::SimAdapter>(profile, planOf(faults)));
    link.start();
    link.readVersion();
    return interview(link, 0, patience);
}

QStringList checksOf(const QList<Finding> &findings)
{
    QStringList checks;
    for (const Finding &finding : findings)
        checks += finding.check;
    return checks;
}

} // namespace

class TestExamination : public QObject
{
    Q_OBJECT

private slots:
    void init() { hidver = {}; }

    // The frame

    void a_frame_that_answers_is_good()
    {
        const Interview frame = said({});
        QVERIFY(frame.answered());
        QCOMPARE(frame.release, 0x3010u);
        QVERIFY(frame.firmware.has_value());
        QCOMPARE(frame.firmware->checksum, 0x5A17C0DEu);
        QVERIFY2(frame.reportMs >= 60, qPrintable(QString::number(frame.reportMs)));
        const QList<Finding> findings = checkAnswers(frame);
        QCOMPARE(checksOf(findings), QStringList({u"answer"_s, u"rate"_s, u"generation"_s}));
        QCOMPARE(findings[0].verdict, Verdict::Good);
        QVERIFY2(findings[2].evidence.contains(u"current generation, with the firmware "
                                               "5A17C0DE-003812."_s),
                 qPrintable(findings[2].evidence));
    }

    void an_older_frame_is_not_asked_for_its_firmware()
    {
        sim::Profile older;
        older.release = 0x2FFF;
        const Interview frame = said(older);
        QVERIFY(frame.answered());
        QVERIFY(!frame.firmware.has_value());
        const Finding generation = checkAnswers(frame).last();
        QCOMPARE(generation.verdict, Verdict::Good);
        QVERIFY2(generation.evidence.contains(u"older"_s), qPrintable(generation.evidence));
    }

    void a_frame_that_lost_the_first_question_is_asked_again()
    {
        const Interview frame = said({}, "at 1 silent 6\n");
        QVERIFY(frame.answered());
        QVERIFY2(frame.answerMs >= 300, qPrintable(QString::number(frame.answerMs)));
    }

    void a_frame_that_only_repeats_itself_does_not_answer()
    {
        const Interview frame = said({}, "at 1 silent 100000\n", 1200ms);
        QVERIFY(!frame.answered());
        const QList<Finding> findings = checkAnswers(frame);
        QCOMPARE(findings[0].verdict, Verdict::Trouble);
        QCOMPARE(findings[0].cause, Cause::NoAnswer);
        QCOMPARE(findings[1].verdict, Verdict::Good);
    }

    void an_unplug_during_the_interview_ends_it()
    {
        QElapsedTimer time;
        time.start();
        const Interview frame = said({}, "at 3 unplug\n", 1500ms);
        QVERIFY(!frame.answered());
        QVERIFY2(time.elapsed() < 4000, qPrintable(QString::number(time.elapsed())));
        QCOMPARE(checkAnswers(frame)[0].cause, Cause::NoAnswer);
    }

    void slow_reports_are_noted_and_none_are_trouble()
    {
        Interview frame;
        frame.port = u"/dev/usb/hiddev0"_s;
        frame.answerMs = 900;
        frame.reportMs = 400;
        QCOMPARE(checkAnswers(frame)[1].verdict, Verdict::Note);
        QVERIFY(checkAnswers(frame)[1].evidence.contains(u"400 ms"_s));
        frame.reportMs = 0;
        QCOMPARE(checkAnswers(frame)[1].verdict, Verdict::Trouble);
        QCOMPARE(checkAnswers(frame)[1].cause, Cause::NoAnswer);
    }

    void a_current_frame_that_hides_its_firmware_is_noted()
    {
        Interview frame;
        frame.answerMs = 90;
        frame.reportMs = 67;
        frame.release = 0x3010;
        QCOMPARE(checkAnswers(frame)[2].verdict, Verdict::Note);
    }

    void a_frame_with_another_program_is_not_asked()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"].heldBy = DeviceUser{42, u"quorvel"_s};
        Link link(std::make_shared<HID_AdpterPacket::OP_HID_Adapter>(io));
        link.start();
        const QList<Finding> findings = checkAnswers(interview(link, 0, 1s));
        QCOMPARE(findings[0].verdict, Verdict::Trouble);
        QCOMPARE(findings[0].cause, Cause::InUse);
        QVERIFY2(findings[0].evidence.contains(u"in use by quorvel (process 42)"_s),
                 qPrintable(findings[0].evidence));
        QCOMPARE(findings[1].verdict, Verdict::NotLooked);
        QCOMPARE(findings[2].verdict, Verdict::NotLooked);
    }

    void without_a_frame_nothing_is_asked()
    {
        FakeHiddev io;
        Link link(std::make_shared<HID_AdpterPacket::OP_HID_Adapter>(io));
        link.start();
        const Interview frame = interview(link, 0, 1s);
        QCOMPARE(checkAnswers(frame)[0].verdict, Verdict::Trouble);
        QCOMPARE(checkAnswers(frame)[0].cause, Cause::NoFrame);
        for (const Finding &finding : checkAnswers(frame, true))
            QCOMPARE(finding.verdict, Verdict::NotLooked);
    }

    void a_serial_line_without_a_frame_does_not_answer()
    {
        const FarEnd far;
        FakeHiddev io;
        Link link(std::make_shared<HID_AdpterPacket::OP_HID_Adapter>(io));
        QVERIFY(link.openSerial(far.node, {}));
        const QList<Finding> findings = checkAnswers(interview(link, 9600, 700ms));
        QCOMPARE(findings[0].cause, Cause::NoAnswer);
        QVERIFY2(findings[0].evidence.contains(far.node), qPrintable(findings[0].evidence));
        QVERIFY(findings[1].evidence.contains(u"9600 baud"_s));
        QCOMPARE(findings[2].verdict, Verdict::NotLooked);
    }

    void a_frame_on_a_serial_line_answers()
    {
        const FarEnd far;
        FakeHiddev io;
        Link link(std::make_shared<HID_AdpterPacket::OP_HID_Adapter>(io));
        QVERIFY(link.openSerial(far.node, {}));
        far.give(QByteArray::fromHex("5156 FCA7810200000000"));
        const Interview frame = interview(link, 9600, 2s);
        QVERIFY(frame.answered());
        QVERIFY(frame.serial);
        QCOMPARE(frame.port, far.node);
    }

    // The whole

    void everything_is_looked_at_in_the_order_in_which_it_has_to_be_there()
    {
        const MadeUpMachine machine;
        const Examination all = Examination::of(machine, {}, {});
        QCOMPARE(checksOf(all.findings()),
                 QStringList({u"kernel"_s, u"node"_s, u"ids"_s, u"permission"_s, u"program"_s,
                              u"serial"_s, u"answer"_s, u"rate"_s, u"generation"_s, u"settings"_s,
                              u"tray"_s, u"desktop"_s}));
    }

    void the_first_trouble_counts_and_notes_do_not()
    {
        MadeUpMachine machine;
        machine.write(u"/settings"_s, "damaged");
        machine.variables = {};
        const Patient patient{.usbNode = {},
                              .serialPort = {},
                              .settingsFile = machine.root() + u"/settings"_s,
                              .hasTray = false};
        Interview frame;
        frame.answerMs = 90;
        frame.reportMs = 67;
        const Examination settings = Examination::of(machine, patient, frame);
        QVERIFY(settings.firstTrouble());
        QCOMPARE(settings.firstTrouble()->check, u"settings"_s);

        machine.closed.insert(u"/dev/usb/hiddev0"_s);
        machine.holders[u"/dev/usb/hiddev0"_s] = {1, u"other"_s};
        frame.answerMs = -1;
        const Examination rights = Examination::of(machine, patient, frame);
        QCOMPARE(rights.firstTrouble()->check, u"permission"_s);
        QCOMPARE(rights.firstTrouble()->cause, Cause::NoPermission);
    }

    void usb_is_no_trouble_for_a_frame_on_a_serial_line()
    {
        MadeUpMachine machine;
        machine.unplug();
        machine.write(u"/dev/ttyUSB0"_s, {});
        Interview frame;
        frame.serial = true;
        frame.port = u"/dev/ttyUSB0"_s;
        frame.answerMs = 40;
        const Examination all = Examination::of(machine,
                                                {.usbNode = {},
                                                 .serialPort = u"ttyUSB0"_s,
                                                 .settingsFile = machine.root() + u"/settings"_s,
                                                 .hasTray = {}},
                                                frame);
        QVERIFY2(!all.firstTrouble(), qPrintable(all.lines().join(u'\n')));
        QVERIFY(all.findings()[1].evidence.contains(u"No touch frame is on USB"_s));
    }

    void a_frame_that_answers_needs_nothing_more()
    {
        MadeUpMachine machine;
        machine.remove(u"/sys"_s);
        machine.remove(u"/dev"_s);
        Interview frame;
        frame.answerMs = 90;
        frame.reportMs = 67;
        const doctor::Patient patient{.usbNode = {},
                                      .serialPort = {},
                                      .settingsFile = machine.root() + u"/settings"_s,
                                      .hasTray = {}};
        const Examination all = Examination::of(machine, patient, frame);
        QVERIFY2(!all.firstTrouble(), qPrintable(all.lines().join(u'\n')));
        QCOMPARE(all.findings()[1].verdict, Verdict::Note);
        frame.answerMs = -1;
        QCOMPARE(Examination::of(machine, patient, frame).firstTrouble()->check, u"node"_s);
    }

    void json_says_what_the_lines_say()
    {
        MadeUpMachine machine;
        machine.unplug();
        const Examination all = Examination::of(machine,
                                                {.usbNode = {},
                                                 .serialPort = {},
                                                 .settingsFile = machine.root() + u"/none"_s,
                                                 .hasTray = {}},
                                                {});
        const QJsonObject json = all.json();
        QCOMPARE(json[u"first_trouble"_s].toString(), u"node"_s);
        QCOMPARE(json[u"cause"_s].toString(), u"no-frame"_s);
        const QJsonArray findings = json[u"findings"_s].toArray();
        QCOMPARE(findings.size(), all.findings().size());
        const QJsonObject node = findings[1].toObject();
        QCOMPARE(node[u"check"_s].toString(), u"node"_s);
        QCOMPARE(node[u"verdict"_s].toString(), u"trouble"_s);
        QCOMPARE(findings[2].toObject()[u"verdict"_s].toString(), u"not-looked"_s);
        QCOMPARE(findings[0].toObject()[u"verdict"_s].toString(), u"good"_s);
        const QString lines = all.lines().join(u'\n');
        for (const QJsonValue &finding : findings) {
            QVERIFY(lines.contains(finding[u"evidence"_s].toString()));
            QVERIFY(lines.contains(finding[u"next_step"_s].toString()));
        }
    }
};

QTEST_GUILESS_MAIN(TestExamination)
#include "tst_examination.moc"
