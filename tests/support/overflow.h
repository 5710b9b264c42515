// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionComboBox>

namespace overflow {

inline constexpr int SmallestReadable = 7; // points, for what is made smaller to fit

// What the letters of a label of one line take.
inline QSize lettersOf(const QLabel &label)
{
    QString text = label.text();
    if (label.buddy())
        text.remove(u'&');
    return label.fontMetrics().tightBoundingRect(text).size();
}

// Where it draws them.
inline QRect textPlace(const QLabel &label)
{
    return QStyle::alignedRect(label.layoutDirection(), label.alignment(), lettersOf(label),
                               label.geometry());
}

inline bool isCovered(const QLabel &label)
{
    for (const QWidget *sibling :
         label.parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        const bool isAround = sibling == &label || sibling->isHidden() || sibling->isWindow() ||
                              sibling->inherits("QGroupBox") ||
                              sibling->geometry().contains(label.geometry());
        const auto *other = qobject_cast<const QLabel *>(sibling);
        const QRect place = other ? textPlace(*other) : sibling->geometry();
        if (!isAround && place.intersects(textPlace(label)))
            return true;
    }
    return false;
}

inline bool isTooSmall(const QComboBox &box)
{
    QStyleOptionComboBox option;
    option.initFrom(&box);
    option.editable = box.isEditable();
    const int room =
        box.style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box)
            .width();
    for (int i = 0; i < box.count(); ++i)
        if (!box.isEditable() && box.fontMetrics().horizontalAdvance(box.itemText(i)) > room)
            return true;
    return false;
}

// Whether a widget has a text that does not fit into it or that another widget lies on.
inline bool isTooSmall(const QWidget &widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        if (label->text().isEmpty())
            return false;
        if (label->wordWrap())
            return label->heightForWidth(label->width()) > label->height() ||
                   label->minimumSizeHint().width() > label->width();
        return label->sizeHint().width() > label->width() ||
               lettersOf(*label).height() > label->height() || isCovered(*label) ||
               label->font().pointSize() < SmallestReadable;
    }
    if (const auto *group = qobject_cast<const QGroupBox *>(&widget))
        return group->fontMetrics().horizontalAdvance(group->title()) + 16 > group->width();
    if (const auto *box = qobject_cast<const QComboBox *>(&widget))
        return isTooSmall(*box);
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    if (!button || button->text().isEmpty())
        return false;
    if (qobject_cast<const QCheckBox *>(button) || qobject_cast<const QRadioButton *>(button))
        return button->sizeHint().width() > button->width() ||
               button->fontMetrics().height() > button->height();
    QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
    if (!button->icon().isNull())
        text.rwidth() += button->iconSize().width() + 4;
    if (const auto *push = qobject_cast<const QPushButton *>(button); push && push->menu())
        text.rwidth() += button->style()->pixelMetric(QStyle::PM_MenuButtonIndicator);
    return text.width() + 8 > button->width() || text.height() + 4 > button->height() ||
           button->font().pointSize() < SmallestReadable;
}

// What does not fit in a window, each with its text.
inline QStringList texts(const QWidget &window)
{
    QStringList found;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->window() != &window || !widget->isVisibleTo(&window) || !isTooSmall(*widget))
            continue;
        const QVariant text = widget->property(widget->inherits("QGroupBox") ? "title" : "text");
        found.append(QStringLiteral("%1/%2: \"%3\" in %4 x %5, wants %6 x %7")
                         .arg(window.objectName(), widget->objectName(), text.toString())
                         .arg(widget->width())
                         .arg(widget->height())
                         .arg(widget->sizeHint().width())
                         .arg(widget->sizeHint().height()));
    }
    return found;
}

} // namespace overflow
