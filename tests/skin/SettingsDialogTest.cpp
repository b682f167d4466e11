// The General Settings dialog: what it shows, stores and reloads.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "app/Settings.h"
#include "cd/frmCDPlayer.h"
#include "platform/cdreader/CdioCDReader.h"
#include "skin/ResPicture.h"
#include "skin/frmSettings.h"
#include "support/DiscImage.h"
#include "support/ImageDrives.h"
#include "support/MainWindowFixture.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class SettingsDialogTest : public MainWindowFixture {
  protected:
    QString skin(const QString& name, QColor back) {
        const QString dir = tempDir() + u'/' + name;
        QDir().mkpath(dir);
        QImage img(300, 175, QImage::Format_RGB32);
        img.fill(back);
        EXPECT_TRUE(img.save(dir + QStringLiteral("/back.bmp"), "BMP"));
        return dir;
    }
    QString setting(const char* name) {
        return ReadAppSetting(QLatin1String(name), QStringLiteral("<none>"));
    }
};

TEST_F(SettingsDialogTest, ShowsTheStoredValuesAndDefaults) {
    load();
    SaveAppSetting(QStringLiteral("Loop Other"), QStringLiteral("1"));
    frmSettings& s = Forms::touch<frmSettings>();
    EXPECT_FALSE(s.Check2->isChecked());
    EXPECT_FALSE(s.Check3->isChecked());
    EXPECT_TRUE(s.Check6->isChecked());
    EXPECT_TRUE(s.chkExtension->isChecked());
    EXPECT_EQ(s.lblSkinPath->text(), QStringLiteral("[Default Skin]"));
    QString temp = QDir::tempPath().toLower();
    if (!temp.endsWith(u'/')) temp += u'/';
    EXPECT_EQ(s.Label2->text(), temp);
    EXPECT_EQ(s.Check2->text(), QStringLiteral("&Save Cantovel's Position"));
    EXPECT_EQ(s.Command3->text(), QStringLiteral("&Browse..."));
    EXPECT_EQ(s.cmdSkinPath->text(), QStringLiteral("Bro&wse..."));
}

TEST_F(SettingsDialogTest, TheDriveListNamesTheDiscImagesAndTheChosenDriveIsSaved) {
    auto drives = std::make_shared<ImageDrives>();
    drives->add(DiscImage::buildSeconds(tempDir(), {20}, DiscImage::Data::None, "first").cuePath());
    drives->add(
        DiscImage::buildSeconds(tempDir(), {30}, DiscImage::Data::None, "second").cuePath());
    Components::provideService<CdDrives>(drives);
    Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    frmMain& m = load();
    const QStringList both{"<D:>  first.cue", "<E:>  second.cue"};
    const auto rows = [](const QComboBox* box) {
        QStringList out;
        for (int i = 0; i < box->count(); ++i) out << box->itemText(i);
        return out;
    };
    // The Audio CD Control Panel and the dialog list the same drives.
    EXPECT_EQ(rows(Forms::touch<frmCDPlayer>().DevCombo), both);

    QTest::keyClick(&m, Qt::Key_F3, Qt::ShiftModifier);
    frmSettings* s = Forms::find<frmSettings>();
    ASSERT_TRUE(s);
    EXPECT_EQ(rows(s->DevCombo), both);
    EXPECT_EQ(s->DevCombo->currentIndex(), 0);
    QTest::keyClick(s->DevCombo, Qt::Key_Down);
    EXPECT_EQ(s->CDReader->DriveLetter(), "E");
    EXPECT_TRUE(s->CDReader->DiscPresent());
    s->Command1->click();
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmSettings")));

    QTest::keyClick(&m, Qt::Key_F3, Qt::ShiftModifier);
    s = Forms::find<frmSettings>();
    ASSERT_TRUE(s);
    EXPECT_EQ(s->DevCombo->currentText(), "<E:>  second.cue");
}

