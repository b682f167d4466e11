#pragma once
// Fixture for scenario tests of the player core: the main window, its hidden menu window
// and the program's other windows on fake players, dialogs, shell and virtual time. The
// Vivo window gets no film control here.

#include <QFile>

#include "app/AppState.h"
#include "app/ProductionComponents.h"
#include "app/Settings.h"
#include "player/MruList.h"
#include "player/PlayerWindows.h"
#include "player/QueueView.h"
#include "support/FakeCDReader.h"
#include "support/FakeMediaPlayer.h"
#include "support/MainWindowFixture.h"
#include "video/frmVideoPlayer.h"
#include "video/frmVivoPlayer.h"

namespace cantovel::test {

// Records what goes to the recently used files.
class FakeMruList : public MruList {
  public:
    void SetMRUList(const QString& item, const QString& tag) override {
        added << std::pair{item, tag};
    }
    QList<std::pair<QString, QString>> added;
};

class PlayerTest : public MainWindowFixture {
  protected:
    void SetUp() override {
        MainWindowFixture::SetUp();
        // The main window here is never loaded, and its load is what clears this.
        AppClosing = VFalse;
        FakeCDReader::install();
        registerProgramWindows();
        installPlayers();
        main = new frmMain();
        temp = &frmTemp::get();
        auto recent = std::make_unique<FakeMruList>();
        mru = recent.get();
        temp->MRU = std::move(recent);
        if (auto* mp = dynamic_cast<FakeMediaPlayer*>(temp->MP.get())) mp->calls.clear();
    }

    // The media players the windows get.
    virtual void installPlayers() { FakeMediaPlayer::install(); }

    // A file of the test's own; its content does not matter to the fakes.
    QString file(const QString& name, const QByteArray& content = "data") {
        const QString path = tempDir() + u'/' + name;
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(content);
        return path;
    }
    // A file the fake players open, `seconds` long.
    QString media(const QString& name, double seconds = 10) {
        const QString path = file(name);
        FakeMediaPlayer::setLength(path, seconds);
        return path;
    }
    void setting(const char* name, const QString& value) {
        SaveAppSetting(QLatin1String(name), value);
    }

    // The hidden audio player.
    FakeMediaPlayer& MP() { return *static_cast<FakeMediaPlayer*>(temp->MP.get()); }
    // The queue's player, when its window is loaded.
    FakeMediaPlayer* AM() {
        QueueView* view = loadedWindow<QueueView>();
        return view ? static_cast<FakeMediaPlayer*>(view->AM()) : nullptr;
    }
    frmVideoPlayer* video() { return Forms::find<frmVideoPlayer>(); }
    frmVivoPlayer* vivo() { return Forms::find<frmVivoPlayer>(); }
    // Opens a file through the open dialog.
    void openByDialog(const QString& path) {
        dialogs->scriptFiles({path});
        temp->mnuPlay->trigger();
    }
    QString caption(QAction* action) const { return action->text(); }

    frmMain* main = nullptr;
    frmTemp* temp = nullptr;
    FakeMruList* mru = nullptr;
};

}  // namespace cantovel::test
