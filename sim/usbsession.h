#pragma once

#include "sim/faultyframe.h"
#include "sim/framelog.h"
#include "sim/usbdevice.h"
#include "sim/vhciport.h"

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace sim {

// The simulated frame on this machine's USB: plugs it into the kernel's virtual host controller
// and out again, by hand or as the fault plan says. Runs in its thread's event loop.
class UsbSession : public QObject
{
    Q_OBJECT
public:
    // Starts unplugged.
    UsbSession(Profile profile, FaultPlan faults, const Clock &clock,
               const QString &controllerDirectory = VhciPort::systemController());
    ~UsbSession() override;

    // Returns an empty text, or why it failed and what helps.
    QString plug();
    // False when it was out already.
    bool unplug();
    // False when the frame is unplugged and feels nothing.
    bool touch(QPoint pixel);
    bool plugged() const { return frame.plugged(); }
    std::optional<int> port() const { return vhci.number(); }
    // One line of key=value words for scripts.
    QString state() const;

signals:
    void logged(const QStringList &lines);

private:
    QString attach();
    void release();
    void pulled();
    void lost(const QString &reason);
    void waitForComeback();
    void comeBack();

    FaultyFrame frame;
    FrameLog log;
    VhciPort vhci;
    std::unique_ptr<UsbDevice> device; // while plugged
    quint64 attachments = 0;
    QTimer comeback;
};

} // namespace sim
