#include "commandline.h"

using namespace Qt::StringLiterals;

CommandLine CommandLine::parse(const QStringList &arguments)
{
    constexpr auto profileOption = "--profile="_L1;
    constexpr auto faultsOption = "--faults="_L1;

    CommandLine asked;
    for (const QString &argument : arguments) {
        if (argument == "--help"_L1)
            asked.help = true;
        else if (argument == "--version"_L1)
            asked.version = true;
        else if (argument == "--demo"_L1)
            asked.demo = true;
        else if (argument.startsWith(profileOption))
            asked.profile = argument.sliced(profileOption.size());
        else if (argument.startsWith(faultsOption))
            asked.faults = argument.sliced(faultsOption.size());

        if (asked.close)
            continue;
        if (argument.contains("-close"_L1))
            asked.close = true;
        else if (argument.contains("-s"_L1))
            asked.hidden = true;
    }
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
              "  --help           show this text\n"
              "  --version        show the version\n"
              "\n"
              "-close and -s are looked for anywhere inside each argument.\n");
}
