#include "support/FakeQueueView.h"

#include "platform/Components.h"
#include "player/frmMain.h"

namespace cantovel::test {

FakeQueueView::FakeQueueView()
    : Form(QStringLiteral("frmVideoPlaylistView")),
      TrackedFake(this),
      am_(Components::create<MediaPlayer>()) {
    if (!am_) return;
    connect(am_.get(), &MediaPlayer::OpenStateChange, this, [this] {
        if (frmMain* main = frmMain::instance()) main->MediaOpened(*am_);
    });
    connect(am_.get(), &MediaPlayer::PlayStateChange, this, [](int oldState, int newState) {
        if (frmMain* main = frmMain::instance()) main->AM_PlayStateChange(oldState, newState);
    });
}

FakeQueueView::~FakeQueueView() {
    if (am_) am_->disconnect(this);
}

bool FakeQueueView::queryUnload(UnloadMode) {
    frmMain* main = frmMain::instance();
    if (main) main->PlaylistRunning = VFalse;
    if (am_) am_->Stop();
    if (main) main->PlayStopped();
    return false;
}

}  // namespace cantovel::test
