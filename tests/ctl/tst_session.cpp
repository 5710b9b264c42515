// SPDX-License-Identifier: GPL-3.0-or-later

// The command line program up to its first answers: arguments, exit codes, links, and which reports
// count as an answer.

#include "answeringline.h"
#include "run.h"
#include "tests/support/fakehiddev.h"
#include "tests/support/frames.h"
#include "tests/support/pty.h"
#include "tests/support/quickest.h"
#include "wrappedframe.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QLoggingCategory>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A simulated frame to which nothing can be sent.
class RefusingFrame final : public WrappedFrame
{
public:
    using WrappedFrame::WrappedFrame;

    bool SendReport(UCHAR, UCHAR *) override { return true; }
};

} // namespace

class TestSession : public QObject
{
    Q_OBJECT

private slots:
    void init() { hidver = {}; }

    void wrong_usage_is_one_sentence_and_code_2_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::newRow("nothing") << u""_s;
        QTest::newRow("unknown command") << u"dance"_s;
        QTest::newRow("unknown option") << u"status --loud"_s;
        QTest::newRow("no truth value") << u"status --wait=soon"_s;
        QTest::newRow("no truth value for a program") << u"status --json=maybe"_s;
        QTest::newRow("both links") << u"status --usb /dev/usb/hiddev0 --port /dev/ttyS0"_s;
        QTest::newRow("rate without port") << u"status --rate 9600"_s;
        QTest::newRow("no rate of a frame") << u"status --port /dev/ttyS0 --rate 9601"_s;
        QTest::newRow("no time") << u"status --timeout soon"_s;
        QTest::newRow("negative time") << u"status --timeout=-1"_s;
        QTest::newRow("time with a comma") << u"status --timeout 0,5"_s;
    }
    void wrong_usage_is_one_sentence_and_code_2()
    {
        QFETCH(QString, arguments);
        const Outcome outcome = runCtl(arguments, quickFrame());
        QCOMPARE(outcome.code, 2);
        QCOMPARE(outcome.out, "");
        QVERIFY2(outcome.err.startsWith("quorvelctl: "), outcome.err);
        QCOMPARE(outcome.err.count('\n'), 1);
    }

    void wrong_usage_is_a_document_for_programs()
    {
        const Outcome outcome = runCtl(u"dance --json"_s);
        QCOMPARE(outcome.code, 2);
        QCOMPARE(outcome.json()[u"ok"_s], QJsonValue(false));
        QCOMPARE(outcome.json()[u"error"_s][u"code"_s], QJsonValue(2));
        QCOMPARE(outcome.json()[u"error"_s][u"name"_s], QJsonValue(u"wrong-usage"_s));
    }

    void help_names_every_command()
    {
        const Outcome outcome = runCtl(u"--help"_s);
        QCOMPARE(outcome.code, 0);
        for (const char *word : {"list", "status", "versions", "--json", "--usb", "--port",
                                 "--rate", "--timeout", "--wait"})
            QVERIFY2(outcome.out.contains(word), word);
        QCOMPARE(outcome.err, "");
    }

    void the_version_is_the_projects()
    {
        const Outcome outcome = runCtl(u"--version"_s);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, QByteArray("quorvelctl " QUORVEL_VERSION "\n"));
    }

    // Frames that are there, or not

    void no_frame_is_code_3_at_once()
    {
        Outcome outcome;
        const auto time = quickest(400ms, [&] {
            return took([&] { outcome = runCtl(u"status"_s, quickFrame({}, {}, false)); });
        });
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.err, "quorvelctl: No touch frame is connected by USB.\n");
        QVERIFY(time < 400ms);
    }

    void a_frame_that_may_not_be_opened_is_code_4()
    {
        const auto frame = quickFrame();
        frame->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
        const Outcome outcome = runCtl(u"status"_s, frame);
        QCOMPARE(outcome.code, 4);
        QVERIFY(outcome.err.contains("/dev/usb/hiddev3"));
        QVERIFY(outcome.err.contains("70-quorvel.rules"));
    }

    void a_frame_gets_its_permissions_a_moment_late()
    {
        const auto frame = quickFrame();
        frame->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
        const Outcome outcome = runCtl(u"status"_s, frame, [&](ctl::Session &session) {
            QTimer::singleShot(150ms, &session, [&] { frame->setProblem({}); });
        });
        QCOMPARE(outcome.code, 0);
    }

    void a_frame_that_cannot_be_opened_for_another_reason_is_code_1()
    {
        const auto frame = quickFrame();
        frame->setProblem({u"/dev/usb/hiddev3"_s, EIO});
        const Outcome outcome = runCtl(u"status"_s, frame);
        QCOMPARE(outcome.code, 1);
        QVERIFY2(outcome.err.contains("/dev/usb/hiddev3") &&
                     outcome.err.contains("Input/output error"),
                 outcome.err);
    }

    void a_frame_that_another_program_has_is_code_5()
    {
        const auto frame = quickFrame();
        frame->setProblem({u"/dev/usb/hiddev3"_s, EBUSY});
        QCOMPARE(runCtl(u"status"_s, frame).code, 5);
    }

    void waiting_ends_when_a_frame_is_plugged_in()
    {
        const auto frame = quickFrame({}, {}, false);
        const auto plugsIn = [&](ctl::Session &session) {
            QTimer::singleShot(300ms, &session, [&] { frame->plug(); });
        };
        QCOMPARE(runCtl(u"status --wait"_s, frame, plugsIn).code, 0);
    }

    void waiting_at_most_ends_without_a_frame()
    {
        int code = -1;
        const auto time = quickest(1s, [&] {
            return took([&] {
                code = runCtl(u"status --wait-at-most 0.3"_s, quickFrame({}, {}, false)).code;
            });
        });
        QCOMPARE(code, 3);
        QVERIFY(time >= 300ms && time < 1s);
    }

    void a_signal_ends_waiting()
    {
        const Outcome outcome =
            runCtl(u"status --wait"_s, quickFrame({}, {}, false), [](ctl::Session &session) {
                QTimer::singleShot(100ms, &session, [&] { session.interrupt(SIGTERM); });
            });
        QCOMPARE(outcome.code, 143);
    }

    void a_port_that_is_not_there_is_code_3()
    {
        const Outcome outcome = runCtl(u"status --port /dev/ttyNone"_s);
        QCOMPARE(outcome.code, 3);
        QVERIFY(outcome.err.contains("/dev/ttyNone"));
    }

    void waiting_ends_when_the_port_is_there()
    {
        const QTemporaryDir place;
        const QString port = place.filePath(u"frame"_s);
        AnsweringLine line({{"00 A7 02",
                             [] {
                                 return QByteArrayList{"FC A7 81 02 00 00", "FC A7 82 02 00 00"};
                             }},
                            {"00 A3 00", [] {
                                 return QByteArrayList{
                                     "FC A3 80 0E 00 12 38 00 DE C0 17 5A 34 12 50 60 01 21"};
                             }}});
        const Outcome outcome =
            runCtl(u"status --wait-at-most 5 --port "_s + port, {}, [&](ctl::Session &session) {
                QTimer::singleShot(300ms, &session, [&] { QFile::link(line.path(), port); });
            });
        QVERIFY2(outcome.code == 0, outcome.err);
        QElapsedTimer time;
        time.start();
        QCOMPARE(runCtl(u"status --wait-at-most 0.3 --port "_s + place.filePath(u"none"_s)).code,
                 3);
        QVERIFY(time.elapsed() >= 300);
    }

    void a_port_that_may_not_be_used_is_code_4()
    {
        QTemporaryDir place;
        const QString port = place.filePath(u"frame"_s);
        QVERIFY(QFile(port).open(QIODevice::WriteOnly));
        QCOMPARE(::chmod(QFile::encodeName(place.path()).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(port).constData(), 0), 0);
        constexpr uid_t Somebody = 65534;
        const bool isRoot = ::geteuid() == 0;
        if (isRoot) // whom no mode keeps out
            QCOMPARE(::setresuid(Somebody, Somebody, 0), 0);
        const Outcome outcome = runCtl(u"status --port "_s + port);
        if (isRoot)
            QCOMPARE(::setresuid(0, 0, 0), 0);
        QVERIFY2(outcome.code == 4, outcome.err);
        QVERIFY2(outcome.err.contains(port.toUtf8()), outcome.err);
    }

    void a_port_that_goes_without_a_word_is_code_3()
    {
        const QTemporaryDir place;
        const Pty pty;
        const QString port = place.filePath(u"frame"_s);
        QVERIFY(QFile::link(pty.path(), port));
        const Outcome outcome =
            runCtl(u"status --timeout 0.5 --port "_s + port, {}, [&](ctl::Session &session) {
                QTimer::singleShot(200ms, &session, [&] { QFile::remove(port); });
            });
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.err, "quorvelctl: The serial port " + port.toUtf8() + " is gone.\n");
    }

    void a_port_that_another_program_has_is_code_5()
    {
        const Pty pty;
        QSerialPort other(pty.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
        QCOMPARE(runCtl(u"status --port "_s + pty.path()).code, 5);
    }

    void a_line_that_says_nothing_is_code_6()
    {
        const Pty pty;
        const Outcome outcome = runCtl(u"status --timeout 0.5 --port "_s + pty.path());
        QCOMPARE(outcome.code, 6);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame did not answer within 0.5 s.\n");
    }

    void a_line_that_hangs_up_is_code_3()
    {
        Pty pty;
        const Outcome outcome = runCtl(u"status --port "_s + pty.path(), {}, [&](ctl::Session &s) {
            QTimer::singleShot(300ms, &s, [&] { pty.hangUp(); });
        });
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.err.count('\n'), 1);
    }

    // While it is opened, is told its rate, and is asked.
    void a_line_that_hangs_up_at_any_moment_is_code_3_at_once()
    {
        QLoggingCategory::setFilterRules(u"quorvel.link=false"_s);
        constexpr int Moments = 100;
        for (int moment = 0; moment < Moments; ++moment) {
            for (const bool spoken : {false, true}) {
                Pty pty;
                const QString arguments = u"status --port "_s + pty.path();
                std::thread frame([&pty, moment, spoken] {
                    if (spoken)
                        pty.waitForBytes();
                    std::this_thread::sleep_for(moment * (spoken ? 500us : 20us));
                    pty.hangUp();
                });
                QElapsedTimer time;
                time.start();
                const Outcome outcome = runCtl(arguments);
                const qint64 elapsed = time.elapsed();
                frame.join();
                QVERIFY2(outcome.code == 3,
                         qPrintable(u"%1: %2"_s.arg(moment).arg(QString::fromUtf8(outcome.err))));
                QVERIFY(elapsed < ctl::Options::DefaultTimeout.count());
            }
        }
        QLoggingCategory::setFilterRules({});
    }

    void a_port_that_cannot_be_opened_is_not_in_use()
    {
        QCOMPARE(runCtl(u"status --port /dev/null"_s).code, 1);
    }

    // Answers

    void the_answer_of_the_frame_that_was_asked_before_does_not_count()
    {
        // The frame's last report is an answer already, and it takes nothing in any more.
        const auto frame = quickFrame({}, *sim::FaultPlan::parse(u"at 3 silent 1000000"_s, {}, {}));
        frame->change([](sim::Firmware &model) { model.say(deviceFrame("A7 81 02 00 00")); });
        QCOMPARE(runCtl(u"status --timeout 0.5"_s, frame).code, 6);
    }

    void an_old_answer_before_the_new_one_does_not_keep_it_from_counting()
    {
        const auto frame = quickFrame();
        frame->change([](sim::Firmware &model) { model.say(deviceFrame("A7 81 02 00 00")); });
        QCOMPARE(runCtl(u"status"_s, frame).code, 0);
    }

    void a_frame_that_takes_no_commands_is_code_1()
    {
        const Outcome outcome =
            runCtl(u"status --timeout 0.4"_s, std::make_shared<RefusingFrame>(quickFrame()));
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.err,
                 "quorvelctl: The touch frame does not take commands. Unplug it and plug "
                 "it in again.\n");
    }

    void a_lost_question_is_asked_again()
    {
        // The question is lost, and so are the reports around it.
        const auto frame = quickFrame({}, *sim::FaultPlan::parse(u"at 1 silent 40"_s, {}, {}));
        QCOMPARE(runCtl(u"status"_s, frame).code, 0);
    }

    void an_unplug_ends_asking()
    {
        const auto frame = quickFrame({}, *sim::FaultPlan::parse(u"at 5 unplug"_s, {}, {}));
        const Outcome outcome = runCtl(u"status"_s, frame);
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame was unplugged.\n");
    }

    // What was opened stays dead, though a search finds the frame.
    void an_unplug_ends_asking_also_if_the_frame_is_back_at_once()
    {
        const auto frame =
            quickFrame({}, *sim::FaultPlan::parse(u"at 5 unplug back 0ms"_s, {}, {}));
        const Outcome outcome = runCtl(u"status"_s, frame);
        QCOMPARE(outcome.code, 3);
        QCOMPARE(outcome.err, "quorvelctl: The touch frame was unplugged.\n");
        QVERIFY(frame->plugged());
    }

    void a_signal_ends_asking()
    {
        const auto frame = quickFrame({}, *sim::FaultPlan::parse(u"at 1 silent 1000000"_s, {}, {}));
        const Outcome outcome = runCtl(u"status"_s, frame, [](ctl::Session &session) {
            QTimer::singleShot(100ms, &session, [&] { session.interrupt(SIGINT); });
        });
        QCOMPARE(outcome.code, 130);
        QCOMPARE(outcome.err.count('\n'), 1);
    }

    void an_output_that_takes_nothing_is_code_7()
    {
        QFile full(u"/dev/full"_s);
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        ctl::Surroundings around;
        around.out = &full;
        const Outcome outcome = runCtl(u"status"_s, quickFrame(), {}, around);
        QCOMPARE(outcome.code, 7);
        QCOMPARE(outcome.err.count('\n'), 1);
    }

    // list, status, versions

    void list_names_frames_with_their_ids_and_leaves_other_makers_alone()
    {
        FakeHiddev system;
        system.nodes["/dev/usb/hiddev0"] = {.vendor = 0x046D, .inSysfs = true};
        system.nodes["/dev/usb/hiddev2"] = {.product = 0x0042, .inSysfs = true};
        system.nodes["/dev/usb/hiddev5"] = {.openError = EACCES, .inSysfs = true};
        ctl::Surroundings around;
        around.hiddev = &system;
        const Outcome outcome = runCtl(u"list --json"_s, {}, {}, around);
        QCOMPARE(outcome.code, 0);
        const QJsonArray frames = outcome.json()[u"frames"_s].toArray();
        QCOMPARE(frames.size(), 2);
        QCOMPARE(frames[0].toObject(), QJsonObject({{u"port"_s, u"/dev/usb/hiddev2"_s},
                                                    {u"openable"_s, true},
                                                    {u"vendor"_s, u"5156"_s},
                                                    {u"product"_s, u"0042"_s},
                                                    {u"version"_s, u"3.0.1.0"_s}}));
        QCOMPARE(frames[1].toObject(),
                 QJsonObject({{u"port"_s, u"/dev/usb/hiddev5"_s}, {u"openable"_s, false}}));
        QVERIFY(!system.opened.contains(u"/dev/usb/hiddev0"_s));
        QCOMPARE(system.openDescriptors(), size_t(0));
    }

    void list_says_that_there_is_no_frame()
    {
        const Outcome outcome = runCtl(u"list"_s);
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.lines().first(), "No touch frame is connected by USB.");
    }

    void status_tells_link_and_generation_data()
    {
        QTest::addColumn<int>("release");
        QTest::addColumn<QString>("generation");
        QTest::newRow("current") << 0x3000 << u"current"_s;
        QTest::newRow("older") << 0x2FFF << u"older"_s;
    }
    void status_tells_link_and_generation()
    {
        QFETCH(int, release);
        QFETCH(QString, generation);
        sim::Profile profile;
        profile.release = quint16(release);
        const QJsonObject status = runCtl(u"status --json"_s, quickFrame(profile)).json();
        QCOMPARE(status[u"ok"_s], QJsonValue(true));
        QCOMPARE(status[u"command"_s], QJsonValue(u"status"_s));
        QCOMPARE(status[u"link"_s], QJsonValue(u"usb"_s));
        QCOMPARE(status[u"generation"_s], QJsonValue(generation));
        QVERIFY(status[u"answer_ms"_s].isDouble());
    }

    void versions_are_what_the_frame_says()
    {
        const Outcome outcome = runCtl(u"versions"_s, quickFrame());
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, "Device version: 3.0.1.0\n"
                              "Hardware: 5156 - 0001\n"
                              "Firmware: checksum 5A17C0DE, revision 003812\n"
                              "Product: family 21, date 1605, number 01234\n");
        QCOMPARE(outcome.err, "");
    }

    void an_older_frame_tells_no_firmware()
    {
        sim::Profile profile;
        profile.release = 0x2000;
        const QJsonObject versions = runCtl(u"versions --json"_s, quickFrame(profile)).json();
        QCOMPARE(versions[u"generation"_s], QJsonValue(u"older"_s));
        QVERIFY(versions[u"firmware"_s].isNull());
        QCOMPARE(versions[u"usb"_s][u"version"_s], QJsonValue(u"2.0.0.0"_s));
    }
};

QTEST_GUILESS_MAIN(TestSession)
#include "tst_session.moc"
