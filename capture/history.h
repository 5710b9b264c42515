// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "record.h"
#include "watch.h"

#include <QByteArray>
#include <QCoreApplication>

#include <deque>

namespace capture {

// What travelled on a link in the last minute, for who asks when something has gone wrong already.
class History
{
    Q_DECLARE_TR_FUNCTIONS(History)

public:
    static constexpr auto Span = std::chrono::minutes(1);
    // Some four times what a link carries in that time.
    static constexpr size_t MaxRecords = 4000;

    // Of that link from now on; the link outlives this.
    explicit History(Link &link, std::chrono::milliseconds span = Span);

    // What there is now, the oldest first.
    std::deque<Record> records() const;
    // The same as the bytes of a recording; nothing, and the reason in problem, when they cannot
    // be made.
    QByteArray recording(QString *problem) const;

private:
    void take(const Record &record);

    Watch watch;
    const std::chrono::milliseconds span;
    std::deque<Record> kept; // the oldest may be older than span
};

} // namespace capture
