// SPDX-License-Identifier: GPL-3.0-or-later

#include "helpaction.h"

#include "dialogs/present.h"
#include "helpwindow.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Windows by the name of the object, or else of its class.
constexpr std::pair<const char *, QLatin1StringView> Places[] = {
    {"MainWindow", "first-connection.html#the-main-window"_L1},
    {"nextStep", "first-connection.html#when-no-frame-is-linked"_L1},
    {"noTray", "first-connection.html#hiding-and-ending"_L1},
    {"Calibration_Dlg", "calibration.html#the-four-targets"_L1},
    {"CalEnd_dlg", "calibration.html#the-question"_L1},
    {"CalibrationCheck_dlg", "calibration.html#checking-it"_L1},
    {"Setting_dlg", "gestures.html#what-the-screen-is-used-for"_L1},
    {"useradv_dlg", "gestures.html#press-and-hold-double-click-wheel"_L1},
    {"TryOut_dlg", "gestures.html#trying-them-out"_L1},
    {"smoothing_dlg", "gestures.html#smoothing"_L1},
    {"Rotation_dlg", "rotation.html#turning-the-touch"_L1},
    {"resetQuestion", "rotation.html#resetting-the-frame"_L1},
    {"Version_Dlg", "rotation.html#versions-and-serial-numbers"_L1},
    {"connect_dlg", "serial-line.html#the-window-connect"_L1},
    {"advset_dlg", "diagnostics.html#the-way-there"_L1},
    {"test_win", "diagnostics.html#signal-test"_L1},
    {"LightSet_dlg", "diagnostics.html#light-setting"_L1},
    {"LightCheck_dlg", "reading-the-lights.html#measuring"_L1},
    {"SupportFile_dlg", "support.html#the-support-file"_L1},
    {"recording", "support.html#recordings"_L1},
    {"HelpWindow", "index.html"_L1},
};

} // namespace

HelpAction::HelpAction(QWidget *window)
    : QAction(tr("&Help"), window)
{
    // Told in the menu; the key itself is taken from whatever window it is pressed in, which a
    // shortcut does not reach while another one asks something.
    setShortcut(Qt::Key_F1);
    setShortcutContext(Qt::WidgetShortcut);
    connect(this, &QAction::triggered, this, [this, window] { open(window); });
    QCoreApplication::instance()->installEventFilter(this);
}

HelpAction::~HelpAction()
{
    delete manual;
}

QString HelpAction::placeOf(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        for (const auto &[name, place] : Places) {
            if (widget->objectName() == QLatin1StringView(name) || widget->inherits(name))
                return place;
        }
    }
    return u"index.html"_s;
}

QString HelpAction::installed(const QString &programFolder)
{
    for (const QLatin1StringView place : {QLatin1StringView(QUORVEL_MANUAL), "/../manual"_L1}) {
        const QFileInfo found(programFolder + place);
        if (found.isDir())
            return found.canonicalFilePath();
    }
    return {};
}

bool HelpAction::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
        return false;
    if (!key->isAutoRepeat())
        open(static_cast<QWidget *>(watched));
    return true;
}

void HelpAction::open(const QWidget *about)
{
    if (!manual)
        manual = new HelpWindow(folder.isEmpty() ? installed(QCoreApplication::applicationDirPath())
                                                 : folder);
    manual->showPlace(placeOf(about));
    present(manual);
}
