#include "platform/wavechain/BackgroundJob.h"

#include <QMetaObject>

namespace cantovel {

void BackgroundJob::Run::report(std::function<void()> report) const {
    BackgroundJob* job = &job_;
    const quint64 generation = generation_;
    // The owner's destruction discards the queued call with it, and the job dies with
    // its owner, so `job` is alive whenever the call is delivered.
    QMetaObject::invokeMethod(
        job->owner_,
        [job, generation, report = std::move(report)] {
            if (job->generation_.load() == generation) report();
        },
        Qt::QueuedConnection);
}

void BackgroundJob::start(std::function<void(const Run&)> work) {
    stop();
    stop_ = false;
    busy_ = true;
    const quint64 generation = ++generation_;
    thread_ = std::thread([this, generation, work = std::move(work)]() mutable {
        work(Run(*this, generation));
        // What the work holds (files above all) is released before the job reads idle.
        work = nullptr;
        busy_ = false;
    });
}

void BackgroundJob::stop() {
    stop_ = true;
    ++generation_;
    if (thread_.joinable()) thread_.join();
    busy_ = false;
}

}  // namespace cantovel
