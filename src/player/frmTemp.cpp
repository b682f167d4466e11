#include "player/frmTemp.h"

#include "app/Forms.h"
#include "app/Runtime.h"
#include "platform/Components.h"
#include "player/frmMain.h"

namespace cantovel {

QAction* frmTemp::item(QMenu* menu, const char* name, const QString& caption) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(QLatin1String(name));
    return a;
}

frmTemp::frmTemp() : Form(QStringLiteral("frmTemp")) {
    auto menu = [this](const char* name, const QString& caption) {
        auto* m = new QMenu(caption, this);
        m->setObjectName(QLatin1String(name));
        return m;
    };

    mnuFile = menu("mnuFile", QStringLiteral("&File"));
    mnuPlay = item(mnuFile, "mnuPlay", QStringLiteral("&Open..."));
    mnuPlayCurrent = item(mnuFile, "mnuPlayCurrent", QStringLiteral("&Play Current File"));
    mnuPlaylist = item(mnuFile, "mnuPlaylist", QStringLiteral("Play&list Editor"));
    mnuPlaylist->setCheckable(true);
    mnuMP3Info = item(mnuFile, "mnuMP3Info", QStringLiteral("MP3 File &Information"));
    mnuDelete = item(mnuFile, "mnuDelete", QStringLiteral("&Delete Current File"));
    mnuFile->addSeparator();
    for (int i = 0; i < 5; ++i) {
        mnuFileMRU[i] = item(mnuFile, "mnuFileMRU", QString());
        mnuFileMRU[i]->setVisible(false);
    }
    mnuFile->addSeparator();
    mnuClearCantovelMRU = item(mnuFile, "mnuClearCantovelMRU",
                               QStringLiteral("Clear Cantovel &Most Recently Used (MRU) Files List"));
    mnuFile->addSeparator();
    mnuExit = item(mnuFile, "mnuExit", QStringLiteral("E&xit"));

    mnuPlayback = menu("mnuPlayback", QStringLiteral("&Playback"));
    mnuPause = item(mnuPlayback, "mnuPause", QStringLiteral("Pa&use"));
    mnuStop = item(mnuPlayback, "mnuStop", QStringLiteral("&Stop"));
    mnuPlayback->addSeparator();
    mnuSeekPrev = item(mnuPlayback, "mnuSeekPrev", QStringLiteral("Seek Pre&vious"));
    mnuSeekNext = item(mnuPlayback, "mnuSeekNext", QStringLiteral("Seek &Next"));
    mnuPlayback->addSeparator();
    mnuRunPlaylist = item(mnuPlayback, "mnuRunPlaylist", QStringLiteral("&Run Playlist"));
    mnuMute = item(mnuPlayback, "mnuMute", QStringLiteral("&Mute"));

    mnuConversions = menu("mnuConversions", QStringLiteral("&Conversions"));
    mnuCDtoWAV = item(mnuConversions, "mnuCDtoWAV", QStringLiteral("Convert CD to &WAV..."));
    mnuCDtoMP3 = item(mnuConversions, "mnuCDtoMP3", QStringLiteral("Convert CD to &MP3..."));
    mnuWAVtoMP3 = item(mnuConversions, "mnuWAVtoMP3", QStringLiteral("Convert WAV to M&P3..."));
    mnuMP3toWAV = item(mnuConversions, "mnuMP3toWAV", QStringLiteral("Convert MP3 to W&AV..."));
    mnuWAVBatch = item(mnuConversions, "mnuWAVBatch", QStringLiteral("&Batch WAV Format Converter..."));

    mnuOptions = menu("mnuOptions", QStringLiteral("&Options"));
    mnuPreferences = item(mnuOptions, "mnuPreferences", QStringLiteral("&Preferences"));
    mnuAssociate = item(mnuOptions, "mnuAssociate", QStringLiteral("&Associate  Supported File Types"));
    mnuOptions->addSeparator();
    mnuMMProperties = mnuOptions->addMenu(QStringLiteral("&System Multimedia Properties"));
    mnuMMProperties->setObjectName(QStringLiteral("mnuMMProperties"));
    mnuMMAllProperties = item(mnuMMProperties, "mnuMMAllProperties", QStringLiteral("&All"));
    mnuMMAudioProperties = item(mnuMMProperties, "mnuMMAudioProperties", QStringLiteral("A&udio"));
    mnuMMVideoProperties = item(mnuMMProperties, "mnuMMVideoProperties", QStringLiteral("&Video"));
    mnuMMMIDIProperties = item(mnuMMProperties, "mnuMMMIDIProperties", QStringLiteral("&MIDI"));
    mnuMMCDProperties = item(mnuMMProperties, "mnuMMCDProperties", QStringLiteral("&CD Music"));
    mnuStartSS = item(mnuOptions, "mnuStartSS", QStringLiteral("&Activate Windows Screen Saver"));

    mnuWindow = menu("mnuWindow", QStringLiteral("&Window"));
    mnuCDDB = item(mnuWindow, "mnuCDDB", QStringLiteral("&CDDB Access Player"));
    mnuAdvCDPlayer = item(mnuWindow, "mnuAdvCDPlayer", QStringLiteral("&Audio CD Control Panel"));
    mnuAdvVideoCDPlayer = item(mnuWindow, "mnuAdvVideoCDPlayer", QStringLiteral("&Video CD Player"));
    mnuWindow->addSeparator();
    mnuRollup = item(mnuWindow, "mnuRollup", QStringLiteral("&Roll Up"));
    mnuMinTray = item(mnuWindow, "mnuMinTray", QStringLiteral("Minimize to System &Tray"));

    mnuHelp = menu("mnuHelp", QStringLiteral("&Help"));
    mnuHelpFile = item(mnuHelp, "mnuHelpFile", QStringLiteral("&Help Topics"));
    mnuHelp->addSeparator();
    mnuMailBrightfen = item(mnuHelp, "mnuMailBrightfen", QStringLiteral("&E-mail Brightfen"));
    mnuVisitBrightfen = item(mnuHelp, "mnuVisitBrightfen", QStringLiteral("&Visit Brightfen on the Web"));
    mnuSites = mnuHelp->addMenu(QStringLiteral("&Recommended Sites..."));
    mnuSites->setObjectName(QStringLiteral("mnuSites"));
    mnuHelp->addSeparator();
    mnuDisclaimer = item(mnuHelp, "mnuDisclaimer", QStringLiteral("&Disclaimer"));
    mnuAbout = item(mnuHelp, "mnuAbout", QStringLiteral("&About Cantovel..."));

    mnuSysMenu = menu("mnuSysMenu", QStringLiteral("System"));
    popRestore = item(mnuSysMenu, "popRestore", QStringLiteral("&Restore"));
    popMinimize = item(mnuSysMenu, "popMinimize", QStringLiteral("Mi&nimize"));
    mnuSysMenu->addSeparator();
    popClose = item(mnuSysMenu, "popClose", QStringLiteral("Close"));
    mnuSysMenu->setDefaultAction(popClose);

    popVideo = menu("popVideo", QStringLiteral("Video"));
    popVidPlay = item(popVideo, "popVidPlay", QStringLiteral("&Play New File"));
    popVidPlayCurrent = item(popVideo, "popVidPlayCurrent", QStringLiteral("Play &Current File"));
    popVidPause = item(popVideo, "popVidPause", QStringLiteral("Pa&use"));
    popZoom = popVideo->addMenu(QStringLiteral("Video Zoom"));
    popZoom->setObjectName(QStringLiteral("popZoom"));

    // What the form's own load sets.
    mnuPreferences->setText(QStringLiteral("&Preferences\tShift+F3"));
    mnuAssociate->setText(QStringLiteral("&Associate  Supported File Types\tShift+F4"));
    popClose->setText(QStringLiteral("Close\tAlt+F4"));

    // Idle until a file opens.
    mnuPause->setEnabled(false);
    popVidPause->setEnabled(false);

    // The hidden player, at the main window's volume of the moment (which its own load
    // sets again once the volume is read).
    MP = Components::create<MediaPlayer>();
    if (MP) {
        const frmMain* main = frmMain::instance();
        const int volume = main ? main->PlayerVolume : 0;
        MP->setVolume(int(Int(volume / 100.0 * 10000)) - 10000);
        connect(MP.get(), &MediaPlayer::OpenStateChange, this, &frmTemp::MP_OpenStateChange);
        connect(MP.get(), &MediaPlayer::PlayStateChange, this, &frmTemp::MP_PlayStateChange);
    }
    wireTransport();
    connectWindowCommands();
}

frmTemp& frmTemp::get() { return Forms::touch<frmTemp>(); }

frmTemp::~frmTemp() {
    // The player may report its closing as it goes; this window no longer listens.
    if (MP) MP->disconnect(this);
}

}  // namespace cantovel
