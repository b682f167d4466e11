#include "app/ProductionComponents.h"

#include "platform/Components.h"
#include "platform/clock/QtClock.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "platform/msgbox/QtMsgBox.h"

namespace cantovel {

void registerProductionComponents() {
    Components::provideService<MsgBox>(std::make_shared<QtMsgBox>());
    Components::provideService<Clock>(std::make_shared<QtClock>());
    Components::provideFactory<MediaPlayer>([] { return std::make_unique<MpvMediaPlayer>(); });
}

}  // namespace cantovel
