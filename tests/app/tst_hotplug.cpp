// SPDX-License-Identifier: GPL-3.0-or-later

// What the main window makes of the kernel's messages, with a socket of the test's in the place of
// the kernel's.

#include "app/mainwindow.h"
#include "device/filedescriptor.h"
#include "resources/resources.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/settingshome.h"

#include <QTest>
#include <QTimer>

#include <dlfcn.h>
#include <linux/netlink.h>
#include <sys/socket.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

std::atomic<int> watched{-1}; // the descriptor that the window's watcher listens to
std::atomic<bool> overrun{false};
FileDescriptor kernel; // the other end of it
sockaddr_nl bound{};

template <typename Function>
Function libraryFunction(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" int socket(int domain, int type, int protocol) noexcept
{
    static const auto real = libraryFunction<int (*)(int, int, int)>("socket");
    if (domain != AF_NETLINK || protocol != NETLINK_KOBJECT_UEVENT)
        return real(domain, type, protocol);
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends) != 0)
        return -1;
    kernel = FileDescriptor(ends[1]);
    watched = ends[0];
    return ends[0];
}

extern "C" int bind(int fd, const sockaddr *address, socklen_t size) noexcept
{
    static const auto real = libraryFunction<int (*)(int, const sockaddr *, socklen_t)>("bind");
    if (fd != watched)
        return real(fd, address, size);
    bound = *reinterpret_cast<const sockaddr_nl *>(address);
    return 0;
}

// Where the library defines recv() in its header, only another name can be given to a second one.
extern "C" ssize_t receive(int fd, void *buffer, size_t size, int flags) __asm__("recv");

extern "C" ssize_t receive(int fd, void *buffer, size_t size, int flags)
{
    static const auto real = libraryFunction<ssize_t (*)(int, void *, size_t, int)>("recv");
    const ssize_t received = real(fd, buffer, size, flags);
    if (fd != watched || !overrun.exchange(false))
        return received;
    errno = ENOBUFS;
    return -1;
}

class TestHotplug : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<FakeAdapter> frame;
    std::unique_ptr<MainWindow> window;

    static void tell(const QByteArray &action)
    {
        const QByteArray message = action + "@/devices/pci0000:00/usb1/1-1" + '\0' +
                                   "ACTION=" + action + '\0' + "SUBSYSTEM=usb" + '\0' +
                                   "PRODUCT=5156/1/3010" + '\0';
        QCOMPARE(::send(kernel.get(), message.constData(), size_t(message.size()), 0),
                 ssize_t(message.size()));
    }

private slots:
    void initTestCase() { initResources(); }
    void init()
    {
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        window = std::make_unique<MainWindow>(frame);
        // The message alone has to do it.
        window->findChild<QTimer *>(u"checkTimer"_s)->stop();
        QVERIFY(kernel.isValid());
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        home.reset();
        watched = -1;
        kernel = FileDescriptor();
    }

    void the_watcher_of_the_window_listens_to_kernel_and_udevd()
    {
        QCOMPARE(bound.nl_family, AF_NETLINK);
        QCOMPARE(bound.nl_groups, 0x0Fu);
    }

    void a_plug_that_the_kernel_tells_of_links_the_frame()
    {
        frame->present = true;
        QTest::qWait(100);
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        tell("add");
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
    }

    void a_removal_that_the_kernel_tells_of_ends_the_link()
    {
        frame->present = true;
        tell("add");
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        frame->present = false;
        QTest::qWait(100);
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
        tell("remove");
        QTRY_COMPARE(window->connectState(), MainWindow::NotConnected);
    }

    void lost_messages_make_the_window_look_for_itself()
    {
        frame->present = true;
        overrun = true;
        tell("change");
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        QVERIFY(!overrun);
    }
};

QTEST_MAIN(TestHotplug)
#include "tst_hotplug.moc"
