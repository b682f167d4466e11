#include "platform/shell/Shell.h"

#include "platform/Components.h"

namespace cantovel {

Shell& Shell::get() {
    return Components::service<Shell>();
}

}  // namespace cantovel
