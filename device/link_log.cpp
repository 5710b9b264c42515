// SPDX-License-Identifier: GPL-3.0-or-later

#include "link_log.h"

Q_LOGGING_CATEGORY(lcLink, "quorvel.link", QtWarningMsg)
