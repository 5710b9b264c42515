#include "device/struct.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/version_dlg.h"

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
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

// Emulated, and on a machine that may be busy.
constexpr int PatienceMs = 30'000;
// How long something that must not come is waited for.
constexpr int SilenceMs = 1500;
constexpr int Rounds = 50;

constexpr QSize MainWindowSize(350, 272);
constexpr QSize QuestionSize(421, 106);
constexpr QPoint CalibrationButton(283, 77);
constexpr QPoint RotationButton(296, 170);
constexpr QPoint VersionButton(255, 234);
constexpr QPoint YesButton(130, 75);
constexpr QRect StatusLine(12, 250, 326, 20);
constexpr QSize UsageSize(332, 307);
constexpr QPoint AdvanceButton(49, 283);
constexpr QSize GesturesSize(332, 447);
constexpr QPoint LongerButton(292, 100);
constexpr QPoint ApplyButton(287, 420);
constexpr QSize RotationSize(332, 166);
constexpr QPoint Button270(270, 85);
constexpr QRect RotationShown(170, 30, 71, 20);
constexpr QPoint RotationOk(252, 143);
constexpr QSize VersionSize(190, 180);
constexpr QPoint DoubleClickRange(214, 268);
constexpr QSize DiagnosticsSize(131, 148);
constexpr QPoint TestButton(65, 32);
constexpr QPoint LightsButton(65, 72);
constexpr QSize SignalTestSize(1000, 650);
constexpr QPoint AllTestButton(175, 605);
constexpr QRect SignalPlot(70, 50, 880, 490);
// On the light screen, which is the whole screen.
constexpr QPoint XLight47(640, 760);
constexpr QPoint MinAdcField(450, 110);
constexpr QPoint SetButton(475, 261);
constexpr QPoint SwitchButton(490, 340);
constexpr QPoint PlusButton(435, 469);
constexpr QPoint LightsExit(597, 480);
constexpr int Targets = 4;

constexpr uid_t SomeUser = 12345;

bool within(int ms, const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, ms);
}

bool inTime(const std::function<bool()> &condition)
{
    return within(PatienceMs, condition);
}

int entriesOf(const QString &folder)
{
    std::error_code gone;
    const std::filesystem::directory_iterator entries(folder.toStdString(), gone);
    return gone ? -1 : int(std::distance(begin(entries), end(entries)));
}

// Windows as the window manager lists them.

struct Window
{
    xcb_window_t id = XCB_WINDOW_NONE;
    QRect geometry; // on the screen, without the frame
};

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_connection_t *display()
{
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

QByteArray property(xcb_window_t window, const char *name)
{
    xcb_connection_t *x = display();
    const Answer<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, uint16_t(qstrlen(name)), name), nullptr),
        &std::free);
    if (!atom)
        return {};
    constexpr uint32_t MaxWords = 1024;
    const Answer<xcb_get_property_reply_t> value(
        xcb_get_property_reply(
            x, xcb_get_property(x, 0, window, atom->atom, XCB_ATOM_ANY, 0, MaxWords), nullptr),
        &std::free);
    if (!value)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(value.get())),
            xcb_get_property_value_length(value.get())};
}

std::optional<Window> windowSized(QByteArrayView title, QSize size)
{
    xcb_connection_t *x = display();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const QByteArray list = property(root, "_NET_CLIENT_LIST");
    for (qsizetype i = 0; i + qsizetype(sizeof(xcb_window_t)) <= list.size();
         i += qsizetype(sizeof(xcb_window_t))) {
        xcb_window_t id = XCB_WINDOW_NONE;
        std::copy_n(list.constData() + i, sizeof id, reinterpret_cast<char *>(&id));
        if (property(id, "_NET_WM_NAME") != title)
            continue;
        const Answer<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(x, xcb_get_geometry(x, id), nullptr), &std::free);
        const Answer<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, id), nullptr),
            &std::free);
        const Answer<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(x, xcb_translate_coordinates(x, id, root, 0, 0),
                                            nullptr),
            &std::free);
        if (!geometry || !attributes || !place || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
            continue;
        if (QSize(geometry->width, geometry->height) == size)
            return Window{id, QRect(QPoint(place->dst_x, place->dst_y), size)};
    }
    return {};
}

