#pragma once
// A CDDB server on the loopback interface, in the test's own thread: it greets,
// answers commands from a script, and can misbehave on purpose. The pieces of an answer go
// out apart on the program's Clock.

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <memory>

#include "platform/clock/Timer.h"

namespace cantovel::test {

class LoopbackCddbServer : public QObject {
  public:
    LoopbackCddbServer();
    ~LoopbackCddbServer() override;

    quint16 port() const { return server_.serverPort(); }

    // What is sent on connection; empty sends nothing.
    QByteArray banner = "201 loopback CDDBP server v1.5 ready at Mon Nov 23 10:00:00 2026\r\n";

    // The answer to a command line that starts with `prefix` (first match wins), in pieces
    // sent apart. A piece "<close>" closes the connection there.
    void on(const QString& prefix, const QList<QByteArray>& pieces);
    void on(const QString& prefix, const QByteArray& answer) {
        on(prefix, QList<QByteArray>{answer});
    }

    // Every command line received, without its line end, over all connections.
    QStringList received;

  private:
    struct Rule {
        QString prefix;
        QList<QByteArray> pieces;
    };
    void accept();
    void readLines();
    void queue(const QList<QByteArray>& pieces);
    void sendNext();

    QTcpServer server_;
    QPointer<QTcpSocket> client_;
    QByteArray pending_;
    QList<Rule> rules_;
    QList<QByteArray> outbox_;
    Timer sender_{20};
};

}  // namespace cantovel::test
