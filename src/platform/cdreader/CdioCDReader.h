#pragma once
// The CD reader on libcdio: the drives are those of the CD drives layer (devices and disc
// images), the table of contents comes from libcdio, play goes through the CD audio
// player, copies run on a worker thread through CdRipper.
//
// A disc image has no tray of its own: opening its door takes the disc out of the drive
// until the door is closed again. A changed image file counts as a new disc.

#include <QDateTime>
#include <atomic>
#include <memory>

#include "platform/cdreader/CDReader.h"
#include "platform/wavechain/BackgroundJob.h"

typedef struct _CdIo CdIo_t;

namespace cantovel {

class CdAudioPlayer;

class CdioCDReader : public CDReader {
    Q_OBJECT
  public:
    explicit CdioCDReader(QObject* parent = nullptr);
    ~CdioCDReader() override;

    QList<CDDevice> Devices() const override;
    void Open() override;
    void Close() override;
    bool DiscPresent() const override;
    bool DirectoryRead() const override;
    int DriveState() const override;
    void Door(bool close) override;
    QList<CDTrack> Tracks() const override;

    quint32 Position() const override;
    void PlayAudioTrack(int index) override;
    void PlayAudioRange(quint32 start, quint32 length) override;
    void StopAudio() override;
    void PauseAudio() override;

    void CopyTrack(int index, const QString& fileName) override;
    void StopCopy() override;
    int CopyState() const override { return copying_ ? 1 : 0; }
    qint64 CopyStart() const override { return copyStart_; }
    qint64 CopyPosition() const override { return copyPosition_.load(); }

    // The device node or image the reader has open; empty when none.
    QString device() const { return device_; }

  private:
    // Looks at the drive again: reads the table anew when the disc has changed.
    void refresh() const;
    void readToc() const;
    void releaseDisc() const;
    bool isImage() const;
    CdAudioPlayer& player();
    void endCopy();

    QString device_;
    bool doorOpen_ = false;  // of an image; a device tells its own
    // What the drive holds, as last looked at.
    mutable CdIo_t* cdio_ = nullptr;
    mutable bool present_ = false;
    mutable bool tocRead_ = false;
    mutable QList<CDTrack> tracks_;
    mutable qint64 leadOut_ = 0;  // first sector past the disc
    mutable QDateTime imageStamp_;
    mutable qint64 imageSize_ = -1;

    std::unique_ptr<CdAudioPlayer> player_;
    qint64 stoppedAt_ = 150;  // disc frame the position rests on when nothing played yet

    BackgroundJob job_{this};
    bool copying_ = false;
    qint64 copyStart_ = 0;
    std::atomic<qint64> copyPosition_{0};
};

}  // namespace cantovel
