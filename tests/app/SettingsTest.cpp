#include <gtest/gtest.h>

#include <QFile>

#include "app/Runtime.h"
#include "app/Settings.h"
#include "support/AppTest.h"

using namespace cantovel;

namespace {

constexpr auto HKCU = RegRoot::CurrentUser;

const QString readMessage =
    "An error occurred attempting to read \r\na setting from the Windows Registry.";

class SettingsTest : public cantovel::test::AppTest {};

}  // namespace

TEST_F(SettingsTest, MissingSettingGivesTheDefaultWithAMessageOnlyWhenAsked) {
    EXPECT_EQ(ReadAppSetting("Main Window Top", "450", true, true), "450");
    EXPECT_TRUE(msgBox().shown.isEmpty());

    EXPECT_EQ(ReadAppSetting("Main Window Top", "450", true, false), "450");
    ASSERT_EQ(msgBox().shown.size(), 1);
    const auto& box = msgBox().shown[0];
    EXPECT_EQ(box.text, readMessage);

    // An existing key without the value is a failed read as well.
    ASSERT_TRUE(SaveAppSetting("Other", "1"));
    EXPECT_EQ(ReadAppSetting("Main Window Top", "450", true, false), "450");
    EXPECT_EQ(msgBox().shown.size(), 2);
}

TEST_F(SettingsTest, SavedTextsLandInTheSettingsKeyAsText) {
    EXPECT_TRUE(SaveAppSetting("SkinPath", "/home/me/skins/Blue"));
    EXPECT_TRUE(SaveAppSetting("Temp  Location", "/tmp", false));
    auto v = registry().queryValue(HKCU, "Software\\Brightfen\\Cantovel\\Settings", "SkinPath");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->type, quint32(REG_SZ));
    EXPECT_EQ(v->data, QByteArray("/home/me/skins/Blue", 20));
    EXPECT_EQ(ReadAppSetting("skinpath", ""), "/home/me/skins/Blue");
    // The store lives in the user's configuration folder.
    EXPECT_TRUE(
        QFile::exists(qEnvironmentVariable("XDG_CONFIG_HOME") + "/cantovel/HKEY_CURRENT_USER.reg"));
    EXPECT_EQ(ReadAppSetting("Temp  Location", "x", false), "/tmp");
    EXPECT_EQ(ReadAppSetting("Temp  Location", "x", true), "x");
}

TEST_F(SettingsTest, ValuesReadBackAsTheProgramExpectsThem) {
    ASSERT_TRUE(registry().createKey(HKCU, SettingsKey()));
    ASSERT_TRUE(registry().setValue(HKCU, SettingsKey(), "Volume", RegValue::dword(5)));
    ASSERT_TRUE(registry().setValue(HKCU, SettingsKey(), "Big", RegValue::dword(305419896)));
    EXPECT_EQ(ReadAppSetting("Volume", "100"), "005");  // at least three digits
    // The read buffer holds 511 characters; empty is not the default.
    const QString fits(511, u'a'), tooLong(512, u'b');
    ASSERT_TRUE(SaveAppSetting("Fits", fits));
    ASSERT_TRUE(SaveAppSetting("TooLong", tooLong));
    ASSERT_TRUE(SaveAppSetting("Empty", ""));
    EXPECT_EQ(ReadAppSetting("Fits", "default"), fits);
    EXPECT_EQ(ReadAppSetting("TooLong", "default"), "default");
    EXPECT_EQ(ReadAppSetting("Empty", "default"), "");
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(ReadAppSetting("TooLong", "default", true, false), "default");
    EXPECT_EQ(msgBox().texts(), QStringList{readMessage});
    ASSERT_TRUE(SaveAppSetting("Playlist Visible", CStr(false)));
    EXPECT_EQ(CBool(ReadAppSetting("Playlist Visible", CStr(true))), false);
}

TEST_F(SettingsTest, FailedWritesAndDeletesShowTheirMessages) {
    // A plain file where the store's folder should be: nothing can be written.
    QFile blocker(registry().folder());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    EXPECT_FALSE(SaveAppSetting("Volume", "50", true, true));
    EXPECT_FALSE(SaveAppSetting("Volume", "50", true, false));
    EXPECT_FALSE(DeleteRegValue(HKCU, SettingsKey(), "Volume", false));
    EXPECT_FALSE(DeleteRegKey(HKCU, SettingsKey(), false));
    EXPECT_EQ(
        msgBox().texts(),
        (QStringList{"An error occurred attempting to save a setting to the Windows Registry.",
                     "An error occurred attempting to delete a setting from the Windows Registry.",
                     "An error occurred attempting to delete a key from the Windows Registry."}));
    for (const auto& box : msgBox().shown) {
        EXPECT_EQ(box.icon(), Mb::Exclamation);
    }
}
