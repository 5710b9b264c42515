// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

// What a fuzz program does with one input; it ends the process if something does not hold.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size);

// Gives a fuzz program the inputs that are kept for it, without a fuzzer.
class Replay : public QObject
{
    Q_OBJECT

private slots:
    void every_kept_input_passes_data()
    {
        QTest::addColumn<QString>("path");
        const QDir corpus(QStringLiteral(CORPUS));
        const QStringList names = corpus.entryList(QDir::Files);
        QVERIFY2(!names.isEmpty(), CORPUS " holds no inputs");
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << corpus.filePath(name);
    }
    void every_kept_input_passes()
    {
        QFETCH(const QString, path);
        QFile file(path);
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
        const QByteArray input = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char *>(input.constData()),
                               size_t(input.size()));
    }
};

// A fuzz program that needs an application makes it.
QTEST_APPLESS_MAIN(Replay)
#include "replay.moc"
