// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QWidget;

// The log of a signal test: TestLog.csv in the working directory, one row a scan of the axes under
// test, in signal units.
//
// A row begins with the first light of an axis; the lights of a page that got lost have empty
// fields. The file is written as a whole, when a log ends; what could not be written is kept, and
// tried again with the next end and at destruction.
class SignalLog
{
public:
    enum class Row { None, X, Y };

    explicit SignalLog(QWidget *window);
    ~SignalLog();
    SignalLog(const SignalLog &) = delete;
    SignalLog &operator=(const SignalLog &) = delete;

    // Ends the log of the test before. A file that cannot be written is told once a test.
    void beginTest();
    // Takes levels from here on. Until there is one the file stays as it is.
    void begin(int lightsX, int lightsY);
    void end();
    bool isRunning() const { return running; }
    bool isUnsaved() const { return unsaved; }

    // Nothing while no log runs.
    void level(Row axis, int index, int value);
    void endRow();

    void doCVSstring_Title();
    void doCVSstring_X(int index, int value);
    void doCVSstring_Y(int index, int value);
    void writeLog();

private:
    void fillRow(int until);
    bool store();

    QWidget *window; // not owned; shows the warning
    QString CVSstring;
    int X_total = 0; // lights in the title
    int Y_total = 0;
    bool running = false;
    bool unsaved = false; // CVSstring holds levels that the file does not
    bool warned = false;  // of the file, in this test
    Row row = Row::None;  // the axis being appended to the last row
    int nextLight = 0;    // of that axis
};
