#include "platform/wavechain/QtFormatChooser.h"

#include "platform/wavechain/FormatDialog.h"

namespace cantovel {

std::optional<WaveFormat> QtFormatChooser::choose(const QString& title, const WaveFormat& initial,
                                                  QWidget* owner) {
    FormatDialog dialog(title, initial, owner);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.format();
}

}  // namespace cantovel
