#include <gtest/gtest.h>
#include <sys/utsname.h>

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QSysInfo>
#include <QTemporaryDir>

#include "shell/COSInfo.h"
#include "support/AppTest.h"
#include "support/ScopedEnv.h"

using namespace cantovel;

namespace {

class OSInfoTest : public test::AppTest {
  protected:
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
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(OSInfoTest, UserInformationComesFromTheStoreWhenItHasIt) {
    const QString key = "Software\\Microsoft\\MS Setup (ACME)\\User Info";
    ASSERT_TRUE(registry().createKey(RegRoot::CurrentUser, key));
    registry().setValue(RegRoot::CurrentUser, key, "DefName", RegValue::text("Ada Lovelace"));
    registry().setValue(RegRoot::CurrentUser, key, "DefCompany", RegValue::dword(261));
    EXPECT_EQ(info.DefaultUserName(), "Ada Lovelace");
    EXPECT_EQ(info.DefaultCompanyName(), "261");
    registry().deleteValue(RegRoot::CurrentUser, key, "DefCompany");
    EXPECT_EQ(info.DefaultCompanyName(), "");
}

TEST_F(OSInfoTest, WritesTheSystemCannotHonourShowTheMembersBox) {
    info.setBeep(false);
    info.setScreenSaverTimeout(60);
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[0].title, "Beep");
    EXPECT_EQ(msgBox().shown[0].text, "Error: 438. Object doesn't support this property or method");
    EXPECT_EQ(msgBox().shown[1].title, "ScreenSaverTimeout");
    EXPECT_TRUE(info.Beep());
}
