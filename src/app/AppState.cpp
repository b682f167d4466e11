#include "app/AppState.h"

namespace cantovel {

VBool AppClosing = VFalse;

}  // namespace cantovel
