#include "ziparchive.h"

#include "modules/module.h"
#include "zip.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

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

QString notWritten(const QString &path, const QString &why)
{
    return ArchiveWords::tr("%1 cannot be written: %2. Choose another place.").arg(path, why);
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
    QSaveFile file(path);
    // A buffered file forgets that a full disk took only a part.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return notWritten(path, file.errorString());
    for (qint64 done = 0; done < bytes.size();) {
        errno = 0;
        const qint64 more = file.write(bytes.constData() + done, bytes.size() - done);
        if (more <= 0)
            return notWritten(path, QString::fromLocal8Bit(std::strerror(errno)));
        done += more;
    }
    return file.commit() ? QString() : notWritten(path, file.errorString());
}

} // namespace bundle
