// Editing the playlist: every change reaches the window's list and the main window's List1
// alike, and marks the list unsaved.
#include <gtest/gtest.h>

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include "PlaylistTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class EditTest : public PlaylistTest {
  protected:
    void key(Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QTest::keyClick(editor, k, mods);
    }
};

TEST_F(EditTest, MovingWrapsRemovingKeepsASelectedRowAndBothWaitWhileTheListIsOff) {
    const QStringList s = songs(5);
    rows(s);
    main->PlaylistSaved = VTrue;
    select({4});
    menus->mnuMoveDown->trigger();
    EXPECT_EQ(main->List1, (QStringList{s[4], s[0], s[1], s[2], s[3]}));
    EXPECT_EQ(names(), namesOf(main->List1));
    EXPECT_EQ(main->PlaylistSaved, VFalse);
    menus->mnuMoveUp->trigger();
    EXPECT_EQ(main->List1, s);

    select({0});
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(main->List1, (QStringList{s[1], s[0], s[2], s[3], s[4]}));
    key(Qt::Key_F2);
    EXPECT_EQ(ReadAppSetting("Audio Randomize", ""), QStringLiteral("True"));
    // All but two rows, in two runs.
    list().selectAll();
    list().setSelected(2, false);
    list().setSelected(3, false);
    key(Qt::Key_Delete);
    EXPECT_EQ(main->List1, (QStringList{s[2], s[3]}));
    EXPECT_EQ(list().selectedRowList(), (QVector<int>{0}));

    list().setEnabled(false);
    menus->mnuRemove->trigger();
    menus->mnuMoveDown->trigger();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[0].text,
              QStringLiteral("If you wish to adjust the playlist, you must stop the currently "
                             "playing media beforehand."));
    list().setEnabled(true);

    menus->mnuNew->trigger();
    menus->mnuRemove->trigger();
    EXPECT_EQ(msgBox().shown.last().text,
              QStringLiteral("No files are currently in your playlist to remove."));
}

// The pass exactly as the menu item's behaviour states it, row by row.
QStringList thinnedRowByRow(QStringList list) {
    const int n = int(list.size());
    for (int i = 0; i <= n; ++i) {
        const int m = int(list.size());
        for (int j = i; j <= m; ++j) {
            if (list.value(j) != list.value(i)) continue;
            if (j >= list.size()) return list;  // removing a missing row ends the pass
            list.removeAt(j);
        }
    }
    return list;
}

TEST_F(EditTest, DeleteDuplicatesGivesTheRowByRowResultOnAnyList) {
    // Few texts, runs of equal rows and empty rows: every turn the pass can take.
    auto* random = QRandomGenerator::global();
    for (int round = 0; round < 3000; ++round) {
        QStringList texts;
        const int alphabet = int(random->bounded(1, 5));
        for (int i = 0, n = int(random->bounded(0, 25)); i < n; ++i) {
            const int t = int(random->bounded(alphabet + 1));
            texts << (t == alphabet && round % 3 == 0 ? QString() : QString(QChar(u'a' + t)));
        }
        QStringList fast = texts;
        editor->RemoveDupes(fast);
        ASSERT_EQ(fast, thinnedRowByRow(texts)) << texts.join(u',').toStdString();
    }
    // Names and paths are thinned apart.
    const QString a1 = file("a.mp3"), b = file("b.mp3"), c = file("c.mp3");
    QDir(tempDir()).mkdir("x");
    const QString a2 = file("x/a.mp3");
    rows({a1, a2, b, c});
    menus->mnuDeleteDupes->trigger();
    EXPECT_EQ(names(), (QStringList{"a.mp3", "c.mp3"}));
    EXPECT_EQ(main->List1, (QStringList{a2, c}));
}

TEST_F(EditTest, AddTakesFilesOrAPlaylistAndADroppedFolderItsOwnFilesOfTheListedKinds) {
    const QStringList s = songs(3);
    const QString ply = file("two.ply", (s[1] + "\r\n" + s[2] + "\r\n").toLocal8Bit());
    dialogs->scriptFiles({ply, s[0]});
    menus->mnuAdd->trigger();
    ASSERT_EQ(dialogs->calls.size(), 1);
    EXPECT_EQ(dialogs->calls[0].request.title, QStringLiteral("Select Audio Files:"));
    EXPECT_EQ(main->List1, (QStringList{s[1], s[2], s[0]}));
    EXPECT_EQ(ReadAppSetting("Playlist Add Dialog Path", ""), tempDir());
    const int extent = list().horizontalExtent();
    EXPECT_GT(extent, 20);

    // A cancelled dialog changes nothing, the saved mark included; the extent never shrinks.
    menus->mnuNew->trigger();
    dialogs->scriptCancel();
    menus->mnuAdd->trigger();
    EXPECT_EQ(main->PlaylistSaved, VTrue);
    dialogs->scriptFiles({s[0]});
    menus->mnuAdd->trigger();
    EXPECT_EQ(main->List1, (QStringList{s[0]}));
    EXPECT_EQ(list().horizontalExtent(), extent);

    QDir(tempDir()).mkpath("drop/sub");
    const QString folder = tempDir() + "/drop";
    const QString wav = file("drop/a.wav"), m3u = file("drop/b.m3u"), mp3 = file("drop/c.MP3");
    for (const char* other :
         {"drop/Track01.cda", "drop/notes.txt", "drop/film.avi", "drop/sub/x.mp3"})
        file(other);
    const QString inner = media("inner.mp3");
    file("drop/d.ply", (inner + "\r\n").toLocal8Bit());
    const QString flac = file("drop/e.flac");
    menus->mnuNew->trigger();
    dropOnEditor({folder});
    EXPECT_EQ(main->List1, (QStringList{wav, m3u, mp3, inner, flac}));
    EXPECT_EQ(names(), namesOf(main->List1));

    // Files dropped alone: a film is taken, an ".m3u" is one row, text is passed over.
    menus->mnuNew->trigger();
    const QString opus = file("song.opus");
    dropOnEditor({folder + "/film.avi", m3u, folder + "/notes.txt", tempDir() + "/gone.mp3", opus});
    EXPECT_EQ(main->List1, (QStringList{folder + "/film.avi", m3u, opus}));
}

}  // namespace
