// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/struct.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/version_dlg.h"
#include "tests/support/outsidetool.h"
#include "udev.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <grp.h>
#include <memory>
#include <optional>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

using namespace outside;

namespace {

constexpr int FewRounds = 16;
constexpr int FirstRounds = 10;
constexpr qint64 MemorySlackKiB = 1024;
// Within it, what a user has begun is on its way; and then all of it is on the screen.
constexpr int LatestMomentMs = 1500;
constexpr int SettledMs = 10'000;

constexpr uid_t SomeUser = 12345;

int entriesOf(const QString &folder)
{
    std::error_code gone;
    const std::filesystem::directory_iterator entries(folder.toStdString(), gone);
    return gone ? -1 : int(std::distance(begin(entries), end(entries)));
}

// How this process draws a part of a dialog of the tool's.
QImage drawn(QDialog &dialog, const QRect &part)
{
    return dialog.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
}

const QByteArray AskedForVersion = "host > frame  firmware: read  [A3 00 00]";
const QByteArray ToldVersion = "frame > host  firmware: revision";
const QByteArray Saved = "host > frame  calibration: save";

} // namespace

// The tool with a virtual frame on a real kernel: nodes, events, reports and permissions.
class TestKernel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void plugging_in_connects_and_unplugging_disconnects_data() { withAndWithoutUdev(); }
    void plugging_in_connects_and_unplugging_disconnects();
    void without_a_frame_calibration_cannot_be_started();
    void a_calibration_with_four_touches_is_kept();
    void a_calibration_that_is_not_wanted_is_not_kept();
    void a_calibration_that_was_recorded_goes_as_it_went();
    void an_unplug_ends_the_calibration_at_once_data() { withAndWithoutUdev(); }
    void an_unplug_ends_the_calibration_at_once();
    void a_question_about_a_reset_goes_with_its_frame();
    void gestures_that_were_applied_are_sent_again_after_a_replug();
    void a_rotation_is_set_and_read_back();
    void the_versions_are_those_of_the_frame();
    void a_signal_test_draws_both_axes_and_ends_with_the_cable();
    void a_light_is_adjusted_and_switched_and_settings_are_read_back();
    void rounds_at_random_moments_leave_nothing_behind();
    void a_user_without_rights_is_told_what_to_do();
    void the_rule_lets_members_of_plugdev_in();
    void of_two_programs_one_has_the_frame_and_the_other_takes_it_when_that_is_killed();
    void the_doctor_finds_what_keeps_a_frame_from_working();

private:
    enum Activity { Calibrating, Scanning, SettingLights, Rotating, Activities };
    // Of the tool.
    struct Holdings
    {
        int descriptors = 0;
        int threads = 0;
        qint64 memoryKiB = 0; // its own, without files and what is shared
    };

    static void withAndWithoutUdev();
    // These return what went wrong, or nothing.
    QString startTool(std::optional<gid_t> group = {});
    QString plugIn();
    QString touchTargets(int count);
    QString calibrate();
    // Begins what a user does with a frame, and leaves it where it is.
    QString begin(Activity activity);
    QString round(Activity activity, int momentMs);
    Holdings holdings() const;
    bool statusChanged() const { return status() != unlinked; }
    QImage status() const { return seen(StatusLine.translated(window.geometry.topLeft())); }
    bool startsAs(Program &program, const QStringList &arguments, std::optional<gid_t> group);
    bool closeTool(std::optional<gid_t> group = {});
    // The exit code of an examination by root, or by a user without rights, and what it says.
    static int examine(bool byRoot, QByteArray &said);
    bool holdsNode() const;
    void keepPicture(const QString &name);

    std::optional<QTemporaryDir> userHome;
    std::optional<Udev> udev; // of one test
    std::unique_ptr<VirtualFrame> frame;
    std::unique_ptr<Program> tool;
    Window window;   // the tool's
    QImage unlinked; // its status line without a frame
    std::vector<std::pair<QString, QImage>> pictures;
};

void TestKernel::initTestCase()
{
    QVERIFY2(QFile::exists(u"/sys/devices/platform/vhci_hcd.0/attach"_s),
             "no virtual USB controller: run this with tests/kernel/run");
    QCOMPARE(geteuid(), uid_t(0));
}

void TestKernel::init()
{
    udev.emplace();
    frame = std::make_unique<VirtualFrame>();
    QVERIFY2(frame->begin({u"usb"_s, u"--unplugged"_s}), "quorvel-sim did not start");
}

