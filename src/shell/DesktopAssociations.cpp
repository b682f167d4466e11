#include "shell/DesktopAssociations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include "app/AppState.h"
#include "app/Settings.h"
#include "shell/DesktopResources.h"

namespace cantovel {

namespace {

QString dataHome() {
    QString home = qEnvironmentVariable("XDG_DATA_HOME");
    if (home.isEmpty()) home = QDir::homePath() + QStringLiteral("/.local/share");
    return home;
}

QString configHome() {
    QString home = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (home.isEmpty()) home = QDir::homePath() + QStringLiteral("/.config");
    return home;
}

// Key files are edited as bytes: a line the program does not touch keeps every byte it
// had, whatever its encoding, and a file that ends up the same is not written at all.
struct KeyFile {
    QString path;
    QByteArray original;
    QList<QByteArray> lines;
};

// A symbolic link stays a link: the file it points to is what gets read and written.
QString resolvedPath(const QString& path) {
    const QFileInfo info(path);
    if (!info.isSymLink()) return path;
    const QString target = info.symLinkTarget();
    return target.isEmpty() ? path : target;
}

KeyFile readKeyFile(const QString& path) {
    KeyFile file{resolvedPath(path), {}, {}};
    QFile in(file.path);
    if (!in.open(QIODevice::ReadOnly)) return file;
    file.original = in.readAll();
    file.lines = file.original.split('\n');
    if (!file.lines.isEmpty() && file.lines.last().isEmpty()) file.lines.removeLast();
    return file;
}

bool writeKeyFile(const KeyFile& file) {
    QByteArray bytes = file.lines.join('\n');
    if (!file.lines.isEmpty()) bytes += '\n';
    if (bytes == file.original) return true;
    QDir().mkpath(QFileInfo(file.path).absolutePath());
    QSaveFile out(file.path);
    if (!out.open(QIODevice::WriteOnly)) return false;
    if (out.write(bytes) != bytes.size()) return false;
    return out.commit();
}

// A key-file edit: the value of `key` in `group`, or where it would go.
struct KeyPlace {
    qsizetype group = -1;  // the group's header line
    qsizetype line = -1;   // the key's line
    qsizetype end = -1;    // where the group's last line ends
};

KeyPlace findKey(const QList<QByteArray>& lines, const QByteArray& group, const QByteArray& key) {
    KeyPlace place;
    const QByteArray header = '[' + group + ']';
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray trimmed = lines[i].trimmed();
        if (trimmed.startsWith('[')) {
            if (place.group >= 0) break;
            if (trimmed == header) place.group = place.end = i;
            continue;
        }
        if (place.group < 0) continue;
        if (!trimmed.isEmpty()) place.end = i;
        const qsizetype eq = trimmed.indexOf('=');
        if (eq > 0 && trimmed.left(eq).trimmed() == key) place.line = i;
    }
    return place;
}

QString valueAt(const QList<QByteArray>& lines, const KeyPlace& place) {
    if (place.line < 0) return {};
    const QByteArray& l = lines[place.line];
    return QString::fromUtf8(l.mid(l.indexOf('=') + 1).trimmed());
}

void setKey(QList<QByteArray>& lines, const QByteArray& group, const QByteArray& key,
            const QString& value) {
    const KeyPlace place = findKey(lines, group, key);
    const QByteArray line = key + '=' + value.toUtf8();
    if (place.line >= 0) {
        // An unchanged value keeps its line as it was written, spaces included.
        if (valueAt(lines, place) != value) lines[place.line] = line;
    } else if (place.group >= 0) {
        lines.insert(place.end + 1, line);
    } else {
        if (!lines.isEmpty() && !lines.last().trimmed().isEmpty()) lines << QByteArray();
        lines << '[' + group + ']' << line;
    }
}

// A ";"-separated list value without empty items.
QStringList listValue(const QString& value) {
    QStringList items = value.split(u';', Qt::SkipEmptyParts);
    for (QString& s : items) s = s.trimmed();
    items.removeAll(QString());
    return items;
}

QString slug(const QString& text) {
    QString out;
    for (const QChar c : text.toLower()) {
        if (c.isLetterOrNumber() && c.unicode() < 128)
            out += c;
        else if (!out.endsWith(u'-'))
            out += u'-';
    }
    while (out.endsWith(u'-')) out.chop(1);
    while (out.startsWith(u'-')) out.remove(0, 1);
    return out;
}

const QByteArray DefaultGroup = "Default Applications";
const QByteArray AddedGroup = "Added Associations";
const QByteArray EntryGroup = "Desktop Entry";

}  // namespace

