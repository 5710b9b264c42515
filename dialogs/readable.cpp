// SPDX-License-Identifier: GPL-3.0-or-later

#include "readable.h"

#include <QApplication>
#include <QEvent>
#include <QPushButton>

#include <algorithm>
#include <cmath>

namespace {

// Of the light that a colour gives off, between 0 and 1.
qreal luminance(const QColor &color)
{
    const auto linear = [](qreal part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

// Chooses the background of a widget, its parent.
class Background : public QObject
{
public:
    explicit Background(QWidget *chosenFor)
        : QObject(chosenFor)
        , widget(chosenFor)
        , role(qobject_cast<QPushButton *>(chosenFor) ? QPalette::Button : QPalette::Window)
    {
        widget->ensurePolished();
        widget->installEventFilter(this);
        // A widget with a style sheet is not told of the desktop's colours; what it lies on is.
        widget->parentWidget()->installEventFilter(this);
        choose();
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange)
            choose();
        return QObject::eventFilter(watched, event);
    }

private:
    void choose()
    {
        QPalette palette = widget->palette();
        const QColor text = palette.color(QPalette::Active, widget->foregroundRole());
        QColor background = QApplication::palette(widget).color(QPalette::Active, role);
        const bool reads = readable::contrast(text, background) >= readable::LeastContrast;
        if (!reads)
            background = readable::contrast(text, Qt::white) > readable::contrast(text, Qt::black)
                             ? Qt::white
                             : Qt::black;
        widget->setAutoFillBackground(!reads && role == QPalette::Window);
        if (palette.color(QPalette::Active, role) == background)
            return;
        palette.setColor(role, background);
        widget->setPalette(palette);
    }

    QWidget *widget; // parent
    QPalette::ColorRole role;
};

} // namespace

qreal readable::contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

void readable::keep(QWidget *widget)
{
    new Background(widget);
}