void TestKernel::cleanup()
{
    const QString record = qEnvironmentVariable("QUORVEL_RECORD");
    if (QTest::currentTestFailed())
        keepPicture(u"failed"_s);
    const QString test = QString::fromUtf8(QTest::currentTestFunction());
    const QString row = QString::fromUtf8(QTest::currentDataTag()).replace(u' ', u'-');
    const QString folder = record + u'/' + test + (row.isEmpty() ? QString() : u'-' + row);
    if (!record.isEmpty() && QDir(folder).removeRecursively() && QDir().mkpath(folder)) {
        const auto write = [&folder](const QString &name, const QByteArray &text) {
            QFile file(folder + u'/' + name);
            if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
                qWarning("%s cannot be written", qUtf8Printable(file.fileName()));
        };
        for (size_t i = 0; i < pictures.size(); ++i)
            pictures[i].second.save(folder + u"/%1-%2.png"_s.arg(i + 1).arg(pictures[i].first));
        if (frame)
            write(u"frame.log"_s, frame->output + frame->errors);
        if (tool) {
            write(u"quorvel.out"_s, tool->output);
            write(u"quorvel.err"_s, tool->errors);
        }
    }
    pictures.clear();
    tool.reset();
    if (frame)
        QVERIFY(frame->quit());
    frame.reset();
    QVERIFY(udev->end());
    udev.reset();
    userHome.reset();
}

void TestKernel::withAndWithoutUdev()
{
    QTest::addColumn<bool>("withUdev");
    QTest::newRow("with udevd") << true;
    QTest::newRow("without udevd") << false;
}

// group: run by somebody without rights, in this group besides; otherwise by root.
bool TestKernel::startsAs(Program &program, const QStringList &arguments,
                          std::optional<gid_t> group)
{
    if (!group)
        return program.start(QStringLiteral(QUORVEL_PROGRAM), arguments);
    // Wherever the checkout lies, this user may go here.
    const QString copy = userHome->filePath(u"quorvel"_s);
    if (!QFile::exists(copy) && !QFile::copy(QStringLiteral(QUORVEL_PROGRAM), copy))
        return false;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"FONTCONFIG_FILE"_s);
    for (const QString &name : {u"HOME"_s, u"TMPDIR"_s, u"XDG_RUNTIME_DIR"_s})
        environment.insert(name, userHome->path());
    program.process.setProcessEnvironment(environment);
    program.process.setChildProcessModifier([main = *group] {
        if (setgroups(1, &main) != 0 || setgid(SomeUser) != 0 || setuid(SomeUser) != 0)
            _exit(1);
    });
    return program.start(copy, arguments);
}

QString TestKernel::startTool(std::optional<gid_t> group)
{
    if (group) {
        userHome.emplace(u"/tmp/user.XXXXXX"_s);
        if (!userHome->isValid() || chown(qPrintable(userHome->path()), SomeUser, SomeUser) != 0)
            return u"no home for the user"_s;
    }
    tool = std::make_unique<Program>();
    if (!startsAs(*tool, {}, group))
        return u"the tool did not start"_s;
    std::optional<Window> shown;
    if (!inTime([&shown] { return (shown = windowSized("Quorvel", MainWindowSize)).has_value(); }))
        return u"the tool's window did not appear"_s;
    window = *shown;
    // Something is written there, and it stays as it is.
    const auto isSteady = [this] {
        const QImage before = std::exchange(unlinked, status());
        return unlinked == before && !isBlank(unlinked);
    };
    if (!inTime(isSteady))
        return u"the status line stays empty"_s;
    return {};
}

bool TestKernel::closeTool(std::optional<gid_t> group)
{
    Program second;
    return startsAs(second, {u"-close"_s}, group) && second.endsWell() && tool->endsWell();
}

bool TestKernel::holdsNode() const
{
    const QDir descriptors(tool->folder() + u"fd"_s);
    const QStringList numbers =
        descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    return std::any_of(numbers.begin(), numbers.end(), [&descriptors](const QString &number) {
        return QFile::symLinkTarget(descriptors.filePath(number)).contains("hiddev"_L1);
    });
}

void TestKernel::keepPicture(const QString &name)
{
    pictures.emplace_back(name, seen(wholeScreen()));
}

