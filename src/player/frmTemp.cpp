#include "player/frmTemp.h"

#include "app/Forms.h"
#include "app/Runtime.h"
#include "platform/Components.h"
#include "player/frmMain.h"

namespace cantovel {

frmTemp::frmTemp() : Form(QStringLiteral("frmTemp")) {
    mnuFile = namedMenu("mnuFile", QStringLiteral("&File"));
    mnuPlay = namedItem(mnuFile, "mnuPlay", QStringLiteral("&Open..."));
    mnuPlayCurrent = namedItem(mnuFile, "mnuPlayCurrent", QStringLiteral("&Play Current File"));
    mnuPlaylist = namedItem(mnuFile, "mnuPlaylist", QStringLiteral("Play&list Editor"));
    mnuPlaylist->setCheckable(true);
    mnuMP3Info = namedItem(mnuFile, "mnuMP3Info", QStringLiteral("MP3 File &Information"));
    mnuDelete = namedItem(mnuFile, "mnuDelete", QStringLiteral("&Delete Current File"));
    mnuFile->addSeparator();
    for (int i = 0; i < 5; ++i) {
        mnuFileMRU[i] = namedItem(mnuFile, "mnuFileMRU", QString());
        mnuFileMRU[i]->setVisible(false);
    }
    mnuFile->addSeparator();
    mnuClearCantovelMRU =
        namedItem(mnuFile, "mnuClearCantovelMRU",
                  QStringLiteral("Clear Cantovel &Most Recently Used (MRU) Files List"));
    mnuFile->addSeparator();
    mnuExit = namedItem(mnuFile, "mnuExit", QStringLiteral("E&xit"));

    mnuPlayback = namedMenu("mnuPlayback", QStringLiteral("&Playback"));
    mnuPause = namedItem(mnuPlayback, "mnuPause", QStringLiteral("Pa&use"));
    mnuStop = namedItem(mnuPlayback, "mnuStop", QStringLiteral("&Stop"));
    mnuPlayback->addSeparator();
    mnuSeekPrev = namedItem(mnuPlayback, "mnuSeekPrev", QStringLiteral("Seek Pre&vious"));
    mnuSeekNext = namedItem(mnuPlayback, "mnuSeekNext", QStringLiteral("Seek &Next"));
    mnuPlayback->addSeparator();
    mnuRunPlaylist = namedItem(mnuPlayback, "mnuRunPlaylist", QStringLiteral("&Run Playlist"));
    mnuMute = namedItem(mnuPlayback, "mnuMute", QStringLiteral("&Mute"));

    mnuConversions = namedMenu("mnuConversions", QStringLiteral("&Conversions"));
    mnuCDtoWAV = namedItem(mnuConversions, "mnuCDtoWAV", QStringLiteral("Convert CD to &WAV..."));
    mnuCDtoMP3 = namedItem(mnuConversions, "mnuCDtoMP3", QStringLiteral("Convert CD to &MP3..."));
    mnuWAVtoMP3 =
        namedItem(mnuConversions, "mnuWAVtoMP3", QStringLiteral("Convert WAV to M&P3..."));
    mnuMP3toWAV =
        namedItem(mnuConversions, "mnuMP3toWAV", QStringLiteral("Convert MP3 to W&AV..."));
    mnuWAVBatch =
        namedItem(mnuConversions, "mnuWAVBatch", QStringLiteral("&Batch WAV Format Converter..."));

    mnuOptions = namedMenu("mnuOptions", QStringLiteral("&Options"));
    mnuPreferences = namedItem(mnuOptions, "mnuPreferences", QStringLiteral("&Preferences"));
    mnuAssociate =
        namedItem(mnuOptions, "mnuAssociate", QStringLiteral("&Associate  Supported File Types"));
    mnuOptions->addSeparator();
    mnuMMProperties = mnuOptions->addMenu(QStringLiteral("&System Multimedia Properties"));
    mnuMMProperties->setObjectName(QStringLiteral("mnuMMProperties"));
    mnuMMAllProperties = namedItem(mnuMMProperties, "mnuMMAllProperties", QStringLiteral("&All"));
    mnuMMAudioProperties =
        namedItem(mnuMMProperties, "mnuMMAudioProperties", QStringLiteral("A&udio"));
    mnuMMVideoProperties =
        namedItem(mnuMMProperties, "mnuMMVideoProperties", QStringLiteral("&Video"));
    mnuMMMIDIProperties =
        namedItem(mnuMMProperties, "mnuMMMIDIProperties", QStringLiteral("&MIDI"));
    mnuMMCDProperties =
        namedItem(mnuMMProperties, "mnuMMCDProperties", QStringLiteral("&CD Music"));
    mnuStartSS =
        namedItem(mnuOptions, "mnuStartSS", QStringLiteral("&Activate Windows Screen Saver"));

    mnuWindow = namedMenu("mnuWindow", QStringLiteral("&Window"));
    mnuCDDB = namedItem(mnuWindow, "mnuCDDB", QStringLiteral("&CDDB Access Player"));
    mnuAdvCDPlayer =
        namedItem(mnuWindow, "mnuAdvCDPlayer", QStringLiteral("&Audio CD Control Panel"));
    mnuAdvVideoCDPlayer =
        namedItem(mnuWindow, "mnuAdvVideoCDPlayer", QStringLiteral("&Video CD Player"));
    mnuWindow->addSeparator();
    mnuRollup = namedItem(mnuWindow, "mnuRollup", QStringLiteral("&Roll Up"));
    mnuMinTray = namedItem(mnuWindow, "mnuMinTray", QStringLiteral("Minimize to System &Tray"));

    mnuHelp = namedMenu("mnuHelp", QStringLiteral("&Help"));
    mnuHelpFile = namedItem(mnuHelp, "mnuHelpFile", QStringLiteral("&Help Topics"));
    mnuHelp->addSeparator();
    mnuMailBrightfen = namedItem(mnuHelp, "mnuMailBrightfen", QStringLiteral("&E-mail Brightfen"));
    mnuVisitBrightfen =
        namedItem(mnuHelp, "mnuVisitBrightfen", QStringLiteral("&Visit Brightfen on the Web"));
    mnuSites = mnuHelp->addMenu(QStringLiteral("&Recommended Sites..."));
    mnuSites->setObjectName(QStringLiteral("mnuSites"));
    mnuHelp->addSeparator();
    mnuDisclaimer = namedItem(mnuHelp, "mnuDisclaimer", QStringLiteral("&Disclaimer"));
    mnuAbout = namedItem(mnuHelp, "mnuAbout", QStringLiteral("&About Cantovel..."));

    mnuSysMenu = namedMenu("mnuSysMenu", QStringLiteral("System"));
    popRestore = namedItem(mnuSysMenu, "popRestore", QStringLiteral("&Restore"));
    popMinimize = namedItem(mnuSysMenu, "popMinimize", QStringLiteral("Mi&nimize"));
    mnuSysMenu->addSeparator();
    popClose = namedItem(mnuSysMenu, "popClose", QStringLiteral("Close"));
    mnuSysMenu->setDefaultAction(popClose);

    popVideo = namedMenu("popVideo", QStringLiteral("Video"));
    popVidPlay = namedItem(popVideo, "popVidPlay", QStringLiteral("&Play New File"));
    popVidPlayCurrent =
        namedItem(popVideo, "popVidPlayCurrent", QStringLiteral("Play &Current File"));
    popVidPause = namedItem(popVideo, "popVidPause", QStringLiteral("Pa&use"));
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

frmTemp& frmTemp::get() {
    return Forms::touch<frmTemp>();
}

frmTemp::~frmTemp() {
    // The player may report its closing as it goes; this window no longer listens.
    if (MP) MP->disconnect(this);
}

}  // namespace cantovel
