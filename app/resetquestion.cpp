// SPDX-License-Identifier: GPL-3.0-or-later

#include "resetquestion.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};

} // namespace

bool resetIsConfirmed(QWidget *parent, const Link &link)
{
    QMessageBox box(QMessageBox::NoIcon, Words::tr("Reset"), Words::tr("Reset the device"),
                    QMessageBox::Ok, parent);
    box.setObjectName(u"resetQuestion"_s);
    box.setIconPixmap(
        parent->windowIcon().pixmap(box.style()->pixelMetric(QStyle::PM_LargeIconSize)));
    box.setWindowModality(Qt::WindowModal); // the tray's menu still works
    bool dismissed = false;
    bool abandoned = false;
    // An end of the program leaves exec() without finishing the box.
    QObject::connect(&box, &QDialog::finished, &box, [&dismissed] { dismissed = true; });
    QObject::connect(&link, &Link::aboutToEnd, &box, [&box, &abandoned] {
        abandoned = true;
        box.reject();
    });
    box.exec();
    return dismissed && !abandoned;
}
