#pragma once
#include <QStringList>
#include <functional>

#include "platform/instance/InstanceLink.h"

namespace cantovel::test {

// An instance link whose answers a test sets: whether another instance runs, whether
// sending succeeds, and what was sent.
class FakeInstanceLink : public InstanceLink {
    Q_OBJECT
  public:
    bool otherInstanceRunning() override { return otherRunning; }
    bool listen() override {
        listening = true;
        return true;
    }
    bool execute(const QString& command, int timeoutMs, QString* error) override {
        sent << command;
        lastTimeout = timeoutMs;
        if (onExecute) onExecute(command, timeoutMs);
        if (!failWith.isEmpty() && error) *error = failWith;
        return failWith.isEmpty();
    }
    void deliver(const QString& command) { emit commandReceived(command); }

    bool otherRunning = false;
    bool listening = false;
    QString failWith;
    // Sees every command sent, also after the link is gone.
    std::function<void(const QString&, int)> onExecute;
    QStringList sent;
    int lastTimeout = 0;
};

}  // namespace cantovel::test
