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
    void writeFile(const QByteArray& text) {
        QFile f(store.fileFor(HKCU));
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

QString longValue(int n) {
    return QStringLiteral("value %1 ").arg(n).repeated(40);
}

}  // namespace

TEST_F(RegistryStoreTest, ValuesRoundTripThroughTheFile) {
    ASSERT_TRUE(store.createKey(HKCU, "Software\\Brightfen\\Cantovel\\Settings"));
    const QString key = "Software\\Brightfen\\Cantovel\\Settings";
    const QString odd = "C:\\path \"quoted\"\r\nsecond line\\n; [x] =é \U0001F3B5";
    EXPECT_TRUE(store.setValue(HKCU, key, "Odd", RegValue::text(odd)));
    EXPECT_TRUE(store.setValue(HKCU, key, "", RegValue::text("default")));
    EXPECT_TRUE(store.setValue(HKCU, key, "Count", RegValue::dword(10)));
    EXPECT_TRUE(store.setValue(HKCU, key, "Raw", RegValue{REG_BINARY, QByteArray("\x00\xff", 2)}));
    EXPECT_TRUE(store.setValue(HKCU, key, "NoNul", RegValue{REG_SZ, "abc"}));
    EXPECT_TRUE(store.setValue(HKCU, "", "AtRoot", RegValue::text("r")));

    // A second store over the same folder sees exactly what the first wrote.
    RegistryStore other(dir.path());
    auto read = [&](const QString& name) { return other.queryValue(HKCU, key, name); };
    EXPECT_EQ(text(key, "Odd"), odd);
    EXPECT_EQ(read("")->data, QByteArray("default", 8));
    EXPECT_EQ(read("count")->type, quint32(REG_DWORD));
    EXPECT_EQ(read("Count")->data, QByteArray("\x0a\0\0\0", 4));
    EXPECT_EQ(read("Raw")->type, quint32(REG_BINARY));
    EXPECT_EQ(read("Raw")->data, QByteArray("\x00\xff", 2));
    EXPECT_EQ(read("NoNul")->data, QByteArray("abc"));
    EXPECT_FALSE(read("Missing"));
    EXPECT_EQ(text("", "AtRoot"), "r");

    const QByteArray file = fileText();
    EXPECT_TRUE(
        file.startsWith("REGEDIT4\n\n[HKEY_CURRENT_USER]\n\"AtRoot\"=\"r\"\n\n"
                        "[HKEY_CURRENT_USER\\Software]\n"));
    EXPECT_TRUE(file.contains("@=\"default\"\n"));
    EXPECT_TRUE(file.contains("\"Count\"=dword:0000000a\n"));
    EXPECT_TRUE(file.contains("\"Odd\"=\"C:\\\\path \\\"quoted\\\"\\r\\nsecond line\\\\n"));
}

TEST_F(RegistryStoreTest, NamesMatchWithoutCaseKeepTheirCaseAndOrder) {
    ASSERT_TRUE(store.createKey(HKCU, "Software\\MyApp\\Zeta"));
    ASSERT_TRUE(store.createKey(HKCU, "SOFTWARE\\myapp\\alpha"));
    ASSERT_TRUE(store.createKey(HKCU, "software\\MYAPP\\Mid"));
    ASSERT_TRUE(store.createKey(HKCU, "software\\MYAPP\\ZETA"));
    EXPECT_EQ(RegistryStore(dir.path()).subKeys(HKCU, "Software\\MyApp"),
              (QStringList{"Zeta", "alpha", "Mid"}));
    EXPECT_EQ(store.subKeys(HKCU, ""), QStringList{"Software"});

    ASSERT_TRUE(store.setValue(HKCU, "software\\myapp", "Volume", RegValue::text("1")));
    ASSERT_TRUE(store.setValue(HKCU, "software\\myapp", "Balance", RegValue::text("2")));
    ASSERT_TRUE(store.setValue(HKCU, "SOFTWARE\\MYAPP", "VOLUME", RegValue::text("3")));
    EXPECT_EQ(store.valueNames(HKCU, "Software\\MyApp"), (QStringList{"Volume", "Balance"}));
    EXPECT_EQ(text("Software\\MyApp", "volume"), "3");
}