QString TestKernel::plugIn()
{
    const qsizetype asked = frame->heard(AskedForVersion);
    const qsizetype told = frame->heard(ToldVersion);
    if (const QByteArray answer = frame->tell("plug"); !answer.startsWith("ok "))
        return u"not plugged: "_s + QString::fromUtf8(answer);
    if (!inTime([this, asked] { return frame->heard(AskedForVersion) > asked; }))
        return u"the tool did not ask for the version"_s;
    if (!inTime([this, told] { return frame->heard(ToldVersion) > told; }))
        return u"the tool did not read the version"_s;
    if (!inTime([this] { return statusChanged(); }))
        return u"the status line looks as it did without a frame"_s;
    return {};
}

QString TestKernel::touchTargets(int count)
{
    return outside::touchTargets(*frame, window.geometry.topLeft(), count,
                                 [this](const QString &picture) { keepPicture(picture); });
}

void TestKernel::plugging_in_connects_and_unplugging_disconnects()
{
    QFETCH(bool, withUdev);
    if (withUdev)
        QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QCOMPARE(startTool(), QString());
    keepPicture(u"unlinked"_s);

    QCOMPARE(plugIn(), QString());
    keepPicture(u"linked"_s);
    const QImage linked = status();
    QVERIFY2(tool->output.contains("VID: 0x5156  PID: 0x0001  version: 0x3010"), tool->output);
    QVERIFY(holdsNode());

    QVERIFY(frame->does("unplug"));
    QVERIFY(inTime([this] { return !statusChanged(); }));
    QVERIFY(inTime([this] { return !holdsNode(); }));

    QCOMPARE(plugIn(), QString());
    QVERIFY(inTime([&] { return status() == linked; }));
    QVERIFY(closeTool());
}

void TestKernel::without_a_frame_calibration_cannot_be_started()
{
    QCOMPARE(startTool(), QString());
    QVERIFY(click(window.geometry.topLeft() + CalibrationButton));
    QVERIFY(!within(SilenceMs, showsCalibration));
    // The same click does it when a frame is there.
    QCOMPARE(plugIn(), QString());
    QVERIFY(click(window.geometry.topLeft() + CalibrationButton));
    QVERIFY(inTime(showsCalibration));
}

// A whole calibration, kept.
QString TestKernel::calibrate()
{
    if (QString problem = touchTargets(Targets); !problem.isEmpty())
        return problem;
    if (!inTime([] { return question().has_value(); }))
        return u"the question did not come"_s;
    if (!inTime([] { return !showsCalibration(); }))
        return u"the calibration screen stays"_s;
    if (!inTime([] { return !isBlank(seen(question().value_or(Window()).geometry)); }))
        return u"the question stays empty"_s;
    keepPicture(u"question"_s);
    const std::optional<Window> asked = question();
    if (!asked || !click(asked->geometry.topLeft() + YesButton))
        return u"the question could not be answered"_s;
    if (!inTime([this] { return frame->heard(Saved) == 1; }))
        return u"the frame was not told to keep it"_s;
    return inTime([] { return !question(); }) ? QString() : u"the question stays"_s;
}

void TestKernel::a_calibration_with_four_touches_is_kept()
{
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QVERIFY(frame->stateHas("kept=0"));
    QCOMPARE(calibrate(), QString());
    const QByteArray state = frame->tell("state");
    QVERIFY2(state.contains(" kept=1 kept-deviation=0,0 kept-screen=0,0,1280,800,1280,800 "),
             state);
}

void TestKernel::a_calibration_that_is_not_wanted_is_not_kept()
{
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QCOMPARE(touchTargets(Targets), QString());
    QVERIFY(inTime([] { return question().has_value(); }));
    // Nobody answers: the question goes by itself after eleven seconds, and No is the answer.
    QVERIFY(inTime([] { return !question(); }));
    QVERIFY(inTime([this] { return frame->stateHas("calibration=idle"); }));
    QVERIFY(frame->stateHas("kept=0"));
    QCOMPARE(frame->heard(Saved), 0);
}

void TestKernel::a_calibration_that_was_recorded_goes_as_it_went()
{
    QVERIFY(frame->quit());
    udev.emplace();
    frame = std::make_unique<VirtualFrame>();
    QVERIFY(frame->begin(
        {u"replay"_s, QStringLiteral(RECORDINGS "/calibration.pcap"), u"usb"_s, u"--unplugged"_s}));
    QCOMPARE(startTool(), QString());
    QVERIFY(frame->does("plug"));
    QVERIFY(inTime([this] { return statusChanged(); }));
    // Nobody touches: the touches were recorded.
    QVERIFY(click(window.geometry.topLeft() + CalibrationButton));
    QVERIFY(inTime([] { return question().has_value(); }));
    QVERIFY(inTime([] { return !isBlank(seen(question().value_or(Window()).geometry)); }));
    QVERIFY(click(question()->geometry.topLeft() + YesButton));
    QVERIFY(inTime([this] { return frame->heard(Saved) == 1; }));
    QVERIFY(inTime([this] { return frame->stateHas("replayed=6/8"); }));
}

