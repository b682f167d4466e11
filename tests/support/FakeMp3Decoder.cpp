#include "support/FakeMp3Decoder.h"

#include "platform/Components.h"

namespace cantovel::test {

FakeMp3Decoder::FakeMp3Decoder(QObject* parent)
    : Mp3Decoder(parent),
      run([this](qint32 value) { emit DecodeProgress(value); }, [this] { emit DecodeDone(); }) {
    instances().append(this);
}

FakeMp3Decoder::~FakeMp3Decoder() {
    instances().removeOne(this);
}

qint16 FakeMp3Decoder::SetFiles(const QString& input, const QString& output) {
    clearError();
    const ScriptedRun::Answer answer = run.answerFor(input);
    run.setFiles(input, output, answer.result == FilesAccepted && !answer.raises);
    if (answer.raises) raise(QStringLiteral("scripted refusal of %1").arg(input));
    return answer.result;
}

void FakeMp3Decoder::StartDecode() {
    clearError();
    run.start();
}

void FakeMp3Decoder::install() {
    Components::provideFactory<Mp3Decoder>([] { return std::make_unique<FakeMp3Decoder>(); });
}

QList<FakeMp3Decoder*>& FakeMp3Decoder::instances() {
    static QList<FakeMp3Decoder*> all;
    return all;
}

FakeMp3Decoder* FakeMp3Decoder::latest() {
    return instances().isEmpty() ? nullptr : instances().last();
}

}  // namespace cantovel::test
