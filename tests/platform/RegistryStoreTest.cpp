#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/registry/RegistryStore.h"

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
    QString text(const QString& key, const QString& name) {
        auto v = store.queryValue(HKCU, key, name);
        if (!v || v->type != REG_SZ) return QStringLiteral("<none>");
        return QString::fromUtf8(v->data.chopped(1));
    }
};

}  // namespace

TEST_F(RegistryStoreTest, ValuesRoundTripThroughTheFile) {
    ASSERT_TRUE(store.createKey(HKCU, "Software\\Brightfen\\Cantovel\\Settings"));
    const QString key = "Software\\Brightfen\\Cantovel\\Settings";
    const QString odd = "C:\\path \"quoted\"\r\nsecond line\\n; [x] =é";
    EXPECT_TRUE(store.setValue(HKCU, key, "Odd", RegValue::text(odd)));
    EXPECT_TRUE(store.setValue(HKCU, key, "", RegValue::text("default")));
    EXPECT_TRUE(store.setValue(HKCU, key, "Count", RegValue::dword(10)));
    EXPECT_TRUE(store.setValue(HKCU, key, "Raw", RegValue{REG_BINARY, QByteArray("\x00\xff", 2)}));
    EXPECT_TRUE(store.setValue(HKCU, key, "NoNul", RegValue{REG_SZ, "abc"}));

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

    const QByteArray file = fileText();
    EXPECT_TRUE(file.startsWith("REGEDIT4\n\n[HKEY_CURRENT_USER\\Software]\n"));
    EXPECT_TRUE(file.contains("@=\"default\"\n"));
    EXPECT_TRUE(file.contains("\"Count\"=dword:0000000a\n"));
    EXPECT_TRUE(file.contains("\"Odd\"=\"C:\\\\path \\\"quoted\\\"\\r\\nsecond line\\\\n"));
}
