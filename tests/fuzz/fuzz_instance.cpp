// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/qtsingleapplication.h"
#include "demand.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtEndian>

#include <array>
#include <cstring>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The running instance, and what it has been told.
class Instance
{
public:
    explicit Instance(QString folder)
        : place(std::move(folder))
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("XDG_RUNTIME_DIR", place.toLocal8Bit());
        application = std::make_unique<QtSingleApplication>(count, arguments, u"fuzz"_s);
        demand(!application->isRunning(), "this is the only instance");
        QObject::connect(application.get(), &QtSingleApplication::messageReceived,
                         application.get(), [this](const QString &text) { heard.append(text); });
    }

    // What comes of bytes that somebody sends and then hangs up.
    QStringList hear(const unsigned char *bytes, size_t size)
    {
        heard.clear();
        const int peer = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, socketPath().constData(), sizeof address.sun_path - 1);
        demand(::connect(peer, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0,
               "the instance can be reached");
        // Less than a socket holds.
        [[maybe_unused]] const ssize_t sent = ::send(peer, bytes, size, MSG_NOSIGNAL);
        ::shutdown(peer, SHUT_WR);
        QElapsedTimer time;
        time.start();
        bool gone = false;
        while (!gone) {
            QCoreApplication::processEvents();
            std::array<char, 64> answer{};
            const ssize_t got = ::recv(peer, answer.data(), answer.size(), 0);
            gone = got == 0 || (got < 0 && errno != EAGAIN);
            demand(time.elapsed() < 10000, "it does not wait for who has hung up");
        }
        ::close(peer);
        QCoreApplication::processEvents();
        return heard;
    }

private:
    QByteArray socketPath() const
    {
        QByteArray found;
        const QDir folder(place);
        const auto look = [&found](const QDir &where, const auto &self) -> void {
            for (const QFileInfo &entry :
                 where.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
                if (entry.isDir())
                    self(QDir(entry.filePath()), self);
                else if (!entry.isFile())
                    found = entry.filePath().toLocal8Bit();
            }
        };
        look(folder, look);
        demand(!found.isEmpty(), "the instance has a socket");
        return found;
    }

    const QString place;
    int count = 1;
    char name[5] = "fuzz";
    char *arguments[2] = {name, nullptr};
    std::unique_ptr<QtSingleApplication> application;
    QStringList heard;
};

} // namespace

// Whatever a second start sends, at most one message comes out of it, and only out of bytes that
// are long enough for it.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    static const QTemporaryDir place;
    static auto *const instance = new Instance(place.path()); // until the process ends
    const QStringList heard = instance->hear(input, size);
    demand(heard.size() <= 1, "one peer has one message");
    for (const QString &text : heard) {
        demand(size_t(text.toUtf8().size()) < size, "it is no longer than what was sent");
    }
    return 0;
}
