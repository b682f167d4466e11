#include "app/Utilities.h"

#include <sys/statvfs.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "app/FileNames.h"
#include "app/Runtime.h"

namespace cantovel {

namespace {

struct Unit {
    qint64 value;
    const char* shortWord;
    const char* shorterWord;
    const char* longWord;
};

}  // namespace

QString ConvertSeconds(double seconds, bool digital, bool shortWords, TimeDigits* digits) {
    const double hoursExact = seconds / 60 / 60;
    qint64 hours = Int(hoursExact);
    const double minutesExact = (hoursExact - double(hours)) * 60;
    qint64 minutes = Int(minutesExact);
    if (minutes == 60) {
        minutes = 0;
        ++hours;
    }
    // Rounding can reach a whole minute; it is carried over, once.
    qint64 secs = CInt((minutesExact - double(Int(minutesExact))) * 60);
    if (secs == 60) {
        secs = 0;
        ++minutes;
    }

    const QString twoDigits = QStringLiteral("00");
    if (digits) {
        digits->hours = Format(double(hours), twoDigits);
        digits->minutes = Format(double(minutes), twoDigits);
        digits->seconds = Format(double(secs), twoDigits);
    }

    QString out;
    if (digital) {
        if (hours != 0) out += QString::number(hours);
        if (minutes != 0)
            out +=
                hours != 0 ? u':' + Format(double(minutes), twoDigits) : QString::number(minutes);
        else if (hours != 0)
            out += QStringLiteral(":00");
        // Below a minute no minutes digit appears: 7 seconds read ":07".
        out += u':' + Format(double(secs), twoDigits);
        return out;
    }

    const Unit units[] = {{hours, " hr ", " h ", " hour"},
                          {minutes, " min ", " m ", " minute"},
                          {secs, " sec", " s", " second"}};
    int nonZero = 0;
    for (const Unit& u : units) nonZero += u.value != 0;
    for (const Unit& u : units) {
        if (u.value == 0) continue;
        out += QString::number(u.value);
        if (nonZero > 1) {
            out += QLatin1String(shortWords ? u.shortWord : u.shorterWord);
        } else {
            out += QLatin1String(u.longWord);
            if (u.value != 1) out += u's';
        }
    }
    return out;
}

QString TimeToString(qint64 milliseconds) {
    const qint64 ms = milliseconds % 1000;
    const qint64 secs = milliseconds / 1000 % 60;
    const QString tail = Format(double(secs), QStringLiteral("00")) + u'.' +
                         Format(double(ms), QStringLiteral("000"));
    if (milliseconds < 3600000)
        return Format(double(milliseconds / 60000), QStringLiteral("0")) + u':' + tail;
    return Format(double(milliseconds / 3600000), QStringLiteral("0")) + u':' +
           Format(double(milliseconds / 60000 % 60), QStringLiteral("00")) + u':' + tail;
}

PathParts& LastPathParts() {
    static PathParts parts;
    return parts;
}

// Paths here use "/" and have no drive: Drive stays empty and Dir equals Path.
QString ParsePathParts(const QString& path, const QString& part, bool isFolder, bool keepDriveColon,
                       bool keepExtDot) {
    Q_UNUSED(keepDriveColon);
    PathParts& r = LastPathParts();
    r = PathParts{};
    r.whole = path;

    QString p = path.trimmed();
    if (p.isEmpty()) return QString();
    if (p.startsWith(u'"')) p.remove(0, 1);
    if (p.endsWith(u'"')) p.chop(1);
    if (isFolder && !p.endsWith(u'/')) p += u'/';

    const qsizetype slash = p.lastIndexOf(u'/');
    if (slash >= 0) {
        r.path = p.left(slash);
        r.file = p.mid(slash + 1);
        // The root keeps its separator, as a drive's root does.
        if (r.path.isEmpty()) r.path = QStringLiteral("/");
    } else {
        r.file = p;
    }
    r.dir = r.path;

    const qsizetype dot = r.file.lastIndexOf(u'.');
    if (dot >= 0) {
        r.base = r.file.left(dot);
        r.ext = r.file.mid(dot);
        if (r.ext == QLatin1String(".")) r.ext.clear();
        if (!keepExtDot && !r.ext.isEmpty()) r.ext.remove(0, 1);
    } else {
        r.base = r.file;
    }

    switch (part.isEmpty() ? 0 : part[0].toLower().unicode()) {
        case 'd':
            return r.drive;
        case 'l':
            return r.dir;
        case 'f':
            return r.file;
        case 'b':
            return r.base;
        case 'e':
            return r.ext;
        default:
            return r.path;
    }
}

bool FileExists(const QString& path) {
    if (path.trimmed().isEmpty()) return false;
    return KindOfName(path) == NameKind::File;
}

bool PathExists(const QString& path) {
    if (path.trimmed().isEmpty()) return false;
    return KindOfName(path) == NameKind::Folder;
}

double DiskFreeSpace(const QString& path, bool inKilobytes) {
    if (path.trimmed().isEmpty()) return -1;
    // A file that is yet to be written counts on the file system of its nearest folder.
    QString probe = QFileInfo(path).absoluteFilePath();
    while (KindOfName(probe) == NameKind::Missing && !QDir(probe).isRoot())
        probe = QFileInfo(probe).path();
    struct statvfs st {};
    if (::statvfs(NameToBytes(probe).constData(), &st) != 0) return -1;
    const double bytes = double(st.f_bavail) * double(st.f_frsize);
    return inKilobytes ? bytes / 1024 : bytes;
}

}  // namespace cantovel
