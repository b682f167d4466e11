// The settings store: one REGEDIT4 file per root, read and written without losing what a
// hand or a killed writer left in it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <functional>

#include "platform/registry/RegistryStore.h"

using namespace cantovel;

namespace {

constexpr auto HKCU = RegRoot::CurrentUser;

class RegistryStoreTest : public ::testing::Test {
  protected:
    QTemporaryDir dir;
    RegistryStore store{dir.path()};

    QByteArray fileText(const QString& path = {}) {
        QFile f(path.isEmpty() ? store.fileFor(HKCU) : path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    void writeFile(const QByteArray& text, const QString& path = {}) {
        QFile f(path.isEmpty() ? store.fileFor(HKCU) : path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }
    QStringList damagedFiles() {
        return QDir(dir.path()).entryList({"HKEY_CURRENT_USER.reg.damaged-*"}, QDir::Files);
    }
    // The text of a REG_SZ value, or "<none>".
    QString text(const QString& key, const QString& name) {
        auto v = store.queryValue(HKCU, key, name);
        return v && v->type == REG_SZ ? QString::fromUtf8(v->data.chopped(1)) : "<none>";
    }
    // Runs `body` in a child process writing to the same folder.
    pid_t spawn(const std::function<void(RegistryStore&)>& body) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            RegistryStore child(dir.path());
            body(child);
            ::_exit(0);
        }
        return pid;
    }
};

}  // namespace

TEST_F(RegistryStoreTest, AHandWrittenFileIsReadAndWrittenWithoutCaseKeepingWhatItCannotRead) {
    const QByteArray unread[] = {"stray text",
                                 "\"unterminated\"=\"no end",
                                 "\"big\"=dword:123456789",
                                 "\"escape\"=\"bad \\q\"",
                                 "\"gone\"=-",
                                 "\"blob\"=hex:01,02,\\\r\n  zz",
                                 "; a comment",
                                 "[-HKEY_CURRENT_USER\\Software\\Deleted]",
                                 "\"inDeleted\"=\"1\"",
                                 "[HKEY_LOCAL_MACHINE\\Other]",
                                 "\"otherRoot\"=\"2\""};
    QByteArray file =
        "\xEF\xBB\xBFREGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\A]\r\n\"x\"=\"1\"\r\n\"Num\"=dword:ff\r\n"
        "\"Blob\"=hex:01,02,\\\r\n  03\r\n\"Expand\"=hex(2):41,00\r\n";
    for (int i = 0; i < 9; ++i) file += unread[i] + "\r\n";
    file += "[HKEY_CURRENT_USER\\C]\r\n\"c\"=\"3\"\r\n" + unread[9] + "\r\n" + unread[10] + "\r\n";
    writeFile(file);
    EXPECT_EQ(text("A", "x"), "1");
    EXPECT_EQ(store.queryValue(HKCU, "A", "Num")->data, QByteArray("\xff\0\0\0", 4));
    EXPECT_EQ(store.queryValue(HKCU, "A", "Blob")->data, QByteArray("\1\2\3"));
    EXPECT_EQ(store.queryValue(HKCU, "A", "Expand")->type, quint32(REG_EXPAND_SZ));
    EXPECT_EQ(text("C", "c"), "3");
    EXPECT_FALSE(store.keyExists(HKCU, "Software\\Deleted"));

    // What is written comes back exactly through a second store, in any case, and names keep
    // the case and order they were made with.
    const QString key = "Software\\Brightfen\\Cantovel\\Settings";
    EXPECT_FALSE(store.setValue(HKCU, key, "x", RegValue::text("1")));  // no key yet
    ASSERT_TRUE(store.createKey(HKCU, key));
    const QString odd = "C:\\path \"quoted\"\r\nsecond line\\n; [x] =é \U0001F3B5";
    const std::pair<QString, RegValue> values[] = {{"Odd", RegValue::text(odd)},
                                                   {"", RegValue::text("default")},
                                                   {"Count", RegValue::dword(10)},
                                                   {"Raw", {REG_BINARY, QByteArray("\x00\xff", 2)}},
                                                   {"NoNul", RegValue{REG_SZ, "abc"}}};
    for (const auto& [name, value] : values) EXPECT_TRUE(store.setValue(HKCU, key, name, value));
    EXPECT_TRUE(store.setValue(HKCU, key.toUpper(), "ODD", RegValue::text(odd)));
    EXPECT_TRUE(store.setValue(HKCU, "A", "y", RegValue::text("2")));
    RegistryStore other(dir.path());
    for (const auto& [name, value] : values) {
        const auto read = other.queryValue(HKCU, key.toLower(), name.toLower());
        ASSERT_TRUE(read) << name.toStdString();
        EXPECT_EQ(read->type, value.type);
        EXPECT_EQ(read->data, value.data);
    }
    EXPECT_FALSE(other.queryValue(HKCU, key, "Missing"));
    EXPECT_EQ(other.valueNames(HKCU, key), (QStringList{"Odd", "", "Count", "Raw", "NoNul"}));
    EXPECT_EQ(other.valueNames(HKCU, "A"), (QStringList{"x", "Num", "Blob", "Expand", "y"}));
    const QByteArray after = fileText();
    EXPECT_TRUE(after.contains("@=\"default\"\n"));
    EXPECT_TRUE(after.contains("\"Count\"=dword:0000000a\n"));
    EXPECT_TRUE(after.contains("\"Odd\"=\"C:\\\\path \\\"quoted\\\"\\r\\nsecond line\\\\n"));
    // Every line that could not be read stays as it stood, once however many writes follow.
    for (const QByteArray& line : unread) EXPECT_EQ(after.count(line + '\n'), 1) << line.data();
    EXPECT_TRUE(damagedFiles().isEmpty());

    // Keys go only once empty; each root is a file of its own.
    ASSERT_TRUE(store.createKey(HKCU, "software\\BRIGHTFEN\\alpha"));
    EXPECT_EQ(store.subKeys(HKCU, "Software\\Brightfen"), (QStringList{"Cantovel", "alpha"}));
    EXPECT_FALSE(store.deleteKey(HKCU, "Software\\Brightfen"));
    EXPECT_TRUE(store.deleteKey(HKCU, "software\\brightfen\\ALPHA"));
    EXPECT_TRUE(store.deleteValue(HKCU, key, "raw"));
    ASSERT_TRUE(store.createKey(RegRoot::LocalMachine, "SOFTWARE\\Brightfen Cantovel\\MRU"));
    EXPECT_FALSE(store.keyExists(HKCU, "SOFTWARE\\Brightfen Cantovel"));
    EXPECT_TRUE(QFile::exists(dir.path() + "/HKEY_LOCAL_MACHINE.reg"));
}

TEST_F(RegistryStoreTest, AFileWithNothingReadableIsKeptAsideAndALinkIsWrittenThrough) {
    const QByteArray damaged = QByteArray::fromHex("7f454c46000102ff");  // a program's start
    // Twice, within the same second as a rule: the second does not take the first's place.
    for (int n = 1; n <= 2; ++n) {
        writeFile(damaged);
        EXPECT_FALSE(store.queryValue(HKCU, "A", "x"));
        EXPECT_FALSE(QFile::exists(store.fileFor(HKCU)));
        ASSERT_EQ(damagedFiles().size(), n);
    }
    for (const QString& name : damagedFiles()) EXPECT_EQ(fileText(dir.filePath(name)), damaged);
    // An empty file is no damage: it reads as empty and stays.
    writeFile("");
    EXPECT_FALSE(store.keyExists(HKCU, "A"));
    EXPECT_EQ(damagedFiles().size(), 2);

    // The file a link into a folder of dotfiles: written through the link.
    QFile::remove(store.fileFor(HKCU));
    ASSERT_TRUE(QDir(dir.path()).mkpath("dotfiles"));
    const QString target = dir.path() + "/dotfiles/settings.reg";
    writeFile("REGEDIT4\n\n[HKEY_CURRENT_USER\\A]\n\"x\"=\"1\"\n", target);
    ASSERT_TRUE(QFile::link("dotfiles/settings.reg", store.fileFor(HKCU)));
    EXPECT_EQ(text("A", "x"), "1");
    ASSERT_TRUE(store.setValue(HKCU, "A", "x", RegValue::text("2")));
    EXPECT_TRUE(QFileInfo(store.fileFor(HKCU)).isSymLink());
    EXPECT_TRUE(fileText(target).contains("\"x\"=\"2\""));
    EXPECT_EQ(QDir(dir.path() + "/dotfiles").entryList(QDir::Files), QStringList{"settings.reg"});
}

TEST_F(RegistryStoreTest, WritersKilledMidWriteOrRacingEachOtherLoseNothing) {
    const auto longValue = [](int n) { return QStringLiteral("value %1 ").arg(n).repeated(40); };
    ASSERT_TRUE(store.createKey(HKCU, "Kill"));
    for (int round = 0; round < 4; ++round) {
        const pid_t pid = spawn([&](RegistryStore& s) {
            for (int n = int(s.valueNames(HKCU, "Kill").size());; ++n)
                s.setValue(HKCU, "Kill", QString::number(n), RegValue::text(longValue(n)));
        });
        ASSERT_GT(pid, 0);
        // Let it write a few values, then kill it wherever it happens to be.
        const qsizetype before = store.valueNames(HKCU, "Kill").size();
        for (int i = 0; i < 5000 && store.valueNames(HKCU, "Kill").size() < before + 10; ++i)
            ::usleep(1000);
        ::usleep(useconds_t(round * 700));
        ::kill(pid, SIGKILL);
        ASSERT_EQ(::waitpid(pid, nullptr, 0), pid);
        const QStringList names = store.valueNames(HKCU, "Kill");
        ASSERT_GE(names.size(), before + 10);
        for (int n = 0; n < names.size(); ++n) {
            ASSERT_EQ(names[n], QString::number(n));
            ASSERT_EQ(text("Kill", names[n]), longValue(n));
        }
        ASSERT_TRUE(damagedFiles().isEmpty());
    }

    // Two writers at once, one of them after a temporary file the killed one left.
    pid_t pids[2];
    for (int w = 0; w < 2; ++w) {
        pids[w] = spawn([w](RegistryStore& s) {
            for (int n = 0; n < 40; ++n)
                s.setValue(HKCU, "Kill", QStringLiteral("w%1-%2").arg(w).arg(n),
                           RegValue::text(QString::number(n)));
        });
        ASSERT_GT(pids[w], 0);
    }
    for (pid_t pid : pids) {
        int status = 0;
        ASSERT_EQ(::waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    for (int w = 0; w < 2; ++w)
        for (int n = 0; n < 40; ++n)
            EXPECT_EQ(text("Kill", QStringLiteral("w%1-%2").arg(w).arg(n)), QString::number(n));
}
