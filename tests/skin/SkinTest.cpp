// The main window's face, read back from what it paints; skin folders and the General
// Settings dialog: which pictures and title fonts a folder gives the face, the messages of a
// broken or vanished skin, and what the dialog shows, stores and reloads.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTest>

#include "app/Settings.h"
#include "cd/frmCDPlayer.h"
#include "platform/cdreader/CdioCDReader.h"
#include "skin/INIFiles.h"
#include "skin/ResPicture.h"
#include "skin/frmSettings.h"
#include "support/AudioFixtures.h"
#include "support/DiscImage.h"
#include "support/ImageDrives.h"
#include "support/MainWindowFixture.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const char* const SkinError =
    "An error occurred while attempting to load the specified skin.  Ensure that the image "
    "files exists and are present in the skin path and try again.";

class SkinTest : public MainWindowFixture {
  protected:
    QString skinDir(const QString& name) {
        QDir().mkpath(tempDir() + u'/' + name);
        return tempDir() + u'/' + name;
    }
    static QImage solid(QSize size, QColor color) {
        QImage img(size, QImage::Format_RGB32);
        img.fill(color);
        return img;
    }
    static QByteArray bmp(QSize size, QColor color) {
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        solid(size, color).save(&buffer, "BMP");
        return data;
    }
    static QImage res(int id) { return picture(LoadResPicture(id)); }
    QString setting(const char* name) { return ReadAppSetting(name, "<none>"); }
    frmSettings* open(frmMain& m) {
        QTest::keyClick(&m, Qt::Key_F3, Qt::ShiftModifier);
        return Forms::find<frmSettings>();
    }
};

