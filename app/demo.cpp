// SPDX-License-Identifier: GPL-3.0-or-later

#include "demo.h"

#include "config/xml_class.h"
#include "dialogs/calibration_dlg.h"
#include "mainwindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QMouseEvent>
#include <QPainter>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

// An icon that nobody takes for the one of a real frame.
QIcon marked(const QIcon &icon)
{
    QIcon result;
    for (const QSize size : icon.availableSizes()) {
        QPixmap picture = icon.pixmap(size, 1);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(picture.width(), picture.height());
        painter.setPen(QPen(Qt::black, 0.05));
        painter.setBrush(Qt::yellow);
        painter.drawEllipse(QRectF(0.48, 0.48, 0.48, 0.48));
        result.addPixmap(picture);
    }
    return result;
}

} // namespace

std::unique_ptr<Demo> Demo::create(const QString &profileFile, const QString &faultsFile,
                                   QString *problem)
{
    std::optional<sim::Profile> profile(std::in_place);
    if (!profileFile.isEmpty())
        profile = sim::Profile::load(profileFile, problem);
    std::optional<sim::FaultPlan> faults(std::in_place);
    if (!faultsFile.isEmpty())
        faults = sim::FaultPlan::load(faultsFile, problem);
    if (!profile || !faults)
        return nullptr;
    std::unique_ptr<Demo> demo(
        new Demo(std::make_shared<sim::SimAdapter>(std::move(*profile), std::move(*faults))));
    if (!demo->home.isValid() || !QDir(demo->home.path()).mkdir(u".config"_s)) {
        *problem = tr("Cannot make a directory for the settings of the demonstration: %1")
                       .arg(demo->home.errorString());
        return nullptr;
    }
    XML_CLASS::useHome(demo->home.path());
    return demo;
}

Demo::Demo(std::shared_ptr<sim::SimAdapter> simulated)
    : frame(std::move(simulated))
{
    frame->onPlugChange = [this](bool in) {
        if (in)
            emit plugged();
        else
            emit unplugged();
    };
    frame->setLog([](const QString &line) { std::printf("%s\n", qPrintable(line)); });
}

Demo::~Demo()
{
    frame->onPlugChange = nullptr;
    XML_CLASS::useHome(QString());
}

void Demo::attachTo(MainWindow &window)
{
    window.setSimulated(marked(window.windowIcon()));
    // Queued, since the change is told from inside whatever call on the frame noticed it.
    connect(this, &Demo::plugged, &window, &MainWindow::OnDeviceAdded, Qt::QueuedConnection);
    connect(this, &Demo::unplugged, &window, &MainWindow::OnDeviceRemoved, Qt::QueuedConnection);
    QCoreApplication::instance()->installEventFilter(this);
}

bool Demo::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        if (const auto *screen = qobject_cast<Calibration_Dlg *>(watched)) {
            const QPointF onScreen =
                static_cast<QMouseEvent *>(event)->position() * screen->scale();
            frame->touch(screen->calibratedScreen().topLeft() + onScreen.toPoint());
        }
    }
    return QObject::eventFilter(watched, event);
}