void TestKernel::an_unplug_ends_the_calibration_at_once()
{
    constexpr int AtOnceMs = 2000;
    QFETCH(bool, withUdev);
    if (withUdev)
        QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    const QImage linked = status();
    QCOMPARE(touchTargets(2), QString());

    QVERIFY(frame->does("unplug"));
    QVERIFY(within(AtOnceMs, [] { return !showsCalibration(); }));
    QVERIFY(!within(SilenceMs, [] { return question().has_value(); }));
    QVERIFY(inTime([this] { return !statusChanged(); }));

    QCOMPARE(plugIn(), QString());
    QVERIFY(inTime([&] { return status() == linked; }));
    QVERIFY(!showsCalibration());
    QVERIFY(frame->stateHas("calibration=idle"));
    QVERIFY(frame->stateHas("kept=0"));
    QCOMPARE(frame->heard(Saved), 0);
}

void TestKernel::a_question_about_a_reset_goes_with_its_frame()
{
    const auto asks = [] { return windowTitled("Reset").has_value(); };
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QVERIFY(click(window.geometry.topLeft() + ResetButton));
    QVERIFY(inTime(asks));
    QVERIFY(frame->does("unplug"));
    QVERIFY(inTime([&] { return !asks(); }));

    QCOMPARE(plugIn(), QString());
    QVERIFY(!within(SilenceMs, asks));
    QCOMPARE(frame->heard("host > frame  reset"), 0);
    // Asked for this frame, it is this one that is reset.
    QVERIFY(click(window.geometry.topLeft() + ResetButton));
    QVERIFY(inTime(asks));
    QVERIFY(press(u"Return"_s));
    QVERIFY(inTime([this] { return frame->heard("host > frame  reset") > 0; }));
}

void TestKernel::gestures_that_were_applied_are_sent_again_after_a_replug()
{
    const QByteArray defaults =
        "host > frame  gestures: all 1, right button 1 after 1500 ms within "
        "3, wheel 1 at 2";
    const QByteArray longer = "host > frame  gestures: all 1, right button 1 after 2000 ms within "
                              "3, wheel 1 at 2";
    QVERIFY(QDir::home().mkpath(u".config"_s));
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QCOMPARE(frame->heard(defaults), 1);
    QVERIFY(frame->output.indexOf(defaults) < frame->output.indexOf(AskedForVersion));

    QCOMPARE(openGestures(window.geometry.topLeft()), QString());
    const QPoint dialog = windowSized("Advanced Setting", GesturesSize)->geometry.topLeft();
    QVERIFY(click(dialog + LongerButton));
    QVERIFY(click(dialog + ApplyButton));
    QVERIFY(inTime([&] { return frame->heard(longer) == 1; }));
    keepPicture(u"applied"_s);

    QVERIFY(frame->does("unplug"));
    QVERIFY(inTime([] { return !windowSized("Advanced Setting", GesturesSize); }));
    const qsizetype unplugged = frame->output.size();
    QCOMPARE(plugIn(), QString());
    QCOMPARE(frame->heard(longer), 2);
    const qsizetype again = frame->output.indexOf(longer, unplugged);
    QVERIFY(again > 0 && again < frame->output.indexOf(AskedForVersion, unplugged));
    QVERIFY2(frame->tell("state").contains(" gestures=1,1,2000,3,1,2 "), frame->tell("state"));
    QVERIFY(closeTool());
}

void TestKernel::a_rotation_is_set_and_read_back()
{
    Rotation_dlg expected(nullptr);
    expected.show(); // its texts are fitted then
    auto *label = expected.findChild<QLabel *>(u"Rotationlab"_s);
    label->setText(u"0"_s);
    const QImage zero = drawn(expected, RotationShown);
    label->setText(u"270"_s);
    const QImage turned = drawn(expected, RotationShown);
    expected.hide();
    QVERIFY(zero != turned);

    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QVERIFY(frame->stateHas("rotation=0"));
    QVERIFY(click(window.geometry.topLeft() + RotationButton));
    const auto opened = [] { return windowSized("Quorvel", RotationSize); };
    QVERIFY(inTime([&] { return opened().has_value(); }));
    const auto shows = [&opened](const QImage &angle) {
        const std::optional<Window> dialog = opened();
        return dialog && seen(RotationShown.translated(dialog->geometry.topLeft())) == angle;
    };
    QVERIFY(inTime([&] { return shows(zero); }));

    QVERIFY(click(opened()->geometry.topLeft() + Button270));
    QVERIFY(inTime([&] { return shows(turned); }));
    QVERIFY(frame->stateHas("rotation=3"));
    keepPicture(u"turned"_s);

    // It comes from the frame: shown again, the dialog asks again.
    const qsizetype asked = frame->heard("host > frame  rotation: read");
    QVERIFY(click(opened()->geometry.topLeft() + RotationOk));
    QVERIFY(inTime([&] { return !opened(); }));
    QVERIFY(click(window.geometry.topLeft() + RotationButton));
    QVERIFY(inTime([&] { return frame->heard("host > frame  rotation: read") > asked; }));
    QVERIFY(inTime([&] { return shows(turned); }));
}

