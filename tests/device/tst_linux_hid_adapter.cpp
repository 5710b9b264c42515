// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/advice.h"
#include "tests/support/capture.h"
#include "tests/support/fakehiddev.h"
#include "tests/support/quickest.h"

#include <QElapsedTimer>
#include <QTemporaryFile>
#include <QTest>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace HID_AdpterPacket;
using namespace std::chrono_literals;

namespace {

constexpr unsigned long GetUsageCode = 0xC018480D;
constexpr unsigned long SetUsage = 0x4018480C;
constexpr unsigned long GetUsage = 0xC018480B;
constexpr unsigned long GetReportInfo = 0xC00C4809;
constexpr unsigned long SetReport = 0x400C4808;
constexpr unsigned long GetReport = 0x400C4807;
constexpr unsigned long GetDevInfo = 0x801C4803;
constexpr unsigned long GetString = 0x81044804;

QStringList numbered(const QString &prefix, int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(prefix + QString::number(i));
    return names;
}

} // namespace

class TestLinuxHidAdapter : public QObject
{
    Q_OBJECT

private:
    static QList<unsigned long> requestsOf(const FakeHiddev &io)
    {
        QList<unsigned long> requests;
        for (const FakeHiddev::Call &call : io.calls)
            requests.append(call.request);
        return requests;
    }

private slots:
    void notification_answers_whether_there_is_a_window()
    {
        FakeHiddev io;
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DeviceNotification(this));
        QVERIFY(!adapter.DeviceNotification(nullptr));
    }

    void candidates_are_hiddev0_to_hiddev15()
    {
        FakeHiddev io;
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(io.opened, numbered(u"/dev/usb/hiddev"_s, 16));
        QVERIFY(!adapter.IsDevOpened());
    }

    void with_a_hid_directory_candidates_are_hidhiddev0_to_hidhiddev15()
    {
        FakeHiddev io;
        io.hidDirectory = true;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(io.opened, numbered(u"/dev/usb/hidhiddev"_s, 16));

        io.nodes["/dev/usb/hidhiddev3"] = {};
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(io.opened.last(), u"/dev/usb/hidhiddev3"_s);
    }

    void a_match_is_printed_and_opened_again()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev2"] = {};
        OP_HID_Adapter adapter(io);
        Capture output(stdout);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(output.text(), "dir_str: /dev/usb/\thiddev: /dev/usb/hiddev2\tcol: col03\n");
        QCOMPARE(io.opened, QStringList({u"/dev/usb/hiddev0"_s, u"/dev/usb/hiddev1"_s,
                                         u"/dev/usb/hiddev2"_s, u"/dev/usb/hiddev2"_s}));
        QCOMPARE(io.closed, QList<int>({100})); // the probe; the second open stays
        QVERIFY(adapter.IsDevOpened());
    }

    void a_second_matching_node_is_never_considered()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev4"] = {};
        io.nodes["/dev/usb/hiddev5"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(!io.opened.contains(u"/dev/usb/hiddev5"_s));
    }

    void a_node_with_number_16_is_never_tried()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev16"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
    }

    void a_probe_leaves_the_open_device_alone()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        const int device = 101;
        QVERIFY(io.isOpen(device));
        QVERIFY(adapter.DoFindDev(u"col03"_s, false));
        QVERIFY(io.isOpen(device));
        QVERIFY(adapter.IsDevOpened());
        QCOMPARE(io.openDescriptors(), size_t(1));
    }

    void finding_to_open_closes_what_is_open_first()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(io.openDescriptors(), size_t(1));
        QCOMPARE(io.closed, QList<int>({100, 101, 102}));
    }

    void other_makers_nodes_are_not_opened_where_sysfs_names_them()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {.vendor = 0x051D, .inSysfs = true};
        io.nodes["/dev/usb/hiddev1"] = {.inSysfs = true};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(!io.opened.contains(u"/dev/usb/hiddev0"_s));
        QVERIFY(io.opened.contains(u"/dev/usb/hiddev1"_s));
    }

    void nodes_that_sysfs_does_not_name_are_probed()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {.vendor = 0x051D};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(io.opened.contains(u"/dev/usb/hiddev0"_s));
        QCOMPARE(requestsOf(io), QList<unsigned long>({GetDevInfo}));
        QCOMPARE(io.openDescriptors(), size_t(0));
    }

    void our_node_that_may_not_be_opened_is_a_problem()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {.openError = EACCES, .inSysfs = true};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(adapter.LastProblem(), (NodeProblem{u"/dev/usb/hiddev0"_s, EACCES}));

        io.nodes["/dev/usb/hiddev0"].openError = 0;
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(adapter.LastProblem(), NodeProblem());
    }

    void a_node_that_goes_before_it_is_opened_for_use_is_a_problem_and_not_open()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"].laterOpenError = ENODEV;
        OP_HID_Adapter adapter(io);
        adapter.DoFindDev(u"col03"_s, true);
        QVERIFY(!adapter.IsDevOpened());
        QCOMPARE(adapter.LastProblem(), (NodeProblem{u"/dev/usb/hiddev0"_s, ENODEV}));
        QCOMPARE(io.openDescriptors(), size_t(0));
    }

    // Its vendor cannot be read then either.
    void a_node_for_which_there_is_no_descriptor_is_named_and_found_when_there_is_one()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {.openError = EMFILE};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(adapter.LastProblem(), (NodeProblem{u"/dev/usb/hiddev0"_s, EMFILE}));
        QCOMPARE(
            Advice::frameNotOpened(u"/dev/usb/hiddev0"_s, EMFILE).words(),
            u"/dev/usb/hiddev0, perhaps a touch frame, cannot be opened (Too many open files). "
            "Close windows and programs that are not needed, or start this one again."_s);

        io.nodes["/dev/usb/hiddev0"].openError = 0;
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(adapter.LastProblem(), NodeProblem());
    }

    void an_unknown_node_that_may_not_be_opened_is_no_problem_of_ours()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {.openError = EACCES};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(adapter.LastProblem(), NodeProblem());
    }

    void a_frame_that_another_program_uses_is_found_and_not_opened()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"].heldBy = DeviceUser{42, u"quorvelctl"_s};
        OP_HID_Adapter adapter(io);
        Capture output(stdout);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(!adapter.IsDevOpened());
        QCOMPARE(adapter.LastProblem(),
                 (NodeProblem{u"/dev/usb/hiddev0"_s, EBUSY, {42, u"quorvelctl"_s}}));
        QCOMPARE(io.openDescriptors(), size_t(0));
        QCOMPARE(output.text(), "");

        io.nodes["/dev/usb/hiddev0"].heldBy.reset();
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(adapter.IsDevOpened());
        QCOMPARE(adapter.LastProblem(), NodeProblem());
        QVERIFY(output.text().contains("hiddev: /dev/usb/hiddev0"));
    }

    void looking_whether_a_frame_is_there_needs_no_lock()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"].heldBy = DeviceUser{};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, false));
        QCOMPARE(adapter.LastProblem(), NodeProblem());
    }

    void descriptor_0_is_skipped()
    {
        FakeHiddev io;
        io.nextDescriptor = 0;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.DoFindDev(u"col03"_s, true));
        QCOMPARE(io.openDescriptors(), size_t(0));
    }

    void descriptor_1_is_a_device_like_any_other()
    {
        FakeHiddev io;
        io.nextDescriptor = 1;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(adapter.IsDevOpened());
    }

    void a_device_on_descriptor_1_is_seen_to_go_and_is_closed()
    {
        FakeHiddev io;
        io.nextDescriptor = 1;
        io.givesNumbersAgain = true;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(adapter.IsDevOpened());
        QVERIFY(io.isOpen(1));
        io.failing[HIDIOCGDEVINFO] = ENODEV;
        QVERIFY(adapter.IsDevDead());
        adapter.CloseDevice();
        QVERIFY(!io.isOpen(1));
    }

    void the_system_knows_its_folders_files_and_nodes()
    {
        HiddevIo &io = HiddevIo::system();
        QTemporaryFile file;
        QVERIFY(file.open());
        QVERIFY(file.write("four") == 4 && file.flush() && file.seek(1));
        const QByteArray name = QFile::encodeName(file.fileName());
        QVERIFY(io.directoryExists("/dev"));
        QVERIFY(!io.directoryExists("/nowhere"));
        QVERIFY(!io.directoryExists(name.constData()));
        QVERIFY(!io.vendorOf("/nowhere"));
        QVERIFY(!io.vendorOf(name.constData()));
        QVERIFY(!io.vendorOf("/dev/null"));
        int left = 0;
        QCOMPARE(io.ioctl(file.handle(), FIONREAD, &left), 0);
        QCOMPARE(left, 3);
        QVERIFY(io.ioctl(-1, FIONREAD, &left) < 0);
    }

    void a_node_is_opened_for_both_directions_and_for_no_other_program()
    {
        QTemporaryFile node;
        QVERIFY(node.open());
        const int fd = HiddevIo::system().open(node.fileName().toLocal8Bit().constData());
        QVERIFY(fd >= 0);
        const int status = ::fcntl(fd, F_GETFL);
        const int flags = ::fcntl(fd, F_GETFD);
        HiddevIo::system().close(fd);
        QCOMPARE(status & O_ACCMODE, O_RDWR);
        QCOMPARE(flags & FD_CLOEXEC, FD_CLOEXEC);
    }

    void closing_twice_closes_a_descriptor_once()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        adapter.CloseDevice();
        QVERIFY(!adapter.IsDevOpened());
        const qsizetype closes = io.closed.size();
        adapter.CloseDevice();
        QCOMPARE(io.closed.size(), closes);
    }

    void closing_leaves_a_reused_number_alone()
    {
        // The system itself hands a closed number out again: here to a pipe.
        struct RealDescriptors final : HiddevIo
        {
            int open(const char *) override { return ::dup(STDERR_FILENO); }
            int ioctl(int, unsigned long, void *argument) override
            {
                static_cast<hiddev_devinfo *>(argument)->vendor = 0x5156;
                return 0;
            }
            bool directoryExists(const char *) override { return false; }
            std::optional<quint16> vendorOf(const char *) override { return std::nullopt; }
        } io;
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        adapter.CloseDevice();
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        adapter.CloseDevice();
        QCOMPARE(::write(ends[1], "x", 1), ssize_t(1));
        ::close(ends[0]);
        ::close(ends[1]);
    }

    void sending_sets_63_usages_and_submits_the_report()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        io.calls.clear();

        UCHAR frame[64];
        for (int i = 0; i < 64; ++i)
            frame[i] = UCHAR(0x40 + i);
        QVERIFY(!adapter.SendReport(0xFC, frame));

        QList<unsigned long> expected{GetUsageCode};
        expected.append(QList<unsigned long>(63, SetUsage));
        expected.append({GetReportInfo, SetReport});
        QCOMPARE(requestsOf(io), expected);
        for (int i = 0; i < 63; ++i) {
            const FakeHiddev::Call &call = io.calls[1 + i];
            QCOMPARE(call.reportType, 2u);
            QCOMPARE(call.reportId, 0xFCu);
            QCOMPARE(call.usageIndex, i);
            QCOMPARE(call.value, 0x41 + i);
        }
        QCOMPARE(io.calls.last().reportType, 2u);
        QCOMPARE(io.calls.last().reportId, 0xFCu);
    }

    void sending_without_a_buffer_sets_no_usage()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        io.calls.clear();
        QVERIFY(!adapter.SendReport(0xFC, nullptr));
        QCOMPARE(requestsOf(io), QList<unsigned long>({GetUsageCode, GetReportInfo, SetReport}));
    }

    void a_send_that_fails_at_the_end_answers_true_and_says_why()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        io.failing[SetReport] = EPIPE;
        UCHAR frame[64] = {};
        Capture errors(stderr);
        QVERIFY(adapter.SendReport(0xFC, frame));
        QCOMPARE(errors.text(), "SendCommandFS: ioctl to send output report: Broken pipe\n");
    }

    void a_send_that_succeeds_rests_for_a_millisecond_and_a_failed_one_does_not()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        UCHAR frame[64] = {};
        const auto send = [&] { return took([&] { adapter.SendReport(0xFC, frame); }); };
        const auto rested = quickest(2ms, send);
        QVERIFY(rested >= 1ms);
        QVERIFY(rested < 2ms);
        io.failing[SetReport] = EPIPE;
        const Capture errors(stderr);
        QVERIFY(quickest(1ms, send) < 1ms);
    }

    void a_send_that_fails_at_the_start_stops_there()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        io.failing[GetUsageCode] = ENODEV;
        io.calls.clear();
        UCHAR frame[64] = {};
        Capture errors(stderr);
        QVERIFY(adapter.SendReport(0xFC, frame));
        QCOMPARE(errors.text(),
                 "SendCommandFS: ioctl to get usage code for out report: No such device\n");
        QCOMPARE(requestsOf(io), QList<unsigned long>({GetUsageCode}));
    }

    void failed_usages_and_report_info_go_unnoticed()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        io.failing = {{SetUsage, EINVAL}, {GetReportInfo, EINVAL}};
        UCHAR frame[64] = {};
        Capture errors(stderr);
        QVERIFY(!adapter.SendReport(0xFC, frame));
        QCOMPARE(errors.text(), "");
    }

    void a_frame_read_begins_with_the_report_id_and_holds_usages_0_to_62()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        for (int i = 0; i < 64; ++i)
            io.inputReport[size_t(i)] = 0x300 + i; // only the low byte counts
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        io.calls.clear();

        UCHAR frame[64];
        memset(frame, 0xEE, sizeof frame);
        QElapsedTimer time;
        time.start();
        QCOMPARE(adapter.ReadReport(0xFC, frame), 0);
        QVERIFY(time.nsecsElapsed() >= 64'000'000);

        QList<unsigned long> expected{GetReport, GetUsageCode};
        expected.append(QList<unsigned long>(64, GetUsage));
        QCOMPARE(requestsOf(io), expected);
        QCOMPARE(io.calls[0].reportType, 1u);
        QCOMPARE(io.calls[0].reportId, 0xFCu);
        QCOMPARE(io.calls[1].usageCode, 0xFF000001u);
        QCOMPARE(frame[0], UCHAR(0xFC));
        for (int i = 1; i < 64; ++i)
            QCOMPARE(frame[i], UCHAR(i - 1));
    }

    void a_read_answers_with_the_usage_code_result_alone()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        UCHAR frame[64];
        io.failing = {{GetReport, EIO}, {GetUsage, EIO}};
        QCOMPARE(adapter.ReadReport(0xFC, frame), 0);
        io.failing = {{GetUsageCode, EIO}};
        QCOMPARE(adapter.ReadReport(0xFC, frame), -1);
        QCOMPARE(frame[0], UCHAR(0xFC));
    }

    void a_read_after_closing_reaches_no_descriptor()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        io.inputReport.fill(9);
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        adapter.CloseDevice();
        UCHAR frame[64];
        QCOMPARE(adapter.ReadReport(0xFC, frame), -1);
        QCOMPARE(frame[1], UCHAR(0));
    }

    void device_information_fills_the_record_and_is_printed()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {.product = 0x0A0B, .version = 0x3010};
        OP_HID_Adapter adapter(io);
        Capture output(stdout);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        io.calls.clear();
        QVERIFY(!adapter.GetVersion());
        QCOMPARE(requestsOf(io), QList<unsigned long>({GetDevInfo, GetString, GetString}));
        QCOMPARE(hidver.VendorID, 0x5156u);
        QCOMPARE(hidver.ProductID, 0x0A0Bu);
        QCOMPARE(hidver.VersionNumber, 0x3010u);
        QCOMPARE(output.text(),
                 "dir_str: /dev/usb/\thiddev: /dev/usb/hiddev0\tcol: col03\n"
                 "VID: 0x5156  PID: 0x0A0B  version: 0x3010\n"
                 "Applications: 1\n"
                 "Bus: 3 Devnum: 7 Ifnum: 0\n"
                 "Path: /dev/usb/hiddev0\n\tManufacturer: Maker\n\tProduct: Frame\n");
    }

    void names_without_an_end_are_cut()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        io.stringsHaveNoEnd = true;
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        Capture output(stdout);
        QVERIFY(!adapter.GetVersion());
        const QByteArray name(255, 'x');
        QVERIFY2(output.text().endsWith("\tManufacturer: " + name + "\n\tProduct: " + name + '\n'),
                 output.text());
    }

    void a_release_above_0x7FFF_is_not_taken_for_negative()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {.product = 0xFFFE, .version = 0x9000};
        OP_HID_Adapter adapter(io);
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(!adapter.GetVersion());
        QCOMPARE(hidver.ProductID, 0xFFFEu);
        QCOMPARE(hidver.VersionNumber, 0x9000u);
    }

    void failed_device_information_clears_the_record_and_says_why()
    {
        FakeHiddev io;
        OP_HID_Adapter adapter(io);
        hidver.VendorID = hidver.ProductID = hidver.VersionNumber = 5;
        Capture errors(stderr);
        QVERIFY(adapter.GetVersion());
        QCOMPARE(errors.text(), "SendCommandFS: ioctl to get device info for out report: "
                                "Bad file descriptor\n");
        QCOMPARE(hidver.VendorID, 0u);
        QCOMPARE(hidver.ProductID, 0u);
        QCOMPARE(hidver.VersionNumber, 0u);
    }

    void what_was_unplugged_is_dead_also_when_its_node_is_there()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        OP_HID_Adapter adapter(io);
        QVERIFY(!adapter.IsDevDead());
        QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(!adapter.IsDevDead());
        // What an earlier call met tells nothing about this frame.
        errno = ENODEV;
        QVERIFY(!adapter.IsDevDead());
        io.failing[HIDIOCGDEVINFO] = EINTR;
        QVERIFY(!adapter.IsDevDead());
        io.failing[HIDIOCGDEVINFO] = ENODEV;
        QVERIFY(adapter.IsDevDead());
    }

    void a_hundred_searches_need_one_name()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev7"] = {};
        OP_HID_Adapter adapter(io);
        for (int i = 0; i < 100; ++i)
            QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        QVERIFY(adapter.IsDevOpened());
        QCOMPARE(io.openDescriptors(), size_t(1));
    }

    void the_device_is_closed_with_its_adapter()
    {
        FakeHiddev io;
        io.nodes["/dev/usb/hiddev0"] = {};
        {
            OP_HID_Adapter adapter(io);
            QVERIFY(adapter.DoFindDev(u"col03"_s, true));
        }
        QCOMPARE(io.openDescriptors(), size_t(0));
    }

    void listed_ids_are_80_products_of_the_vendor()
    {
        QCOMPARE(CheckIds(0x5156, 0x0001, 1), 1);
        QCOMPARE(CheckIds(0x5156, 0x0050, 1), 1);
        QCOMPARE(CheckIds(0x5156, 0x0050, 0), 0);
        QCOMPARE(CheckIds(0x5156, 0x0000, 1), 0);
        QCOMPARE(CheckIds(0x5156, 0x0051, 1), 0);
        QCOMPARE(CheckIds(0x5157, 0x0001, 1), 0);
        QCOMPARE(CheckIds(0x15156, 0x0001, 1), 0);
        QCOMPARE(CheckIds(0x5156, 0x10001, 1), 0);
        int listed = 0;
        for (unsigned long product = 0; product <= 0xFFFF; ++product)
            listed += CheckIds(0x5156, product, 1);
        QCOMPARE(listed, 80);
    }
};

QTEST_GUILESS_MAIN(TestLinuxHidAdapter)
#include "tst_linux_hid_adapter.moc"
