#pragma once
// Reads and writes one INI file, the way the system's profile functions do: sections and
// keys compare without regard to case, a value is read into a buffer of 128 characters
// (so at most 127 come back), and a missing file, section or key gives the default.

#include <QString>
#include <QVariant>

namespace cantovel {

class INIFiles {
  public:
    QString FileName;

    // The value of `Key` in `Section`, or `Default`. All three are taken as any value and
    // turned to text.
    QString ReadINI(const QVariant& Section, const QVariant& Key, const QVariant& Default);
    // Writes `Key`=`Value` into `Section`, making the file and the section as needed.
    void WriteINI(const QVariant& Section, const QVariant& Key, const QVariant& Value);

    static constexpr int BufferSize = 128;

  private:
    long result_ = 0;  // what the last profile call answered
};

}  // namespace cantovel
