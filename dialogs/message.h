// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QWidget;

namespace MALVOUTIL {

class Message
{
public:
    // Shows a modeless message box titled "Quorvel" that lives until its parent is destroyed.
    static void ShowMsg(QWidget *parent, const QString &text);
};

} // namespace MALVOUTIL
