// SPDX-License-Identifier: GPL-3.0-or-later

// A library that is no module.
