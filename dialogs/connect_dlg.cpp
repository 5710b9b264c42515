#include "connect_dlg.h"

#include "config/fields.h"
#include "ui_connect_dlg.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHideEvent>
#include <QSerialPortInfo>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The values of _CONNECT_DATA::connect.
constexpr int ByUsb = 1;
constexpr int ByUart = 2;

constexpr int PopupWidth = 262;

// Shows ports with their adapters' names, which are no part of what a chosen port is called.
class PortDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text = index.data(Qt::ToolTipRole).toString();
    }
};

// Selects a number of the settings file; one that is in no list is listed as what it is.
void showNumber(QComboBox *box, int listed, int number)
{
    while (box->count() > listed)
        box->removeItem(listed);
    if (box->findData(number) < 0)
        box->addItem(connect_dlg::tr("unknown (%1)").arg(number), number);
    box->setCurrentIndex(box->findData(number));
}

} // namespace

QList<connect_dlg::Port> connect_dlg::systemPorts()
{
    QList<Port> found;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts()) {
        QStringList words = {info.manufacturer(), info.description()};
        words.removeAll(QString());
        words.removeDuplicates();
        found.append({info.portName(), words.join(u' ')});
    }
    return found;
}

connect_dlg::connect_dlg(QWidget *parent, PortList portList)
    : QDialog(parent)
    , ui(std::make_unique<Ui::connect_dlg>())
    , ports(std::move(portList))
{
    ui->setupUi(this);
    fillLists();
    ui->portBox->setItemDelegate(new PortDelegate(ui->portBox));
    ui->portBox->view()->setMinimumWidth(PopupWidth);
    ui->stateText->viewport()->setBackgroundRole(QPalette::Window);
    // It would lengthen a typed name to one of the list.
    ui->portBox->setCompleter(nullptr);
    connect(ui->portBox, &QComboBox::currentTextChanged, this, &connect_dlg::updateChoices);
    connect(ui->usbRadio, &QRadioButton::toggled, this, &connect_dlg::updateChoices);
    connect(ui->uartRadio, &QRadioButton::toggled, this, &connect_dlg::updateChoices);
    Get_Data();
    updateState();
}

connect_dlg::~connect_dlg() = default;

void connect_dlg::setState(Link nowLinked, const QString &nowOpen, const QString &why)
{
    if (link == Link::Serial && nowLinked == Link::Usb && !nowOpen.isEmpty())
        problem = tr("The frame took over from the serial port. Unplug it to use the port.");
    else if (!why.isEmpty() || nowLinked == Link::Serial)
        problem = why;
    answered = answered && nowLinked == Link::Serial;
    link = nowLinked;
    openPort = nowOpen;
    updateState();
}

void connect_dlg::DoRecv03(UCHAR *)
{
    if (link != Link::Serial || answered)
        return;
    answered = true;
    updateState();
}

// Another program may have written the file, and adapters come and go.
void connect_dlg::showEvent(QShowEvent *event)
{
    if (!event->spontaneous()) {
        // Not before: it takes longer than all else of the tool's start.
        listPorts();
        Get_Data();
    }
    QDialog::showEvent(event);
}

void connect_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (event->spontaneous())
        return;
    Get_Data();
    forgetProblems();
    updateState();
}

void connect_dlg::on_openButton_clicked()
{
    forgetProblems();
    Set_Data();
    if (ConnectData.connect == ByUsb) {
        emit useUsb();
        if (link != Link::Usb && problem.isEmpty())
            problem = tr("No touch frame was found by USB. One that is plugged in is connected at "
                         "once.");
    } else {
        answered = false;
        emit openUart(ConnectData.uartport, ConnectData.uartsetting);
    }
    updateState();
}

void connect_dlg::on_closeButton_clicked()
{
    forgetProblems();
    emit closeUart();
}

void connect_dlg::on_refreshButton_clicked()
{
    listPorts();
}

void connect_dlg::Get_Data()
{
    ConnectData = xmlclass.read_connect();
    ui->portBox->setEditText(ConnectData.uartport);
    shownPort = ui->portBox->currentText();
    const PortSettings &settings = ConnectData.uartsetting;
    showNumber(ui->rateBox, BAUD256000 + 1, settings.BaudRate);
    showNumber(ui->dataBitsBox, DATA_8 + 1, settings.DataBits);
    showNumber(ui->parityBox, PAR_SPACE + 1, settings.Parity);
    showNumber(ui->stopBitsBox, STOP_2 + 1, settings.StopBits);
    // Neither is chosen by a number that means nothing, which exclusive buttons would not allow.
    for (const auto &[radio, number] :
         {std::pair(ui->usbRadio, ByUsb), std::pair(ui->uartRadio, ByUart)}) {
        radio->setAutoExclusive(false);
        radio->setChecked(ConnectData.connect == number);
    }
    for (QRadioButton *radio : {ui->usbRadio, ui->uartRadio})
        radio->setAutoExclusive(true);
    updateChoices();
}

