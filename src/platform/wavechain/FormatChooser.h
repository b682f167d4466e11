#pragma once
// The audio format dialog of the batch converter: the user picks what the converted WAV
// files will hold.

#include <QString>

#include "platform/wavechain/WaveFormat.h"

class QWidget;

namespace cantovel {

class FormatChooser {
  public:
    virtual ~FormatChooser() = default;

    // Shows the dialog titled `title`, starting at `initial`. True when the user chose a
    // format; Format() then gives it. A cancelled dialog keeps the format chosen before.
    virtual bool ChooseFormat(const QString& title, const WaveFormat& initial = {},
                              QWidget* owner = nullptr) = 0;
    WaveFormat Format() const { return format_; }

  protected:
    WaveFormat format_;
};

}  // namespace cantovel
