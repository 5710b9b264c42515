#include "rotation_dlg.h"

#include "device/records.h"
#include "fittext.h"
#include "ui_rotation_dlg.h"

#include <QLocale>
#include <QShowEvent>
#include <QThread>

using namespace Qt::StringLiterals;
namespace rotation = command::rotation;

namespace {

constexpr unsigned long AnswerTimeS = 1;
constexpr UCHAR LargestCode = 3;
constexpr int QuarterTurn = 90; // degrees

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
    Frame frame = command::RotationCommand{tosetRotation}.encode();
    emit Write03(frame.data());
    getCurrentRotation();
    updateCurrentRotationLab();
}

void Rotation_dlg::getCurrentRotation()
{
    if (!unansweredSince)
        setUnansweredSince(QTime::currentTime());
    Frame frame = command::request(command::Rotation, rotation::Query);
    emit Write03(frame.data());
    QThread::sleep(AnswerTimeS);
}

void Rotation_dlg::updateCurrentRotationLab()
{
    ui->Rotationlab->setText(
        currentRotation <= LargestCode ? QString::number(currentRotation * QuarterTurn) : u"-1"_s);
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
    const bool isNew = news.take(frame) == ReportNews::News::New;
    if (const auto report = command::RotationReport::decode(frame)) {
        if (report->sub == rotation::DefaultReply) {
            defaultRotation = report->code;
        } else {
            currentRotation = report->code;
            // The link repeats the last report until there is another one, so an old answer comes
            // again after the question. A new one follows the default rotation.
            if (isNew)
                setUnansweredSince(std::nullopt);
        }
    }
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
