#include "app/ProductionComponents.h"

#include "cd/CdTrackFolders.h"
#include "platform/Components.h"
#include "platform/cddrives/LibcdioCdDrives.h"
#include "platform/cdreader/CdioCDReader.h"
#include "platform/clock/QtClock.h"
#include "platform/dialogs/QtFileDialogs.h"
#include "platform/filmplayer/MpvFilmPlayer.h"
#include "platform/instance/LocalInstanceLink.h"
#include "platform/mci/CdioMciDevice.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "platform/mixer/AlsaMixer.h"
#include "platform/mp3decoder/Mpg123Mp3Decoder.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "platform/msgbox/QtMsgBox.h"
#include "platform/registry/RegistryStore.h"
#include "platform/shell/DesktopShell.h"
#include "platform/trackextractor/ParanoiaTrackExtractor.h"
#include "platform/videocd/CdioVideoCdDevice.h"
#include "platform/wavechain/QtFormatChooser.h"
#include "platform/wavechain/SndfileWaveChain.h"
#include "player/frmTemp.h"
#include "playlist/frmPlaylist.h"
#include "shell/CMRU.h"
#include "video/frmVideoPlayer.h"
#include "video/frmVideoPlaylistView.h"
#include "video/frmVivoPlayer.h"

namespace cantovel {

void registerProductionComponents() {
    Components::provideService<MsgBox>(std::make_shared<QtMsgBox>());
    Components::provideService<Clock>(std::make_shared<QtClock>());
    Components::provideService<Mixer>(std::make_shared<AlsaMixer>());
    Components::provideService<Registry>(std::make_shared<RegistryStore>());
    auto dialogs = std::make_shared<QtFileDialogs>();
    dialogs->setPlacesSource(CdTrackFolders);
    Components::provideService<FileDialogs>(dialogs);
    Components::provideService<Shell>(std::make_shared<DesktopShell>());
    Components::provideService<CdDrives>(std::make_shared<LibcdioCdDrives>());
    Components::provideFactory<MciDevice>([] { return std::make_unique<CdioMciDevice>(); });
    Components::provideFactory<InstanceLink>([] { return std::make_unique<LocalInstanceLink>(); });
    Components::provideFactory<Mp3Encoder>([] { return std::make_unique<LameMp3Encoder>(); });
    Components::provideFactory<Mp3Decoder>([] { return std::make_unique<Mpg123Mp3Decoder>(); });
    Components::provideFactory<WaveChain>([] { return std::make_unique<SndfileWaveChain>(); });
    Components::provideFactory<FormatChooser>([] { return std::make_unique<QtFormatChooser>(); });
    Components::provideFactory<MediaPlayer>([] { return std::make_unique<MpvMediaPlayer>(); });
    Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    Components::provideFactory<TrackExtractor>(
        [] { return std::make_unique<ParanoiaTrackExtractor>(); });
    registerProgramWindows();
    // The main window's recent files.
    Components::provideFactory<MruList>([] {
        auto mru = std::make_unique<CMRU>();
        mru->RootKey = RegRoot::LocalMachine;
        mru->RegistryPath = QStringLiteral("SOFTWARE\\Brightfen Cantovel\\MRU");
        mru->SubKey = QStringLiteral("MRU Entries");
        mru->Prefix = QStringLiteral("MRU");
        mru->TagPrefix = QStringLiteral("MRUTag");
        frmTemp& temp = frmTemp::get();
        for (int i = 0; i < int(temp.mnuFileMRU.size()); ++i)
            mru->setMenuItem(i, temp.mnuFileMRU[i]);
        mru->GetMRUList();
        return mru;
    });
    Components::provideFactory<FilmPlayer>([] { return std::make_unique<MpvFilmPlayer>(); });
    Components::provideFactory<VideoCdDevice>([] { return std::make_unique<CdioVideoCdDevice>(); });
}

void registerProgramWindows() {
    Components::provideFactory<PlaylistView>([] { return std::make_unique<frmPlaylist>(); });
    Components::provideFactory<QueueView>([] { return std::make_unique<frmVideoPlaylistView>(); });
    Components::provideFactory<VideoPlayerWindow>(
        [] { return std::make_unique<frmVideoPlayer>(); });
    Components::provideFactory<VivoPlayerWindow>([] { return std::make_unique<frmVivoPlayer>(); });
}

}  // namespace cantovel
