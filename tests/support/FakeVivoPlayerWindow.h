#pragma once
// The Vivo film window as the player core needs it, recording every call on its film
// control.

#include <QStringList>

#include "app/Form.h"
#include "player/VivoPlayerWindow.h"

namespace cantovel::test {

class FakeVivoPlayerWindow : public Form, public VivoPlayerWindow {
    Q_OBJECT
  public:
    // Makes the component factory load this window when the player touches it.
    static void install();

    FakeVivoPlayerWindow() : Form(QStringLiteral("frmVivoPlayer")) {}

    void VvWeb1Open(const QString& path) override { calls << QStringLiteral("Open=") + path; }
    void VvWeb1Play() override { calls << QStringLiteral("Play"); }
    void VvWeb1Stop() override { calls << QStringLiteral("Stop"); }

    // "Open=<path>", "Play", "Stop".
    QStringList calls;
};

}  // namespace cantovel::test
