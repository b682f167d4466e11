#include "platform/wavechain/FormatDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLocale>
#include <QPoint>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

namespace cantovel {

namespace {

// Each attribute entry keeps its rate and channels as the item's data.
QVariant packAttributes(int rate, int channels) {
    return QVariant(QPoint(rate, channels));
}

}  // namespace

FormatDialog::FormatDialog(const QString& title, const WaveFormat& initial, QWidget* parent)
    : QDialog(parent),
      encoding_(new QComboBox(this)),
      attributes_(new QComboBox(this)),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
    setWindowTitle(title);
    encoding_->setObjectName(QStringLiteral("Format"));
    attributes_->setObjectName(QStringLiteral("Attributes"));
    for (WaveFormat::Encoding e : WaveFormat::encodings())
        encoding_->addItem(WaveFormat::encodingName(e), int(e));

    auto* form = new QFormLayout;
    form->addRow(tr("&Format:"), encoding_);
    form->addRow(tr("&Attributes:"), attributes_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons_);

    connect(encoding_, &QComboBox::currentIndexChanged, this, &FormatDialog::fillAttributes);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);

    fillAttributes();
    if (!setFormat(initial)) setFormat(WaveFormat{});
}

QString FormatDialog::attributesText(const WaveFormat& format) {
    const QLocale english(QLocale::English);
    const double bytesPerSecond =
        format.sampleRate * format.channels * WaveFormat::bitsPerSample(format.encoding) / 8.0;
    return QStringLiteral("%1 Hz, %2, %3 KB/s")
        .arg(english.toString(format.sampleRate),
             format.channels == 1 ? QStringLiteral("Mono") : QStringLiteral("Stereo"),
             english.toString(qRound(std::ceil(bytesPerSecond / 1024.0))));
}

void FormatDialog::fillAttributes() {
    const QVariant kept = attributes_->currentData();
    attributes_->clear();
    WaveFormat format;
    format.encoding = WaveFormat::Encoding(encoding_->currentData().toInt());
    for (int channels : {1, 2}) {
        for (int rate : WaveFormat::standardRates()) {
            format.sampleRate = rate;
            format.channels = channels;
            if (format.isWritable())
                attributes_->addItem(attributesText(format), packAttributes(rate, channels));
        }
    }
    // A rate and layout the new encoding also offers stays selected.
    const int again = attributes_->findData(kept);
    attributes_->setCurrentIndex(again >= 0 ? again : attributes_->count() - 1);
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(attributes_->count() > 0);
}

WaveFormat FormatDialog::format() const {
    WaveFormat format;
    format.encoding = WaveFormat::Encoding(encoding_->currentData().toInt());
    const QPoint attributes = attributes_->currentData().toPoint();
    format.sampleRate = attributes.x();
    format.channels = attributes.y();
    return format;
}

bool FormatDialog::setFormat(const WaveFormat& format) {
    const int encoding = encoding_->findData(int(format.encoding));
    if (encoding < 0) return false;
    encoding_->setCurrentIndex(encoding);
    const int attributes =
        attributes_->findData(packAttributes(format.sampleRate, format.channels));
    if (attributes < 0) return false;
    attributes_->setCurrentIndex(attributes);
    return true;
}

}  // namespace cantovel
