// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "bundle/ziparchive.h"

#include <QDialog>

#include <memory>

namespace Ui {
class SupportFile_dlg;
}

// Shows every file of a support file and its content, and writes them when the user has chosen
// where to.
class SupportFile_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit SupportFile_dlg(QWidget *parent = nullptr);
    ~SupportFile_dlg() override;

    void setEntries(const QList<bundle::Entry> &files);
    // Writes them all, and says what became of it; what is wrong with the file is said too.
    void saveTo(const QString &path);

public slots:
    void on_fileList_currentRowChanged(int row);
    void on_saveButton_clicked();

private:
    void tell(const QString &outcome);

    std::unique_ptr<Ui::SupportFile_dlg> ui;
    QList<bundle::Entry> entries;
};
