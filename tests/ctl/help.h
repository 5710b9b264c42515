// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "run.h"

#include <QRegularExpression>
#include <QTest>

// What the program says of itself.

// Names of the commands below one, or of all.
inline QStringList subcommandsOf(const QString &command)
{
    const QString help = QString::fromUtf8(runCtl(command + QStringLiteral(" --help")).out);
    QStringList names;
    for (const QString &line :
         help.section(QStringLiteral("Subcommands:"), 1).split(u'\n', Qt::SkipEmptyParts))
        names += line.simplified().section(u' ', 0, 0);
    return names;
}

// The long options of a command: "--axis".
inline QStringList optionsOf(const QString &command)
{
    const QString help = QString::fromUtf8(runCtl(command + QStringLiteral(" --help")).out);
    QStringList options;
    static const QRegularExpression option(QStringLiteral("--[a-z-]+"));
    for (auto match = option.globalMatch(help); match.hasNext();)
        options += match.next().captured();
    options.removeDuplicates();
    return options;
}

// All that do something: "rotation set".
inline QStringList allCommands()
{
    QStringList commands;
    for (const QString &name : subcommandsOf({})) {
        const QStringList inner = subcommandsOf(name);
        if (inner.isEmpty())
            commands += name;
        for (const QString &second : inner)
            commands += name + u' ' + second;
    }
    return commands;
}

inline void rowsOfAllCommands()
{
    QTest::addColumn<QString>("command");
    for (const QString &command : allCommands())
        QTest::newRow(qPrintable(command)) << command;
}
