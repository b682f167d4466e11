#include "support/FakeFormatChooser.h"

#include "platform/Components.h"

namespace cantovel::test {

FakeFormatChooser::FakeFormatChooser() {
    instances().append(this);
}

FakeFormatChooser::~FakeFormatChooser() {
    instances().removeOne(this);
}

bool FakeFormatChooser::ChooseFormat(const QString& title, const WaveFormat& initial, QWidget*) {
    showings.append({title, initial});
    std::optional<WaveFormat> answer = initial;
    if (!answers_.empty()) {
        answer = answers_.front();
        answers_.pop_front();
    }
    if (!answer) return false;
    format_ = *answer;
    return true;
}

void FakeFormatChooser::install() {
    Components::provideFactory<FormatChooser>([] { return std::make_unique<FakeFormatChooser>(); });
}

QList<FakeFormatChooser*>& FakeFormatChooser::instances() {
    static QList<FakeFormatChooser*> all;
    return all;
}

FakeFormatChooser* FakeFormatChooser::latest() {
    return instances().isEmpty() ? nullptr : instances().last();
}

}  // namespace cantovel::test
