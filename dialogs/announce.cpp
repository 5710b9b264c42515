// SPDX-License-Identifier: GPL-3.0-or-later

#include "announce.h"

#include <QAccessibleWidget>
#include <QString>
#include <QWidget>

namespace {

// Screen readers say a notification when it comes up. This one is as large as nothing, so that only
// they notice.
class Announcer : public QWidget
{
    Q_OBJECT
public:
    explicit Announcer(QWidget *window)
        : QWidget(window)
    {
        resize(0, 0);
        QWidget::show();
    }

    void say(const QString &words)
    {
        setAccessibleName(words);
        QAccessibleEvent comesUp(this, QAccessible::ObjectShow);
        QAccessible::updateAccessibility(&comesUp);
    }
};

QAccessibleInterface *speakFor(const QString &, QObject *object)
{
    auto *announcer = qobject_cast<Announcer *>(object);
    return announcer ? new QAccessibleWidget(announcer, QAccessible::Notification) : nullptr;
}

} // namespace

void announce(const QWidget *about, const QString &words)
{
    if (!QAccessible::isActive() || words.isEmpty() || !about->isVisible())
        return;
    static const bool speaks = (QAccessible::installFactory(&speakFor), true);
    Q_UNUSED(speaks)
    QWidget *window = about->window();
    auto *announcer = window->findChild<Announcer *>(QString(), Qt::FindDirectChildrenOnly);
    if (!announcer)
        announcer = new Announcer(window);
    announcer->say(words);
}

#include "announce.moc"
