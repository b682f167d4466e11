// The editor as a window: docking to the main window, staying on top, its skin.
#include <gtest/gtest.h>

#include <QDir>
#include <QPalette>
#include <QScreen>
#include <QTest>

#include "PlaylistTest.h"
#include "app/Settings.h"
#include "playlist/PlaylistDocking.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class WindowTest : public PlaylistTest {
  protected:
    void SetUp() override {
        PlaylistTest::SetUp();
        main->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        main->setFixedSize(300, 175);
        main->show();
        main->move(300, 200);
    }
    QColor back() const { return editor->lstPlayList->palette().color(QPalette::Base); }
    QColor facePixel() const { return editor->Picture.toImage().pixelColor(150, 5); }
    QString skin(const QByteArray& ini, bool withPictures = false) {
        const QString folder = tempDir() + "/skin";
        QDir().mkpath(folder);
        QFile f(folder + "/skin.ini");
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(ini);
        if (withPictures) {
            QPixmap face(300, 175);
            face.fill(Qt::red);
            face.save(folder + "/back-playlist.bmp", "BMP");
        }
        return folder;
    }
};

TEST_F(WindowTest, DockedWindowsFollowEachOtherUntilMinimisedOrUndockedAndOnTopIsKept) {
    // The first opening, by its key, puts the editor below a main window that stays put.
    ASSERT_TRUE(editor->close());
    for (const char* name : {"Playlist Window Top", "Playlist Window Left"})
        DeleteRegValue(RegRoot::CurrentUser, SettingsKey(), QLatin1String(name));
    main->move(300, 200);
    QTest::keyClick(main, Qt::Key_E, Qt::ControlModifier);
    editor = frmPlaylist::instance();
    ASSERT_TRUE(editor);
    EXPECT_EQ(main->pos(), QPoint(300, 200));
    EXPECT_EQ(editor->pos(), QPoint(300, 375));

    struct Side {
        int setting;
        QPoint mainAt, editorAt;
    };
    // Places that keep both windows inside the 800 x 800 test screen.
    for (const Side& side : {Side{0, {300, 200}, {300, 375}}, Side{1, {300, 200}, {300, 25}},
                             Side{2, {300, 200}, {0, 200}}, Side{3, {150, 200}, {450, 200}}}) {
        menus->mnuDockSub[side.setting]->trigger();
        EXPECT_EQ(ReadAppSetting("Dock Playlist Window", ""), QString::number(side.setting));
        // The change centres the main window; put it back and let the editor follow.
        main->move(side.mainAt);
        MovePlaylistToMain();
        EXPECT_EQ(editor->pos(), side.editorAt) << "setting " << side.setting;
        // Dragging the editor carries the main window along.
        editor->move(editor->pos() + QPoint(30, 20));
        QTRY_COMPARE(main->pos(), side.mainAt + QPoint(30, 20));
    }

    // A minimised editor stays where it is.
    const QPoint docked = editor->pos();
    editor->showMinimized();
    main->move(100, 100);
    MovePlaylistToMain();
    EXPECT_EQ(editor->pos(), docked);
    editor->showNormal();

    // None: the main window goes to the centre and no window follows the other.
    menus->mnuDockSub[5]->trigger();
    EXPECT_EQ(main->frameGeometry().center(), main->screen()->availableGeometry().center());
    main->move(50, 50);
    MovePlaylistToMain();
    EXPECT_EQ(editor->pos(), docked);
    editor->move(docked + QPoint(5, 5));
    MoveMainToPlaylist();
    EXPECT_EQ(main->pos(), QPoint(50, 50));

    // On top: only switching on is remembered, and the next start's menus bring it back.
    menus->mnuOntop->trigger();
    EXPECT_TRUE(editor->windowFlags() & Qt::WindowStaysOnTopHint);
    menus->mnuOntop->trigger();
    EXPECT_EQ(ReadAppSetting("Playlist Always OnTop", ""), QStringLiteral("True"));
    menus->unload();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(frmTemp2::get().mnuOntop->isChecked());
}

TEST_F(WindowTest, ASkinSetsTheLookSkinOffKeepsTheBuiltInOneAndABadValueIsToldUntilMended) {
    QString folder = skin("[Playlist]\r\nSkin=False\r\nBackColor=0000FF\r\n", true);
    editor->LoadPlaylistSkin(folder);
    EXPECT_EQ(folder, tempDir() + "/skin/");
    EXPECT_EQ(back(), QColor(0x20, 0x20, 0x20));
    EXPECT_NE(facePixel(), QColor(Qt::red));

    // A colour that is no colour is black; a flag that is no flag is told until mended.
    folder = skin("[Playlist]\r\nBackColor=zz\r\nName=Courier\r\nBold=maybe\r\n");
    msgBox().onShow = [&](const ShownBox&) {
        if (msgBox().shown.size() == 3) skin("[Playlist]\r\nBackColor=zz\r\nBold=1\r\n");
    };
    editor->LoadPlaylistSkin(folder);
    ASSERT_EQ(msgBox().shown.size(), 3);
    EXPECT_EQ(msgBox().shown[0].text, QStringLiteral("Error..."));
    EXPECT_EQ(back(), QColor(0, 0, 0));
    EXPECT_TRUE(editor->lstPlayList->font().bold());
    EXPECT_EQ(facePixel(), QColor(Qt::red));

    // Ending the program while the box shows ends it too.
    msgBox().reset();
    folder = skin("[Playlist]\r\nItalic=perhaps\r\n");
    msgBox().onShow = [&](const ShownBox&) {
        if (msgBox().shown.size() == 2) editor->unload();
    };
    editor->LoadPlaylistSkin(folder);
    EXPECT_EQ(msgBox().shown.size(), 2);
}

}  // namespace
