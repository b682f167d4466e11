#include "support/FakeVideoPlayerWindow.h"

#include "platform/Components.h"

namespace cantovel::test {

FakeVideoPlayerWindow::FakeVideoPlayerWindow()
    : Form(QStringLiteral("frmVideoPlayer")),
      TrackedFake(this),
      mp_(Components::create<MediaPlayer>()) {}

FakeVideoPlayerWindow::~FakeVideoPlayerWindow() = default;

}  // namespace cantovel::test
