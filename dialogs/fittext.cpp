#include "fittext.h"

#include <QFontMetrics>
#include <QLabel>

namespace {

constexpr int SmallestPoints = 6;

} // namespace

void fitText(QLabel *label, int width)
{
    QFont font = label->parentWidget()->font();
    const auto fits = [&] { return QFontMetrics(font).horizontalAdvance(label->text()) <= width; };
    while (!fits() && font.pointSize() > SmallestPoints)
        font.setPointSize(font.pointSize() - 1);
    label->setFont(font);
    label->setToolTip(fits() ? QString() : label->text());
}
