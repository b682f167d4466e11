#include "support/FakeFormatChooser.h"

#include "platform/Components.h"

namespace cantovel::test {

FakeFormatChooser::FakeFormatChooser() {
    instances().append(this);
}

FakeFormatChooser::~FakeFormatChooser() {
    instances().removeOne(this);
}

std::optional<WaveFormat> FakeFormatChooser::choose(const QString& title, const WaveFormat& initial,
                                                    QWidget*) {
    showings.append({title, initial});
    if (answers_.empty()) return initial;
    std::optional<WaveFormat> answer = answers_.front();
    answers_.pop_front();
    return answer;
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
