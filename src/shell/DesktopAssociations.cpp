#include "shell/DesktopAssociations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include "app/AppState.h"
#include "shell/DesktopResources.h"

namespace cantovel {

namespace {

const QString PlaylistMimeType = QStringLiteral("application/x-cantovel-playlist");

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

QStringList readLines(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    return lines;
}

bool writeLines(const QString& path, const QStringList& lines) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) return false;
    file.write((lines.join(u'\n') + u'\n').toUtf8());
    return file.commit();
}

// A key-file edit: the value of `key` in `group`, or where it would go.
struct KeyPlace {
    qsizetype group = -1;  // the group's header line
    qsizetype line = -1;   // the key's line
    qsizetype end = -1;    // where the group's last line ends
};

KeyPlace findKey(const QStringList& lines, const QString& group, const QString& key) {
    KeyPlace place;
    const QString header = u'[' + group + u']';
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString trimmed = lines[i].trimmed();
        if (trimmed.startsWith(u'[')) {
            if (place.group >= 0) break;
            if (trimmed == header) place.group = place.end = i;
            continue;
        }
        if (place.group < 0) continue;
        if (!trimmed.isEmpty()) place.end = i;
        const qsizetype eq = trimmed.indexOf(u'=');
        if (eq > 0 && trimmed.left(eq).trimmed() == key) place.line = i;
    }
    return place;
}

QString valueAt(const QStringList& lines, const KeyPlace& place) {
    if (place.line < 0) return {};
    const QString& l = lines[place.line];
    return l.mid(l.indexOf(u'=') + 1).trimmed();
}

