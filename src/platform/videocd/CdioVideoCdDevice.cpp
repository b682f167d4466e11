#include "platform/videocd/CdioVideoCdDevice.h"

#include <cdio/cdio.h>

// After cdio.h, which it needs.
#include <cdio/cd_types.h>
#include <cdio/read.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vector>

namespace cantovel {

namespace {

// A film sector as libcdio reads it in Mode 2 Form 2: the 8-byte subheader, the 2324
// bytes of the film, the 4-byte check.
constexpr int kRawBytes = M2RAW_SECTOR_SIZE;
constexpr int kFilmOffset = CDIO_CD_SUBHEADER_SIZE;
constexpr int kFilmBytes = M2F2_SECTOR_SIZE;
constexpr int kSectorsARead = 32;
// One picture at the Video CD's 25 (or 29.97) pictures a second.
constexpr double kPicture = 0.04;

bool sendAll(int fd, const char* data, size_t bytes, const std::atomic<bool>* go) {
    size_t sent = 0;
    while (go->load() && sent < bytes) {
        const ssize_t n = ::send(fd, data + sent, bytes - sent, MSG_NOSIGNAL);
        if (n <= 0) return false;  // the player has gone, or the stream was cut
        sent += size_t(n);
    }
    return sent == bytes;
}

bool isImageDriver(driver_id_t id) {
    return id == DRIVER_BINCUE || id == DRIVER_NRG || id == DRIVER_CDRDAO;
}

// Streams a track's film sectors to `fd` until the end, a failed read or `go` is cleared.
void streamTrack(CdIo_t* cdio, track_t track, int fd, std::atomic<bool>* go) {
    const lsn_t first = cdio_get_track_lsn(cdio, track);
    const lsn_t last = cdio_get_track_last_lsn(cdio, track);
    std::vector<char> buffer(size_t(kRawBytes) * kSectorsARead);
    for (lsn_t lsn = first; go->load() && lsn != CDIO_INVALID_LSN && lsn <= last;) {
        const unsigned count = unsigned(std::min<lsn_t>(kSectorsARead, last - lsn + 1));
        if (cdio_read_mode2_sectors(cdio, buffer.data(), lsn, true, count) != DRIVER_OP_SUCCESS)
            break;
        for (unsigned i = 0; i < count; ++i)
            if (!sendAll(fd, buffer.data() + size_t(i) * kRawBytes + kFilmOffset, kFilmBytes, go))
                return;
        lsn += lsn_t(count);
    }
    // The end of the film for the reader.
    ::shutdown(fd, SHUT_WR);
}

}  // namespace

CdioVideoCdDevice::CdioVideoCdDevice(QObject* parent) : VideoCdDevice(parent) {}

CdioVideoCdDevice::~CdioVideoCdDevice() {
    Close();
    delete display_;
}

void CdioVideoCdDevice::setMode(int mode) {
    if (mode == mode_) return;
    mode_ = mode;
    emit ModeChanged(mode);
}

bool CdioVideoCdDevice::Open() {
    Close();
    error_.clear();
    QByteArray source = qgetenv("CANTOVEL_VIDEOCD");
    if (source.isEmpty()) {
        char** found = cdio_get_devices_with_cap(nullptr, CDIO_FS_ANAL_VCD_ANY, true);
        if (found && found[0]) source = found[0];
        if (found) cdio_free_device_list(found);
    }
    if (source.isEmpty()) {
        error_ = QStringLiteral("There is no Video CD in any drive.");
        return false;
    }
    cdio_ = cdio_open(source.constData(), DRIVER_UNKNOWN);
    if (!cdio_) {
        error_ = QStringLiteral("The Video CD in \"%1\" cannot be read.")
                     .arg(QString::fromLocal8Bit(source));
        return false;
    }
    isImage_ = isImageDriver(cdio_get_driver_id(cdio_));
    const track_t first = cdio_get_first_track_num(cdio_);
    lastTrack_ = cdio_get_last_track_num(cdio_);
    firstFilm_ = first + 1;
    // A Video CD by its file system, or at least by its shape: Mode 2 tracks throughout.
    cdio_iso_analysis_t analysis{};
    const bool signed_ = cdio_guess_cd_type(cdio_, 0, first, &analysis) & CDIO_FS_ANAL_VCD_ANY;
    bool shaped = first != CDIO_INVALID_TRACK && lastTrack_ >= firstFilm_;
    for (int t = first; shaped && t <= lastTrack_; ++t)
        shaped = cdio_get_track_format(cdio_, track_t(t)) == TRACK_FORMAT_XA;
    if (lastTrack_ < firstFilm_ || (!signed_ && !shaped)) {
        error_ = QStringLiteral("The disc in \"%1\" is no Video CD.")
                     .arg(QString::fromLocal8Bit(source));
        cdio_destroy(cdio_);
        cdio_ = nullptr;
        return false;
    }
    entry_ = 1;
    setMode(Stopped);
    return true;
}

void CdioVideoCdDevice::Close() {
    stopStream();
    if (player_) player_->setFileName(QString());
    loaded_ = false;
    if (display_) display_->hide();
    if (cdio_) cdio_destroy(cdio_);
    cdio_ = nullptr;
    entry_ = 0;
    setMode(NotReady);
}

void CdioVideoCdDevice::stopStream() {
    streaming_ = false;
    if (streamFd_ >= 0) ::shutdown(streamFd_, SHUT_RDWR);
    if (streamer_.joinable()) streamer_.join();
    if (streamFd_ >= 0) ::close(streamFd_);
    streamFd_ = -1;
}

bool CdioVideoCdDevice::loadEntry(int entry) {
    stopStream();
    loaded_ = false;
    if (!cdio_ || entry < 1 || entry > Entries()) return false;
    if (!display_) {
        display_ = new QWidget();
        display_->setWindowTitle(QStringLiteral("Video CD"));
        display_->resize(352, 288);
        display_->setAttribute(Qt::WA_NativeWindow);
    }
    if (!player_) {
        player_ = std::make_unique<MpvMediaPlayer>();
        player_->setDisplaySize(MediaPlayer::mpFitToSize);
        connect(player_.get(), &MediaPlayer::PlayStateChange, this,
                &CdioVideoCdDevice::playerStateChanged);
    }
    player_->setVideoWidget(display_);
    int fds[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds) != 0) return false;
    streamFd_ = fds[0];
    streaming_ = true;
    streamer_ =
        std::thread(streamTrack, cdio_, track_t(firstFilm_ + entry - 1), fds[0], &streaming_);
    // The player owns and closes its end.
    player_->setFileName(QStringLiteral("fdclose://%1").arg(fds[1]));
    loaded_ = player_->lastError() == 0;
    if (!loaded_) stopStream();
    return loaded_;
}

