#include "playlist/frmTemp2.h"

#include <QFileInfo>
#include <QWindow>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/msgbox/MsgBox.h"
#include "player/frmMain.h"
#include "playlist/PlaylistDocking.h"
#include "playlist/PlaylistSettings.h"
#include "playlist/frmPlaylist.h"
#include "shell/WindowHelpers.h"

namespace cantovel {

namespace {

// Flips a menu check and stores the new state under `setting`.
void flipAndStore(QAction* item, const char* setting) {
    item->setChecked(!item->isChecked());
    SaveAppSetting(QLatin1String(setting), CStr(item->isChecked()));
}

}  // namespace

frmTemp2& frmTemp2::get() {
    return Forms::touch<frmTemp2>();
}

frmTemp2::frmTemp2() : Form(QStringLiteral("frmTemp2")) {
    mnuFile = namedMenu("mnuFile", QStringLiteral("&File"));
    mnuNew = namedItem(mnuFile, "mnuNew", QStringLiteral("&New Playlist"));
    mnuLoad = namedItem(mnuFile, "mnuLoad", QStringLiteral("&Load Playlist"));
    mnuSave = namedItem(mnuFile, "mnuSave", QStringLiteral("&Save Playlist"));
    mnuExit = namedItem(mnuFile, "mnuExit", QStringLiteral("E&xit\tAlt+F4"));
    for (int i = 0; i < 5; ++i) {
        mnuFileMRU[i] = namedItem(mnuFile, "mnuFileMRU", QString());
        mnuFileMRU[i]->setVisible(false);
    }

    mnuEdit = namedMenu("mnuEdit", QStringLiteral("&Edit"));
    mnuAdd = namedItem(mnuEdit, "mnuAdd", QStringLiteral("&Add"));
    mnuRemove = namedItem(mnuEdit, "mnuRemove", QStringLiteral("&Remove"));
    mnuMoveUp = namedItem(mnuEdit, "mnuMoveUp", QStringLiteral("Move &Up"));
    mnuMoveDown = namedItem(mnuEdit, "mnuMoveDown", QStringLiteral("Move &Down"));
    mnuDeleteDupes = namedItem(mnuEdit, "mnuDeleteDupes", QStringLiteral("Delete D&uplicates"));
    mnuDeselectAll = namedItem(mnuEdit, "mnuDeselectAll", QStringLiteral("Dese&lect All"));

    mnuOptions = namedMenu("mnuOptions", QStringLiteral("&Options"));
    mnuRandomPlay = namedItem(mnuOptions, "mnuRandomPlay", QStringLiteral("&Random Play"), true);
    mnuFullScreen = namedItem(mnuOptions, "mnuFullScreen", QStringLiteral("&Full Screen"), true);
    mnuLoopPlaylist =
        namedItem(mnuOptions, "mnuLoopPlaylist", QStringLiteral("&Loop Playlist"), true);
    mnuDockMain = mnuOptions->addMenu(QStringLiteral("&Dock Playlist Window"));
    mnuDockMain->setObjectName(QStringLiteral("mnuDockMain"));
    static const char* const dockCaptions[6] = {"&Below Main Window",
                                                "&Above Main Window",
                                                "&Left of Main Window",
                                                "&Right of Main Window",
                                                "",
                                                "&None"};
    for (int i = 0; i < 6; ++i) {
        mnuDockSub[i] =
            namedItem(mnuDockMain, "mnuDockSub", QString::fromLatin1(dockCaptions[i]), i != 4);
        if (i == 4) mnuDockSub[i]->setSeparator(true);
    }
    mnuConfirmSave =
        namedItem(mnuOptions, "mnuConfirmSave", QStringLiteral("&Confirm Save on Close"), true);
    mnuOntop = namedItem(mnuOptions, "mnuOntop", QStringLiteral("Always &Ontop"), true);

    mnuPopup = namedMenu("mnuPopup", QString());
    popNew = namedItem(mnuPopup, "popNew", QStringLiteral("&New Playlist"));
    popLoad = namedItem(mnuPopup, "popLoad", QStringLiteral("&Load Playlist"));
    popSave = namedItem(mnuPopup, "popSave", QStringLiteral("&Save Playlist"));
    mnuPopup->addSeparator();
    popAdd = namedItem(mnuPopup, "popAdd", QStringLiteral("&Add"));
    popRemove = namedItem(mnuPopup, "popRemove", QStringLiteral("&Remove"));
    popMoveUp = namedItem(mnuPopup, "popMoveUp", QStringLiteral("Move &Up"));
    popMoveDown = namedItem(mnuPopup, "popMoveDown", QStringLiteral("Move &Down"));
    popDeselectAll = namedItem(mnuPopup, "popDeselectAll", QStringLiteral("Dese&lect All"));
    mnuPopup->addSeparator();
    popExit = namedItem(mnuPopup, "popExit", QStringLiteral("E&xit"));

    popSysMenu = namedMenu("popSysMenu", QString());
    popRestore = namedItem(popSysMenu, "popRestore", QStringLiteral("&Restore"));
    popMove = namedItem(popSysMenu, "popMove", QStringLiteral("&Move"));
    popMinimize = namedItem(popSysMenu, "popMinimize", QStringLiteral("Mi&nimize"));
    popSysMenu->addSeparator();
    popClose = namedItem(popSysMenu, "popClose", QStringLiteral("Close\tAlt+F4"));
    popSysMenu->setDefaultAction(popClose);

    wire();

    // The load: the recent playlists, then the checks from the settings.
    MRU.RootKey = RegRoot::LocalMachine;
    MRU.RegistryPath = QStringLiteral("SOFTWARE\\Cantovel\\Playlist MRU");
    MRU.SubKey = QStringLiteral("MRU Entries");
    MRU.Prefix = QStringLiteral("MRU");
    MRU.TagPrefix = QStringLiteral("MRUTag");
    for (int i = 0; i < 5; ++i) MRU.setMenuItem(i, mnuFileMRU[i]);
    MRU.GetMRUList();

    mnuRandomPlay->setChecked(PlaylistSettings::flag("Audio Randomize", false));
    mnuFullScreen->setChecked(PlaylistSettings::flag("Playlist Full Screen", false));
    mnuConfirmSave->setChecked(PlaylistSettings::flag("Confirm Save on Playlist Close", true));
    if (PlaylistSettings::flag("Playlist Loop", false)) mnuLoopPlaylist_Click();
    if (PlaylistSettings::flag("Playlist Always OnTop", false)) mnuOntop_Click();
    const int dock = PlaylistSettings::dockSetting();
    for (int i = 0; i < 6; ++i) mnuDockSub[i]->setChecked(i == dock);
}

frmTemp2::~frmTemp2() = default;

void frmTemp2::wire() {
    // Each command has one implementation in the playlist window, however it is given.
    auto toList = [this](QAction* a, void (frmPlaylist::*command)()) {
        connect(a, &QAction::triggered, this, [command] {
            if (frmPlaylist* w = frmPlaylist::instance()) (w->*command)();
        });
    };
    toList(mnuNew, &frmPlaylist::mnuNew);
    toList(mnuLoad, &frmPlaylist::mnuLoad);
    toList(mnuSave, &frmPlaylist::mnuSave);
    toList(mnuAdd, &frmPlaylist::mnuAdd);
    toList(mnuRemove, &frmPlaylist::mnuRemove);
    toList(mnuMoveUp, &frmPlaylist::mnuMoveUp);
    toList(mnuMoveDown, &frmPlaylist::mnuMoveDown);
    toList(mnuDeselectAll, &frmPlaylist::mnuDeselectAll);
    toList(popNew, &frmPlaylist::mnuNew);
    toList(popLoad, &frmPlaylist::mnuLoad);
    toList(popSave, &frmPlaylist::mnuSave);
    toList(popAdd, &frmPlaylist::mnuAdd);
    toList(popRemove, &frmPlaylist::mnuRemove);
    toList(popMoveUp, &frmPlaylist::mnuMoveUp);
    toList(popMoveDown, &frmPlaylist::mnuMoveDown);
    toList(popDeselectAll, &frmPlaylist::mnuDeselectAll);
    auto closeList = [] {
        if (frmPlaylist* w = frmPlaylist::instance()) w->unload();
    };
    connect(mnuExit, &QAction::triggered, this, closeList);
    connect(popExit, &QAction::triggered, this, closeList);
    connect(popClose, &QAction::triggered, this, closeList);
    connect(popRestore, &QAction::triggered, this, [] {
        if (frmPlaylist* w = frmPlaylist::instance()) w->showNormal();
    });
    connect(popMinimize, &QAction::triggered, this, [] {
        if (frmPlaylist* w = frmPlaylist::instance()) w->showMinimized();
    });
    connect(popMove, &QAction::triggered, this, [] {
        frmPlaylist* w = frmPlaylist::instance();
        if (w && w->windowHandle()) w->windowHandle()->startSystemMove();
    });

    // The checked items: a click flips the check before the handler reads it back, so the
    // handlers flip it themselves from the state before the click.
    auto checked = [this](QAction* a, void (frmTemp2::*handler)()) {
        connect(a, &QAction::triggered, this, [this, a, handler] {
            a->setChecked(!a->isChecked());
            (this->*handler)();
        });
    };
    checked(mnuRandomPlay, &frmTemp2::mnuRandomPlay_Click);
    checked(mnuFullScreen, &frmTemp2::mnuFullScreen_Click);
    checked(mnuLoopPlaylist, &frmTemp2::mnuLoopPlaylist_Click);
    checked(mnuConfirmSave, &frmTemp2::mnuConfirmSave_Click);
    checked(mnuOntop, &frmTemp2::mnuOntop_Click);
    connect(mnuDeleteDupes, &QAction::triggered, this, &frmTemp2::mnuDeleteDupes_Click);
    for (int i = 0; i < 6; ++i)
        connect(mnuDockSub[i], &QAction::triggered, this, [this, i] { mnuDockSub_Click(i); });
    for (int i = 0; i < 5; ++i)
        connect(mnuFileMRU[i], &QAction::triggered, this, [this, i] { mnuFileMRU_Click(i); });
}

void frmTemp2::mnuDeleteDupes_Click() {
    frmPlaylist* w = frmPlaylist::instance();
    if (!w) return;
    w->RemoveDupes(*w->lstPlayList);
    if (frmMain* main = frmMain::instance()) w->RemoveDupes(main->List1);
    w->lstPlayList_Click();
}

void frmTemp2::mnuRandomPlay_Click() {
    flipAndStore(mnuRandomPlay, "Audio Randomize");
}

void frmTemp2::mnuFullScreen_Click() {
    flipAndStore(mnuFullScreen, "Playlist Full Screen");
}

void frmTemp2::mnuLoopPlaylist_Click() {
    flipAndStore(mnuLoopPlaylist, "Playlist Loop");
}

void frmTemp2::mnuConfirmSave_Click() {
    flipAndStore(mnuConfirmSave, "Confirm Save on Playlist Close");
}

void frmTemp2::mnuOntop_Click() {
    mnuOntop->setChecked(!mnuOntop->isChecked());
    // Only switching on is remembered: a window once on top comes on top at every start
    // until the value is removed.
    if (mnuOntop->isChecked()) SaveAppSetting(QStringLiteral("Playlist Always OnTop"), CStr(true));
    if (frmPlaylist* w = frmPlaylist::instance()) FormOnTop(w, mnuOntop->isChecked());
}

void frmTemp2::mnuDockSub_Click(int Index) {
    if (Index < 0 || Index > 5) return;
    for (QAction* a : mnuDockSub) a->setChecked(false);
    mnuDockSub[Index]->setChecked(true);
    SaveAppSetting(QStringLiteral("Dock Playlist Window"), QString::number(Index));
    if (frmMain* main = frmMain::instance()) CenterForm(main);
    MovePlaylistToMain();
}

void frmTemp2::mnuFileMRU_Click(int Index) {
    if (Index < 0 || Index >= int(mnuFileMRU.size())) return;
    const QString path = CMRU::PathOfCaption(mnuFileMRU[Index]->text());
    if (!FileExists(path)) {
        MsgBoxShow(QStringLiteral("The file you're attempting to load no longer exists."),
                   Mb::Information);
        return;
    }
    frmPlaylist* w = frmPlaylist::instance();
    if (!w) return;
    w->ClearLists();
    w->AppendPlaylist(path);
    w->setRowCount(w->lstPlayList->ListCount());
    MRU.SetMRUList(path, QStringLiteral("File length: ") + QString::number(QFileInfo(path).size()));
    if (frmMain* main = frmMain::instance()) main->PlaylistSaved = VFalse;
    w->lstPlayList_Click();
}

}  // namespace cantovel
