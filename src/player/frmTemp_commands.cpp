// The main menus' window commands: roll-up, mute, preferences, the desktop's multimedia
// settings and screen saver, help, mail and web, About and the disclaimer, and the system
// menu.
#include <QStandardPaths>

#include "app/Forms.h"
#include "platform/msgbox/MsgBox.h"
#include "platform/shell/Shell.h"
#include "player/HelpFile.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "shell/CShellExecute.h"
#include "skin/frmAbout.h"
#include "skin/frmDisclaimer.h"
#include "skin/frmSettings.h"
#include "tags/MP3Information.h"

namespace cantovel {

namespace {

const char* const BrightfenMail = "cantovel@brightfen.example";
const char* const BrightfenWeb = "https://www.brightfen.example/cantovel/";

struct Site {
    const char* name;
    const char* caption;
    const char* url;
};
// Places that make and explain the libraries the player stands on.
const Site Sites[4] = {
    {"mnuSiteMpv", "&mpv Media Player", "https://mpv.io/"},
    {"mnuSiteLame", "&LAME MP3 Encoder", "https://lame.sourceforge.io/"},
    {"mnuSiteGnudb", "&GnuDB CD Database", "https://gnudb.org/"},
    {"mnuSiteXiph", "&Xiph.Org Foundation", "https://xiph.org/"},
};

const char* const NoSoundSettingsMessage =
    "No program for the system's sound settings was found on this desktop.  Install one "
    "(for instance pavucontrol) to change the multimedia properties.";

// The desktop's sound settings, with the arguments that open a page. Pages: 0 all, 1
// audio, 2 video, 3 MIDI, 4 CD music; pavucontrol's page 3 is the output devices.
struct SoundSettings {
    QString program;
    QStringList arguments;
};

QList<SoundSettings> soundSettingsFor(int page) {
    const QStringList pavuTab = page == 1 ? QStringList{QStringLiteral("--tab=3")} : QStringList{};
    return {{QStringLiteral("pavucontrol"), pavuTab},
            {QStringLiteral("pavucontrol-qt"), pavuTab},
            {QStringLiteral("gnome-control-center"), {QStringLiteral("sound")}},
            {QStringLiteral("systemsettings"), {QStringLiteral("kcm_pulseaudio")}},
            {QStringLiteral("xfce4-mixer"), {}}};
}

frmMain* mainWindow() {
    return frmMain::instance();
}

}  // namespace

void frmTemp::connectWindowCommands() {
    for (int i = 0; i < 4; ++i) {
        mnuSite[i] = namedItem(mnuSites, Sites[i].name, QString::fromLatin1(Sites[i].caption));
        connect(mnuSite[i], &QAction::triggered, this, [this, i] { mnuSite_Click(i); });
    }
    auto on = [this](QAction* a, void (frmTemp::*slot)()) {
        connect(a, &QAction::triggered, this, [this, slot] { (this->*slot)(); });
    };
    on(mnuRollup, &frmTemp::mnuRollup_Click);
    on(mnuMute, &frmTemp::mnuMute_Click);
    on(mnuPreferences, &frmTemp::mnuPreferences_Click);
    const QAction* pages[5] = {mnuMMAllProperties, mnuMMAudioProperties, mnuMMVideoProperties,
                               mnuMMMIDIProperties, mnuMMCDProperties};
    for (int i = 0; i < 5; ++i)
        connect(pages[i], &QAction::triggered, this, [this, i] { mnuMMProperties_Click(i); });
    on(mnuStartSS, &frmTemp::mnuStartSS_Click);
    on(mnuHelpFile, &frmTemp::mnuHelpFile_Click);
    on(mnuMailBrightfen, &frmTemp::mnuMailBrightfen_Click);
    on(mnuVisitBrightfen, &frmTemp::mnuVisitBrightfen_Click);
    on(mnuAbout, &frmTemp::mnuAbout_Click);
    on(mnuDisclaimer, &frmTemp::mnuDisclaimer_Click);
    on(mnuExit, &frmTemp::mnuExit_Click);
    on(mnuClearCantovelMRU, &frmTemp::mnuClearCantovelMRU_Click);
    on(mnuMP3Info, &frmTemp::mnuMP3Info_Click);
    on(popRestore, &frmTemp::popRestore_Click);
    on(popMinimize, &frmTemp::popMinimize_Click);
    on(popClose, &frmTemp::popClose_Click);
    on(mnuPlaylist, &frmTemp::mnuPlaylist_Click);
    on(mnuCDDB, &frmTemp::mnuCDDB_Click);
    on(mnuAdvCDPlayer, &frmTemp::mnuAdvCDPlayer_Click);
    on(mnuCDtoWAV, &frmTemp::mnuCDtoWAV_Click);
    on(mnuCDtoMP3, &frmTemp::mnuCDtoMP3_Click);
    on(mnuWAVtoMP3, &frmTemp::mnuWAVtoMP3_Click);
    on(mnuMP3toWAV, &frmTemp::mnuMP3toWAV_Click);
    on(mnuWAVBatch, &frmTemp::mnuWAVBatch_Click);
    on(mnuAdvVideoCDPlayer, &frmTemp::mnuAdvVideoCDPlayer_Click);
    on(mnuAssociate, &frmTemp::mnuAssociate_Click);
    on(mnuMinTray, &frmTemp::mnuMinTray_Click);
}

void frmTemp::mnuRollup_Click() {
    if (frmMain* m = mainWindow()) m->RollUp();
}

void frmTemp::mnuMute_Click() {
    if (frmMain* m = mainWindow()) m->mnuMute();
}

void frmTemp::mnuPreferences_Click() {
    frmSettings& settings = Forms::touch<frmSettings>();
    settings.show();
    settings.raise();
    settings.activateWindow();
}

void frmTemp::mnuMMProperties_Click(int Page) {
    for (const SoundSettings& s : soundSettingsFor(Page)) {
        const QString program = QStandardPaths::findExecutable(s.program);
        if (program.isEmpty()) continue;
        qint64 pid = 0;
        if (Shell::get().start(program, s.arguments, QString(), &pid) > 32) return;
    }
    MsgBoxShow(QString::fromLatin1(NoSoundSettingsMessage), Mb::Information);
}

void frmTemp::mnuStartSS_Click() {
    qint64 pid = 0;
    Shell::get().start(QStringLiteral("xdg-screensaver"), {QStringLiteral("activate")}, QString(),
                       &pid);
}

void frmTemp::mnuHelpFile_Click() {
    OpenHelpContents();
}

void frmTemp::mnuMailBrightfen_Click() {
    long result = 0;
    CShellExecute().LaunchEmail(mainWindow(), QString::fromLatin1(BrightfenMail), 1, result);
}

void frmTemp::mnuVisitBrightfen_Click() {
    long result = 0;
    CShellExecute().LaunchURL(mainWindow(), QString::fromLatin1(BrightfenWeb), 1, result);
}

void frmTemp::mnuSite_Click(int Index) {
    if (Index < 0 || Index >= 4) return;
    long result = 0;
    CShellExecute().LaunchURL(mainWindow(), QString::fromLatin1(Sites[Index].url), 1, result);
}

void frmTemp::mnuAbout_Click() {
    frmAbout& about = Forms::touch<frmAbout>();
    about.show();
    about.raise();
}

void frmTemp::mnuDisclaimer_Click() {
    frmDisclaimer& disclaimer = Forms::touch<frmDisclaimer>();
    disclaimer.show();
    disclaimer.raise();
}

void frmTemp::mnuExit_Click() {
    if (frmMain* m = mainWindow()) m->unload();
}

void frmTemp::mnuClearCantovelMRU_Click() {
    // Four empty entries, as many as the list has ever been cleared with; without a list
    // there is nothing to clear and that is the error.
    if (MRU) {
        for (int i = 0; i < 4; ++i) MRU->SetMRUList(QString(), QString());
        MsgBoxShow(QStringLiteral("Cantovel's Most Recently Used (MRU) files list has been "
                                  "successfully cleared."),
                   Mb::Information | Mb::SetForeground);
    } else {
        MsgBoxShow(QStringLiteral("An error occurred while attempting to clear the application's "
                                  "Most Recently Used (MRU) files list.  \r\n") +
                       QStringLiteral("Please restart Cantovel and try again.  If the problem "
                                      "persists, write to ") +
                       QString::fromLatin1(BrightfenMail) + QStringLiteral("."),
                   Mb::Exclamation | Mb::SetForeground);
    }
}

void frmTemp::mnuMP3Info_Click() {
    const frmMain* m = mainWindow();
    ShowMP3Information(MP3, m ? m->CurrentFile : QString());
}

void frmTemp::popRestore_Click() {
    if (frmMain* m = mainWindow()) m->setWindowState(m->windowState() & ~Qt::WindowMinimized);
}

void frmTemp::popMinimize_Click() {
    if (frmMain* m = mainWindow()) m->setWindowState(m->windowState() | Qt::WindowMinimized);
}

void frmTemp::popClose_Click() {
    if (frmMain* m = mainWindow()) m->unload();
}

}  // namespace cantovel
