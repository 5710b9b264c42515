// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "bystanders.h"
#include "calibration.h"
#include "connection.h"
#include "lights.h"
#include "settings.h"
#include "signals.h"
#include "versions.h"

#include <algorithm>
#include <memory>

// What is tried: every window by every fault.

namespace tried {

using namespace Qt::StringLiterals;

inline constexpr int LastTransfer = 60;

struct Window
{
    QString name;
    std::unique_ptr<TriedWindow> (*make)(MainWindow &, TriedFrame &, Reported &);
    int pauseMs;          // of its own
    int patienceMs;       // of the user, before he does it again
    int transfersOnALine; // that come of working in it for a while
    bool isQuiet = false; // somebody else asks, on a line
};

template <typename Tried>
std::unique_ptr<TriedWindow> make(MainWindow &main, TriedFrame &frame, Reported &reported)
{
    return std::make_unique<Tried>(main, frame, reported);
}

inline const QList<Window> Windows{
    {u"The others"_s, make<BystandersTried>, 0, 3000, 12, true},
    {u"Calibration"_s, make<CalibrationTried>, 0, 5000, 60},
    {u"Gestures"_s, make<GesturesTried>, 0, 2000, 12},
    {u"Rotation"_s, make<RotationTried>, 1000, 2000, 24},
    {u"Versions"_s, make<VersionsTried>, 0, 2000, 12, true},
    {u"Signal test"_s, make<SignalTestTried>, 0, 8000, 60},
    {u"Light screen"_s, make<LightScreenTried>, 0, 8000, 60},
    {u"Light check"_s, make<LightCheckTried>, 0, 25000, 60},
    {u"Connection"_s, make<ConnectionTried>, 0, 4000, 4},
};

struct Fault
{
    enum Link { Both, LineOnly };
    QString name;
    QString line; // of a plan, with %1 for the transfer; empty: something else, see Run
    int step;     // a run spoils each so many transfers; 0: one only
    int stepOnALine;
    int stride = 1; // from one run to the next
    int lasts = 1;  // transfers
    Link link = Both;
    int agains = 3; // that it may take until all is well

    int stepOn(const QString &which) const { return which == u"serial"_s ? stepOnALine : step; }
};

// By USB transfers come all the time, and a question that one of them spoils can be repeated
// before the next; on a line nothing comes until the user does it again.
inline const QList<Fault> Faults{
    {u"Stall"_s, u"at %1 stall 500ms"_s, 20, 0},
    {u"Late"_s, u"at %1 late 500ms"_s, 20, 20},
    {u"Torn"_s, u"at %1 torn"_s, 5, 5},
    {u"Repeated"_s, u"at %1 repeat"_s, 5, 5},
    {u"Silent"_s, u"at %1 silent 5"_s, 0, 0, 5, 5},
    {u"Unplugged, then another"_s, u"at %1 unplug"_s, 0, 0},
    {u"Back after 0.1 s"_s, u"at %1 unplug back 100ms"_s, 0, 0},
    {u"Back after 3 s"_s, u"at %1 unplug back 3s"_s, 0, 0},
    {u"Reset"_s, {}, 0, 0, 5},
    {u"Scan asked for early, the last one dropped"_s, {}, 0, 0, LastTransfer},
    {u"Scan asked for early, the last one finished"_s, {}, 0, 0, LastTransfer},
    {u"Noise"_s, u"at %1 noise 5"_s, 0, 0, 1, 1, Fault::LineOnly},
    // What is sent next may be taken for the rest of a frame, which is told to be up to 84 bytes
    // long then: ten commands of a calibration.
    {u"Lost bytes"_s, u"at %1 lose 3"_s, 0, 0, 1, 1, Fault::LineOnly, 12},
};

template <typename Named>
const Named *named(const QList<Named> &list, const QString &name)
{
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const Named &one) { return one.name == name; });
    return found == list.end() ? nullptr : &*found;
}

} // namespace tried
