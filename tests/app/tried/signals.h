// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "dialogs/test_win.h"
#include "tests/support/signalcurves.h"
#include "window.h"

#include <QCheckBox>

#include <algorithm>

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
        const QImage image =
            widget()->grab(SignalCurves).toImage().convertToFormat(QImage::Format_RGB32);
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
