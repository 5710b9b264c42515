#include "rotation_dlg.h"

#include "device/commands.h"
#include "fittext.h"
#include "ui_rotation_dlg.h"

#include <QLocale>
#include <QMutexLocker>
#include <QShowEvent>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;
namespace rotation = command::rotation;
namespace offset = command::offset;

namespace {

constexpr unsigned long AnswerTimeS = 1;
constexpr UCHAR LargestCode = 3;
constexpr int QuarterTurn = 90; // degrees

Frame rotationCommand(UCHAR sub)
{
    Frame frame{};
    frame[offset::Class] = command::Rotation;
    frame[offset::Sub] = sub;
    return frame;
}

} // namespace

Rotation_dlg::Rotation_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Rotation_dlg>())
{
    ui->setupUi(this);
    setWindowFlags(Qt::Drawer);
    // A key pressed too early must not turn the frame.
    ui->okbtn->setFocus();
    updateCurrentRotationLab();
}

Rotation_dlg::~Rotation_dlg() = default;

void Rotation_dlg::SendRotationData()
{
    Frame frame = rotationCommand(rotation::Set);
    frame[offset::Length] = rotation::SetLength;
    frame[rotation::Code] = tosetRotation;
    emit Write03(frame.data());
    getCurrentRotation();
    updateCurrentRotationLab();
}

void Rotation_dlg::getCurrentRotation()
{
    if (!unansweredSince)
        setUnansweredSince(QTime::currentTime());
    Frame frame = rotationCommand(rotation::Query);
    emit Write03(frame.data());
    QThread::sleep(AnswerTimeS);
}

void Rotation_dlg::updateCurrentRotationLab()
{
    ui->Rotationlab->setText(
        currentRotation <= LargestCode ? QString::number(currentRotation * QuarterTurn) : u"-1"_s);
}

void Rotation_dlg::DoRecv03(UCHAR *RecvBuf)
{
    const QMutexLocker locker(&mutex);
    Frame frame;
    std::copy_n(RecvBuf, frame.size(), frame.begin());
    if (frame[offset::Class] == command::Rotation) {
        if (frame[offset::Sub] == rotation::DefaultReply)
            defaultRotation = frame[rotation::Code];
        if (frame[offset::Sub] == rotation::CurrentReply) {
            currentRotation = frame[rotation::Code];
            // The link repeats the last report until there is another one, so an old answer comes
            // again after the question. A new one follows the default rotation.
            if (frame != lastReport)
                setUnansweredSince(std::nullopt);
        }
    }
    lastReport = frame;
    updateCurrentRotationLab();
}

void Rotation_dlg::showEvent(QShowEvent *event)
{
    fitText(ui->label_6, ui->Rotationlab->x() - ui->label_6->x());
    QDialog::showEvent(event);
    // Coming back from another workspace is no new showing.
    if (event->spontaneous())
        return;
    getCurrentRotation();
    updateCurrentRotationLab();
}

void Rotation_dlg::setUnansweredSince(std::optional<QTime> time)
{
    unansweredSince = time;
    const QString hint = time ? tr("The touch frame has not answered since %1.")
                                    .arg(QLocale().toString(*time, u"HH:mm:ss"_s))
                              : QString();
    ui->Rotationlab->setToolTip(hint);
    ui->Rotationlab->setAccessibleDescription(hint);
}

void Rotation_dlg::setRotation(UCHAR code)
{
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
