// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"
#include "record.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

namespace capture {

class Watch;
class Writer;

// Records what travels on a link: every frame both ways with what became of it, and when the link
// began and ended. The link goes on whatever happens to the file.
//
// Between stop() and start() it costs nothing. Everything runs on the link's thread.
class Recorder : public QObject
{
    Q_OBJECT
public:
    // The link outlives this.
    explicit Recorder(QObject *parent = nullptr);
    explicit Recorder(Link &link, QObject *parent = nullptr);
    ~Recorder() override;

    // Records this link from now on, and no longer the one before. It may go at any time.
    void follow(Link &link);

    // Begins a recording; ends the one before only if that succeeds. An empty text, or why it
    // failed and what helps (see Writer::create).
    QString start(const QString &path);
    void stop();

    bool isRecording() const { return writer != nullptr; }
    // Of the present recording, or else of the last one.
    QString path() const { return file; }
    quint64 written() const;
    quint64 lost() const;
    // Why frames are being lost at this moment; empty when they are not.
    QString problem() const;

signals:
    // A recording began or ended, or its problem came or went.
    void changed();
    // The first record of a recording was lost, and why: in a sentence.
    void losing(const QString &sentence);

private:
    void listen();
    void add(const Record &record);

    QPointer<Link> link;
    std::unique_ptr<Writer> writer; // while recording, as is the next
    std::unique_ptr<Watch> watch;
    QString file;
    quint64 writtenBefore = 0; // of the last recording
    quint64 lostBefore = 0;
};

} // namespace capture
