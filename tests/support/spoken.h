#pragma once

#include <QAccessible>
#include <QStringList>

// What assistive tools are alerted to while this exists.
class Spoken
{
public:
    Spoken()
    {
        said().clear();
        QAccessible::setActive(true);
        before = QAccessible::installUpdateHandler([](QAccessibleEvent *event) {
            if (event->type() == QAccessible::Alert)
                said().append(event->accessibleInterface()->text(QAccessible::Name));
        });
    }
    Spoken(const Spoken &) = delete;
    Spoken &operator=(const Spoken &) = delete;
    ~Spoken() { QAccessible::installUpdateHandler(before); }

    static QStringList &said()
    {
        static QStringList all;
        return all;
    }

private:
    QAccessible::UpdateHandler before = nullptr;
};
