// SPDX-License-Identifier: GPL-3.0-or-later

#include "reportfile.h"

#include "device/plainfile.h"
#include "failure.h"
#include "words.h"

#include "lights/report.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>

#include <array>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr int PrintingMs = 60000;
// From where programs are, installed and in a build.
constexpr std::array PrinterPlaces{QUORVEL_PRINT, "../../modules/quorvel-print"};

bool isPdf(const QString &path)
{
    return path.endsWith(u".pdf"_s, Qt::CaseInsensitive);
}

QString printer()
{
    for (const char *place : PrinterPlaces) {
        const QFileInfo file(QCoreApplication::applicationDirPath() + u'/' +
                             QString::fromLatin1(place));
        if (file.isExecutable())
            return file.filePath();
    }
    throw Failure(NoOutput, Words::tr("Reports in PDF are printed by a part of the windows' "
                                      "program: install that, or write a report in HTML."));
}

QByteArray printed(const QByteArray &html)
{
    QProcess process;
    process.start(printer(), QStringList());
    process.write(html);
    process.closeWriteChannel();
    const bool isDone = process.waitForFinished(PrintingMs) &&
                        process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!isDone) {
        const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
        throw Failure(NoOutput, Words::tr("The report cannot be printed: %1")
                                    .arg(said.isEmpty() ? process.errorString() : said));
    }
    return process.readAllStandardOutput();
}

} // namespace

bool canWriteReport(const QString &path)
{
    return isPdf(path) || path.endsWith(u".html"_s, Qt::CaseInsensitive);
}

void writeReport(const QString &path, const lights::Report &report)
{
    const QByteArray html = toHtml(report);
    const QByteArray bytes = isPdf(path) ? printed(html) : html;
    if (const QString why = plainfile::replace(path, bytes); !why.isEmpty())
        throw Failure(NoOutput, Words::tr("%1 cannot be written: %2").arg(path, why));
}

} // namespace ctl
