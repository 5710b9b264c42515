// SPDX-License-Identifier: GPL-3.0-or-later

// Reports on paper: what a viewer shows of them, and what it reads out.

#include "lights/judge.h"
#include "lights/report.h"
#include "paper/painted.h"
#include "paper/pdf.h"
#include "tests/support/madeupreport.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace lights;
using namespace Qt::StringLiterals;

namespace {

QByteArray output(const QString &program, const QStringList &arguments, const QByteArray &in = {})
{
    QProcess process;
    process.start(program, arguments);
    process.write(in);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitCode() != 0)
        qWarning("%s: %s", qPrintable(program), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

int count(const QImage &picture, QColor color)
{
    int pixels = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            pixels += picture.pixel(x, y) == color.rgb() ? 1 : 0;
    return pixels;
}

} // namespace

class TestPdf : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder;

    QString print(const QByteArray &html)
    {
        QFile file(folder.filePath(u"report.pdf"_s));
        QString problem;
        if (!file.open(QIODevice::WriteOnly) || !paper::printPdf(html, file, &problem))
            qFatal("not printed: %s", qPrintable(problem));
        return file.fileName();
    }
    QImage page(const QString &pdf, int number) const
    {
        const QString name = folder.filePath(u"page"_s);
        output(u"pdftoppm"_s, {u"-png"_s, u"-r"_s, u"75"_s, u"-singlefile"_s, u"-f"_s,
                               QString::number(number), pdf, name});
        return QImage(name + u".png"_s);
    }

private slots:
    void a_viewer_reads_the_words_of_the_page()
    {
        const QString pdf = print(toHtml(madeUpReport(100)));
        const QString words =
            QString::fromUtf8(output(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s})).simplified();
        for (const QString &expected :
             {u"SERVICE NEEDED"_s, u"Hall <left> & right"_s, u"21-01234-1605"_s,
              u"2026-11-21 20:15 UTC"_s, u"X 40 to X 47: broken board. Replace the board between"_s,
              u"X 20: weak."_s, u"are missed."_s, u"All lights"_s, u"X 63 healthy 210.0"_s,
              u"Y 39 healthy 210.0"_s})
            QVERIFY2(words.contains(expected), qPrintable(expected));
        const QByteArray info = output(u"pdfinfo"_s, {pdf});
        QVERIFY2(info.contains("Lights of a touch frame"), info.constData());
        QVERIFY2(info.contains("(A4)"), info.constData());
    }

    void a_viewer_shows_the_pictures()
    {
        const QImage first = page(print(toHtml(madeUpReport(100))), 1);
        QCOMPARE(first.width(), 620); // 210 mm
        // Healthy lights, and the stretch of the broken board.
        QVERIFY(count(first, QColor(0x56, 0xB4, 0xE9)) > 500);
        QVERIFY(count(first, QColor(0xD5, 0x5E, 0x00)) > 20);
        // Nothing is cut off at the right.
        for (int y = 0; y < first.height(); ++y)
            for (int x = first.width() - 50; x < first.width(); ++x)
                QCOMPARE(first.pixelColor(x, y), QColor(Qt::white));
    }

    void letters_of_bad_lights_stand_beside_their_colours()
    {
        Drawing drawing{{100, 50}, {}, {}};
        drawing.rectangle({10, 10, 20, 10}, u"weak"_s);
        drawing.text({20, 40}, u"w"_s, u"letter"_s);
        QImage picture(100, 50, QImage::Format_RGB32);
        picture.fill(Qt::black);
        QPainter painter(&picture);
        paper::paint(painter, drawing, {Qt::white, Qt::black});
        painter.end();
        QCOMPARE(picture.pixelColor(20, 15), QColor(0xE6, 0x9F, 0x00));
        const QImage letter = picture.copy(10, 28, 20, 14);
        QVERIFY(count(letter, Qt::black) < 20 * 14); // in the desktop's ink
    }

    void what_is_no_report_is_refused()
    {
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        QString problem;
        QVERIFY(!paper::printPdf("no page", buffer, &problem));
        QCOMPARE(problem, u"This is no report."_s);
        QVERIFY(!paper::printPdf("<!DOCTYPE html>\n<svg viewBox=", buffer, &problem));
        QCOMPARE(buffer.data(), QByteArray());
    }

    void a_program_prints_for_those_without_fonts()
    {
        const QByteArray html = toHtml(madeUpReport(100));
        const QByteArray pdf = output(QStringLiteral(QUORVEL_PRINT_PROGRAM), {}, html);
        QVERIFY(pdf.startsWith("%PDF-"));
        QVERIFY(pdf.trimmed().endsWith("%%EOF"));
        QCOMPARE(output(QStringLiteral(QUORVEL_PRINT_PROGRAM), {}, "no page"), QByteArray());
    }

    void the_command_line_writes_it()
    {
        QFile file(folder.filePath(u"scans.json"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(toJson(madeUpReport(100))).toJson());
        file.close();
        const QString pdf = folder.filePath(u"ctl.pdf"_s);
        const QByteArray said =
            output(QStringLiteral(QUORVELCTL_PROGRAM),
                   {u"lights"_s, u"check"_s, u"--from"_s, file.fileName(), u"--report"_s, pdf});
        QVERIFY2(said.startsWith("SERVICE NEEDED"), said.constData());
        QVERIFY(output(u"pdftotext"_s, {pdf, u"-"_s}).contains("SERVICE NEEDED"));
    }
};

QTEST_MAIN(TestPdf)
#include "tst_pdf.moc"
