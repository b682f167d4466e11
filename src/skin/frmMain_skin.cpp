// Skins of the main window: the built-in pictures first, then whatever a skin folder
// supplies, then the title font from its skin.ini.
#include <QDir>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/msgbox/MsgBox.h"
#include "player/frmMain.h"
#include "skin/ColorFromHex.h"
#include "skin/INIFiles.h"
#include "skin/ResPicture.h"

namespace cantovel {

namespace {

const char* const SkinGoneMessage =
    "The path you have specified for your Cantovel skin no longer exists.  Therefore, the "
    "default skin will be used.";
const char* const SkinErrorMessage =
    "An error occurred while attempting to load the specified skin.  Ensure that the image "
    "files exists and are present in the skin path and try again.";

}  // namespace

bool frmMain::LoadPic(SkinControl& Target, const QString& Path) {
    const QPixmap p = ReadSkinPicture(Path);
    if (p.isNull()) return false;
    Target.setPicture(p);
    return true;
}

bool frmMain::LoadPic(PictureClip& Target, const QString& Path) {
    const QPixmap p = ReadSkinPicture(Path);
    if (p.isNull()) return false;
    Target.setPicture(p);
    return true;
}

void frmMain::LoadSkin(const QString& SkinPath) {
    QString path = SkinPath;
    LoadSkin(path);
}

void frmMain::LoadSkin(QString& SkinPath) {
    layOutFace();
    // 1. The window stays hidden while its pictures change.
    setVisible(false);
    if (!applySkin(SkinPath)) MsgBoxShow(QString::fromLatin1(SkinErrorMessage), Mb::Critical);
    // 10.
    setVisible(true);
    update();
}

// Steps 2 to 9 of a skin load; false when a value of skin.ini cannot be converted, which
// leaves the later steps undone.
bool frmMain::applySkin(QString& SkinPath) {
    // 2. The built-in pictures.
    Picture = LoadResPicture(101);
    clpButtons.setPicture(LoadResPicture(102));
    clpDigits.setPicture(LoadResPicture(103));
    clpVolumeButtons.setPicture(LoadResPicture(104));
    imgEQ.setPicture(LoadResPicture(105));
    imgPlayProgress.setPicture(LoadResPicture(106));
    imgBalance.setPicture(LoadResPicture(107));
    imgBalance.rect.setWidth(5);
    imgBack.setPicture(LoadResPicture(108));

    // 3.
    clpButtons.setCols(8);
    clpDigits.setCols(10);
    clpVolumeButtons.setCols(2);
    clpVolumeButtons.setRows(2);

    // 4. The title in Tahoma 7, white on a black shadow.
    lblTitle[0].ForeColor = QColor(0xFF, 0xFF, 0xFF);
    for (int i = 0; i < 4; ++i) {
        lblTitle[i].FontName = QStringLiteral("Tahoma");
        lblTitle[i].FontSize = 7;
        lblTitle[i].FontBold = false;
        lblTitle[i].FontItalic = false;
        if (i > 0) lblTitle[i].ForeColor = QColor(0, 0, 0);
    }

    // 5-7. A skin folder.
    if (!SkinPath.isEmpty()) {
        if (!PathExists(SkinPath)) {
            MsgBoxShow(QString::fromLatin1(SkinGoneMessage), Mb::Information);
            SaveAppSetting(QStringLiteral("SkinPath"), QString());
        } else {
            if (!SkinPath.endsWith(u'/')) SkinPath += u'/';
            // The digits strip serves as a scratch holder for the face.
            if (LoadPic(clpDigits, SkinPath + QStringLiteral("back.bmp")))
                Picture = clpDigits.Picture();
            LoadPic(imgBack, SkinPath + QStringLiteral("rollup.bmp"));
            if (!LoadPic(clpDigits, SkinPath + QStringLiteral("digits.bmp")))
                clpDigits.setPicture(LoadResPicture(103));
            LoadPic(clpButtons, SkinPath + QStringLiteral("buttons.bmp"));
            LoadPic(clpVolumeButtons, SkinPath + QStringLiteral("volume.bmp"));
            LoadPic(imgEQ, SkinPath + QStringLiteral("eq.bmp"));

            INIFiles ini;
            ini.FileName = SkinPath + QStringLiteral("skin.ini");
            const QString font = QStringLiteral("Font");
            const QString name =
                ini.ReadINI(font, QStringLiteral("Name"), QStringLiteral("Tahoma"));
            // A size past the integer range overflows: the skin error path.
            const std::optional<qint16> size =
                CInt16(Val(ini.ReadINI(font, QStringLiteral("Size"), 7)));
            if (!size) return false;
            const std::optional<bool> italic =
                CBool(ini.ReadINI(font, QStringLiteral("Italic"), false));
            if (!italic) return false;
            const std::optional<bool> bold =
                CBool(ini.ReadINI(font, QStringLiteral("Bold"), false));
            if (!bold) return false;
            const QColor shadow = ColorFromHex(
                ini.ReadINI(font, QStringLiteral("ShadowColor"), QStringLiteral("000000")));
            lblTitle[0].ForeColor = ColorFromHex(
                ini.ReadINI(font, QStringLiteral("TextColor"), QStringLiteral("FFFFFF")));
            for (int i = 0; i < 4; ++i) {
                lblTitle[i].FontName = name;
                lblTitle[i].FontSize = *size;
                lblTitle[i].FontBold = *bold;
                lblTitle[i].FontItalic = *italic;
                if (i > 0) lblTitle[i].ForeColor = shadow;
            }
        }
    }

    // 8. The click areas keep the buttons' size whatever the strip's cells are.
    for (SkinControl& b : imgButton) b.rect.setSize(QSize(24, 18));

    // 9.
    if (Form* settings = Forms::byName(QStringLiteral("frmSettings"))) settings->unload();
    return true;
}

}  // namespace cantovel
