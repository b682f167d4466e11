#pragma once
#include "platform/instance/InstanceLink.h"

namespace cantovel::test {

// The first instance's link, into which a test hands commands as later starts would.
class FakeInstanceLink : public InstanceLink {
    Q_OBJECT
  public:
    bool otherInstanceRunning() override { return false; }
    bool listen() override { return true; }
    bool execute(const QString&, int, QString*) override { return true; }
    void deliver(const QString& command) { emit commandReceived(command); }
};

}  // namespace cantovel::test
