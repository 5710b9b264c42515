// SPDX-License-Identifier: GPL-3.0-or-later

// What most sources include, compiled once where the build precompiles headers. A source still
// includes what it uses: the other builds have no such header.
#pragma once

#ifdef QT_WIDGETS_LIB
#include <QtWidgets>
#endif
#include <QtCore>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>
