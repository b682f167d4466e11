#include "support/LoopbackCddbServer.h"

#include <QHostAddress>

namespace cantovel::test {

LoopbackCddbServer::LoopbackCddbServer() {
    server_.listen(QHostAddress::LocalHost, 0);
    connect(&server_, &QTcpServer::newConnection, this, &LoopbackCddbServer::accept);
    connect(&sender_, &Timer::timeout, this, &LoopbackCddbServer::sendNext);
    on("quit", QList<QByteArray>{"230 loopback Closing connection.  Goodbye.\r\n", "<close>"});
}

LoopbackCddbServer::~LoopbackCddbServer() {
    if (client_) client_->abort();
}

void LoopbackCddbServer::on(const QString& prefix, const QList<QByteArray>& pieces) {
    // Later rules for the same prefix win: the default quit can be replaced.
    for (qsizetype i = 0; i < rules_.size(); ++i)
        if (rules_[i].prefix == prefix) rules_.removeAt(i--);
    rules_.prepend({prefix, pieces});
}

void LoopbackCddbServer::accept() {
    while (QTcpSocket* s = server_.nextPendingConnection()) {
        if (client_) client_->abort();
        client_ = s;
        pending_.clear();
        outbox_.clear();
        connect(s, &QTcpSocket::readyRead, this, &LoopbackCddbServer::readLines);
        if (!banner.isEmpty()) queue({banner});
    }
}

void LoopbackCddbServer::readLines() {
    if (!client_) return;
    pending_ += client_->readAll();
    for (qsizetype end = pending_.indexOf("\r\n"); end >= 0; end = pending_.indexOf("\r\n")) {
        const QString line = QString::fromLatin1(pending_.left(end));
        pending_.remove(0, end + 2);
        received << line;
        for (const Rule& rule : rules_)
            if (line.startsWith(rule.prefix)) {
                queue(rule.pieces);
                break;
            }
    }
}

void LoopbackCddbServer::queue(const QList<QByteArray>& pieces) {
    outbox_ += pieces;
    if (!sender_.isEnabled()) sendNext();
}

void LoopbackCddbServer::sendNext() {
    if (outbox_.isEmpty() || !client_) {
        sender_.setEnabled(false);
        return;
    }
    const QByteArray piece = outbox_.takeFirst();
    if (piece == "<close>") {
        client_->disconnectFromHost();
        outbox_.clear();
        sender_.setEnabled(false);
        return;
    }
    client_->write(piece);
    client_->flush();
    sender_.setEnabled(!outbox_.isEmpty());
}

}  // namespace cantovel::test
