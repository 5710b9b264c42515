// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/pty.h"

#include <QByteArrayList>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// A frame on a serial line that answers what a test types, and nothing else. Frames are hexadecimal
// text from byte 0 on: "00 A7 02". An answer is filled up with zeros.
class AnsweringLine
{
public:
    struct Answer
    {
        const char *question; // how it begins
        std::function<QByteArrayList()> says;
    };

    explicit AnsweringLine(std::vector<Answer> theAnswers)
        : answers(std::move(theAnswers))
        , frame([this] { run(); })
    {
    }
    AnsweringLine(const AnsweringLine &) = delete;
    AnsweringLine &operator=(const AnsweringLine &) = delete;
    ~AnsweringLine()
    {
        ends = true;
        frame.join();
    }

    QString path() const { return pty.path(); }
    // The frames that began so.
    QByteArrayList heard(const char *beginning) const
    {
        const std::lock_guard lock(mutex);
        QByteArrayList found;
        for (const QByteArray &one : all) {
            if (one.startsWith(QByteArray::fromHex(beginning)))
                found += one.toHex(' ').toUpper();
        }
        return found;
    }

private:
    static constexpr int SyncSize = 2;
    static constexpr int LengthByte = 3;

    void run()
    {
        QByteArray line;
        while (!ends) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            line += pty.received();
            for (;;) {
                const qsizetype start = line.indexOf(QByteArray::fromHex("5156"));
                const qsizetype length = start + SyncSize + LengthByte;
                if (start < 0 || length >= line.size())
                    break;
                const qsizetype size = uchar(line[length]) + 6;
                if (line.size() < start + SyncSize + size)
                    break;
                answer(line.mid(start + SyncSize, size));
                line.remove(0, start + SyncSize + size);
            }
        }
    }
    void answer(const QByteArray &question)
    {
        {
            const std::lock_guard lock(mutex);
            all += question;
        }
        for (const Answer &one : answers) {
            if (!question.startsWith(QByteArray::fromHex(one.question)))
                continue;
            for (const QByteArray &text : one.says()) {
                QByteArray bytes = QByteArray::fromHex(text);
                bytes.append(uchar(bytes[LengthByte]) + 6 - bytes.size(), '\0');
                pty.send(QByteArray::fromHex("5156") + bytes);
            }
        }
    }

    Pty pty;
    const std::vector<Answer> answers;
    mutable std::mutex mutex;
    QByteArrayList all; // guarded by mutex
    std::atomic_bool ends = false;
    std::thread frame; // begins when the rest is there
};
