#pragma once
// The CDDB client's TCP connection, with the small surface the client was written against:
// State, Connect, SendData, GetData, Close, and the DataArrival and Close events. Text on
// the wire is ISO 8859-1, the protocol's own character set at the level the client greets.

#include <QObject>
#include <QString>
#include <QTcpSocket>

namespace cantovel {

class Winsock : public QObject {
    Q_OBJECT
  public:
    enum States {
        sckClosed = 0,
        sckResolvingHost = 4,
        sckConnecting = 6,
        sckConnected = 7,
        sckClosing = 8,
        sckError = 9
    };

    explicit Winsock(QObject* parent = nullptr);

    QString RemoteHost;
    qint32 RemotePort = 0;
    QString LocalHostName() const;
    int State() const { return state_; }

    void Connect();
    // Ignored unless connected.
    void SendData(const QString& text);
    // Takes everything that has arrived.
    QString GetData();
    void Close();

  signals:
    void DataArrival(qint64 bytes);
    // The other end closed the connection.
    void Closed();

  private:
    QTcpSocket socket_;
    int state_ = sckClosed;
};

}  // namespace cantovel
