// SPDX-License-Identifier: GPL-3.0-or-later

#include "statusline.h"

#include "dialogs/announce.h"
#include "dialogs/present.h"
#include "doctor/usbchecks.h"

#include <QHelpEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolTip>

#include <cstdio>

using namespace Qt::StringLiterals;

StatusLine::StatusLine(QLabel *theLabel, QPushButton *theButton, const doctor::Machine &theMachine)
    : label(theLabel)
    , button(theButton)
    , machine(theMachine)
{
    label->installEventFilter(this);
    connect(button, &QPushButton::clicked, this, &StatusLine::tellInWindow);
    showHint();
}

const doctor::Machine &StatusLine::thisMachine()
{
    static const doctor::Machine machine;
    return machine;
}

bool StatusLine::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QObject::eventFilter(watched, event);
    showHint();
    // As a paragraph it is wrapped: a sentence may be longer than the screen is wide.
    const QString shownText = label->toolTip().toHtmlEscaped().replace(u'\n', "<br>"_L1);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), "<p>"_L1 + shownText, label);
    return true;
}

void StatusLine::show(const Link::State &state)
{
    if (state.problem != shown.problem && !state.problem.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(state.problem));
    const QString before = sentence();
    shown = state;
    showHint();
    if (sentence() != before)
        announce(label, sentence());
}

void StatusLine::setCalibrationNote(const QString &note)
{
    calibrationNote = note;
    showHint();
    announce(label, note);
}

void StatusLine::setRecordingNote(const QString &note)
{
    recordingNote = note;
    showHint();
}

void StatusLine::showHint()
{
    QStringList hints{calibrationNote, hintFor(shown), recordingNote};
    hints.removeAll(QString());
    const QString whole = hints.join(u'\n');
    label->setToolTip(whole);
    label->setAccessibleDescription(whole);
    const bool isLinked = shown.kind == Link::UsbConnected || shown.kind == Link::SerialOpen;
    button->setText(isLinked ? tr("&Details") : tr("&What to do next"));
    if (!box)
        return;
    box->setWindowTitle(isLinked ? tr("Details") : tr("What to do next"));
    box->setText(whole);
}

void StatusLine::tellInWindow()
{
    if (!box) {
        box = new QMessageBox(label->window());
        box->setObjectName(u"nextStep"_s);
        box->setModal(false);
        box->setTextFormat(Qt::PlainText);
        box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    showHint();
    present(box);
}

QString StatusLine::sentence() const
{
    if (!shown.problem.isEmpty())
        return tr("Quorvel: %1").arg(shown.problem);
    return shown.kind == Link::UsbConnected || shown.kind == Link::SerialOpen
               ? tr("Quorvel: a touch frame is linked")
               : tr("Quorvel: no touch frame is linked");
}

QString StatusLine::hintFor(const Link::State &state) const
{
    if (!state.problem.isEmpty())
        return state.problem;
    switch (state.kind) {
    case Link::UsbConnected:
        return state.port.isEmpty() ? tr("Linked by USB.")
                                    : tr("Linked by USB, at %1.").arg(state.port);
    case Link::SerialOpen:
        return tr("Linked over the serial port %1.").arg(state.port);
    case Link::NotConnected:
    case Link::SerialClosed:
    case Link::SerialFailed:
        break;
    }
    return doctor::whyNothingIsLinked(machine).words();
}
