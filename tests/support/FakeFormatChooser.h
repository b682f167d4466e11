#pragma once
// A scripted format dialog: answers from a script, records every showing.

#include <QList>
#include <deque>
#include <optional>

#include "platform/wavechain/FormatChooser.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeFormatChooser : public FormatChooser,
                          public TrackedFake<FakeFormatChooser, FormatChooser> {
  public:
    FakeFormatChooser() : TrackedFake(this) {}
    // The next showings choose these formats, or decline for a nothing; past the script
    // each showing chooses the format it starts at.
    void script(std::initializer_list<std::optional<WaveFormat>> answers) {
        answers_.insert(answers_.end(), answers);
    }

    struct Showing {
        QString title;
        WaveFormat initial;
    };
    QList<Showing> showings;

  protected:
    std::optional<WaveFormat> choose(const QString& title, const WaveFormat& initial,
                                     QWidget*) override {
        showings.append({title, initial});
        if (answers_.empty()) return initial;
        std::optional<WaveFormat> answer = answers_.front();
        answers_.pop_front();
        return answer;
    }

  private:
    std::deque<std::optional<WaveFormat>> answers_;
};

}  // namespace cantovel::test
