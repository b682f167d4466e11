#pragma once
// The Vivo film window as the player core needs it, recording every call on its film
// control.

#include <QStringList>

#include "app/Form.h"
#include "player/VivoPlayerWindow.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeVivoPlayerWindow : public Form,
                             public VivoPlayerWindow,
                             public TrackedFake<FakeVivoPlayerWindow, VivoPlayerWindow> {
    Q_OBJECT
  public:
    FakeVivoPlayerWindow() : Form(QStringLiteral("frmVivoPlayer")), TrackedFake(this) {}

    void VvWeb1Open(const QString& path) override { calls << QStringLiteral("Open=") + path; }
    void VvWeb1Play() override { calls << QStringLiteral("Play"); }
    void VvWeb1Stop() override { calls << QStringLiteral("Stop"); }

    // "Open=<path>", "Play", "Stop".
    QStringList calls;
};

}  // namespace cantovel::test