void CdioVideoCdDevice::Play() {
    if (!cdio_) return;
    if (!loaded_ && !loadEntry(entry_)) return;
    if (display_) display_->show();
    player_->Play();
    if (player_->PlayState() == MediaPlayer::mpPlaying) setMode(Playing);
}

void CdioVideoCdDevice::Pause() {
    if (!cdio_ || !loaded_ || player_->PlayState() != MediaPlayer::mpPlaying) return;
    player_->Pause();
    setMode(Paused);
}

void CdioVideoCdDevice::Stop() {
    if (!cdio_) return;
    // The stream cannot go back to its start: the entry is read afresh at the next play.
    stopStream();
    if (player_) player_->setFileName(QString());
    loaded_ = false;
    setMode(Stopped);
}

void CdioVideoCdDevice::Prev() {
    if (!cdio_) return;
    const bool playing = mode_ == Playing;
    Stop();
    entry_ = std::max(1, entry_ - 1);
    if (playing) Play();
}

void CdioVideoCdDevice::Next() {
    if (!cdio_ || entry_ >= Entries()) return;
    const bool playing = mode_ == Playing;
    Stop();
    ++entry_;
    if (playing) Play();
}

void CdioVideoCdDevice::Step() {
    if (!cdio_) return;
    if (!loaded_ && !loadEntry(entry_)) return;
    if (player_->PlayState() == MediaPlayer::mpPlaying) player_->Pause();
    player_->setCurrentPosition(player_->CurrentPosition() + kPicture);
    setMode(Paused);
}

void CdioVideoCdDevice::Back() {
    if (!cdio_ || !loaded_) return;
    if (player_->PlayState() == MediaPlayer::mpPlaying) player_->Pause();
    player_->setCurrentPosition(player_->CurrentPosition() - kPicture);
    setMode(Paused);
}

void CdioVideoCdDevice::Eject() {
    if (!cdio_) return;
    const bool image = isImage_;
    stopStream();
    if (player_) player_->setFileName(QString());
    loaded_ = false;
    if (!image) {
        // Ejecting gives the handle back.
        cdio_eject_media(&cdio_);
        if (cdio_) cdio_destroy(cdio_);
        cdio_ = nullptr;
        entry_ = 0;
        setMode(DoorOpen);
        return;
    }
    Close();
}

void CdioVideoCdDevice::playerStateChanged(int oldState, int newState) {
    if (oldState != MediaPlayer::mpPlaying || newState != MediaPlayer::mpStopped) return;
    // The end of an entry: on to the next, or stop after the last.
    if (entry_ < Entries()) {
        Stop();
        ++entry_;
        Play();
    } else {
        Stop();
    }
}

}  // namespace cantovel
