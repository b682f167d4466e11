#pragma once
// The film control on libmpv, which reads Vivo films through FFmpeg. It drives one libmpv
// media player (the same backend as the other players) and turns its open and play
// states into the film control's state texts.

#include <QPointer>
#include <QWidget>

#include "platform/clock/Timer.h"
#include "platform/filmplayer/FilmPlayer.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"

namespace cantovel {

class MpvFilmPlayer : public FilmPlayer {
    Q_OBJECT
  public:
    explicit MpvFilmPlayer(QObject* parent = nullptr);
    ~MpvFilmPlayer() override;

    void setFilm(const QString& path) override;
    QString film() const override { return player_.fileName(); }
    void Play() override;
    void Stop() override;
    QString State() const override { return state_; }
    int MovieWidth() const override;
    int MovieHeight() const override;
    qint64 Duration() const override;
    void About(QWidget* owner) override;
    void Save(QWidget* owner) override;
    void setVideoWidget(QWidget* widget) override;

    // The text of the About box.
    QString Properties() const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void report(const char* state);
    void playStateChanged(int oldState, int newState);
    int demuxSize(const char* name, int fallback) const;

    MpvMediaPlayer player_;
    QPointer<QWidget> widget_;
    QString state_ = QString::fromLatin1(Idle);
    bool started_ = false;
    bool stopping_ = false;
    Timer ticker_{1000};
};

}  // namespace cantovel
