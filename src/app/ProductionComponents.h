#pragma once

namespace cantovel {

// Registers the real backends of every service and component.
void registerProductionComponents();

}  // namespace cantovel
