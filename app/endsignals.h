// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

// Hears of the signals that ask a program to end (hang-up, interrupt, terminate) in the event loop,
// so that it ends in good order. One object at a time.
class EndSignals : public QObject
{
    Q_OBJECT
public:
    EndSignals();
    ~EndSignals() override;

signals:
    void asked();
};
