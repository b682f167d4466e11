#pragma once
// One piece of audio work at a time on its own thread, with its reports handed to the
// owner's thread as queued calls. A report of a run that was stopped or replaced since is
// dropped on arrival, so an owner never hears from a run it has already ended.

#include <QObject>
#include <atomic>
#include <functional>
#include <thread>

namespace cantovel {

class BackgroundJob {
  public:
    // What the work sees of its run.
    class Run {
      public:
        // True once the owner asked the run to end.
        bool stopRequested() const { return job_.stop_.load(std::memory_order_relaxed); }
        // Runs `report` on the owner's thread, unless the run has been ended by then.
        void report(std::function<void()> report) const;

      private:
        friend class BackgroundJob;
        Run(BackgroundJob& job, quint64 generation) : job_(job), generation_(generation) {}
        BackgroundJob& job_;
        quint64 generation_;
    };

    explicit BackgroundJob(QObject* owner) : owner_(owner) {}
    ~BackgroundJob() { stop(); }
    BackgroundJob(const BackgroundJob&) = delete;
    BackgroundJob& operator=(const BackgroundJob&) = delete;

    // Ends any earlier run, then starts `work` on a new thread.
    void start(std::function<void(const Run&)> work);
    // Asks the run to end and waits for its thread; its undelivered reports are dropped.
    // The work looks at the request between blocks, so this returns within one block.
    void stop();
    // True from start() until the work function has returned.
    bool busy() const { return busy_.load(); }

  private:
    QObject* owner_;
    std::thread thread_;
    std::atomic<bool> stop_{false};
    std::atomic<bool> busy_{false};
    std::atomic<quint64> generation_{0};
};

}  // namespace cantovel
