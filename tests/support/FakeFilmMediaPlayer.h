#pragma once
// A fake media player that also keeps the real one's promise about its video widget: at
// the default, half and double display sizes the widget takes the picture's natural size
// (times 1, 1/2, 2) as soon as the film is open; at the others the window decides.

#include <QPointer>
#include <QWidget>

#include "support/FakeMediaPlayer.h"

namespace cantovel::test {

class FakeFilmMediaPlayer : public FakeMediaPlayer {
    Q_OBJECT
  public:
    // Makes the component factory hand out these, and forgets all scripted media.
    static void install();

    int setFileName(const QString& name) override;
    void setVideoWidget(QWidget* widget) override;

  protected:
    void applyDisplaySize() override;

  private:
    void fit();
    QPointer<QWidget> widget_;
};

}  // namespace cantovel::test
