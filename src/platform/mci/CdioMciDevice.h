#pragma once
// The CD audio device over libcdio: the table of contents is read from the drive (or disc
// image) on open, and plays go through the CD audio player to the desktop's sound output.
// Without a device named, "Open" takes the first CD drive.

#include <QList>
#include <memory>

#include "platform/clock/Timer.h"
#include "platform/mci/MciDevice.h"

namespace cantovel {

class CdAudioPlayer;

class CdioMciDevice : public MciDevice {
    Q_OBJECT
  public:
    explicit CdioMciDevice(QString device = {});
    ~CdioMciDevice() override;

    void setDeviceType(const QString& type) override { deviceType_ = type; }
    QString deviceType() const override { return deviceType_; }
    void setNotify(bool) override {}
    void setWait(bool) override {}
    void setShareable(bool) override {}

    void setCommand(const QString& word) override;
    QString command() const override { return command_; }

    int Mode() override;
    int Tracks() override;
    void setTrack(int track) override { track_ = track; }
    int Track() const override { return track_; }
    qint32 TrackPosition() override;
    qint32 TrackLength() override;
    qint32 Position() override;
    void setFrom(qint32 msf) override { from_ = MsfToFrames(msf); }
    void setTo(qint32 msf) override { to_ = MsfToFrames(msf); }

  private:
    void open();
    // Closes the tray if it is out, and reads the disc's table of contents.
    void loadDisc();
    void close();
    bool readToc();
    void play();
    void stop();
    void seekTo(qint64 frame);
    int trackAt(qint64 frame) const;
    qint64 frameNow() const;

    QString device_;  // as asked; empty for the first drive
    QString opened_;  // what "Open" resolved to
    QString deviceType_, command_;
    bool open_ = false;
    bool trayOut_ = false;
    int track_ = 1;
    // Starts in frames from the start of the lead-in; the last entry is the lead-out.
    QList<qint64> starts_;
    // Each track's sectors on the disc: an image's end where its data ends.
    QList<qint64> lengths_;
    qint64 from_ = -1, to_ = -1;
    qint64 position_ = 0;  // where the disc stands while no sound plays
    std::unique_ptr<CdAudioPlayer> player_;
    Timer status_{500};
};

}  // namespace cantovel
