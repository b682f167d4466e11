#include "support/ScriptedRun.h"

#include <QFile>
#include <QFileInfo>

#include "platform/clock/Timer.h"

namespace cantovel::test {

ScriptedRun::ScriptedRun(std::function<void(qint32)> progress, std::function<void()> done)
    : progress_(std::move(progress)), done_(std::move(done)) {}

ScriptedRun::~ScriptedRun() = default;

void ScriptedRun::script(const QString& source, qint16 result, bool raises) {
    answers_[source] = Answer{result, raises};
}

ScriptedRun::Answer ScriptedRun::answerFor(const QString& source) const {
    if (answers_.contains(source)) return answers_.value(source);
    return answers_.value(QFileInfo(source).fileName());
}

void ScriptedRun::setFiles(const QString& input, const QString& output, bool accepted) {
    halt();
    setFilesCalls.append({input, output});
    input_ = input;
    output_ = output;
    accepted_ = accepted;
    writeFailed = false;
    writeError.clear();
}

void ScriptedRun::start() {
    ++starts;
    if (!accepted_ || running) return;
    running = true;
    step_ = 0;
    if (writesOutput) {
        QFile out(output_);
        if (out.open(QIODevice::WriteOnly)) out.write(input_.toUtf8());
    }
    if (autoRun) {
        timer_ = std::make_unique<Timer>(stepMs);
        QObject::connect(timer_.get(), &Timer::timeout, [this] { tick(); });
        timer_->setEnabled(true);
    }
    accepted_ = false;  // a run needs SetFiles again
}

void ScriptedRun::stop() {
    ++stops;
    halt();
}

void ScriptedRun::halt() {
    running = false;
    // The timer may be the one whose tick is running now: it goes once that is over.
    if (timer_) {
        timer_->setEnabled(false);
        timer_.release()->deleteLater();
    }
}

void ScriptedRun::tick() {
    if (++step_ < steps) {
        progress(frameTotal * step_ / steps);
        return;
    }
    finish();
}

void ScriptedRun::progress(qint32 value) {
    if (running) progress_(value);
}

void ScriptedRun::finish() {
    if (!running) return;
    halt();
    progress_(frameTotal);
    done_();
}

}  // namespace cantovel::test
