// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Makes the icons under ":/new/ico/image/" known to Qt. Every program that shows them calls this
// once before its first window: they live in a static library, whose own start-up code the
// linker leaves out. Calling it again does nothing.
void initResources();
