#include "windowplaces.h"

#include "device/plainfile.h"
#include "xml_class.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 LargestFile = 4096;
constexpr int Farthest = 32767; // what display servers count to

struct Line
{
    QByteArray window;
    QPoint corner;
};

bool isPlace(QPoint corner)
{
    return std::abs(corner.x()) <= Farthest && std::abs(corner.y()) <= Farthest;
}

std::optional<Line> lineOf(const QByteArray &text)
{
    const QList<QByteArray> words = text.split(' ');
    if (words.size() != 3)
        return {};
    bool isX = false;
    bool isY = false;
    const QPoint corner(words[1].toInt(&isX), words[2].toInt(&isY));
    if (!isX || !isY || !isPlace(corner))
        return {};
    return Line{words[0], corner};
}

QList<Line> readLines()
{
    const QFileInfo info(windowplaces::filePath());
    QFile file(info.filePath());
    // A pipe would be waited for.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    QList<Line> lines;
    for (const QByteArray &text : file.read(LargestFile).split('\n')) {
        if (const auto line = lineOf(text))
            lines += *line;
    }
    return lines;
}

} // namespace

QString windowplaces::filePath()
{
    return XML_CLASS::filePath() + "-windows"_L1;
}

std::optional<QPoint> windowplaces::of(const QString &window)
{
    for (const Line &line : readLines()) {
        if (line.window == window.toUtf8())
            return line.corner;
    }
    return {};
}

void windowplaces::keep(const QString &window, QPoint corner)
{
    const QByteArray name = window.toUtf8();
    QList<Line> lines = readLines();
    const auto isIts = [&name](const Line &line) { return line.window == name; };
    const auto known = std::find_if(lines.cbegin(), lines.cend(), isIts);
    if (name.isEmpty() || name.contains(' ') || name.contains('\n') || !isPlace(corner) ||
        (known != lines.cend() && known->corner == corner))
        return;
    lines.removeIf(isIts);
    lines += {name, corner};
    QByteArray text;
    for (const Line &line : lines)
        text += line.window + ' ' + QByteArray::number(line.corner.x()) + ' ' +
                QByteArray::number(line.corner.y()) + '\n';
    plainfile::replace(filePath(), text);
}
