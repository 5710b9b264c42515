// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/xml_class.h"
#include "device/portsettings.h"
#include "device/struct.h"
#include "portchoice.h"
#include "showing.h"

#include <QDialog>
#include <QList>

#include <memory>

class QTimer;
namespace Ui {
class connect_dlg;
}

// Chooses between USB and a serial port, and shows what is connected and why an attempt failed.
//
// A port that was opened here proves nothing about a frame, so the frame is asked something
// harmless and the window says whether it answers. Find does the same at the usual rates, one after
// the other.
//
// It asks by signals and is told by setState(). Open keeps the choices in the settings file,
// whether or not the attempt succeeds, so what was tried is there next time; leaving without Open
// drops what was changed. What the file holds beyond these choices stays, and so does a value that
// is in no list here, until the user chooses another.
class connect_dlg : public QDialog
{
    Q_OBJECT
public:
    enum class Link { None, Usb, Serial };

    using Port = PortChoice::Port;
    using PortList = PortChoice::PortList;

    explicit connect_dlg(QWidget *parent = nullptr, PortList portList = PortChoice::systemPorts);
    ~connect_dlg() override;

    void Get_Data(); // file to form
    void Set_Data(); // form to file

    // What frames travel on now, which serial port is open (perhaps beneath a USB link; empty for
    // none), and a sentence on what went wrong. An empty one leaves the last one until a serial
    // link, another attempt or the end of the dialog makes it old.
    void setState(Link link, const QString &openPort, const QString &problem);

signals:
    void Write03(UCHAR *WriteBuf); // FrameSize bytes, valid during the call
    void useUsb();
    void openUart(const QString &portName, const PortSettings &settings);
    void closeUart();

public slots:
    // Takes a report of FrameSize bytes; the first one on a serial port tells that a frame answers.
    void DoRecv03(UCHAR *RecvBuf);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private slots:
    void on_openButton_clicked();
    void on_findButton_clicked();
    void on_closeButton_clicked();
    void on_refreshButton_clicked();

private:
    void fillLists();
    void openAndAsk(const PortSettings &settings, int times);
    void ask();
    void onAskTimeout();
    void stopAsking();
    void tryNextRate();
    void endSearch(const QString &outcome);
    void keepRate(BaudRateType rate);
    void updateChoices();
    void updateState();
    void forgetProblems();

    std::unique_ptr<Ui::connect_dlg> ui;
    Showing showing{this};
    PortChoice *portChoice; // child of its box
    XML_CLASS xmlclass;
    _CONNECT_DATA ConnectData; // as last read or kept
    QString shownPort;         // the form's text for ConnectData.uartport

    Link link = Link::None;
    QString openPort;
    bool answered = false; // a frame has been heard on the open serial port

    // The question to the frame on the open serial port, if it was opened here.
    enum class Question { None, Asked, Unanswered };
    Question question = Question::None;
    int askedRate = 0; // bits per second; 0 when it has no name
    int asksLeft = 0;
    QTimer *askTimer; // child

    // Find
    bool searching = false;
    bool opening = false; // the link changes because this window asks for it
    PortSettings searched;
    QList<BaudRateType> ratesLeft;
    QStringList ratesTried;

    QString problem;     // of the link
    QString keepProblem; // of the settings file
};