void connect_dlg::Set_Data()
{
    const QString port =
        ui->portBox->currentText() == shownPort ? ConnectData.uartport : ui->portBox->currentText();
    ConnectData = xmlclass.read_connect();
    ConnectData.connect = ui->usbRadio->isChecked() ? ByUsb : ByUart;
    ConnectData.uartport = port;
    shownPort = ui->portBox->currentText();
    PortSettings &settings = ConnectData.uartsetting;
    settings.BaudRate = BaudRateType(ui->rateBox->currentData().toInt());
    settings.DataBits = DataBitsType(ui->dataBitsBox->currentData().toInt());
    settings.Parity = ParityType(ui->parityBox->currentData().toInt());
    settings.StopBits = StopBitsType(ui->stopBitsBox->currentData().toInt());
    xmlclass.write_connect(ConnectData);
    // What a store reads from no file is what it had before.
    if (xmlclass.read_connect() != ConnectData || !xmlclass.gaveWhole(element::Connect))
        keepProblem =
            tr("%1 cannot be written: these choices are not kept.").arg(XML_CLASS::filePath());
}

void connect_dlg::fillLists()
{
    for (int rate = BAUD50; rate <= BAUD256000; ++rate)
        ui->rateBox->addItem(QString::number(bitsPerSecond(BaudRateType(rate))), rate);
    for (int bits = DATA_5; bits <= DATA_8; ++bits)
        ui->dataBitsBox->addItem(QString::number(5 + bits), bits);
    ui->parityBox->addItem(tr("None", "parity"), PAR_NONE);
    ui->parityBox->addItem(tr("Odd", "parity"), PAR_ODD);
    ui->parityBox->addItem(tr("Even", "parity"), PAR_EVEN);
    ui->parityBox->addItem(tr("Mark", "parity"), PAR_MARK);
    ui->parityBox->addItem(tr("Space", "parity"), PAR_SPACE);
    ui->stopBitsBox->addItem(u"1"_s, STOP_1);
    ui->stopBitsBox->addItem(tr("1.5", "stop bits"), STOP_1_5);
    ui->stopBitsBox->addItem(u"2"_s, STOP_2);
    // A file may say so, but no port here can be set so.
    auto *oneAndAHalf = static_cast<QStandardItemModel *>(ui->stopBitsBox->model())->item(STOP_1_5);
    oneAndAHalf->setEnabled(false);
    oneAndAHalf->setToolTip(tr("Serial ports cannot be set to 1.5 stop bits here."));
}

// What is typed or chosen stays.
void connect_dlg::listPorts()
{
    const QString text = ui->portBox->currentText();
    {
        const QSignalBlocker quiet(ui->portBox);
        ui->portBox->clear();
        for (const Port &port : ports()) {
            const QString whole = port.adapter.isEmpty()
                                      ? port.name
                                      : tr("%1: %2", "port, adapter").arg(port.name, port.adapter);
            ui->portBox->addItem(port.name);
            const int row = ui->portBox->count() - 1;
            ui->portBox->setItemData(row, whole, Qt::ToolTipRole);
            ui->portBox->setItemData(row, whole, Qt::AccessibleTextRole);
        }
        ui->portBox->setEditText(text);
    }
    updateChoices();
}

void connect_dlg::updateChoices()
{
    const bool serial = ui->uartRadio->isChecked();
    for (QWidget *widget : std::initializer_list<QWidget *>{
             ui->portLabel, ui->portBox, ui->refreshButton, ui->rateLabel, ui->rateBox,
             ui->dataBitsLabel, ui->dataBitsBox, ui->parityLabel, ui->parityBox, ui->stopBitsLabel,
             ui->stopBitsBox})
        widget->setEnabled(serial);
    const QString port = ui->portBox->currentText();
    ui->openButton->setEnabled(ui->usbRadio->isChecked() || (serial && !port.isEmpty()));
    const int row = ui->portBox->findText(port, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    ui->portBox->setToolTip(row < 0 ? port
                                    : ui->portBox->itemData(row, Qt::ToolTipRole).toString());
}

void connect_dlg::updateState()
{
    QStringList lines;
    switch (link) {
    case Link::Usb:
        lines += tr("A touch frame is connected by USB.");
        break;
    case Link::Serial:
        lines += tr("The serial port %1 is open.").arg(openPort);
        lines += answered ? tr("A touch frame answers there.")
                          : tr("Nothing has come from a touch frame there yet.");
        break;
    case Link::None:
        lines += openPort.isEmpty() ? tr("No touch frame is connected, no serial port is open.")
                                    : tr("No touch frame is connected.");
        break;
    }
    if (link != Link::Serial && !openPort.isEmpty())
        lines += tr("The serial port %1 is open but not used.").arg(openPort);
    lines += problem;
    lines += keepProblem;
    lines.removeAll(QString());
    const QString text = lines.join(u'\n');
    // A reader's place and selection stay while nothing is new.
    if (ui->stateText->toPlainText() != text)
        ui->stateText->setPlainText(text);
    ui->closeButton->setEnabled(!openPort.isEmpty());
}

void connect_dlg::forgetProblems()
{
    problem.clear();
    keepProblem.clear();
}
