// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/lightcheckaction.h"
#include "dialogs/advset_dlg.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/connect_dlg.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/setting_dlg.h"
#include "dialogs/smoothing_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/tryout_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "dialogs/version_dlg.h"
#include "triedframe.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include <bitset>
#include <cmath>
#include <set>

// What has come from the frame that is linked, so that a window can be asked where it has from what
// it shows.
struct Reported
{
    using Levels = std::array<std::bitset<256>, command::MaxLightsX>; // by light

    int frames = 0;
    std::set<int> rotations;
    std::set<int> targets;
    bool calibrationEnded = false;
    bool firmware = false;
    std::set<int> smallest; // of the ADC lines
    std::set<int> readings; // of lights
    int lights = 0;         // so many of these have come
    int reading = 0;        // the last one
    int pages = 0;
    int lowest = 255;
    int highest = 0;
    std::array<Levels, 2> levels; // X, Y; of pages with gains; of any frame so far

    void take(const Frame &frame)
    {
        ++frames;
        if (const auto rotation = command::RotationReport::decode(frame))
            rotations.insert(rotation->code);
        firmware = firmware || command::FirmwareRecord::decode(frame);
        if (const auto lines = command::AdcReport::decode(frame))
            smallest.insert(lines->lines.min);
        if (const auto light = command::LightReport::decode(frame)) {
            ++lights;
            reading = light->adc;
            readings.insert(reading);
        }
        if (const auto page = command::ScanPage::decode(frame))
            take(*page);
        const auto step = command::CalibrationStep::decode(frame);
        if (step && step->step >= command::calibration::Step1 &&
            step->step <= command::calibration::Step4)
            targets.insert(step->step - command::calibration::Step1);
        calibrationEnded = calibrationEnded || (step && step->step == command::calibration::End);
    }
    void forget()
    {
        const auto measured = levels;
        *this = {};
        levels = measured;
    }

private:
    void take(const command::ScanPage &page)
    {
        ++pages;
        auto &axis = levels[page.axis == command::scan::AxisX ? 0 : 1];
        for (int i = 0; 2 * i + 1 < page.size; ++i) {
            if (page.first + i < int(axis.size()))
                axis[size_t(page.first + i)].set(size_t(page.pairLevel(i)));
        }
        for (int i = 0; i < page.size; ++i) {
            lowest = std::min(lowest, page.level(i));
            highest = std::max(highest, page.level(i));
        }
    }
};

// A window and a user who works in it.
class TriedWindow
{
public:
    TriedWindow(MainWindow &main, TriedFrame &theFrame, Reported &whatCame)
        : window(main)
        , frame(theFrame)
        , reported(whatCame)
    {
        sinceDeed.start();
    }
    TriedWindow(const TriedWindow &) = delete;
    TriedWindow &operator=(const TriedWindow &) = delete;
    virtual ~TriedWindow() = default;

    virtual QWidget *widget() const = 0;
    virtual void open() { widget()->show(); }
    bool isOpen() const { return widget() && widget()->isVisible(); }
    // Often, while it is open and a frame is linked.
    virtual void goOn() {}
    // What a user does when nothing comes.
    virtual void again()
    {
        widget()->close();
        open();
    }
    virtual void openPort() { window.OpenUart(frame.port(), {}); }
    // What is shown and no frame has said; empty for nothing.
    virtual QString untrue() { return {}; }
    // It shows nothing of any frame.
    virtual bool isUnknown() { return false; }
    // It shows, or has done, what the frame that is there now is like.
    virtual bool isRight() = 0;
    // Whatever is to be right has to come from now on.
    virtual void beginAnew() {}

protected:
    template <typename Widget = QPushButton>
    Widget *in(const QWidget *parent, const char *name) const
    {
        return parent->findChild<Widget *>(QString::fromLatin1(name));
    }
    template <typename Widget>
    Widget *the() const
    {
        return window.findChild<Widget *>();
    }
    void press(const QWidget *parent, const char *button) const { in(parent, button)->click(); }
    // True at most once in so many ms.
    bool isTimeFor(int ms)
    {
        if (!sinceDeed.hasExpired(ms))
            return false;
        sinceDeed.start();
        return true;
    }

    MainWindow &window;
    TriedFrame &frame;
    Reported &reported;
    QElapsedTimer sinceDeed;
};

