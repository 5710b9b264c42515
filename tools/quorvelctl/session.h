// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/link.h"
#include "failure.h"
#include "output.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonObject>
#include <QObject>
#include <QStringList>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace HID_AdpterPacket {
class HiddevIo;
}
namespace capture {
class Recorder;
}
namespace doctor {
class Machine;
}

namespace ctl {

// What a run of the program meets; tests stand in for it.
struct Surroundings
{
    QIODevice *out = nullptr; // not owned, like the next
    QIODevice *err = nullptr;
    bool errIsTerminal = false;
    int input = -1; // descriptor of the standard input
    bool inputIsTerminal = false;
    // The frame on USB, at one node only if one is named.
    std::function<std::shared_ptr<HID_AdpterPacket::HID_Adapter>(const QString &node)> adapter;
    HID_AdpterPacket::HiddevIo *hiddev = nullptr; // for all nodes that there are; not owned
    const doctor::Machine *machine = nullptr;     // this one if none is given; not owned
};

// What the options that every command takes say.
struct Options
{
    static constexpr auto DefaultTimeout = std::chrono::milliseconds(3000);

    bool json = false;
    QString usb;                      // node of the frame; empty: any
    QString port;                     // serial port of the frame; empty: it is on USB
    std::optional<BaudRateType> rate; // that it is told to use; nothing: PortSettings' own
    std::chrono::milliseconds timeout = DefaultTimeout; // for each answer of the frame
    // How long to wait for a frame to be there.
    std::chrono::milliseconds wait = std::chrono::milliseconds(0);
    bool waitsForever = false;
    QString recordFile; // for what travels; empty: nothing is recorded
};

// One command and its frame: links it, asks and waits for the matching answer, and knows what has
// been sent that nobody confirmed.
//
// Everything that waits has a bound and throws a Failure when the frame does not do its part, when
// it goes away and when somebody asks the program to end. One thread only.
class Session : public QObject
{
    Q_OBJECT
public:
    using IsAnswer = std::function<bool(const Frame &report)>;
    struct Report
    {
        Frame frame;
        bool isNew; // differs from the one before it, or came over a serial line, where none comes
                    // twice
    };
    // Whether an answer counts that the frame may have given before it was asked, since by USB the
    // last one is read again until there is another.
    enum class Repeats { Ignored, Taken };

    explicit Session(Surroundings surroundings);
    ~Session() override;

    const Surroundings around;
    Options options;
    Output output;

    // What the program is doing, for its output: "rotation set".
    void begin(const QString &command) { name = command; }
    const QString &command() const { return name; }
    // What a command has to tell, once: lines for a person, or members of the document for a
    // program. One that was done and found something wrong says so with a code of its own.
    void answer(const QStringList &lines, const QJsonObject &members, int code = Done);
    int answeredWith() const { return answerCode; }
    // The document of a line that is not the last: it says what happened.
    void tell(const QString &line, const QString &event, QJsonObject members);

    // Links the frame that the options name.
    void connectFrame();
    // Waits for the next frame in place of one that is gone; false when the time is over first.
    bool connectNextFrame(QDeadlineTimer end);
    // Ends the link in good order; nothing may be asked any more.
    void finish();
    // What is recorded, from connectFrame() on if the options name a file.
    const capture::Recorder *recording() const { return recorder.get(); }
    bool isSerial() const { return !options.port.isEmpty(); }
    PortSettings portSettings() const;
    Link &frameLink() { return *link; }
    // What the frame on USB said of itself when it was opened; on a serial line it does not.
    bool isCurrentGeneration() const;

    // Sends a question, anew while no answer comes, until a report is one.
    Frame ask(const Frame &question, const IsAnswer &isAnswer, Repeats repeats = Repeats::Ignored);
    // What the frame says next; nothing when the time is over first.
    std::optional<Report> report(QDeadlineTimer deadline);
    // What it says next that is new and an answer. Without one in time that is a failure.
    Frame next(const IsAnswer &isAnswer);
    // Why nothing came in time: the frame is gone, takes nothing, or the sentence; without one,
    // that it did not answer.
    Failure overdue(const QString &otherwise = {});
    // Sends a frame that changes something and has no answer: what, as a person calls it, counts as
    // unconfirmed from then on. Returns when the link has taken it.
    void send(const Frame &frame, const QString &what);
    // The same for what is asked to be done and answered.
    void mark(const QString &what) { unconfirmed = what; }
    // Sends a frame although the program is to end; true when the frame on the other side has
    // answered a question behind it in time.
    bool sendAtLast(const Frame &frame);
    // The frame has said what was made of all that was sent.
    void confirmed() { unconfirmed.clear(); }
    const QString &whatIsUnconfirmed() const { return unconfirmed; }

    // A line of the standard input; nothing when the time is over or the input ends first.
    std::optional<QString> readLine(QDeadlineTimer deadline);
    // Runs the event loop until a condition, which is looked at whenever something has happened;
    // false when the time is over first.
    bool waitFor(const std::function<bool()> &done, QDeadlineTimer deadline);

public slots:
    // Somebody wants the program to end: what is waited for ends with a failure.
    void interrupt(int signal);

private:
    void record();
    void connectUsb();
    void connectSerial();
    bool openSerial();
    Failure usbProblem() const;
    QFileInfo serialNode() const;
    Failure serialProblem() const;
    void take(const Frame &report);
    void post(const Frame &frame);
    Frame askUntil(QDeadlineTimer deadline, const Frame &question, const IsAnswer &isAnswer,
                   Repeats repeats);
    bool runLoop(const std::function<bool()> &done, QDeadlineTimer deadline);
    void wake();
    void throwIfOver() const;

    QString name;
    int answerCode = Done;
    std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter;
    std::unique_ptr<capture::Recorder> recorder; // once a link has been recorded
    std::unique_ptr<Link> link;
    std::optional<Frame> last;  // report since the frame was linked
    std::deque<Report> unread;  // since the last question
    QEventLoop *loop = nullptr; // that waits now
    bool lost = false;
    int signalNumber = 0;
    int underWay = 0;      // frames that the link has not taken yet
    bool lastTaken = true; // the frame before was
    QString unconfirmed;
};

} // namespace ctl
