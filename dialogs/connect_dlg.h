#pragma once

#include "config/xml_class.h"
#include "device/portsettings.h"
#include "device/struct.h"

#include <QDialog>
#include <QList>

#include <functional>
#include <memory>

class QComboBox;
namespace Ui {
class connect_dlg;
}

// Chooses between USB and a serial port, and shows what is connected and why an attempt failed.
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

    struct Port
    {
        QString name;    // such as "ttyUSB0"
        QString adapter; // what it calls itself; may be empty
    };
    using PortList = std::function<QList<Port>()>;
    static QList<Port> systemPorts();

    explicit connect_dlg(QWidget *parent = nullptr, PortList portList = systemPorts);
    ~connect_dlg() override;

    void Get_Data(); // file to form
    void Set_Data(); // form to file

    // What frames travel on now, which serial port is open (perhaps beneath a USB link; empty for
    // none), and a sentence on what went wrong. An empty one leaves the last one until a serial
    // link, another attempt or the end of the dialog makes it old.
    void setState(Link link, const QString &openPort, const QString &problem);

signals:
    void Write03(UCHAR *WriteBuf); // as every dialog has it; nothing here sends a frame
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
    void on_closeButton_clicked();
    void on_refreshButton_clicked();

private:
    void fillLists();
    void listPorts();
    void updateChoices();
    void updateState();
    void forgetProblems();

    std::unique_ptr<Ui::connect_dlg> ui;
    PortList ports;
    XML_CLASS xmlclass;
    _CONNECT_DATA ConnectData; // as last read or kept
    QString shownPort;         // the form's text for ConnectData.uartport

    Link link = Link::None;
    QString openPort;
    bool answered = false; // a frame has been heard on the open serial port
    QString problem;       // of the link
    QString keepProblem;   // of the settings file
};
