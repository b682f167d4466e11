// Process entry only: the application object, the real components, then Sub Main.
#include <QApplication>
#include <QScreen>
#include <QTimer>

#include "app/FileNames.h"
#include "app/ProductionComponents.h"
#include "app/SubMain.h"
#include "shell/DesktopResources.h"

namespace {
// With CANTOVEL_SCREENSHOT set, a picture of the screen is saved once the main window is
// up (and with CANTOVEL_SCREENSHOT_QUIT the program then ends): how `make run` shows the
// player on a machine without a display of its own.
void scheduleScreenshot() {
    const QString path = qEnvironmentVariable("CANTOVEL_SCREENSHOT");
    if (path.isEmpty()) return;
    QTimer::singleShot(1500, [path] {
        if (QScreen* screen = QGuiApplication::primaryScreen()) screen->grabWindow(0).save(path);
        if (qEnvironmentVariableIsSet("CANTOVEL_SCREENSHOT_QUIT")) QApplication::quit();
    });
}
}  // namespace

int main(int argc, char** argv) {
    // The window system is picked as the application object is made.
    const bool x11 = cantovel::PreferX11Platform();
    QApplication app(argc, argv);
    cantovel::ForgetPlatformChoice(x11);
    QApplication::setApplicationName(QStringLiteral("Cantovel"));
    QApplication::setOrganizationName(QStringLiteral("Brightfen"));
    QApplication::setDesktopFileName(QStringLiteral("cantovel"));
    cantovel::SetApplicationIcon();
    cantovel::registerProductionComponents();
    const int code = cantovel::SubMain(cantovel::ArgumentsFromArgv(argc, argv));
    if (code >= 0) return code;
    scheduleScreenshot();
    return QApplication::exec();
}
