#pragma once
// The run-time error a closed component raises from a call: its number (0 when the call
// went through) and its text, left for the caller to read after the call, the way the
// windows read the runtime's error after calling a control. Each call that can raise
// clears them first.

#include <QString>

namespace cantovel {

class RaisedError {
  public:
    // The error of a component refusing a file or a request.
    static constexpr qint32 ErrRefused = qint32(0x80004005u);

    qint32 lastError() const { return lastError_; }
    QString lastErrorDescription() const { return lastErrorText_; }

  protected:
    void clearError() {
        lastError_ = 0;
        lastErrorText_.clear();
    }
    void raise(const QString& description, qint32 number = ErrRefused) {
        lastError_ = number;
        lastErrorText_ = description;
    }

  private:
    qint32 lastError_ = 0;
    QString lastErrorText_;
};

}  // namespace cantovel
