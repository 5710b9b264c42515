// SPDX-License-Identifier: GPL-3.0-or-later

#include "recorder.h"

#include "watch.h"
#include "writer.h"

namespace capture {

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
    listen();
    emit changed();
    return {};
}

void Recorder::follow(Link &other)
{
    link = &other;
    if (writer)
        listen();
}

void Recorder::listen()
{
    watch.reset();
    if (!link)
        return;
    watch = std::make_unique<Watch>(*link);
    connect(watch.get(), &Watch::recorded, this, &Recorder::add);
    watch->start();
}

void Recorder::stop()
{
    if (!writer)
        return;
    watch.reset();
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

void Recorder::add(const Record &record)
{
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
