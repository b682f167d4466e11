// The two volumes and the balance: the player's own volume on the player controls, the
// system's master volume through the mixer, each with its read-out and two buttons.
#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "platform/mixer/Mixer.h"
#include "player/PlayerWindows.h"
#include "player/QueueView.h"
#include "player/VideoPlayerWindow.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"

namespace cantovel {

namespace {
constexpr int BalanceMin = 217;
constexpr int BalanceTravel = 62;
}  // namespace

void frmMain::VolumeStep(int Index) {
    switch (Index) {
        case 0:
            if (PlayerVolume < 100) ++PlayerVolume;
            break;
        case 1:
            if (MasterVolume < 100) ++MasterVolume;
            break;
        case 2:
            if (PlayerVolume > 0) --PlayerVolume;
            break;
        case 3:
            if (MasterVolume > 0) --MasterVolume;
            break;
    }
    PaintVolumes();
    ApplyPlayerVolume();
    Mixer::get().SetMasterVolume(MasterVolume);
}

void frmMain::ApplyPlayerVolume() {
    // The control volume: -10000 (silent) to 0 (full), on every player that is there: the
    // hidden audio player, the queue's player and the video window's.
    const int volume = int(Int(PlayerVolume / 100.0 * 10000)) - 10000;
    if (frmTemp* temp = Forms::find<frmTemp>(); temp && temp->MP) temp->MP->setVolume(volume);
    if (QueueView* queue = loadedWindow<QueueView>(); queue && queue->AM())
        queue->AM()->setVolume(volume);
    if (VideoPlayerWindow* video = loadedWindow<VideoPlayerWindow>(); video && video->MP())
        video->MP()->setVolume(volume);
}

// The balance is the hidden audio player's alone.
void frmMain::ApplyBalance() {
    if (frmTemp* temp = Forms::find<frmTemp>(); temp && temp->MP)
        temp->MP->setBalance(GetBalance());
}

// A held button steps once at once, again after half a second, then twenty times a second.
void frmMain::imgVolumeButton_MouseDown(int Index, int Button, int, int, int) {
    if (Button != 1) return;
    for (int i = 0; i < 4; ++i)
        imgVolumeButton[i].setPicture(i == Index ? clpVolumeButtons.GraphicCell(i) : QPixmap());
    update();
    VolumeStep(Index);
    connect(&tmrVolume, &Timer::timeout, this, &frmMain::tmrVolume_Timer, Qt::UniqueConnection);
    tmrVolume.setInterval(500);
    tmrVolumeTag = Index;
    tmrVolume.setEnabled(true);
}

void frmMain::imgVolumeButton_MouseUp(int, int Button, int, int, int) {
    if (Button != 1) return;
    for (SkinControl& b : imgVolumeButton) b.setPicture(QPixmap());
    update();
    tmrVolume.setEnabled(false);
}

void frmMain::tmrVolume_Timer() {
    VolumeStep(tmrVolumeTag);
    tmrVolume.setInterval(50);
}

// Mute silences the master volume; un-mute returns it to what it was when the program
// started, which is what the setting "Master Volume" holds.
void frmMain::mnuMute() {
    frmTemp& temp = Forms::touch<frmTemp>();
    if (temp.mnuMute->text() == QLatin1String("&Mute")) {
        temp.mnuMute->setText(QStringLiteral("&Un-Mute"));
        Mixer::get().SetMasterVolume(0);
    } else {
        temp.mnuMute->setText(QStringLiteral("&Mute"));
        if (const auto level = CLng(Val(
                ReadAppSetting(QStringLiteral("Master Volume"), QString::number(MasterVolume)))))
            Mixer::get().SetMasterVolume(*level);
    }
}

void frmMain::SetBalance(int Value) {
    imgBalance.setLeft(int(CInt((Value + 1000) / 2000.0 * BalanceTravel + BalanceMin)));
    update();
}

int frmMain::GetBalance() const {
    return int(CInt((imgBalance.Left() - BalanceMin) / double(BalanceTravel) * 2000 - 1000));
}

}  // namespace cantovel
