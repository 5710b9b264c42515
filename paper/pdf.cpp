// SPDX-License-Identifier: GPL-3.0-or-later

#include "pdf.h"

#include "painted.h"

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextObjectInterface>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace paper {

namespace {

using lights::Drawing;

constexpr int PictureObject = QTextFormat::UserObject + 1;
constexpr int PictureNumber = QTextFormat::UserProperty + 1;
constexpr int Resolution = 300; // dots per inch
// Of the pages that QTextDocument prints, 2 cm at each side, and of the page's body, in inches.
constexpr double Margins = 2 * (2 / 2.54 + 0.2);
const QString PictureName = u"picture:"_s;

struct PdfWords
{
    Q_DECLARE_TR_FUNCTIONS(paper::Pdf)
};

double numberIn(const QXmlStreamAttributes &attributes, QLatin1StringView name)
{
    return attributes.value(name).toDouble();
}

// The one element that the page has for each picture.
std::optional<Drawing> readSvg(const QString &svg)
{
    Drawing drawing;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const auto number = [&attributes](QLatin1StringView name) {
            return numberIn(attributes, name);
        };
        const QString looks = attributes.value("class"_L1).toString();
        if (reader.name() == "svg"_L1) {
            const QStringList box = attributes.value("viewBox"_L1).toString().split(u' ');
            if (box.size() == 4)
                drawing.size = {box[2].toDouble(), box[3].toDouble()};
        } else if (reader.name() == "rect"_L1) {
            drawing.rectangle(
                {number("x"_L1), number("y"_L1), number("width"_L1), number("height"_L1)}, looks);
        } else if (reader.name() == "line"_L1) {
            drawing.line({number("x1"_L1), number("y1"_L1)}, {number("x2"_L1), number("y2"_L1)},
                         looks);
        } else if (reader.name() == "polyline"_L1) {
            std::vector<QPointF> points;
            const QString all = attributes.value("points"_L1).toString();
            for (const QString &point : all.split(u' ', Qt::SkipEmptyParts))
                points.emplace_back(point.section(u',', 0, 0).toDouble(),
                                    point.section(u',', 1, 1).toDouble());
            drawing.polyline(std::move(points), looks);
        } else if (reader.name() == "text"_L1) {
            const QPointF at(number("x"_L1), number("y"_L1));
            drawing.text(at, reader.readElementText(), looks);
        }
    }
    if (reader.hasError() || drawing.size.isEmpty())
        return {};
    return drawing;
}

// The pictures of a page, each of which is one letter of its text, as wide as the page.
class Pictures : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)
public:
    // Takes them out of the page and leaves images in their places.
    bool takeOutOf(QString &page)
    {
        const QString end = u"</svg>"_s;
        for (;;) {
            const qsizetype first = page.indexOf("<svg"_L1);
            const qsizetype last = page.indexOf(end, std::max<qsizetype>(first, 0));
            if (first < 0)
                return true;
            auto drawing =
                last < 0 ? std::nullopt : readSvg(page.mid(first, last + end.size() - first));
            if (!drawing)
                return false;
            page.replace(first, last + end.size() - first,
                         u"<p><img src=\"%1%2\"></p>"_s.arg(PictureName).arg(all.size()));
            all.push_back(std::move(*drawing));
        }
    }
    void putInto(QTextDocument &document)
    {
        document.documentLayout()->registerHandler(PictureObject, this);
        QTextCursor cursor(&document);
        while (!cursor.atEnd()) {
            cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
            const QTextImageFormat image = cursor.charFormat().toImageFormat();
            if (image.isValid() && image.name().startsWith(PictureName)) {
                QTextCharFormat format;
                format.setObjectType(PictureObject);
                format.setProperty(PictureNumber, image.name().mid(PictureName.size()).toInt());
                cursor.setCharFormat(format);
            }
            cursor.clearSelection();
        }
    }

    QSizeF intrinsicSize(QTextDocument *document, int, const QTextFormat &format) override
    {
        const QPaintDevice *device = document->documentLayout()->paintDevice();
        // Before it is laid out for printing its size does not matter.
        const double width =
            device ? document->pageSize().width() - Margins * device->logicalDpiX() : 1.0;
        return pictureOf(format).size * (width / pictureOf(format).size.width());
    }
    void drawObject(QPainter *painter, const QRectF &place, QTextDocument *, int,
                    const QTextFormat &format) override
    {
        const Drawing &drawing = pictureOf(format);
        painter->save();
        painter->translate(place.topLeft());
        painter->scale(place.width() / drawing.size.width(),
                       place.height() / drawing.size.height());
        paint(*painter, drawing);
        painter->restore();
    }

private:
    const Drawing &pictureOf(const QTextFormat &format) const
    {
        return all.at(size_t(format.intProperty(PictureNumber)));
    }

    std::vector<Drawing> all;
};

} // namespace

bool printPdf(const QByteArray &html, QIODevice &device, QString *problem)
{
    QString page = QString::fromUtf8(html);
    Pictures pictures;
    if (!page.startsWith("<!DOCTYPE html>"_L1) || !pictures.takeOutOf(page)) {
        *problem = PdfWords::tr("This is no report.");
        return false;
    }
    QTextDocument document;
    QFont font = document.defaultFont();
    font.setFamilies({u"DejaVu Sans"_s, font.family()});
    font.setPointSizeF(10);
    document.setDefaultFont(font);
    document.setHtml(page);
    pictures.putInto(document);
    QPdfWriter writer(&device);
    writer.setResolution(Resolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setTitle(document.metaInformation(QTextDocument::DocumentTitle));
    writer.setCreator(u"Quorvel"_s);
    document.print(&writer);
    return true;
}

} // namespace paper

#include "pdf.moc"
