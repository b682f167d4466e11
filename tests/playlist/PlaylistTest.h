#pragma once
// Fixture for the playlist editor: the player core on its fakes, with the editor loaded.

#include <QFileInfo>

#include "app/AppState.h"
#include "player/PlayerTest.h"
#include "playlist/frmPlaylist.h"
#include "playlist/frmTemp2.h"

namespace cantovel::test {

class PlaylistTest : public PlayerTest {
  protected:
    void SetUp() override {
        PlayerTest::SetUp();
        editor = new frmPlaylist();
        menus = &frmTemp2::get();
    }

    PlaylistListBox& list() { return *editor->lstPlayList; }
    QStringList names() const { return editor->lstPlayList->texts(); }
    // Puts rows straight into both lists.
    void rows(const QStringList& paths) { editor->AppendRows(paths); }
    // Paths of `count` media files a.mp3, b.mp3, ...
    QStringList songs(int count) {
        QStringList out;
        for (int i = 0; i < count; ++i)
            out << media(QString(QChar(u'a' + i)) + QStringLiteral(".mp3"));
        return out;
    }
    QStringList namesOf(const QStringList& paths) const {
        QStringList out;
        for (const QString& p : paths) out << QFileInfo(p).fileName();
        return out;
    }
    void select(std::initializer_list<int> indexes) {
        list().clearSelection();
        for (int i : indexes) list().setListIndex(i);
    }
    // The files as a drop on the editor hands them over.
    void dropOnEditor(const QStringList& paths) {
        editor->DroppedFiles = paths;
        editor->Process_DROPFILES();
    }

    frmPlaylist* editor = nullptr;
    frmTemp2* menus = nullptr;
};

}  // namespace cantovel::test
