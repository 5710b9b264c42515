// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/mainwindow.h"
#include "sim/serialsession.h"
#include "sim/sim_adapter.h"

#include <QPointer>
#include <QThread>

#include <memory>

// A simulated frame that a fault plan spoils, by USB or on a serial line, as a test of windows
// needs it: what it holds, and a finger on it.
class TriedFrame
{
public:
    struct Held
    {
        bool plugged = false;
        int transfers = 0; // so far, as the plan counts them
        int rotation = 0;  // quarter turns
        int holdMs = -1;   // gesture of the right button; -1: it was told no gestures
        int smallest = sim::FirstAdcLines.min;
        bool kept = false; // a calibration
        int target = -1;   // that it waits for a touch of
    };

    // What differs from another frame.
    static sim::Profile usual()
    {
        sim::Profile profile;
        profile.lightsX = 48;
        profile.lightsY = 27;
        profile.rotation = 1;
        return profile;
    }
    static constexpr UCHAR OtherRotation = 2;

    TriedFrame() = default;
    TriedFrame(const TriedFrame &) = delete;
    TriedFrame &operator=(const TriedFrame &) = delete;
    virtual ~TriedFrame() = default;

    virtual std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter() = 0;
    virtual void attachTo(MainWindow &window) = 0;
    virtual QString port() const { return {}; } // empty: USB
    virtual Held held() = 0;
    virtual void touch(QPoint pixel) = 0;
    // In place of the one that was unplugged; turned otherwise, and without faults.
    virtual void plugAnother() = 0;
};

class UsbTriedFrame final : public TriedFrame
{
public:
    UsbTriedFrame(const sim::Profile &profile, const sim::FaultPlan &plan)
        : frame(std::make_shared<sim::SimAdapter>(profile, plan))
    {
        // As the kernel tells of a frame; also of one that is pulled out before a window is told.
        frame->onPlugChange = [this](bool in) {
            QMetaObject::invokeMethod(
                &door,
                [this, in] {
                    if (told)
                        in ? told->OnDeviceAdded() : told->OnDeviceRemoved();
                },
                Qt::QueuedConnection);
        };
    }
    ~UsbTriedFrame() override { frame->onPlugChange = nullptr; }

    std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter() override { return frame; }
    void attachTo(MainWindow &window) override { told = &window; }
    Held held() override
    {
        Held now;
        now.plugged = frame->plugged();
        now.transfers = int(frame->transfers());
        frame->inspect([&now](const sim::Firmware &model) {
            now.rotation = model.rotation();
            if (const auto gestures = model.gestures())
                now.holdMs = gestures->rightButtonDuration;
            now.smallest = model.adcSettings().min;
            now.kept = model.calibrationKept();
            if (model.calibration() == sim::Firmware::Calibration::Waiting)
                now.target = model.calibrationStep() - 1;
        });
        return now;
    }
    void touch(QPoint pixel) override { frame->touch(pixel); }
    void plugAnother() override
    {
        frame->change([](sim::Firmware &model) {
            model.command(command::RotationCommand{OtherRotation}.encode());
            model.command(command::AdcLines{3600, 3900, 2900, 3100, 900, 500}.encode());
            model.restart();
        });
        frame->plug();
    }

private:
    std::shared_ptr<sim::SimAdapter> frame;
    QPointer<MainWindow> told;
    QObject door;
};

// Lives in a thread of its own: it goes on while the windows do not.
class LineTriedFrame final : public TriedFrame
{
public:
    LineTriedFrame(const sim::Profile &profile, const sim::FaultPlan &plan, QString theLink)
        : link(std::move(theLink))
    {
        door.moveToThread(&thread);
        thread.start();
        plugIn(profile, plan);
    }
    ~LineTriedFrame() override
    {
        there([this] { session.reset(); });
        thread.quit();
        thread.wait();
    }

    std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter() override
    {
        return std::make_shared<sim::SimAdapter>(sim::Profile(), sim::FaultPlan(),
                                                 sim::SimOptions{.plugged = false, .clock = {}});
    }
    void attachTo(MainWindow &) override {}
    QString port() const override { return link; }
    Held held() override
    {
        QString words;
        there([&] { words = session->state(); });
        const auto word = [&words](const QString &name) {
            return QString(u' ' + words).section(u' ' + name + u'=', 1).section(u' ', 0, 0);
        };
        Held now;
        now.plugged = word(QStringLiteral("plugged")) == u'1';
        now.transfers = word(QStringLiteral("transfers")).toInt();
        now.rotation = word(QStringLiteral("rotation")).toInt();
        const QStringList gestures = word(QStringLiteral("gestures")).split(u',');
        if (gestures.size() > 2)
            now.holdMs = gestures[2].toInt();
        now.kept = word(QStringLiteral("kept")) == u'1';
        if (word(QStringLiteral("calibration")) == QStringLiteral("waiting"))
            now.target = word(QStringLiteral("step")).toInt() - 1;
        return now;
    }
    void touch(QPoint pixel) override
    {
        there([this, pixel] { session->touch(pixel); });
    }
    void plugAnother() override
    {
        sim::Profile other = usual();
        other.rotation = OtherRotation;
        plugIn(other, {});
    }

private:
    template <typename Action>
    void there(const Action &action)
    {
        QMetaObject::invokeMethod(&door, action, Qt::BlockingQueuedConnection);
    }
    void plugIn(const sim::Profile &profile, const sim::FaultPlan &plan)
    {
        there([&] {
            session.reset();
            session = std::make_unique<sim::SerialSession>(
                profile, plan,
                [start = std::chrono::steady_clock::now()] {
                    return std::chrono::duration_cast<std::chrono::milliseconds>(
                        std::chrono::steady_clock::now() - start);
                },
                link);
            session->plug();
        });
    }

    const QString link;
    QThread thread;
    QObject door;                                // in the thread
    std::unique_ptr<sim::SerialSession> session; // in the thread
};
