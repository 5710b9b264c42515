#include "picture.h"

#include <QIcon>
#include <QImageReader>

using namespace Qt::StringLiterals;

QIcon picture(const QString &name)
{
    QIcon icon;
    for (const QLatin1StringView density : {""_L1, "@2x"_L1}) {
        QImageReader reader(u":/new/ico/image/%1%2.png"_s.arg(name, density), "png");
        reader.setAutoDetectImageFormat(false);
        if (const QPixmap pixmap = QPixmap::fromImageReader(&reader); !pixmap.isNull())
            icon.addPixmap(pixmap);
    }
    return icon;
}
