#pragma once
// The playlist window as the player core needs it: its list of names, and how often it
// was asked to bring itself up to date.

#include <QStringList>

#include "app/Form.h"
#include "player/PlaylistView.h"

namespace cantovel::test {

class FakePlaylistView : public Form, public PlaylistView {
    Q_OBJECT
  public:
    FakePlaylistView() : Form(QStringLiteral("frmPlaylist")) {}

    void lstPlayListClear() override { items.clear(); }
    void lstPlayListAddItem(const QString& fileName) override { items << fileName; }
    int lstPlayListCount() const override { return int(items.size()); }
    void RefreshPlaylist() override { ++refreshes; }

    QStringList items;
    int refreshes = 0;
};

}  // namespace cantovel::test