QString DesktopAssociations::applicationsFolder() {
    return dataHome() + QStringLiteral("/applications");
}

QString DesktopAssociations::mimeAppsPath() {
    return configHome() + QStringLiteral("/mimeapps.list");
}

QString DesktopAssociations::desktopIdFor(const QString& progId) {
    const QString title = QString::fromLatin1(AppTitle);
    if (progId.compare(title, Qt::CaseInsensitive) == 0) return QStringLiteral("cantovel.desktop");
    const QString name = slug(progId);
    return QStringLiteral("cantovel-") + (name.isEmpty() ? QStringLiteral("type") : name) +
           QStringLiteral(".desktop");
}

namespace {

// Each extension under the canonical name the desktop's MIME database gives its files
// (an alias such as "video/x-ms-asf" is never looked up by the desktop). ".cda", ".m1v",
// ".mpv" and ".mpa" have no glob in the shared database: the program's own MIME package
// adds them. ".dat" and ".enc" are left without one; they name too many other things.
const std::pair<const char*, const char*> ExtensionTypes[] = {
    {".viv", "video/vnd.vivo"},
    {".vivo", "video/vnd.vivo"},
    {".cda", "application/x-cda"},
    {".dat", "video/mpeg"},
    {".avi", "video/x-msvideo"},
    {".asf", "application/vnd.ms-asf"},
    {".mpg", "video/mpeg"},
    {".mpeg", "video/mpeg"},
    {".mpe", "video/mpeg"},
    {".mpa", "audio/mpeg"},
    {".mpv", "video/mpeg"},
    {".m1v", "video/mpeg"},
    {".enc", "video/mpeg"},
    {".mp2", "audio/mp2"},
    {".mov", "video/quicktime"},
    {".qt", "video/quicktime"},
    {".wav", "audio/x-wav"},
    {".wma", "audio/x-ms-wma"},
    {".mid", "audio/midi"},
    {".midi", "audio/midi"},
    {".rmi", "audio/midi"},
    {".mp3", "audio/mpeg"},
    {".aif", "audio/x-aiff"},
    {".aiff", "audio/x-aiff"},
    {".aifc", "audio/x-aifc"},
    {".au", "audio/basic"},
    {".snd", "audio/basic"},
    {".m3u", "audio/x-mpegurl"},
    {".flac", "audio/flac"},
    {".ogg", "audio/ogg"},
    {".oga", "audio/ogg"},
    {".opus", "audio/x-opus+ogg"},
    {".m4a", "audio/mp4"},
    {".aac", "audio/aac"},
    {".ply", "application/x-cantovel-playlist"},
};

QString normalExtension(const QString& extension) {
    QString ext = extension.trimmed().toLower();
    if (!ext.startsWith(u'.')) ext.prepend(u'.');
    return ext;
}

// Whether another extension of the same MIME type is still bound to the entry that
// holds the type: the desktop cannot tell the two apart, so the type stays.
bool typeStillHeld(const QString& extension, const QString& mimeType, const QString& holder) {
    for (const auto& [ext, type] : ExtensionTypes) {
        if (mimeType != QLatin1String(type) || extension == QLatin1String(ext)) continue;
        const QString progId =
            ReadRegValue(RegRoot::ClassesRoot, QLatin1String(ext), QString(), QString(), true);
        if (!progId.isEmpty() && DesktopAssociations::desktopIdFor(progId) == holder) return true;
    }
    return false;
}

}  // namespace

QString DesktopAssociations::mimeTypeFor(const QString& extension) {
    const QString ext = normalExtension(extension);
    for (const auto& [e, type] : ExtensionTypes)
        if (ext == QLatin1String(e)) return QLatin1String(type);
    return {};
}

