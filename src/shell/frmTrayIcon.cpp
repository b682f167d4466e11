#include "shell/frmTrayIcon.h"

#include <QCursor>

#include "app/AppState.h"
#include "app/Runtime.h"
#include "app/Utilities.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "shell/DesktopResources.h"
#include "shell/WindowHelpers.h"

namespace cantovel {

frmTrayIcon::frmTrayIcon() : Form(QStringLiteral("frmTrayIcon")) {
    setWindowTitle(QStringLiteral("Sys Tray Interface"));
    mnuPopup = new QMenu(this);
    auto row = [](QMenu* menu, const char* caption) {
        return menu->addAction(QString::fromLatin1(caption));
    };
    mnuRestore = row(mnuPopup, "Restore Window");
    mnuPopup->addSeparator();
    mnuHelpMenu = mnuPopup->addMenu(QStringLiteral("Help"));
    mnuHelp = row(mnuHelpMenu, "Help");
    mnuEmail = row(mnuHelpMenu, "Mail Brightfen");
    mnuHomepage = row(mnuHelpMenu, "Visit Brightfen on the Web");
    mnuAbout = row(mnuHelpMenu, "About");
    mnuConversions = mnuPopup->addMenu(QStringLiteral("Conversions"));
    mnuWAVBatch = row(mnuConversions, "WAV Batch Converter");
    mnuCDtoWAV = row(mnuConversions, "Convert CD Audio to WAV");
    mnuCDtoMP3 = row(mnuConversions, "Convert CD Audio to MP3");
    mnuWAVtoMP3 = row(mnuConversions, "Convert WAV to MP3");
    mnuMP3toWAV = row(mnuConversions, "Convery MP3 to WAV");
    mnuPlaylist = row(mnuPopup, "Playlist Editor");
    mnuPopup->addSeparator();
    popSeekNext = row(mnuPopup, "Seek Next");
    popSeekPrev = row(mnuPopup, "Seek Previous");
    mnuPopup->addSeparator();
    mnuPause = row(mnuPopup, "Pause");
    mnuPlayCur = row(mnuPopup, "Play Current File");
    mnuPlayNew = row(mnuPopup, "Play New File");
    mnuPopup->addSeparator();
    mnuExit = row(mnuPopup, "Exit");

    // Every row but the first forwards to the main menus, one line each.
    auto forward = [this](QAction* action, void (frmTemp::*handler)()) {
        connect(action, &QAction::triggered, this, [handler] { (frmTemp::get().*handler)(); });
    };
    connect(mnuRestore, &QAction::triggered, this, &frmTrayIcon::mnuRestore_Click);
    forward(mnuHelp, &frmTemp::mnuHelpFile_Click);
    forward(mnuEmail, &frmTemp::mnuMailBrightfen_Click);
    forward(mnuHomepage, &frmTemp::mnuVisitBrightfen_Click);
    forward(mnuAbout, &frmTemp::mnuAbout_Click);
    forward(mnuPlaylist, &frmTemp::mnuPlaylist_Click);
    forward(mnuWAVBatch, &frmTemp::mnuWAVBatch_Click);
    forward(mnuCDtoWAV, &frmTemp::mnuCDtoWAV_Click);
    forward(mnuCDtoMP3, &frmTemp::mnuCDtoMP3_Click);
    forward(mnuWAVtoMP3, &frmTemp::mnuWAVtoMP3_Click);
    forward(mnuMP3toWAV, &frmTemp::mnuMP3toWAV_Click);
    forward(popSeekNext, &frmTemp::mnuSeekNext_Click);
    forward(popSeekPrev, &frmTemp::mnuSeekPrev_Click);
    forward(mnuPause, &frmTemp::mnuPause_Click);
    forward(mnuPlayCur, &frmTemp::mnuPlayCurrent_Click);
    forward(mnuPlayNew, &frmTemp::mnuPlay_Click);
    forward(mnuExit, &frmTemp::mnuExit_Click);

    connect(&cSysTray1, &cSysTray::MouseMove, this, &frmTrayIcon::cSysTray1_MouseMove);
    connect(&cSysTray1, &cSysTray::MouseUp, this, &frmTrayIcon::cSysTray1_MouseUp);
    connect(&cSysTray1, &cSysTray::MouseDblClick, this, &frmTrayIcon::cSysTray1_MouseDblClick);
    connect(&tmrTip, &Timer::timeout, this, [this] {
        if (cSysTray1.InTray()) cSysTray1_MouseMove();
    });
}

frmTrayIcon::~frmTrayIcon() = default;

QString frmTrayIcon::TipFor(const QString& fileName) {
    const QString title = QString::fromLatin1(AppTitle);
    if (fileName.isEmpty()) return title;
    return ParsePathParts(fileName, QStringLiteral("f")) + QStringLiteral(" - ") + title;
}

void frmTrayIcon::cSysTray1_MouseMove() {
    const MediaPlayer* mp = frmTemp::get().MP.get();
    cSysTray1.setTrayTip(TipFor(mp ? mp->fileName() : QString()));
}

void frmTrayIcon::PrepareMenu() {
    frmTemp& t = frmTemp::get();
    const frmMain* main = frmMain::instance();
    const QString file = main ? main->CurrentFile : QString();
    const bool cd = ParsePathParts(file, QStringLiteral("e")).toLower() == QLatin1String(".cda");
    const bool running = main && main->PlaylistRunning != VFalse;
    popSeekNext->setEnabled(running || cd);
    popSeekPrev->setEnabled(running || cd);
    // The pause row follows the main menu's, as do the rows that need a file.
    mnuPause->setText(t.mnuPause->text() == QLatin1String("&Resume") ? QStringLiteral("Resume")
                                                                     : QStringLiteral("Pause"));
    mnuPause->setEnabled(t.mnuPause->isEnabled());
    mnuPlayCur->setEnabled(t.mnuPlayCurrent->isEnabled());
    if (t.mnuPlay->text() == QLatin1String("&Open...")) {
        mnuPause->setEnabled(false);
        popSeekNext->setEnabled(false);
        popSeekPrev->setEnabled(false);
    }
}

void frmTrayIcon::cSysTray1_MouseUp(int Button) {
    if (Button != 2) return;
    PrepareMenu();
    mnuPopup->setDefaultAction(mnuRestore);
    mnuPopup->popup(QCursor::pos());
}

void frmTrayIcon::cSysTray1_MouseDblClick(int Button) {
    if (Button == 1) mnuRestore_Click();
}

void frmTrayIcon::GoToTray() {
    if (!cSysTray::Available()) {
        // A hidden window with no icon to bring it back would be lost: on a desktop without
        // a notification area the window goes to the task bar instead.
        if (frmMain* main = frmMain::instance()) main->showMinimized();
        return;
    }
    cSysTray1.setTrayIcon(CantovelIcon());
    cSysTray1_MouseMove();
    cSysTray1.setInTray(true);
    tmrTip.setEnabled(true);
    if (frmMain* main = frmMain::instance()) main->hide();
}

void frmTrayIcon::mnuRestore_Click() {
    cSysTray1.setInTray(false);
    tmrTip.setEnabled(false);
    mnuPopup->hide();
    if (frmMain* main = frmMain::instance()) {
        // X reports a withdrawn window as minimised, so a window hidden in the tray can
        // come back marked so, and a show would map it as an icon.
        main->setWindowState(main->windowState() & ~Qt::WindowMinimized);
        MapNormally(main);
        main->show();
        main->raise();
        main->activateWindow();
    }
}

}  // namespace cantovel
