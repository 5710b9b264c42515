#include "statushint.h"

#include <QCoreApplication>

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(StatusHint)
};

} // namespace

QString statusHint(const Link::State &state)
{
    if (!state.problem.isEmpty())
        return state.problem;
    switch (state.kind) {
    case Link::UsbConnected:
        return state.port.isEmpty() ? Words::tr("Linked by USB.")
                                    : Words::tr("Linked by USB, at %1.").arg(state.port);
    case Link::SerialOpen:
        return Words::tr("Linked over the serial port %1.").arg(state.port);
    case Link::NotConnected:
    case Link::SerialClosed:
    case Link::SerialFailed:
        break;
    }
    return Words::tr("No touch frame is linked. Try in this order:\n"
                     "1. Plug the frame in.\n"
                     "2. Try another USB port and another cable.\n"
                     "3. For a frame on a serial line, choose \"Connect\" in the menu of this "
                     "window.\n"
                     "4. Without the udev rule 70-quorvel.rules this user may not open the frame: "
                     "install it, or join the group plugdev if it is there.");
}