QString DesktopAssociations::quoteExecArgument(const QString& argument) {
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    QString out;
    bool quote = argument.isEmpty();
    for (const QChar c : argument)
        if (reserved.contains(c)) quote = true;
    if (quote) {
        out += u'"';
        for (const QChar c : argument) {
            if (c == u'"' || c == u'`' || c == u'$' || c == u'\\') out += u'\\';
            out += c;
        }
        out += u'"';
    } else {
        out = argument;
    }
    out.replace(u'%', QStringLiteral("%%"));
    // The key file's own escape comes on top of the Exec rules.
    out.replace(u'\\', QStringLiteral("\\\\"));
    return out;
}

QString DesktopAssociations::execLine(const QString& appPath, const QString& appArgs,
                                      bool handOff) {
    QStringList parts{quoteExecArgument(appPath)};
    for (const QString& a : QProcess::splitCommand(appArgs)) parts << quoteExecArgument(a);
    if (handOff) parts << handOffSwitch();
    parts << QStringLiteral("%f");
    return parts.join(u' ');
}

bool DesktopAssociations::writeEntry(const QString& progId, const QString& description,
                                     const QString& appPath, const QString& appArgs, bool handOff) {
    const QString id = desktopIdFor(progId);
    const QString path = applicationsFolder() + u'/' + id;
    KeyFile entry = readKeyFile(path);
    // The program's own entry is named after the program in the menus, whatever type
    // key text it was written with.
    const QString title = QString::fromLatin1(AppTitle);
    const bool own = id == QLatin1String("cantovel.desktop");
    if (own && entry.original.isEmpty()) {
        // The user's entry hides the installed one: it starts as a copy, so the types,
        // keywords and texts the installation gives the desktop stay.
        for (const QString& installed :
             QStandardPaths::locateAll(QStandardPaths::ApplicationsLocation, id))
            if (QFileInfo(installed).absoluteFilePath() != QFileInfo(path).absoluteFilePath()) {
                entry.lines = readKeyFile(installed).lines;
                break;
            }
    }
    const QString name = own || description.trimmed().isEmpty() ? title : description.trimmed();
    QList<QByteArray>& lines = entry.lines;
    auto setIfMissing = [&lines](const QByteArray& key, const QString& value) {
        if (findKey(lines, EntryGroup, key).line < 0) setKey(lines, EntryGroup, key, value);
    };
    setKey(lines, EntryGroup, "Type", QStringLiteral("Application"));
    setKey(lines, EntryGroup, "Name", name);
    // The own entry describes the program, not the type it was last written for.
    if (!description.trimmed().isEmpty()) {
        if (own)
            setIfMissing("Comment", description.trimmed());
        else
            setKey(lines, EntryGroup, "Comment", description.trimmed());
    }
    setKey(lines, EntryGroup, "Exec", execLine(appPath, appArgs, handOff));
    setKey(lines, EntryGroup, "Icon", QStringLiteral("cantovel"));
    setKey(lines, EntryGroup, "Terminal", QStringLiteral("false"));
    setIfMissing("Categories", QStringLiteral("AudioVideo;Player;"));
    // Only the program's own entry belongs in the menus; the others serve file types.
    if (!own) setKey(lines, EntryGroup, "NoDisplay", QStringLiteral("true"));
    return writeKeyFile(entry);
}

bool DesktopAssociations::entryExists(const QString& desktopId) {
    if (QFileInfo::exists(applicationsFolder() + u'/' + desktopId)) return true;
    return !QStandardPaths::locate(QStandardPaths::ApplicationsLocation, desktopId).isEmpty();
}

bool DesktopAssociations::addMimeTypeToEntry(const QString& desktopId, const QString& mimeType) {
    KeyFile entry = readKeyFile(applicationsFolder() + u'/' + desktopId);
    if (entry.lines.isEmpty()) return false;
    QStringList types =
        listValue(valueAt(entry.lines, findKey(entry.lines, EntryGroup, "MimeType")));
    if (types.contains(mimeType)) return true;
    types << mimeType;
    setKey(entry.lines, EntryGroup, "MimeType", types.join(u';') + u';');
    return writeKeyFile(entry);
}