TEST_F(SkinTest, TheSettingsDialogShowsStoresAndLoadsTheChosenSkinAndDrive) {
    auto drives = std::make_shared<ImageDrives>();
    for (const char* name : {"first", "second"})
        drives->add(
            DiscImage::buildSeconds(tempDir(), {20}, DiscImage::Data::None, name).cuePath());
    Components::provideService<CdDrives>(drives);
    Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    frmMain& m = load();
    SaveAppSetting("Loop Other", "1");
    frmSettings* s = open(m);
    ASSERT_TRUE(s);
    EXPECT_EQ(QList<bool>({s->Check2->isChecked(), s->Check3->isChecked(), s->Check6->isChecked(),
                           s->chkExtension->isChecked()}),
              QList<bool>({false, false, true, true}));
    EXPECT_EQ(s->lblSkinPath->text(), "[Default Skin]");
    // The Audio CD Control Panel lists the same drives.
    EXPECT_EQ(s->DevCombo->itemText(1), "<E:>  second.cue");
    EXPECT_EQ(Forms::touch<frmCDPlayer>().DevCombo->itemText(1), "<E:>  second.cue");

    // Cancel stores nothing but the browsed temporary folder.
    const QString scratch = tempDir() + "/scratch";
    dialogs->scriptFolder(scratch + u'/');
    s->Command3->click();
    EXPECT_EQ(s->Label2->text(), scratch + u'/');
    s->Check3->setChecked(true);
    s->cmdCancel->click();
    EXPECT_EQ(setting("Temp Path"), scratch);
    EXPECT_EQ(setting("Temp  Location"), "<none>");
    EXPECT_EQ(setting("Always Ontop"), "<none>");
    EXPECT_FALSE(IsFormLoaded("frmSettings"));
    // Number fields take digits, the point and control keys only.
    EXPECT_EQ(frmSettings::KeyNumbers('.'), '.');
    EXPECT_EQ(frmSettings::KeyNumbers('a'), 0);

    // Ok stores every choice, the drive too, and the title follows the extension switch.
    const QString dir = skinDir("blue");
    ASSERT_TRUE(writeBytes(dir + "/back.bmp", bmp(QSize(300, 175), Qt::blue)));
    ASSERT_TRUE(writeBytes(dir + "/digits.bmp", bmp(QSize(100, 16), Qt::yellow)));
    ASSERT_TRUE(writeBytes(dir + "/volume.bmp", bmp(QSize(32, 20), Qt::gray)));
    ASSERT_TRUE(writeBytes(dir + "/skin.ini",
                           "[Font]\r\nName=Courier\r\nSize=8.6pt\r\nItalic=True\r\nBold=1\r\n"
                           "ShadowColor=zz0000\r\nTextColor=ff8000\r\n"));
    s = open(m);
    s->Check2->setChecked(true);
    s->chkExtension->setChecked(false);
    QTest::keyClick(s->DevCombo, Qt::Key_Down);
    EXPECT_EQ(s->CDReader->DriveLetter(), "E");
    EXPECT_TRUE(s->CDReader->DiscPresent());
    dialogs->scriptFolder(dir);
    s->cmdSkinPath->click();
    EXPECT_EQ(dialogs->calls.last().prompt, "Select Skin Path");
    EXPECT_EQ(s->lblSkinPath->text(), dir + u'/');
    EXPECT_EQ(setting("Skin Path"), dir);
    m.CurrentFile = "/music/song.mp3";
    m.Title("song.mp3");
    s->Command1->click();
    EXPECT_EQ(QStringList({setting("Position"), setting("Always Ontop"), setting("Loop Other"),
                           setting("Show Extension"), setting("SkinPath")}),
              QStringList({"1", "0", "1", "0", dir + u'/'}));
    EXPECT_EQ(m.lblTitle[0].Caption, "song");
    EXPECT_FALSE(IsFormLoaded("frmSettings"));
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(picture(m.Picture), solid(QSize(300, 175), Qt::blue));
    EXPECT_EQ(picture(m.clpDigits.GraphicCell(3)), solid(QSize(10, 16), Qt::yellow));
    EXPECT_EQ(picture(m.clpVolumeButtons.GraphicCell(3)), solid(QSize(16, 10), Qt::gray));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(m.lblTitle[i].FontName, "Courier");
        EXPECT_EQ(m.lblTitle[i].FontSize, 9);
        EXPECT_TRUE(m.lblTitle[i].FontBold && m.lblTitle[i].FontItalic);
        EXPECT_EQ(m.lblTitle[i].ForeColor, i == 0 ? QColor(255, 128, 0) : QColor(Qt::black));
    }
    EXPECT_EQ(open(m)->DevCombo->currentText(), "<E:>  second.cue");

    // A folder removed before Ok keeps the skin, silently.
    const QString gone = skinDir("gone");
    dialogs->scriptFolder(gone);
    Forms::find<frmSettings>()->cmdSkinPath->click();
    QDir(gone).removeRecursively();
    Forms::find<frmSettings>()->Command1->click();
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(picture(m.Picture), solid(QSize(300, 175), Qt::blue));
    EXPECT_EQ(setting("SkinPath"), gone + u'/');
    // Default returns to the built-in skin and closes; nothing else is reset.
    open(m)->Command2->click();
    EXPECT_FALSE(IsFormLoaded("frmSettings"));
    EXPECT_EQ(setting("SkinPath"), QString());
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_EQ(setting("Loop Other"), "1");
}

