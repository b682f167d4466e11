#pragma once
// The MPRIS 2 root interface: who the player is, and raising or quitting it.

#include <QDBusAbstractAdaptor>
#include <QStringList>

namespace cantovel {

class MprisService;

class MprisRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ CanQuit)
    Q_PROPERTY(bool CanRaise READ CanRaise)
    Q_PROPERTY(bool CanSetFullscreen READ CanSetFullscreen)
    Q_PROPERTY(bool Fullscreen READ Fullscreen)
    Q_PROPERTY(bool HasTrackList READ HasTrackList)
    Q_PROPERTY(QString Identity READ Identity)
    Q_PROPERTY(QString DesktopEntry READ DesktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ SupportedUriSchemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ SupportedMimeTypes)
  public:
    explicit MprisRoot(MprisService* service);

    bool CanQuit() const { return true; }
    bool CanRaise() const { return true; }
    bool CanSetFullscreen() const { return false; }
    bool Fullscreen() const { return false; }
    bool HasTrackList() const { return false; }
    QString Identity() const;
    QString DesktopEntry() const { return QStringLiteral("cantovel"); }
    QStringList SupportedUriSchemes() const { return {QStringLiteral("file")}; }
    QStringList SupportedMimeTypes() const;

  public slots:
    void Raise();
    void Quit();

  private:
    MprisService* service_;
};

}  // namespace cantovel
