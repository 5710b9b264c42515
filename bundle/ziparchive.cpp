#include "ziparchive.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <cstring>
#include <memory>

namespace bundle {

namespace {

struct ArchiveWords
{
    Q_DECLARE_TR_FUNCTIONS(bundle::Archive)
};

struct FreeArchive
{
    void operator()(archive *writer) const { archive_write_free(writer); }
    void operator()(archive_entry *entry) const { archive_entry_free(entry); }
};

la_ssize_t append(archive *, void *bytes, const void *data, size_t size)
{
    static_cast<QByteArray *>(bytes)->append(static_cast<const char *>(data), qsizetype(size));
    return la_ssize_t(size);
}

bool add(archive *writer, const Entry &file, time_t now)
{
    constexpr int Mode = 0644;
    const std::unique_ptr<archive_entry, FreeArchive> entry(archive_entry_new());
    archive_entry_set_pathname(entry.get(), file.name.toUtf8().constData());
    archive_entry_set_size(entry.get(), file.content.size());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), Mode);
    archive_entry_set_mtime(entry.get(), now, 0);
    return archive_write_header(writer, entry.get()) == ARCHIVE_OK &&
           archive_write_data(writer, file.content.constData(), size_t(file.content.size())) ==
               file.content.size();
}

// The bytes of the archive; the reason in problem when they cannot be made.
QByteArray zipOf(const QList<Entry> &entries, QString *problem)
{
    QByteArray bytes;
    const std::unique_ptr<archive, FreeArchive> writer(archive_write_new());
    const time_t now = QDateTime::currentSecsSinceEpoch();
    bool good = archive_write_set_format_zip(writer.get()) == ARCHIVE_OK &&
                archive_write_set_bytes_in_last_block(writer.get(), 1) == ARCHIVE_OK &&
                archive_write_open(writer.get(), &bytes, nullptr, append, nullptr) == ARCHIVE_OK;
    for (const Entry &entry : entries)
        good = good && add(writer.get(), entry, now);
    good = good && archive_write_close(writer.get()) == ARCHIVE_OK;
    if (!good)
        *problem = QString::fromLocal8Bit(archive_error_string(writer.get()));
    return bytes;
}

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
    const QByteArray bytes = zipOf(entries, &problem);
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
