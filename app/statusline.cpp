#include "statusline.h"

#include "dialogs/present.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <cstdio>

StatusLine::StatusLine(QLabel *theLabel, QPushButton *theButton)
    : label(theLabel)
    , button(theButton)
    , box(new QMessageBox(theLabel->window()))
{
    box->setModal(false);
    box->setTextFormat(Qt::PlainText);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QObject::connect(button, &QPushButton::clicked, box, [this] { present(box); });
    showHint();
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
    const bool isLinked = shown.kind == Link::UsbConnected || shown.kind == Link::SerialOpen;
    button->setText(isLinked ? tr("&Details") : tr("&What to do next"));
    box->setWindowTitle(isLinked ? tr("Details") : tr("What to do next"));
    box->setText(whole);
}

QString StatusLine::sentence() const
{
    if (!shown.problem.isEmpty())
        return tr("Quorvel: %1").arg(shown.problem);
    return shown.kind == Link::UsbConnected || shown.kind == Link::SerialOpen
               ? tr("Quorvel: a touch frame is linked")
               : tr("Quorvel: no touch frame is linked");
}

QString StatusLine::hintFor(const Link::State &state)
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
    return tr("No touch frame is linked. Try in this order:\n"
              "1. Plug the frame in.\n"
              "2. Try another USB port and another cable.\n"
              "3. For a frame on a serial line, choose \"Connect\" in the menu of this window.\n"
              "4. Without the udev rule 70-quorvel.rules this user may not open the frame:\n"
              "    install it, or join the group plugdev if it is there.");
}
