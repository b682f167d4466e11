#include "platform/shell/DesktopShell.h"

#include <signal.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QProcess>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>
#include <cerrno>

namespace cantovel {

namespace {

// The classic shell's answers: above 32 is success.
constexpr int Success = 42;
constexpr int FileNotFound = 2;
constexpr int PathNotFound = 3;
constexpr int AccessDenied = 5;
constexpr int BadFormat = 11;
constexpr int NoAssociation = 31;

// A missing target is "file not found" when its folder exists, else "path not found".
int missingCode(const QString& path) {
    return QFileInfo(QFileInfo(path).absolutePath()).isDir() ? FileNotFound : PathNotFound;
}

// A target that exists on disk, checked the way the shell checks before opening it: 0 when
// it can be handed on, else the shell's code.
int checkLocal(const QFileInfo& file) {
    if (!file.exists()) return missingCode(file.filePath());
    if (!file.isReadable()) return AccessDenied;
    return 0;
}

bool startDetached(const QString& program, const QStringList& arguments,
                   const QString& workingFolder, qint64* pid) {
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (!workingFolder.isEmpty()) process.setWorkingDirectory(workingFolder);
    qint64 started = 0;
    const bool ok = process.startDetached(&started);
    if (pid) *pid = ok ? started : 0;
    return ok;
}

// Hands a target to the desktop's opener and waits, events running, for its verdict: it
// ends with a non-zero status when nothing can show the target. One still running after
// the grace time has found the handler and waits on it. `pid` gets the opener's process.
int runOpener(const QString& target, const QString& workingFolder, qint64* pid) {
    if (pid) *pid = 0;
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty()) return NoAssociation;
    auto* process = new QProcess;
    process->setProgram(opener);
    process->setArguments({target});
    if (!workingFolder.isEmpty()) process->setWorkingDirectory(workingFolder);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->start();
    if (!process->waitForStarted()) {
        delete process;
        return NoAssociation;
    }
    if (pid) *pid = process->processId();
    const QDeadlineTimer verdict(DesktopShell::OpenerVerdictMs);
    while (process->state() != QProcess::NotRunning && !verdict.hasExpired()) {
        process->waitForFinished(20);
        QCoreApplication::processEvents();
    }
    if (process->state() != QProcess::NotRunning) {
        QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
        return Success;
    }
    const int status = process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1;
    delete process;
    // xdg-open: 0 done, 2 a file that is not there, 1 3 4 no way to open it.
    if (status == 0) return Success;
    return status == 2 ? FileNotFound : NoAssociation;
}

}  // namespace

int DesktopShell::open(const QString& target) {
    const QString t = target.trimmed();
    if (t.isEmpty()) return FileNotFound;
    const QFileInfo file(t);
    // A name that is on disk is a file even when it looks like "scheme:rest".
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    if (file.exists() || !scheme.match(t).hasMatch()) return openDocument(t, nullptr);
    const QUrl url(t, QUrl::TolerantMode);
    if (!url.isValid()) return FileNotFound;
    if (url.isLocalFile()) return openDocument(url.toLocalFile(), nullptr);
    return runOpener(url.toString(QUrl::FullyEncoded), {}, nullptr);
}

int DesktopShell::openDocument(const QString& path, qint64* pid) {
    if (pid) *pid = 0;
    if (path.trimmed().isEmpty()) return FileNotFound;
    const QFileInfo file(path);
    if (int code = checkLocal(file)) return code;
    return runOpener(file.absoluteFilePath(), {}, pid);
}

int DesktopShell::start(const QString& program, const QStringList& arguments,
                        const QString& workingFolder, qint64* pid) {
    if (pid) *pid = 0;
    if (program.trimmed().isEmpty()) return FileNotFound;
    if (!workingFolder.isEmpty() && !QFileInfo(workingFolder).isDir()) return PathNotFound;

    QFileInfo file(program);
    if (!file.exists() && !program.contains(QLatin1Char('/'))) {
        // A bare name is looked up on the PATH, as the shell looks in its search folders.
        const QString found = QStandardPaths::findExecutable(program);
        if (found.isEmpty()) return FileNotFound;
        file.setFile(found);
    }
    if (int code = checkLocal(file)) return code;

    if (file.isFile() && file.isExecutable())
        return startDetached(file.absoluteFilePath(), arguments, workingFolder, pid) ? Success
                                                                                     : BadFormat;
    // A document (or folder) opens in its handler; the process to follow is the opener's.
    return runOpener(file.absoluteFilePath(), workingFolder, pid);
}

bool DesktopShell::isRunning(qint64 pid) {
    if (pid <= 0) return false;
    if (::kill(pid_t(pid), 0) != 0 && errno != EPERM) return false;
    // A process that ended but was not reaped yet is a zombie: it runs no more.
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (stat.open(QIODevice::ReadOnly)) {
        const QByteArray line = stat.readAll();
        const int close = line.lastIndexOf(')');
        if (close >= 0 && close + 2 < line.size()) {
            const char state = line.at(close + 2);
            if (state == 'Z' || state == 'X') return false;
        }
    }
    return true;
}

int DesktopShell::print(const QString& path) {
    const QFileInfo file(path.trimmed());
    if (path.trimmed().isEmpty()) return FileNotFound;
    if (int code = checkLocal(file)) return code;
    // Printing goes to the default printer through the print spooler, as the shell's
    // "print" verb does; without one there is no way to print.
    const QString lp = QStandardPaths::findExecutable(QStringLiteral("lp"));
    if (lp.isEmpty()) return NoAssociation;
    return startDetached(lp, {QStringLiteral("--"), file.absoluteFilePath()}, {}, nullptr)
               ? Success
               : NoAssociation;
}

