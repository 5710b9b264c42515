// SPDX-License-Identifier: GPL-3.0-or-later

#include "watch.h"

#include <utility>

namespace capture {

namespace {

Over overOf(Link::Kind kind)
{
    return kind == Link::UsbConnected ? Over::Usb
           : kind == Link::SerialOpen ? Over::Serial
                                      : Over::None;
}

End endOf(Link::End end)
{
    switch (end) {
    case Link::End::DeviceGone:
        return End::DeviceGone;
    case Link::End::Replaced:
        return End::Replaced;
    case Link::End::Closed:
        break;
    }
    return End::Closed;
}

} // namespace

Watch::Watch(Link &theLink, QObject *parent)
    : QObject(parent)
    , link(theLink)
    , startedAt(std::chrono::duration_cast<std::chrono::microseconds>(
          std::chrono::system_clock::now().time_since_epoch()))
{
    sinceStart.start();
}

void Watch::start()
{
    connect(&link, &Link::traffic, this, &Watch::onTraffic);
    connect(&link, &Link::stateChanged, this, &Watch::onStateChanged);
    connect(&link, &Link::aboutToEnd, this, [this](Link::End end) { how = end; });
    connect(&link, &Link::ended, this, &Watch::onEnded);
    onStateChanged();
}

std::chrono::microseconds Watch::now() const
{
    return startedAt + std::chrono::microseconds(sinceStart.nsecsElapsed() / 1000);
}

void Watch::onTraffic(const Traffic &traffic)
{
    if (traffic.result == Traffic::Result::Done)
        onStateChanged();
    Record record;
    record.kind =
        traffic.direction == Traffic::Direction::ToFrame ? Kind::ToFrame : Kind::FromFrame;
    record.over = traffic.over;
    record.result = traffic.result;
    record.frame = traffic.frame;
    tell(record);
}

// A port that opens carries frames before its link is told of.
void Watch::onStateChanged()
{
    const Over over = overOf(link.kind());
    if (over == told || over == Over::None)
        return;
    told = over;
    Record record;
    record.kind = Kind::LinkBegan;
    record.over = over;
    tell(record);
}

void Watch::onEnded()
{
    Record record;
    record.kind = Kind::LinkEnded;
    record.over = std::exchange(told, Over::None);
    record.end = endOf(how);
    tell(record);
}

void Watch::tell(Record record)
{
    record.time = now();
    emit recorded(record);
}

} // namespace capture