// How this process draws a part of a dialog of the tool's.
QImage drawn(QDialog &dialog, const QRect &part)
{
    return dialog.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
}

QImage seen(const QRect &part)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, part.x(), part.y(), part.width(), part.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

bool isBlank(const QImage &image)
{
    QImage ground(image.size(), image.format());
    ground.fill(image.pixel(0, 0));
    return image == ground;
}

QRect wholeScreen()
{
    return QGuiApplication::primaryScreen()->geometry();
}

bool showsCalibration()
{
    return windowSized("MalvoTools", wholeScreen().size()).has_value();
}

std::optional<Window> question()
{
    return windowSized("MalvoTools", QuestionSize);
}

QPoint targetAt(int number)
{
    const int right = wholeScreen().width() / 8 * 7;
    const int bottom = wholeScreen().height() / 8 * 7;
    const int left = wholeScreen().width() / 8;
    const int top = wholeScreen().height() / 8;
    const std::array<QPoint, Targets> places{QPoint(left, top), QPoint(right, top),
                                             QPoint(right, bottom), QPoint(left, bottom)};
    return places.at(size_t(number));
}

// All four arms of a white cross on blue, between rings of 16 to 24 pixels and of 24 to 32.
bool showsTarget(QPoint place)
{
    constexpr int Arm = 20;
    constexpr int Beside = 46;
    const QImage image = seen(QRect(place - QPoint(Beside, Beside), QSize(2 * Beside, 2 * Beside)));
    const QPoint centre(Beside, Beside);
    const auto isWhite = [&image](QPoint at) {
        for (int dx = -2; dx <= 2; ++dx) {
            if (qRed(image.pixel(at + QPoint(dx, 0))) > 200)
                return true;
        }
        return false;
    };
    return isWhite(centre + QPoint(Arm, Arm)) && isWhite(centre + QPoint(-Arm, Arm)) &&
           isWhite(centre + QPoint(Arm, -Arm)) && isWhite(centre + QPoint(-Arm, -Arm)) &&
           image.pixelColor(0, Beside) == QColor(Qt::blue);
}

bool click(QPoint place, int button = 1)
{
    return QProcess::execute(u"xdotool"_s, {u"mousemove"_s, QString::number(place.x()),
                                            QString::number(place.y()), u"click"_s,
                                            QString::number(button)}) == 0;
}

bool press(const QString &key)
{
    return QProcess::execute(u"xdotool"_s, {u"key"_s, key}) == 0;
}

// A program whose words are kept.
class Program
{
public:
    ~Program()
    {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished();
        }
    }

    bool start(const QString &path, const QStringList &arguments = {})
    {
        QObject::connect(&process, &QProcess::readyReadStandardOutput, &process,
                         [this] { output += process.readAllStandardOutput(); });
        QObject::connect(&process, &QProcess::readyReadStandardError, &process,
                         [this] { errors += process.readAllStandardError(); });
        process.start(path, arguments);
        return process.waitForStarted();
    }
    void write(const QByteArray &line) { process.write(line + '\n'); }
    // Ended with exit code 0, by now or in a while.
    bool endsWell()
    {
        return inTime([this] { return process.state() == QProcess::NotRunning; }) &&
               process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
    QString folder() const { return u"/proc/%1/"_s.arg(process.processId()); }

    QProcess process;
    QByteArray output;
    QByteArray errors;
};

