// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "finding.h"
#include "machine.h"

namespace doctor {

// What a frame on USB needs of the machine, from the kernel up. Frames are those of
// UsbFrame::allOf(); of several the first counts, as it does for the link.

Finding checkKernel(const Machine &machine);
// wanted: the node that the frame has to be at; empty for any.
Finding checkNode(const Machine &machine, const QList<UsbFrame> &frames,
                  const QString &wanted = {});
Finding checkIds(const QList<UsbFrame> &frames);
Finding checkPermission(const Machine &machine, const QList<UsbFrame> &frames);
Finding checkProgram(const Machine &machine, const QList<UsbFrame> &frames);

// The first thing on the way to a node that keeps every frame on USB from being seen, or what to
// try where there is nothing of the kind.
Advice whyNothingIsLinked(const Machine &machine);

} // namespace doctor
