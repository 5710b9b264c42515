// SPDX-License-Identifier: GPL-3.0-or-later

// The command line program on a simulated frame inside it, whose transfers take the time of a real
// one's.

#include "sim/sim_adapter.h"
#include "tools/quorvelctl/program.h"
#include "tools/quorvelctl/session.h"

#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QFile out;
    QFile err;
    if (!out.open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !err.open(STDERR_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return 1;
    ctl::Session session({.out = &out, .err = &err, .adapter = [](const QString &) {
                              return std::make_shared<sim::SimAdapter>(sim::Profile());
                          }});
    return ctl::run(QCoreApplication::arguments().mid(1), session);
}
