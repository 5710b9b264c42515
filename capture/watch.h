// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"
#include "record.h"

#include <QElapsedTimer>
#include <QObject>

namespace capture {

// Makes records of what travels on a link from now on: every frame both ways with what became of
// it, and when the link began and ended. Everything runs on the link's thread.
class Watch : public QObject
{
    Q_OBJECT
public:
    // The link outlives this.
    explicit Watch(Link &link, QObject *parent = nullptr);

    // Tells of a link that is there already; to be called once, when somebody listens.
    void start();
    // The time of the records, which a clock that is set does not change.
    std::chrono::microseconds now() const;

signals:
    void recorded(const capture::Record &record);

private:
    void onTraffic(const Traffic &traffic);
    void onStateChanged();
    void onEnded();
    void tell(Record record);

    Link &link;
    Over told = Over::None; // the link that was seen to begin
    Link::End how = Link::End::Closed;
    std::chrono::microseconds startedAt{0}; // by the clock on the wall
    QElapsedTimer sinceStart;
};

} // namespace capture
