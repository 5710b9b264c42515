// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QSize>
#include <QString>

// An output as its compositor knows it.
struct WaylandOutput
{
    QString name; // empty where the compositor gives none
    QSize size;   // in native pixels, turned as it is seen
};

// The toolkit knows an output in pixels that are scaled by a whole number or rounded, so the
// compositor is asked itself. This is a module: its library is not wanted on any other desktop.
class WaylandOutputs
{
public:
    static constexpr const char *Name = "wayland";

    // In the order in which the compositor has them; none if there is no compositor or if it does
    // not answer within a second.
    virtual QList<WaylandOutput> outputs() = 0;

protected:
    ~WaylandOutputs() = default;
};
