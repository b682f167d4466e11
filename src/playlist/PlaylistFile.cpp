#include "playlist/PlaylistFile.h"

#include <QFile>

#include "app/FileNames.h"
#include "app/Utilities.h"

namespace cantovel {

namespace {

// Lines end at CR LF, CR or LF, so files written on any system read alike.
QStringList splitLines(const QString& text) {
    QStringList lines;
    qsizetype start = 0;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = text[i];
        if (c != u'\r' && c != u'\n') continue;
        lines << text.mid(start, i - start);
        if (c == u'\r' && i + 1 < n && text[i + 1] == u'\n') ++i;
        start = i + 1;
    }
    if (start < n) lines << text.mid(start);
    return lines;
}

}  // namespace

QStringList PlaylistFile::ReadPlaylist(const QString& playlistPath) {
    QStringList rows;
    QFile file;
    if (!OpenByName(file, playlistPath, QIODevice::ReadOnly)) return rows;
    const QStringList lines = splitLines(NameFromBytes(file.readAll()));
    file.close();

    // A line that names no file is replaced by a path made of the playlist's own folder
    // and name: the splitter's last run was on the playlist, and that is what the line
    // becomes. Only a line of ":" alone escapes it.
    QString self = ParsePathParts(playlistPath, QStringLiteral("l"));
    if (!self.endsWith(u'/')) self += u'/';
    self += LastPathParts().file;
    const bool selfExists = FileExists(self);

    for (const QString& line : lines) {
        if (line.isEmpty() || line.startsWith(u'#')) continue;
        if (FileExists(line))
            rows << line;
        else if (line != QLatin1String(":") && selfExists)
            rows << self;
    }
    return rows;
}

bool PlaylistFile::WritePlaylist(const QString& playlistPath, const QStringList& rows) {
    QByteArray bytes;
    for (const QString& row : rows) bytes += NameToBytes(row) + "\r\n";
    // Written aside and renamed over, so a failed write never leaves half a playlist.
    return ReplaceFileByName(playlistPath, bytes);
}

QString PlaylistFile::RowName(const QString& path) {
    return ParsePathParts(path, QStringLiteral("f"));
}

}  // namespace cantovel
