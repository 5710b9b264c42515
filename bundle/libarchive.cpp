// SPDX-License-Identifier: GPL-3.0-or-later

#include "modules/module.h"
#include "zip.h"

#include <QDateTime>

#include <archive.h>
#include <archive_entry.h>
#include <memory>

namespace bundle {

namespace {

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

class LibArchive final : public Zip
{
public:
    QByteArray pack(const QList<Entry> &entries, QString *problem) override
    {
        QByteArray bytes;
        const std::unique_ptr<archive, FreeArchive> writer(archive_write_new());
        const time_t now = QDateTime::currentSecsSinceEpoch();
        bool good =
            archive_write_set_format_zip(writer.get()) == ARCHIVE_OK &&
            archive_write_set_bytes_in_last_block(writer.get(), 1) == ARCHIVE_OK &&
            archive_write_open(writer.get(), &bytes, nullptr, append, nullptr) == ARCHIVE_OK;
        for (const Entry &entry : entries)
            good = good && add(writer.get(), entry, now);
        good = good && archive_write_close(writer.get()) == ARCHIVE_OK;
        if (!good)
            *problem = QString::fromLocal8Bit(archive_error_string(writer.get()));
        return bytes;
    }
};

LibArchive libArchive;

} // namespace

QUORVEL_MODULE(Zip, archive, &libArchive)

} // namespace bundle