TEST_F(SettingsDialogTest, OkStoresEverythingAndLoadsTheChosenSkin) {
    frmMain& m = load();
    const QString dir = skin(QStringLiteral("blue"), Qt::blue);
    frmSettings& s = Forms::touch<frmSettings>();
    s.Check2->setChecked(true);
    s.Check6->setChecked(true);
    s.chkExtension->setChecked(false);
    dialogs->scriptFolder(dir);
    s.cmdSkinPath->click();
    ASSERT_EQ(dialogs->calls.size(), 1);
    EXPECT_EQ(dialogs->calls[0].prompt, QStringLiteral("Select Skin Path"));
    EXPECT_EQ(s.lblSkinPath->text(), dir + u'/');
    EXPECT_EQ(setting("Skin Path"), dir);

    m.CurrentFile = QStringLiteral("/music/song.mp3");
    m.Title(QStringLiteral("song.mp3"));
    s.Command1->click();
    EXPECT_EQ(setting("Position"), QStringLiteral("1"));
    EXPECT_EQ(setting("Always Ontop"), QStringLiteral("0"));
    EXPECT_EQ(setting("Loop Other"), QStringLiteral("1"));
    EXPECT_EQ(setting("Show Extension"), QStringLiteral("0"));
    EXPECT_EQ(setting("SkinPath"), dir + u'/');
    EXPECT_EQ(m.lblTitle[0].Caption, QStringLiteral("song"));
    QImage blue(300, 175, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    EXPECT_EQ(picture(m.Picture), blue);
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmSettings")));
}

TEST_F(SettingsDialogTest, TheDefaultSkinOrAVanishedFolderLeaveTheSkinTheDefaultButtonResetsIt) {
    frmMain& m = load();
    const QString dir = skin(QStringLiteral("red"), Qt::red);
    m.LoadSkin(dir);
    SaveAppSetting(QStringLiteral("SkinPath"), dir);
    SaveAppSetting(QStringLiteral("Loop Other"), QStringLiteral("1"));
    QImage red(300, 175, QImage::Format_RGB32);
    red.fill(Qt::red);
    // Ok with the default skin saves it empty without reloading.
    Forms::touch<frmSettings>().lblSkinPath->setText(QStringLiteral("[Default Skin]"));
    Forms::touch<frmSettings>().Command1->click();
    EXPECT_EQ(setting("SkinPath"), QString());
    EXPECT_EQ(picture(m.Picture), red);
    // A removed folder keeps the skin, silently.
    const QString gone = skin(QStringLiteral("gone"), Qt::green);
    Forms::touch<frmSettings>().lblSkinPath->setText(gone + u'/');
    QDir(gone).removeRecursively();
    Forms::touch<frmSettings>().Command1->click();
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(picture(m.Picture), red);
    EXPECT_EQ(setting("SkinPath"), gone + u'/');
    // Default returns to the built-in skin and closes; nothing else is reset.
    frmSettings& s = Forms::touch<frmSettings>();
    s.Check6->setChecked(false);
    s.Command2->click();
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmSettings")));
    EXPECT_EQ(setting("SkinPath"), QString());
    EXPECT_EQ(picture(m.Picture), picture(LoadResPicture(101)));
    EXPECT_EQ(setting("Loop Other"), QStringLiteral("1"));
}

TEST_F(SettingsDialogTest, CancelStoresNothingButTheBrowsedFolders) {
    load();
    frmSettings& s = Forms::touch<frmSettings>();
    const QString folder = tempDir() + QStringLiteral("/scratch");
    dialogs->scriptFolder(folder + u'/');
    s.Command3->click();
    EXPECT_EQ(s.Label2->text(), folder + u'/');
    s.Check3->setChecked(true);
    s.cmdCancel->click();
    EXPECT_EQ(setting("Temp Path"), folder);
    EXPECT_EQ(setting("Temp  Location"), QStringLiteral("<none>"));
    EXPECT_EQ(setting("Always Ontop"), QStringLiteral("<none>"));
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmSettings")));
}

TEST(KeyNumbers, ClearsPrintableCharactersButDigitsAndThePoint) {
    EXPECT_EQ(frmSettings::KeyNumbers('5'), '5');
    EXPECT_EQ(frmSettings::KeyNumbers('.'), '.');
    EXPECT_EQ(frmSettings::KeyNumbers('a'), 0);
    EXPECT_EQ(frmSettings::KeyNumbers(8), 8);  // backspace passes
}

}  // namespace
