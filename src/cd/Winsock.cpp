#include "cd/Winsock.h"

#include <QHostInfo>

namespace cantovel {

Winsock::Winsock(QObject* parent) : QObject(parent) {
    connect(&socket_, &QTcpSocket::hostFound, this, [this] { state_ = sckConnecting; });
    connect(&socket_, &QTcpSocket::connected, this, [this] { state_ = sckConnected; });
    connect(&socket_, &QTcpSocket::readyRead, this,
            [this] { emit DataArrival(socket_.bytesAvailable()); });
    connect(&socket_, &QTcpSocket::disconnected, this, [this] {
        if (state_ == sckClosed) return;  // our own Close
        state_ = sckClosing;
        emit Closed();
    });
    connect(&socket_, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError e) {
        // A refused or unresolved connection only shows as silence to the client.
        if (e != QAbstractSocket::RemoteHostClosedError && state_ != sckClosed &&
            state_ != sckConnected)
            state_ = sckError;
    });
}

QString Winsock::LocalHostName() const {
    return QHostInfo::localHostName();
}

void Winsock::Connect() {
    if (state_ != sckClosed) return;
    state_ = sckResolvingHost;
    socket_.connectToHost(RemoteHost, quint16(RemotePort));
}

void Winsock::SendData(const QString& text) {
    if (state_ != sckConnected) return;
    socket_.write(text.toLatin1());
}

QString Winsock::GetData() {
    return QString::fromLatin1(socket_.readAll());
}

void Winsock::Close() {
    state_ = sckClosed;
    socket_.abort();
}

}  // namespace cantovel
