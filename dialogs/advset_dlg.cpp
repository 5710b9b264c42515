#include "advset_dlg.h"

#include "device/malvoutil.h"
#include "lightset_dlg.h"
#include "test_win.h"
#include "ui_advset_dlg.h"

#include <QMutexLocker>

advset_dlg::advset_dlg(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::advset_dlg>())
{
    ui->setupUi(this);
}

advset_dlg::~advset_dlg() = default;

void advset_dlg::on_canbtn_clicked()
{
    hide();
}

void advset_dlg::DoRecv03(UCHAR *RecvBuf)
{
    Frame frame;
    const QMutexLocker lock(&mutex);
    MALVOUTIL::Buf_util::CopyBuf(RecvBuf, frame.data(), FrameSize);
}

void advset_dlg::on_testbtn_2_clicked()
{
    if (auto *screen = parentWidget()->findChild<LightSet_dlg *>())
        screen->show();
}

void advset_dlg::on_testbtn_clicked()
{
    if (auto *screen = parentWidget()->findChild<test_win *>())
        screen->show();
}
