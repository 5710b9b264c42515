// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QApplication>
#include <QLocalServer>
#include <QLockFile>
#include <QPointer>

#include <memory>

class QLocalSocket;

// An application of which each user runs one, whatever the number of starts.
//
// The first process to ask isRunning() owns the name until it quits; others hand it messages.
// Lock and socket lie in a folder that only this user can enter, and a peer that runs as somebody
// else is turned away, so another user can neither connect nor take the name. A process that died
// with the name leaves it to the next one.
class QtSingleApplication : public QApplication
{
    Q_OBJECT
public:
    // In bytes of UTF-8; longer messages are not sent, and not received either.
    static constexpr int MaxMessage = 1024 * 1024;
    // Peers served at a time. One more is asked to come back, which sendMessage() does.
    static constexpr int MaxPeers = 32;
    // A peer that has not brought its message in this time is dropped.
    static constexpr int PeerPatienceMs = 3000;

    // id: what instances find each other by; the name of the executable file when empty.
    QtSingleApplication(int &argc, char **argv, const QString &id = {});
    ~QtSingleApplication() override;

    // False when this process owns the name, which it takes here if nobody does; it listens then.
    // Also false, with the reason on standard error, when there is no place for lock and socket.
    bool isRunning();
    // True when the owner has taken the message, that is, all its receivers have returned. False
    // when there is no owner, when that is this process, or when the time (ms) is over. No events
    // are delivered meanwhile.
    bool sendMessage(const QString &message, int timeout = 5000);

signals:
    void messageReceived(const QString &message);

private:
    enum class Owner { None, Unknown, Alive };

    bool findPlace();
    bool isSafe(const QString &folder) const;
    bool settleIn(const QString &folder);
    bool takeName();
    bool breakUnreadableLock();
    Owner owner() const;
    void listen();
    void release();
    void admitPeers();
    void hear(QLocalSocket *peer);

    QString name; // of lock and socket, without suffix
    QString socketPath;
    std::unique_ptr<QLockFile> lock; // made with socketPath; held: this process owns the name
    QLocalServer server;             // owns its peers
    int peers = 0;                   // admitted and not yet gone
    QList<QPointer<QLocalSocket>> answering; // peers whose message is being received
};
