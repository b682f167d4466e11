#include "platform/instance/LocalInstanceLink.h"

#include <QDir>
#include <QEventLoop>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

#include "app/FileNames.h"

namespace cantovel {

namespace {

const QByteArray Ack = QByteArrayLiteral("ACK\n");
// A command is a path or "[Restore App]"; anything much longer is not one of ours.
constexpr int MaxCommandBytes = 64 * 1024;
// A peer that connects and says nothing is dropped after this long.
constexpr int IdleMs = 5000;

}  // namespace

LocalInstanceLink::LocalInstanceLink(const QString& folder, const QString& name, QObject* parent)
    : InstanceLink(parent), folder_(folder), name_(name) {
    if (folder_.isEmpty())
        folder_ = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
}

LocalInstanceLink::~LocalInstanceLink() {
    if (server_) server_->close();  // removes the socket file
}

QString LocalInstanceLink::lockPath() const {
    return QDir(folder_).filePath(name_ + QStringLiteral(".lock"));
}

QString LocalInstanceLink::socketPath() const {
    return QDir(folder_).filePath(name_ + QStringLiteral(".socket"));
}

bool LocalInstanceLink::otherInstanceRunning() {
    if (lock_) return false;  // this process is the running instance
    // The lock is held by a live process, or it is stale: QLockFile takes over a lock whose
    // process died, so only a living holder makes the attempt fail.
    QLockFile probe(lockPath());
    probe.setStaleLockTime(0);
    if (probe.tryLock(0)) {
        probe.unlock();
        return false;
    }
    return probe.error() == QLockFile::LockFailedError;
}

bool LocalInstanceLink::listen() {
    if (server_) return true;
    QDir().mkpath(folder_);
    auto lock = std::make_unique<QLockFile>(lockPath());
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) return false;

    auto* server = new QLocalServer(this);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    // We hold the lock, so a socket file still there was left by an instance that died.
    QLocalServer::removeServer(socketPath());
    if (!server->listen(socketPath())) {
        delete server;
        return false;
    }
    lock_ = std::move(lock);
    server_ = server;
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = server_->nextPendingConnection()) serve(socket);
    });
    return true;
}

void LocalInstanceLink::serve(QLocalSocket* socket) {
    auto* idle = new QTimer(socket);
    idle->setSingleShot(true);
    connect(idle, &QTimer::timeout, socket, &QLocalSocket::abort);
    idle->start(IdleMs);
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);

    struct Peer {
        QByteArray received;
        bool answered = false;
    };
    auto onData = [this, socket, peer = std::make_shared<Peer>()] {
        const QByteArray data = socket->readAll();
        if (peer->answered) return;  // one command a connection
        peer->received += data;
        const int end = peer->received.indexOf('\n');
        if (end < 0) {
            if (peer->received.size() > MaxCommandBytes) socket->abort();
            return;
        }
        QByteArray line = peer->received.left(end);
        if (line.endsWith('\r')) line.chop(1);
        const QString command = NameFromBytes(line);
        peer->answered = true;
        // The sender waits only a moment: answer first, handle the command afterwards.
        socket->write(Ack);
        socket->flush();
        socket->disconnectFromServer();
        QMetaObject::invokeMethod(
            this, [this, command] { emit commandReceived(command); }, Qt::QueuedConnection);
    };
    connect(socket, &QLocalSocket::readyRead, this, onData);
    if (socket->bytesAvailable() > 0) onData();
}

bool LocalInstanceLink::execute(const QString& command, int timeoutMs, QString* error) {
    auto fail = [error](const QString& why) {
        if (error) *error = why;
        return false;
    };
    if (error) error->clear();
    if (command.contains(QLatin1Char('\n')))
        return fail(QStringLiteral("The command holds a line break."));

    // The wait is real time with events running: the other side is another process.
    QLocalSocket socket;
    QEventLoop loop;
    QTimer deadline;
    deadline.setSingleShot(true);
    QByteArray reply;
    bool done = false, acknowledged = false;
    QString why;
    auto finish = [&](bool ok, const QString& reason) {
        if (done) return;
        done = true;
        acknowledged = ok;
        why = reason;
        loop.quit();
    };
    QObject::connect(&socket, &QLocalSocket::connected, &loop,
                     [&] { socket.write(NameToBytes(command) + '\n'); });
    QObject::connect(&socket, &QLocalSocket::readyRead, &loop, [&] {
        reply += socket.readAll();
        if (reply.contains('\n'))
            finish(reply.startsWith(Ack),
                   QStringLiteral("The running instance gave an unexpected answer."));
    });
    QObject::connect(
        &socket, &QLocalSocket::errorOccurred, &loop, [&](QLocalSocket::LocalSocketError e) {
            switch (e) {
                case QLocalSocket::ServerNotFoundError:
                case QLocalSocket::ConnectionRefusedError:
                    // An instance that holds the lock but has no socket yet is starting:
                    // it listens in a moment, within the wait.
                    if (otherInstanceRunning()) {
                        QTimer::singleShot(10, &loop, [&] {
                            if (!done) socket.connectToServer(socketPath());
                        });
                    } else if (e == QLocalSocket::ServerNotFoundError) {
                        finish(false, QStringLiteral("No running instance listens."));
                    } else {
                        finish(false, QStringLiteral("The running instance refused the link."));
                    }
                    break;
                case QLocalSocket::PeerClosedError:
                    finish(false, QStringLiteral("The running instance closed the link "
                                                 "without answering."));
                    break;
                default:
                    finish(false, socket.errorString());
                    break;
            }
        });
    QObject::connect(&deadline, &QTimer::timeout, &loop, [&] {
        finish(false,
               QStringLiteral("The running instance did not answer within %1 ms.").arg(timeoutMs));
    });
    deadline.start(std::max(0, timeoutMs));
    socket.connectToServer(socketPath());
    if (!done) loop.exec();
    socket.abort();
    return acknowledged ? true : fail(why);
}

}  // namespace cantovel