void setKey(QStringList& lines, const QString& group, const QString& key, const QString& value) {
    const KeyPlace place = findKey(lines, group, key);
    const QString line = key + u'=' + value;
    if (place.line >= 0) {
        lines[place.line] = line;
    } else if (place.group >= 0) {
        lines.insert(place.end + 1, line);
    } else {
        if (!lines.isEmpty() && !lines.last().trimmed().isEmpty()) lines << QString();
        lines << u'[' + group + u']' << line;
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

const QString DefaultGroup = QStringLiteral("Default Applications");
const QString AddedGroup = QStringLiteral("Added Associations");
const QString EntryGroup = QStringLiteral("Desktop Entry");

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

QString DesktopAssociations::mimeTypeFor(const QString& extension) {
    static const QHash<QString, QString> types = {
        {".viv", "video/vnd.vivo"},  {".vivo", "video/vnd.vivo"}, {".cda", "application/x-cda"},
        {".dat", "video/mpeg"},      {".avi", "video/x-msvideo"}, {".asf", "video/x-ms-asf"},
        {".mpg", "video/mpeg"},      {".mpeg", "video/mpeg"},     {".mpe", "video/mpeg"},
        {".mpa", "video/mpeg"},      {".mpv", "video/mpeg"},      {".m1v", "video/mpeg"},
        {".enc", "video/mpeg"},      {".mp2", "audio/mp2"},       {".mov", "video/quicktime"},
        {".qt", "video/quicktime"},  {".wav", "audio/x-wav"},     {".wma", "audio/x-ms-wma"},
        {".mid", "audio/midi"},      {".midi", "audio/midi"},     {".rmi", "audio/midi"},
        {".mp3", "audio/mpeg"},      {".aif", "audio/x-aiff"},    {".aiff", "audio/x-aiff"},
        {".aifc", "audio/x-aiff"},   {".au", "audio/basic"},      {".snd", "audio/basic"},
        {".m3u", "audio/x-mpegurl"}, {".ply", PlaylistMimeType},
    };
    QString ext = extension.trimmed().toLower();
    if (!ext.startsWith(u'.')) ext.prepend(u'.');
    return types.value(ext);
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
    QStringList lines = readLines(path);
    // The program's own entry is named after the program in the menus, whatever type
    // key text it was written with.
    const QString title = QString::fromLatin1(AppTitle);
    const bool own = id == QLatin1String("cantovel.desktop");
    const QString name = own || description.trimmed().isEmpty() ? title : description.trimmed();
    setKey(lines, EntryGroup, QStringLiteral("Type"), QStringLiteral("Application"));
    setKey(lines, EntryGroup, QStringLiteral("Name"), name);
    if (!description.trimmed().isEmpty())
        setKey(lines, EntryGroup, QStringLiteral("Comment"), description.trimmed());
    setKey(lines, EntryGroup, QStringLiteral("Exec"), execLine(appPath, appArgs, handOff));
    setKey(lines, EntryGroup, QStringLiteral("Icon"), QStringLiteral("cantovel"));
    setKey(lines, EntryGroup, QStringLiteral("Terminal"), QStringLiteral("false"));
    setKey(lines, EntryGroup, QStringLiteral("Categories"), QStringLiteral("AudioVideo;Player;"));
    // Only the program's own entry belongs in the menus; the others serve file types.
    if (!own) setKey(lines, EntryGroup, QStringLiteral("NoDisplay"), QStringLiteral("true"));
    return writeLines(path, lines);
}

bool DesktopAssociations::entryExists(const QString& desktopId) {
    if (QFileInfo::exists(applicationsFolder() + u'/' + desktopId)) return true;
    return !QStandardPaths::locate(QStandardPaths::ApplicationsLocation, desktopId).isEmpty();
}

bool DesktopAssociations::addMimeTypeToEntry(const QString& desktopId, const QString& mimeType) {
    const QString path = applicationsFolder() + u'/' + desktopId;
    QStringList lines = readLines(path);
    if (lines.isEmpty()) return false;
    QStringList types =
        listValue(valueAt(lines, findKey(lines, EntryGroup, QStringLiteral("MimeType"))));
    if (types.contains(mimeType)) return true;
    types << mimeType;
    setKey(lines, EntryGroup, QStringLiteral("MimeType"), types.join(u';') + u';');
    return writeLines(path, lines);
}

bool DesktopAssociations::setDefault(const QString& mimeType, const QString& desktopId) {
    QStringList lines = readLines(mimeAppsPath());
    setKey(lines, DefaultGroup, mimeType, desktopId + u';');
    QStringList added = listValue(valueAt(lines, findKey(lines, AddedGroup, mimeType)));
    added.removeAll(desktopId);
    added.prepend(desktopId);
    setKey(lines, AddedGroup, mimeType, added.join(u';') + u';');
    return writeLines(mimeAppsPath(), lines);
}

bool DesktopAssociations::removeDefault(const QString& mimeType, const QString& onlyIfDesktopId) {
    QStringList lines = readLines(mimeAppsPath());
    const KeyPlace place = findKey(lines, DefaultGroup, mimeType);
    if (place.line < 0) return true;
    const QStringList current = listValue(valueAt(lines, place));
    if (!onlyIfDesktopId.isEmpty() && (current.isEmpty() || current.first() != onlyIfDesktopId))
        return true;
    lines.removeAt(place.line);
    return writeLines(mimeAppsPath(), lines);
}

QString DesktopAssociations::defaultFor(const QString& mimeType) {
    const QStringList lines = readLines(mimeAppsPath());
    const QStringList ids = listValue(valueAt(lines, findKey(lines, DefaultGroup, mimeType)));
    return ids.isEmpty() ? QString() : ids.first();
}

bool DesktopAssociations::bind(const QString& extension, const QString& desktopId,
                               const QString& contentType) {
    const QString mime = contentType.isEmpty() ? mimeTypeFor(extension) : contentType;
    if (mime.isEmpty()) return false;  // no type the desktop knows by this extension
    if (mime == PlaylistMimeType) installPlaylistType();
    addMimeTypeToEntry(desktopId, mime);
    return setDefault(mime, desktopId);
}

void DesktopAssociations::restore(const QString& extension, const QString& progId) {
    const QString mime = mimeTypeFor(extension);
    if (mime.isEmpty()) return;
    QString id = progId.trimmed();
    if (!id.endsWith(QLatin1String(".desktop"))) id += QStringLiteral(".desktop");
    if (entryExists(id)) {
        setDefault(mime, id);
        return;
    }
    // The former type is no desktop entry: let go of the type, whichever entry of ours
    // holds it.
    const QString current = defaultFor(mime);
    if (current == QLatin1String("cantovel.desktop") ||
        current.startsWith(QLatin1String("cantovel-")))
        removeDefault(mime, current);
}

bool DesktopAssociations::installPlaylistType() {
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
