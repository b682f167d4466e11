#pragma once
#include "platform/wavechain/FormatChooser.h"

namespace cantovel {

// The format chooser as a modal Qt dialog.
class QtFormatChooser : public FormatChooser {
  protected:
    std::optional<WaveFormat> choose(const QString& title, const WaveFormat& initial,
                                     QWidget* owner) override;
};

}  // namespace cantovel
