// SPDX-License-Identifier: GPL-3.0-or-later

#include "qtsingleapplication.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTimer>
#include <QtEndian>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Stat = struct stat;

namespace {

// A message on its way: this, its length as four bytes (high byte first), its UTF-8. The owner
// answers with one byte when it has taken the message, and closes the connection in any case.
constexpr QByteArrayView Greeting = "qsa1";
constexpr int HeaderSize = 4 + 4;
constexpr char Acknowledgement = '\x06';

constexpr auto SocketSuffix = QLatin1StringView(".socket");
// The toolkit takes one byte less than the kernel, which wants one for the end.
constexpr int LongestSocketName = sizeof sockaddr_un::sun_path - 2;
constexpr int MaxName = 40;
constexpr int Backlog = 256;
// With half of the places taken, newcomers must be quick.
constexpr int CrowdedPatienceMs = 100;
constexpr auto RetryPause = 10ms;
// Writing a lock file takes far less than this.
constexpr int LockWrittenMs = 1000;

void complain(const QString &sentence)
{
    std::fprintf(stderr, "%s\n", qPrintable(sentence));
}

// Two ids never share a name, and no id makes a socket's path too long.
QString fileNameFor(const QString &id)
{
    QString name = id.left(MaxName);
    for (QChar &c : name) {
        const char16_t u = c.unicode();
        if (!(u < 128 && c.isLetterOrNumber()) && u != u'.' && u != u'_' && u != u'-')
            c = u'_';
    }
    if (name != id)
        name +=
            u'-' +
            QString::fromLatin1(
                QCryptographicHash::hash(id.toUtf8(), QCryptographicHash::Sha1).toHex().first(8));
    return name;
}

// Keeps what cleans up old files in temporary folders from taking these.
void keepFromCleaning(const QString &path)
{
    chmod(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR | S_ISVTX);
}

bool isOwnUser(const QLocalSocket &peer)
{
    ucred credentials{};
    socklen_t size = sizeof credentials;
    return getsockopt(int(peer.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &credentials, &size) ==
               0 &&
           credentials.uid == geteuid();
}

enum class Delivery { Taken, Lost, NobodyListens };

Delivery deliver(const QString &socketPath, const QByteArray &frame, const QDeadlineTimer &deadline)
{
    const auto left = [&deadline] { return int(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (socket.state() != QLocalSocket::ConnectedState)
        return Delivery::NobodyListens;
    socket.write(frame);
    while (socket.bytesToWrite() > 0)
        if (!socket.waitForBytesWritten(left()))
            return Delivery::Lost;
    if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(left()))
        return Delivery::Lost;
    char answer = 0;
    return socket.getChar(&answer) && answer == Acknowledgement ? Delivery::Taken : Delivery::Lost;
}

} // namespace

QtSingleApplication::QtSingleApplication(int &argc, char **argv, const QString &id)
    : QApplication(argc, argv)
    , name(fileNameFor(id.isEmpty() ? QFileInfo(applicationFilePath()).fileName() : id))
{
    server.setListenBacklogSize(Backlog);
    connect(&server, &QLocalServer::newConnection, this, &QtSingleApplication::admitPeers);
    connect(this, &QCoreApplication::aboutToQuit, this, &QtSingleApplication::release);
}

QtSingleApplication::~QtSingleApplication()
{
    release();
}

bool QtSingleApplication::isRunning()
{
    if (!findPlace() || lock->isLocked())
        return false;
    if (!takeName())
        return lock->error() == QLockFile::LockFailedError;
    listen();
    return false;
}

bool QtSingleApplication::sendMessage(const QString &message, int timeout)
{
    const QByteArray text = message.toUtf8();
    if (!findPlace() || lock->isLocked() || text.size() > MaxMessage)
        return false;
    QByteArray frame = Greeting.toByteArray() + QByteArray(4, '\0') + text;
    qToBigEndian(quint32(text.size()), frame.data() + Greeting.size());

    const QDeadlineTimer deadline(std::max(timeout, 0));
    do {
        const Delivery delivery = deliver(socketPath, frame, deadline);
        if (delivery != Delivery::NobodyListens)
            return delivery == Delivery::Taken;
        // An owner that has just begun does not listen yet, and a busy one has no place left.
        if (owner() == Owner::None)
            return false;
        std::this_thread::sleep_for(
            std::min<std::chrono::nanoseconds>(RetryPause, deadline.remainingTimeAsDuration()));
    } while (!deadline.hasExpired());
    return false;
}

// Chooses where lock and socket live: the same folder in every process of this user.
bool QtSingleApplication::findPlace()
{
    if (lock)
        return true;
    const QString runtime = QDir::cleanPath(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    if (runtime.startsWith(u'/') && isSafe(runtime))
        return settleIn(runtime);
    const QString shared = u"/tmp/%1-%2"_s.arg(name).arg(geteuid());
    mkdir(QFile::encodeName(shared).constData(), S_IRWXU);
    if (isSafe(shared))
        return settleIn(shared);
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    // Several machines may share one home.
    const QString own = u"%1/%2-%3"_s.arg(cache, name, QSysInfo::machineHostName());
    QDir().mkpath(cache);
    mkdir(QFile::encodeName(own).constData(), S_IRWXU);
    if (isSafe(own))
        return settleIn(own);
    complain(tr("A second start of this program cannot be noticed. Set XDG_RUNTIME_DIR to a folder "
                "that only this user can enter."));
    return false;
}

bool QtSingleApplication::isSafe(const QString &folder) const
{
    const QByteArray path = QFile::encodeName(folder);
    const int socketLength = int(path.size()) + 1 + int(name.size()) + int(SocketSuffix.size());
    Stat entry{};
    QString objection;
    if (lstat(path.constData(), &entry) != 0)
        objection = tr("it cannot be used (%1)").arg(qt_error_string(errno));
    else if (!S_ISDIR(entry.st_mode))
        objection = tr("it is not a folder");
    else if (entry.st_uid != geteuid())
        objection = tr("it belongs to another user");
    else if ((entry.st_mode & ALLPERMS) != S_IRWXU)
        objection = tr("others can enter it; \"chmod 700\" it");
    else if (socketLength > LongestSocketName)
        objection = tr("its name is too long");
    else
        return true;
    complain(tr("%1 is no place to find the running program in: %2.").arg(folder, objection));
    return false;
}

bool QtSingleApplication::settleIn(const QString &folder)
{
    socketPath = folder + u'/' + name + SocketSuffix;
    lock = std::make_unique<QLockFile>(folder + u'/' + name + u".lock"_s);
    lock->setStaleLockTime(0);
    return true;
}

// QLockFile itself removes what a process left that is gone, but lets only one process at a time
// do so; who was not the one looks again.
bool QtSingleApplication::takeName()
{
    const QDeadlineTimer patience(LockWrittenMs);
    while (!lock->tryLock(0)) {
        if (lock->error() != QLockFile::LockFailedError) {
            complain(tr("%1 cannot be written, so a second start of this program is not noticed. "
                        "Make room and check who may write there.")
                         .arg(lock->fileName()));
            return false;
        }
        if (owner() == Owner::Alive)
            return false;
        if (patience.hasExpired())
            return breakUnreadableLock();
        std::this_thread::sleep_for(RetryPause);
    }
    return true;
}

// A machine that lost its power while the lock was written leaves one that names nobody, which
// QLockFile would respect for ever.
bool QtSingleApplication::breakUnreadableLock()
{
    QLockFile oneAtATime(lock->fileName() + u".broken"_s);
    oneAtATime.setStaleLockTime(0);
    if (owner() != Owner::Unknown || !oneAtATime.tryLock(LockWrittenMs))
        return false;
    const qint64 age =
        QFileInfo(lock->fileName()).lastModified().msecsTo(QDateTime::currentDateTime());
    if (owner() == Owner::Unknown && std::abs(age) >= LockWrittenMs)
        lock->removeStaleLockFile();
    return lock->tryLock(0);
}

QtSingleApplication::Owner QtSingleApplication::owner() const
{
    qint64 pid = 0;
    QString host;
    QString program;
    if (!lock->getLockInfo(&pid, &host, &program))
        return QFileInfo::exists(lock->fileName()) ? Owner::Unknown : Owner::None;
    if (kill(pid_t(pid), 0) != 0 && errno == ESRCH)
        return Owner::None;
    // The number may long stand for another program.
    QString executable = QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(pid));
    if (executable.endsWith(u" (deleted)"))
        executable.chop(10);
    const bool same = program.isEmpty() || QFileInfo(executable).fileName() == program;
    return same ? Owner::Alive : Owner::None;
}

void QtSingleApplication::listen()
{
    QLocalServer::removeServer(socketPath); // of an owner that was killed
    if (!server.listen(socketPath)) {
        complain(
            tr("%1 cannot be made (%2), so a second start of this program ends without a word.")
                .arg(socketPath, server.errorString()));
        return;
    }
    keepFromCleaning(socketPath);
    keepFromCleaning(lock->fileName());
}

void QtSingleApplication::release()
{
    if (!lock || !lock->isLocked())
        return;
    // The socket goes first: behind the lock it could be the next owner's already.
    server.close();
    const auto all = server.findChildren<QLocalSocket *>();
    for (QLocalSocket *peer : all) {
        peer->disconnect(this);
        if (answering.contains(peer))
            continue; // it asked for this end and hears of it when all receivers have returned
        peer->abort();
        peer->deleteLater();
    }
    peers = 0;
    lock->unlock();
}

void QtSingleApplication::admitPeers()
{
    while (peers < MaxPeers && server.hasPendingConnections()) {
        QLocalSocket *peer = server.nextPendingConnection();
        if (!isOwnUser(*peer)) {
            peer->abort();
            peer->deleteLater();
            continue;
        }
        peers++;
        peer->setReadBufferSize(HeaderSize + MaxMessage + 1);
        connect(peer, &QLocalSocket::readyRead, this, [this, peer] { hear(peer); });
        connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
        connect(peer, &QObject::destroyed, this, [this] {
            peers--;
            admitPeers();
        });
        auto *patience = new QTimer(peer);
        connect(patience, &QTimer::timeout, peer, [peer] {
            // What came while this thread was busy counts.
            peer->waitForReadyRead(0);
            peer->abort();
        });
        patience->start(peers > MaxPeers / 2 ? CrowdedPatienceMs : PeerPatienceMs);
        hear(peer);
        if (peer->state() == QLocalSocket::UnconnectedState) // it left before it was admitted
            peer->deleteLater();
    }
}

void QtSingleApplication::hear(QLocalSocket *peer)
{
    const qint64 have = peer->bytesAvailable();
    const QByteArray header = peer->peek(HeaderSize);
    const auto length = header.size() == HeaderSize
                            ? qint64(qFromBigEndian<quint32>(header.constData() + Greeting.size()))
                            : 0;
    if (!(Greeting.startsWith(header) || header.startsWith(Greeting)) || length > MaxMessage ||
        have > HeaderSize + length) {
        peer->abort();
        return;
    }
    if (have < HeaderSize + length)
        return;

    peer->skip(HeaderSize);
    QStringDecoder utf8(QStringDecoder::Utf8,
                        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString message = utf8(peer->read(length));
    if (utf8.hasError()) {
        peer->abort();
        return;
    }
    // A receiver may run an event loop of its own, in which this peer vanishes.
    const QPointer<QLocalSocket> waiting(peer);
    answering.append(waiting);
    emit messageReceived(message);
    answering.removeOne(waiting);
    if (waiting && waiting->state() == QLocalSocket::ConnectedState) {
        waiting->putChar(Acknowledgement);
        waiting->flush();
        waiting->disconnectFromServer();
    }
}
