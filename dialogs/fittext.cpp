#include "fittext.h"

#include <QLabel>

namespace {

constexpr int SmallestPoints = 6;

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
