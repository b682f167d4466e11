#pragma once
// The player as the desktop's media keys and player panels see it: the MPRIS 2 service
// "org.mpris.MediaPlayer2.cantovel" on the session bus. Every request goes to the same
// procedures and settings as the buttons and menus; what it reports is read from the
// menus' captions and the main window's state, as the windows themselves read it.

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include "platform/clock/Timer.h"

namespace cantovel {

class MprisService : public QObject {
    Q_OBJECT
  public:
    explicit MprisService(QObject* parent = nullptr);
    ~MprisService() override;

    static QString serviceName() { return QStringLiteral("org.mpris.MediaPlayer2.cantovel"); }
    static QString objectPath() { return QStringLiteral("/org/mpris/MediaPlayer2"); }

    // Publishes the service on a bus; false when the bus is not there or the name is taken.
    bool registerOn(const QDBusConnection& bus);
    void unregister();

    // ---- What the player reports ----
    // "Playing", "Paused" or "Stopped".
    QString playbackStatus() const;
    QVariantMap metadata() const;
    double volume() const;
    // Microseconds into the file.
    qint64 position() const;
    // "None", "Track" (a single file plays again) or "Playlist" (a queue starts again).
    QString loopStatus() const;
    bool shuffle() const;
    bool canGoNext() const;
    bool canGoPrevious() const;
    bool canPlay() const;
    bool canPause() const;
    // A file of known length plays in a player that takes a position (no CD, no Vivo).
    bool canSeek() const;

    // ---- What the desktop asks ----
    void play();
    void pause();
    void playPause();
    void stop();
    void next();
    void previous();
    void openUri(const QString& uri);
    // Moves by `offset` microseconds; before the start means the start, past the end
    // means the next entry.
    void seek(qint64 offset);
    // Moves to a place of the track `trackId` names; another track's id or a place outside
    // the track is passed over.
    void setPosition(const QString& trackId, qint64 position);
    void setVolume(double value);
    void setLoopStatus(const QString& status);
    void setShuffle(bool on);
    void raise();
    void quit();

    // Tells the bus which properties changed since the last look.
    void notifyChanges();

  signals:
    // A seek moved the position to this many microseconds.
    void seeked(qint64 position);

  private:
    QVariantMap snapshot() const;
    QString trackId() const;
    void seekTo(double seconds);

    QDBusConnection bus_{QString()};
    bool registered_ = false;
    QVariantMap last_;
    // Panels learn of changes by signals; the player's state is looked at this often.
    Timer tmrWatch{500};
};

// The service of the running instance on the session bus; nothing when there is no bus.
void StartMprisService();
void StopMprisService();

}  // namespace cantovel
