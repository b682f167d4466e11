// The playlist editor's skin: the [Playlist] section of skin.ini and two pictures of its
// own. A skin may switch itself off for this window with Skin=False.
#include <QFont>
#include <QPalette>
#include <QPointer>

#include "app/AppState.h"
#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Utilities.h"
#include "platform/msgbox/MsgBox.h"
#include "playlist/frmPlaylist.h"
#include "skin/ColorFromHex.h"
#include "skin/INIFiles.h"
#include "skin/ResPicture.h"

namespace cantovel {

namespace {

const QColor DefaultBack(0x20, 0x20, 0x20);
const QColor DefaultText(0xE0, 0xE0, 0xE0);

void setListColours(PlaylistListBox& list, const QColor& back, const QColor& text) {
    QPalette pal = list.palette();
    pal.setColor(QPalette::Base, back);
    pal.setColor(QPalette::Window, back);
    pal.setColor(QPalette::Text, text);
    pal.setColor(QPalette::WindowText, text);
    list.setPalette(pal);
    list.setAutoFillBackground(true);
}

}  // namespace

bool frmPlaylist::LoadPic(PictureClip& Target, const QString& Path) {
    const QPixmap p = ReadSkinPicture(Path);
    if (p.isNull()) return false;
    Target.setPicture(p);
    return true;
}

void frmPlaylist::LoadPlaylistSkin(QString& SkinPath) {
    // 1.
    setVisible(false);

    // 2-3. The built-in look.
    Picture = LoadResPicture(109);
    clpButtons.setPicture(LoadResPicture(110));
    clpButtons.setCols(6);
    setListColours(*lstPlayList, DefaultBack, DefaultText);
    QFont font(QStringLiteral("Tahoma"));
    font.setPointSize(7);
    font.setBold(false);
    font.setItalic(false);
    lstPlayList->setFont(font);

    // 4. A skin folder; a missing one reads as all defaults, its pictures failing in silence.
    if (!SkinPath.isEmpty()) {
        if (!SkinPath.endsWith(u'/')) SkinPath += u'/';
        INIFiles ini;
        ini.FileName = SkinPath + QStringLiteral("skin.ini");
        const QString section = QStringLiteral("Playlist");
        // A value that can't be converted is told with "Error..." and read again, for as
        // long as the fault stands: mending skin.ini while the box shows ends it, and so
        // does closing this window or the program, which ends the box with its owner.
        QPointer<frmPlaylist> self(this);
        auto readValue = [&](const char* key, const QString& defaultValue, auto convert) {
            for (;;) {
                const auto v = convert(ini.ReadINI(section, QLatin1String(key), defaultValue));
                if (v) return v;
                MsgBoxShow(QStringLiteral("Error..."), Mb::Critical, QString(), self);
                if (!self || !Forms::all().contains(self.data()) || AppClosing)
                    return decltype(v)();
            }
        };
        auto readFlag = [&](const char* key, bool defaultValue) {
            return readValue(key, CStr(defaultValue), [](const QString& t) { return CBool(t); });
        };
        const std::optional<bool> skinned = readFlag("Skin", true);
        if (!skinned) return;
        if (*skinned) {
            // 4.1
            const QString name =
                ini.ReadINI(section, QStringLiteral("Name"), QStringLiteral("Tahoma"));
            // A size past the integer range overflows, as a flag that is no flag does.
            const std::optional<qint16> size = readValue(
                "Size", QStringLiteral("7"), [](const QString& t) { return CInt16(Val(t)); });
            if (!size) return;
            const std::optional<bool> italic = readFlag("Italic", false);
            if (!italic) return;
            const std::optional<bool> bold = readFlag("Bold", false);
            if (!bold) return;
            setListColours(*lstPlayList,
                           ColorFromHex(ini.ReadINI(section, QStringLiteral("BackColor"),
                                                    QStringLiteral("202020"))),
                           ColorFromHex(ini.ReadINI(section, QStringLiteral("TextColor"),
                                                    QStringLiteral("E0E0E0"))));
            // 4.2 The strip holds the face for a moment; 4.3 a failed strip is not restored,
            // so the pressed faces are then cut from the face.
            if (LoadPic(clpButtons, SkinPath + QStringLiteral("back-playlist.bmp")))
                Picture = clpButtons.Picture();
            LoadPic(clpButtons, SkinPath + QStringLiteral("buttons-playlist.bmp"));
            // 4.4
            QFont skinFont(name);
            if (*size > 0) skinFont.setPointSize(*size);
            skinFont.setBold(*bold);
            skinFont.setItalic(*italic);
            lstPlayList->setFont(skinFont);
        }
    }

    // 5.
    for (SkinControl& b : imgButton) b.rect.setSize(QSize(24, 18));
    // 6.
    setVisible(true);
    update();
}

}  // namespace cantovel
