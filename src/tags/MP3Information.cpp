#include "tags/MP3Information.h"

#include "app/Utilities.h"
#include "platform/msgbox/MsgBox.h"
#include "tags/clsMP3.h"

namespace cantovel {

QString MP3InformationText(const clsMP3& mp3, const QString& file) {
    // One blank behind "Genre:", two behind every other label.
    return QStringLiteral("Filename:  ") + file + QStringLiteral("\r\n") +
           QStringLiteral("Track Title:  ") + mp3.Title() + QStringLiteral("\r\n") +
           QStringLiteral("Artist:  ") + mp3.Artist() + QStringLiteral("\r\n") +
           QStringLiteral("Album:  ") + mp3.Album() + QStringLiteral("\r\n") +
           QStringLiteral("Year:  ") + mp3.Year() + QStringLiteral("\r\n") +
           QStringLiteral("Comment:  ") + mp3.Comment() + QStringLiteral("\r\n") +
           QStringLiteral("Genre: ") + mp3.Genre();
}

void ShowMP3Information(clsMP3& mp3, const QString& currentFile) {
    ParsePathParts(currentFile, QStringLiteral("f"));
    const PathParts parts = LastPathParts();
    if (parts.ext.toLower() != QLatin1String(".mp3") || currentFile.isEmpty()) {
        MsgBoxShow(QStringLiteral("A MP3 file is not currently loaded to process.  In order to "
                                  "retrieve information on a given MP3 file, you must first "
                                  "load the file into the main Cantovel module."),
                   Mb::Information | Mb::SetForeground);
        return;
    }
    // A field the tag leaves empty shows as nothing behind its label.
    mp3.setFileName(currentFile);
    // The fields keep a tag's NUL padding; the box leaves it out, where it would show as
    // rows of boxes.
    QString text = MP3InformationText(mp3, parts.file);
    text.remove(QChar(u'\0'));
    MsgBoxShow(text, Mb::Information | Mb::SetForeground);
}

}  // namespace cantovel
