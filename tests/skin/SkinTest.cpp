// Skin folders: which pictures and title fonts a folder gives the main window, and the
// messages of a broken or vanished skin.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPushButton>

#include "app/Settings.h"
#include "skin/INIFiles.h"
#include "skin/ResPicture.h"
#include "skin/frmSettings.h"
#include "support/MainWindowFixture.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const char* const SkinGone =
    "The path you have specified for your Cantovel skin no longer exists.  Therefore, the "
    "default skin will be used.";
const char* const SkinError =
    "An error occurred while attempting to load the specified skin.  Ensure that the image "
    "files exists and are present in the skin path and try again.";

class SkinTest : public MainWindowFixture {
  protected:
    QString skinDir(const QString& name = QStringLiteral("skin")) {
        const QString dir = tempDir() + u'/' + name;
        QDir().mkpath(dir);
        return dir;
    }
    static void writeBmp(const QString& path, QSize size, QColor color) {
        QImage img(size, QImage::Format_RGB32);
        img.fill(color);
        ASSERT_TRUE(img.save(path, "BMP"));
    }
    static void writeIni(const QString& dir, const QByteArray& text) {
        QFile f(dir + QStringLiteral("/skin.ini"));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }
    static QImage res(int id) { return picture(LoadResPicture(id)); }
    static QImage solid(QSize size, QColor color) {
        QImage img(size, QImage::Format_RGB32);
        img.fill(color);
        return img;
    }
};

TEST_F(SkinTest, AnEmptySkinPathTouchesNoFileAndMissingPicturesStayBuiltIn) {
    frmMain& m = load();
    // A skin in the working folder would be found by a path built on the empty one.
    const QString dir = skinDir();
    for (const char* f : {"back.bmp", "digits.bmp", "eq.bmp", "buttons.bmp"})
        writeBmp(dir + u'/' + QLatin1String(f), QSize(300, 175), Qt::red);
    writeIni(dir, "[Font]\nName=Courier\nBold=maybe\n");
    const QString cwd = QDir::currentPath();
    QDir::setCurrent(dir);
    QString path;
    m.LoadSkin(path);
    QDir::setCurrent(cwd);
    EXPECT_TRUE(path.isEmpty());
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_EQ(picture(m.clpDigits.Picture()), res(103));
    EXPECT_EQ(m.lblTitle[0].FontName, QStringLiteral("Tahoma"));

    // A folder with only the level picture keeps everything else built in.
    const QString only = skinDir(QStringLiteral("only"));
    writeBmp(only + QStringLiteral("/eq.bmp"), QSize(161, 7), Qt::magenta);
    path = only;
    m.LoadSkin(path);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    // The caller's path comes back with its "/".
    EXPECT_EQ(path, only + u'/');
    EXPECT_EQ(picture(m.imgEQ.picture), solid(QSize(161, 7), Qt::magenta));
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_EQ(picture(m.imgBack.picture), res(108));
    EXPECT_EQ(picture(m.clpDigits.Picture()), res(103));
    EXPECT_EQ(picture(m.clpButtons.Picture()), res(102));
    EXPECT_EQ(picture(m.clpVolumeButtons.Picture()), res(104));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(m.lblTitle[i].FontName, QStringLiteral("Tahoma"));
        EXPECT_EQ(m.lblTitle[i].FontSize, 7);
        EXPECT_FALSE(m.lblTitle[i].FontBold);
        EXPECT_FALSE(m.lblTitle[i].FontItalic);
        EXPECT_EQ(m.lblTitle[i].ForeColor, i == 0 ? QColor(Qt::white) : QColor(Qt::black));
    }
    // The face shows the skin's level picture.
    m.EQVolume(100);
    EXPECT_EQ(part(face(m), QRect(121, 77, 161, 7)), solid(QSize(161, 7), Qt::magenta));
}

