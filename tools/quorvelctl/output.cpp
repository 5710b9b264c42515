// SPDX-License-Identifier: GPL-3.0-or-later

#include "output.h"

#include <QIODevice>
#include <QJsonDocument>

namespace ctl {

namespace {

constexpr const char *BeginningOfEmptyLine = "\r\x1b[K";

} // namespace

Output::Output(QIODevice &theOut, QIODevice &theErr, bool errIsTerminal)
    : out(theOut)
    , err(theErr)
    , terminal(errIsTerminal)
{
}

void Output::print(const QString &line)
{
    write(line.toUtf8());
}

void Output::print(const QJsonObject &document)
{
    write(QJsonDocument(document).toJson(QJsonDocument::Compact));
}

void Output::complain(const QString &sentence)
{
    progress({});
    err.write(sentence.toUtf8() + '\n');
}

void Output::progress(const QString &words)
{
    if (!terminal || (words.isEmpty() && !progressShown))
        return;
    err.write(BeginningOfEmptyLine + words.toUtf8());
    progressShown = !words.isEmpty();
}

void Output::write(const QByteArray &line)
{
    progress({});
    const QByteArray bytes = line + '\n';
    if (trouble.isEmpty() && out.write(bytes) != bytes.size())
        trouble = out.errorString();
}

} // namespace ctl
