// SPDX-License-Identifier: GPL-3.0-or-later

#include "ziparchive.h"

#include "device/plainfile.h"
#include "modules/module.h"
#include "zip.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace bundle {

namespace {

struct ArchiveWords
{
    Q_DECLARE_TR_FUNCTIONS(bundle::Archive)
};

bool isArchive(const QString &path)
{
    const QByteArray signature("PK\x03\x04");
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.peek(signature.size()) == signature;
}

} // namespace

QString writeArchive(const QString &path, const QList<Entry> &entries)
{
    const QFileInfo there(path);
    if (there.exists() && !(there.isFile() && isArchive(path)))
        return ArchiveWords::tr("%1 exists and is no support file. Choose another name.").arg(path);
    QString problem;
    auto *const zip = modules::load<Zip>(&problem);
    if (!zip)
        return problem;
    const QByteArray bytes = zip->pack(entries, &problem);
    if (!problem.isEmpty())
        return ArchiveWords::tr("The support file cannot be made: %1.").arg(problem);
    const QString reason = plainfile::replace(path, bytes);
    if (reason.isEmpty())
        return {};
    return ArchiveWords::tr("%1 cannot be written: %2. Choose another place.").arg(path, reason);
}

} // namespace bundle