// The virtual frame, steered by lines.
class VirtualFrame : public Program
{
public:
    bool begin()
    {
        return start(QStringLiteral(QUORVEL_SIM_PROGRAM), {u"usb"_s, u"--unplugged"_s}) &&
               waitAnswers(1);
    }
    // The answer to a command; empty when none came.
    QByteArray tell(const QByteArray &command)
    {
        const qsizetype before = answers().size();
        write(command);
        return waitAnswers(before + 1) ? answers().last() : QByteArray();
    }
    bool does(const QByteArray &command)
    {
        return tell(command).startsWith("ok " + command.split(' ').first());
    }
    bool stateHas(const QByteArray &word) { return tell("state").split(' ').contains(word); }
    qsizetype heard(const QByteArray &words) const { return output.count(words); }

private:
    QList<QByteArray> answers() const
    {
        QList<QByteArray> found;
        for (const QByteArray *text : {&output, &errors}) {
            for (const QByteArray &line : text->left(text->lastIndexOf('\n') + 1).split('\n')) {
                if (line.startsWith("ok ") || line.startsWith("error:"))
                    found += line;
            }
        }
        return found;
    }
    bool waitAnswers(qsizetype count)
    {
        return inTime([this, count] { return answers().size() >= count; });
    }
};

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
    void an_unplug_ends_the_calibration_at_once_data() { withAndWithoutUdev(); }
    void an_unplug_ends_the_calibration_at_once();
    void gestures_that_were_applied_are_sent_again_after_a_replug();
    void a_rotation_is_set_and_read_back();
    void the_versions_are_those_of_the_frame();
    void a_signal_test_draws_both_axes_and_ends_with_the_cable();
    void a_light_is_adjusted_and_switched_and_settings_are_read_back();
    void fifty_rounds_leave_no_descriptor_and_no_thread_behind();
    void a_user_without_rights_is_told_what_to_do();
    void the_rule_lets_members_of_plugdev_in();

private:
    static void withAndWithoutUdev();
    // These return what went wrong, or nothing.
    QString startUdev();
    QString startTool(std::optional<gid_t> group = {});
    QString plugIn();
    QString touchTargets(int count);
    QString openGestures();
    QString openDiagnostics();
    bool statusChanged() const { return status() != unlinked; }
    QImage status() const { return seen(StatusLine.translated(window.geometry.topLeft())); }
    bool startsAs(Program &program, const QStringList &arguments, std::optional<gid_t> group);
    bool closeTool(std::optional<gid_t> group = {});
    bool holdsNode() const;
    void keepPicture(const QString &name);

    std::optional<QTemporaryDir> userHome;
    std::unique_ptr<QProcess> udev;
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
    frame = std::make_unique<VirtualFrame>();
    QVERIFY2(frame->begin(), "quorvel-sim did not start");
}

