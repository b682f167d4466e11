#include "app/ProductionComponents.h"

#include "platform/Components.h"
#include "platform/cddrives/LibcdioCdDrives.h"
#include "platform/cdreader/CdioCDReader.h"
#include "platform/clock/QtClock.h"
#include "platform/mci/CdioMciDevice.h"
#include "platform/dialogs/QtFileDialogs.h"
#include "platform/instance/LocalInstanceLink.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "platform/mixer/AlsaMixer.h"
#include "platform/mp3decoder/Mpg123Mp3Decoder.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "platform/msgbox/QtMsgBox.h"
#include "platform/registry/RegistryStore.h"
#include "platform/shell/DesktopShell.h"
#include "platform/wavechain/QtFormatChooser.h"
#include "platform/wavechain/SndfileWaveChain.h"

namespace cantovel {

void registerProductionComponents() {
    Components::provideService<MsgBox>(std::make_shared<QtMsgBox>());
    Components::provideService<Clock>(std::make_shared<QtClock>());
    Components::provideService<Mixer>(std::make_shared<AlsaMixer>());
    Components::provideService<Registry>(std::make_shared<RegistryStore>());
    Components::provideService<FileDialogs>(std::make_shared<QtFileDialogs>());
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
}

}  // namespace cantovel
