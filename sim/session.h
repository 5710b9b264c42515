// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/framelog.h"
#include "faultyframe.h"

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <QTimer>

namespace sim {

// The simulated frame on a link to the outside: attaches it and takes it off again, by hand or as
// the fault plan says. Runs in its thread's event loop. Derived classes are the links; each calls
// release() in its destructor.
class Session : public QObject
{
    Q_OBJECT
public:
    // Says what a recording says, from the next plug on.
    void replay(Replay recording) { frame.replay(std::move(recording)); }
    const Replay *recording() const { return frame.recording(); }

    // Returns an empty text, or why it failed and what helps.
    QString plug();
    // False when it was out already.
    bool unplug();
    // False when nothing feels it: the frame is unplugged, or a recording.
    bool touch(QPoint pixel);
    bool plugged() const { return frame.plugged(); }
    // Where it is plugged into, such as "port 3"; empty while it is not.
    virtual QString place() const = 0;
    // One line of key=value words for scripts.
    virtual QString state() const;

signals:
    void logged(const QStringList &lines);

protected:
    // Starts unplugged.
    Session(Profile profile, FaultPlan faults, const Clock &clock);

    // An empty text, or why it failed and what helps.
    virtual QString attach() = 0;
    virtual void release() = 0;
    // The frame has felt a touch.
    virtual void felt() {}
    void note(const QString &words);
    // A fault of the plan has unplugged the frame.
    void pulled();
    // The other side has gone.
    void lost(const QString &reason);

    FaultyFrame frame;
    FrameLog log;

private:
    void waitForComeback();
    void comeBack();

    QTimer comeback;
};

} // namespace sim
