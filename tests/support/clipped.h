// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QStringList>

// Names of the widgets of a window whose text does not fit into them, and of those that do not
// lie wholly within their parent or lie over a sibling.
inline QStringList clipped(const QWidget &window)
{
    const auto isClipped = [](const QWidget *widget) {
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            if (label->text().isEmpty())
                return false;
            if (!label->wordWrap())
                return label->sizeHint().width() > label->width() ||
                       label->sizeHint().height() > label->height();
            return label->heightForWidth(label->width()) > label->height() ||
                   label->minimumSizeHint().width() > label->width();
        }
        if (const auto *box = qobject_cast<const QCheckBox *>(widget))
            return box->sizeHint().width() > box->width() ||
                   box->sizeHint().height() > box->height();
        if (const auto *group = qobject_cast<const QGroupBox *>(widget))
            return group->minimumSizeHint().width() > group->width();
        if (const auto *button = qobject_cast<const QPushButton *>(widget)) {
            const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
            return text.width() + 8 > button->width() || text.height() + 4 > button->height();
        }
        return false;
    };

    QStringList names;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisibleTo(&window) || widget->isWindow())
            continue;
        bool bad =
            isClipped(widget) || !widget->parentWidget()->rect().contains(widget->geometry());
        for (const QWidget *sibling :
             widget->parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            bad =
                bad || (sibling != widget && sibling->isVisibleTo(&window) &&
                        !sibling->isWindow() && sibling->geometry().intersects(widget->geometry()));
        if (bad)
            names.append(widget->objectName());
    }
    return names;
}
