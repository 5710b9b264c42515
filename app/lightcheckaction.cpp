// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightcheckaction.h"

#include "dialogs/lightcheck_dlg.h"
#include "dialogs/present.h"

LightCheckAction::LightCheckAction(Link &theLink, QWidget *theWindow)
    : QAction(tr("L&ight check..."), theWindow)
    , link(theLink)
    , window(theWindow)
{
    setShortcut(Qt::CTRL | Qt::Key_L);
    connect(this, &QAction::triggered, this, &LightCheckAction::onTriggered);
}

void LightCheckAction::onTriggered()
{
    if (!dialog)
        makeDialog();
    present(dialog);
}

void LightCheckAction::makeDialog()
{
    dialog = new LightCheck_dlg(window);
    connect(dialog, &LightCheck_dlg::Write03, &link, &Link::send);
    connect(&link, &Link::received, dialog, &LightCheck_dlg::DoRecv03);
    connect(&link, &Link::ended, dialog, &LightCheck_dlg::OnLinkEnded);
    // The window has read the version by then.
    connect(&link, &Link::usbConnected, this, &LightCheckAction::tellOfLink);
    connect(&link, &Link::stateChanged, this, [this](const Link::State &state) {
        if (state.kind == Link::SerialOpen)
            tellOfLink();
    });
    if (link.isLinked())
        tellOfLink();
}

void LightCheckAction::tellOfLink()
{
    using Source = lights::Measuring::Source;
    if (link.kind() != Link::UsbConnected)
        dialog->linkBegan(Source::Line);
    else
        dialog->linkBegan(isCurrentGeneration(hidver.VersionNumber) ? Source::Usb
                                                                    : Source::OlderUsb);
}
