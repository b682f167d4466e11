#include "support/FakeFormatChooser.h"

namespace cantovel::test {

std::optional<WaveFormat> FakeFormatChooser::choose(const QString& title, const WaveFormat& initial,
                                                    QWidget*) {
    showings.append({title, initial});
    if (answers_.empty()) return initial;
    std::optional<WaveFormat> answer = answers_.front();
    answers_.pop_front();
    return answer;
}

}  // namespace cantovel::test
