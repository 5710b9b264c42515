#include "link_log.h"

Q_LOGGING_CATEGORY(lcLink, "quorvel.link", QtWarningMsg)
