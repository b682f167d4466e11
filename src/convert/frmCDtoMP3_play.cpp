// The CD to MP3 window's play controls: an MP3 file through the media player, a CD track
// through the CD reader, and mute.
#include <QAction>
#include <QListWidget>

#include "convert/frmCDtoMP3.h"
#include "platform/Components.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/mixer/Mixer.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {
constexpr int kInfo = Mb::Information | Mb::SetForeground;
const QString kSelectFirst =
    QStringLiteral("You must select the audio track(s) you wish to convert before proceeding.");
}  // namespace

void frmCDtoMP3::mnuPlay_Click() {
    if (mnuPlay->text() != QLatin1String("&Play New MP3")) {
        if (ActiveMovie1) ActiveMovie1->Stop();
        mnuPlay->setText(QStringLiteral("&Play New MP3"));
        return;
    }
    FileDialogRequest request;
    request.title = QStringLiteral("Select MP3 File...");
    request.filter = QStringLiteral("MPEG Layer 3 Audio|*.mp3;*.mp2");
    const FileDialogResult chosen = FileDialogs::get().open(this, request);
    if (chosen.cancelled || chosen.file().isEmpty() || !ActiveMovie1) return;
    if (ActiveMovie1->setFileName(chosen.file()) != 0) {
        MsgBoxShow(ActiveMovie1->lastErrorDescription(), kInfo, {}, this);
        return;
    }
    ActiveMovie1->Play();
    mnuPlay->setText(QStringLiteral("&Stop MP3 Play"));
}

void frmCDtoMP3::ActiveMovie1_PlayStateChange(int, int newState) {
    switch (newState) {
        case MediaPlayer::mpStopped:
            mnuPlay->setText(QStringLiteral("&Play New MP3"));
            mnuPause->setEnabled(false);
            break;
        case MediaPlayer::mpPaused:
            mnuPause->setText(QStringLiteral("&Resume"));
            mnuPlay->setText(QStringLiteral("&Stop MP3 Play"));
            break;
        case MediaPlayer::mpPlaying:
            mnuPlay->setText(QStringLiteral("&Stop MP3 Play"));
            mnuPause->setEnabled(true);
            break;
        case 6:
            mnuPause->setEnabled(false);
            break;
        default:
            break;
    }
}

void frmCDtoMP3::mnuPause_Click() {
    if (!ActiveMovie1) return;
    if (mnuPause->text() == QLatin1String("Pa&use")) {
        ActiveMovie1->Pause();
        mnuPause->setText(QStringLiteral("&Resume"));
    } else {
        ActiveMovie1->Play();
        mnuPause->setText(QStringLiteral("Pa&use"));
    }
}

void frmCDtoMP3::mnuMute_Click() {
    if (!Components::hasService<Mixer>()) return;
    if (mnuMute->text() == QLatin1String("&Mute")) {
        SavedVolume = Mixer::get().GetMasterVolume();
        Mixer::get().SetMasterVolume(0);
        mnuMute->setText(QStringLiteral("&Un-Mute"));
    } else {
        Mixer::get().SetMasterVolume(SavedVolume);
        mnuMute->setText(QStringLiteral("&Mute"));
    }
}

void frmCDtoMP3::mnuPlayTrack_Click() {
    if (mnuPlayTrack->text() != QLatin1String("&Play Track")) {
        if (CDReader) CDReader->StopAudio();
        mnuPlayTrack->setText(QStringLiteral("&Play Track"));
        CDPlaying = false;
        return;
    }
    mnuPlayTrack->setText(QStringLiteral("Stop CD &Playback"));
    if (List1->selectedItems().isEmpty()) {
        MsgBoxShow(kSelectFirst, kInfo, {}, this);
        return;
    }
    if (!CDReader) return;
    // The reader plays from the drive chosen for the conversion.
    CDReader->setDeviceID(std::max(0, List2->currentRow()));
    CDReader->Open();
    const QList<CDTrack> tracks = CDReader->Tracks();
    SeekTrack = List1->row(List1->selectedItems().first());
    if (SeekTrack >= tracks.size() || !tracks[SeekTrack].IsAudio) {
        MsgBoxShow(QStringLiteral("The selected track is not of audio content.  \r\n\r\nEnsure the "
                                  "correct CD is in your drive before proceeding."),
                   Mb::Exclamation | Mb::SetForeground, {}, this);
        return;
    }
    CDReader->PlayAudioTrack(SeekTrack);
    CDPlaying = true;
    mnuPlayTrack->setText(QStringLiteral("&Stop CD Play"));
}

void frmCDtoMP3::mnuPauseCD_Click() {
    if (!CDPlaying || !CDReader) {
        MsgBoxShow(QStringLiteral("CD audio is not currently being played from this module."),
                   kInfo, {}, this);
        return;
    }
    if (mnuPauseCD->text() == QLatin1String("Pa&use CD")) {
        ResumePosition = CDReader->Position();
        CDReader->PauseAudio();
        mnuPauseCD->setText(QStringLiteral("&Resume CD Play"));
    } else {
        const QList<CDTrack> tracks = CDReader->Tracks();
        if (SeekTrack < tracks.size())
            CDReader->PlayAudioRange(ResumePosition, tracks[SeekTrack].Length);
        mnuPauseCD->setText(QStringLiteral("Pa&use CD"));
    }
}

void frmCDtoMP3::seekBy(int step) {
    if (!CDReader) return;
    const QList<CDTrack> tracks = CDReader->Tracks();
    if (tracks.isEmpty()) return;
    SeekTrack = std::clamp(CDReader->CurrentTrack() - 1 + step, 0, int(tracks.size()) - 1);
    CDReader->PlayAudioRange(tracks[SeekTrack].StartPosition, tracks[SeekTrack].Length);
    CDPlaying = true;
}

void frmCDtoMP3::mnuSeekNext_Click() {
    seekBy(1);
}

void frmCDtoMP3::mnuSeekPrev_Click() {
    seekBy(-1);
}

void frmCDtoMP3::mnuEject_Click() {
    if (CDReader) CDReader->Door(CDReader->DriveState() == cantovel::CDReader::dsDoorOpen);
}

}  // namespace cantovel
