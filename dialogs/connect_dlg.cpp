// SPDX-License-Identifier: GPL-3.0-or-later

#include "connect_dlg.h"

#include "announce.h"
#include "config/fields.h"
#include "device/records.h"
#include "scrolled.h"
#include "ui_connect_dlg.h"

#include <QComboBox>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStandardItemModel>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The values of _CONNECT_DATA::connect.
constexpr int ByUsb = 1;
constexpr int ByUart = 2;

// A frame may still be on its way to another rate when it is asked first.
constexpr auto AskPeriod = 250ms;
constexpr int AsksOfOpening = 4;
constexpr int AsksOfSearch = 2;
constexpr auto UsualRates = {BAUD9600, BAUD19200, BAUD38400, BAUD57600, BAUD115200};

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

connect_dlg::connect_dlg(QWidget *parent, PortList portList)
    : QDialog(parent)
    , ui(std::make_unique<Ui::connect_dlg>())
    , askTimer(new QTimer(this))
{
    ui->setupUi(this);
    keepOnScreen(this);
    askTimer->setSingleShot(true);
    askTimer->setInterval(AskPeriod);
    connect(askTimer, &QTimer::timeout, this, &connect_dlg::onAskTimeout);
    // The keyboard is in the field within it.
    ui->portBox->lineEdit()->setAccessibleName(ui->portBox->accessibleName());
    fillLists();
    portChoice = new PortChoice(ui->portBox, std::move(portList));
    connect(portChoice, &PortChoice::listed, this, &connect_dlg::updateChoices);
    ui->stateText->viewport()->setBackgroundRole(QPalette::Window);
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
    if (link != Link::Serial)
        stopAsking();
    if (searching && !opening && link != Link::Serial)
        endSearch(problem);
    updateChoices();
    updateState();
}

void connect_dlg::DoRecv03(UCHAR *)
{
    if (link != Link::Serial || answered)
        return;
    answered = true;
    askTimer->stop();
    if (searching) {
        searching = false;
        keepRate(searched.BaudRate);
        updateChoices();
    }
    updateState();
}

// Another program may have written the file, and adapters come and go.
void connect_dlg::showEvent(QShowEvent *event)
{
    if (showing.begins()) {
        // Not before: it takes longer than all else of the tool's start.
        portChoice->list();
        Get_Data();
        portChoice->follow(true);
    }
    QDialog::showEvent(event);
}

void connect_dlg::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (!showing.ends())
        return;
    portChoice->follow(false);
    if (searching)
        endSearch({});
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
        openAndAsk(ConnectData.uartsetting, AsksOfOpening);
    }
    updateState();
}

// The rate that is chosen comes first: a frame that hears of it is there at once.
void connect_dlg::on_findButton_clicked()
{
    if (searching) {
        endSearch(tr("The search was stopped."));
        return;
    }
    forgetProblems();
    Set_Data();
    searched = ConnectData.uartsetting;
    ratesTried.clear();
    ratesLeft.clear();
    if (bitsPerSecond(searched.BaudRate) != 0)
        ratesLeft += searched.BaudRate;
    for (const BaudRateType rate : UsualRates) {
        if (rate != searched.BaudRate)
            ratesLeft += rate;
    }
    searching = true;
    updateChoices();
    tryNextRate();
}

void connect_dlg::on_closeButton_clicked()
{
    if (searching)
        endSearch({});
    forgetProblems();
    emit closeUart();
}

void connect_dlg::on_refreshButton_clicked()
{
    portChoice->list();
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
    if (ui->portBox->currentText() != shownPort)
        ui->portBox->setEditText(ui->portBox->currentText().trimmed());
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
    oneAndAHalf->setAccessibleDescription(oneAndAHalf->toolTip());
}

// Opens the port and asks the frame, several times if need be, for its rotation: every generation
// answers that, it changes nothing, and no window takes the answer for more than it is.
void connect_dlg::openAndAsk(const PortSettings &settings, int times)
{
    stopAsking();
    answered = false;
    askedRate = bitsPerSecond(settings.BaudRate);
    {
        const QScopedValueRollback guard(opening, true);
        emit openUart(ConnectData.uartport, settings);
    }
    if (link != Link::Serial)
        return;
    question = Question::Asked;
    asksLeft = times;
    ask();
}

void connect_dlg::ask()
{
    --asksLeft;
    askTimer->start();
    Frame frame = command::request(command::Rotation, command::rotation::Query);
    emit Write03(frame.data());
}

void connect_dlg::onAskTimeout()
{
    if (asksLeft > 0) {
        ask();
        return;
    }
    question = Question::Unanswered;
    if (searching)
        tryNextRate();
    updateState();
}

void connect_dlg::stopAsking()
{
    askTimer->stop();
    question = Question::None;
}

void connect_dlg::tryNextRate()
{
    if (ratesLeft.isEmpty()) {
        endSearch(tr("No frame answers at %1 baud. Check the cable and the port.")
                      .arg(ratesTried.join(u", "_s)));
        return;
    }
    searched.BaudRate = ratesLeft.takeFirst();
    ratesTried += QString::number(bitsPerSecond(searched.BaudRate));
    openAndAsk(searched, AsksOfSearch);
    if (link != Link::Serial)
        endSearch(problem);
    updateState();
}

// In vain: the port is closed, so that it stays neither busy nor at a rate that nobody chose.
void connect_dlg::endSearch(const QString &outcome)
{
    searching = false;
    stopAsking();
    if (link == Link::Serial)
        emit closeUart();
    problem = outcome;
    updateChoices();
    updateState();
}

// What was found is what Open would use from now on.
void connect_dlg::keepRate(BaudRateType rate)
{
    ui->rateBox->setCurrentIndex(ui->rateBox->findData(rate));
    Set_Data();
}

void connect_dlg::updateChoices()
{
    const bool serial = ui->uartRadio->isChecked();
    for (QWidget *widget : std::initializer_list<QWidget *>{ui->usbRadio, ui->uartRadio})
        widget->setEnabled(!searching);
    for (QWidget *widget : std::initializer_list<QWidget *>{
             ui->portLabel, ui->portBox, ui->refreshButton, ui->rateLabel, ui->rateBox,
             ui->dataBitsLabel, ui->dataBitsBox, ui->parityLabel, ui->parityBox, ui->stopBitsLabel,
             ui->stopBitsBox})
        widget->setEnabled(serial && !searching);
    const QString port = ui->portBox->currentText();
    const bool named = serial && !port.trimmed().isEmpty();
    ui->openButton->setEnabled(!searching && (ui->usbRadio->isChecked() || named));
    // A frame on USB would take over at once.
    ui->findButton->setEnabled(searching || (named && link != Link::Usb));
    ui->findButton->setText(searching ? tr("Stop") : tr("Fi&nd"));
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
        if (searching)
            lines += tr("Looking for a frame at %1 baud.").arg(askedRate);
        else if (question != Question::None && answered)
            lines += askedRate > 0 ? tr("A frame answers at %1 baud.").arg(askedRate)
                                   : tr("A frame answers.");
        else if (question == Question::Unanswered)
            lines += tr("No answer: check cable and rate.");
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
    if (ui->stateText->toPlainText() != text) {
        ui->stateText->setPlainText(text);
        announce(ui->stateText, text);
    }
    ui->closeButton->setEnabled(!openPort.isEmpty());
}

void connect_dlg::forgetProblems()
{
    problem.clear();
    keepProblem.clear();
}
