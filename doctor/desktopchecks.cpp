// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktopchecks.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace doctor {

namespace {

struct DesktopWords
{
    Q_DECLARE_TR_FUNCTIONS(doctor::Desktop)
};

constexpr auto DesktopCheck = "desktop"_L1;
constexpr auto TrayCheck = "tray"_L1;

} // namespace

Finding checkDesktop(const Machine &machine)
{
    const QProcessEnvironment environment = machine.environment();
    const QString x = environment.value(u"DISPLAY"_s);
    const QString wayland = environment.value(u"WAYLAND_DISPLAY"_s);
    if (x.isEmpty() && wayland.isEmpty())
        return Finding::note(DesktopCheck,
                             {DesktopWords::tr("This session has no desktop, as one over ssh."),
                              DesktopWords::tr("The command line does without; windows need a "
                                               "session at a screen.")});
    const QString name = environment.value(u"XDG_CURRENT_DESKTOP"_s);
    const QString shown = wayland.isEmpty() ? DesktopWords::tr("X11") : DesktopWords::tr("Wayland");
    if (name.isEmpty())
        return Finding::good(DesktopCheck,
                             DesktopWords::tr("Windows are shown by %1, on a desktop that does not "
                                              "say its name.")
                                 .arg(shown));
    return Finding::good(DesktopCheck,
                         DesktopWords::tr("Windows are shown by %1, on %2.").arg(shown, name));
}

Finding checkTray(std::optional<bool> hasTray)
{
    if (!hasTray)
        return Finding::notLooked(TrayCheck,
                                  DesktopWords::tr("A program without windows cannot ask for the "
                                                   "tray; the windows' support file tells."));
    if (*hasTray)
        return Finding::good(TrayCheck, DesktopWords::tr("The desktop has a tray."));
    return Finding::note(TrayCheck,
                         {DesktopWords::tr("The desktop has no tray to hide in."),
                          DesktopWords::tr("Start quorvel again to show a window that was closed, "
                                           "or quorvel -close to end it.")});
}

} // namespace doctor
