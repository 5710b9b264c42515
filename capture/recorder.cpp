#include "recorder.h"

#include "writer.h"

#include <utility>

namespace capture {

namespace {

Over overOf(Link::Kind kind)
{
    return kind == Link::UsbConnected ? Over::Usb
           : kind == Link::SerialOpen ? Over::Serial
                                      : Over::None;
}

Over overOf(Traffic::Over over)
{
    switch (over) {
    case Traffic::Over::Usb:
        return Over::Usb;
    case Traffic::Over::Serial:
        return Over::Serial;
    case Traffic::Over::None:
        break;
    }
    return Over::None;
}

Result resultOf(Traffic::Result result)
{
    switch (result) {
    case Traffic::Result::Done:
        return Result::Done;
    case Traffic::Result::Failed:
        return Result::Failed;
    case Traffic::Result::Dropped:
        break;
    }
    return Result::Dropped;
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

Recorder::Recorder(QObject *parent)
    : QObject(parent)
{
}

Recorder::Recorder(Link &theLink, QObject *parent)
    : QObject(parent)
    , link(&theLink)
{
}

Recorder::~Recorder() = default;

QString Recorder::start(const QString &path)
{
    QString problem;
    std::unique_ptr<Writer> fresh = Writer::create(path, &problem);
    if (!fresh)
        return problem;
    stop();
    writer = std::move(fresh);
    file = path;
    writtenBefore = lostBefore = 0;
    startedAt = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::system_clock::now().time_since_epoch());
    sinceStart.start();
    listen();
    emit changed();
    return {};
}

void Recorder::follow(Link &other)
{
    if (link)
        link->disconnect(this);
    link = &other;
    if (writer)
        listen();
}

void Recorder::listen()
{
    told = Over::None;
    if (!link)
        return;
    connect(link, &Link::traffic, this, &Recorder::onTraffic);
    connect(link, &Link::stateChanged, this, &Recorder::onStateChanged);
    connect(link, &Link::aboutToEnd, this, [this](Link::End end) { how = end; });
    connect(link, &Link::ended, this, &Recorder::onEnded);
    onStateChanged();
}

void Recorder::stop()
{
    if (!writer)
        return;
    if (link)
        link->disconnect(this);
    writtenBefore = writer->written();
    lostBefore = writer->lost();
    writer.reset();
    emit changed();
}

quint64 Recorder::written() const
{
    return writer ? writer->written() : writtenBefore;
}

quint64 Recorder::lost() const
{
    return writer ? writer->lost() : lostBefore;
}

QString Recorder::problem() const
{
    return writer ? writer->problem() : QString();
}

void Recorder::onTraffic(const Traffic &traffic)
{
    if (traffic.result == Traffic::Result::Done)
        onStateChanged();
    Record record;
    record.kind =
        traffic.direction == Traffic::Direction::ToFrame ? Kind::ToFrame : Kind::FromFrame;
    record.over = overOf(traffic.over);
    record.result = resultOf(traffic.result);
    record.frame = traffic.frame;
    add(record);
}

// A port that opens carries frames before its link is told of.
void Recorder::onStateChanged()
{
    const Over over = overOf(link->kind());
    if (over == told || over == Over::None)
        return;
    told = over;
    Record record;
    record.kind = Kind::LinkBegan;
    record.over = over;
    add(record);
}

void Recorder::onEnded()
{
    Record record;
    record.kind = Kind::LinkEnded;
    record.over = std::exchange(told, Over::None);
    record.end = endOf(how);
    add(record);
}

void Recorder::add(Record record)
{
    record.time = startedAt + std::chrono::microseconds(sinceStart.nsecsElapsed() / 1000);
    const bool wasLosing = !writer->problem().isEmpty();
    const bool first = writer->lost() == 0;
    const bool losesNow = !writer->add(record);
    if (losesNow && first) {
        emit losing(tr("The recording %1 cannot be written: %2. The link goes on, and what is "
                       "missing in the recording is counted.")
                        .arg(file, writer->problem()));
    }
    if (losesNow != wasLosing)
        emit changed();
}

} // namespace capture
