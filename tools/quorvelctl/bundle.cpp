// SPDX-License-Identifier: GPL-3.0-or-later

#include "bundle.h"

#include "bundle/contents.h"
#include "capture/history.h"
#include "doctor.h"
#include "program.h"
#include "session.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

struct Wanted
{
    QString file;
    bool list = false;
};

QList<bundle::Entry> collect(Session &session)
{
    std::optional<capture::History> history;
    const doctor::Interview said =
        interviewed(session, [&] { history.emplace(session.frameLink()); });
    const auto examination = doctor::Examination::of(machineOf(session), patientOf(session), said);
    bundle::Sources sources;
    sources.machine = &machineOf(session);
    sources.examination = &examination;
    sources.program = u"quorvelctl"_s;
    sources.linked = said.port;
    sources.settingsFile = patientOf(session).settingsFile;
    if (history) {
        QString problem;
        sources.frames = history->records();
        sources.recording = history->recording(&problem);
        if (!problem.isEmpty())
            throw Failure(NoOutput, problem);
    }
    return bundle::contentsOf(sources);
}

QStringList linesOf(const QList<bundle::Entry> &entries, bool withContent)
{
    QStringList lines;
    for (const bundle::Entry &entry : entries) {
        lines += QCoreApplication::translate("ctl", "%1  %2 bytes  %3")
                     .arg(entry.name.leftJustified(12))
                     .arg(entry.content.size(), 8)
                     .arg(entry.about);
        if (withContent) {
            for (const QString &line : entry.shown.trimmed().split(u'\n'))
                lines += "    "_L1 + line;
        }
    }
    return lines;
}

QJsonArray jsonOf(const QList<bundle::Entry> &entries, bool withContent)
{
    QJsonArray files;
    for (const bundle::Entry &entry : entries) {
        QJsonObject file{
            {u"name"_s, entry.name}, {u"about"_s, entry.about}, {u"bytes"_s, entry.content.size()}};
        if (withContent)
            file[u"content"_s] = entry.shown;
        files += file;
    }
    return files;
}

void bundleUp(Session &session, const Wanted &wanted)
{
    if (wanted.file.isEmpty() && !wanted.list)
        throw Failure(WrongUsage,
                      QCoreApplication::translate("ctl", "A file to write is missing. See "
                                                         "quorvelctl bundle --help."));
    const QList<bundle::Entry> entries = collect(session);
    QJsonObject members{{u"files"_s, jsonOf(entries, wanted.list)}};
    if (wanted.list) {
        session.answer(linesOf(entries, true), members);
        return;
    }
    if (const QString problem = bundle::writeArchive(wanted.file, entries); !problem.isEmpty())
        throw Failure(NoOutput, problem);
    members[u"file"_s] = wanted.file;
    session.answer(linesOf(entries, false), members);
}

} // namespace

void addBundle(CLI::App &app, Session &session)
{
    CLI::App *command = app.add_subcommand(
        "bundle", "Write one file for who gives support, without names of users and machines");
    const auto wanted = std::make_shared<Wanted>();
    command
        ->add_option_function<std::string>(
            "FILE",
            [wanted](const std::string &file) { wanted->file = QString::fromStdString(file); },
            "The zip archive to write")
        ->type_name("");
    command->add_flag("--list", wanted->list,
                      "Show every file that would be in it with its content, and write nothing");
    define(*command, session, [&session, wanted] { bundleUp(session, *wanted); });
}

} // namespace ctl
