#pragma once
// The main window: a captionless 300 x 175 skinned face that plays one medium at a time.
// It owns the playback state and lives from start to exit. Its implementation is split by
// concern across the subsystems' folders (start-up and closing in app/, the session in
// player/, the face in skin/).

#include <QStringList>
#include <array>
#include <memory>

#include "app/Form.h"
#include "shell/COSInfo.h"
#include "shell/Subclass.h"
#include "tags/CCRC32.h"
#include "platform/clock/Timer.h"
#include "player/player_state.h"
#include "skin/SkinControl.h"

namespace cantovel {

class frmMain : public Form, public PlayerState {
    Q_OBJECT
public:
    frmMain();
    ~frmMain() override;

    // The loaded main window, or null.
    static frmMain* instance();

    // The start-up of the application, in its fixed order. `commandLine` is the one path
    // the program was started with (quotes allowed), or empty.
    void Form_Load(const QString& commandLine);
    // True from the creation of the window until the last step of its load.
    bool StillLoading = true;

    // The list of record: full paths of the loaded media or playlist entries.
    QStringList List1;

    // Kept for the window's whole life.
    std::unique_ptr<COSInfo> OSInfo;
    std::unique_ptr<CCRC32> CRCCheck;
    // The window-message hook, subscribed at load.
    Subclass Subclass1{this};

    // Timers; all start disabled.
    Timer Timer1{500};
    Timer Timer2{125};
    Timer Timer3{100};
    Timer CDR_Timer{1000};
    Timer tmrVolume{500};

    // The eighteen digit places: track time 0-5, track length 6-11, the player's
    // volume 12-14, the master volume 15-17.
    std::array<SkinControl, 18> imgTime;

    // The skin in use; empty for the built-in one.
    void LoadSkin(const QString& skinPath);
    // Paints the two three-digit volume read-outs.
    void PaintVolumes();
    // Opens the one path given on the command line, if it names an existing file.
    void OpenCommandLine(const QString& path);

public slots:
    // A command handed over by a later start of the program: "[Restore App]" or a path.
    void Form_LinkExecute(const QString& command);

protected:
    bool queryUnload(UnloadMode mode) override;
    bool unloadEvent() override;
};

}  // namespace cantovel