TEST_F(SkinTest, BrokenPicturesAreBuiltInAndAVanishedFolderOrAValueThatDoesNotConvertIsTold) {
    const QString vanished = skinDir("vanished");
    SaveAppSetting("SkinPath", vanished);
    QDir(vanished).removeRecursively();
    frmMain& m = load();
    EXPECT_EQ(msgBox().texts(),
              QStringList{"The path you have specified for your Cantovel skin no longer exists.  "
                          "Therefore, the default skin will be used."});
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
    EXPECT_EQ(ReadAppSetting("SkinPath", "unset"), QString());
    EXPECT_TRUE(m.isVisible());
    msgBox().reset();

    // Bitmaps cut short and a whole level picture: the broken ones are passed over in silence
    // and the path comes back with its "/".
    QString dir = skinDir("skin");
    const QByteArray back = bmp(QSize(300, 175), Qt::darkBlue);
    ASSERT_TRUE(writeBytes(dir + "/back.bmp", back.left(back.size() / 2)));
    ASSERT_TRUE(writeBytes(dir + "/digits.bmp", bmp(QSize(100, 16), Qt::red).left(54)));
    ASSERT_TRUE(writeBytes(dir + "/eq.bmp", bmp(QSize(161, 7), Qt::magenta)));
    m.LoadSkin(dir);
    EXPECT_EQ(dir, tempDir() + "/skin/");
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_EQ(picture(m.clpDigits.Picture()), res(103));
    m.EQVolume(100);
    EXPECT_EQ(part(face(m), QRect(121, 77, 161, 7)), solid(QSize(161, 7), Qt::magenta));

    // A double-size digits strip gives double cells, on the face too.
    QImage strip(200, 32, QImage::Format_RGB32);
    QPainter p(&strip);
    for (int d = 0; d < 10; ++d) p.fillRect(d * 20, 0, 20, 32, QColor(d * 25, 0, 0));
    p.end();
    ASSERT_TRUE(strip.save(dir + "/digits.bmp", "BMP"));
    m.LoadSkin(dir);
    m.ShowClockField(0, "7");
    EXPECT_EQ(m.imgTime[5].rect, QRect(86, 42, 20, 32));
    EXPECT_EQ(part(face(m), QRect(86, 42, 20, 32)), solid(QSize(20, 32), QColor(175, 0, 0)));

    // A boolean that does not convert stops the load behind a box, the window hidden: the
    // pictures applied stay, the title font and later steps are not reached.
    ASSERT_TRUE(writeBytes(dir + "/back.bmp", back));
    ASSERT_TRUE(writeBytes(dir + "/skin.ini", "[Font]\nName=Courier\nBold=maybe\n"));
    Forms::touch<frmSettings>();
    m.imgButton[0].rect.setSize(QSize(10, 10));
    bool hiddenDuringBox = false;
    msgBox().onShow = [&](const ShownBox&) { hiddenDuringBox = !m.isVisible(); };
    m.LoadSkin(dir);
    EXPECT_EQ(msgBox().texts(), QStringList{SkinError});
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Critical);
    EXPECT_TRUE(hiddenDuringBox);
    EXPECT_TRUE(m.isVisible());
    EXPECT_EQ(picture(m.Picture), solid(QSize(300, 175), Qt::darkBlue));
    EXPECT_EQ(m.lblTitle[0].FontName, "Tahoma");
    EXPECT_EQ(m.imgButton[0].rect.size(), QSize(10, 10));
    EXPECT_TRUE(IsFormLoaded("frmSettings"));
    // A size past the integer range converts no better.
    ASSERT_TRUE(writeBytes(dir + "/skin.ini", "[Font]\nSize=1e300\n"));
    m.LoadSkin(dir);
    EXPECT_EQ(msgBox().texts(), QStringList(2, SkinError));

    // An empty path touches no file, not even a skin in the working folder; a good load
    // closes the settings dialog.
    const QString cwd = QDir::currentPath();
    QDir::setCurrent(dir);
    QString none;
    m.LoadSkin(none);
    QDir::setCurrent(cwd);
    EXPECT_TRUE(none.isEmpty());
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_EQ(m.imgButton[0].rect.size(), QSize(24, 18));
    EXPECT_FALSE(IsFormLoaded("frmSettings"));
    EXPECT_EQ(msgBox().shown.size(), 2);
}

TEST_F(SkinTest, SkinIniReadsLikeTheProfileFunctionsAndWritesIntoItsSection) {
    INIFiles ini;
    ini.FileName = tempDir() + "/skin.ini";
    EXPECT_EQ(ini.ReadINI("Font", "Name", QString("Tahoma")), "Tahoma");  // no file
    writeBytes(ini.FileName,
               "; a comment\r\n[Other]\r\nName=Wrong\r\n[ FONT ]\r\n  name =  \"Lucida "
               "Sans\"  \r\nLong=" +
                   QByteArray(200, 'a') + "\r\nEmpty=\r\n");
    EXPECT_EQ(ini.ReadINI("font", "NAME", QString("x")), "Lucida Sans");
    EXPECT_EQ(ini.ReadINI("Font", "Long", QString()).size(), 127);
    EXPECT_EQ(ini.ReadINI("Font", "Empty", QString("d")), QString());
    EXPECT_EQ(ini.ReadINI("Font", "Size", 7), "7");
    EXPECT_EQ(ini.ReadINI("Font", "Bold", false), "False");
    EXPECT_EQ(ini.ReadINI("Missing", "Name", QString("d")), "d");

    ini.FileName = tempDir() + "/new.ini";
    ini.WriteINI("Playlist", "Skin", true);
    ini.WriteINI("Font", "Size", 9);
    ini.WriteINI("playlist", "BackColor", QString("202020"));
    ini.WriteINI("Font", "size", 11);
    EXPECT_EQ(ini.ReadINI("Playlist", "Skin", QString()), "True");
    QFile written(ini.FileName);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(),
              QByteArray("[Playlist]\r\nSkin=True\r\nBackColor=202020\r\n[Font]\r\nSize=11\r\n"));
}

