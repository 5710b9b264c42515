// SPDX-License-Identifier: GPL-3.0-or-later

#include "rotation_dlg.h"

#include "announce.h"
#include "device/records.h"
#include "fittext.h"
#include "readable.h"
#include "scrolled.h"
#include "ui_rotation_dlg.h"

#include <QLocale>
#include <QThread>
#include <QTimer>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
namespace rotation = command::rotation;

namespace {

constexpr unsigned long AnswerTimeS = 1;
constexpr auto Patience = 3s;
// Turns of an idle event loop by which all that came during the pause has been delivered.
constexpr int SettlingTurns = 3;
constexpr UCHAR LargestCode = 3;
constexpr int QuarterTurn = 90; // degrees

} // namespace

Rotation_dlg::Rotation_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Rotation_dlg>())
    , patience(new QTimer(this))
    , settling(new QTimer(this))
{
    ui->setupUi(this);
    keepOnScreen(this);
    readable::keep(ui->Rotationlab);
    // A number that stands for itself, in a label that begins where the words may end.
    ui->Rotationlab->setIndent(ui->Rotationlab->fontMetrics().horizontalAdvance(u' '));
    patience->setSingleShot(true);
    connect(patience, &QTimer::timeout, this, &Rotation_dlg::giveUp);
    connect(settling, &QTimer::timeout, this, [this] {
        if (--turnsToSettle <= 0)
            settling->stop();
    });
    setWindowFlags(Qt::Drawer);
    setWindowModality(Qt::WindowModal); // the tray's menu still works
    // A key pressed too early must not turn the frame.
    ui->okbtn->setFocus();
    updateCurrentRotationLab();
}

Rotation_dlg::~Rotation_dlg() = default;

void Rotation_dlg::SendRotationData()
{
    Frame frame = command::RotationCommand{tosetRotation}.encode();
    emit Write03(frame.data());
    getCurrentRotation();
    updateCurrentRotationLab();
}

void Rotation_dlg::getCurrentRotation()
{
    if (!unansweredSince) {
        setUnansweredSince(QTime::currentTime());
        patience->start(Patience);
    }
    Frame frame = command::request(command::Rotation, rotation::Query);
    emit Write03(frame.data());
    QThread::sleep(AnswerTimeS);
    turnsToSettle = SettlingTurns;
    settling->start(0ms);
}

void Rotation_dlg::updateCurrentRotationLab()
{
    const bool isKnown = currentRotation <= LargestCode;
    const QString text = isKnown ? QString::number(currentRotation * QuarterTurn) : u"-1"_s;
    if (text == ui->Rotationlab->text())
        return;
    ui->Rotationlab->setText(text);
    announce(ui->Rotationlab, isKnown ? text : ui->Rotationlab->accessibleDescription());
}

void Rotation_dlg::OnLinkEnded()
{
    defaultRotation = UnknownRotation;
    currentRotation = UnknownRotation;
    news.forget();
    setUnansweredSince(std::nullopt);
    updateCurrentRotationLab();
}

void Rotation_dlg::DoRecv03(UCHAR *RecvBuf)
{
    const Frame frame = command::frameAt(RecvBuf);
    // The link repeats the last report until there is another one, so an old answer comes again
    // after the question. A new one follows the default rotation.
    const bool isNew = news.take(frame) == ReportNews::News::New;
    const auto report = command::RotationReport::decode(frame);
    if (report && isNew) {
        if (report->sub == rotation::DefaultReply) {
            defaultRotation = report->code;
        } else {
            currentRotation = report->code;
            setUnansweredSince(std::nullopt);
        }
    }
    updateCurrentRotationLab();
}

void Rotation_dlg::showEvent(QShowEvent *event)
{
    fitText(ui->label_6, ui->Rotationlab->x() - ui->label_6->x());
    QDialog::showEvent(event);
    if (!showing.begins())
        return;
    getCurrentRotation();
    updateCurrentRotationLab();
}

void Rotation_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    showing.ends();
}

void Rotation_dlg::setUnansweredSince(std::optional<QTime> time)
{
    unansweredSince = time;
    if (!time)
        patience->stop();
    const QString hint = time ? tr("The touch frame has not answered since %1.")
                                    .arg(QLocale().toString(*time, u"HH:mm:ss"_s))
                              : QString();
    ui->Rotationlab->setToolTip(hint);
    ui->Rotationlab->setAccessibleDescription(hint);
}

// Perhaps the frame is no longer what it was when it answered last.
void Rotation_dlg::giveUp()
{
    currentRotation = UnknownRotation;
    updateCurrentRotationLab();
}

void Rotation_dlg::setRotation(UCHAR code)
{
    if (settling->isActive())
        return;
    tosetRotation = code;
    SendRotationData();
}

void Rotation_dlg::on_okbtn_clicked()
{
    close();
}

void Rotation_dlg::on_rotation0btn_clicked()
{
    setRotation(0);
}

void Rotation_dlg::on_rotation90btn_clicked()
{
    setRotation(1);
}

void Rotation_dlg::on_rotation180btn_clicked()
{
    setRotation(2);
}

void Rotation_dlg::on_rotation270btn_clicked()
{
    setRotation(3);
}
