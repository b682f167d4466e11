#pragma once
// The ID3 version 1 tag of an MP3 file: the 128 bytes at the end of the file, read only.
// Setting FileName reads the tag; the fields are then handed out as text. Nothing is ever
// reported: a missing file, a short file or a file without a tag simply leaves the fields
// blank.

#include <QString>
#include <QStringList>

namespace cantovel {

class clsMP3 {
  public:
    clsMP3();

    QString FileName() const { return fileName_; }
    // Stores the path and reads its tag.
    void setFileName(const QString& path);

    // The fields without their trailing blanks. Only blanks go: a field padded with NUL
    // bytes keeps them.
    QString Title() const;
    QString Artist() const;
    QString Genre() const;
    QString Album() const;
    // The four stored characters exactly, untrimmed: four blanks when there is no tag.
    QString Year() const { return year_; }
    QString Comment() const;

    // The genre names by the tag's genre byte, 0 to 147.
    static QStringList GenreList();

  private:
    QString fileName_;
    QString title_, artist_, album_, comment_, year_, genre_;
};

}  // namespace cantovel
