#pragma once
#include "platform/wavechain/FormatChooser.h"

namespace cantovel {

// The format chooser as a modal Qt dialog.
class QtFormatChooser : public FormatChooser {
  public:
    bool ChooseFormat(const QString& title, const WaveFormat& initial, QWidget* owner) override;
};

}  // namespace cantovel
