#pragma once
// A new output file written under a temporary name in its destination folder and put in
// place of its final name only once it is complete, so an older file of that name is
// never left half overwritten: it is either as it was or replaced by the whole new one.

#include <QString>
#include <atomic>

namespace cantovel {

class StagedOutput {
  public:
    explicit StagedOutput(const QString& finalPath);
    // What is neither kept nor dropped by then is dropped.
    ~StagedOutput();
    StagedOutput(const StagedOutput&) = delete;
    StagedOutput& operator=(const StagedOutput&) = delete;

    // Makes the temporary file, empty, beside the final one. False when the folder takes
    // no new file; error() then says why.
    bool create();
    // Where the writer writes, from create() on.
    QString path() const { return path_; }
    QString finalPath() const { return final_; }

    // Puts the written file in place of the final name (taking over an older file's
    // permissions). False when that fails; the temporary file is then dropped.
    bool keep();
    // Drops the written file; an older file of the final name stays as it was.
    void drop();
    // After a failed write: an older file of the final name stays as it was; without one,
    // what was written takes the name, as far as it got.
    void fail();
    // Only the first of keep() and drop() acts.
    bool settled() const { return settled_.load(); }

    // The system's error number of the failed step, and its text.
    int error() const { return error_; }
    QString errorText() const;

  private:
    QString final_;
    QString path_;
    std::atomic<bool> settled_{true};
    int error_ = 0;
};

// The text of a system error number, as the user reads it.
QString systemErrorText(int error);

}  // namespace cantovel
