#include "playlist/PlaylistFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <limits>
#include <optional>

#include "app/FileNames.h"
#include "app/Utilities.h"

namespace cantovel {

namespace {

// No line longer than this names a file on Linux, so none is looked up.
constexpr qsizetype MaxPathBytes = 4096;
// Media metafiles are a few lines of text; what is longer is not one.
constexpr qint64 MaxMetafileBytes = 1 << 20;

// The whole file, or nothing when it holds a NUL byte: text has none, so such a file is
// not a playlist, and reading stops at the first chunk that shows it.
std::optional<QByteArray> readText(QFile& file, qint64 limit) {
    QByteArray bytes;
    while (!file.atEnd()) {
        const QByteArray chunk = file.read(1 << 20);
        if (chunk.isEmpty() || chunk.contains('\0')) return std::nullopt;
        bytes += chunk;
        if (bytes.size() > limit) return std::nullopt;
    }
    return bytes;
}

// Calls `line` with each line; lines end at CR LF, CR or LF, so files written on any
// system read alike.
template <class F>
void forEachLine(const QByteArray& text, F&& line) {
    const char* p = text.constData();
    const char* const end = p + text.size();
    while (p < end) {
        const char* stop = p;
        while (stop < end && *stop != '\r' && *stop != '\n') ++stop;
        line(QByteArrayView(p, stop - p));
        if (stop < end && *stop == '\r' && stop + 1 < end && stop[1] == '\n') ++stop;
        p = stop + 1;
    }
}

QString ext(const QString& path) {
    return QFileInfo(path).suffix().toLower();
}

}  // namespace

QStringList PlaylistFile::ReadPlaylist(const QString& playlistPath) {
    QStringList rows;
    QFile file;
    if (!OpenByName(file, playlistPath, QIODevice::ReadOnly)) return rows;
    const std::optional<QByteArray> text = readText(file, std::numeric_limits<qint64>::max());
    file.close();
    if (!text) return rows;

    // A line that names no file is replaced by a path made of the playlist's own folder
    // and name: the splitter's last run was on the playlist, and that is what the line
    // becomes. Only a line of ":" alone escapes it.
    QString self = ParsePathParts(playlistPath, QStringLiteral("l"));
    if (!self.endsWith(u'/')) self += u'/';
    self += LastPathParts().file;
    const bool selfExists = FileExists(self);

    forEachLine(*text, [&](QByteArrayView line) {
        if (line.isEmpty() || line.front() == '#') return;
        if (line.size() <= MaxPathBytes) {
            const QString path = NameFromBytes(line.toByteArray());
            if (FileExists(path)) {
                rows << path;
                return;
            }
        }
        if (line != ":" && selfExists) rows << self;
    });
    return rows;
}

bool PlaylistFile::IsMetafile(const QString& path) {
    const QString e = ext(path);
    return e == QLatin1String("m3u") || e == QLatin1String("asx") || e == QLatin1String("wax") ||
           e == QLatin1String("wvx");
}

QStringList PlaylistFile::MetafileEntries(const QString& path) {
    QStringList entries;
    if (!IsMetafile(path)) return entries;
    QFile file;
    if (!OpenByName(file, path, QIODevice::ReadOnly)) return entries;
    const std::optional<QByteArray> text = readText(file, MaxMetafileBytes);
    if (!text) return entries;
    const QDir folder = QFileInfo(path).absoluteDir();
    // A relative entry is relative to the metafile; a file URL is a path.
    const auto resolve = [&folder](const QString& entry) {
        const QUrl url(entry);
        if (url.isLocalFile()) return url.toLocalFile();
        if (url.scheme().size() > 1) return entry;
        return QDir::cleanPath(folder.absoluteFilePath(entry));
    };
    if (ext(path) == QLatin1String("m3u")) {
        forEachLine(*text, [&](QByteArrayView line) {
            const QString entry = NameFromBytes(line.toByteArray()).trimmed();
            if (!entry.isEmpty() && !entry.startsWith(u'#')) entries << resolve(entry);
        });
    } else {
        // The ASX family: small XML, often not well formed, whose <Ref href> are the entries.
        static const QRegularExpression ref(
            QStringLiteral(R"re(<\s*ref\b[^>]*\bhref\s*=\s*(?:"([^"]*)"|'([^']*)'|([^\s>]+)))re"),
            QRegularExpression::CaseInsensitiveOption);
        const QString xml = QString::fromUtf8(*text);
        for (auto it = ref.globalMatch(xml); it.hasNext();) {
            const QRegularExpressionMatch m = it.next();
            QString href = m.captured(1) + m.captured(2) + m.captured(3);
            href.replace(QLatin1String("&amp;"), QLatin1String("&"));
            if (!href.trimmed().isEmpty()) entries << resolve(href.trimmed());
        }
    }
    return entries;
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
