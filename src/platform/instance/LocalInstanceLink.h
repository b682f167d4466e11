#pragma once
#include <QLockFile>
#include <memory>

#include "platform/instance/InstanceLink.h"

class QLocalServer;
class QLocalSocket;

namespace cantovel {

// The link between instances on one desktop session. A lock file in the user's runtime
// folder says which process is the running instance; that process listens on a local
// socket beside it, readable by this user only. The protocol is one UTF-8 command line a
// connection, answered at once with "ACK\n".
class LocalInstanceLink : public InstanceLink {
    Q_OBJECT
  public:
    // `folder` holds the lock and the socket: empty is the user's runtime folder
    // ($XDG_RUNTIME_DIR). `name` is the base of both file names.
    explicit LocalInstanceLink(const QString& folder = {},
                               const QString& name = QStringLiteral("cantovel"),
                               QObject* parent = nullptr);
    ~LocalInstanceLink() override;

    bool otherInstanceRunning() override;
    bool listen() override;
    bool execute(const QString& command, int timeoutMs, QString* error) override;

    bool isListening() const { return server_ != nullptr; }
    QString lockPath() const;
    QString socketPath() const;

  private:
    void serve(QLocalSocket* socket);

    QString folder_;
    QString name_;
    std::unique_ptr<QLockFile> lock_;
    QLocalServer* server_ = nullptr;
};

}  // namespace cantovel
