// The video player's File menu: its states, the transport commands on MP, its own open
// dialog and its recent films.
#include <QAction>
#include <QDir>
#include <QMenu>
#include <QMenuBar>

#include "app/Runtime.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/dialogs/FileDialogs.h"
#include "player/PlayerSettings.h"
#include "player/PlayerWindows.h"
#include "player/PlaylistView.h"
#include "player/frmMain.h"
#include "video/frmVideoPlayer.h"

namespace cantovel {

namespace {

const QString kVideoFilter = QStringLiteral(
    "Video Formats|*.avi;*.mpg;*.mpa;*.mpv;*.mov;*.qt;*.mpeg;*.enc;*.m1v;*.mp2;*.dat");
const QString kDirectory = QStringLiteral("Video Player Directory");

}  // namespace

QString frmVideoPlayer::MruKey() {
    return QStringLiteral("SOFTWARE\\Brightfen Cantovel\\Video Player MRU");
}

void frmVideoPlayer::buildMenu() {
    mnuFile = MenuBar->addMenu(QStringLiteral("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    const auto item = [this](const char* name, const QString& caption,
                             void (frmVideoPlayer::*slot)()) {
        QAction* a = namedItem(mnuFile, name, caption);
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    mnuOpen = item("mnuOpen", QStringLiteral("&Open"), &frmVideoPlayer::mnuOpen_Click);
    mnuFile->addSeparator();
    mnuPlay = item("mnuPlay", QStringLiteral("&Play"), &frmVideoPlayer::mnuPlay_Click);
    mnuPause = item("mnuPause", QStringLiteral("Pa&use"), &frmVideoPlayer::mnuPause_Click);
    mnuSeekF = item("mnuSeekF", QStringLiteral("Seek &Forward"), &frmVideoPlayer::mnuSeekF_Click);
    mnuSeekR = item("mnuSeekR", QStringLiteral("Seek &Reverse"), &frmVideoPlayer::mnuSeekR_Click);
    mnuFile->addSeparator();
    mnuFullScreen = item("mnuFullScreen", QStringLiteral("Fu&ll Screen Mode"),
                         &frmVideoPlayer::mnuFullScreen_Click);
    mnuFullScreen->setCheckable(true);
    for (int i = 0; i < int(mnuFileMRU.size()); ++i) {
        QAction* row = mnuFile->addAction(QString());
        row->setObjectName(QStringLiteral("mnuFileMRU"));
        if (i == 0) row->setSeparator(true);
        row->setVisible(false);
        connect(row, &QAction::triggered, this, [this, i] { mnuFileMRU_Click(i); });
        mnuFileMRU[i] = row;
    }
    mnuFile->addSeparator();
    mnuExit = item("mnuExit", QStringLiteral("E&xit"), &frmVideoPlayer::mnuExit_Click);
    connect(mnuFile, &QMenu::aboutToShow, this, &frmVideoPlayer::mnuFile_Click);
}

void frmVideoPlayer::mnuFile_Click() {
    const int state = mp_ ? mp_->PlayState() : MediaPlayer::mpClosed;
    switch (state) {
        case MediaPlayer::mpStopped:
            mnuPlay->setText(QStringLiteral("&Play"));
            mnuPause->setEnabled(false);
            mnuSeekF->setEnabled(false);
            mnuSeekR->setEnabled(false);
            break;
        case MediaPlayer::mpPaused:
            mnuPlay->setText(QStringLiteral("&Stop"));
            mnuPause->setText(QStringLiteral("Res&ume"));
            mnuPause->setEnabled(true);
            mnuSeekF->setEnabled(false);
            mnuSeekR->setEnabled(false);
            break;
        case MediaPlayer::mpPlaying:
            mnuPlay->setText(QStringLiteral("&Stop"));
            mnuPause->setText(QStringLiteral("Pa&use"));
            mnuPause->setEnabled(true);
            mnuSeekF->setEnabled(true);
            mnuSeekR->setEnabled(true);
            break;
        default:
            break;
    }
    mnuFullScreen->setChecked(windowState() & Qt::WindowMaximized);
}

void frmVideoPlayer::mnuPlay_Click() {
    if (!mp_) return;
    if (mnuPlay->text() == QLatin1String("&Play"))
        mp_->Play();
    else
        mp_->Stop();
}

void frmVideoPlayer::mnuPause_Click() {
    if (!mp_) return;
    if (mnuPause->text() == QLatin1String("Pa&use"))
        mp_->Pause();
    else
        mp_->Play();
}

void frmVideoPlayer::seekBy(int seconds) {
    // No clamping here: the player takes what it will of a position past either end.
    if (mp_) mp_->setCurrentPosition(double(CInt(mp_->CurrentPosition()) + seconds));
}

void frmVideoPlayer::mnuSeekF_Click() {
    seekBy(10);
}

void frmVideoPlayer::mnuSeekR_Click() {
    seekBy(-10);
}

void frmVideoPlayer::mnuFullScreen_Click() {
    // Full screen here is the maximised window, caption and menu kept. The check mirrors
    // that state, and a click has flipped it already by now: the window itself tells.
    if (!(windowState() & Qt::WindowMaximized)) {
        setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowMaximized);
        mnuFullScreen->setChecked(true);
    } else {
        setWindowState(windowState() & ~(Qt::WindowMaximized | Qt::WindowMinimized));
        mnuFullScreen->setChecked(false);
    }
}

void frmVideoPlayer::mnuExit_Click() {
    close();
}

void frmVideoPlayer::mnuOpen_Click() {
    FileDialogRequest request;
    request.title = QStringLiteral("Select Video File:");
    request.filter = kVideoFilter;
    request.initDir = ReadAppSetting(kDirectory, QDir::currentPath());
    const FileDialogResult chosen = FileDialogs::get().open(this, request);
    const QString path = chosen.cancelled ? QString() : chosen.file();
    if (path.isEmpty()) return;

    SaveAppSetting(kDirectory, ParsePathParts(path, QStringLiteral("l")));
    if (MRU) MRU->SetMRUList(path, path);
    playOwnFilm(path);

    const QString name = ParsePathParts(path, QStringLiteral("f"));
    if (PlaylistView* view = loadedWindow<PlaylistView>()) {
        view->lstPlayListClear();
        view->lstPlayListAddItem(name);
    }
    if (frmMain* main = frmMain::instance()) main->List1 = QStringList{path};
    if (frmMain* main = frmMain::instance())
        main->Title(PlayerSettings::showExtension() ? name : LastPathParts().base);
}

void frmVideoPlayer::mnuFileMRU_Click(int index) {
    if (index < 1 || index >= int(mnuFileMRU.size())) return;
    const QString path = mnuFileMRU[index]->data().toString();
    if (path.isEmpty()) return;
    playOwnFilm(path);
    ParsePathParts(path, QStringLiteral("f"));
    const PathParts parts = LastPathParts();
    if (MRU) MRU->SetMRUList(path, path);
    if (frmMain* main = frmMain::instance())
        main->Title(PlayerSettings::showExtension() ? parts.file : parts.base);
}

void frmVideoPlayer::playOwnFilm(const QString& path) {
    if (!mp_) return;
    // The control starts a film as soon as it has it; a refused one is passed over.
    mp_->setFileName(path);
    if (mp_ && mp_->lastError() == 0) mp_->Play();
}

}  // namespace cantovel