TEST_F(SkinTest, AFullSkinReplacesEveryPictureAndTheTitleFont) {
    frmMain& m = load();
    const QString dir = skinDir();
    writeBmp(dir + QStringLiteral("/back.bmp"), QSize(300, 175), Qt::darkBlue);
    writeBmp(dir + QStringLiteral("/rollup.bmp"), QSize(300, 38), Qt::darkGreen);
    writeBmp(dir + QStringLiteral("/digits.bmp"), QSize(100, 16), Qt::yellow);
    writeBmp(dir + QStringLiteral("/buttons.bmp"), QSize(192, 18), Qt::cyan);
    writeBmp(dir + QStringLiteral("/volume.bmp"), QSize(32, 20), Qt::gray);
    writeIni(dir,
             "[Font]\r\nName=Courier\r\nSize=9pt\r\nItalic=True\r\nBold=1\r\n"
             "ShadowColor=102030\r\nTextColor=ff8000\r\n");
    m.LoadSkin(dir);
    EXPECT_EQ(picture(m.Picture), solid(QSize(300, 175), Qt::darkBlue));
    EXPECT_EQ(picture(m.imgBack.picture), solid(QSize(300, 38), Qt::darkGreen));
    EXPECT_EQ(picture(m.clpDigits.GraphicCell(3)), solid(QSize(10, 16), Qt::yellow));
    EXPECT_EQ(picture(m.clpVolumeButtons.GraphicCell(3)), solid(QSize(16, 10), Qt::gray));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(m.lblTitle[i].FontName, QStringLiteral("Courier"));
        EXPECT_EQ(m.lblTitle[i].FontSize, 9);
        EXPECT_TRUE(m.lblTitle[i].FontBold);
        EXPECT_TRUE(m.lblTitle[i].FontItalic);
        EXPECT_EQ(m.lblTitle[i].ForeColor, i == 0 ? QColor(255, 128, 0) : QColor(0x10, 0x20, 0x30));
    }
    // A later load starts from the built-in skin again.
    m.LoadSkin(skinDir(QStringLiteral("empty")));
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_EQ(m.lblTitle[0].FontName, QStringLiteral("Tahoma"));

    // Sizes and colours read as the loader reads them.
    writeIni(dir, "[font]\nsize=x\ntextcolor=12\nshadowcolor=zz0000\n");
    m.LoadSkin(dir);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(m.lblTitle[0].FontSize, 0);
    EXPECT_EQ(m.lblTitle[0].ForeColor, QColor(0, 0, 0));
    EXPECT_EQ(m.lblTitle[1].ForeColor, QColor(0, 0, 0));
    writeIni(dir, "[Font]\nSize=  8.6\n");
    m.LoadSkin(dir);
    EXPECT_EQ(m.lblTitle[3].FontSize, 9);
}

TEST_F(SkinTest, AVanishedFolderSaysSoOnceAndClearsTheSetting) {
    const QString dir = skinDir(QStringLiteral("gone"));
    SaveAppSetting(QStringLiteral("SkinPath"), dir);
    QDir(dir).removeRecursively();
    frmMain& m = load();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, QString::fromLatin1(SkinGone));
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("SkinPath"), QStringLiteral("unset")), QString());
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_TRUE(m.isVisible());
    // The next start finds nothing to complain about.
    m.LoadSkin(ReadAppSetting(QStringLiteral("SkinPath"), QString()));
    EXPECT_EQ(msgBox().shown.size(), 1);
}

TEST_F(SkinTest, ABooleanThatDoesNotConvertStopsTheLoad) {
    frmMain& m = load();
    Forms::touch<frmSettings>();
    const QString dir = skinDir();
    writeBmp(dir + QStringLiteral("/back.bmp"), QSize(300, 175), Qt::darkBlue);
    writeIni(dir, "[Font]\nName=Courier\nBold=maybe\nTextColor=FF0000\n");
    QSize buttonBefore(10, 10);
    m.imgButton[0].rect.setSize(buttonBefore);
    bool hiddenDuringBox = false;
    msgBox().onShow = [&](const ShownBox&) { hiddenDuringBox = !m.isVisible(); };
    m.LoadSkin(dir);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, QString::fromLatin1(SkinError));
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Critical);
    EXPECT_TRUE(hiddenDuringBox);
    EXPECT_TRUE(m.isVisible());
    // Pictures already applied stay; the title font and later steps are not reached.
    EXPECT_EQ(picture(m.Picture), solid(QSize(300, 175), Qt::darkBlue));
    EXPECT_EQ(m.lblTitle[0].FontName, QStringLiteral("Tahoma"));
    EXPECT_EQ(m.lblTitle[0].ForeColor, QColor(Qt::white));
    EXPECT_EQ(m.imgButton[0].rect.size(), buttonBefore);
    EXPECT_TRUE(IsFormLoaded(QStringLiteral("frmSettings")));
    // A good load closes the settings dialog.
    m.LoadSkin(QString());
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmSettings")));
    EXPECT_EQ(m.imgButton[0].rect.size(), QSize(24, 18));
    // A size past the integer range converts no better.
    writeIni(dir, "[Font]\nSize=1e300\n");
    m.LoadSkin(dir);
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[1].text, QString::fromLatin1(SkinError));
}

