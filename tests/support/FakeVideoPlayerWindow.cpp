#include "support/FakeVideoPlayerWindow.h"

#include "platform/Components.h"

namespace cantovel::test {

void FakeVideoPlayerWindow::install() {
    Components::provideFactory<VideoPlayerWindow>(
        [] { return std::make_unique<FakeVideoPlayerWindow>(); });
}

FakeVideoPlayerWindow::FakeVideoPlayerWindow()
    : Form(QStringLiteral("frmVideoPlayer")), mp_(Components::create<MediaPlayer>()) {}

FakeVideoPlayerWindow::~FakeVideoPlayerWindow() = default;

}  // namespace cantovel::test
