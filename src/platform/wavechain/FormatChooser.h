#pragma once
// The audio format dialog of the batch converter: the user picks what the converted WAV
// files will hold.

#include <QString>
#include <optional>

#include "platform/wavechain/WaveFormat.h"

class QWidget;

namespace cantovel {

class FormatChooser {
  public:
    virtual ~FormatChooser() = default;

    // Shows the dialog titled `title`, starting at `initial`. True when the user chose a
    // format; Format() then gives it. A cancelled dialog keeps the format chosen before.
    bool ChooseFormat(const QString& title, const WaveFormat& initial = {},
                      QWidget* owner = nullptr) {
        const auto chosen = choose(title, initial, owner);
        if (chosen) format_ = *chosen;
        return chosen.has_value();
    }
    WaveFormat Format() const { return format_; }

  protected:
    // Shows the dialog: the format chosen, or nothing when the user declined.
    virtual std::optional<WaveFormat> choose(const QString& title, const WaveFormat& initial,
                                             QWidget* owner) = 0;

  private:
    WaveFormat format_;
};

}  // namespace cantovel
