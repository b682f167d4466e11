#pragma once
// The Video CD device on libcdio and libmpv. The disc is the one named by CANTOVEL_VIDEOCD
// (a drive or a disc image libcdio reads: CUE/BIN, NRG, TOC), else the first drive holding
// a Video CD. Its films are the MPEG tracks after the first (the first holds the disc's
// file system). A libmpv player reads a track's Mode 2 Form 2 sectors through a stream
// callback, on its own reading thread, and shows the film in the device's display window.

#include <QPointer>
#include <QWidget>
#include <memory>

#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "platform/videocd/VideoCdDevice.h"

typedef struct _CdIo CdIo_t;

namespace cantovel {

class CdioVideoCdDevice : public VideoCdDevice {
    Q_OBJECT
  public:
    explicit CdioVideoCdDevice(QObject* parent = nullptr);
    ~CdioVideoCdDevice() override;

    bool Open() override;
    void Close() override;
    bool IsOpen() const override { return cdio_ != nullptr; }
    QString ErrorMessage() const override { return error_; }
    int Entries() const override {
        return lastTrack_ >= firstFilm_ ? lastTrack_ - firstFilm_ + 1 : 0;
    }
    int Entry() const override { return entry_; }
    int Mode() const override { return mode_; }
    bool CanEject() const override { return !isImage_; }
    void Play() override;
    void Pause() override;
    void Stop() override;
    void Prev() override;
    void Next() override;
    void Step() override;
    void Back() override;
    void Eject() override;

    // The display window, made at the first film.
    QWidget* Display() const { return display_; }

  private:
    void setMode(int mode);
    // Loads entry `entry` into the player, streaming its track; false when it cannot.
    bool loadEntry(int entry);
    void playerStateChanged(int oldState, int newState);

    CdIo_t* cdio_ = nullptr;
    // What the disc was opened from: a drive or an image.
    QByteArray source_;
    bool isImage_ = false;
    int firstFilm_ = 2, lastTrack_ = 0;
    int entry_ = 0;
    bool loaded_ = false;
    int mode_ = NotReady;
    QString error_;

    std::unique_ptr<MpvMediaPlayer> player_;
    QPointer<QWidget> display_;
};

}  // namespace cantovel
