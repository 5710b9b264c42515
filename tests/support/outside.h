// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// A program and the simulated frame, seen and handled from outside: windows by title and size, the
// mouse and the keyboard by the X server, the frame by lines. Needs QUORVEL_SIM_PROGRAM.

#include "tests/support/hand.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <xcb/xcb.h>

namespace outside {

using namespace Qt::StringLiterals;
using namespace hand;

// Emulated, and on a machine that may be busy.
inline constexpr int PatienceMs = 30'000;
// How long something that must not come is waited for.
inline constexpr int SilenceMs = 1500;
inline bool within(int ms, const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, ms);
}

inline bool inTime(const std::function<bool()> &condition)
{
    return within(PatienceMs, condition);
}

// Clicks again while the condition is false: on a busy machine one press in some thousands gets
// lost between the server and the window manager.
inline bool clickUntil(QPoint place, const std::function<bool()> &condition,
                       int ms = PatienceMs / 3)
{
    bool isDone = false;
    return inTime([&] { return !click(place) || (isDone = within(ms, condition)); }) && isDone;
}

// Windows as the window manager lists them.

struct Window
{
    xcb_window_t id = XCB_WINDOW_NONE;
    QRect geometry; // on the screen, without the frame
};

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

inline xcb_connection_t *display()
{
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

inline QByteArray property(xcb_window_t window, const char *name)
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

// Of any size without one.
inline std::optional<Window> windowSized(QByteArrayView title, std::optional<QSize> size)
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
        const QSize found(geometry->width, geometry->height);
        if (!size || found == *size)
            return Window{id, QRect(QPoint(place->dst_x, place->dst_y), found)};
    }
    return {};
}

inline std::optional<Window> windowTitled(QByteArrayView title)
{
    return windowSized(title, std::nullopt);
}

inline bool bringToFront(const Window &window)
{
    return does({u"windowactivate"_s, u"--sync"_s, QString::number(window.id)});
}

inline QImage seen(const QRect &part)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, part.x(), part.y(), part.width(), part.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

inline bool isBlank(const QImage &image)
{
    QImage ground(image.size(), image.format());
    ground.fill(image.pixel(0, 0));
    return image == ground;
}

inline QRect wholeScreen()
{
    return QGuiApplication::primaryScreen()->geometry();
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
    bool begin(const QStringList &arguments)
    {
        return start(QStringLiteral(QUORVEL_SIM_PROGRAM), arguments) && waitAnswers(1);
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
    // False if it did not end by itself, and well; one that is not running has nothing to end.
    bool quit()
    {
        if (process.state() == QProcess::NotRunning)
            return true;
        write("quit");
        return endsWell();
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

} // namespace outside