// The main window, and those that neither ask a frame nor show what it says.
class BystandersTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<Setting_dlg>(); }
    void open() override
    {
        if (!the<TryOut_dlg>())
            new TryOut_dlg(&window);
        the<TryOut_dlg>()->show();
        for (QWidget *each : closing())
            each->show();
    }
    QString untrue() override
    {
        const QString state = in<QLabel>(&window, "stalab")->text();
        if (!in<QPushButton>(&window, "calbtn")->isEnabled() && isLinked())
            return QStringLiteral("no calibration is offered");
        if (in<QLabel>(the<Setting_dlg>(), "UseLab")->text() != QStringLiteral("Write") ||
            in<QSlider>(the<smoothing_dlg>(), "smo_lv")->value() != 5)
            return QStringLiteral("not what is kept");
        if (the<TryOut_dlg>() && !the<TryOut_dlg>()->isVisible())
            return QStringLiteral("the field for gestures is gone");
        return state.startsWith(QStringLiteral("Already")) == isLinked() ? QString() : state;
    }
    bool isUnknown() override { return false; }
    bool isRight() override
    {
        for (const QWidget *each : closing()) {
            if (!each->isVisible())
                return false;
        }
        return isLinked();
    }

private:
    bool isLinked() const
    {
        return window.connectState() == MainWindow::UsbConnected ||
               window.connectState() == MainWindow::SerialOpen;
    }
    QList<QWidget *> closing() const
    {
        return {the<Setting_dlg>(), the<smoothing_dlg>(), the<advset_dlg>()};
    }
};

// A finger calibrates, and says yes at the end; again and again.
class CalibrationTried final : public TriedWindow
{
public:
    CalibrationTried(MainWindow &main, TriedFrame &theFrame, Reported &whatCame)
        : TriedWindow(main, theFrame, whatCame)
    {
        QObject::connect(&main, &MainWindow::calibrationSaved, &main, [this] { ++saved; });
    }

    QWidget *widget() const override { return screen(); }
    void open() override
    {
        reported.targets.clear();
        press(&window, "calbtn");
    }
    void goOn() override
    {
        if (auto *asked = question()) {
            if (isTimeFor(100))
                press(asked, "pushButton");
        } else if (!screen()->isVisible()) {
            if (isTimeFor(300))
                open();
        } else if (const int target = frame.held().target; target >= 0 && target < 4 &&
                                                           screen()->currentTarget() == target &&
                                                           isTimeFor(40)) {
            frame.touch(
                {screen()->targetsX()[size_t(target)], screen()->targetsY()[size_t(target)]});
        }
    }
    QString untrue() override
    {
        if (question() && !reported.calibrationEnded)
            return QStringLiteral("asks whether to save what no frame has ended");
        const int target = screen()->currentTarget();
        return !screen()->isVisible() || target == 0 || reported.targets.contains(target)
                   ? QString()
                   : QStringLiteral("target %1").arg(target);
    }
    void again() override
    {
        screen()->close(); // Escape; goOn() begins anew
    }
    void beginAnew() override { saved = 0; }
    bool isRight() override { return saved > 0 && frame.held().kept; }

private:
    static Calibration_Dlg *screen()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *found = qobject_cast<Calibration_Dlg *>(widget))
                return found;
        }
        return nullptr;
    }
    static CalEnd_dlg *question()
    {
        return qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
    }

    int saved = 0;
};

// Applies one duration after the other.
class GesturesTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<useradv_dlg>(); }
    void goOn() override
    {
        if (over || !isTimeFor(400))
            return;
        turn = (turn + 1) % 5;
        duration()->setValue(500 * (turn + 1));
        press(widget(), "applybtn");
    }
    void again() override { press(widget(), "applybtn"); }
    void beginAnew() override { over = true; }
    bool isRight() override { return frame.held().holdMs == duration()->value(); }

private:
    QSlider *duration() const { return in<QSlider>(widget(), "rbspeed"); }

    int turn = 0;
    bool over = false;
};

// Turns the frame by a quarter, and by another.
class RotationTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<Rotation_dlg>(); }
    void goOn() override
    {
        if (!over && !isUnknown() && isTimeFor(300))
            turnBy((turn + 1) % 4);
    }
    void again() override { turnBy((turn + 1) % 4); }
    QString untrue() override
    {
        return isUnknown() || reported.rotations.contains(shown().toInt() / 90) ? QString()
                                                                                : shown();
    }
    bool isUnknown() override { return shown() == QStringLiteral("-1"); }
    void beginAnew() override { over = true; }
    bool isRight() override
    {
        return shown() == QString::number(frame.held().rotation * 90) &&
               label()->toolTip().isEmpty();
    }

private:
    QLabel *label() const { return in<QLabel>(widget(), "Rotationlab"); }
    QString shown() const { return label()->text(); }
    void turnBy(int quarters)
    {
        turn = quarters;
        constexpr std::array Buttons{"rotation0btn", "rotation90btn", "rotation180btn",
                                     "rotation270btn"};
        press(widget(), Buttons[size_t(quarters)]);
        sinceDeed.start();
    }

    int turn = 1;
    bool over = false;
};

