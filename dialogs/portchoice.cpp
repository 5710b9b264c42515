// SPDX-License-Identifier: GPL-3.0-or-later

#include "portchoice.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QSerialPortInfo>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTimer>

#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr int PopupWidth = 262;
constexpr auto LookPeriod = 1s;

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

} // namespace

QList<PortChoice::Port> PortChoice::systemPorts()
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

PortChoice::PortChoice(QComboBox *theBox, PortList thePorts)
    : QObject(theBox)
    , box(theBox)
    , ports(std::move(thePorts))
    , timer(new QTimer(this))
{
    box->setItemDelegate(new PortDelegate(box));
    box->view()->setMinimumWidth(PopupWidth);
    // It would lengthen a typed name to one of the list.
    box->setCompleter(nullptr);
    timer->setInterval(LookPeriod);
    connect(timer, &QTimer::timeout, this, &PortChoice::lookAgain);
}

void PortChoice::follow(bool on)
{
    if (on)
        timer->start();
    else
        timer->stop();
}

// A list that somebody chooses from stays.
void PortChoice::lookAgain()
{
    if (!box->view()->isVisible() && ports() != shown)
        list();
}

void PortChoice::list()
{
    shown = ports();
    QLineEdit *edit = box->lineEdit();
    const QString text = edit->text();
    const int cursor = edit->cursorPosition();
    const int selected = edit->selectionStart();
    const int length = edit->selectionLength();
    {
        const QSignalBlocker quiet(box);
        box->clear();
        for (const Port &port : shown) {
            const QString whole = port.adapter.isEmpty()
                                      ? port.name
                                      : tr("%1: %2", "port, adapter").arg(port.name, port.adapter);
            box->addItem(port.name);
            const int row = box->count() - 1;
            box->setItemData(row, whole, Qt::ToolTipRole);
            box->setItemData(row, whole, Qt::AccessibleTextRole);
        }
        box->setEditText(text);
        edit->setCursorPosition(cursor);
        // A selection that was made backwards ends where the cursor is.
        if (selected >= 0 && cursor == selected)
            edit->setSelection(selected + length, -length);
        else if (selected >= 0)
            edit->setSelection(selected, length);
    }
    emit listed();
}