bool DesktopAssociations::setDefault(const QString& mimeType, const QString& desktopId) {
    KeyFile list = readKeyFile(mimeAppsPath());
    const QByteArray key = mimeType.toUtf8();
    const QStringList defaults =
        listValue(valueAt(list.lines, findKey(list.lines, DefaultGroup, key)));
    // An entry that already comes first keeps the line as the user or the desktop wrote it.
    if (defaults.value(0) != desktopId) setKey(list.lines, DefaultGroup, key, desktopId + u';');
    QStringList added = listValue(valueAt(list.lines, findKey(list.lines, AddedGroup, key)));
    if (added.value(0) != desktopId) {
        added.removeAll(desktopId);
        added.prepend(desktopId);
        setKey(list.lines, AddedGroup, key, added.join(u';') + u';');
    }
    return writeKeyFile(list);
}

bool DesktopAssociations::removeDefault(const QString& mimeType, const QString& onlyIfDesktopId) {
    KeyFile list = readKeyFile(mimeAppsPath());
    const KeyPlace place = findKey(list.lines, DefaultGroup, mimeType.toUtf8());
    if (place.line < 0) return true;
    const QStringList current = listValue(valueAt(list.lines, place));
    if (!onlyIfDesktopId.isEmpty() && (current.isEmpty() || current.first() != onlyIfDesktopId))
        return true;
    list.lines.removeAt(place.line);
    return writeKeyFile(list);
}

QString DesktopAssociations::defaultFor(const QString& mimeType) {
    const KeyFile list = readKeyFile(mimeAppsPath());
    const QStringList ids =
        listValue(valueAt(list.lines, findKey(list.lines, DefaultGroup, mimeType.toUtf8())));
    return ids.isEmpty() ? QString() : ids.first();
}

bool DesktopAssociations::bind(const QString& extension, const QString& desktopId,
                               const QString& contentType) {
    const QString mime = contentType.isEmpty() ? mimeTypeFor(extension) : contentType;
    if (mime.isEmpty()) return false;  // no type the desktop knows by this extension
    // Some of the bound types are known to the desktop only through the program's package.
    installMimePackage();
    addMimeTypeToEntry(desktopId, mime);
    return setDefault(mime, desktopId);
}

void DesktopAssociations::restore(const QString& extension, const QString& progId) {
    const QString mime = mimeTypeFor(extension);
    if (mime.isEmpty()) return;
    const QString current = defaultFor(mime);
    if (!current.isEmpty() && typeStillHeld(normalExtension(extension), mime, current)) return;
    QString id = progId.trimmed();
    if (!id.endsWith(QLatin1String(".desktop"))) id += QStringLiteral(".desktop");
    if (entryExists(id)) {
        setDefault(mime, id);
        return;
    }
    // The former type is no desktop entry: let go of the type, whichever entry of ours
    // holds it.
    if (current == QLatin1String("cantovel.desktop") ||
        current.startsWith(QLatin1String("cantovel-")))
        removeDefault(mime, current);
}

bool DesktopAssociations::installMimePackage() {
    const QString mimeFolder = dataHome() + QStringLiteral("/mime");
    const QString package = mimeFolder + QStringLiteral("/packages/cantovel.xml");
    // The same package the installation puts in the shared folder.
    InitDesktopResources();
    QFile source(QStringLiteral(":/mime/cantovel.xml"));
    if (!source.open(QIODevice::ReadOnly)) return false;
    const QByteArray xml = source.readAll();
    QFile current(package);
    const bool changed = !current.open(QIODevice::ReadOnly) || current.readAll() != xml;
    current.close();
    if (changed) {
        QDir().mkpath(QFileInfo(package).absolutePath());
        QSaveFile out(package);
        if (!out.open(QIODevice::WriteOnly) || out.write(xml) != xml.size() || !out.commit())
            return false;
    }
    // The desktop reads the compiled cache; without the tool the package still waits there.
    if (!changed && QFileInfo::exists(mimeFolder + QStringLiteral("/mime.cache"))) return true;
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("update-mime-database"));
    if (tool.isEmpty()) return true;
    // The start of the program does not wait for the cache.
    return QProcess::startDetached(tool, {mimeFolder});
}

}  // namespace cantovel
