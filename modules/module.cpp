// SPDX-License-Identifier: GPL-3.0-or-later

#include "module.h"

#include <QCoreApplication>

#include <dlfcn.h>

namespace modules {

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(modules)
};

QString missing(const QString &why)
{
    return Words::tr("A part of Quorvel is missing: install it again. (%1)").arg(why);
}

} // namespace

void *load(const char *name, QString *problem)
{
    const QByteArray file = QByteArray("quorvel-") + name + ".so";
    // A name without a folder: the program's run path says where, in a build as when installed.
    void *const library = dlopen(file.constData(), RTLD_NOW | RTLD_LOCAL);
    const QByteArray symbol = QByteArray("quorvel_") + name;
    void *const found = library ? dlsym(library, symbol.constData()) : nullptr;
    if (!found) {
        *problem = missing(QString::fromLocal8Bit(dlerror()));
        return nullptr;
    }
    const auto give = reinterpret_cast<void *(*)(const char *)>(found);
    void *const given = give(QUORVEL_VERSION);
    if (!given)
        *problem = missing(Words::tr("%1 is of another version").arg(QString::fromLatin1(file)));
    return given;
}

} // namespace modules
