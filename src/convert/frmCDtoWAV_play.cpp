// CD to WAV's players: a WAV file to check a result, and a track of the disc.
#include <QLabel>
#include <QProgressBar>

#include "cd/CDTrackListView.h"
#include "convert/frmCDtoWAV.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/mixer/Mixer.h"

namespace cantovel {

namespace {

const QString kPlayWav = QStringLiteral("&Play WAV File");
const QString kPause = QStringLiteral("Pa&use");

}  // namespace

// ---- A WAV file ----

void frmCDtoWAV::PlayMenu_Click() {
    if (PlayMenu->text() != kPlayWav) {
        if (ActiveMovie1) ActiveMovie1->Stop();
        PlayMenu->setText(kPlayWav);
        WavPlaying = VFalse;
        return;
    }
    FileDialogRequest request;
    request.title = QStringLiteral("Select WAV File...");
    request.filter = QStringLiteral("WAV Files|*.wav");
    const FileDialogResult chosen = FileDialogs::get().open(this, request);
    if (chosen.cancelled || chosen.file().isEmpty()) return;
    Progressbar1->show();
    if (ActiveMovie1) {
        // The player starts as soon as it has the file, as the control did.
        if (ActiveMovie1->setFileName(chosen.file()) != 0)
            MsgBoxShow(ActiveMovie1->lastErrorDescription(), kInformation);
        else
            ActiveMovie1->Play();
    }
    PlayMenu->setText(QStringLiteral("&Stop"));
    WavPlaying = VTrue;
}

void frmCDtoWAV::ActiveMovie1_StateChange(int, int newState) {
    switch (newState) {
        case MediaPlayer::mpStopped:
            Progressbar1->setValue(0);
            Timer1.setEnabled(false);
            PlayMenu->setText(kPlayWav);
            PauseMenu->setEnabled(false);
            break;
        case MediaPlayer::mpPaused:
            PauseMenu->setText(QStringLiteral("&Resume"));
            PlayMenu->setText(QStringLiteral("&Stop"));
            break;
        case MediaPlayer::mpPlaying:
            PlayMenu->setText(QStringLiteral("&Stop"));
            PauseMenu->setEnabled(true);
            Timer1.setEnabled(true);
            break;
        case MediaPlayer::mpClosed:
            PauseMenu->setEnabled(false);
            break;
        default:
            break;
    }
}

void frmCDtoWAV::Timer1_Timer() {
    if (!ActiveMovie1) return;
    const double length = ActiveMovie1->SelectionEnd() - ActiveMovie1->SelectionStart();
    if (length > 0) Progressbar1->setValue(int(ActiveMovie1->CurrentPosition() / length * 100));
}

void frmCDtoWAV::PauseMenu_Click() {
    if (!ActiveMovie1) return;
    if (PauseMenu->text() == kPause) {
        ActiveMovie1->Pause();
        PauseMenu->setText(QStringLiteral("&Resume"));
    } else {
        ActiveMovie1->Play();
        PauseMenu->setText(kPause);
    }
}

// ---- A track of the disc ----

void frmCDtoWAV::playTrackRange(int index) {
    const QList<CDTrack> tracks = CDReader ? CDReader->Tracks() : QList<CDTrack>();
    if (index < 0 || index >= tracks.size()) return;
    CDReader->PlayAudioRange(tracks[index].StartPosition, tracks[index].Length);
    Progressbar1->setMaximum(int(CInt(double(CDReader::ToFrames(tracks[index].Length)) / 75)));
}

void frmCDtoWAV::PlayCDMenu_Click() {
    if (PlayCDMenu->text() != kPlayTrack) {
        if (CDReader) CDReader->StopAudio();
        PlayCDMenu->setText(kPlayTrack);
        CDPlaying = VFalse;
        Progressbar1->setValue(0);
        Timer3.setEnabled(false);
        Label1->setText(QStringLiteral("Audio CD play has been stopped."));
        return;
    }
    // Until the play starts, or the next tick, the command reads so.
    PlayCDMenu->setText(QStringLiteral("Stop CD &Playback"));
    if (!ListView->anySelected()) {
        MsgBoxShow(QStringLiteral("You must select the audio track(s) you wish to convert before "
                                  "proceeding."),
                   kInformation);
        return;
    }
    if (!CDReader) return;
    const QList<CDTrack> tracks = CDReader->Tracks();
    for (int i = 0; i < ListView->topLevelItemCount(); ++i) {
        if (ListView->topLevelItem(i)->isSelected() && (i >= tracks.size() || !tracks[i].IsAudio)) {
            MsgBoxShow(QStringLiteral("The selected track is not of audio content.  \r\n\r\n"
                                      "Ensure the correct CD is in your drive before proceeding."),
                       kExclamation);
            return;
        }
    }
    Progressbar1->show();
    SeekTrack = ListView->selectedIndex();
    CDReader->PlayAudioTrack(int(SeekTrack));
    if (SeekTrack >= 0 && SeekTrack < tracks.size())
        Progressbar1->setMaximum(
            int(CInt(double(CDReader::ToFrames(tracks[SeekTrack].Length)) / 75)));
    Label1->setText(QStringLiteral("Audio CD play in progress..."));
    CDPlaying = VTrue;
    Timer3.setEnabled(true);
    PlayCDMenu->setText(kStopCDPlay);
}

void frmCDtoWAV::Timer3_Timer() {
    if (!CDReader) return;
    const QList<CDTrack> tracks = CDReader->Tracks();
    if (SeekTrack < 0 || SeekTrack >= tracks.size()) return;
    const double seconds = double(CDReader::ToFrames(CDReader->Position())) / 75 -
                           double(CDReader::ToFrames(tracks[SeekTrack].StartPosition)) / 75;
    Progressbar1->setValue(int(CInt(seconds)));
    if (Progressbar1->value() == Progressbar1->maximum()) {
        CDPlaying = VFalse;
        Timer3.setEnabled(false);
        Label1->setText(QStringLiteral("Audio CD play has successfully completed."));
        Progressbar1->setValue(0);
        PlayCDMenu->setText(kPlayTrack);
    }
}

void frmCDtoWAV::seekBy(int step) {
    if (!CDReader) return;
    Progressbar1->show();
    Progressbar1->setValue(0);
    const int count = CDReader->TrackCount();
    int track = CDReader->CurrentTrack() + step;
    if (track > count) track = 1;
    if (track < 1) track = count;
    SeekTrack = track - 1;
    playTrackRange(int(SeekTrack));
    Timer3.setEnabled(true);
}

void frmCDtoWAV::SeekNextMenu_Click() {
    seekBy(1);
}

void frmCDtoWAV::SeekPrevMenu_Click() {
    seekBy(-1);
}

void frmCDtoWAV::MuteMenu_Click() {
    if (MuteMenu->text() == QLatin1String("&Mute")) {
        MuteVolume = Mixer::get().GetMasterVolume();
        Mixer::get().SetMasterVolume(0);
        MuteMenu->setText(QStringLiteral("&Un-Mute"));
    } else {
        Mixer::get().SetMasterVolume(MuteVolume);
        MuteMenu->setText(QStringLiteral("&Mute"));
    }
}

}  // namespace cantovel
