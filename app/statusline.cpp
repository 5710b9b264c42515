#include "statusline.h"

#include "doctor/usbchecks.h"

#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>

#include <cstdio>

using namespace Qt::StringLiterals;

StatusLine::StatusLine(QLabel *theLabel, const doctor::Machine &theMachine)
    : label(theLabel)
    , machine(theMachine)
{
    label->installEventFilter(this);
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
    shown = state;
    showHint();
}

void StatusLine::setCalibrationNote(const QString &note)
{
    calibrationNote = note;
    showHint();
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
