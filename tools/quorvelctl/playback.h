// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QString;

namespace ctl {

class Session;

// Tells what a recording holds in the words of a watch, both directions and the ends of links too.
void tellRecording(Session &session, const QString &file);

} // namespace ctl