void TestKernel::the_versions_are_those_of_the_frame()
{
    const std::pair<QString, QString> lines[] = {
        {u"label_3"_s, u"Device version: 3.0.1.0"_s},
        {u"label_4"_s, u"Hardware: 5156 - 0001"_s},
        {u"label_5"_s, u"SID: 5A17C0DE - 003812"_s},
        {u"label_6"_s, u"PID: UNDEF - 160501234"_s},
    };
    hidver = {.VendorID = 0x5156,
              .ProductID = 0x0001,
              .VersionNumber = 0x3010,
              .SVNNUM = 0x003812,
              .CHECKSUM = 0x5A17C0DE,
              .P_FID = 0x21,
              .P_DATE = 0x1605,
              .P_NUM = 0x01234};
    Version_Dlg expected(nullptr);
    expected.show();
    QRect place;
    for (const auto &[name, text] : lines) {
        const auto *label = expected.findChild<QLabel *>(name);
        QCOMPARE(label->text(), text);
        place |= QRect(label->mapTo(&expected, QPoint()), label->size());
    }
    const QImage told = drawn(expected, place);
    expected.hide();

    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QVERIFY(click(window.geometry.topLeft() + VersionButton));
    const auto opened = [] { return windowSized("Quorvel", VersionSize); };
    QVERIFY(inTime([&] { return opened().has_value(); }));
    QVERIFY(inTime([&] {
        const std::optional<Window> dialog = opened();
        return dialog && seen(place.translated(dialog->geometry.topLeft())) == told;
    }));
    keepPicture(u"versions"_s);
}

void TestKernel::a_signal_test_draws_both_axes_and_ends_with_the_cable()
{
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    const auto opened = [] { return windowSized("MalvoTools", SignalTestSize); };
    const auto shows = [&opened](QColor colour) {
        constexpr int Many = 100;
        const std::optional<Window> test = opened();
        return test && plotted(*test, colour) > Many;
    };
    QCOMPARE(openDiagnostics(window.geometry.topLeft()), QString());
    QVERIFY(click(windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft() + TestButton));
    QVERIFY(inTime([&] { return opened().has_value(); }));
    QVERIFY(click(opened()->geometry.topLeft() + AllTestButton));
    QVERIFY(inTime([&] { return shows(Qt::darkGreen) && shows(Qt::darkRed); }));
    keepPicture(u"signals"_s);

    QVERIFY(frame->does("unplug"));
    QVERIFY(inTime([&] { return !opened(); }));
    QVERIFY(inTime([this] { return !statusChanged(); }));
    const qsizetype asked = frame->heard("host > frame  scan:");
    QCOMPARE(plugIn(), QString());
    QVERIFY(!within(SilenceMs, [&] { return frame->heard("host > frame  scan:") > asked; }));
    QVERIFY(closeTool());
}

