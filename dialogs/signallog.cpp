// SPDX-License-Identifier: GPL-3.0-or-later

#include "signallog.h"

#include "device/plainfile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>
#include <QMessageBox>

#include <utility>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcSignalTest, "quorvel.signaltest", QtWarningMsg)

namespace {

const QString LogFile = u"TestLog.csv"_s;

} // namespace

SignalLog::SignalLog(QWidget *theWindow)
    : window(theWindow)
{
}

SignalLog::~SignalLog()
{
    endRow();
    if (unsaved && !store())
        qCWarning(lcSignalTest).noquote() << LogFile << "was not written";
}

void SignalLog::beginTest()
{
    end();
    warned = false;
}

void SignalLog::begin(int lightsX, int lightsY)
{
    X_total = lightsX;
    Y_total = lightsY;
    doCVSstring_Title();
    row = Row::None;
    running = true;
}

void SignalLog::end()
{
    endRow();
    running = false;
    if (unsaved)
        writeLog();
}

void SignalLog::level(Row axis, int index, int value)
{
    if (!running)
        return;
    if (index == 0) {
        if (axis == Row::X || row == Row::Y)
            endRow();
        else
            fillRow(X_total);
        row = axis;
        nextLight = 0;
    }
    if (row != axis || index < nextLight)
        return;
    fillRow(index);
    if (axis == Row::X)
        doCVSstring_X(index, value);
    else
        doCVSstring_Y(index, value);
    nextLight = index + 1;
    unsaved = true;
}

void SignalLog::endRow()
{
    if (row == Row::None)
        return;
    CVSstring += u'\n';
    row = Row::None;
}

void SignalLog::doCVSstring_Title()
{
    CVSstring = u"Date,Time,"_s;
    for (const auto &[axis, lights] : {std::pair(u'X', X_total), std::pair(u'Y', Y_total)}) {
        for (int i = 0; i < lights; ++i)
            CVSstring += axis + u"%1,"_s.arg(i, 3, 10, QLatin1Char('0'));
    }
    CVSstring += u"NG/PASS\n"_s;
}

void SignalLog::doCVSstring_X(int index, int value)
{
    qCDebug(lcSignalTest).nospace() << "doCVSstring_X: " << index;
    if (index == 0)
        CVSstring += QDateTime::currentDateTime().toString(u"yyMMdd,hh:mm:ss:zzz,"_s);
    CVSstring += QString::number(value) + u',';
}

void SignalLog::doCVSstring_Y(int index, int value)
{
    qCDebug(lcSignalTest).nospace() << "doCVSstring_Y: " << index;
    CVSstring += QString::number(value) + u",,"_s;
}

void SignalLog::writeLog()
{
    if (store() || warned)
        return;
    warned = true;
    auto *box =
        new QMessageBox(QMessageBox::Warning, QCoreApplication::translate("test_win", "warning"),
                        QCoreApplication::translate("test_win", "False to open ResultX.csv."),
                        QMessageBox::Ok, window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

void SignalLog::fillRow(int until)
{
    if (row == Row::None)
        return;
    for (; nextLight < until; ++nextLight)
        CVSstring += row == Row::X ? u","_s : u",,"_s;
}

// True when the whole text is in the file.
bool SignalLog::store()
{
    const FileDescriptor descriptor = plainfile::openEmpty(LogFile);
    QFile file;
    if (!descriptor.isValid() || !file.open(descriptor.get(), QIODevice::WriteOnly))
        return false;
    // A row that goes on is a line in the file too.
    const QByteArray text = CVSstring.toLatin1() + (row == Row::None ? "" : "\n");
    const bool written = file.write(text) == text.size() && file.flush();
    unsaved = !written;
    return written;
}
