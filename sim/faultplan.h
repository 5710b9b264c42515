// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QString>

#include <chrono>
#include <optional>
#include <vector>

namespace sim {

// What goes wrong with a transfer.
struct Fault
{
    enum class Kind {
        None,
        Stall,  // hangs for duration, then fails
        Late,   // succeeds after duration
        Torn,   // bytes 32 to 63 are zero
        Repeat, // a command arrives twice; a report is the last one again, the next one waits
        Silent, // commands are taken and lost, reports are the last one again
        Unplug, // the transfer fails, and the device is gone
        Noise,  // serial only: bytes that nobody sent stand behind the first four of the frame
        Lose,   // serial only: the last bytes do not arrive
    };

    Kind kind = Kind::None;
    quint64 first = 0;                             // number of the transfer that it begins at
    quint64 count = 1;                             // transfers that it spoils
    std::chrono::milliseconds duration{};          // Stall, Late
    std::optional<std::chrono::milliseconds> back; // Unplug: plugged again this much later
    int bytes = 0;                                 // Noise, Lose: how many

    bool operator==(const Fault &) const = default;
};

// How a log tells of a fault: "fault  transfer 4 is torn".
QString words(const Fault &fault, quint64 transfer);

// What goes wrong on a link, and when: a list of faults by the number of the transfer.
//
// Transfers are commands sent and reports read (on a serial line: said), counted together from 1.
// The count begins with the plan and goes on when the device is unplugged and plugged again, so
// each line happens once. Durations are written as 250ms or 2s, up to ten minutes.
//
//     at 4 stall 500ms
//     at 9 late 2s
//     at 12 torn
//     at 13 repeat
//     at 20 silent 5
//     at 40 unplug back 3s     (or hangup, the same)
//     at 50 noise 5
//     at 60 lose 3
class FaultPlan
{
    Q_DECLARE_TR_FUNCTIONS(sim::FaultPlan)

public:
    enum class Link { Usb, Serial };
    static constexpr int MaxBytes = 64; // of one noise, and lost at once

    FaultPlan() = default;

    // Reads such lines; '#' starts a comment. Returns nothing for a text that is wrong, and tells
    // file, line and reason in problem. A fault that cannot happen on the link is wrong too.
    static std::optional<FaultPlan> parse(const QString &text, const QString &file,
                                          QString *problem, Link link = Link::Usb);
    static std::optional<FaultPlan> load(const QString &path, QString *problem,
                                         Link link = Link::Usb);

    const std::vector<Fault> &faults() const { return list; }
    // The fault of this transfer, or one of the kind None.
    Fault at(quint64 transfer) const;

private:
    std::vector<Fault> list; // by first, none overlaps another
};

} // namespace sim
