// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLoggingCategory>

// What goes wrong on the way to the touch frame.
Q_DECLARE_LOGGING_CATEGORY(lcLink)
