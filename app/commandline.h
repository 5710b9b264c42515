// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QStringList>

// What a start was asked to do.
struct CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    bool help = false;
    bool version = false;
    bool demo = false;   // run on a simulated touch frame
    QString profile;     // of the simulated frame; a file
    QString faults;      // of the simulated frame; a file
    QString record;      // record what travels into this file
    bool close = false;  // ask the running instance to quit
    bool hidden = false; // start in the tray
    QString hiddenBy;    // the argument that asked for it
    QString problem;     // what is wrong with the arguments, in one line; empty when nothing is

    // arguments: all behind the program's name, without those of the toolkit. "-close" and "-s"
    // count anywhere inside an argument but the value of another option, and "-close" ends the
    // search; the other options are whole arguments.
    static CommandLine parse(const QStringList &arguments);
    static QString helpText();
};
