// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPoint>
#include <QString>

#include <optional>

// Where windows were when they were hidden last, for the next run: a small file beside the
// settings, with a line for each window: its name and the corner of its frame. Every operation goes
// to the file, and what cannot be read or written is silently no place. Main thread only.
namespace windowplaces {

QString filePath();

// In the desktop's logical pixels; nothing for a window that nothing is known of.
std::optional<QPoint> of(const QString &window);

// A name without blanks; others, and places that no desktop has, are not kept.
void keep(const QString &window, QPoint corner);

} // namespace windowplaces
