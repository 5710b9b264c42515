// SPDX-License-Identifier: GPL-3.0-or-later

// A system without room for another thread: the test stands in front of the C library's function
// that makes them.

#include "app/mainwindow.h"
#include "resources/resources.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/settingshome.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <dlfcn.h>
#include <pthread.h>

using namespace Qt::StringLiterals;

namespace {

std::atomic<bool> full = false;
std::atomic<int> refused = 0;

const QString NoRoom =
    u"A touch frame is there but cannot be read: this system has no room for another thread. End "
    "programs that are not needed. The frame is used as soon as there is room."_s;

// Threads of this process by the name that the kernel has of them.
qsizetype threadsNamed(const QByteArray &name)
{
    const QDir tasks(u"/proc/self/task"_s);
    const QStringList numbers = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::count_if(numbers.begin(), numbers.end(), [&](const QString &number) {
        QFile file(tasks.filePath(number + u"/comm"_s));
        return file.open(QIODevice::ReadOnly) && name.startsWith(file.readAll().trimmed());
    });
}

} // namespace

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                              void *(*run)(void *), void *argument) noexcept
{
    using Make = int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *);
    static auto *const make = reinterpret_cast<Make *>(dlsym(RTLD_NEXT, "pthread_create"));
    if (!full)
        return make(thread, attributes, run, argument);
    ++refused;
    return EAGAIN;
}

class TestNoThreads : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<FakeAdapter> frame;
    std::unique_ptr<MainWindow> window;

    QString hint() const { return window->findChild<QLabel *>(u"stalab"_s)->toolTip(); }
    QList<QByteArray> sent() const { return frame->sentBytes(2); }
    // A frame is linked, and what is sent then is sent.
    void linkFrame()
    {
        window = std::make_unique<MainWindow>(frame);
        frame->present = true;
        window->OnDeviceAdded();
        QTRY_VERIFY(!sent().isEmpty());
        QTest::qWait(400);
        frame->forgetSent();
    }

private slots:
    void initTestCase() { initResources(); }
    void init()
    {
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        refused = 0;
    }
    void cleanup()
    {
        full = false;
        window.reset();
        QCOMPARE(frame->usesAfterClose, 0);
        home.reset();
    }

    void a_frame_that_cannot_be_read_is_told_of_and_linked_as_soon_as_it_can()
    {
        window = std::make_unique<MainWindow>(frame);
        full = true;
        frame->present = true;
        window->OnDeviceAdded();
        QVERIFY(refused > 0);
        QVERIFY(window->connectState() != MainWindow::UsbConnected);
        QTRY_COMPARE(hint(), NoRoom);
        QVERIFY(!frame->IsDevOpened());
        full = false;
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        QTRY_VERIFY(frame->reads > 3);
        QVERIFY(!hint().contains(NoRoom));
    }

    void commands_wait_for_the_thread_that_sends_them_and_keep_their_order()
    {
        linkFrame();
        full = true;
        for (const UCHAR sub : {1, 2, 3}) {
            UCHAR command[64] = {0xFC, 0xA7, sub};
            window->OnWrite03(command);
        }
        QTest::qWait(400);
        QVERIFY(refused > 1);
        QCOMPARE(sent(), QList<QByteArray>());
        full = false;
        QTRY_COMPARE(sent(), QList<QByteArray>({"a7 01", "a7 02", "a7 03"}));
        QTest::qWait(200);
        QCOMPARE(sent().size(), 3);
    }

    void the_end_does_not_wait_for_a_thread_that_cannot_be_made()
    {
        linkFrame();
        full = true;
        UCHAR command[64] = {0xFC, 0xA7, 1};
        window->OnWrite03(command);
        QTest::ignoreMessage(
            QtWarningMsg, "the touch frame takes nothing any more: what waits for it is dropped");
        QElapsedTimer time;
        time.start();
        window.reset();
        QVERIFY2(time.elapsed() < 2000, qPrintable(QString::number(time.elapsed())));
    }

    void plugs_are_heard_as_soon_as_a_thread_can_listen()
    {
        full = true;
        window = std::make_unique<MainWindow>(frame);
        QTest::qWait(300);
        QVERIFY(refused > 0);
        QCOMPARE(threadsNamed("ReadHotplugThread"), 0);
        full = false;
        QTRY_COMPARE(threadsNamed("ReadHotplugThread"), 1);
    }
};

QTEST_MAIN(TestNoThreads)
#include "tst_no_threads.moc"
