#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QMimeDatabase>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>

#include "platform/shell/DesktopShell.h"
#include "support/ScopedEnv.h"

using namespace cantovel;

namespace {

// Stands in for the desktop's opener on the PATH: it notes what it was given, one line
// each, and ends with the status the test asks for (XDG_OPEN_STATUS).
class DesktopShellTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        home = dir.filePath("home");
        data = dir.filePath("data");
        QDir().mkpath(home);
        env.set("HOME", home);
        env.set("XDG_DATA_HOME", data);
        const QString bin = dir.filePath("bin");
        QDir().mkpath(bin);
        QFile opener(bin + "/xdg-open");
        ASSERT_TRUE(opener.open(QIODevice::WriteOnly));
        opener.write(
            "#!/bin/sh\nprintf '%s\\n' \"$1\" >> \"$XDG_OPEN_RECORD\"\n"
            "exit ${XDG_OPEN_STATUS:-0}\n");
        opener.close();
        opener.setPermissions(opener.permissions() | QFile::ExeOwner);
        env.set("PATH", bin + ":" + qgetenv("PATH"));
        env.set("XDG_OPEN_RECORD", dir.filePath("opened"));
    }
    QString makeFile(const QString& name, const QByteArray& content = "x") {
        const QString path = QDir(home).filePath(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(content);
        return path;
    }
    // What the opener was given, in order.
    QStringList opened() {
        QFile f(dir.filePath("opened"));
        if (!f.open(QIODevice::ReadOnly)) return {};
        return QString::fromLocal8Bit(f.readAll()).split('\n', Qt::SkipEmptyParts);
    }

    QTemporaryDir dir;
    QString home, data;
    test::ScopedEnv env;
    DesktopShell shell;
};

}  // namespace

TEST_F(DesktopShellTest, TheOpenerGetsWhatExistsItsVerdictIsTheResultAndDocumentsAreNeverRun) {
    const QString song = makeFile("my song.mp3");
    EXPECT_EQ(shell.open(song), 42);
    EXPECT_EQ(shell.open("http://example.org/a?b=c"), 42);
    // A document with the execute bit goes to its handler too.
    const QString ran = dir.filePath("ran");
    const QString doc = makeFile("notes.txt", "#!/bin/sh\ntouch " + ran.toLocal8Bit() + "\n");
    QFile::setPermissions(doc, QFile::permissions(doc) | QFile::ExeOwner);
    qint64 pid = 0;
    EXPECT_EQ(shell.openDocument(doc, &pid), 42);
    EXPECT_GT(pid, 0);  // the opener's, to follow
    EXPECT_EQ(opened(), (QStringList{song, "http://example.org/a?b=c", doc}));
    EXPECT_FALSE(QFile::exists(ran));

    // Missing targets give the classic codes without asking the opener.
    EXPECT_EQ(shell.open(QDir(home).filePath("none.mp3")), 2);
    EXPECT_EQ(shell.open(QDir(home).filePath("nodir/none.mp3")), 3);
    EXPECT_EQ(shell.open(QUrl::fromLocalFile(QDir(home).filePath("none.mp3")).toString()), 2);
    EXPECT_EQ(shell.open(""), 2);
    EXPECT_EQ(shell.start("no-such-program-cantovel", {}, {}, nullptr), 2);
    EXPECT_EQ(shell.start("/bin/sh", {}, QDir(home).filePath("nodir"), nullptr), 3);
    EXPECT_EQ(shell.print(QDir(home).filePath("nodir/a.txt")), 3);
    EXPECT_EQ(opened().size(), 3);

    // An opener that finds no handler says so at once, and so does the result.
    env.set("XDG_OPEN_STATUS", QByteArray("3"));
    EXPECT_EQ(shell.open(song), 31);
    env.set("XDG_OPEN_STATUS", QByteArray("2"));
    EXPECT_EQ(shell.open("http://example.org"), 2);
}

TEST_F(DesktopShellTest, StartedProgramIsFollowedUntilItEndsAndAZombieIsNotRunning) {
    const auto waitGone = [&](qint64 pid) {
        QDeadlineTimer deadline(20000);
        while (shell.isRunning(pid) && !deadline.hasExpired()) QThread::msleep(10);
        return !shell.isRunning(pid);
    };
    qint64 pid = 0;
    ASSERT_EQ(shell.start("sh", {"-c", "exec sleep 60"}, home, &pid), 42);
    ASSERT_GT(pid, 0);
    EXPECT_TRUE(shell.isRunning(pid));
    ::kill(pid_t(pid), SIGKILL);
    EXPECT_TRUE(waitGone(pid));
    EXPECT_FALSE(shell.isRunning(0));

    const pid_t child = fork();
    if (child == 0) _exit(0);
    ASSERT_GT(child, 0);
    // Not reaped yet: the process is a zombie until waitpid.
    EXPECT_TRUE(waitGone(child));
    EXPECT_EQ(::kill(child, 0), 0);  // still there as a zombie
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(shell.isRunning(::getpid()));
}