TEST_F(RegistryStoreTest, KeysBehaveLikeTheRegistry) {
    EXPECT_FALSE(store.setValue(HKCU, "Missing\\Key", "x", RegValue::text("1")));
    EXPECT_FALSE(store.keyExists(HKCU, "Missing"));
    EXPECT_TRUE(store.keyExists(HKCU, ""));

    ASSERT_TRUE(store.createKey(HKCU, "A\\B\\C"));
    EXPECT_TRUE(store.keyExists(HKCU, "A"));
    EXPECT_TRUE(store.keyExists(HKCU, "a\\b"));
    EXPECT_FALSE(store.deleteKey(HKCU, "A\\B"));  // still has a subkey
    EXPECT_TRUE(store.deleteKey(HKCU, "A\\B\\C"));
    EXPECT_FALSE(store.deleteKey(HKCU, "A\\B\\C"));
    EXPECT_TRUE(store.deleteKey(HKCU, "A\\B"));
    EXPECT_FALSE(store.deleteKey(HKCU, ""));
    EXPECT_FALSE(store.deleteValue(HKCU, "A", "none"));

    // Each root is a file of its own.
    ASSERT_TRUE(store.createKey(RegRoot::LocalMachine, "SOFTWARE\\Brightfen Cantovel\\MRU"));
    EXPECT_FALSE(store.keyExists(HKCU, "SOFTWARE\\Brightfen Cantovel"));
    EXPECT_TRUE(QFile::exists(dir.path() + "/HKEY_LOCAL_MACHINE.reg"));
}

TEST_F(RegistryStoreTest, ReadsFilesWrittenByHand) {
    writeFile(
        "\xEF\xBB\xBFREGEDIT4\r\n\r\n; made by hand\r\n"
        "[HKEY_CURRENT_USER\\Software\\Hand]\r\n"
        "\"Path\"=\"/home/me\"\r\n"
        "\"Num\"=dword:ff\r\n"
        "\"Blob\"=hex:01,02,\\\r\n  03\r\n"
        "\"Expand\"=hex(2):41,00\r\n");
    EXPECT_EQ(text("Software\\Hand", "Path"), "/home/me");
    EXPECT_EQ(store.queryValue(HKCU, "Software\\Hand", "Num")->data, QByteArray("\xff\0\0\0", 4));
    EXPECT_EQ(store.queryValue(HKCU, "Software\\Hand", "Blob")->data, QByteArray("\1\2\3"));
    EXPECT_EQ(store.queryValue(HKCU, "Software\\Hand", "Expand")->type, quint32(REG_EXPAND_SZ));
    EXPECT_TRUE(damagedFiles().isEmpty());
}

TEST_F(RegistryStoreTest, LinesThatCannotBeReadArePassedOverAndKept) {
    const QByteArray unread[] = {
        "stray text",
        "\"unterminated\"=\"no end",
        "\"big\"=dword:123456789",
        "\"escape\"=\"bad \\q\"",
        "\"gone\"=-",
        "; a comment",
        "[-HKEY_CURRENT_USER\\Software\\Deleted]",
        "\"inDeleted\"=\"1\"",
        "[HKEY_LOCAL_MACHINE\\Other]",
        "\"otherRoot\"=\"2\"",
        "\"blob\"=hex:01,02,\\\r\n  zz",
    };
    writeFile("REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\A]\r\n\"x\"=\"1\"\r\n" + unread[0] + "\r\n" +
              unread[1] + "\r\n" + unread[2] + "\r\n" + unread[3] + "\r\n" + unread[4] + "\r\n" +
              unread[10] + "\r\n" + unread[5] + "\r\n" + unread[6] + "\r\n" + unread[7] +
              "\r\n[HKEY_CURRENT_USER\\C]\r\n\"c\"=\"3\"\r\n" + unread[8] + "\r\n" + unread[9] +
              "\r\n");
    EXPECT_EQ(text("A", "x"), "1");
    EXPECT_EQ(text("C", "c"), "3");
    EXPECT_FALSE(store.keyExists(HKCU, "Software\\Deleted"));
    EXPECT_EQ(store.valueNames(HKCU, "A"), QStringList{"x"});

    // A write keeps every line it could not read, as it stood.
    ASSERT_TRUE(store.setValue(HKCU, "A", "y", RegValue::text("2")));
    EXPECT_TRUE(damagedFiles().isEmpty());
    const QByteArray after = fileText();
    for (const QByteArray& line : unread)
        EXPECT_TRUE(after.contains(line + '\n')) << line.constData() << " in\n"
                                                 << after.constData();
    EXPECT_EQ(text("A", "x"), "1");
    EXPECT_EQ(text("A", "y"), "2");
    EXPECT_EQ(text("C", "c"), "3");
    // Written again, the file does not grow: the kept lines are not doubled.
    ASSERT_TRUE(store.setValue(HKCU, "A", "y", RegValue::text("2")));
    EXPECT_EQ(fileText(), after);
}

