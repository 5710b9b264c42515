// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/readhotplug.h"
#include "tests/support/capture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QScopedValueRollback>
#include <QSignalSpy>
#include <QTest>

#include <dlfcn.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;

using Event = ReadHotplugThread::Event;

namespace {

// Properties as they stand in a message, each ended by a NUL byte.
QByteArray message(const QByteArrayList &properties)
{
    return properties.join('\0') + '\0';
}

const QByteArray Padding = "DEVPATH=/devices/pci0000:00/usb1/1-1";

bool socketsAreScarce = false;

} // namespace

extern "C" int socket(int family, int type, int protocol) noexcept
{
    using Socket = int (*)(int, int, int);
    static const auto real = reinterpret_cast<Socket>(::dlsym(RTLD_NEXT, "socket"));
    if (socketsAreScarce) {
        errno = EMFILE;
        return -1;
    }
    return real(family, type, protocol);
}

class TestReadHotplug : public QObject
{
    Q_OBJECT

private slots:
    void messages_name_what_happened_to_our_vendor_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<Event>("event");

        QTest::newRow("udevd's add")
            << message({"ACTION=add", Padding, "ID_VENDOR_ID=5156"}) << Event::Added;
        QTest::newRow("udevd's remove, where it has the id")
            << message({"ACTION=remove", Padding, "ID_VENDOR_ID=5156"}) << Event::Removed;
        QTest::newRow("udevd's remove, where it has lost the id")
            << message({"UDEV_DATABASE_VERSION=1", "ACTION=remove", Padding, "SUBSYSTEM=usb",
                        "PRODUCT=5156/1/3010"})
            << Event::Removed;
        QTest::newRow("the kernel's add") << message({"add@/devices/pci0000:00/usb1/1-1",
                                                      "ACTION=add", Padding, "PRODUCT=5156/1/3010"})
                                          << Event::Added;
        QTest::newRow("the kernel's remove")
            << message({"remove@/devices/pci0000:00/usb1/1-1", "ACTION=remove", Padding,
                        "PRODUCT=5156/1/3010"})
            << Event::Removed;
        QTest::newRow("the vendor before the action")
            << message({"ID_VENDOR_ID=5156", Padding, "ACTION=add"}) << Event::Added;
        QTest::newRow("behind udevd's binary header")
            << QByteArray("libudev\0\xfe\xed\xca\xfe\x28\0\0\0\x28\0\0\0\0\0\0\0", 24) +
                   QByteArray(16, '\0') + message({"ACTION=add", "ID_VENDOR_ID=5156"})
            << Event::Added;

