// SPDX-License-Identifier: GPL-3.0-or-later

#include "serialchecks.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace doctor {

namespace {

struct SerialWords
{
    Q_DECLARE_TR_FUNCTIONS(doctor::SerialChecks)
};

constexpr auto SerialCheck = "serial"_L1;
constexpr auto Terminals = "/sys/class/tty"_L1;

using Cause = Finding::Cause;

// Ports with hardware behind them: the kernel makes nodes for some that might be there, too.
QStringList portsOf(const Machine &machine)
{
    QStringList ports;
    for (const QString &name : machine.entries(Terminals)) {
        const QString folder = Terminals + u'/' + name;
        if (machine.exists(folder + "/device/driver"_L1) &&
            machine.text(folder + "/type"_L1) != u'0')
            ports += "/dev/"_L1 + name;
    }
    return ports;
}

Advice whyClosed(const Machine &machine, const QString &node)
{
    return Advice::portForbidden(node, NodeRights::of(node, machine.root(), machine.user()));
}

Finding checkWanted(const Machine &machine, const QString &wanted)
{
    const QString node = wanted.startsWith(u'/') ? wanted : "/dev/"_L1 + wanted;
    if (!machine.exists(node))
        return Finding::trouble(SerialCheck, Cause::NoFrame, Advice::noSuchPort(node));
    if (!machine.mayOpen(node))
        return Finding::trouble(SerialCheck, Cause::NoPermission, whyClosed(machine, node));
    const DeviceUser holder = machine.lockHolder(node);
    if (holder.pid > 0 && holder.pid != QCoreApplication::applicationPid())
        return Finding::trouble(SerialCheck, Cause::InUse, Advice::portInUse(node, holder));
    if (const QList<DeviceUser> users = machine.openedBy(node); !users.isEmpty())
        return Finding::trouble(SerialCheck, Cause::InUse, Advice::portInUse(node, users.first()));
    return Finding::good(SerialCheck, SerialWords::tr("This user may open the serial port %1, and "
                                                      "no other program uses it.")
                                          .arg(node));
}

} // namespace

Finding checkSerialPorts(const Machine &machine, const QString &wanted)
{
    if (!wanted.isEmpty())
        return checkWanted(machine, wanted);
    if (!machine.exists(Terminals))
        return Finding::notLooked(SerialCheck,
                                  SerialWords::tr("There is no /sys here to see serial "
                                                  "ports by."));
    const QStringList ports = portsOf(machine);
    if (ports.isEmpty())
        return Finding::good(
            SerialCheck, SerialWords::tr("There are no serial ports; a frame on USB needs none."));
    QStringList closed;
    std::copy_if(ports.begin(), ports.end(), std::back_inserter(closed),
                 [&machine](const QString &port) { return !machine.mayOpen(port); });
    if (closed.isEmpty())
        return Finding::good(SerialCheck, SerialWords::tr("This user may open these serial ports: "
                                                          "%1.")
                                              .arg(ports.join(u", "_s)));
    QStringList nextSteps;
    for (const QString &port : closed)
        nextSteps += whyClosed(machine, port).nextStep;
    nextSteps.removeDuplicates();
    return Finding::note(SerialCheck,
                         {SerialWords::tr("This user may not open these serial ports: %1. That "
                                          "matters only to a frame on one of them.")
                              .arg(closed.join(u", "_s)),
                          nextSteps.join(u' ')});
}

} // namespace doctor
