#pragma once
// A media player that plays by the clock's time (virtual time under FakeClock). What a
// file name opens to is scripted for all fakes at once, since windows make their players
// through the component factory: a length in seconds per name, or a refusal. Play moves
// the position on with a timer; at the length the player stops with PlayStateChange(2, 0)
// and keeps the file open, as the real one does. Like the real one, at the default, half and
// double display sizes it gives its video widget the picture's natural size (times 1, 1/2,
// 2) as soon as the film is open; at the others the window decides. Every call is recorded.

#include <QHash>
#include <QPointer>
#include <QSize>
#include <QStringList>
#include <QWidget>

#include "platform/clock/Timer.h"
#include "platform/mediaplayer/MediaPlayer.h"

namespace cantovel::test {

class FakeMediaPlayer : public MediaPlayer {
    Q_OBJECT
  public:
    // What the fakes know about files, by file name; a name not listed is refused.
    struct Media {
        QHash<QString, double> lengths;
        QHash<QString, QSize> pictures;
    };
    static Media& media();
    static void setLength(const QString& name, double seconds) { media().lengths[name] = seconds; }
    static void setPicture(const QString& name, QSize size) { media().pictures[name] = size; }
    // Makes the component factory hand out fakes, and forgets all scripted media.
    static void install();
    explicit FakeMediaPlayer(QObject* parent = nullptr);

    int setFileName(const QString& name) override;
    QString fileName() const override { return fileName_; }
    void Play() override;
    void Pause() override;
    void Stop() override;
    double CurrentPosition() const override { return position_; }
    void setCurrentPosition(double seconds) override;
    double Duration() const override { return OpenState() == mpoOpen ? length_ : 0.0; }
    int ImageSourceWidth() const override { return picture_.width(); }
    int ImageSourceHeight() const override { return picture_.height(); }
    void setVideoWidget(QWidget* widget) override;

    // Jumps to the end as if the file had played out (reports 2 -> 0 when playing).
    void playToEnd();

    // Every call in order: "FileName=<name>", "Play", "Pause", "Stop",
    // "CurrentPosition=<s>", "Volume=<v>", "Balance=<b>".
    QStringList calls;

  protected:
    void applyVolume() override { calls << QStringLiteral("Volume=%1").arg(Volume()); }
    void applyBalance() override { calls << QStringLiteral("Balance=%1").arg(Balance()); }
    void applyDisplaySize() override;

  private:
    void tick();
    void fit();

    QString fileName_;
    double length_ = 0;
    double position_ = 0;
    QSize picture_;
    QPointer<QWidget> videoWidget_;
    Timer ticker_;
    qint64 lastMs_ = 0;
};

}  // namespace cantovel::test
