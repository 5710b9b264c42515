// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"

#include <QByteArrayView>
#include <QCoreApplication>
#include <QString>

class QIODevice;

namespace lights {

// Reads what a signal test logs: a title that names the lights, then a row a scan, of X, of Y or of
// both. A row of X begins with date and time; a row of Y alone has none. Behind each level of Y
// stand two commas; where a program has written it anew with one, that is taken too.
class LogReader
{
    Q_DECLARE_TR_FUNCTIONS(lights::ScanFile)

public:
    // False: no such log; reason then has the line and what is wrong with it.
    bool read(QIODevice &device);

    Measurement result; // the axes that the title names; dated by the last row of X
    QString reason;

private:
    bool readTitle(QByteArrayView line);
    bool readRow(QByteArrayView line);
    bool readLevels(Axis axis, const QList<QByteArrayView> &fields, qsizetype first, int step);
    bool refuse(const QString &why);

    int line = 0;
};

} // namespace lights
