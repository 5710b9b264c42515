// SPDX-License-Identifier: GPL-3.0-or-later

#include "version_dlg.h"

#include "device/plainfile.h"
#include "device/struct.h"
#include "device/version.h"
#include "fittext.h"
#include "scrolled.h"
#include "ui_version_dlg.h"

#include <QDebug>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

constexpr QPoint OkPlace(60, 145);
constexpr int FontPoints = 9;
constexpr int ThreadWaitMs = 1000;

// Product families.
constexpr quint32 Orva = 1;
constexpr quint32 Telma = 2;

QString hex(quint32 value, int digits = 1)
{
    return QString::number(value, 16).toUpper().rightJustified(digits, u'0');
}

// Names of makes, the same in every language.
QString familyName(quint32 family)
{
    switch (family) {
    case Orva:
        return u"ORVA"_s;
    case Telma:
        return u"TELMA"_s;
    default:
        return u"UNDEF"_s;
    }
}

} // namespace

Version_Dlg::Version_Dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Version_Dlg>())
{
    ui->setupUi(this);
    keepOnScreen(this);
    setStringFont();
    setUI();
    ui->pushButton_upgrade->hide();
    ui->pushButton->move(OkPlace);
    ui->pushButton->setFocus();
}

Version_Dlg::~Version_Dlg() = default;

void Version_Dlg::setStringFont()
{
    setFont(QFont(u"Tahoma"_s, FontPoints));
}

QList<QLabel *> Version_Dlg::lines() const
{
    return {ui->label_2, ui->label_3, ui->label_4, ui->label_5, ui->label_6};
}

void Version_Dlg::setUI()
{
    ui->label_2->setText(tr("Service version: %1").arg(QLatin1StringView(QUORVEL_VERSION)));
}

void Version_Dlg::refresh()
{
    if (isVisible())
        showRecord();
}

void Version_Dlg::showEvent(QShowEvent *event)
{
    // Not before: a label from which one copies takes a document's memory.
    for (QLabel *line : lines()) {
        line->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        line->setFocusPolicy(Qt::StrongFocus);
    }
    showRecord();
    QDialog::showEvent(event);
}

void Version_Dlg::showRecord()
{
    const quint32 version = hidver.VersionNumber;
    ui->label_3->setText(tr("Device version: %1.%2.%3.%4")
                             .arg(hex(version >> 12), hex((version & 0xFFF) >> 8),
                                  hex((version & 0xFF) >> 4), hex(version & 0xF)));
    ui->label_4->setText(
        tr("Hardware: %1 - %2").arg(hex(hidver.VendorID, 4), hex(hidver.ProductID, 4)));
    ui->label_5->setText(tr("SID: %1 - %2").arg(hex(hidver.CHECKSUM, 8), hex(hidver.SVNNUM, 6)));
    ui->label_6->setText(
        tr("PID: %1 - %2", "family, date and number")
            .arg(familyName(hidver.P_FID), hex(hidver.P_DATE, 4) + hex(hidver.P_NUM, 5)));
    for (QLabel *line : lines())
        fitText(line, line->width());
}

void Version_Dlg::on_pushButton_upgrade_clicked()
{
    const QDir working(QDir::currentPath());
    const QString backup = working.path() + u"/backup"_s;
    if (QDir().mkdir(backup))
        qDebug().noquote() << backup;
    for (const QString &name : working.entryList())
        plainfile::copyInto(working.path() + u'/' + name, backup);
    auto *thread = new MyThread(this);
    thread->start();
    thread->wait(ThreadWaitMs);
    if (QWidget *window = parentWidget()) {
        window->hide();
        window->close();
    }
}
