// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QIcon;
class QString;

// A picture of ":/new/ico/image/", in all densities that there are. An icon that is given a file
// loads every plug-in for pictures to find out what kind the file is; these are all PNG.
QIcon picture(const QString &name);