void TestKernel::a_light_is_adjusted_and_switched_and_settings_are_read_back()
{
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QCOMPARE(openDiagnostics(window.geometry.topLeft()), QString());
    const QPoint menu = windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft();
    const auto opened = [] { return windowSized("Dialog", wholeScreen().size()).has_value(); };
    QVERIFY(click(menu + LightsButton));
    QVERIFY(inTime(opened));
    QVERIFY(inTime([this] { return frame->heard("frame > host  adc: range 3800 to 4000") > 0; }));
    QVERIFY(clickUntilHeard(*frame, drawnLightX(47), "host > frame  light X 47: read"));
    QVERIFY(clickUntilHeard(*frame, PlusButton, "host > frame  light X 47: set offset 1"));
    QVERIFY(inTime([this] { return frame->heard("frame > host  light X 47: on, offset 1") > 0; }));
    keepPicture(u"adjusted"_s);
    QVERIFY(clickUntilHeard(*frame, SwitchButton, "host > frame  light X 47: switch off"));
    QVERIFY(inTime([this] { return frame->heard("frame > host  light X 47: off") > 0; }));
    QVERIFY(clickUntilHeard(*frame, SwitchButton, "host > frame  light X 47: switch on"));

    QVERIFY(click(MinAdcField));
    QVERIFY(press(u"ctrl+a"_s));
    for (const QString &digit : {u"3"_s, u"7"_s, u"0"_s, u"1"_s})
        QVERIFY(press(digit));
    QVERIFY(click(SetButton));
    QVERIFY(
        inTime([this] { return frame->heard("host > frame  adc: set range 3701 to 4000") == 1; }));
    QVERIFY(click(LightsExit));
    QVERIFY(inTime([&] { return !opened(); }));
    QVERIFY(inTime([this] { return frame->heard("frame > host  adc: range 3701 to 4000") > 0; }));
    QVERIFY(closeTool());
}

TestKernel::Holdings TestKernel::holdings() const
{
    QFile status(tool->folder() + u"status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return {};
    qint64 memory = 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("RssAnon:"))
            memory = line.simplified().split(' ').value(1).toLongLong();
    }
    return {entriesOf(tool->folder() + u"fd"_s), entriesOf(tool->folder() + u"task"_s), memory};
}

QString TestKernel::begin(Activity activity)
{
    const QPoint place = window.geometry.topLeft();
    switch (activity) {
    case Calibrating:
        return click(place + CalibrationButton) ? QString() : u"the mouse could not be clicked"_s;
    case Rotating: {
        const auto opened = [] { return windowSized("Quorvel", RotationSize); };
        if (!click(place + RotationButton) || !inTime([&] { return opened().has_value(); }))
            return u"the rotation does not open"_s;
        return click(opened()->geometry.topLeft() + Button270)
                   ? QString()
                   : u"the mouse could not be clicked"_s;
    }
    default:
        break;
    }
    if (QString problem = openDiagnostics(place); !problem.isEmpty())
        return problem;
    const QPoint menu = windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft();
    if (activity == SettingLights)
        return click(menu + LightsButton) ? QString() : u"the mouse could not be clicked"_s;
    std::optional<Window> test;
    if (!click(menu + TestButton) ||
        !inTime([&test] { return (test = windowSized("MalvoTools", SignalTestSize)).has_value(); }))
        return u"the signal test does not open"_s;
    return click(test->geometry.topLeft() + AllTestButton) ? QString()
                                                           : u"the mouse could not be clicked"_s;
}

QString TestKernel::round(Activity activity, int momentMs)
{
    if (QString problem = plugIn(); !problem.isEmpty())
        return problem;
    if (QString problem = begin(activity); !problem.isEmpty())
        return problem;
    QTest::qWait(momentMs);
    if (!frame->does("unplug"))
        return u"the frame was not unplugged"_s;
    if (!inTime([this] { return !holdsNode(); }))
        return u"the tool keeps the node"_s;
    // The only window here that goes on without a frame.
    const auto rotates = [] { return windowSized("Quorvel", RotationSize).has_value(); };
    if (activity == Rotating &&
        !inTime([&] { return !rotates() || (press(u"Escape"_s) && !rotates()); }))
        return u"the rotation does not close"_s;
    if (!inTime([this] { return !statusChanged(); }))
        return u"the status line does not tell of the end"_s;
    return question() || showsCalibration() ? u"the calibration goes on"_s : QString();
}

