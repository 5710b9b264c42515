// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "finding.h"

namespace doctor {

// The settings file: whether it can be read and written, is whole, and holds what the windows and
// the frame can do something with. Changes nothing.
Finding checkSettings(const QString &path);

} // namespace doctor
