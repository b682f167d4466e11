#pragma once
// A film control on virtual time. Films are scripted by path: natural size and length; an
// unscripted path leaves the control idle. Play reports "play_download" on a film's first
// start and "play_out" on every start; playing to the end reports "play_out_complete".
// Every call is recorded.

#include <QHash>
#include <QSize>
#include <QStringList>

#include "platform/clock/Timer.h"
#include "platform/filmplayer/FilmPlayer.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeFilmPlayer : public FilmPlayer, public TrackedFake<FakeFilmPlayer, FilmPlayer> {
    Q_OBJECT
  public:
    struct Film {
        QSize size;
        qint64 ms = 0;
    };
    static QHash<QString, Film>& films();
    // Registers the fake and forgets the scripted films.
    static void install();

    FakeFilmPlayer();

    void setFilm(const QString& path) override;
    QString film() const override { return film_; }
    void Play() override;
    void Stop() override;
    QString State() const override { return state_; }
    int MovieWidth() const override { return loaded_ ? current_.size.width() : 0; }
    int MovieHeight() const override { return loaded_ ? current_.size.height() : 0; }
    qint64 Duration() const override { return loaded_ ? current_.ms : 0; }
    void About(QWidget*) override { calls << QStringLiteral("About"); }
    void Save(QWidget*) override { calls << QStringLiteral("Save"); }
    void setVideoWidget(QWidget* widget) override { widget_ = widget; }
    QWidget* videoWidget() const { return widget_; }

    // "Film=<path>", "Play", "Stop", "About", "Save"; and every state reported.
    QStringList calls;
    QStringList states;
    qint64 position = 0;

  private:
    void report(const char* state);
    void tick();

    QString film_;
    Film current_;
    bool loaded_ = false, started_ = false, playing_ = false;
    QString state_ = QString::fromLatin1(Idle);
    QWidget* widget_ = nullptr;
    Timer ticker_{100};
};

}  // namespace cantovel::test
