// SPDX-License-Identifier: GPL-3.0-or-later

#include "message.h"

#include <QMessageBox>

namespace MALVOUTIL {

void Message::ShowMsg(QWidget *parent, const QString &text)
{
    auto *box = new QMessageBox(parent);
    box->setWindowTitle(QMessageBox::tr("Quorvel"));
    box->setText(text);
    box->setModal(false);
    box->show();
}

} // namespace MALVOUTIL
