#pragma once

#include "device/commands.h"

#include <QByteArray>

#include <optional>

namespace sim {

// A frame as it travels on a serial line: two sync bytes, then its bytes 0 to N + 5, N being the
// length in byte 3. No frame has more than FrameSize bytes, whatever byte 3 says.
QByteArray serialBytes(const Frame &frame);

// Finds the frames in what comes over a serial line. Like the host it looks for the first sync
// byte, then for the second directly behind it, and waits without limit for the rest.
class SerialReader
{
public:
    // The bytes of a frame from byte 0 on, without the sync bytes, once the last one is here.
    std::optional<QByteArray> take(UCHAR byte);
    // Goes on as though the last bytes of a frame that was just returned had not come yet.
    void lose(QByteArray frame, int count);
    void reset();

private:
    enum class State { Sync1, Sync2, Frame };

    State state = State::Sync1;
    QByteArray got; // of the frame
};

} // namespace sim
