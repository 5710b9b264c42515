// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The real program, and a frame on a serial line that it is told to use.

#include "tests/support/outsidetool.h"

#include <QDir>
#include <QTemporaryDir>

namespace outside {

// Needs QUORVEL_PROGRAM too. Each function returns what went wrong, or nothing.
class SerialTool
{
public:
    // arguments: of the frame, before those for its line.
    QString begin(const QStringList &arguments, const QStringList &toolArguments = {})
    {
        QDir::home().mkpath(u".config"_s);
        if (!frame.begin(arguments + QStringList{u"--link"_s, port()}))
            return u"the frame does not start: "_s + QString::fromUtf8(frame.errors);
        if (!tool.start(QStringLiteral(QUORVEL_PROGRAM), toolArguments))
            return u"the tool does not start"_s;
        std::optional<Window> shown;
        if (!inTime(
                [&shown] { return (shown = windowSized("Quorvel", MainWindowSize)).has_value(); }))
            return u"the tool shows no window: "_s + QString::fromUtf8(tool.errors);
        window = shown->geometry.topLeft();
        return openPort();
    }

    QString openPort()
    {
        const auto dialog = openFromMenu(window, u"c"_s, "Connect", ConnectSize);
        if (!dialog)
            return u"the connection dialog did not open"_s;
        const QPoint corner = dialog->geometry.topLeft();
        if (!click(corner + UartChoice) || !click(corner + PortField) || !press(u"ctrl+a"_s) ||
            !does({u"type"_s, port()}))
            return u"the port could not be chosen"_s;
        // On a busy machine the frame may look at the line too late, and take noise for a rate.
        const qsizetype before = frame.heard(Rate);
        bool told = false;
        for (int tries = 0; tries < 3 && !told; ++tries)
            told = click(corner + OpenButton) &&
                   within(10000, [this, before] { return frame.heard(Rate) > before; });
        if (!told)
            return u"the frame was not told its rate"_s;
        if (!press(u"Escape"_s) || !inTime([] { return !windowSized("Connect", ConnectSize); }))
            return u"the connection dialog did not close"_s;
        return {};
    }

    QString end()
    {
        Program second;
        if (!second.start(QStringLiteral(QUORVEL_PROGRAM), {u"-close"_s}) || !second.endsWell() ||
            !tool.endsWell())
            return u"the tool did not end well"_s;
        return frame.quit() ? QString() : u"the frame did not end well"_s;
    }

    VirtualFrame frame;
    Program tool;
    QPoint window; // the main one's corner

private:
    static constexpr const char *Rate = "host > frame  serial rate: set code 12";

    QString port() const { return place.filePath(u"port"_s); }

    QTemporaryDir place;
};

} // namespace outside
