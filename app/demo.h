// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/sim_adapter.h"

#include <QObject>
#include <QTemporaryDir>

#include <memory>

class MainWindow;

// The tool on a simulated touch frame: clicks on the calibration screen are touches of the frame,
// and every frame is told on standard output. Settings are kept until the end, and not among the
// user's.
class Demo : public QObject
{
    Q_OBJECT
public:
    // Reads the files that are named; without a name, the usual frame on a good cable. Returns
    // nothing and the reason in problem when a file is wrong or settings can be kept nowhere.
    static std::unique_ptr<Demo> create(const QString &profileFile, const QString &faultsFile,
                                        QString *problem);
    ~Demo() override;

    std::shared_ptr<sim::SimAdapter> adapter() const { return frame; }
    void attachTo(MainWindow &window);
    bool calibrationKept() const { return frame->calibrationKept(); }

signals:
    // The simulated cable; emitted on whichever thread noticed.
    void plugged();
    void unplugged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit Demo(std::shared_ptr<sim::SimAdapter> simulated);

    std::shared_ptr<sim::SimAdapter> frame;
    QTemporaryDir home;
};
