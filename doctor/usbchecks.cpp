// SPDX-License-Identifier: GPL-3.0-or-later

#include "usbchecks.h"

#include "device/linux_hid_adapter.h"

#include <QCoreApplication>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace doctor {

namespace {

struct UsbWords
{
    Q_DECLARE_TR_FUNCTIONS(doctor::UsbChecks)
};

constexpr auto KernelCheck = "kernel"_L1;
constexpr auto NodeCheck = "node"_L1;
constexpr auto IdsCheck = "ids"_L1;
constexpr auto PermissionCheck = "permission"_L1;
constexpr auto ProgramCheck = "program"_L1;
constexpr auto Driver = "usbhid"_L1;

using Cause = Finding::Cause;

QString hex4(quint16 number)
{
    return u"%1"_s.arg(number, 4, 16, QChar(u'0'));
}

// Whether the kernel's packages have the driver, loaded or not.
bool driverIsAtHand(const Machine &machine)
{
    const QString folder = "/lib/modules/"_L1 + machine.kernelRelease();
    return machine.text(folder + "/modules.dep"_L1).contains("/usbhid.ko"_L1) ||
           machine.text(folder + "/modules.builtin"_L1).contains("/usbhid.ko"_L1);
}

Advice nothingThere(const Machine &machine)
{
    QStringList foreign;
    for (const QString &name : machine.entries(u"/sys/class/usbmisc"_s)) {
        if (name.startsWith("hiddev"_L1))
            foreign += name;
    }
    const QString evidence =
        foreign.isEmpty()
            ? UsbWords::tr("No touch frame is on USB.")
            : UsbWords::tr("No touch frame is on USB; these nodes are other makers': %1.")
                  .arg(foreign.join(u", "_s));
    return {evidence, UsbWords::tr("Plug the frame in, or try another USB port and another cable. "
                                   "For a frame on a serial line choose its port: \"Connect\" in "
                                   "the menu of the window, or --port on the command line. If it "
                                   "is plugged in all the same, see whether this user may use it: "
                                   "quorvelctl doctor tells the rights.")};
}

Advice withoutNode(const UsbFrame &frame)
{
    if (frame.interfaceName.isEmpty())
        return {UsbWords::tr("The touch frame %1 on USB has not been set up by the kernel.")
                    .arg(frame.device),
                UsbWords::tr("Unplug it and plug it in again, at another USB port if need be.")};
    if (frame.driver.isEmpty())
        return {UsbWords::tr("The touch frame %1 on USB has no node, since no driver uses it.")
                    .arg(frame.device),
                UsbWords::tr("Unplug it and plug it in again, or write \"%1\" to "
                             "/sys/bus/usb/drivers/usbhid/bind as root.")
                    .arg(frame.interfaceName)};
    if (frame.driver != Driver)
        return {UsbWords::tr("The touch frame %1 on USB has no node, since the driver %2 uses it "
                             "instead of usbhid.")
                    .arg(frame.device, frame.driver),
                UsbWords::tr("End the program that took the frame for that driver, such as a "
                             "virtual machine, then plug the frame in again.")};
    return {UsbWords::tr("The driver usbhid uses the touch frame %1 on USB, but made no hiddev "
                         "node for it.")
                .arg(frame.device),
            UsbWords::tr("Use a kernel with CONFIG_USB_HIDDEV, and unplug other devices if they "
                         "have all 16 nodes.")};
}

} // namespace

Finding checkKernel(const Machine &machine)
{
    if (!machine.exists(u"/sys/bus"_s))
        return Finding::notLooked(KernelCheck,
                                  UsbWords::tr("There is no /sys here to see the kernel by, as in "
                                               "some containers."));
    if (!machine.exists(u"/sys/bus/usb"_s))
        return Finding::trouble(
            KernelCheck, Cause::Failed,
            {UsbWords::tr("This kernel (%1) has no USB.").arg(machine.kernelRelease()),
             UsbWords::tr("Use a machine or a kernel with USB, or a frame on a serial line.")});
    if (!machine.exists(u"/sys/bus/usb/drivers/usbhid"_s)) {
        if (driverIsAtHand(machine))
            return Finding::trouble(
                KernelCheck, Cause::Failed,
                {UsbWords::tr("The kernel's driver usbhid is installed but not loaded."),
                 UsbWords::tr("Load it as root with \"modprobe usbhid\", and look in "
                              "/etc/modprobe.d for what keeps it out.")});
        return Finding::trouble(
            KernelCheck, Cause::Failed,
            {UsbWords::tr("This kernel (%1) has no driver usbhid.").arg(machine.kernelRelease()),
             UsbWords::tr("Install the distribution's complete kernel: those for clouds leave this "
                          "driver out.")});
    }
    const QString config = machine.text("/boot/config-"_L1 + machine.kernelRelease());
    if (!config.isEmpty() && !config.contains("CONFIG_USB_HIDDEV=y"_L1))
        return Finding::trouble(
            KernelCheck, Cause::Failed,
            {UsbWords::tr("This kernel (%1) was built without hiddev.")
                 .arg(machine.kernelRelease()),
             UsbWords::tr("Use a kernel with CONFIG_USB_HIDDEV, as the distributions' have it.")});
    return Finding::good(KernelCheck,
                         config.isEmpty()
                             ? UsbWords::tr("The kernel's driver usbhid is there.")
                             : UsbWords::tr("The kernel's driver usbhid is there, with hiddev."));
}

