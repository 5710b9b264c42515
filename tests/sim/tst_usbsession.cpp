// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/usbsession.h"
#include "tests/support/files.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using sim::Profile;
using sim::UsbSession;

// A directory stands in for the controller. Unlike the kernel it does not keep the host's end of
// the socket, so that the device soon finds itself alone.
class TestUsbSession : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void a_session_starts_unplugged();
    void plugging_takes_a_port_and_unplugging_gives_it_back();
    void a_failed_plug_leaves_the_frame_unplugged();
    void a_host_that_lets_go_unplugs_the_frame();
    void the_state_tells_what_the_device_keeps();

private:
    std::unique_ptr<UsbSession> session() const
    {
        return std::make_unique<UsbSession>(
            profile, sim::FaultPlan(), [] { return 250ms; }, controller->path());
    }

    std::unique_ptr<QTemporaryDir> controller;
    Profile profile;
};

void TestUsbSession::init()
{
    profile = Profile();
    controller = std::make_unique<QTemporaryDir>();
    writeFile(controller->filePath(u"status"_s), "hub port sta spd dev      sockfd local_busid\n"
                                                 "hs  0003 004 000 00000000 000000 0-0\n");
    writeFile(controller->filePath(u"attach"_s), {});
    writeFile(controller->filePath(u"detach"_s), {});
}

void TestUsbSession::a_session_starts_unplugged()
{
    const auto frame = session();
    QVERIFY(!frame->plugged());
    QVERIFY(!frame->unplug());
    QVERIFY(!frame->touch({1, 1}));
    QCOMPARE(contentOf(controller->filePath(u"attach"_s)), "");
    QCOMPARE(contentOf(controller->filePath(u"detach"_s)), "");
}

void TestUsbSession::plugging_takes_a_port_and_unplugging_gives_it_back()
{
    const auto frame = session();
    QSignalSpy logged(frame.get(), &UsbSession::logged);
    QCOMPARE(frame->plug(), QString());
    QCOMPARE(frame->port(), std::optional(3));
    QVERIFY(contentOf(controller->filePath(u"attach"_s)).startsWith("3 "));
    QCOMPARE(frame->plug(), u"it is plugged already"_s);
    QVERIFY(frame->touch({5, 6}));
    QVERIFY(frame->unplug());
    QCOMPARE(contentOf(controller->filePath(u"detach"_s)), "3");
    QVERIFY(!frame->unplug());
    QStringList lines;
    for (const QList<QVariant> &call : logged)
        lines += call[0].toStringList();
    QCOMPARE(lines, QStringList({u"     0.250  plugged into port 3"_s,
                                 u"     0.250  touch at 5,6"_s, u"     0.250  unplugged"_s}));
}

void TestUsbSession::a_failed_plug_leaves_the_frame_unplugged()
{
    QVERIFY(QFile::remove(controller->filePath(u"status"_s)));
    const auto frame = session();
    QCOMPARE(frame->plug(),
             u"the virtual host controller is not there: load it with modprobe vhci-hcd"_s);
    QVERIFY(!frame->plugged());
    QCOMPARE(frame->port(), std::nullopt);
}

void TestUsbSession::a_host_that_lets_go_unplugs_the_frame()
{
    const auto frame = session();
    QSignalSpy logged(frame.get(), &UsbSession::logged);
    QCOMPARE(frame->plug(), QString());
    QTRY_VERIFY(!frame->plugged());
    QCOMPARE(logged.last()[0].toStringList(),
             QStringList(u"     0.250  unplugged: the host let go of the device"_s));
    // It can be plugged again.
    QCOMPARE(frame->plug(), QString());
    QVERIFY(frame->plugged());
}

void TestUsbSession::the_state_tells_what_the_device_keeps()
{
    profile.rotation = 2;
    const auto frame = session();
    QCOMPARE(frame->plug(), QString());
    QCOMPARE(frame->state(),
             u"plugged=1 calibration=idle step=0 kept=0 rotation=2 gestures=none baud=none "
             "unknown=0 queued=0 transfers=0 uptime-ms=0"_s);
}

QTEST_GUILESS_MAIN(TestUsbSession)
#include "tst_usbsession.moc"
