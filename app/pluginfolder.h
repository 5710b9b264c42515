// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// Why Qt must not load plug-ins from a folder: somebody other than root and this user could have
// put one there, or could replace the folder. Judged are the folder, everything in it, wherever
// symbolic links lead, and the folders above. Empty when nothing is wrong, and when there is no
// such folder. A sentence fit for standard error otherwise.
QString pluginFolderProblem(const QString &folder);

// Adds "./plugins", relative to the working directory, to the folders that Qt looks for plug-ins
// in; or says on standard error why not. To be called before there is an application object.
void addPluginFolder();