QString DesktopShell::recentListPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/recently-used.xbel");
}

namespace {

QDomElement childElement(const QDomElement& parent, const QString& tag,
                         const QString& attribute = {}, const QString& value = {}) {
    for (QDomElement e = parent.firstChildElement(tag); !e.isNull(); e = e.nextSiblingElement(tag))
        if (attribute.isEmpty() || e.attribute(attribute) == value) return e;
    return {};
}

QDomElement ensureChild(QDomDocument& doc, QDomElement parent, const QString& tag,
                        const QString& attribute = {}, const QString& value = {}) {
    QDomElement e = childElement(parent, tag, attribute, value);
    if (e.isNull()) {
        e = doc.createElement(tag);
        if (!attribute.isEmpty()) e.setAttribute(attribute, value);
        parent.appendChild(e);
    }
    return e;
}

}  // namespace

void DesktopShell::addRecentDocument(const QString& path) {
    if (path.trimmed().isEmpty()) return;
    const QFileInfo file(path);
    const QString href =
        QString::fromLatin1(QUrl::fromLocalFile(file.absoluteFilePath()).toEncoded());
    const QString now = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    const QString listPath = recentListPath();

    // The list is shared with every other program of the desktop: their entries stay, and a
    // list we cannot read is left alone rather than replaced.
    QDomDocument doc;
    QFile existing(listPath);
    const bool isNew = !existing.exists();
    if (!isNew) {
        if (!existing.open(QIODevice::ReadOnly) || !doc.setContent(&existing, false)) return;
        existing.close();
        if (doc.documentElement().tagName() != QLatin1String("xbel")) return;
    } else {
        doc.appendChild(doc.createProcessingInstruction(
            QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
        QDomElement xbel = doc.createElement(QStringLiteral("xbel"));
        xbel.setAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
        doc.appendChild(xbel);
    }
    QDomElement xbel = doc.documentElement();
    if (!xbel.hasAttribute(QStringLiteral("xmlns:bookmark")))
        xbel.setAttribute(QStringLiteral("xmlns:bookmark"),
                          QStringLiteral("http://www.freedesktop.org/standards/desktop-bookmarks"));
    if (!xbel.hasAttribute(QStringLiteral("xmlns:mime")))
        xbel.setAttribute(QStringLiteral("xmlns:mime"),
                          QStringLiteral("http://www.freedesktop.org/standards/shared-mime-info"));

    QDomElement bookmark =
        childElement(xbel, QStringLiteral("bookmark"), QStringLiteral("href"), href);
    if (bookmark.isNull()) {
        bookmark = doc.createElement(QStringLiteral("bookmark"));
        bookmark.setAttribute(QStringLiteral("href"), href);
        bookmark.setAttribute(QStringLiteral("added"), now);
        xbel.appendChild(bookmark);
    }
    bookmark.setAttribute(QStringLiteral("modified"), now);
    bookmark.setAttribute(QStringLiteral("visited"), now);

    QDomElement info = ensureChild(doc, bookmark, QStringLiteral("info"));
    QDomElement metadata =
        ensureChild(doc, info, QStringLiteral("metadata"), QStringLiteral("owner"),
                    QStringLiteral("http://freedesktop.org"));
    QDomElement mime = ensureChild(doc, metadata, QStringLiteral("mime:mime-type"));
    mime.setAttribute(QStringLiteral("type"), QMimeDatabase().mimeTypeForFile(file).name());
    QDomElement apps = ensureChild(doc, metadata, QStringLiteral("bookmark:applications"));
    QDomElement app = childElement(apps, QStringLiteral("bookmark:application"),
                                   QStringLiteral("name"), QStringLiteral("Cantovel"));
    if (app.isNull()) {
        app = ensureChild(doc, apps, QStringLiteral("bookmark:application"), QStringLiteral("name"),
                          QStringLiteral("Cantovel"));
        app.setAttribute(QStringLiteral("exec"), QStringLiteral("'cantovel %u'"));
        app.setAttribute(QStringLiteral("count"), 1);
    } else {
        app.setAttribute(QStringLiteral("count"),
                         app.attribute(QStringLiteral("count")).toInt() + 1);
    }
    app.setAttribute(QStringLiteral("modified"), now);

    QDir().mkpath(QFileInfo(listPath).absolutePath());
    QSaveFile out(listPath);
    if (!out.open(QIODevice::WriteOnly)) return;
    out.write(doc.toByteArray(2));
    if (!out.commit()) return;
    // The list tells what the user opened: only the user reads it.
    if (isNew) QFile::setPermissions(listPath, QFile::ReadOwner | QFile::WriteOwner);
}

bool DesktopShell::moveToTrash(const QString& path) {
    const QFileInfo file(path);
    if (path.trimmed().isEmpty() || !(file.exists() || file.isSymLink())) return false;
    // Qt makes the home Trash only inside an existing data folder; without one it falls
    // back to "files" and "info" folders relative to the working directory.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    QString inTrash;
    if (!QFile::moveToTrash(path, &inTrash)) return false;
    if (QDir::isAbsolutePath(inTrash)) return true;
    // Astray: put the file back where it was and take the stray records away.
    const QFileInfo stray(inTrash);
    QDir trash = stray.dir();
    trash.cdUp();
    QFile::remove(
        trash.filePath(QStringLiteral("info/") + stray.fileName() + QStringLiteral(".trashinfo")));
    const bool back = QFile::rename(stray.filePath(), file.absoluteFilePath());
    if (back) {
        trash.rmdir(QStringLiteral("files"));
        trash.rmdir(QStringLiteral("info"));
    }
    return false;
}

}  // namespace cantovel
