#pragma once
// A scripted CD audio device: a disc given as track starts in frames (from the start of the
// lead-in) and a lead-out, commands recorded, the position set by the test.

#include <QList>
#include <QStringList>

#include "platform/mci/MciDevice.h"

namespace cantovel::test {

class FakeMciDevice : public MciDevice {
  public:
    // The disc in the drive; an empty list is a drive without a disc.
    void setDisc(const QList<qint64>& starts, qint64 leadOut);
    // Whether "Open" works at all.
    bool canOpen = true;
    bool open = false;
    int mode = mciModeStop;     // while open
    qint64 position = 0;        // frames
    qint64 from = -1, to = -1;  // of the last Play
    QStringList commands;       // every word written, as written
    // Raises StatusUpdate as the device's timer would.
    void tick() { emit StatusUpdate(); }

    void setDeviceType(const QString& type) override { deviceType_ = type; }
    QString deviceType() const override { return deviceType_; }
    void setNotify(bool) override {}
    void setWait(bool) override {}
    void setShareable(bool) override {}
    void setCommand(const QString& word) override;
    QString command() const override { return commands.value(commands.size() - 1); }
    int Mode() override { return open ? mode : int(mciModeNotOpen); }
    int Tracks() override { return open ? int(starts_.size()) : 0; }
    void setTrack(int track) override { track_ = track; }
    int Track() const override { return track_; }
    qint32 TrackPosition() override;
    qint32 TrackLength() override;
    qint32 Position() override { return open ? FramesToMsf(position) : 0; }
    void setFrom(qint32 msf) override { pendingFrom_ = MsfToFrames(msf); }
    void setTo(qint32 msf) override { pendingTo_ = MsfToFrames(msf); }

  private:
    QString deviceType_;
    QList<qint64> starts_;
    qint64 leadOut_ = 0;
    int track_ = 1;
    qint64 pendingFrom_ = -1, pendingTo_ = -1;
};

}  // namespace cantovel::test
