// SPDX-License-Identifier: GPL-3.0-or-later

#include "scrolled.h"

#include "showing.h"
#include "windowplace.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr int WheelClick = 120; // as the toolkit counts
constexpr int WheelSteps = 3;   // of a click

class ScreenFit : public QObject
{
public:
    explicit ScreenFit(QWidget *fitted)
        : QObject(fitted)
        , window(fitted)
        , whole(fitted->size())
        , least(fitted->minimumSize())
    {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && showing.begins())
            fit();
        else if (event->type() == QEvent::Hide)
            showing.ends();
        return QObject::eventFilter(watched, event);
    }

private:
    void fit()
    {
        const QSize room =
            window->screen()->availableGeometry().marginsRemoved(windowFrame()).size();
        const QSize fitting = whole.boundedTo(room);
        const bool wasLess = std::exchange(isLess, fitting != whole);
        window->setMinimumSize(least.boundedTo(fitting));
        const QSize wanted = wasLess && !isLess ? whole : window->size();
        window->resize(wanted.boundedTo(room));
    }

    QWidget *window; // parent
    Showing showing{window};
    QSize whole;
    QSize least;
    bool isLess = false; // than whole, by the screen it was shown on last
};

} // namespace

Scrolled::Scrolled(QWidget *theContent, QSize theWhole)
    : QObject(theContent)
    , content(theContent)
    , whole(theWhole)
{
    content->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget *, const QWidget *now) { follow(now); });
}

bool Scrolled::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        layOut();
    } else if (event->type() == QEvent::Wheel && bars[0] != nullptr) {
        const auto *wheel = static_cast<QWheelEvent *>(event);
        const QPoint turned = wheel->angleDelta();
        const bool isSideways = turned.y() == 0 || !bars[1]->isVisibleTo(content);
        QScrollBar *bar = bars[isSideways ? 0 : 1];
        const int angle = turned.y() == 0 ? turned.x() : turned.y();
        bar->setValue(bar->value() - angle * WheelSteps * bar->singleStep() / WheelClick);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

// What the bars leave.
QSize Scrolled::view() const
{
    QSize room = content->size();
    if (bars[0] != nullptr)
        room -= QSize(bars[1]->isVisibleTo(content) ? bars[1]->width() : 0,
                      bars[0]->isVisibleTo(content) ? bars[0]->height() : 0);
    return room;
}

void Scrolled::layOut()
{
    const QSize room = content->size();
    const bool fits = room.width() >= whole.width() && room.height() >= whole.height();
    if (fits && bars[0] == nullptr)
        return;
    if (bars[0] == nullptr) {
        bars = {new QScrollBar(Qt::Horizontal, content), new QScrollBar(Qt::Vertical, content)};
        bars[0]->setAccessibleName(tr("Scroll to the side"));
        bars[1]->setAccessibleName(tr("Scroll up and down"));
        for (const QScrollBar *bar : bars)
            connect(bar, &QScrollBar::valueChanged, this, &Scrolled::scroll);
    }
    const int extent = content->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, content);
    bool isLow = room.height() < whole.height();
    const bool isNarrow = room.width() - (isLow ? extent : 0) < whole.width();
    isLow = room.height() - (isNarrow ? extent : 0) < whole.height();
    const QSize left = room - QSize(isLow ? extent : 0, isNarrow ? extent : 0);
    bars[0]->setGeometry(0, left.height(), left.width(), extent);
    bars[1]->setGeometry(left.width(), 0, extent, left.height());
    bars[0]->setVisible(isNarrow);
    bars[1]->setVisible(isLow);
    bars[0]->setRange(0, std::max(0, whole.width() - left.width()));
    bars[1]->setRange(0, std::max(0, whole.height() - left.height()));
    bars[0]->setPageStep(left.width());
    bars[1]->setPageStep(left.height());
    for (QScrollBar *bar : bars) {
        bar->setSingleStep(extent);
        bar->raise();
    }
}

void Scrolled::scroll()
{
    const QPoint now(bars[0]->value(), bars[1]->value());
    for (QObject *child : content->children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        if (widget && !widget->isWindow() && widget != bars[0] && widget != bars[1])
            widget->move(widget->pos() + shown - now);
    }
    shown = now;
    // It may draw behind its children.
    content->window()->update();
}

// Who goes by the keyboard sees where it is.
void Scrolled::follow(const QWidget *focus)
{
    if (bars[0] == nullptr || focus == nullptr || !content->isAncestorOf(focus))
        return;
    const QRect place(focus->mapTo(content, QPoint(0, 0)), focus->size());
    const QSize seen = view();
    const auto into = [](QScrollBar *bar, int from, int to, int room) {
        if (from < 0 || to - from > room)
            bar->setValue(bar->value() + from);
        else if (to > room)
            bar->setValue(bar->value() + to - room);
    };
    into(bars[0], place.left(), place.right() + 1, seen.width());
    into(bars[1], place.top(), place.bottom() + 1, seen.height());
}

Scrolled *keepOnScreen(QWidget *window)
{
    keepWithinScreen(window);
    const auto *main = qobject_cast<QMainWindow *>(window);
    return new Scrolled(main ? main->centralWidget() : window, window->size());
}

void keepWithinScreen(QWidget *window)
{
    // What was installed last hears first: the window is brought to its place when it has its size.
    keepPlace(window);
    new ScreenFit(window);
}