void TestKernel::rounds_at_random_moments_leave_nothing_behind()
{
    const int rounds =
        qEnvironmentVariable("QUORVEL_TEST_ROUNDS", QString::number(FewRounds)).toInt();
    QVERIFY(rounds >= FirstRounds + Activities);
    const quint32 seed = qEnvironmentVariableIsSet("QUORVEL_TEST_SEED")
                             ? qEnvironmentVariable("QUORVEL_TEST_SEED").toUInt()
                             : 20261122;
    qInfo("seed %u; another one: QUORVEL_TEST_SEED=...", seed);
    std::mt19937 generator(seed);
    const auto upTo = [&generator](int most) {
        return std::uniform_int_distribution(0, most)(generator);
    };
    QVERIFY(QDir::home().mkpath(u".config"_s));
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QCOMPARE(startTool(), QString());
    Holdings first;
    for (int i = 0; i < rounds; ++i) {
        // What is held is looked at behind one of each: windows keep their pictures.
        const int settled = (i < FirstRounds ? FirstRounds : rounds) - Activities;
        const bool isSettled = i >= settled;
        const auto activity = Activity(isSettled ? i - settled : upTo(Activities - 1));
        const int moment = isSettled ? SettledMs : upTo(LatestMomentMs);
        const QString problem = round(activity, moment);
        QVERIFY2(
            problem.isEmpty(),
            qPrintable(
                u"round %1, activity %2, after %3 ms: %4"_s.arg(i).arg(activity).arg(moment).arg(
                    problem)));
        if (i + 1 == FirstRounds)
            first = holdings();
    }
    QVERIFY(first.descriptors > 0 && first.threads > 0 && first.memoryKiB > 0);
    QTRY_VERIFY(holdings().descriptors <= first.descriptors);
    QTRY_VERIFY(holdings().threads <= first.threads);
    const Holdings last = holdings();
    qInfo("after %d and %d rounds: %d and %d descriptors, %d and %d threads, %lld and %lld KiB",
          FirstRounds, rounds, first.descriptors, last.descriptors, first.threads, last.threads,
          static_cast<long long>(first.memoryKiB), static_cast<long long>(last.memoryKiB));
    QVERIFY(last.memoryKiB - first.memoryKiB <= MemorySlackKiB);

    QCOMPARE(plugIn(), QString());
    QCOMPARE(calibrate(), QString());
    QVERIFY(frame->stateHas("kept=1"));
    QVERIFY(closeTool());
}

void TestKernel::a_user_without_rights_is_told_what_to_do()
{
    constexpr gid_t NoGroup = 65534;
    constexpr int PermissionBits = 0777;
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QCOMPARE(startTool(NoGroup), QString());
    QVERIFY(frame->does("plug"));
    QVERIFY(inTime([] { return QFile::exists(u"/dev/usb/hiddev0"_s); }));
    struct stat node = {};
    QCOMPARE(stat("/dev/usb/hiddev0", &node), 0);
    QCOMPARE(node.st_mode & PermissionBits, mode_t(0600));

    QVERIFY(inTime([this] { return tool->errors.contains("/dev/usb/hiddev0"); }));
    keepPicture(u"denied"_s);
    QVERIFY2(tool->errors.contains("Permission denied"), tool->errors);
    QVERIFY2(tool->errors.contains("70-quorvel.rules"), tool->errors);
    QVERIFY2(tool->errors.contains("join the group plugdev"), tool->errors);
    QVERIFY(!statusChanged());
    QCOMPARE(tool->errors.count("/dev/usb/hiddev0"), 1);
    QVERIFY(closeTool(NoGroup));
}

void TestKernel::the_rule_lets_members_of_plugdev_in()
{
    constexpr int PermissionBits = 0777;
    const group *plugdev = getgrnam("plugdev");
    QVERIFY2(plugdev, "this system has no group plugdev");
    const gid_t members = plugdev->gr_gid;
    QVERIFY(Udev::installRule());
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QCOMPARE(startTool(members), QString());

    QCOMPARE(plugIn(), QString());
    keepPicture(u"linked"_s);
    struct stat node = {};
    QCOMPARE(stat("/dev/usb/hiddev0", &node), 0);
    QCOMPARE(node.st_mode & PermissionBits, mode_t(0660));
    QCOMPARE(node.st_gid, members);
    QVERIFY(closeTool(members));
}

void TestKernel::of_two_programs_one_has_the_frame_and_the_other_takes_it_when_that_is_killed()
{
    const group *plugdev = getgrnam("plugdev");
    QVERIFY2(plugdev, "this system has no group plugdev");
    const gid_t members = plugdev->gr_gid;
    QVERIFY(Udev::installRule());
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QCOMPARE(startTool(members), QString());
    QCOMPARE(plugIn(), QString());

    // Root is kept out too.
    Program other;
    QVERIFY(startsAs(other, {u"-s"_s}, {}));
    const QByteArray inUse = "The touch frame at /dev/usb/hiddev0 is in use by quorvel (process " +
                             QByteArray::number(tool->process.processId()) + ").";
    QVERIFY(inTime([&] { return other.errors.contains(inUse); }));
    const qsizetype asked = frame->heard(AskedForVersion);
    QVERIFY(!within(SilenceMs, [&] { return frame->heard(AskedForVersion) > asked; }));
    QVERIFY2(!other.output.contains("VID:"), other.output);
    keepPicture(u"in-use"_s);

    tool->process.kill();
    QVERIFY(tool->process.waitForFinished());
    QVERIFY(inTime([&] { return frame->heard(AskedForVersion) > asked; }));
    QVERIFY(inTime([&] { return other.output.contains("VID: 0x5156"); }));
    Program closer;
    QVERIFY(startsAs(closer, {u"-close"_s}, {}));
    QVERIFY(closer.endsWell() && other.endsWell());
}

