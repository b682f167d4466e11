#include "shell/AssociateFileType.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "app/AppState.h"
#include "app/Settings.h"
#include "shell/DesktopAssociations.h"

namespace cantovel {

namespace {
constexpr RegRoot Classes = RegRoot::ClassesRoot;
}

QString ProgramPath() {
    QString folder = QCoreApplication::applicationDirPath();
    if (!folder.endsWith(u'/')) folder += u'/';
    return folder + QFileInfo(QCoreApplication::applicationFilePath()).fileName();
}

bool AssociateFileType(const QString& Extension, const QString& ProgID, const QString& AppPath,
                       const QString& AppArgs, const QString& IconSpec, bool KeepExisting,
                       const QString& Description, const QString& Verb, const QString& VerbCaption,
                       const QString& ContentType, const QString& DdeMessage,
                       const QString& DdeTopic) {
    QString ext = Extension.trimmed();
    if (ext.isEmpty()) return false;
    if (!ext.startsWith(u'.')) ext.prepend(u'.');

    const QString title = QString::fromLatin1(AppTitle);
    QString progId = ProgID;
    bool keep = KeepExisting;
    if (keep) {
        const QString existing = ReadRegValue(Classes, ext, QString(), QString());
        if (!existing.isEmpty())
            progId = existing;
        else
            keep = false;
    }
    if (progId.isEmpty()) progId = title;
    const QString appPath = AppPath.isEmpty() ? ProgramPath() : AppPath;
    const QString args = AppArgs.isEmpty() ? QString() : u' ' + AppArgs;
    const QString verb = Verb.isEmpty() ? QStringLiteral("Open") : Verb;
    const QString topic = DdeTopic.isEmpty() ? QStringLiteral("System") : DdeTopic;

    // Paths have no short form here; the rest of the icon text is kept as it was made.
    QString icon;
    if (IconSpec == QLatin1String("1"))
        icon = QStringLiteral("\"%1\"");
    else
        icon = (IconSpec.isEmpty() ? appPath : IconSpec).toLower() + QStringLiteral(",0");
    const QString command = u'"' + appPath + u'"' + args + QStringLiteral(" \"%1\"");

    if (!keep) {
        if (!WriteRegValue(Classes, progId, QString(), Description)) return false;
        if (!WriteRegValue(Classes, progId + QStringLiteral("\\DefaultIcon"), QString(), icon))
            return false;
        if (!WriteRegValue(Classes, progId + QStringLiteral("\\QuickView"), QString(),
                           QStringLiteral("*")))
            return false;
    }
    const QString verbKey = progId + QStringLiteral("\\Shell\\") + verb;
    if (!WriteRegValue(Classes, verbKey + QStringLiteral("\\Command"), QString(), command))
        return false;

    if (VerbCaption.isEmpty())
        DeleteRegValue(Classes, verbKey, QString());
    else
        WriteRegValue(Classes, verbKey, QString(), VerbCaption);

    const QString ddeKey = verbKey + QStringLiteral("\\ddeexec");
    if (DdeMessage.isEmpty()) {
        DeleteRegKey(Classes, ddeKey);
    } else {
        WriteRegValue(Classes, ddeKey, QString(), DdeMessage);
        WriteRegValue(Classes, ddeKey + QStringLiteral("\\Application"), QString(), title);
        WriteRegValue(Classes, ddeKey + QStringLiteral("\\Topic"), QString(), topic);
    }

    if (!keep) {
        WriteRegValue(Classes, ext, QString(), progId);
        if (ContentType.isEmpty())
            DeleteRegValue(Classes, ext, QStringLiteral("Content Type"));
        else
            WriteRegValue(Classes, ext, QStringLiteral("Content Type"), ContentType);
    }

    // The desktop opens files through its own entries; they follow the keys just written.
    // Its result does not change ours: the registry is the record.
    const QString description =
        keep ? ReadRegValue(Classes, progId, QString(), QString()) : Description;
    DesktopAssociations::writeEntry(progId, description, appPath, AppArgs, !DdeMessage.isEmpty());
    if (!keep)
        DesktopAssociations::bind(ext, DesktopAssociations::desktopIdFor(progId), ContentType);
    return true;
}

}  // namespace cantovel
