// Process entry only: the application object, the real components, then Sub Main.
#include <QApplication>

#include "app/ProductionComponents.h"
#include "app/SubMain.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Cantovel"));
    QApplication::setOrganizationName(QStringLiteral("Brightfen"));
    QApplication::setDesktopFileName(QStringLiteral("cantovel"));
    cantovel::registerProductionComponents();
    const int code = cantovel::SubMain(QApplication::arguments());
    if (code >= 0) return code;
    return QApplication::exec();
}
