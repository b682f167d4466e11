#pragma once
// A session bus of the test's own: a dbus-daemon started for the test and ended with it.

#include <QProcess>
#include <QString>

namespace cantovel::test {

class PrivateSessionBus {
  public:
    PrivateSessionBus();
    ~PrivateSessionBus();
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    // Empty when no bus could be started; `why` then says what failed.
    QString address() const { return address_; }
    QString why() const { return why_; }

  private:
    QProcess daemon_;
    QString address_;
    QString why_;
};

}  // namespace cantovel::test
