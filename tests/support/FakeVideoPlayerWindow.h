#pragma once
// The video window as the player core needs it: a form with a player from the
// component factory, recording the files it was handed.

#include <QStringList>
#include <memory>

#include "app/Form.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "player/VideoPlayerWindow.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeVideoPlayerWindow : public Form,
                              public VideoPlayerWindow,
                              public TrackedFake<FakeVideoPlayerWindow, VideoPlayerWindow> {
    Q_OBJECT
  public:
    FakeVideoPlayerWindow();
    ~FakeVideoPlayerWindow() override;

    void SetVideoFile(const QString& path) override { files << path; }
    MediaPlayer* MP() override { return mp_.get(); }

    QStringList files;

  private:
    std::unique_ptr<MediaPlayer> mp_;
};

}  // namespace cantovel::test
