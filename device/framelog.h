// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "struct.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

// Turns the traffic with a frame into lines such as
//    12.345 host > frame  rotation: set 90 degrees  [A7 00 02 00 01]
// A report that is only read again gives no line; the next different one is preceded by how
// often that happened.
class FrameLog
{
public:
    using Clock = std::function<std::chrono::milliseconds()>;

    explicit FrameLog(Clock clock);

    QStringList command(const Frame &frame);
    // Fresh: the frame has said it anew, though it may be the same again.
    QStringList report(const Frame &frame, bool fresh);
    // What else happens on the link.
    QStringList note(const QString &words);

private:
    QString stamped(const QString &words) const;

    Clock clock;
    Frame last{};
    bool any = false;
    quint64 repeats = 0;
};
