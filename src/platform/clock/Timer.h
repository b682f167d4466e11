#pragma once
// A window timer with the classic surface: it fires every Interval milliseconds while it
// is Enabled and the interval is above zero. Setting the interval, or switching Enabled,
// starts the count afresh; enabling a timer that is enabled already changes nothing.

#include <QObject>

namespace cantovel {

class Timer : public QObject {
    Q_OBJECT
  public:
    explicit Timer(int interval = 0, QObject* parent = nullptr);
    ~Timer() override;

    void setInterval(int ms);
    int interval() const { return interval_; }
    void setEnabled(bool enabled);
    bool isEnabled() const { return enabled_; }
    bool isRunning() const { return enabled_ && interval_ > 0; }

    // Raises the tick; the clock calls it.
    void fire() { emit timeout(); }

  signals:
    void timeout();

  private:
    int interval_ = 0;
    bool enabled_ = false;
};

}  // namespace cantovel
