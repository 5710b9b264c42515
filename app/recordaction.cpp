// SPDX-License-Identifier: GPL-3.0-or-later

#include "recordaction.h"

#include <QFileDialog>
#include <QMessageBox>

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace Qt::StringLiterals;

RecordAction::RecordAction(Link &link, QWidget *theWindow)
    : QAction(theWindow)
    , recorder(link)
    , window(theWindow)
{
    connect(this, &QAction::triggered, this, &RecordAction::onTriggered);
    connect(&recorder, &capture::Recorder::changed, this, &RecordAction::showState);
    connect(&recorder, &capture::Recorder::losing, this,
            [](const QString &sentence) { std::fprintf(stderr, "%s\n", qPrintable(sentence)); });
    showState();
}

QString RecordAction::note() const
{
    if (!recorder.isRecording())
        return {};
    if (!recorder.problem().isEmpty()) {
        return tr("Recording into %1, but that cannot be written: %2.")
            .arg(recorder.path(), recorder.problem());
    }
    if (recorder.lost() > 0) {
        return tr("Recording into %1, where %Ln packet(s) are missing.", nullptr,
                  int(std::min<quint64>(recorder.lost(), std::numeric_limits<int>::max())))
            .arg(recorder.path());
    }
    return tr("Recording into %1.").arg(recorder.path());
}

void RecordAction::onTriggered()
{
    if (recorder.isRecording())
        recorder.stop();
    else
        askForFile();
}

void RecordAction::askForFile()
{
    QFileDialog dialog(window, tr("Record what travels to and from the touch frame"));
    dialog.setObjectName(u"recording"_s);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(tr("Recordings (*.pcap)"));
    dialog.setDefaultSuffix(u"pcap"_s);
    dialog.setWindowModality(Qt::WindowModal); // the tray's menu still works
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString problem = recorder.start(dialog.selectedFiles().constFirst());
    if (problem.isEmpty())
        return;
    QMessageBox box(QMessageBox::Warning, tr("No recording"), problem, QMessageBox::Ok, window);
    box.setObjectName(u"recording"_s);
    box.setWindowModality(Qt::WindowModal);
    box.exec();
}

void RecordAction::showState()
{
    setText(recorder.isRecording() ? tr("Stop &recording") : tr("&Record..."));
    emit noteChanged();
}
