// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// A text of whoever for a terminal, which must not be steered by it: what is no letter, number,
// mark, symbol or space is shown as '?'.
inline QString printable(QString text)
{
    for (QChar &c : text)
        if (!c.isPrint())
            c = u'?';
    return text;
}
