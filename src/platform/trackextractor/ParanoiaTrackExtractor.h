#pragma once
#include <QList>
#include <QTemporaryDir>
#include <memory>

#include "platform/cddrives/DiscTracks.h"
#include "platform/trackextractor/TrackExtractor.h"
#include "platform/wavechain/BackgroundJob.h"

namespace cantovel {

class MediaPlayer;

// The extractor on libcdio and cd-paranoia, reading through the CD reader's copy engine in
// full paranoia. Its drives are the program's CD drives (disc images included) when that
// service is there, else the machine's CD devices. A preview is extracted to a temporary
// WAV and played through a media player component.
class ParanoiaTrackExtractor : public TrackExtractor {
    Q_OBJECT
  public:
    explicit ParanoiaTrackExtractor(QObject* parent = nullptr);
    ~ParanoiaTrackExtractor() override;

    qint16 Initialize() override;
    int DriveCount() override;
    QString DriveName(int index) override;
    void SelectDrive(int index) override;
    int TrackCount() override { return int(toc_.tracks.size()); }
    qint32 TrackLength(int track) override;
    qint16 ExtractTrack(QString& fileName, int track) override;
    void Abort() override;
    bool WriteFailed() const override { return writeFailed_; }
    QString WriteErrorDescription() const override { return writeError_; }
    qint16 Preview(qint16 track, qint16 startSecond, qint16 seconds) override;
    void EndPreview() override;

  private:
    struct Drive {
        QString name, device;
    };
    QList<Drive> drives();
    // The audio track of that number, or null.
    const DiscTrack* audioTrack(int track) const;
    // Ends the run; a nonzero system error number marks a failed write.
    void finishRun(int writeError, bool readFailed);

    BackgroundJob job_{this};
    BackgroundJob previewJob_{this};
    QString device_;
    DiscToc toc_;
    std::unique_ptr<MediaPlayer> player_;
    std::unique_ptr<QTemporaryDir> previewDir_;
    bool writeFailed_ = false;
    QString writeError_;
};

}  // namespace cantovel
