#pragma once
// The Vivo film window (frmVivoPlayer) as the player sees it: the operations of its film
// control `VvWeb1` that the main window calls.

#include <QString>

namespace cantovel {

class VivoPlayerWindow {
  public:
    virtual ~VivoPlayerWindow() = default;

    // Sets the film; the empty text unloads it.
    virtual void VvWeb1Open(const QString& path) = 0;
    // Starts, or resumes after a stop that kept the film.
    virtual void VvWeb1Play() = 0;
    virtual void VvWeb1Stop() = 0;
};

}  // namespace cantovel
