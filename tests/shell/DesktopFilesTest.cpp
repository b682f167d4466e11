// The files the desktop reads: the installed entry, the software centre's data and the
// manual page pass the desktop's own checkers, and the user's default applications are
// left as they are by a start that binds nothing new.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include "shell/AssociateFileType.h"
#include "shell/DesktopAssociations.h"
#include "support/MainWindowFixture.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// The source tree's resources, found upwards from the test program (build folders sit in
// or beside the tree).
QString resourcesFolder() {
    for (QDir dir(QCoreApplication::applicationDirPath()); !dir.isRoot(); dir.cdUp()) {
        for (const QString& candidate : {dir.filePath("resources"), dir.filePath("../resources")})
            if (QFileInfo::exists(candidate + "/cantovel.desktop"))
                return QDir::cleanPath(candidate);
    }
    return {};
}

struct ToolRun {
    int code = -1;
    QString output;
};

ToolRun run(const QString& program, const QStringList& args) {
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    if (!p.waitForFinished(60000)) return {};
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
            QString::fromUtf8(p.readAll())};
}

QByteArray bytesOf(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

}  // namespace

class DesktopFilesTest : public MainWindowFixture {};

TEST_F(DesktopFilesTest, AStartKeepsTheUsersListAndTheEntriesAndDataPassTheDesktopsCheckers) {
    const QString resources = resourcesFolder();
    if (resources.isEmpty())
        GTEST_SKIP() << "the source tree's resources/ folder is not beside the build";
    // The user's list keeps its files elsewhere (a link into a folder of dotfiles), holds a
    // name that is no UTF-8, and already binds the program's playlists.
    const QString target = tempDir() + "/dotfiles/mimeapps.list";
    const QByteArray before =
        "# kept by hand\n"
        "[Default Applications]\n"
        "application/x-cantovel-playlist=cantovel.desktop;\n"
        "text/plain=caf\xe9-editor.desktop;\n"
        "\n"
        "[Added Associations]\n"
        "application/x-cantovel-playlist=cantovel.desktop;\n";
    QDir().mkpath(tempDir() + "/dotfiles");
    QFile dotfile(target);
    ASSERT_TRUE(dotfile.open(QIODevice::WriteOnly));
    dotfile.write(before);
    dotfile.close();
    const QString list = DesktopAssociations::mimeAppsPath();
    QDir().mkpath(QFileInfo(list).absolutePath());
    ASSERT_TRUE(QFile::link(target, list));
    // The installed entry, in the system's data folders.
    const QString system = tempDir() + "/system";
    QDir().mkpath(system + "/applications");
    ASSERT_TRUE(
        QFile::copy(resources + "/cantovel.desktop", system + "/applications/cantovel.desktop"));
    ScopedEnv env;
    env.set("XDG_DATA_DIRS", system);

    // Every start binds the playlists, which leaves the list as it was and writes the user's
    // entry over the installed one.
    load();
    EXPECT_EQ(bytesOf(target), before);
    EXPECT_TRUE(QFileInfo(list).isSymLink());
    const QString own = DesktopAssociations::applicationsFolder() + "/cantovel.desktop";
    const QString text = QString::fromUtf8(bytesOf(own));
    EXPECT_TRUE(text.contains("Comment=Play media files and convert audio\n"))
        << text.toStdString();
    EXPECT_TRUE(text.contains("Categories=AudioVideo;Audio;Video;Player;\n"));
    EXPECT_TRUE(text.contains("Exec=" + QCoreApplication::applicationFilePath() + " %f\n"));
    for (const char* type :
         {"audio/flac;", "application/vnd.ms-asf;", "application/x-cantovel-playlist;"})
        EXPECT_TRUE(text.contains(QLatin1String(type))) << type;

    // A binding that does change is written through the link; the other lines keep
    // their bytes.
    ASSERT_TRUE(AssociateFileType(".mp3", {}, {}, {}, {}, false, "Cantovel"));
    EXPECT_TRUE(QFileInfo(list).isSymLink());
    const QByteArray after = bytesOf(target);
    EXPECT_TRUE(after.contains("text/plain=caf\xe9-editor.desktop;\n")) << after.toStdString();
    EXPECT_TRUE(after.contains("audio/mpeg=cantovel.desktop;\n")) << after.toStdString();
    EXPECT_TRUE(after.startsWith("# kept by hand\n"));

    // The installed entry, the user's own and the software centre's data pass the desktop's
    // checkers, and the manual page formats without a warning.
    const QString entryCheck = QStandardPaths::findExecutable("desktop-file-validate");
    const QString appstream = QStandardPaths::findExecutable("appstreamcli");
    if (entryCheck.isEmpty() || appstream.isEmpty())
        GTEST_SKIP() << "desktop-file-validate (desktop-file-utils) or appstreamcli (appstream) "
                        "is not installed: the desktop files were not checked";
    for (const QString& entry : {resources + "/cantovel.desktop", own}) {
        const ToolRun check = run(entryCheck, {entry});
        EXPECT_EQ(check.code, 0) << check.output.toStdString();
        EXPECT_TRUE(check.output.trimmed().isEmpty()) << check.output.toStdString();
    }
    const ToolRun meta = run(
        appstream, {"validate", "--no-net", "--pedantic", resources + "/cantovel.metainfo.xml"});
    EXPECT_EQ(meta.code, 0) << meta.output.toStdString();
    const QString groff = QStandardPaths::findExecutable("groff");
    if (groff.isEmpty()) return;
    const ToolRun page = run(groff, {"-man", "-Tutf8", "-ww", "-z", resources + "/cantovel.1"});
    EXPECT_EQ(page.code, 0);
    EXPECT_TRUE(page.output.isEmpty()) << page.output.toStdString();
}
