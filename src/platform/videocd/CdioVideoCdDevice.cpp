#include "platform/videocd/CdioVideoCdDevice.h"

#include <cdio/cdio.h>

// After cdio.h, which it needs.
#include <cdio/cd_types.h>
#include <mpv/client.h>

#include <QUrl>
#include <algorithm>
#include <cstring>

#include "app/FileNames.h"
#include "platform/cddrives/DiscImageSource.h"
#include "platform/cddrives/DiscSectorStream.h"
#include "platform/cddrives/DiscTracks.h"
#include "platform/mpv/MpvStream.h"

namespace cantovel {

namespace {

// One picture at the Video CD's 25 (or 29.97) pictures a second.
constexpr double kPicture = 0.04;

bool isImageDriver(driver_id_t id) {
    return id == DRIVER_BINCUE || id == DRIVER_NRG || id == DRIVER_CDRDAO;
}

constexpr const char* kProtocol = "cantovelvcd";

// cantovelvcd://<track>/<disc, percent-encoded>: the film bytes of the track's sectors,
// back to back, read on mpv's own reading thread through a disc handle of its own. A film
// ends where the disc's data ends, as at its own end, however much more the CUE tells of.
int openFilmStream(void*, char* uri, mpv_stream_cb_info* info) {
    const QString text = QString::fromUtf8(uri).mid(int(std::strlen(kProtocol)) + 3);
    const int slash = text.indexOf(QLatin1Char('/'));
    if (slash < 0) return MPV_ERROR_LOADING_FAILED;
    const QByteArray source =
        QUrl::fromPercentEncoding(text.mid(slash + 1).toLatin1()).toLocal8Bit();
    auto stream =
        std::make_unique<DiscSectorStream>(NameFromBytes(source), DiscSectorStream::kFilm);
    if (!stream->isOpen()) return MPV_ERROR_LOADING_FAILED;
    const DiscToc toc = readDiscToc(stream->disc());
    const DiscTrack* film = toc.track(text.left(slash).toInt());
    if (!film || film->sectors <= 0) return MPV_ERROR_LOADING_FAILED;
    stream->setStretch(film->first, film->sectors);
    return handStreamToMpv(std::move(stream), info);
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
    cdio_ = openDisc(NameFromBytes(source));
    source_ = source;
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
    if (player_) player_->setFileName(QString());
    loaded_ = false;
    if (display_) display_->hide();
    if (cdio_) cdio_destroy(cdio_);
    cdio_ = nullptr;
    entry_ = 0;
    setMode(NotReady);
}

bool CdioVideoCdDevice::loadEntry(int entry) {
    loaded_ = false;
    if (!cdio_ || entry < 1 || entry > Entries()) return false;
    if (!display_) {
        display_ = new QWidget();
        display_->setWindowTitle(QStringLiteral("Video CD"));
        display_->resize(352, 288);
    }
    if (!player_) {
        player_ = std::make_unique<MpvMediaPlayer>();
        player_->setDisplaySize(MediaPlayer::mpFitToSize);
        player_->addStreamProtocol(kProtocol, nullptr, &openFilmStream);
        connect(player_.get(), &MediaPlayer::PlayStateChange, this,
                &CdioVideoCdDevice::playerStateChanged);
    }
    player_->setVideoWidget(display_);
    // mpv reads the track itself, on its own thread, with its own handle on the disc.
    const QByteArray uri = QByteArray(kProtocol) + "://" +
                           QByteArray::number(firstFilm_ + entry - 1) + '/' +
                           QUrl::toPercentEncoding(QString::fromLocal8Bit(source_));
    player_->setFileName(QString::fromUtf8(uri));
    loaded_ = player_->lastError() == 0;
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
    // Stopping unloads the entry; the next play reads it again from its start.
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
