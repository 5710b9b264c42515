// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/vhciport.h"
#include "tests/support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using sim::VhciPort;

namespace {

constexpr auto Heading = "hub port sta spd dev      sockfd local_busid\n";

} // namespace

// A directory stands in for the controller: its files take what the kernel would take.
class TestVhciPort : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void the_first_free_full_speed_port_is_taken();
    void detaching_names_the_port_once();
    void a_port_that_goes_out_of_scope_is_detached();
    void no_controller_says_what_to_load();
    void no_free_port_says_so();
    void missing_rights_say_so();

private:
    QString path(const QString &name) const { return controller->filePath(name); }

    std::unique_ptr<QTemporaryDir> controller;
};

void TestVhciPort::init()
{
    controller = std::make_unique<QTemporaryDir>();
    writeFile(path(u"status"_s), QByteArray(Heading) + "hs  0000 006 002 00010002 000005 1-1\n"
                                                       "hs  0001 004 000 00000000 000000 0-0\n"
                                                       "hs  0002 004 000 00000000 000000 0-0\n"
                                                       "ss  0008 004 000 00000000 000000 0-0\n");
    writeFile(path(u"attach"_s), {});
    writeFile(path(u"detach"_s), {});
}

void TestVhciPort::the_first_free_full_speed_port_is_taken()
{
    VhciPort port(controller->path());
    QVERIFY(!port.number());
    QCOMPARE(port.attach(7), QString());
    QCOMPARE(port.number(), std::optional(1));
    QCOMPARE(contentOf(path(u"attach"_s)), "1 7 65538 2");
}

void TestVhciPort::detaching_names_the_port_once()
{
    VhciPort port(controller->path());
    port.detach();
    QCOMPARE(contentOf(path(u"detach"_s)), "");
    port.attach(7);
    port.detach();
    QCOMPARE(contentOf(path(u"detach"_s)), "1");
    QVERIFY(!port.number());
    writeFile(path(u"detach"_s), {});
    port.detach();
    QCOMPARE(contentOf(path(u"detach"_s)), "");
}

void TestVhciPort::a_port_that_goes_out_of_scope_is_detached()
{
    {
        VhciPort port(controller->path());
        port.attach(7);
    }
    QCOMPARE(contentOf(path(u"detach"_s)), "1");
}

void TestVhciPort::no_controller_says_what_to_load()
{
    VhciPort port(path(u"nowhere"_s));
    QCOMPARE(port.attach(7),
             u"the virtual host controller is not there: load it with modprobe vhci-hcd"_s);
    QVERIFY(!port.number());
}

void TestVhciPort::no_free_port_says_so()
{
    writeFile(path(u"status"_s), QByteArray(Heading) + "hs  0000 006 002 00010002 000005 1-1\n"
                                                       "ss  0008 004 000 00000000 000000 0-0\n");
    VhciPort port(controller->path());
    QCOMPARE(port.attach(7),
             u"no port of the virtual host controller is free: unplug another virtual device"_s);
    QCOMPARE(contentOf(path(u"attach"_s)), "");
}

void TestVhciPort::missing_rights_say_so()
{
    QVERIFY(QFile::setPermissions(path(u"attach"_s), QFileDevice::ReadOwner));
    // Root may write to any file: give that up for the attempt.
    constexpr uid_t Nobody = 65534;
    const bool root = ::geteuid() == 0;
    if (root) {
        QCOMPARE(::chmod(QFile::encodeName(controller->path()).constData(), 0755), 0);
        QCOMPARE(::seteuid(Nobody), 0);
    }
    VhciPort port(controller->path());
    const QString problem = port.attach(7);
    if (root)
        QCOMPARE(::seteuid(0), 0);
    QCOMPARE(problem, path(u"attach"_s) + u" may not be written: run this as root"_s);
}

QTEST_GUILESS_MAIN(TestVhciPort)
#include "tst_vhciport.moc"