// Looks, and looks again. Over a serial line nothing is known of versions.
class VersionsTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<Version_Dlg>(); }
    void open() override { press(&window, "pushButton"); }
    QString untrue() override
    {
        for (qsizetype i = 0; i < Names.size(); ++i) {
            const QString text = line(i);
            if (text != Nothing[i] && (text != Known[i] || (i > 1 && !reported.firmware)))
                return text;
        }
        return {};
    }
    bool isUnknown() override { return says(Nothing); }
    bool isRight() override { return says(frame.port().isEmpty() ? Known : Nothing); }

private:
    QString line(qsizetype which) const { return in<QLabel>(widget(), Names[which])->text(); }
    bool says(const QStringList &expected) const
    {
        for (qsizetype i = 0; i < Names.size(); ++i) {
            if (line(i) != expected[i])
                return false;
        }
        return true;
    }

    const QList<const char *> Names{"label_3", "label_4", "label_5", "label_6"};
    const QStringList Nothing{
        QStringLiteral("Device version: 0.0.0.0"), QStringLiteral("Hardware: 0000 - 0000"),
        QStringLiteral("SID: 00000000 - 000000"), QStringLiteral("PID: UNDEF - 000000000")};
    const QStringList Known{
        QStringLiteral("Device version: 3.0.1.0"), QStringLiteral("Hardware: 5156 - 0001"),
        QStringLiteral("SID: 5A17C0DE - 003812"), QStringLiteral("PID: UNDEF - 160501234")};
};

// Tests both axes without an end.
class SignalTestTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<test_win>(); }
    void open() override
    {
        widget()->show();
        in<QCheckBox>(widget(), "Ripche")->setChecked(false);
        begin();
    }
    void goOn() override
    {
        if (isTimeFor(500))
            begin(); // it ends with the link
    }
    QString untrue() override
    {
        if (!sinceLook.isValid() || sinceLook.hasExpired(250) || reported.pages < 2) {
            look();
            sinceLook.start();
        }
        if (top > bottom)
            return {};
        if (reported.pages == 0)
            return QStringLiteral("a curve of no frame");
        // A number stands above its point.
        constexpr int Mark = 20;
        const int highest = SignalPlot::row(4 * reported.highest) - Mark;
        const int lowest = SignalPlot::row(4 * reported.lowest) + Mark;
        return top >= highest && bottom <= lowest ? QString()
                                                  : QStringLiteral("rows %1 to %2 of %3 to %4")
                                                        .arg(top)
                                                        .arg(bottom)
                                                        .arg(highest)
                                                        .arg(lowest);
    }
    bool isUnknown() override
    {
        look();
        return top > bottom;
    }
    void beginAnew() override { pagesBefore = reported.pages; }
    bool isRight() override
    {
        look();
        return reported.pages >= pagesBefore + 4 && both;
    }

private:
    void begin()
    {
        if (in(widget(), "ALL_btn")->text() == QStringLiteral("All Test"))
            press(widget(), "ALL_btn");
    }
    // Between which rows of the plot there is something of a curve.
    void look()
    {
        const QImage image = widget()
                                 ->grab(QRect(QPoint(70, 50), SignalPlot::Size))
                                 .toImage()
                                 .convertToFormat(QImage::Format_RGB32);
        top = image.height();
        bottom = -1;
        int found[2] = {};
        for (int y = 0; y < image.height(); ++y) {
            const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                const bool ofX = row[x] == QColor(Qt::darkGreen).rgb();
                if (!ofX && row[x] != QColor(Qt::darkRed).rgb())
                    continue;
                ++found[ofX ? 0 : 1];
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
        both = found[0] > 100 && found[1] > 100;
        if (reported.pages < pagesBefore)
            pagesBefore = 0;
    }

    QElapsedTimer sinceLook;
    int top = SignalPlot::Size.height();
    int bottom = -1;
    bool both = false;
    int pagesBefore = 0;
};

