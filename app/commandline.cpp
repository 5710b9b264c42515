// SPDX-License-Identifier: GPL-3.0-or-later

#include "commandline.h"

#include "printable.h"

#include <utility>

using namespace Qt::StringLiterals;

CommandLine CommandLine::parse(const QStringList &arguments)
{
    CommandLine asked;
    const std::pair<QLatin1StringView, QString *> withValue[] = {{"--profile="_L1, &asked.profile},
                                                                 {"--faults="_L1, &asked.faults},
                                                                 {"--record="_L1, &asked.record}};
    const std::pair<QLatin1StringView, bool *> flags[] = {{"--help"_L1, &asked.help},
                                                          {"-h"_L1, &asked.help},
                                                          {"--version"_L1, &asked.version},
                                                          {"--demo"_L1, &asked.demo}};
    const auto takeKnown = [&](const QString &argument) {
        for (const auto &[name, value] : withValue) {
            if (!argument.startsWith(name))
                continue;
            *value = argument.sliced(name.size());
            if (value->isEmpty() && asked.problem.isEmpty())
                asked.problem = tr("%1 takes a file: %1FILE").arg(name);
            return true;
        }
        for (const auto &[name, flag] : flags) {
            if (argument == name)
                return *flag = true;
        }
        return false;
    };

    for (const QString &argument : arguments) {
        if (takeKnown(argument))
            continue;
        if (argument.contains("-close"_L1)) {
            asked.close = true;
            break;
        }
        if (argument.contains("-s"_L1)) {
            asked.hidden = true;
            asked.hiddenBy = argument;
        } else if (argument.startsWith(u'-') && asked.problem.isEmpty()) {
            asked.problem = tr("There is no option %1; --help lists all.").arg(printable(argument));
        }
    }
    if (asked.problem.isEmpty() && !asked.demo)
        for (const auto &[name, value] : withValue)
            if (!value->isEmpty() && value != &asked.record)
                asked.problem = tr("%1 goes with --demo only.").arg(printable(name + *value));
    return asked;
}

QString CommandLine::helpText()
{
    return tr("Usage: quorvel [options]\n"
              "The service tool for infrared touch frames.\n"
              "\n"
              "  -close           ask the running instance to quit\n"
              "  -s               start hidden in the tray\n"
              "  --demo           run on a simulated touch frame; a click on the calibration\n"
              "                   screen is a touch of the frame\n"
              "  --profile=FILE   with --demo: what the simulated frame is like\n"
              "  --faults=FILE    with --demo: what goes wrong on its cable\n"
              "  --record=FILE    record what travels to and from the frame, as a capture file\n"
              "  --help, -h       show this text\n"
              "  --version        show the version\n"
              "\n"
              "-close and -s are looked for anywhere inside each argument, but not in the\n"
              "values of other options.\n");
}
