// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonObject>
#include <QString>

class QIODevice;

namespace ctl {

// What the program says: lines or JSON documents on one device, sentences about what went wrong and
// progress on another.
//
// A device that takes nothing any more is noticed, not complained about: see problem().
class Output
{
public:
    // Both devices outlive this. Progress is shown only on a terminal.
    Output(QIODevice &out, QIODevice &err, bool errIsTerminal);

    void print(const QString &line);
    // One document in one line.
    void print(const QJsonObject &document);
    void complain(const QString &sentence);
    // Takes the place of the progress before; an empty one takes it away.
    void progress(const QString &words);

    // Why a line could not be written, as the system says it; empty as long as all were.
    QString problem() const { return trouble; }

private:
    void write(const QByteArray &line);

    QIODevice &out;
    QIODevice &err;
    const bool terminal;
    bool progressShown = false;
    QString trouble;
};

} // namespace ctl
