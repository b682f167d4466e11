#include "support/DesktopSession.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QByteArray>
#include <QStandardPaths>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace cantovel::test {
namespace {

bool requested = false;
QString missing = QStringLiteral("no X server was asked for by this test executable");
QString display;
pid_t xvfbPid = 0;
pid_t wmPid = 0;

// How long a loaded machine may take to bring a server or a window manager up.
constexpr auto kStartLimit = std::chrono::seconds(30);

pid_t spawn(const std::vector<std::string>& args, int keepFd = -1) {
    const pid_t pid = fork();
    if (pid != 0) return pid;
    const int null = open("/dev/null", O_RDWR);
    dup2(null, STDIN_FILENO);
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    for (int fd = 3; fd < 1024; ++fd)
        if (fd != keepFd) close(fd);
    std::vector<char*> argv;
    for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
}

void stopSession() {
    for (pid_t* pid : {&wmPid, &xvfbPid}) {
        if (*pid <= 0) continue;
        kill(*pid, SIGTERM);
        waitpid(*pid, nullptr, 0);
        *pid = 0;
    }
}

// Xvfb writes its display number to the descriptor it is given once it accepts clients.
bool startServer() {
    int fds[2];
    if (pipe(fds) != 0) return false;
    const std::string fd = std::to_string(fds[1]);
    xvfbPid = spawn(
        {"Xvfb", "-displayfd", fd, "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"},
        fds[1]);
    close(fds[1]);
    std::string number;
    const auto deadline = std::chrono::steady_clock::now() + kStartLimit;
    while (std::chrono::steady_clock::now() < deadline) {
        pollfd p{fds[0], POLLIN, 0};
        if (poll(&p, 1, 200) <= 0) continue;
        char c;
        const ssize_t n = read(fds[0], &c, 1);
        if (n <= 0) break;
        if (c == '\n') break;
        number += c;
    }
    close(fds[0]);
    if (number.empty()) return false;
    display = QStringLiteral(":") + QString::fromStdString(number);
    return true;
}

// openbox runs its start-up command once it manages the screen.
bool startWindowManager() {
    const QByteArray marker = QByteArray("/tmp/cantovel-wm-") + QByteArray::number(getpid());
    unlink(marker.constData());
    wmPid = spawn({"openbox", "--sm-disable", "--startup", "touch " + marker.toStdString()});
    const auto deadline = std::chrono::steady_clock::now() + kStartLimit;
    struct stat st {};
    while (std::chrono::steady_clock::now() < deadline) {
        if (stat(marker.constData(), &st) == 0) {
            unlink(marker.constData());
            return true;
        }
        if (waitpid(wmPid, nullptr, WNOHANG) == wmPid) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

}  // namespace

bool requestDesktopSession() {
    requested = true;
    return true;
}

void startRequestedDesktopSession() {
    if (!requested) return;
    for (const char* tool : {"Xvfb", "openbox"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
            missing = QStringLiteral("skipped: %1 is missing (scripts/install-deps installs it)")
                          .arg(QLatin1String(tool));
            return;
        }
    }
    if (!startServer()) {
        stopSession();
        missing = QStringLiteral("skipped: Xvfb did not come up within 30 s");
        return;
    }
    qputenv("DISPLAY", display.toLocal8Bit());
    qunsetenv("WAYLAND_DISPLAY");
    if (!startWindowManager()) {
        stopSession();
        missing = QStringLiteral("skipped: openbox did not come up within 30 s");
        return;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    std::atexit(stopSession);
    missing.clear();
}

QString desktopSessionMissing() {
    return missing;
}

}  // namespace cantovel::test
