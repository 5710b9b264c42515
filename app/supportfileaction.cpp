// SPDX-License-Identifier: GPL-3.0-or-later

#include "supportfileaction.h"

#include "bundle/contents.h"
#include "config/xml_class.h"
#include "dialogs/present.h"
#include "dialogs/screenlayout.h"
#include "dialogs/supportfile_dlg.h"
#include "doctor/examination.h"
#include "resources/translations.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSystemTrayIcon>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto Patience = 2s; // for an answer of the frame, while the window waits
constexpr int ByUart = 2;     // as the settings file says it

struct WaitCursor
{
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

} // namespace

SupportFileAction::SupportFileAction(Link &theLink, QWidget *theWindow)
    : QAction(tr("Support &file..."), theWindow)
    , link(theLink)
    , window(theWindow)
    , history(theLink)
{
    connect(this, &QAction::triggered, this, &SupportFileAction::onTriggered);
}

void SupportFileAction::onTriggered()
{
    // The frame is asked in an event loop, in which the window may end.
    if (gathering)
        return;
    const QScopedValueRollback guard(gathering, true);
    const QList<bundle::Entry> entries = gather();
    if (!dialog)
        dialog = new SupportFile_dlg(window);
    dialog->setEntries(entries);
    present(dialog);
}

QList<bundle::Entry> SupportFileAction::gather()
{
    const WaitCursor cursor;
    const _CONNECT_DATA connection = XML_CLASS().read_connect();
    doctor::Patient patient;
    patient.settingsFile = XML_CLASS::filePath();
    patient.hasTray = QSystemTrayIcon::isSystemTrayAvailable();
    if (link.kind() != Link::UsbConnected) {
        patient.serialPort = link.openPort();
        if (patient.serialPort.isEmpty() && connection.connect == ByUart)
            patient.serialPort = connection.uartport;
    }
    const doctor::Interview said =
        doctor::interview(link, bitsPerSecond(connection.uartsetting.BaudRate), Patience);
    // It is read by whoever gives support, wherever that is, and by programs.
    const InEnglish words;
    const doctor::Machine machine;
    const auto examination = doctor::Examination::of(machine, patient, said);

    bundle::Sources sources;
    sources.machine = &machine;
    sources.examination = &examination;
    sources.program = u"quorvel"_s;
    // A simulated frame has no node.
    const QString node = link.state().port.isEmpty() ? u"USB"_s : link.state().port;
    sources.linked = link.isLinked() ? node : QString();
    sources.settingsFile = patient.settingsFile;
    const ScreenLayout layout = ScreenLayout::current();
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (qsizetype i = 0; i < layout.screens.size(); ++i) {
        const QRect place = layout.screens[i];
        sources.screens += tr("screen %1: %2 x %3 at %4, %5; scale %6")
                               .arg(i + 1)
                               .arg(place.width())
                               .arg(place.height())
                               .arg(place.x())
                               .arg(place.y())
                               .arg(i < screens.size() ? layout.scaleOf(screens[i]) : 1.0);
    }
    sources.screens += tr("desktop: %1 x %2, by %3")
                           .arg(layout.desktop.width())
                           .arg(layout.desktop.height())
                           .arg(QGuiApplication::platformName());
    QString problem;
    sources.recording = history.recording(&problem);
    if (problem.isEmpty())
        sources.frames = history.records();
    else
        qWarning("%s", qPrintable(problem));
    return bundle::contentsOf(sources);
}
