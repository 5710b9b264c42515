// SPDX-License-Identifier: GPL-3.0-or-later

#include "scrubber.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bundle {

namespace {

const QString User = u"<user>"_s;
const QString Home = u"<home>"_s;
const QString Group = u"<group>"_s;
const QString MachineName = u"<machine>"_s;

// Below these are accounts and groups of the system; nobody has one of its own above.
bool isPersonal(const QString &number)
{
    constexpr uint First = 1000;
    constexpr uint Nobody = 65534;
    bool isNumber = false;
    const uint id = number.toUInt(&isNumber);
    return isNumber && id >= First && id != Nobody;
}

} // namespace

Scrubber::Scrubber(const doctor::Machine &machine)
{
    addAccounts(machine);
    addMachine(machine);
    QStringList all = names.keys();
    // The longest first: a name may be a part of another.
    std::sort(all.begin(), all.end(), [](const QString &a, const QString &b) {
        return a.size() != b.size() ? a.size() > b.size() : a < b;
    });
    for (QString &name : all)
        name = QRegularExpression::escape(name);
    if (!all.isEmpty())
        anyName =
            QRegularExpression(u"(?<![\\p{L}\\p{N}])(?:%1)(?![\\p{L}\\p{N}])"_s.arg(all.join(u'|')),
                               QRegularExpression::CaseInsensitiveOption |
                                   QRegularExpression::UseUnicodePropertiesOption);
}

QString Scrubber::clean(const QString &text) const
{
    if (names.isEmpty())
        return text;
    QString cleaned;
    qsizetype done = 0;
    for (auto matches = anyName.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        cleaned += QStringView(text).mid(done, match.capturedStart() - done);
        cleaned += names.value(match.captured().toLower(), User);
        done = match.capturedEnd();
    }
    cleaned += QStringView(text).mid(done);
    return cleaned;
}

void Scrubber::add(const QString &name, const QString &instead)
{
    const QString key = name.trimmed().toLower();
    if (!key.isEmpty() && !names.contains(key))
        names.insert(key, instead);
}

void Scrubber::addAccounts(const doctor::Machine &machine)
{
    const QProcessEnvironment environment = machine.environment();
    QStringList own{machine.user().name};
    for (const QString &variable : {u"USER"_s, u"LOGNAME"_s, u"SUDO_USER"_s})
        own += environment.value(variable);
    own.removeAll(u"root"_s);
    for (const QString &name : own)
        add(name, User);
    if (const QString home = environment.value(u"HOME"_s); home.size() > 1)
        add(home, Home);
    for (const QString &line : machine.text(u"/etc/passwd"_s).split(u'\n')) {
        const QStringList fields = line.split(u':');
        constexpr int Fields = 7;
        if (fields.size() < Fields || !(isPersonal(fields[2]) || own.contains(fields[0])))
            continue;
        add(fields[0], User);
        add(fields[4].section(u',', 0, 0), User);
        if (fields[5].size() > 1)
            add(fields[5], Home);
    }
    for (const QString &line : machine.text(u"/etc/group"_s).split(u'\n')) {
        const QStringList fields = line.split(u':');
        if (fields.size() > 2 && isPersonal(fields[2]))
            add(fields[0], Group);
    }
}

void Scrubber::addMachine(const doctor::Machine &machine)
{
    QStringList known{machine.hostName(), machine.text(u"/etc/hostname"_s),
                      machine.environment().value(u"HOSTNAME"_s)};
    for (const QString &name : std::as_const(known)) {
        const QString first = name.section(u'.', 0, 0);
        if (first.compare("localhost"_L1, Qt::CaseInsensitive) == 0)
            continue;
        add(name, MachineName);
        add(first, MachineName);
    }
    add(machine.text(u"/etc/machine-id"_s), MachineName);
}

} // namespace bundle