int TestKernel::examine(bool byRoot, QByteArray &said)
{
    constexpr gid_t NoGroup = 65534;
    // Wherever the checkout lies, another user may go here.
    const QString program = u"/tmp/quorvelctl"_s;
    if (!QFile::exists(program) && !QFile::copy(QStringLiteral(QUORVELCTL_PROGRAM), program))
        return -1;
    QProcess doctor;
    doctor.setProcessChannelMode(QProcess::MergedChannels);
    if (!byRoot) {
        doctor.setChildProcessModifier([] {
            if (setgroups(0, nullptr) != 0 || setgid(NoGroup) != 0 || setuid(SomeUser) != 0)
                _exit(1);
        });
    }
    // Emulated, an answer may be late.
    doctor.start(program, {u"doctor"_s, u"--timeout"_s, u"20"_s});
    if (!doctor.waitForFinished(PatienceMs) || doctor.exitStatus() != QProcess::NormalExit)
        return -1;
    said = doctor.readAll();
    return doctor.exitCode();
}

void TestKernel::the_doctor_finds_what_keeps_a_frame_from_working()
{
    constexpr int NoFrame = 3;
    constexpr int NoPermission = 4;
    constexpr int InUse = 5;
    QVERIFY(QDir().mkpath(QDir::homePath() + u"/.config"_s));
    QVERIFY2(udev->start(), "systemd-udevd does not answer");
    QByteArray said;
    const auto says = [&said](const QByteArray &words) {
        return said.simplified().contains(words);
    };
    int code = examine(true, said);
    QVERIFY2(code == NoFrame && says("kernel good The kernel's driver usbhid is there") &&
                 says("node TROUBLE No touch frame is on USB."),
             said);

    QVERIFY(frame->does("plug"));
    QVERIFY(inTime([] { return QFile::exists(u"/dev/usb/hiddev0"_s); }));
    code = examine(true, said);
    QVERIFY2(code == 0 && says("node good The touch frame is at /dev/usb/hiddev0.") &&
                 says("ids good It is 5156:0001, release 3010.") &&
                 says("permission good This user may open /dev/usb/hiddev0. It belongs to root") &&
                 says("answer good It answers at /dev/usb/hiddev0, after") &&
                 says("generation good It is of the current generation, with the firmware "
                      "5A17C0DE-003812."),
             said);

    code = examine(false, said);
    QVERIFY2(code == NoPermission &&
                 says("permission TROUBLE A touch frame is at /dev/usb/hiddev0 but this user may "
                      "not open it (Permission denied).") &&
                 says("with the mode 0600."),
             said);

    QCOMPARE(startTool(), QString());
    QVERIFY(inTime([this] { return frame->heard(AskedForVersion) > 1; }));
    code = examine(true, said);
    QVERIFY2(code == InUse &&
                 says("program TROUBLE The touch frame at /dev/usb/hiddev0 is in use by quorvel "
                      "(process " +
                      QByteArray::number(tool->process.processId()) + ")."),
             said);
    QVERIFY(closeTool());

    const QDir driver(u"/sys/bus/usb/drivers/usbhid"_s);
    const QStringList bound = driver.entryList({u"*:1.0"_s});
    QCOMPARE(bound.size(), 1);
    QFile unbind(driver.filePath(u"unbind"_s));
    QVERIFY(unbind.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QVERIFY(unbind.write(bound[0].toLatin1()) > 0);
    QVERIFY(inTime([] { return !QFile::exists(u"/dev/usb/hiddev0"_s); }));
    code = examine(true, said);
    QVERIFY2(code == NoFrame && says("no driver uses it.") &&
                 says("write \"" + bound[0].toLatin1() + "\" to"),
             said);
    // What it advises helps.
    QFile bind(driver.filePath(u"bind"_s));
    QVERIFY(bind.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QVERIFY(bind.write(bound[0].toLatin1()) > 0);
    QVERIFY(inTime([] { return QFile::exists(u"/dev/usb/hiddev0"_s); }));
    code = examine(true, said);
    QVERIFY2(code == 0, said);
}

QTEST_MAIN(TestKernel)
#include "tst_kernel.moc"