TEST_F(RegistryStoreTest, AFileWithNothingReadableIsKeptAsideAndReadsAsEmpty) {
    const QByteArray damaged[] = {"not a registry file\n", QByteArray("\x7f"
                                                                      "ELF\0\1\2\xff",
                                                                      8)};
    int n = 0;
    for (const QByteArray& text : damaged) {
        writeFile(text);
        EXPECT_FALSE(store.queryValue(HKCU, "A", "x"));
        EXPECT_FALSE(QFile::exists(store.fileFor(HKCU)));
        const QStringList aside = damagedFiles();
        ASSERT_EQ(aside.size(), ++n);
        bool kept = false;
        for (const QString& name : aside) {
            QFile f(dir.path() + "/" + name);
            kept |= f.open(QIODevice::ReadOnly) && f.readAll() == text;
        }
        EXPECT_TRUE(kept);
    }
    // An empty file is no damage: it reads as empty and stays.
    writeFile("");
    EXPECT_FALSE(store.keyExists(HKCU, "A"));
    EXPECT_EQ(damagedFiles().size(), n);
    ASSERT_TRUE(store.createKey(HKCU, "A"));
    ASSERT_TRUE(store.setValue(HKCU, "A", "x", RegValue::text("fresh")));
    EXPECT_EQ(RegistryStoreTest::text("A", "x"), "fresh");
}

TEST_F(RegistryStoreTest, AFileThatIsASymbolicLinkIsWrittenThroughIt) {
    ASSERT_TRUE(QDir(dir.path()).mkpath("dotfiles"));
    const QString target = dir.path() + "/dotfiles/settings.reg";
    {
        QFile f(target);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("REGEDIT4\n\n[HKEY_CURRENT_USER\\A]\n\"x\"=\"1\"\n");
    }
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

TEST_F(RegistryStoreTest, WriterKilledMidWriteLosesNothingWrittenBefore) {
    ASSERT_TRUE(store.createKey(HKCU, "Kill"));
    for (int round = 0; round < 4; ++round) {
        const pid_t pid = spawn([](RegistryStore& s) {
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
        int status = 0;
        ASSERT_EQ(::waitpid(pid, &status, 0), pid);

        const QStringList names = store.valueNames(HKCU, "Kill");
        ASSERT_GE(names.size(), before + 10);
        for (int n = 0; n < names.size(); ++n) {
            ASSERT_EQ(names[n], QString::number(n));
            ASSERT_EQ(text("Kill", names[n]), longValue(n));
        }
        ASSERT_TRUE(damagedFiles().isEmpty());
    }
    // A temporary file left by the killed writer does not stand in the way.
    EXPECT_TRUE(store.setValue(HKCU, "Kill", "after", RegValue::text("ok")));
    EXPECT_EQ(text("Kill", "after"), "ok");
}

TEST_F(RegistryStoreTest, ConcurrentWritersLoseNoValue) {
    ASSERT_TRUE(store.createKey(HKCU, "Shared"));
    constexpr int perWriter = 40;
    pid_t pids[2];
    for (int w = 0; w < 2; ++w) {
        pids[w] = spawn([w](RegistryStore& s) {
            for (int n = 0; n < perWriter; ++n)
                s.setValue(HKCU, "Shared", QStringLiteral("w%1-%2").arg(w).arg(n),
                           RegValue::text(QString::number(n)));
        });
        ASSERT_GT(pids[w], 0);
    }
    for (pid_t pid : pids) {
        int status = 0;
        ASSERT_EQ(::waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(store.valueNames(HKCU, "Shared").size(), 2 * perWriter);
    for (int w = 0; w < 2; ++w)
        for (int n = 0; n < perWriter; ++n)
            EXPECT_EQ(text("Shared", QStringLiteral("w%1-%2").arg(w).arg(n)), QString::number(n));
}