TEST_F(DesktopShellTest, RecentListKeepsOneEntryPerPathAndOthersEntriesButNoDamagedList) {
    const QString a = makeFile("a b.wav"), b = makeFile("b.mp3");
    shell.addRecentDocument(a);
    ASSERT_TRUE(QFile::exists(DesktopShell::recentListPath()));
    EXPECT_EQ(QFile::permissions(DesktopShell::recentListPath()) & 0x0077, 0);
    const auto writeList = [](const QByteArray& text) {
        QFile list(DesktopShell::recentListPath());
        return list.open(QIODevice::WriteOnly) && list.write(text) == text.size();
    };
    ASSERT_TRUE(writeList("<xbel><bookmark"));
    shell.addRecentDocument(a);
    QFile damaged(DesktopShell::recentListPath());
    ASSERT_TRUE(damaged.open(QIODevice::ReadOnly));
    EXPECT_EQ(damaged.readAll(), "<xbel><bookmark");

    ASSERT_TRUE(writeList(R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks">
  <bookmark href="file:///srv/other.txt"><info><metadata owner="http://freedesktop.org">
    <bookmark:applications><bookmark:application name="gedit" count="3"/></bookmark:applications>
  </metadata></info></bookmark>
</xbel>
)"));
    for (const QString& path : {a, b, a}) shell.addRecentDocument(path);
    QDomDocument doc;
    QFile list(DesktopShell::recentListPath());
    ASSERT_TRUE(list.open(QIODevice::ReadOnly) && doc.setContent(&list, false));
    QList<QDomElement> marks;
    for (QDomElement e = doc.documentElement().firstChildElement("bookmark"); !e.isNull();
         e = e.nextSiblingElement("bookmark"))
        marks << e;
    ASSERT_EQ(marks.size(), 3);
    EXPECT_EQ(marks[0].attribute("href"), "file:///srv/other.txt");
    EXPECT_EQ(marks[1].attribute("href"), QUrl::fromLocalFile(a).toEncoded());
    EXPECT_EQ(marks[2].attribute("href"), QUrl::fromLocalFile(b).toEncoded());
    const QDomElement mine = marks[1];
    EXPECT_EQ(mine.elementsByTagName("mime:mime-type").at(0).toElement().attribute("type"),
              QMimeDatabase().mimeTypeForFile(a).name());
    const QDomNodeList apps = mine.elementsByTagName("bookmark:application");
    ASSERT_EQ(apps.size(), 1);
    EXPECT_EQ(apps.at(0).toElement().attribute("name"), "Cantovel");
    EXPECT_EQ(apps.at(0).toElement().attribute("count"), "2");
}

TEST_F(DesktopShellTest, MoveToTrashUsesTheDesktopTrashOrLeavesTheFile) {
    const QString song = makeFile("gone.mp3", "data");
    ASSERT_TRUE(shell.moveToTrash(song));
    EXPECT_FALSE(QFile::exists(song));
    const QString trashed = QDir(data).filePath("Trash/files/gone.mp3");
    const QString info = QDir(data).filePath("Trash/info/gone.mp3.trashinfo");
    ASSERT_TRUE(QFile::exists(trashed));
    QFile f(info);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray text = f.readAll();
    EXPECT_TRUE(text.startsWith("[Trash Info]"));
    EXPECT_TRUE(text.contains("Path="));
    EXPECT_FALSE(shell.moveToTrash(QDir(home).filePath("none")));

    const QString kept = makeFile("kept.mp3", "data");
    // A data folder that cannot be made (its parent is a file): Qt would fall back to the
    // working directory, which must not swallow the file.
    const QString blocker = makeFile("blocker");
    env.set("XDG_DATA_HOME", blocker + "/data");
    const QString work = dir.filePath("work");
    QDir().mkpath(work);
    const QString before = QDir::currentPath();
    QDir::setCurrent(work);
    const bool moved = shell.moveToTrash(kept);
    QDir::setCurrent(before);
    EXPECT_FALSE(moved);
    EXPECT_TRUE(QFile::exists(kept));
    EXPECT_TRUE(QDir(work).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}
