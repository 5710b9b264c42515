// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "struct.h"

#include <QString>

// A frame in words, without its direction: "rotation: set 90 degrees".
// Reports and log lines stay untranslated: they are a record that scripts and support read.
namespace framewords {

QString describeCommand(const Frame &frame);
QString describeReport(const Frame &frame);
// The used bytes from byte 1 on: "A7 00 02 00 02".
QString usedBytes(const Frame &frame);

} // namespace framewords
