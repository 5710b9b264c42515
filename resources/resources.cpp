// SPDX-License-Identifier: GPL-3.0-or-later

#include "resources.h"

#include <QDir>

// Q_INIT_RESOURCE works only outside any namespace.
void initResources()
{
    Q_INIT_RESOURCE(resources);
}
