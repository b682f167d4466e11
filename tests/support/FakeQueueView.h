#pragma once
// The playlist video view as the player core needs it: a form whose player `AM` comes
// from the component factory, with the duties the real window has towards the main
// window (its player's events, and ending the queue when it closes).

#include <memory>

#include "app/Form.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "player/QueueView.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeQueueView : public Form, public QueueView, public TrackedFake<FakeQueueView, QueueView> {
    Q_OBJECT
  public:
    FakeQueueView();
    ~FakeQueueView() override;

    MediaPlayer* AM() override { return am_.get(); }

  protected:
    bool queryUnload(UnloadMode mode) override;

  private:
    std::unique_ptr<MediaPlayer> am_;
};

}  // namespace cantovel::test
