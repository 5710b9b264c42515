// SPDX-License-Identifier: GPL-3.0-or-later

#include "list.h"

#include "program.h"
#include "session.h"
#include "usbnodes.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <QJsonArray>
#include <QSerialPortInfo>

#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

QString lineOfNode(const UsbNode &node)
{
    if (!node.ids)
        return Words::tr("%1  touch frame that cannot be opened (%2)")
            .arg(node.path, QString::fromLocal8Bit(std::strerror(node.error)));
    return Words::tr("%1  touch frame %2:%3, version %4")
        .arg(node.path, hex(node.ids->vendor, 4), hex(node.ids->product, 4),
             releaseText(node.ids->release));
}

QJsonObject jsonOfNode(const UsbNode &node)
{
    QJsonObject frame{{u"port"_s, node.path}, {u"openable"_s, node.ids.has_value()}};
    if (node.ids) {
        frame[u"vendor"_s] = hex(node.ids->vendor, 4);
        frame[u"product"_s] = hex(node.ids->product, 4);
        frame[u"version"_s] = releaseText(node.ids->release);
    }
    return frame;
}

void list(Session &session)
{
    QStringList lines;
    QJsonArray frames;
    for (const UsbNode &node : usbNodes(*session.around.hiddev)) {
        lines += lineOfNode(node);
        frames += jsonOfNode(node);
    }
    if (frames.isEmpty())
        lines += Words::tr("No touch frame is connected by USB.");
    QJsonArray ports;
    for (const QSerialPortInfo &port : QSerialPortInfo::availablePorts()) {
        const QString path = port.systemLocation();
        lines += Words::tr("%1  serial port").arg(path);
        ports += QJsonObject{{u"port"_s, path}, {u"description"_s, port.description()}};
    }
    session.answer(lines, {{u"frames"_s, frames}, {u"serial_ports"_s, ports}});
}

} // namespace

void addList(CLI::App &app, Session &session)
{
    CLI::App *command =
        app.add_subcommand("list", "Show the touch frames on USB, and the serial ports");
    define(*command, session, [&session] { list(session); });
}

} // namespace ctl
