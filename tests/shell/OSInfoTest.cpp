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

class OSInfoTest : public test::AppTest {};

}  // namespace

TEST_F(OSInfoTest, AnswersComeFromTheSystemAndTheStore) {
    COSInfo info;
    static const QRegularExpression guid(
        "^\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}$");
    EXPECT_TRUE(guid.match(info.GUID()).hasMatch()) << info.GUID().toStdString();
    EXPECT_NE(info.GUID(), info.GUID());
    EXPECT_EQ(info.ComputerName(), QSysInfo::machineHostName());
    EXPECT_FALSE(info.UserName().isEmpty());
    utsname u{};
    ASSERT_EQ(uname(&u), 0);
    EXPECT_TRUE(QString::fromLocal8Bit(u.release).startsWith(
        QString("%1.%2").arg(info.OSMajorVersion()).arg(info.OSMinorVersion())));
    EXPECT_EQ(info.OSAdditional(), QString::fromLocal8Bit(u.version));
    EXPECT_FALSE(info.WindowsType().isEmpty());
    qint16 left = -1, top = -1, right = -1, bottom = -1;
    info.GetWorkArea(left, top, right, bottom);
    EXPECT_EQ(QRect(QPoint(left, top), QPoint(right - 1, bottom - 1)),
              QGuiApplication::primaryScreen()->availableGeometry());
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
    EXPECT_TRUE(info.Beep());

    QTemporaryDir dir;
    test::ScopedEnv env;
    env.set("TMPDIR", dir.path());
    const QString tempDir = QDir(dir.path()).canonicalPath();
    EXPECT_EQ(info.TempPath(), tempDir + "/");
    const QString a = info.TempFile(), b = info.TempFile();
    EXPECT_NE(a, b);
    EXPECT_TRUE(QFileInfo(a).isFile());
    EXPECT_EQ(QFileInfo(b).size(), 0);
    EXPECT_EQ(QFileInfo(b).absolutePath(), tempDir);

    const QString key = "Software\\Microsoft\\MS Setup (ACME)\\User Info";
    EXPECT_EQ(info.DefaultCompanyName(), "");
    ASSERT_TRUE(registry().createKey(RegRoot::CurrentUser, key));
    registry().setValue(RegRoot::CurrentUser, key, "DefName", RegValue::text("Ada Lovelace"));
    registry().setValue(RegRoot::CurrentUser, key, "DefCompany", RegValue::dword(261));
    EXPECT_EQ(info.DefaultUserName(), "Ada Lovelace");
    EXPECT_EQ(info.DefaultCompanyName(), "261");
    EXPECT_TRUE(msgBox().shown.isEmpty());

    // Writes the system cannot honour show the member's box.
    info.setBeep(false);
    info.setScreenSaverTimeout(60);
    EXPECT_EQ(msgBox().texts(),
              QStringList(2, "Error: 438. Object doesn't support this property or method"));
    EXPECT_EQ(msgBox().shown[1].title, "ScreenSaverTimeout");
}
