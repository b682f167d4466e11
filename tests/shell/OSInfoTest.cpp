#include <gtest/gtest.h>
#include <sys/utsname.h>

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QSysInfo>
#include <QTemporaryDir>
#include <memory>

#include "platform/Components.h"
#include "platform/registry/Registry.h"
#include "shell/COSInfo.h"
#include "support/FakeMsgBox.h"
#include "support/ScopedEnv.h"

using namespace cantovel;

namespace {

// A store holding a few values of one key, enough for the user information.
class OneKeyRegistry : public Registry {
  public:
    QHash<QString, RegValue> values;
    QString key;
    bool keyExists(RegRoot, const QString& k) override { return k == key; }
    bool createKey(RegRoot, const QString&) override { return false; }
    std::optional<RegValue> queryValue(RegRoot root, const QString& k,
                                       const QString& name) override {
        if (root != RegRoot::CurrentUser || k != key || !values.contains(name)) return {};
        return values.value(name);
    }
    bool setValue(RegRoot, const QString&, const QString&, const RegValue&) override {
        return false;
    }
    bool deleteValue(RegRoot, const QString&, const QString&) override { return false; }
    bool deleteKey(RegRoot, const QString&) override { return false; }
    QStringList subKeys(RegRoot, const QString&) override { return {}; }
    QStringList valueNames(RegRoot, const QString&) override { return values.keys(); }
};

RegValue text(const QByteArray& s) {
    return {REG_SZ, s + '\0'};
}

class OSInfoTest : public ::testing::Test {
  protected:
    void SetUp() override { Components::provideService<MsgBox>(boxes); }
    void TearDown() override { Components::clear(); }
    std::shared_ptr<test::FakeMsgBox> boxes = std::make_shared<test::FakeMsgBox>();
    COSInfo info;
};

}  // namespace

TEST_F(OSInfoTest, GuidIsBracedUpperCaseAndNew) {
    static const QRegularExpression shape(
        "^\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}$");
    const QString a = info.GUID(), b = info.GUID();
    EXPECT_TRUE(shape.match(a).hasMatch()) << a.toStdString();
    EXPECT_NE(a, b);
}

TEST_F(OSInfoTest, TempPathAndTempFileFollowTheTemporaryFolder) {
    QTemporaryDir dir;
    test::ScopedEnv env;
    env.set("TMPDIR", dir.path());
    EXPECT_EQ(info.TempPath(), QDir(dir.path()).canonicalPath() + "/");
    const QString a = info.TempFile(), b = info.TempFile();
    EXPECT_NE(a, b);
    for (const QString& f : {a, b}) {
        const QFileInfo fi(f);
        EXPECT_TRUE(fi.isFile()) << f.toStdString();
        EXPECT_EQ(fi.size(), 0);
        EXPECT_EQ(fi.absolutePath(), QDir(dir.path()).canonicalPath());
    }
}

TEST_F(OSInfoTest, MachineAnswersComeFromTheSystem) {
    EXPECT_EQ(info.ComputerName(), QSysInfo::machineHostName());
    EXPECT_FALSE(info.UserName().isEmpty());
    utsname u{};
    ASSERT_EQ(uname(&u), 0);
    const QString release = QString::fromLocal8Bit(u.release);
    EXPECT_TRUE(
        release.startsWith(QString("%1.%2").arg(info.OSMajorVersion()).arg(info.OSMinorVersion())))
        << release.toStdString();
    EXPECT_EQ(info.OSAdditional(), QString::fromLocal8Bit(u.version));
    EXPECT_FALSE(info.WindowsType().isEmpty());

    qint16 left = -1, top = -1, right = -1, bottom = -1;
    info.GetWorkArea(left, top, right, bottom);
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_EQ(QRect(QPoint(left, top), QPoint(right - 1, bottom - 1)), area);
    EXPECT_GT(info.DisplayColors(), 1);
    EXPECT_FALSE(info.Language().isEmpty());
    EXPECT_TRUE(QFileInfo(info.SystemDirectory()).isDir());
    EXPECT_TRUE(QFileInfo(info.WindowsDirectory()).isDir());
    // These depend on the machine; they must answer without an error.
    info.CurrentHardwareProfile();
    info.DefaultUserName();
    info.LargeFonts();
    info.ScreenSaverActive();
    info.ScreenSaverTimeout();
    EXPECT_TRUE(boxes->shown.isEmpty());
}

TEST_F(OSInfoTest, UserInformationComesFromTheStoreWhenItHasIt) {
    auto store = std::make_shared<OneKeyRegistry>();
    store->key = "Software\\Microsoft\\MS Setup (ACME)\\User Info";
    store->values.insert("DefName", text("Ada Lovelace"));
    store->values.insert("DefCompany", {REG_DWORD, QByteArray("\x05\x01\x00\x00", 4)});
    Components::provideService<Registry>(store);
    EXPECT_EQ(info.DefaultUserName(), "Ada Lovelace");
    EXPECT_EQ(info.DefaultCompanyName(), "261");
    store->values.clear();
    EXPECT_EQ(info.DefaultCompanyName(), "");
}

TEST_F(OSInfoTest, WritesTheSystemCannotHonourShowTheMembersBox) {
    info.setBeep(false);
    info.setScreenSaverTimeout(60);
    ASSERT_EQ(boxes->shown.size(), 2);
    EXPECT_EQ(boxes->shown[0].title, "Beep");
    EXPECT_EQ(boxes->shown[0].text, "Error: 438. Object doesn't support this property or method");
    EXPECT_EQ(boxes->shown[1].title, "ScreenSaverTimeout");
    EXPECT_TRUE(info.Beep());
}
