#pragma once
// A sound server of the test's own, whose only sink is a null one that keeps real time; the
// program reaches it through PULSE_SERVER for as long as this lives.

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include "support/ScopedEnv.h"

namespace cantovel::test {

class PulseServer {
  public:
    explicit PulseServer(const QString& folder) {
        const QString program = QStandardPaths::findExecutable(QStringLiteral("pulseaudio"));
        installed = !program.isEmpty();
        if (!installed) return;
        const QString socket = folder + QStringLiteral("/pulse.sock");
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), folder);
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder);
        server.setProcessEnvironment(env);
        server.start(program,
                     {"-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                      "--load=module-null-sink sink_name=test",
                      "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket});
        for (int i = 0; i < 200 && !QFile::exists(socket); ++i) QThread::msleep(100);
        running = QFile::exists(socket);
        if (running) pulseEnv.set("PULSE_SERVER", "unix:" + socket);
    }
    ~PulseServer() {
        server.kill();
        server.waitForFinished();
    }
    bool installed = false, running = false;

  private:
    QProcess server;
    ScopedEnv pulseEnv;
};

}  // namespace cantovel::test
