// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/linux_hid_adapter.h"
#include "sim/sim_adapter.h"
#include "tools/quorvelctl/program.h"
#include "tools/quorvelctl/session.h"

#include <QBuffer>
#include <QJsonDocument>

#include <functional>

// The program in this process, on a frame of the test's.

struct Outcome
{
    int code = -1;
    QByteArray out;
    QByteArray err;

    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
    QByteArrayList lines() const { return out.trimmed().split('\n'); }
};

// A system without any node.
class NoNodes final : public HID_AdpterPacket::HiddevIo
{
public:
    bool directoryExists(const char *) override { return false; }
    int open(const char *) override
    {
        errno = ENOENT;
        return -1;
    }
};

using Adapter = std::shared_ptr<HID_AdpterPacket::HID_Adapter>;

// Does what a command line says. Meanwhile, if given, is called with the session before the command
// begins.
inline Outcome runCtl(const QStringList &arguments, const Adapter &adapter = {},
                      const std::function<void(ctl::Session &)> &meanwhile = {},
                      ctl::Surroundings around = {})
{
    QBuffer out;
    QBuffer err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    NoNodes noNodes;
    if (!around.out)
        around.out = &out;
    around.err = &err;
    around.adapter = [&adapter](const QString &) { return adapter; };
    if (!around.hiddev)
        around.hiddev = &noNodes;
    ctl::Session session(around);
    if (meanwhile)
        meanwhile(session);
    const int code = ctl::run(arguments, session);
    return {code, out.data(), err.data()};
}

// The same for words that are separated by spaces.
inline Outcome runCtl(const QString &arguments, const Adapter &adapter = {},
                      const std::function<void(ctl::Session &)> &meanwhile = {},
                      const ctl::Surroundings &around = {})
{
    return runCtl(arguments.split(u' ', Qt::SkipEmptyParts), adapter, meanwhile, around);
}

// A simulated frame whose transfers take no time.
inline std::shared_ptr<sim::SimAdapter>
quickFrame(const sim::Profile &profile = {}, const sim::FaultPlan &faults = {}, bool plugged = true)
{
    return std::make_shared<sim::SimAdapter>(
        profile, faults, sim::SimOptions{.plugged = plugged, .paced = false, .clock = {}});
}
