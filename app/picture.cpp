// SPDX-License-Identifier: GPL-3.0-or-later

#include "picture.h"

#include <QFile>
#include <QIcon>
#include <QImageReader>

using namespace Qt::StringLiterals;

QIcon picture(const QString &name)
{
    QIcon icon;
    for (const QLatin1StringView density : {""_L1, "@2x"_L1}) {
        const QString path = u":/new/ico/image/%1%2.png"_s.arg(name, density);
        // Most stand in one density, and a reader of what is not there complains on standard error.
        if (!QFile::exists(path))
            continue;
        QImageReader reader(path, "png");
        reader.setAutoDetectImageFormat(false);
        if (const QPixmap pixmap = QPixmap::fromImageReader(&reader); !pixmap.isNull())
            icon.addPixmap(pixmap);
    }
    return icon;
}
