#pragma once
// The link between a second start of the program and the running one. The running
// instance listens; a new one asks whether an instance runs, sends one command over the
// link and waits a short while for its acknowledgement.

#include <QObject>
#include <QString>

namespace cantovel {

class InstanceLink : public QObject {
    Q_OBJECT
  public:
    using QObject::QObject;
    ~InstanceLink() override = default;

    // True when another instance of this user's program runs.
    virtual bool otherInstanceRunning() = 0;
    // Makes this process the running instance and listens for commands.
    virtual bool listen() = 0;
    // Takes the running instance's place unless another instance holds it. The lock
    // decides, so of two starts at the same moment exactly one wins. False when this
    // process should hand over to the running one; true also when no link can be made
    // here, and the program then runs on its own.
    bool claim() { return listen() || !otherInstanceRunning(); }
    // Sends one command to the running instance and waits up to `timeoutMs` for its
    // acknowledgement. On failure `error` says why.
    virtual bool execute(const QString& command, int timeoutMs, QString* error) = 0;

  signals:
    // A command arrived from another process. It has been acknowledged already.
    void commandReceived(const QString& command);
};

}  // namespace cantovel
