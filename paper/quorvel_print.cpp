// SPDX-License-Identifier: GPL-3.0-or-later

// quorvel-print: reads a report, a page of HTML, and says it as PDF; other programs start it.

#include "pdf.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>

#include <cstdio>

namespace {

constexpr qint64 LargestPage = 64 * 1024 * 1024;

} // namespace

int main(int argc, char **argv)
{
    // It shows nothing; a machine without a desktop has fonts all the same.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    QFile in;
    QFile out;
    QBuffer pdf;
    if (!in.open(stdin, QIODevice::ReadOnly) || !out.open(stdout, QIODevice::WriteOnly) ||
        !pdf.open(QIODevice::WriteOnly))
        return EXIT_FAILURE;
    QString problem;
    if (!paper::printPdf(in.read(LargestPage), pdf, &problem)) {
        std::fprintf(stderr, "quorvel-print: %s\n", qPrintable(problem));
        return EXIT_FAILURE;
    }
    const bool isSaid = out.write(pdf.data()) == pdf.data().size() && out.flush();
    return isSaid ? EXIT_SUCCESS : EXIT_FAILURE;
}