TEST_F(SkinTest, ADoubleSizeDigitsStripGivesDoubleCellsAnUnreadableOneNothing) {
    frmMain& m = load();
    const QString dir = skinDir();
    QImage strip(200, 32, QImage::Format_RGB32);
    strip.fill(Qt::black);
    QPainter p(&strip);
    for (int d = 0; d < 10; ++d) p.fillRect(d * 20, 0, 20, 32, QColor(d * 25, 0, 0));
    p.end();
    ASSERT_TRUE(strip.save(dir + QStringLiteral("/digits.bmp"), "BMP"));
    m.LoadSkin(dir);
    EXPECT_EQ(m.clpDigits.GraphicCell(7).size(), QSize(20, 32));
    EXPECT_EQ(picture(m.clpDigits.GraphicCell(7)), solid(QSize(20, 32), QColor(175, 0, 0)));
    m.ShowClockField(0, QStringLiteral("7"));
    EXPECT_EQ(m.imgTime[5].rect, QRect(86, 42, 20, 32));
    EXPECT_EQ(part(face(m), QRect(86, 42, 20, 32)), solid(QSize(20, 32), QColor(175, 0, 0)));

    // An unreadable bitmap is passed over in silence.
    QFile f(dir + QStringLiteral("/digits.bmp"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("not a picture");
    f.close();
    writeBmp(dir + QStringLiteral("/back.bmp"), QSize(300, 175), Qt::darkBlue);
    m.LoadSkin(dir);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    // The digits strip held the face for a moment; it gets its built-in picture back.
    EXPECT_EQ(picture(m.clpDigits.Picture()), res(103));
    EXPECT_EQ(picture(m.Picture), solid(QSize(300, 175), Qt::darkBlue));
}

TEST_F(SkinTest, BitmapsCutShortArePassedOverAndTheBuiltInOnesStay) {
    frmMain& m = load();
    const QString dir = skinDir();
    const auto bmp = [](QSize size, QColor color) {
        QImage img(size, QImage::Format_RGB32);
        img.fill(color);
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        img.save(&buffer, "BMP");
        return data;
    };
    const auto put = [&](const char* name, const QByteArray& data) {
        QFile f(dir + u'/' + QLatin1String(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(data);
    };
    const QByteArray back = bmp(QSize(300, 175), Qt::darkBlue);
    put("back.bmp", back.left(back.size() / 2));               // the pixels stop half way
    put("digits.bmp", bmp(QSize(100, 16), Qt::red).left(54));  // the header alone
    put("eq.bmp", bmp(QSize(161, 7), Qt::green));              // whole

    // Chosen in the settings, as a user does.
    Forms::touch<frmSettings>();
    dialogs->scriptFolder(dir);
    Forms::find<frmSettings>()->cmdSkinPath->click();
    Forms::find<frmSettings>()->Command1->click();
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(picture(m.Picture), res(101));
    EXPECT_EQ(picture(m.clpDigits.Picture()), res(103));
    EXPECT_EQ(picture(m.imgEQ.picture), solid(QSize(161, 7), Qt::green));
}

// ---- The pieces -------------------------------------------------------------------------

class IniTest : public AppTest {};

TEST_F(IniTest, ReadsLikeTheProfileFunctionsAndWritesIntoItsSection) {
    INIFiles ini;
    ini.FileName = tempDir() + QStringLiteral("/skin.ini");
    // No file: the default.
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Font"), QStringLiteral("Name"), QStringLiteral("Tahoma")),
              QStringLiteral("Tahoma"));
    QFile f(ini.FileName);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(
        "; a comment\r\n[Other]\r\nName=Wrong\r\n[ FONT ]\r\n  name =  \"Lucida Sans\"  \r\n"
        "Long=" +
        QByteArray(200, 'a') + "\r\nEmpty=\r\n");
    f.close();
    EXPECT_EQ(ini.ReadINI(QStringLiteral("font"), QStringLiteral("NAME"), QStringLiteral("x")),
              QStringLiteral("Lucida Sans"));
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Font"), QStringLiteral("Long"), QString()).size(), 127);
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Font"), QStringLiteral("Empty"), QStringLiteral("d")),
              QString());
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Font"), QStringLiteral("Size"), 7), QStringLiteral("7"));
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Font"), QStringLiteral("Bold"), false),
              QStringLiteral("False"));
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Missing"), QStringLiteral("Name"), QStringLiteral("d")),
              QStringLiteral("d"));

    // Writes go into their section and read back.
    ini.FileName = tempDir() + QStringLiteral("/new.ini");
    ini.WriteINI(QStringLiteral("Playlist"), QStringLiteral("Skin"), true);
    ini.WriteINI(QStringLiteral("Font"), QStringLiteral("Size"), 9);
    ini.WriteINI(QStringLiteral("playlist"), QStringLiteral("BackColor"), QStringLiteral("202020"));
    ini.WriteINI(QStringLiteral("Font"), QStringLiteral("size"), 11);
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Playlist"), QStringLiteral("Skin"), QString()),
              QStringLiteral("True"));
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Playlist"), QStringLiteral("BackColor"), QString()),
              QStringLiteral("202020"));
    EXPECT_EQ(ini.ReadINI(QStringLiteral("Font"), QStringLiteral("Size"), QString()),
              QStringLiteral("11"));
    QFile written(ini.FileName);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(),
              QByteArray("[Playlist]\r\nSkin=True\r\nBackColor=202020\r\n[Font]\r\nSize=11\r\n"));
}

}  // namespace
