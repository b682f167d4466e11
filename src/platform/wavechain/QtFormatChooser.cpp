#include "platform/wavechain/QtFormatChooser.h"

#include "platform/wavechain/FormatDialog.h"

namespace cantovel {

bool QtFormatChooser::ChooseFormat(const QString& title, const WaveFormat& initial,
                                   QWidget* owner) {
    FormatDialog dialog(title, initial, owner);
    if (dialog.exec() != QDialog::Accepted) return false;
    format_ = dialog.format();
    return true;
}

}  // namespace cantovel