// Adjusts a light up and down.
class LightScreenTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<LightSet_dlg>(); }
    void open() override
    {
        widget()->show();
        the<LightSet_dlg>()->chooseLight({LightPlot::Axis::X, 3});
    }
    void goOn() override
    {
        if (!over && in(widget(), "LightAddBtn")->isEnabled() && isTimeFor(500))
            press(widget(), ++steps % 4 < 2 ? "LightAddBtn" : "LightDecBtn");
        // The choice goes with the frame.
        if (text("LightNum").isEmpty() && isTimeFor(200))
            the<LightSet_dlg>()->chooseLight({LightPlot::Axis::X, 3});
    }
    QString untrue() override
    {
        const QString smallest = text("MinADC");
        if (!smallest.isEmpty() && !reported.smallest.contains(smallest.toInt()))
            return QStringLiteral("smallest ADC value %1").arg(smallest);
        const QString reading = text("LightADC");
        return reading.isEmpty() || reported.readings.contains(reading.toInt())
                   ? QString()
                   : QStringLiteral("reading %1").arg(reading);
    }
    bool isUnknown() override { return text("MinADC").isEmpty() && text("LightADC").isEmpty(); }
    void beginAnew() override
    {
        over = true;
        lightsBefore = reported.lights;
    }
    bool isRight() override
    {
        lightsBefore = std::min(lightsBefore, reported.lights);
        return text("MinADC") == QString::number(frame.held().smallest) &&
               reported.lights > lightsBefore &&
               text("LightADC") == QString::number(reported.reading) &&
               in(widget(), "LightAddBtn")->isEnabled();
    }

private:
    QString text(const char *name) const { return in<QLineEdit>(widget(), name)->text(); }

    int steps = 0;
    bool over = false;
    int lightsBefore = 0;
};

// Measures, until a measurement is whole.
class LightCheckTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<LightCheck_dlg>(); }
    void open() override
    {
        for (QAction *action : window.actions()) {
            if (qobject_cast<LightCheckAction *>(action))
                action->trigger();
        }
        begin();
    }
    void goOn() override
    {
        if (!isRight())
            begin();
    }
    QString untrue() override
    {
        if (!widget())
            return {};
        const lights::Measurement &shown = the<LightCheck_dlg>()->shown().measurement;
        for (const lights::Axis axis : lights::Axes) {
            const auto &known = reported.levels[axis == lights::Axis::X ? 0 : 1];
            for (const lights::Scan &scan : shown.axis(axis).scans) {
                for (size_t light = 0; light < scan.size(); ++light) {
                    if (!std::isnan(scan[light]) && !known[light].test(size_t(scan[light])))
                        return QStringLiteral("level %1 of light %2").arg(scan[light]).arg(light);
                }
            }
            // A level that is taken for a gain.
            for (const float gain : shown.axis(axis).gains) {
                if (gain > LargestGain)
                    return QStringLiteral("gain %1").arg(gain);
            }
        }
        return {};
    }
    void again() override { begin(); }
    void beginAnew() override { since = QDateTime::currentDateTimeUtc(); }
    bool isRight() override
    {
        const lights::Report &shown = the<LightCheck_dlg>()->shown();
        const lights::Measurement &measured = shown.measurement;
        return measured.x.lights == TriedFrame::usual().lightsX &&
               measured.y.lights == TriedFrame::usual().lightsY && measured.date >= since;
    }

private:
    bool isMeasuring() const
    {
        return in(widget(), "measureButton")->text().contains(QStringLiteral("Stop"));
    }
    void begin()
    {
        if (in(widget(), "measureButton")->isEnabled() && !isMeasuring() && isTimeFor(200))
            press(widget(), "measureButton");
    }

    static constexpr float LargestGain = 100; // of the simulated frame, with room

    QDateTime since = QDateTime::currentDateTimeUtc();
};

// Opens what there is, and waits for what it says of it.
class ConnectionTried final : public TriedWindow
{
public:
    using TriedWindow::TriedWindow;

    QWidget *widget() const override { return the<connect_dlg>(); }
    void openPort() override
    {
        widget()->show();
        in<QRadioButton>(widget(), "uartRadio")->setChecked(true);
        in<QComboBox>(widget(), "portBox")->setEditText(frame.port());
        press(widget(), "openButton");
    }
    void again() override
    {
        if (!frame.port().isEmpty()) {
            press(widget(), "closeButton");
            openPort();
        }
    }
    QString untrue() override
    {
        const QString text = shown();
        const bool saysUsb = text.contains(QStringLiteral("is connected by USB"));
        const bool saysOpen =
            text.contains(QStringLiteral("The serial port %1 is open.").arg(frame.port()));
        const bool saysAnswer = text.contains(QStringLiteral("A touch frame answers there."));
        if (saysUsb != (window.connectState() == MainWindow::UsbConnected) ||
            saysOpen != (window.connectState() == MainWindow::SerialOpen) ||
            (saysAnswer && reported.frames == 0))
            return text;
        return {};
    }
    bool isUnknown() override
    {
        return shown().contains(QStringLiteral("No touch frame is connected"));
    }
    bool isRight() override
    {
        return shown().contains(frame.port().isEmpty()
                                    ? QStringLiteral("A touch frame is connected by USB.")
                                    : QStringLiteral("A touch frame answers there."));
    }

private:
    QString shown() const { return in<QPlainTextEdit>(widget(), "stateText")->toPlainText(); }
};
