// SPDX-License-Identifier: GPL-3.0-or-later

#include "history.h"

#include "writer.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace capture {

History::History(Link &link, std::chrono::milliseconds theSpan)
    : watch(link)
    , span(theSpan)
{
    QObject::connect(&watch, &Watch::recorded, &watch,
                     [this](const Record &record) { take(record); });
    watch.start();
}

std::deque<Record> History::records() const
{
    const auto since = watch.now() - span;
    const auto first = std::find_if(kept.begin(), kept.end(),
                                    [since](const Record &record) { return record.time >= since; });
    return {first, kept.end()};
}

QByteArray History::recording(QString *problem) const
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"frames.pcap"_s);
    {
        const std::unique_ptr<Writer> writer = Writer::create(path, problem);
        if (!writer)
            return {};
        for (const Record &record : records()) {
            if (!writer->add(record)) {
                *problem = tr("%1: cannot be written: %2").arg(path, writer->problem());
                return {};
            }
        }
    }
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        return file.readAll();
    *problem = tr("%1: cannot be read: %2").arg(path, file.errorString());
    return {};
}

void History::take(const Record &record)
{
    kept.push_back(record);
    while (kept.size() > MaxRecords || kept.front().time < record.time - span)
        kept.pop_front();
}

} // namespace capture
