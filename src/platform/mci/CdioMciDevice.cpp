#include "platform/mci/CdioMciDevice.h"

#include <cdio/cdio.h>

#include <QFileInfo>

#include "app/FileNames.h"
#include "platform/Components.h"
#include "platform/cdaudio/CdAudioPlayer.h"
#include "platform/cdaudio/CdioQuiet.h"
#include "platform/cddrives/CdDrives.h"
#include "platform/cddrives/DiscTracks.h"

namespace cantovel {

namespace {
constexpr qint64 kLeadIn = 150;  // sector 0 of the program area stands at 00:02:00
}

CdioMciDevice::CdioMciDevice(QString device) : device_(std::move(device)) {
    quietCdio();
    connect(&status_, &Timer::timeout, this, &MciDevice::StatusUpdate);
    status_.setEnabled(true);
}

CdioMciDevice::~CdioMciDevice() = default;

void CdioMciDevice::setCommand(const QString& word) {
    command_ = word;
    const QString w = word.toUpper();
    if (w == QLatin1String("OPEN")) {
        open();
    } else if (!open_) {
        return;
    } else if (w == QLatin1String("CLOSE")) {
        close();
    } else if (w == QLatin1String("PLAY")) {
        play();
    } else if (w == QLatin1String("PAUSE")) {
        if (player_ && player_->state() == CdAudioPlayer::Playing) player_->pause();
    } else if (w == QLatin1String("STOP")) {
        stop();
    } else if (w == QLatin1String("PREV") || w == QLatin1String("NEXT")) {
        const qint64 now = frameNow();
        int t = trackAt(now);
        if (t == 0) return;
        // Back to the start of the track, or to the track before when already near it.
        if (w == QLatin1String("NEXT"))
            ++t;
        else if (now - starts_[t - 1] < 2 * 75 && t > 1)
            --t;
        if (t > starts_.size() - 1) return;
        seekTo(starts_[t - 1]);
    } else if (w == QLatin1String("EJECT")) {
        stop();
        if (!opened_.isEmpty() && !QFileInfo(opened_).isFile())
            cdio_eject_media_drive(NameToBytes(opened_).constData());
        trayOut_ = true;
        starts_.clear();
    }
}

void CdioMciDevice::open() {
    // Asked to open while its tray is out, a drive takes the disc in again and reads it.
    if (open_) {
        if (trayOut_) loadDisc();
        return;
    }
    opened_ = device_;
    if (opened_.isEmpty() && Components::hasService<CdDrives>()) {
        const QList<CdDrive> drives = CdDrives::get().Drives();
        if (!drives.isEmpty()) opened_ = drives.first().Device;
    }
    if (opened_.isEmpty()) return;
    open_ = true;
    loadDisc();
}

void CdioMciDevice::loadDisc() {
    if (trayOut_ && !QFileInfo(opened_).isFile()) {
        driver_id_t driver = DRIVER_DEVICE;
        cdio_close_tray(opened_.toLocal8Bit().constData(), &driver);
    }
    trayOut_ = false;
    readToc();
    position_ = starts_.isEmpty() ? 0 : starts_.first();
}

void CdioMciDevice::close() {
    stop();
    open_ = false;
    starts_.clear();
    lengths_.clear();
}

bool CdioMciDevice::readToc() {
    starts_.clear();
    lengths_.clear();
    const DiscToc toc = readDiscToc(opened_);
    if (toc.tracks.isEmpty()) return false;
    for (const DiscTrack& t : toc.tracks) {
        starts_.append(t.first + kLeadIn);
        lengths_.append(t.sectors);
    }
    starts_.append(toc.leadOut + kLeadIn);
    return true;
}

int CdioMciDevice::Mode() {
    if (!open_) return mciModeNotOpen;
    if (trayOut_) return mciModeReady;
    if (player_ && player_->state() == CdAudioPlayer::Playing) return mciModePlay;
    if (player_ && player_->state() == CdAudioPlayer::Paused) return mciModePause;
    return mciModeStop;
}

int CdioMciDevice::Tracks() {
    if (!open_ || trayOut_) return 0;
    // A disc may have come or gone since the last look; a playing one stays as it is.
    if (!player_ || player_->state() == CdAudioPlayer::Stopped) readToc();
    return int(starts_.size()) - (starts_.isEmpty() ? 0 : 1);
}

qint32 CdioMciDevice::TrackPosition() {
    if (!open_ || track_ < 1 || track_ >= starts_.size()) return 0;
    return FramesToMsf(starts_[track_ - 1]);
}

qint32 CdioMciDevice::TrackLength() {
    if (!open_ || track_ < 1 || track_ >= starts_.size()) return 0;
    qint64 length = lengths_[track_ - 1];
    if (track_ == starts_.size() - 1 && length > 0) --length;  // the classic device's last track
    return FramesToMsf(length);
}

qint64 CdioMciDevice::frameNow() const {
    if (player_ && player_->state() != CdAudioPlayer::Stopped) return player_->position() + kLeadIn;
    return position_;
}

qint32 CdioMciDevice::Position() {
    return open_ ? FramesToMsf(frameNow()) : 0;
}

int CdioMciDevice::trackAt(qint64 frame) const {
    int found = 0;
    for (int t = 1; t < starts_.size(); ++t)
        if (starts_[t - 1] <= frame) found = t;
    return found;
}

void CdioMciDevice::play() {
    if (starts_.isEmpty()) return;
    const bool paused = player_ && player_->state() == CdAudioPlayer::Paused;
    if (paused && from_ < 0 && to_ < 0) {
        player_->resume();
        return;
    }
    const qint64 from = from_ >= 0 ? from_ : frameNow();
    const qint64 to = to_ >= 0 ? to_ : starts_.last();
    from_ = to_ = -1;
    if (!player_) {
        player_ = std::make_unique<CdAudioPlayer>();
        connect(player_.get(), &CdAudioPlayer::finished, this,
                [this] { position_ = player_->first() + player_->count() + kLeadIn; });
    }
    if (to <= from) return;
    position_ = from;
    player_->play(opened_, from - kLeadIn, to - from);
}

void CdioMciDevice::stop() {
    if (player_ && player_->state() != CdAudioPlayer::Stopped) {
        position_ = player_->position() + kLeadIn;
        player_->stop();
    }
}

void CdioMciDevice::seekTo(qint64 frame) {
    const bool playing = player_ && player_->state() == CdAudioPlayer::Playing;
    stop();
    position_ = frame;
    if (playing) play();
}

}  // namespace cantovel