// ---- The face: what the main window paints ------------------------------------------

class DisplayTest : public SkinTest {};

TEST_F(DisplayTest, BalanceDragSnapsToTheCentre) {
    frmMain& m = load();
    // A grab at the thumb's first column, carried to each place from 217 to 279.
    for (int target = 217; target <= 279; ++target) {
        m.SetBalance(-1000);
        const QPoint grabAt(m.imgBalance.Left(), 152);
        hover(m, grabAt);
        press(m, grabAt);
        drag(m, QPoint(target, 152));
        release(m, QPoint(target, 152));
        const int expected = target >= 246 && target <= 250 ? 248 : target;
        EXPECT_EQ(m.imgBalance.Left(), expected) << "dragged to " << target;
        if (target == 247) {
            EXPECT_EQ(m.GetBalance(), 0);
        }
    }
    EXPECT_EQ(m.GetBalance(), 1000);
    EXPECT_EQ(part(face(m), QRect(279, 149, 5, 8)), picture(m.imgBalance.picture).copy(0, 0, 5, 8));
    // Past its ends the thumb stops.
    press(m, QPoint(280, 152));
    drag(m, QPoint(100, 152));
    release(m, QPoint(100, 152));
    EXPECT_EQ(m.imgBalance.Left(), 217);
}

TEST_F(DisplayTest, RollingUpAndDownTwiceRestoresThePicture) {
    frmMain& m = load();
    m.ShowClockField(0, QStringLiteral("1234"));
    const QImage before = face(m);
    // Where no control paints, the built-in picture.
    EXPECT_EQ(part(before, QRect(0, 0, 300, 40)), background(m, QRect(0, 0, 300, 40)));
    for (int round = 0; round < 2; ++round) {
        m.RollUp();
        EXPECT_EQ(m.height(), 38);
        EXPECT_EQ(temp().mnuRollup->text(), QStringLiteral("&Roll Down"));
        EXPECT_EQ(part(face(m), QRect(0, 0, 300, 38)), picture(m.imgBack.picture));
        m.RollUp();
        EXPECT_EQ(m.height(), 175);
        EXPECT_EQ(temp().mnuRollup->text(), QStringLiteral("&Roll Up"));
        EXPECT_EQ(face(m), before);
    }
    // The roll-up box and a double click on the caption roll it too.
    click(m, QPoint(279, 7));
    EXPECT_EQ(m.height(), 38);
    mouse(m, QEvent::MouseButtonDblClick, QPoint(150, 12), Qt::LeftButton, Qt::LeftButton);
    release(m, QPoint(150, 12));
    EXPECT_EQ(m.height(), 175);
    // An empty text blanks a clock field.
    m.ShowClockField(0, QString());
    for (int i = 0; i < 6; ++i) {
        const QRect cell(m.imgTime[i].rect.topLeft(), QSize(10, 16));
        EXPECT_EQ(part(face(m), cell), background(m, cell)) << i;
    }
}

TEST_F(DisplayTest, ALeftPressShowsThePressedFaceUntilReleaseARightOneNothing) {
    frmMain& m = load();
    const QImage before = face(m);
    const QRect stop(89, 142, 24, 18);
    press(m, QPoint(95, 150));
    EXPECT_EQ(part(face(m), stop), picture(m.clpButtons.GraphicCell(3)));
    // Only the pressed button shows its face.
    EXPECT_EQ(part(face(m), QRect(17, 142, 72, 18)), part(before, QRect(17, 142, 72, 18)));
    release(m, QPoint(95, 150));
    EXPECT_EQ(face(m), before);
    // A right button press paints nothing.
    for (const QPoint& p : {QPoint(95, 150), QPoint(170, 44)}) {
        press(m, p, Qt::RightButton);
        EXPECT_EQ(face(m), before);
        release(m, p, Qt::RightButton);
    }
    EXPECT_FALSE(m.tmrVolume.isEnabled());
    // The digits do not carry the window as the background does.
    const QPoint at = m.pos();
    press(m, QPoint(30, 50));
    drag(m, QPoint(60, 50));
    release(m, QPoint(60, 50));
    EXPECT_EQ(m.pos(), at);
}

}  // namespace
