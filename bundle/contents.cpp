// SPDX-License-Identifier: GPL-3.0-or-later

#include "contents.h"

#include "device/framewords.h"
#include "device/version.h"
#include "scrubber.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSysInfo>
#include <QTimeZone>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bundle {

namespace {

struct ContentWords
{
    Q_DECLARE_TR_FUNCTIONS(bundle::Contents)
};

constexpr qint64 MaxSettings = 1024 * 1024; // bytes; what is larger is no settings file of ours

Entry textEntry(const QString &name, const QString &about, const QString &text)
{
    return {name, about, text.toUtf8(), text};
}

QString textOf(const QStringList &lines)
{
    return lines.join(u'\n') + u'\n';
}

// As of the frame that is linked; nothing of one on a serial line, which does not say it.
QStringList frameVersions()
{
    if (hidver.VendorID == 0)
        return {};
    const auto hex = [](quint32 number, int digits) {
        return u"%1"_s.arg(number, digits, 16, QChar(u'0'));
    };
    QStringList lines{
        ContentWords::tr("frame: %1:%2, release %3")
            .arg(hex(hidver.VendorID, 4), hex(hidver.ProductID, 4), hex(hidver.VersionNumber, 4))};
    if (isCurrentGeneration(hidver.VersionNumber))
        lines += ContentWords::tr("firmware: revision %1, checksum %2, family %3, date %4, number "
                                  "%5")
                     .arg(hex(hidver.SVNNUM, 6), hex(hidver.CHECKSUM, 8), hex(hidver.P_FID, 2),
                          hex(hidver.P_DATE, 4), hex(hidver.P_NUM, 5));
    return lines;
}

QString versions(const Sources &sources)
{
    QStringList lines{
        ContentWords::tr("program: %1 %2").arg(sources.program, QStringLiteral(QUORVEL_VERSION)),
        ContentWords::tr("toolkit: Qt %1, built with %2")
            .arg(QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR)),
        ContentWords::tr("system: %1").arg(QSysInfo::prettyProductName()),
        ContentWords::tr("kernel: %1 %2 on %3")
            .arg(QSysInfo::kernelType(), sources.machine->kernelRelease(),
                 QSysInfo::currentCpuArchitecture())};
    lines += sources.linked.isEmpty() ? ContentWords::tr("link: none")
                                      : ContentWords::tr("link: %1").arg(sources.linked);
    return textOf(lines + frameVersions());
}

QString describe(const capture::Record &record)
{
    using capture::Kind;
    switch (record.kind) {
    case Kind::ToFrame:
        return framewords::describeCommand(record.frame);
    case Kind::FromFrame:
        return framewords::describeReport(record.frame);
    case Kind::LinkBegan:
        return ContentWords::tr("the link begins");
    case Kind::LinkEnded:
        break;
    }
    return ContentWords::tr("the link ends");
}

// A report that is only read again is told once, with how often.
QString inWords(const std::deque<capture::Record> &frames)
{
    QStringList lines;
    const capture::Record *before = nullptr;
    int repeats = 0;
    const auto tellRepeats = [&] {
        if (repeats > 0)
            lines += ContentWords::tr("    (%n more time(s))", nullptr, repeats);
        repeats = 0;
    };
    for (const capture::Record &record : frames) {
        if (before && record.kind == capture::Kind::FromFrame && before->kind == record.kind &&
            before->frame == record.frame) {
            ++repeats;
            continue;
        }
        tellRepeats();
        before = &record;
        const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(record.time);
        lines += QDateTime::fromMSecsSinceEpoch(time.count(), QTimeZone::utc())
                     .toString(u"HH:mm:ss.zzz  "_s) +
                 describe(record);
    }
    tellRepeats();
    return textOf(lines);
}

Entry aboutAll(const QList<Entry> &entries, const QStringList &missing)
{
    QStringList lines{
        ContentWords::tr("What a support engineer needs to know of a touch frame and its machine."),
        ContentWords::tr("Names of users, their groups and homes, and of the machine have been "
                         "replaced by <user>, <group>, <home> and <machine>."),
        QString()};
    for (const Entry &entry : entries)
        lines += u"%1  %2"_s.arg(entry.name.leftJustified(14), entry.about);
    if (!missing.isEmpty())
        lines += QString();
    lines += missing;
    return textEntry(u"about.txt"_s, ContentWords::tr("what there is"), textOf(lines));
}

} // namespace

QList<Entry> contentsOf(const Sources &sources)
{
    const Scrubber scrubber(*sources.machine);
    QList<Entry> entries;
    QStringList missing;
    const auto add = [&](const QString &name, const QString &about, const QString &text) {
        entries += textEntry(name, about, scrubber.clean(text));
    };
    add(u"doctor.txt"_s, ContentWords::tr("what keeps the frame from working"),
        textOf(sources.examination->lines()));
    add(u"doctor.json"_s, ContentWords::tr("the same for programs"),
        QString::fromUtf8(QJsonDocument(sources.examination->json()).toJson()));
    add(u"versions.txt"_s, ContentWords::tr("versions of program, toolkit, system and frame"),
        versions(sources));
    QFile settings(sources.settingsFile);
    if (QFileInfo(settings).isFile() && settings.open(QIODevice::ReadOnly))
        add(u"settings.xml"_s, ContentWords::tr("the settings file"),
            QString::fromUtf8(settings.read(MaxSettings)));
    else
        missing += ContentWords::tr("There is no settings file that can be read.");
    if (sources.screens.isEmpty())
        missing += ContentWords::tr("A program without windows does not know the screens.");
    else
        add(u"screens.txt"_s, ContentWords::tr("the screens, in native pixels"),
            textOf(sources.screens));
    if (sources.frames.empty())
        missing += ContentWords::tr("No frames went either way in the last minute.");
    else
        entries += {u"frames.pcap"_s,
                    ContentWords::tr("the frames of the last minute; it can be replayed"),
                    sources.recording, inWords(sources.frames)};
    entries.prepend(aboutAll(entries, missing));
    return entries;
}

} // namespace bundle
