#include "shell/MprisRoot.h"

#include "app/AppState.h"
#include "shell/DesktopAssociations.h"
#include "shell/MprisService.h"

namespace cantovel {

MprisRoot::MprisRoot(MprisService* service) : QDBusAbstractAdaptor(service), service_(service) {}

QString MprisRoot::Identity() const {
    return QString::fromLatin1(AppTitle);
}

QStringList MprisRoot::SupportedMimeTypes() const {
    QStringList types;
    for (const char* ext : {".mp3", ".wav", ".wma", ".mid", ".aif", ".au", ".mp2", ".avi", ".asf",
                            ".mpg", ".mov", ".viv", ".ply", ".m3u"}) {
        const QString type = DesktopAssociations::mimeTypeFor(QLatin1String(ext));
        if (!types.contains(type)) types << type;
    }
    return types;
}

void MprisRoot::Raise() {
    service_->raise();
}

void MprisRoot::Quit() {
    service_->quit();
}

}  // namespace cantovel