Finding checkNode(const Machine &machine, const QList<UsbFrame> &frames, const QString &wanted)
{
    if (frames.isEmpty() && !wanted.isEmpty())
        return Finding::trouble(NodeCheck, Cause::NoFrame,
                                {UsbWords::tr("No touch frame is at %1.").arg(wanted),
                                 UsbWords::tr("Plug the frame in, or name its own node.")});
    if (frames.isEmpty())
        return Finding::trouble(NodeCheck, Cause::NoFrame, nothingThere(machine));
    const UsbFrame &frame = frames.first();
    if (frame.node.isEmpty())
        return Finding::trouble(NodeCheck, Cause::NoFrame, withoutNode(frame));
    if (!machine.exists(frame.node))
        return Finding::trouble(
            NodeCheck, Cause::NoFrame,
            {UsbWords::tr("The kernel has the node %1 for the touch frame, but it is not in /dev.")
                 .arg(frame.node),
             UsbWords::tr("Give this container the device %1, or see that devtmpfs is mounted on "
                          "/dev.")
                 .arg(frame.node)});
    if (frames.size() > 1)
        return Finding::note(NodeCheck,
                             {UsbWords::tr("There are %n touch frames on USB; %1 is the first.",
                                           nullptr, int(frames.size()))
                                  .arg(frame.node),
                              UsbWords::tr("Unplug the others, or name a node on the command "
                                           "line.")});
    return Finding::good(NodeCheck, UsbWords::tr("The touch frame is at %1.").arg(frame.node));
}

Finding checkIds(const QList<UsbFrame> &frames)
{
    if (frames.isEmpty())
        return Finding::notLooked(IdsCheck, UsbWords::tr("There is no touch frame on USB."));
    const UsbFrame &frame = frames.first();
    const QString evidence = UsbWords::tr("It is %1:%2, release %3.")
                                 .arg(hex4(VendorId), hex4(frame.product), hex4(frame.release));
    if (HID_AdpterPacket::CheckIds(VendorId, frame.product, 1) == 0)
        return Finding::note(IdsCheck,
                             {evidence, UsbWords::tr("This product number is not a known one. If "
                                                     "it does not answer, see whether it is a "
                                                     "touch frame at all.")});
    return Finding::good(IdsCheck, evidence);
}

Finding checkPermission(const Machine &machine, const QList<UsbFrame> &frames)
{
    const QString node = frames.isEmpty() ? QString() : frames.first().node;
    if (node.isEmpty() || !machine.exists(node))
        return Finding::notLooked(PermissionCheck, UsbWords::tr("There is no node to open."));
    const NodeRights rights = NodeRights::of(node, machine.root(), machine.user());
    const QString facts = UsbWords::tr("It belongs to %1 and the group %2, with the mode %3.")
                              .arg(rights.owner, rights.group)
                              .arg(rights.mode, 4, 8, QChar(u'0'));
    if (machine.mayOpen(node))
        return Finding::good(PermissionCheck,
                             UsbWords::tr("This user may open %1.").arg(node) + u' ' + facts);
    Advice advice = Advice::frameForbidden(node, EACCES, rights);
    advice.evidence += u' ' + facts;
    return Finding::trouble(PermissionCheck, Cause::NoPermission, advice);
}

Finding checkProgram(const Machine &machine, const QList<UsbFrame> &frames)
{
    const QString node = frames.isEmpty() ? QString() : frames.first().node;
    if (node.isEmpty() || !machine.exists(node))
        return Finding::notLooked(ProgramCheck, UsbWords::tr("There is no node to use."));
    const DeviceUser holder = machine.lockHolder(node);
    if (holder.pid > 0 && holder.pid == QCoreApplication::applicationPid())
        return Finding::good(ProgramCheck, UsbWords::tr("This program uses it."));
    if (holder.pid > 0)
        return Finding::trouble(ProgramCheck, Cause::InUse, Advice::frameInUse(node, holder));
    if (const QList<DeviceUser> users = machine.openedBy(node); !users.isEmpty())
        return Finding::note(ProgramCheck, Advice::frameOpened(node, users.first()));
    return Finding::good(ProgramCheck, UsbWords::tr("No other program uses it."));
}

Advice whyNothingIsLinked(const Machine &machine)
{
    if (const Finding kernel = checkKernel(machine); kernel.verdict == Finding::Verdict::Trouble)
        return kernel.advice();
    const Finding node = checkNode(machine, UsbFrame::allOf(machine));
    if (node.verdict == Finding::Verdict::Trouble)
        return node.advice();
    return {node.evidence, UsbWords::tr("It is linked in a moment.")};
}

} // namespace doctor
