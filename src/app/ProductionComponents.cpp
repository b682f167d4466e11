#include "app/ProductionComponents.h"

#include "platform/Components.h"
#include "platform/clock/QtClock.h"
#include "platform/dialogs/QtFileDialogs.h"
#include "platform/instance/LocalInstanceLink.h"
#include "platform/mixer/AlsaMixer.h"
#include "platform/msgbox/QtMsgBox.h"
#include "platform/registry/RegistryStore.h"
#include "platform/shell/DesktopShell.h"

namespace cantovel {

void registerProductionComponents() {
    Components::provideService<MsgBox>(std::make_shared<QtMsgBox>());
    Components::provideService<Clock>(std::make_shared<QtClock>());
    Components::provideService<Mixer>(std::make_shared<AlsaMixer>());
    Components::provideService<Registry>(std::make_shared<RegistryStore>());
    Components::provideService<FileDialogs>(std::make_shared<QtFileDialogs>());
    Components::provideService<Shell>(std::make_shared<DesktopShell>());
    Components::provideFactory<InstanceLink>([] { return std::make_unique<LocalInstanceLink>(); });
}

}  // namespace cantovel
