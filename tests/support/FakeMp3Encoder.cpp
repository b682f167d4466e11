#include "support/FakeMp3Encoder.h"

#include "platform/Components.h"

namespace cantovel::test {

FakeMp3Encoder::FakeMp3Encoder(QObject* parent)
    : Mp3Encoder(parent),
      run([this](qint32 value) { emit EncodeProgress(value); }, [this] { emit EncodeDone(); }) {
    instances().append(this);
}

FakeMp3Encoder::~FakeMp3Encoder() {
    instances().removeOne(this);
}

qint16 FakeMp3Encoder::SetFiles(const QString& input, const QString& output) {
    clearError();
    const ScriptedRun::Answer answer = run.answerFor(input);
    run.setFiles(input, output, answer.result == FilesAccepted && !answer.raises);
    if (answer.raises) raise(QStringLiteral("scripted refusal of %1").arg(input));
    return answer.result;
}

void FakeMp3Encoder::Start() {
    clearError();
    startSettings.append({Bitrate(), DownMix()});
    run.start();
}

void FakeMp3Encoder::install() {
    Components::provideFactory<Mp3Encoder>([] { return std::make_unique<FakeMp3Encoder>(); });
}

QList<FakeMp3Encoder*>& FakeMp3Encoder::instances() {
    static QList<FakeMp3Encoder*> all;
    return all;
}

FakeMp3Encoder* FakeMp3Encoder::latest() {
    return instances().isEmpty() ? nullptr : instances().last();
}

}  // namespace cantovel::test