        QTest::newRow("a change event emits nothing")
            << message({"ACTION=change", Padding, "ID_VENDOR_ID=5156"}) << Event::None;
        QTest::newRow("a bind event emits nothing")
            << message({"ACTION=bind", Padding, "PRODUCT=5156/1/3010"}) << Event::None;
        QTest::newRow("another vendor")
            << message({"ACTION=add", Padding, "ID_VENDOR_ID=051d"}) << Event::None;
        QTest::newRow("another vendor's product")
            << message({"ACTION=add", Padding, "PRODUCT=51d/5156/3010"}) << Event::None;
        QTest::newRow("a vendor that only begins like ours")
            << message({"ACTION=add", Padding, "PRODUCT=51567/1/3010"}) << Event::None;
        QTest::newRow("an input device's product begins with the bus")
            << message({"ACTION=add", Padding, "PRODUCT=3/5156/1/110"}) << Event::None;
        QTest::newRow("no vendor at all") << message({"ACTION=remove", Padding}) << Event::None;
        QTest::newRow("text behind the last NUL is not looked at")
            << message({"ACTION=add", Padding}) + "ID_VENDOR_ID=5156" << Event::None;
        QTest::newRow("a property that only contains ours")
            << message({"ACTION=add", Padding, "OLD_ID_VENDOR_ID=5156"}) << Event::None;
        QTest::newRow("nothing") << QByteArray() << Event::None;
    }
    void messages_name_what_happened_to_our_vendor()
    {
        QFETCH(const QByteArray, text);
        QTEST(ReadHotplugThread::parse(text), "event");
    }

    void a_message_shorter_than_32_bytes_is_ignored()
    {
        const QByteArray shortest = message({"ACTION=add", "ID_VENDOR_ID=5156", "A="});
        QCOMPARE(shortest.size(), 32);
        QCOMPARE(ReadHotplugThread::parse(shortest), Event::Added);
        const QByteArray tooShort = message({"ACTION=add", "ID_VENDOR_ID=5156", "A"});
        QCOMPARE(tooShort.size(), 31);
        QCOMPARE(ReadHotplugThread::parse(tooShort), Event::None);
    }

    void a_message_longer_than_4096_bytes_is_ignored()
    {
        const QByteArray start = message({"ACTION=add", "ID_VENDOR_ID=5156"});
        const QByteArray longest = start + QByteArray(4096 - start.size() - 1, 'x') + '\0';
        QCOMPARE(ReadHotplugThread::parse(longest), Event::Added);
        QCOMPARE(ReadHotplugThread::parse(longest + '\0'), Event::None);
    }

    void events_come_from_the_socket_until_the_watcher_ends()
    {
        int ends[2];
        QCOMPARE(::socketpair(AF_UNIX, SOCK_DGRAM, 0, ends), 0);
        const FileDescriptor sender(ends[1]);
        ReadHotplugThread watcher{FileDescriptor(ends[0])};
        QSignalSpy added(&watcher, &ReadHotplugThread::DeviceAdd);
        QSignalSpy removed(&watcher, &ReadHotplugThread::DeviceRemove);
        watcher.start();

        const auto send = [&sender](const QByteArray &text) {
            return ::send(sender.get(), text.constData(), size_t(text.size()), 0) == text.size();
        };
        QVERIFY(send(message({"ACTION=add", Padding, "ID_VENDOR_ID=5156"})));
        QTRY_COMPARE(added.size(), 1);
        QTest::qWait(20);
        QVERIFY(removed.isEmpty());
        QVERIFY(send(message({"ACTION=change", Padding, "ID_VENDOR_ID=5156"})));
        QVERIFY(send(QByteArray(9000, 'x')));
        QVERIFY(send({}));
        QVERIFY(send(message({"ACTION=add", Padding, "ID_VENDOR_ID=046d"})));
        QVERIFY(send(message({"ACTION=remove", Padding, "PRODUCT=5156/1/3010"})));
        QTRY_COMPARE(removed.size(), 1);
        QCOMPARE(added.size(), 1);

        QElapsedTimer time;
        time.start();
        watcher.terminate();
        QVERIFY(watcher.wait());
        QVERIFY(time.elapsed() < 1000);
    }

    void an_interrupted_call_is_survived()
    {
        int ends[2];
        QCOMPARE(::socketpair(AF_UNIX, SOCK_DGRAM, 0, ends), 0);
        const FileDescriptor sender(ends[1]);
        ReadHotplugThread watcher{FileDescriptor(ends[0])};
        pthread_t thread{};
        connect(
            &watcher, &QThread::started, this, [&thread] { thread = ::pthread_self(); },
            Qt::DirectConnection);
        QSignalSpy added(&watcher, &ReadHotplugThread::DeviceAdd);

        struct sigaction ignored
        {
        };
        ignored.sa_handler = [](int) {};
        struct sigaction before
        {
        };
        QCOMPARE(::sigaction(SIGUSR1, &ignored, &before), 0);
        watcher.start();
        QTRY_VERIFY(thread != pthread_t{});
        for (int i = 0; i < 5; ++i) {
            ::usleep(2000);
            QCOMPARE(::pthread_kill(thread, SIGUSR1), 0);
        }
        const QByteArray text = message({"ACTION=add", Padding, "ID_VENDOR_ID=5156"});
        QCOMPARE(::send(sender.get(), text.constData(), size_t(text.size()), 0), text.size());
        QTRY_COMPARE(added.size(), 1);
        ::sigaction(SIGUSR1, &before, nullptr);
    }

    void what_is_no_socket_ends_the_watcher()
    {
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        const FileDescriptor sender(ends[1]);
        ReadHotplugThread watcher{FileDescriptor(ends[0])};
        QSignalSpy added(&watcher, &ReadHotplugThread::DeviceAdd);
        const QByteArray text = message({"ACTION=add", Padding, "ID_VENDOR_ID=5156"});
        QCOMPARE(::write(sender.get(), text.constData(), size_t(text.size())), text.size());
        watcher.start();
        QVERIFY(watcher.wait(5000));
        QVERIFY(added.isEmpty());
    }

    void an_overrun_is_told_and_survived()
    {
        // A multicast group between two sockets of this process stands in for the kernel's.
        constexpr unsigned group = 1;
        FileDescriptor receiver(::socket(AF_NETLINK, SOCK_RAW, NETLINK_USERSOCK));
        QVERIFY(receiver.isValid());
        sockaddr_nl address{};
        address.nl_family = AF_NETLINK;
        address.nl_groups = group;
        QCOMPARE(::bind(receiver.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        const int smallest = 1;
        QCOMPARE(::setsockopt(receiver.get(), SOL_SOCKET, SO_RCVBUF, &smallest, sizeof smallest),
                 0);

        const FileDescriptor sender(::socket(AF_NETLINK, SOCK_RAW, NETLINK_USERSOCK));
        const QByteArray text = message({"ACTION=add", Padding, "ID_VENDOR_ID=5156"});
        // The call itself fails, since no kernel listens to this protocol; the group is told first.
        const auto send = [&] {
            ::sendto(sender.get(), text.constData(), size_t(text.size()), 0,
                     reinterpret_cast<sockaddr *>(&address), sizeof address);
        };
        constexpr int many = 1000;
        for (int i = 0; i < many; ++i)
            send();

        ReadHotplugThread watcher{std::move(receiver)};
        QSignalSpy lost(&watcher, &ReadHotplugThread::EventsLost);
        QSignalSpy added(&watcher, &ReadHotplugThread::DeviceAdd);
        watcher.start();
        QTRY_COMPARE(lost.size(), 1);
        QTRY_VERIFY(!added.isEmpty());
        QTest::qWait(50);
        const qsizetype survived = added.size();
        QVERIFY(survived < many);
        send();
        QTRY_COMPARE(added.size(), survived + 1);
    }

    void the_event_socket_hears_groups_1_to_4_of_the_kernels_events()
    {
        const ReadHotplugThread watcher;
        QList<sockaddr_nl> bound;
        const QStringList descriptors =
            QDir(u"/proc/self/fd"_s)
                .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
        for (const QString &number : descriptors) {
            const int fd = number.toInt();
            int protocol = 0;
            socklen_t size = sizeof protocol;
            sockaddr_nl address{};
            socklen_t length = sizeof address;
            if (::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length) != 0 ||
                address.nl_family != AF_NETLINK)
                continue;
            QCOMPARE(::getsockopt(fd, SOL_SOCKET, SO_PROTOCOL, &protocol, &size), 0);
            QCOMPARE(protocol, NETLINK_KOBJECT_UEVENT);
            bound.append(address);
        }
        QCOMPARE(bound.size(), 1);
        QCOMPARE(bound.first().nl_groups, 0x0Fu);
        QCOMPARE(bound.first().nl_pid, unsigned(::getpid()));
    }

    void a_second_watcher_of_one_process_says_that_it_cannot_bind()
    {
        Capture errors(stderr);
        const ReadHotplugThread first;
        QCOMPARE(errors.text(), "");
        const ReadHotplugThread second;
        QCOMPARE(errors.text(), "bind error Address already in use\n");
    }

    void a_watcher_without_a_socket_says_so()
    {
        Capture errors(stderr);
        const QScopedValueRollback none(socketsAreScarce, true);
        const ReadHotplugThread deaf;
        QCOMPARE(errors.text(), "socket creating failedToo many open files\n");
    }
};

QTEST_GUILESS_MAIN(TestReadHotplug)
#include "tst_readhotplug.moc"
