#include "support/FakeVivoPlayerWindow.h"

#include "platform/Components.h"

namespace cantovel::test {

void FakeVivoPlayerWindow::install() {
    Components::provideFactory<VivoPlayerWindow>(
        [] { return std::make_unique<FakeVivoPlayerWindow>(); });
}

}  // namespace cantovel::test
