#pragma once
// A sound format a WAV file can hold: the sample encoding, the rate and the channels.
// The batch converter's format dialog returns one, the conversion chain writes it, and
// the settings keep it as a short text ("ulaw,8000,1").

#include <QList>
#include <QString>
#include <optional>

namespace cantovel {

struct WaveFormat {
    enum Encoding {
        Pcm8,
        Pcm16,
        Pcm24,
        Pcm32,
        Float32,
        MuLaw,
        ALaw,
        ImaAdpcm,
        MsAdpcm,
        Gsm610,
    };

    WaveFormat() = default;
    WaveFormat(Encoding encoding, int sampleRate, int channels)
        : encoding(encoding), sampleRate(sampleRate), channels(channels) {}

    Encoding encoding = Pcm16;
    int sampleRate = 44100;
    int channels = 2;

    // Every encoding, in the order the dialog lists them.
    static QList<Encoding> encodings();
    // The rates the dialog offers, lowest first.
    static QList<int> standardRates();
    // "PCM 16-bit", "µ-law", "GSM 6.10", ...
    static QString encodingName(Encoding encoding);
    // Rough size of the encoded sound, in bits a sample (GSM packs 1.625).
    static double bitsPerSample(Encoding encoding);

    // The libsndfile format code: a WAV with this encoding.
    int sndfileFormat() const;
    // True when libsndfile can write this combination (GSM 6.10 is mono only, ...).
    bool isWritable() const;
    // "µ-law, 8,000 Hz, Mono" for people.
    QString description() const;
    // "ulaw,8000,1" for the settings; fromSettingsText reads it back, or nothing for a
    // text that doesn't name a writable format.
    QString toSettingsText() const;
    static std::optional<WaveFormat> fromSettingsText(const QString& text);

    bool operator==(const WaveFormat&) const = default;
};

}  // namespace cantovel
