// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session.h"
#include "usbdevice.h"
#include "vhciport.h"

#include <memory>

namespace sim {

// The simulated frame on this machine's USB: plugs it into the kernel's virtual host controller.
class UsbSession final : public Session
{
    Q_OBJECT
public:
    // Starts unplugged.
    UsbSession(Profile profile, FaultPlan faults, const Clock &clock,
               const QString &controllerDirectory = VhciPort::systemController());
    ~UsbSession() override;

    std::optional<int> port() const { return vhci.number(); }
    QString place() const override;

private:
    QString attach() override;
    void release() override;

    VhciPort vhci;
    std::unique_ptr<UsbDevice> device; // while plugged
    quint64 attachments = 0;
};

} // namespace sim
