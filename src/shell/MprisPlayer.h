#pragma once
// The MPRIS 2 player interface: transport, volume, position, what plays, loop and shuffle.

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QVariantMap>

namespace cantovel {

class MprisService;

class MprisPlayer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ PlaybackStatus)
    Q_PROPERTY(QString LoopStatus READ LoopStatus WRITE setLoopStatus)
    Q_PROPERTY(double Rate READ Rate WRITE setRate)
    Q_PROPERTY(bool Shuffle READ Shuffle WRITE setShuffle)
    Q_PROPERTY(QVariantMap Metadata READ Metadata)
    Q_PROPERTY(double Volume READ Volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ Position)
    Q_PROPERTY(double MinimumRate READ Rate)
    Q_PROPERTY(double MaximumRate READ Rate)
    Q_PROPERTY(bool CanGoNext READ CanGoNext)
    Q_PROPERTY(bool CanGoPrevious READ CanGoPrevious)
    Q_PROPERTY(bool CanPlay READ CanPlay)
    Q_PROPERTY(bool CanPause READ CanPause)
    Q_PROPERTY(bool CanSeek READ CanSeek)
    Q_PROPERTY(bool CanControl READ CanControl)
  public:
    explicit MprisPlayer(MprisService* service);

    QString PlaybackStatus() const;
    QString LoopStatus() const;
    void setLoopStatus(const QString& status);
    double Rate() const { return 1.0; }
    void setRate(double) {}
    bool Shuffle() const;
    void setShuffle(bool on);
    QVariantMap Metadata() const;
    double Volume() const;
    void setVolume(double value);
    qlonglong Position() const;
    bool CanGoNext() const;
    bool CanGoPrevious() const;
    bool CanPlay() const;
    bool CanPause() const;
    bool CanSeek() const;
    bool CanControl() const { return true; }

  public slots:
    void Next();
    void Previous();
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong Offset);
    void SetPosition(const QDBusObjectPath& TrackId, qlonglong Position);
    void OpenUri(const QString& Uri);

  signals:
    void Seeked(qlonglong Position);

  private:
    MprisService* service_;
};

}  // namespace cantovel
