// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Settles how this process keeps memory. Before its first thread.
void settleHeap();
