// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>

namespace sim {

// One port of the kernel's virtual USB host controller.
class VhciPort
{
    Q_DECLARE_TR_FUNCTIONS(sim::VhciPort)

public:
    static QString systemController();

    explicit VhciPort(QString controllerDirectory = systemController());
    VhciPort(const VhciPort &) = delete;
    VhciPort &operator=(const VhciPort &) = delete;
    ~VhciPort();

    // Plugs the device that speaks on the other end of a stream socket into a free port; the
    // kernel keeps the socket for itself. Returns an empty text, or why that failed and what helps.
    QString attach(int socket);
    // Unplugs it. The kernel drops a device by itself when the other end of its socket closes.
    void detach();

    std::optional<int> number() const { return port; }

private:
    QString controller;
    std::optional<int> port;
};

} // namespace sim
