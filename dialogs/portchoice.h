// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

class QComboBox;
class QTimer;

// Keeps the serial ports of the machine listed in an editable box. What is typed or chosen there
// stays, and so does the place of the cursor.
class PortChoice : public QObject
{
    Q_OBJECT
public:
    struct Port
    {
        QString name;    // such as "ttyUSB0"
        QString adapter; // what it calls itself; may be empty

        bool operator==(const Port &) const = default;
    };
    using PortList = std::function<QList<Port>()>;
    static QList<Port> systemPorts();

    // The box becomes the parent.
    PortChoice(QComboBox *box, PortList ports);

    void list();
    // Adapters come and go: looks again every second.
    void follow(bool on);

signals:
    void listed();

private:
    void lookAgain();

    QComboBox *box;
    PortList ports;
    QList<Port> shown;
    QTimer *timer; // child
};
