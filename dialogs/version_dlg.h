// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>
#include <QList>
#include <QThread>

#include <memory>

class QLabel;
namespace Ui {
class Version_Dlg;
}

// Where an update would do its work; it has none yet.
class MyThread : public QThread
{
public:
    using QThread::QThread;

protected:
    void run() override {}
};

// Shows the versions of this tool and of the connected touch frame (hidver), anew at each showing
// and when they change, for being copied into a letter.
//
// Its hidden button prepares a firmware update: it copies the files of the working directory to a
// directory "backup" there and closes the parent window.
class Version_Dlg : public QDialog
{
    Q_OBJECT
public:
    explicit Version_Dlg(QWidget *parent = nullptr);
    ~Version_Dlg() override;

    void setStringFont();
    void setUI();
    // A record that has changed shows at once.
    void refresh();

public slots:
    void on_pushButton_upgrade_clicked();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void showRecord();
    QList<QLabel *> lines() const;

    std::unique_ptr<Ui::Version_Dlg> ui;
};
