// SPDX-License-Identifier: GPL-3.0-or-later

#include "supportfile_dlg.h"

#include "announce.h"
#include "scrolled.h"
#include "ui_supportfile_dlg.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFontDatabase>

using namespace Qt::StringLiterals;

namespace {

constexpr int ListWidth = 130;

} // namespace

SupportFile_dlg::SupportFile_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::SupportFile_dlg>())
{
    ui->setupUi(this);
    keepWithinScreen(this);
    ui->splitter->setSizes({ListWidth, width() - ListWidth});
    ui->contentView->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

SupportFile_dlg::~SupportFile_dlg() = default;

void SupportFile_dlg::setEntries(const QList<bundle::Entry> &files)
{
    entries = files;
    ui->fileList->clear();
    for (const bundle::Entry &entry : entries) {
        auto *item = new QListWidgetItem(entry.name, ui->fileList);
        // The file is English; here it is explained to its sender.
        const QString about =
            QCoreApplication::translate("bundle::Contents", entry.about.toUtf8().constData());
        item->setToolTip(about);
        item->setData(Qt::AccessibleDescriptionRole, about);
    }
    ui->fileList->setCurrentRow(0);
    tell({});
}

void SupportFile_dlg::saveTo(const QString &path)
{
    const QString problem = bundle::writeArchive(path, entries);
    tell(problem.isEmpty() ? tr("Written to %1.").arg(path) : problem);
}

void SupportFile_dlg::tell(const QString &outcome)
{
    ui->outcomeLab->setText(outcome);
    announce(ui->outcomeLab, outcome);
}

void SupportFile_dlg::on_fileList_currentRowChanged(int row)
{
    ui->contentView->setPlainText(row < 0 ? QString() : entries[row].shown);
}

void SupportFile_dlg::on_saveButton_clicked()
{
    QFileDialog dialog(this, tr("Save the support file"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(tr("Archives (*.zip)"));
    dialog.setDefaultSuffix(u"zip"_s);
    dialog.setWindowModality(Qt::WindowModal); // the tray's menu still works
    if (dialog.exec() == QDialog::Accepted)
        saveTo(dialog.selectedFiles().constFirst());
}
