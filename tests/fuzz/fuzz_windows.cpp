// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "demand.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/version_dlg.h"
#include "resources/resources.h"
#include "tests/support/fakeadapter.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr UCHAR ReportId = 0xFC;
constexpr unsigned char Action = 0x80; // such a byte is something that the user does

// The whole program, but for a frame: no link answers what its windows say.
class Program
{
public:
    explicit Program(const QString &home)
    {
        qputenv("HOME", home.toLocal8Bit());
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // What a window says on standard output belongs to the fuzzer.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
            demand(type != QtFatalMsg, qPrintable(text));
        });
        application.emplace(count, arguments);
        initResources();
        adapter->present = false;
        window = std::make_unique<MainWindow>(adapter);
        // A question that a frame brings up is answered with no.
        QObject::connect(&patience, &QTimer::timeout, &patience, [] {
            if (QWidget *modal = QApplication::activeModalWidget())
                modal->close();
        });
        patience.start(0);
    }

    void hear(const unsigned char *bytes, size_t size)
    {
        Frame frame{};
        frame[0] = ReportId;
        std::copy_n(bytes, std::min(size, frame.size() - 1), frame.begin() + 1);
        emit window->Recv03(frame.data());
    }

    void act(unsigned char what)
    {
        auto *test = window->findChild<test_win *>();
        auto *lights = window->findChild<LightSet_dlg *>();
        switch (what % 11) {
        case 0:
            window->on_calbtn_clicked();
            break;
        case 1:
            test->show();
            break;
        case 2:
            test->on_Xbtn_clicked();
            break;
        case 3:
            test->on_ALL_btn_clicked();
            break;
        case 4:
            test->close();
            break;
        case 5:
            lights->show();
            break;
        case 6:
            lights->on_LightAddBtn_clicked();
            break;
        case 7:
            lights->on_ADCSetBtn_clicked();
            break;
        case 8:
            lights->close();
            break;
        case 9:
            window->findChild<Version_Dlg *>()->show();
            break;
        default:
            window->UiWhenUncon();
            break;
        }
    }

    void settle()
    {
        window->UiWhenUncon();
        QCoreApplication::processEvents();
    }

private:
    int count = 1;
    char name[8] = "quorvel";
    char *arguments[2] = {name, nullptr};
    std::optional<QApplication> application;
    std::shared_ptr<FakeAdapter> adapter = std::make_shared<FakeAdapter>();
    std::unique_ptr<MainWindow> window;
    QTimer patience;
};

} // namespace

// The windows stay until the process has ended, and with them what fontconfig keeps of the fonts
// that were asked for and what the toolkit (6.8) keeps of them for each thread, the first one too.
// Neither can be reached any more when the sanitizer looks, and libraries without symbols have no
// narrower names.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libQt6Gui";
}

// Whatever a frame says while windows come and go, they stay alive: a byte says how many bytes of a
// report follow, the rest of it being 0, or what the user does. The window of the rotation hears
// without being shown, which takes a second.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    static const QTemporaryDir home;
    static auto *const program = new Program(home.path()); // until the process ends
    constexpr size_t LongestStory = 512;                   // each event is worked on for a moment
    size = std::min(size, LongestStory);
    for (size_t at = 0; at < size;) {
        const unsigned char byte = input[at++];
        if ((byte & Action) != 0) {
            program->act(byte & ~Action);
        } else {
            const size_t length = std::min<size_t>(byte, size - at);
            program->hear(input + at, length);
            at += length;
        }
        QCoreApplication::processEvents();
    }
    program->settle();
    return 0;
}
