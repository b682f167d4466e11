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
#include "support/QtPrinters.h"

using namespace cantovel;

namespace {

constexpr auto HKCU = RegRoot::CurrentUser;

class RegistryStoreTest : public ::testing::Test {
  protected:
    QTemporaryDir dir;
    RegistryStore store{dir.path()};

    QByteArray fileText() {
        QFile f(store.fileFor(HKCU));
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
        if (!v || v->type != REG_SZ) return QStringLiteral("<none>");
        return QString::fromUtf8(v->data.chopped(1));
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

TEST_F(RegistryStoreTest, ValuesAndKeysRoundTripThroughTheFileWithoutCase) {
    const QString key = "Software\\Brightfen\\Cantovel\\Settings";
    EXPECT_FALSE(store.setValue(HKCU, key, "x", RegValue::text("1")));  // no key yet
    ASSERT_TRUE(store.createKey(HKCU, key));
    const QString odd = "C:\\path \"quoted\"\r\nsecond line\\n; [x] =é \U0001F3B5";
    EXPECT_TRUE(store.setValue(HKCU, key, "Odd", RegValue::text(odd)));
    EXPECT_TRUE(store.setValue(HKCU, key, "", RegValue::text("default")));
    EXPECT_TRUE(store.setValue(HKCU, key, "Count", RegValue::dword(10)));
    EXPECT_TRUE(store.setValue(HKCU, key, "Raw", RegValue{REG_BINARY, QByteArray("\x00\xff", 2)}));
    EXPECT_TRUE(store.setValue(HKCU, key, "NoNul", RegValue{REG_SZ, "abc"}));
    EXPECT_TRUE(store.setValue(HKCU, "", "AtRoot", RegValue::text("r")));
    EXPECT_TRUE(store.setValue(HKCU, key.toUpper(), "ODD", RegValue::text(odd)));

    // A second store over the same folder sees exactly what the first wrote.
    RegistryStore other(dir.path());
    auto read = [&](const QString& name) { return other.queryValue(HKCU, key, name); };
    EXPECT_EQ(text(key.toLower(), "odd"), odd);
    EXPECT_EQ(read("")->data, QByteArray("default", 8));
    EXPECT_EQ(read("count")->type, quint32(REG_DWORD));
    EXPECT_EQ(read("Count")->data, QByteArray("\x0a\0\0\0", 4));
    EXPECT_EQ(read("Raw")->data, QByteArray("\x00\xff", 2));
    EXPECT_EQ(read("NoNul")->data, QByteArray("abc"));
    EXPECT_FALSE(read("Missing"));
    EXPECT_EQ(text("", "AtRoot"), "r");
    // Names keep the case and order they were made with.
    EXPECT_EQ(other.valueNames(HKCU, key), (QStringList{"Odd", "", "Count", "Raw", "NoNul"}));
    ASSERT_TRUE(store.createKey(HKCU, "software\\BRIGHTFEN\\alpha"));
    EXPECT_EQ(RegistryStore(dir.path()).subKeys(HKCU, "Software\\Brightfen"),
              (QStringList{"Cantovel", "alpha"}));

    const QByteArray file = fileText();
    EXPECT_TRUE(
        file.startsWith("REGEDIT4\n\n[HKEY_CURRENT_USER]\n\"AtRoot\"=\"r\"\n\n"
                        "[HKEY_CURRENT_USER\\Software]\n"));
    EXPECT_TRUE(file.contains("@=\"default\"\n"));
    EXPECT_TRUE(file.contains("\"Count\"=dword:0000000a\n"));
    EXPECT_TRUE(file.contains("\"Odd\"=\"C:\\\\path \\\"quoted\\\"\\r\\nsecond line\\\\n"));

    // Keys go only once empty; each root is a file of its own.
    EXPECT_FALSE(store.deleteKey(HKCU, "Software\\Brightfen"));
    EXPECT_TRUE(store.deleteKey(HKCU, "software\\brightfen\\ALPHA"));
    EXPECT_FALSE(store.deleteKey(HKCU, "Software\\Brightfen\\alpha"));
    EXPECT_FALSE(store.keyExists(HKCU, "Software\\Brightfen\\alpha"));
    EXPECT_FALSE(store.deleteKey(HKCU, ""));
    EXPECT_TRUE(store.deleteValue(HKCU, key, "raw"));
    EXPECT_FALSE(store.deleteValue(HKCU, key, "raw"));
    ASSERT_TRUE(store.createKey(RegRoot::LocalMachine, "SOFTWARE\\Brightfen Cantovel\\MRU"));
    EXPECT_FALSE(store.keyExists(HKCU, "SOFTWARE\\Brightfen Cantovel"));
    EXPECT_TRUE(QFile::exists(dir.path() + "/HKEY_LOCAL_MACHINE.reg"));
}

TEST_F(RegistryStoreTest, HandWrittenFilesAreReadAndLinesThatCannotBeReadAreKept) {
    const QByteArray unread[] = {
        "stray text",
        "\"unterminated\"=\"no end",
        "\"big\"=dword:123456789",
        "\"escape\"=\"bad \\q\"",
        "\"gone\"=-",
        "\"blob\"=hex:01,02,\\\r\n  zz",
        "; a comment",
        "[-HKEY_CURRENT_USER\\Software\\Deleted]",
        "\"inDeleted\"=\"1\"",
        "[HKEY_LOCAL_MACHINE\\Other]",
        "\"otherRoot\"=\"2\"",
    };
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
    EXPECT_EQ(store.valueNames(HKCU, "A"), (QStringList{"x", "Num", "Blob", "Expand"}));

    // A write keeps every line it could not read, as it stood, and only once.
    ASSERT_TRUE(store.setValue(HKCU, "A", "y", RegValue::text("2")));
    EXPECT_TRUE(damagedFiles().isEmpty());
    const QByteArray after = fileText();
    for (const QByteArray& line : unread)
        EXPECT_TRUE(after.contains(line + '\n')) << line.constData() << " in\n"
                                                 << after.constData();
    EXPECT_EQ(text("A", "y"), "2");
    EXPECT_EQ(text("C", "c"), "3");
    ASSERT_TRUE(store.setValue(HKCU, "A", "y", RegValue::text("2")));
    EXPECT_EQ(fileText(), after);
}

TEST_F(RegistryStoreTest, AFileWithNothingReadableIsKeptAsideAndALinkIsWrittenThrough) {
    const QByteArray damaged[] = {"not a registry file\n", QByteArray("\x7f"
                                                                      "ELF\0\1\2\xff",
                                                                      8)};
    int n = 0;
    for (const QByteArray& bytes : damaged) {
        writeFile(bytes);
        EXPECT_FALSE(store.queryValue(HKCU, "A", "x"));
        EXPECT_FALSE(QFile::exists(store.fileFor(HKCU)));
        const QStringList aside = damagedFiles();
        ASSERT_EQ(aside.size(), ++n);
        bool kept = false;
        for (const QString& name : aside) {
            QFile f(dir.path() + "/" + name);
            kept |= f.open(QIODevice::ReadOnly) && f.readAll() == bytes;
        }
        EXPECT_TRUE(kept);
    }
    // An empty file is no damage: it reads as empty and stays.
    writeFile("");
    EXPECT_FALSE(store.keyExists(HKCU, "A"));
    EXPECT_EQ(damagedFiles().size(), n);

    // The file a link into a folder of dotfiles: written through the link.
    QFile::remove(store.fileFor(HKCU));
    ASSERT_TRUE(QDir(dir.path()).mkpath("dotfiles"));
    const QString target = dir.path() + "/dotfiles/settings.reg";
    writeFile("REGEDIT4\n\n[HKEY_CURRENT_USER\\A]\n\"x\"=\"1\"\n", target);
    ASSERT_EQ(
        ::symlink("dotfiles/settings.reg", QFile::encodeName(store.fileFor(HKCU)).constData()), 0);
    EXPECT_EQ(text("A", "x"), "1");
    ASSERT_TRUE(store.setValue(HKCU, "A", "x", RegValue::text("2")));
    EXPECT_TRUE(QFileInfo(store.fileFor(HKCU)).isSymLink());
    EXPECT_EQ(text("A", "x"), "2");
    QFile f(target);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.readAll().contains("\"x\"=\"2\""));
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
    constexpr int perWriter = 40;
    pid_t pids[2];
    for (int w = 0; w < 2; ++w) {
        pids[w] = spawn([w](RegistryStore& s) {
            for (int n = 0; n < perWriter; ++n)
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
        for (int n = 0; n < perWriter; ++n)
            EXPECT_EQ(text("Kill", QStringLiteral("w%1-%2").arg(w).arg(n)), QString::number(n));
}