void TestKernel::cleanup()
{
    const QString record = qEnvironmentVariable("QUORVEL_RECORD");
    if (QTest::currentTestFailed())
        keepPicture(u"failed"_s);
    const QString test = QString::fromUtf8(QTest::currentTestFunction());
    const QString row = QString::fromUtf8(QTest::currentDataTag()).replace(u' ', u'-');
    const QString folder = record + u'/' + test + (row.isEmpty() ? QString() : u'-' + row);
    if (!record.isEmpty() && QDir().mkpath(folder)) {
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
    if (frame && frame->process.state() != QProcess::NotRunning) {
        frame->write("quit");
        QVERIFY(frame->endsWell());
    }
    frame.reset();
    if (udev) {
        udev->terminate();
        QVERIFY(udev->waitForFinished());
        udev.reset();
    }
    userHome.reset();
}

void TestKernel::withAndWithoutUdev()
{
    QTest::addColumn<bool>("withUdev");
    QTest::newRow("with udevd") << true;
    QTest::newRow("without udevd") << false;
}

QString TestKernel::startUdev()
{
    udev = std::make_unique<QProcess>();
    const QString usual = u"/usr/lib/systemd/systemd-udevd"_s;
    udev->start(QFile::exists(usual) ? usual : u"/lib/systemd/systemd-udevd"_s);
    if (!udev->waitForStarted())
        return u"systemd-udevd did not start"_s;
    const auto answers = [] {
        QProcess ping;
        ping.start(u"udevadm"_s, {u"control"_s, u"--ping"_s});
        return ping.waitForFinished() && ping.exitStatus() == QProcess::NormalExit &&
               ping.exitCode() == 0;
    };
    return inTime(answers) ? QString() : u"systemd-udevd does not answer"_s;
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

// Opens the calibration screen and touches the first targets, each when it is shown and the frame
// waits for it. Touches come to the frame, as a finger's do, not to the mouse.
QString TestKernel::touchTargets(int count)
{
    const auto asked = [this](int step) {
        return frame->heard("host > frame  calibration: step " + QByteArray::number(step));
    };
    std::array<qsizetype, Targets> before{};
    for (int target = 0; target < count; ++target)
        before.at(size_t(target)) = asked(target + 1);
    if (!click(window.geometry.topLeft() + CalibrationButton))
        return u"the mouse could not be clicked"_s;
    if (!inTime(showsCalibration))
        return u"the calibration screen did not open"_s;
    for (int target = 0; target < count; ++target) {
        const QPoint place = targetAt(target);
        if (!inTime([place] { return showsTarget(place); }))
            return u"target %1 is not shown"_s.arg(target);
        if (!inTime([&, target] { return asked(target + 1) > before.at(size_t(target)); }))
            return u"the tool did not answer step %1"_s.arg(target + 1);
        keepPicture(u"target-%1"_s.arg(target));
        if (!frame->does("touch " + QByteArray::number(place.x()) + ' ' +
                         QByteArray::number(place.y())))
            return u"target %1 was not touched"_s.arg(target);
    }
    return {};
}

// Through the context menu of the main window and the usage dialog.
QString TestKernel::openGestures()
{
    if (!click(window.geometry.topLeft() + StatusLine.center(), 3))
        return u"the mouse could not be clicked"_s;
    std::optional<Window> usage;
    // The menu takes the key once it is there; the dialog does nothing with it.
    if (!inTime([&usage] {
            return (usage = windowSized("MalvoTools", UsageSize)) || !press(u"s"_s);
        }) ||
        !usage)
        return u"the usage dialog did not open"_s;
    if (!click(usage->geometry.topLeft() + AdvanceButton))
        return u"the mouse could not be clicked"_s;
    if (!inTime([] { return windowSized("Advanced Setting", GesturesSize).has_value(); }))
        return u"the gesture dialog did not open"_s;
    return {};
}

// From the gestures, by the key that opens the menu of the diagnostics.
QString TestKernel::openDiagnostics()
{
    if (QString problem = openGestures(); !problem.isEmpty())
        return problem;
    if (!click(windowSized("Advanced Setting", GesturesSize)->geometry.topLeft() +
               DoubleClickRange))
        return u"the mouse could not be clicked"_s;
    if (!press(u"c"_s))
        return u"the key could not be pressed"_s;
    if (!inTime([] { return windowSized("MalvoTools", DiagnosticsSize).has_value(); }))
        return u"the menu of the diagnostics did not open"_s;
    return {};
}

void TestKernel::plugging_in_connects_and_unplugging_disconnects()
{
    QFETCH(bool, withUdev);
    if (withUdev)
        QCOMPARE(startUdev(), QString());
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

void TestKernel::a_calibration_with_four_touches_is_kept()
{
    QCOMPARE(startTool(), QString());
    QCOMPARE(plugIn(), QString());
    QVERIFY(frame->stateHas("kept=0"));
    QCOMPARE(touchTargets(Targets), QString());
    QVERIFY(inTime([] { return question().has_value(); }));
    QVERIFY(inTime([] { return !showsCalibration(); }));
    QVERIFY(inTime([] { return !isBlank(seen(question().value_or(Window()).geometry)); }));
    keepPicture(u"question"_s);

    QVERIFY(click(question()->geometry.topLeft() + YesButton));
    QVERIFY(inTime([this] { return frame->heard(Saved) == 1; }));
    QVERIFY(inTime([] { return !question(); }));
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

void TestKernel::an_unplug_ends_the_calibration_at_once()
{
    constexpr int AtOnceMs = 2000;
    QFETCH(bool, withUdev);
    if (withUdev)
        QCOMPARE(startUdev(), QString());
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

    QCOMPARE(openGestures(), QString());
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
    Rotation_dlg expected(nullptr);
    auto *label = expected.findChild<QLabel *>(u"Rotationlab"_s);
    label->setText(u"0"_s);
    const QImage zero = drawn(expected, RotationShown);
    label->setText(u"270"_s);
    const QImage turned = drawn(expected, RotationShown);
    QVERIFY(zero != turned);
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
    for (const auto &[label, text] : lines)
        QCOMPARE(expected.findChild<QLabel *>(label)->text(), text);
    const QRect place(10, 60, 171, 80);
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
        if (!test)
            return false;
        const QImage plot = seen(SignalPlot.translated(test->geometry.topLeft()));
        int count = 0;
        for (int y = 0; y < plot.height(); ++y) {
            for (int x = 0; x < plot.width(); ++x)
                count += plot.pixelColor(x, y) == colour ? 1 : 0;
        }
        return count > Many;
    };
    QCOMPARE(openDiagnostics(), QString());
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
    QCOMPARE(openDiagnostics(), QString());
    const QPoint menu = windowSized("MalvoTools", DiagnosticsSize)->geometry.topLeft();
    const auto opened = [] { return windowSized("Dialog", wholeScreen().size()).has_value(); };
    // Until counts and light have been read, a click does nothing.
    const auto clickUntil = [this](QPoint button, const QByteArray &words) {
        return inTime([&] {
                   return !click(button) ||
                          within(SilenceMs, [&] { return frame->heard(words) > 0; });
               }) &&
               frame->heard(words) > 0;
    };
    QVERIFY(click(menu + LightsButton));
    QVERIFY(inTime(opened));
    QVERIFY(inTime([this] { return frame->heard("frame > host  adc: range 3800 to 4000") > 0; }));
    QVERIFY(clickUntil(XLight47, "host > frame  light X 47: read"));
    QVERIFY(clickUntil(PlusButton, "host > frame  light X 47: set offset 1"));
    QVERIFY(inTime([this] { return frame->heard("frame > host  light X 47: on, offset 1") > 0; }));
    keepPicture(u"adjusted"_s);
    QVERIFY(clickUntil(SwitchButton, "host > frame  light X 47: switch off"));
    QVERIFY(inTime([this] { return frame->heard("frame > host  light X 47: off") > 0; }));
    QVERIFY(clickUntil(SwitchButton, "host > frame  light X 47: switch on"));

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

void TestKernel::fifty_rounds_leave_no_descriptor_and_no_thread_behind()
{
    QCOMPARE(startUdev(), QString());
    QCOMPARE(startTool(), QString());
    int descriptors = 0;
    int threads = 0;
    const auto countDescriptors = [this] { return entriesOf(tool->folder() + u"fd"_s); };
    const auto countThreads = [this] { return entriesOf(tool->folder() + u"task"_s); };
    for (int round = 1; round <= Rounds; ++round) {
        QCOMPARE(plugIn(), QString());
        QVERIFY(frame->does("unplug"));
        QVERIFY2(inTime([this] { return !holdsNode(); }), qPrintable(u"in round %1"_s.arg(round)));
        QVERIFY(inTime([this] { return !statusChanged(); }));
        if (round == 1) {
            descriptors = countDescriptors();
            threads = countThreads();
        }
    }
    QVERIFY(descriptors > 0 && threads > 0);
    QTRY_COMPARE(countDescriptors(), descriptors);
    QTRY_COMPARE(countThreads(), threads);

    QCOMPARE(plugIn(), QString());
    QVERIFY(closeTool());
}

void TestKernel::a_user_without_rights_is_told_what_to_do()
{
    constexpr gid_t NoGroup = 65534;
    constexpr int PermissionBits = 0777;
    QCOMPARE(startUdev(), QString());
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
    const QString installed = u"/etc/udev/rules.d/70-quorvel.rules"_s;
    QVERIFY(QDir().mkpath(QFileInfo(installed).path()));
    QVERIFY(QFile::copy(QStringLiteral(QUORVEL_RULES), installed));
    QCOMPARE(startUdev(), QString());
    QCOMPARE(startTool(members), QString());

    QCOMPARE(plugIn(), QString());
    keepPicture(u"linked"_s);
    struct stat node = {};
    QCOMPARE(stat("/dev/usb/hiddev0", &node), 0);
    QCOMPARE(node.st_mode & PermissionBits, mode_t(0660));
    QCOMPARE(node.st_gid, members);
    QVERIFY(closeTool(members));
}

QTEST_MAIN(TestKernel)
#include "tst_kernel.moc"
