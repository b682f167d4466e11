#pragma once
// The scripted heart of the fake encoder and decoder: what SetFiles answers for each
// source, what the fake was asked to do, and runs driven by explicit calls or by virtual
// time (FakeClock) through a window timer.

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <functional>
#include <memory>

namespace cantovel {
class Timer;
}

namespace cantovel::test {

class ScriptedRun {
  public:
    struct Answer {
        qint16 result = 0;
        // Raises the component-refused run-time error from SetFiles as well.
        bool raises = false;
    };

    ScriptedRun(std::function<void(qint32)> progress, std::function<void()> done);
    ~ScriptedRun();

    // Script: SetFiles on a source whose file name (or full path) is `source` answers so.
    void script(const QString& source, qint16 result, bool raises = false);
    Answer answerFor(const QString& source) const;

    // The count progress runs up to.
    qint32 frameTotal = 100;
    // On start, a run goes by itself in virtual time: `steps` progress events `stepMs`
    // apart, then the end. Otherwise the test drives it with progress()/finish().
    bool autoRun = false;
    int steps = 4;
    int stepMs = 100;
    // On start, the output file is written with the source's name in it, so tests can
    // tell which source made an output.
    bool writesOutput = true;

    // Record.
    QList<QPair<QString, QString>> setFilesCalls;
    int starts = 0;
    int stops = 0;
    bool running = false;
    bool writeFailed = false;
    QString writeError;

    // Component side.
    void setFiles(const QString& input, const QString& output, bool accepted);
    void start();
    void stop();

    // Test side: raise events of the current run.
    void progress(qint32 value);
    // Last progress (the total) and the end.
    void finish();

  private:
    void tick();
    void halt();

    std::function<void(qint32)> progress_;
    std::function<void()> done_;
    QHash<QString, Answer> answers_;
    QString input_, output_;
    bool accepted_ = false;
    int step_ = 0;
    std::unique_ptr<Timer> timer_;
};

}  // namespace cantovel::test
