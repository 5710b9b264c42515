// SPDX-License-Identifier: GPL-3.0-or-later

#include "fittext.h"

#include <QLabel>
#include <QPushButton>

namespace {

constexpr int SmallestPoints = 6;
constexpr int ButtonEdge = 4; // pixels, on each side

} // namespace

void fitText(QLabel *label, int width)
{
    QFont font = label->parentWidget()->font();
    label->setFont(font);
    const auto isTooLarge = [label, width] {
        return label->sizeHint().width() > width || label->sizeHint().height() > label->height();
    };
    while (isTooLarge() && font.pointSize() > SmallestPoints) {
        font.setPointSize(font.pointSize() - 1);
        label->setFont(font);
    }
    label->setToolTip(label->sizeHint().width() > width ? label->text() : QString());
}

void fitButtons(const QWidget *window)
{
    for (QPushButton *button : window->findChildren<QPushButton *>()) {
        QFont font = button->font();
        const auto isTooLarge = [button] {
            const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
            return text.width() + 2 * ButtonEdge > button->width();
        };
        while (isTooLarge() && font.pointSize() > SmallestPoints) {
            font.setPointSize(font.pointSize() - 1);
            button->setFont(font);
        }
    }
}
