// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/hid_adapter.h"
#include "device/pacing.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

// A touch frame of the test's: hands out numbered reports and records what is sent.
class FakeAdapter final : public HID_AdpterPacket::HID_Adapter
{
public:
    using Clock = std::chrono::steady_clock;

    std::atomic<bool> present{true};
    std::atomic<bool> paced{false}; // 64 pauses of 1 ms a read, as the real one makes
    std::atomic<bool> sendFails{false};
    std::atomic<bool> readsFail{false};
    std::atomic<int> reads{0};
    std::atomic<int> closes{0};
    std::atomic<quint32> version{0x3010};
    std::atomic<int> nowReading{0};
    std::atomic<int> nowSending{0};
    std::atomic<int> usesAfterClose{
        0};                        // reads and sends that were under way at a close or came later
    std::atomic<UCHAR> otherId{0}; // byte 0 of every report instead of the one asked for

    std::atomic<int> readId{-1}; // that the last read was asked for

    struct Sent
    {
        QByteArray frame; // 64 bytes
        Clock::time_point when;
        int id; // the report's
    };
    struct Search
    {
        QString collection;
        bool open;

        bool operator==(const Search &) const = default;
    };
    QList<Search> searches; // main thread only

    // Every report reads so, with its number in bytes 60 to 62; without one, class and sub are 0.
    void setReport(const QByteArray &bytes)
    {
        const std::lock_guard guard(lock);
        report = bytes;
    }
    QList<Sent> sent()
    {
        const std::lock_guard guard(lock);
        // A copy of its own: a shared list would be let go without the lock.
        return {frames.cbegin(), frames.cend()};
    }
    // Bytes 1 to count of each frame sent, as hexadecimal text.
    QList<QByteArray> sentBytes(int count = 8)
    {
        QList<QByteArray> bytes;
        for (const Sent &one : sent())
            bytes.append(one.frame.mid(1, count).toHex(' '));
        return bytes;
    }
    // The same of the last one; nothing while there is none.
    QByteArray lastSent(int count = 8)
    {
        const QList<QByteArray> bytes = sentBytes(count);
        return bytes.isEmpty() ? QByteArray() : bytes.last();
    }
    void forgetSent()
    {
        const std::lock_guard guard(lock);
        frames.clear();
    }
    // Between the end of a read and the begin of the next; the longest there is before the second.
    Clock::duration shortestRest()
    {
        const std::lock_guard guard(lock);
        return shortest;
    }
    // Reads hang from now on, until released or closed.
    void stallReads(bool stall)
    {
        {
            const std::lock_guard guard(lock);
            stalled = stall;
        }
        unstalled.notify_all();
    }
    // Sends hang from now on, until released.
    void stallSends(bool stall)
    {
        {
            const std::lock_guard guard(lock);
            sendsStalled = stall;
        }
        unstalled.notify_all();
    }
    void setProblem(const HID_AdpterPacket::NodeProblem &now) { problem = now; }

    static int numberOf(const UCHAR *frame) { return frame[60] | frame[61] << 8 | frame[62] << 16; }

    bool DeviceNotification(void *window) override { return window != nullptr; }
    bool IsDevOpened() override { return opened; }
    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        const Use use(*this);
        ++nowSending;
        std::unique_lock guard(lock);
        unstalled.wait(guard, [this] { return !sendsStalled; });
        --nowSending;
        frames.append(
            {QByteArray(reinterpret_cast<char *>(buf), FrameSize), Clock::now(), reportId});
        return sendFails;
    }
    int ReadReport(UCHAR reportId, UCHAR *buf) override
    {
        const Use use(*this);
        const auto begin = Clock::now();
        ++nowReading;
        readId = reportId;
        if (paced) {
            Pacer pacer;
            for (int i = 0; i < FrameSize; ++i)
                pacer.sleep(std::chrono::milliseconds(1));
        }
        std::unique_lock guard(lock);
        unstalled.wait(guard, [this] { return !stalled; });
        std::fill_n(buf, FrameSize, UCHAR(0));
        std::copy_n(report.cbegin(), std::min<qsizetype>(report.size(), FrameSize), buf);
        const int number = ++reads;
        buf[60] = UCHAR(number);
        buf[61] = UCHAR(number >> 8);
        buf[62] = UCHAR(number >> 16);
        buf[0] = otherId ? otherId.load() : reportId;
        if (number > 1)
            shortest = std::min(shortest, begin - readEnded);
        readEnded = Clock::now();
        --nowReading;
        return readsFail ? -1 : 0;
    }
    void CloseDevice() override
    {
        opened = false;
        ++closes;
        usesAfterClose += users;
    }
    bool DoFindDev(QString collection, bool open) override
    {
        searches.append({collection, open});
        if (present && open)
            opened = true;
        return present;
    }
    bool GetVersion() override
    {
        hidver.VendorID = 0x5156;
        hidver.ProductID = 1;
        hidver.VersionNumber = version;
        return false;
    }
    HID_AdpterPacket::NodeProblem LastProblem() const override { return problem; }
    QString Node() const override { return QStringLiteral("/dev/usb/fake"); }

private:
    // A call of one of the threads.
    struct Use
    {
        explicit Use(FakeAdapter &owner)
            : adapter(owner)
        {
            ++adapter.users;
            if (!adapter.opened)
                ++adapter.usesAfterClose;
        }
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;
        ~Use() { --adapter.users; }
        FakeAdapter &adapter;
    };

    std::mutex lock; // protects report, frames, both stalls and the rest
    std::condition_variable unstalled;
    QByteArray report;
    QList<Sent> frames;
    bool stalled = false;
    bool sendsStalled = false;
    Clock::time_point readEnded;
    Clock::duration shortest = Clock::duration::max();
    std::atomic<bool> opened{false};
    std::atomic<int> users{0};
    HID_AdpterPacket::NodeProblem problem;
};
