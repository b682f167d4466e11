#pragma once

namespace cantovel {

// Registers the real backends of every service and component.
void registerProductionComponents();
// Registers the program's own windows behind their interfaces: the playlist editor, the
// queue's picture window, the Video Player and the Vivo player.
void registerProgramWindows();

}  // namespace cantovel
