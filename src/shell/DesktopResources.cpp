#include "shell/DesktopResources.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

// The resources live in a static library: nothing would pull them into the program
// unless they are asked for by name.
static void initDesktopQrc() {
    Q_INIT_RESOURCE(desktop);
}

namespace cantovel {

namespace {
const char* const PlatformVariable = "QT_QPA_PLATFORM";
}

void InitDesktopResources() {
    static const bool ready = (initDesktopQrc(), true);
    (void)ready;
}

QIcon CantovelIcon() {
    InitDesktopResources();
    QIcon icon;
    for (int size : {16, 32, 48, 256})
        icon.addFile(QStringLiteral(":/icons/cantovel-%1.png").arg(size), QSize(size, size));
    return icon;
}

void SetApplicationIcon() {
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("cantovel"), CantovelIcon()));
}

QString DefaultOutputFolder() {
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    if (!music.isEmpty() && QFileInfo(music).isDir()) return music;
    return QDir::homePath();
}

bool PreferX11Platform() {
    if (!qEnvironmentVariableIsEmpty(PlatformVariable)) return false;
    if (qEnvironmentVariableIsEmpty("DISPLAY")) return false;
    return qputenv(PlatformVariable, "xcb");
}

void ForgetPlatformChoice(bool chosen) {
    if (chosen) qunsetenv(PlatformVariable);
}

}  // namespace cantovel
