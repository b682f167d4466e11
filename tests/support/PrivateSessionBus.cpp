#include "support/PrivateSessionBus.h"

#include <QStandardPaths>

namespace cantovel::test {

PrivateSessionBus::PrivateSessionBus() {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
    if (program.isEmpty()) {
        why_ = QStringLiteral("dbus-daemon is not installed");
        return;
    }
    daemon_.start(program, {QStringLiteral("--session"), QStringLiteral("--nofork"),
                            QStringLiteral("--print-address=1")});
    if (!daemon_.waitForStarted(5000)) {
        why_ = QStringLiteral("dbus-daemon did not start: ") + daemon_.errorString();
        return;
    }
    // The daemon prints its address once it listens.
    while (!daemon_.canReadLine() && daemon_.waitForReadyRead(5000)) {
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    if (address_.isEmpty()) why_ = QStringLiteral("dbus-daemon gave no address");
}

PrivateSessionBus::~PrivateSessionBus() {
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.terminate();
    if (!daemon_.waitForFinished(3000)) daemon_.kill();
    daemon_.waitForFinished(3000);
}

}  // namespace cantovel::test
