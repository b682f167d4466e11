#include "player/HelpFile.h"

#include <QCoreApplication>
#include <QDir>
#include <exception>

#include "app/Utilities.h"
#include "platform/msgbox/MsgBox.h"
#include "platform/shell/Shell.h"

namespace cantovel {

namespace {

const char* const HelpMissingMessage =
    "The Cantovel Help compoents seems to have been deleted, moved, or renamed; please "
    "reinstall Cantovel or replace the help components otherwise in order to use the help "
    "system.";

const char* const HelpFailedMessage =
    "An error has occured while attempting to access the Cantovel help system.  It is "
    "recommdended that you reinstall Brightfen Cantovel in order to correct this condition.";

// "Convert WAV to MP3" -> "convert-wav-to-mp3"
QString slug(const QString& topic) {
    QString s;
    for (QChar c : topic.toLower()) {
        if (c.isLetterOrNumber())
            s += c;
        else if (!s.isEmpty() && !s.endsWith(u'-'))
            s += u'-';
    }
    while (s.endsWith(u'-')) s.chop(1);
    return s;
}

void openPage(const QString& path) {
    if (!FileExists(path)) {
        MsgBoxShow(QString::fromLatin1(HelpMissingMessage), Mb::Exclamation);
        return;
    }
    int result = 0;
    try {
        result = Shell::get().open(path);
    } catch (const std::exception&) {
        // No desktop to hand the page to at all.
        MsgBoxShow(QString::fromLatin1(HelpFailedMessage), Mb::Exclamation);
        return;
    }
    if (result <= 32)
        MsgBoxShow(QStringLiteral("An error occurred attempting to open the '") + path +
                       QStringLiteral("' file (ShellExecute API code ") + QString::number(result) +
                       QStringLiteral(")."),
                   Mb::Exclamation | Mb::SystemModal | Mb::SetForeground);
}

}  // namespace

QString HelpFolder() {
    const QString own = qEnvironmentVariable("CANTOVEL_HELP_DIR");
    if (!own.isEmpty()) return QDir::cleanPath(own);
    const QString appDir = QCoreApplication::applicationDirPath();
    const QStringList candidates{appDir + QStringLiteral("/Help"),
                                 appDir + QStringLiteral("/../share/cantovel/help"),
                                 QStringLiteral(CANTOVEL_DATA_DIR "/help"),
                                 QStringLiteral(CANTOVEL_SOURCE_DIR "/resources/help")};
    for (const QString& c : candidates)
        if (PathExists(c)) return QDir::cleanPath(c);
    return QDir::cleanPath(candidates.first());
}

QString HelpFilePath() {
    return HelpFolder() + QStringLiteral("/index.html");
}

QString HelpTopicPath(const QString& topic) {
    return HelpFolder() + u'/' + slug(topic) + QStringLiteral(".html");
}

void ShowHelpTopic(const QString& topic) {
    const QString page = HelpTopicPath(topic);
    openPage(FileExists(page) ? page : HelpFilePath());
}

// The help command of the main menus (and F1 of the main window).
void OpenHelpContents() {
    openPage(HelpFilePath());
}

}  // namespace cantovel
