#pragma once
// The dialog behind the format chooser: an encoding ("Format:") and, for it, every rate
// and channel layout a WAV can hold ("Attributes:"), with the data rate each gives.

#include <QDialog>

#include "platform/wavechain/WaveFormat.h"

class QComboBox;
class QDialogButtonBox;

namespace cantovel {

class FormatDialog : public QDialog {
    Q_OBJECT
  public:
    explicit FormatDialog(const QString& title, const WaveFormat& initial,
                          QWidget* parent = nullptr);

    WaveFormat format() const;
    // Selects `format` when the dialog offers it; false otherwise.
    bool setFormat(const WaveFormat& format);

    QComboBox* encodingBox() const { return encoding_; }
    QComboBox* attributesBox() const { return attributes_; }
    QDialogButtonBox* buttons() const { return buttons_; }

    // "8,000 Hz, Mono, 8 KB/s": one line of the attributes list.
    static QString attributesText(const WaveFormat& format);

  private:
    void fillAttributes();

    QComboBox* encoding_;
    QComboBox* attributes_;
    QDialogButtonBox* buttons_;
};

}  // namespace cantovel
