#include "tags/clsMP3.h"

#include <QFile>

#include "app/FileNames.h"

namespace cantovel {

namespace {

constexpr int TagSize = 128;
constexpr int TextField = 30, YearField = 4, GenreField = 21;

// The program's single-byte code page (Windows-1252): Latin-1 but for 0x80 to 0x9F,
// where the five unassigned codes stand for themselves.
QChar ansiChar(unsigned char byte) {
    static const char16_t high[32] = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    return byte >= 0x80 && byte < 0xA0 ? QChar(high[byte - 0x80]) : QChar(byte);
}

QString ansiText(const QByteArray& bytes, int from, int length) {
    QString text(length, QChar(' '));
    for (int i = 0; i < length; ++i)
        text[i] = ansiChar(static_cast<unsigned char>(bytes[from + i]));
    return text;
}

QString blanks(int length) {
    return QString(length, QChar(' '));
}

// A fixed-length field: cut or padded with blanks to its length.
QString fixedField(const QString& text, int length) {
    return text.left(length).leftJustified(length, QChar(' '));
}

QString withoutTrailingBlanks(QString text) {
    qsizetype end = text.size();
    while (end > 0 && text[end - 1] == QChar(' ')) --end;
    text.truncate(end);
    return text;
}

}  // namespace

clsMP3::clsMP3()
    : title_(blanks(TextField)),
      artist_(blanks(TextField)),
      album_(blanks(TextField)),
      comment_(blanks(TextField)),
      year_(blanks(YearField)),
      genre_(blanks(GenreField)) {}

QStringList clsMP3::GenreList() {
    // The names as the program has always shown them, misspellings included.
    return QStringLiteral(
               "Blues|Classic Rock|Country|Dance|Disco|Funk|Grunge|Hip-Hop|Jazz|Metal|New Age|"
               "Oldies|Other|Pop|R&B|Rap|Reggae|Rock|Techno|Industrial|Alternative|Ska|"
               "Death Metal|Pranks|Soundtrack|Euro-Techno|Ambient|Trip Hop|Vocal|Jazz+Funk|"
               "Fusion|Trance|Classical|Instrumental|Acid|House|Game|Sound Clip|Gospel|Noise|"
               "Alt. Rock|Bass|Soul|Punk|Space|Meditative|Instrumental Pop|Instrumental Rock|"
               "Ethnic|Gothic|Darkwave|Techno-Industrial|Electronic|Pop-Folk|Eurodance|Dream|"
               "Southern Rock|Comedy|Cult|Gangsta Rap|Top 40|Christian Rap|Pop/Punk|Jungle|"
               "Native American|Cabaret|New Wave|Phychedelic|Rave|Showtunes|Trailer|Lo-Fi|"
               "Tribal|Acid Punk|Acid Jazz|Polka|Retro|Musical|Rock & Roll|Hard Rock|Folk|"
               "Folk/Rock|National Folk|Swing|Fast-Fusion|Bebob|Latin|Revival|Celtic|Blue Grass|"
               "Avantegarde|Gothic Rock|Progressive Rock|Psychedelic Rock|Symphonic Rock|"
               "Slow Rock|Big Band|Chorus|Easy Listening|Acoustic|Humour|Speech|Chanson|Opera|"
               "Chamber Music|Sonata|Symphony|Booty Bass|Primus|Porn Groove|Satire|Slow Jam|"
               "Club|Tango|Samba|Folklore|Ballad|power Ballad|Rhythmic Soul|Freestyle|Duet|"
               "Punk Rock|Drum Solo|A Capella|Euro-House|Dance Hall|Goa|Drum & Bass|Club-House|"
               "Hardcore|Terror|indie|Brit Pop|Negerpunk|Polsk Punk|Beat|Christian Gangsta Rap|"
               "Heavy Metal|Black Metal|Crossover|Comteporary Christian|Christian Rock|Merengue|"
               "Salsa|Trash Metal|Anime|JPop|Synth Pop")
        .split(QChar('|'));
}

void clsMP3::setFileName(const QString& path) {
    const QStringList genres = GenreList();
    fileName_ = path;
    title_ = artist_ = album_ = comment_ = blanks(TextField);
    year_ = blanks(YearField);
    genre_ = blanks(GenreField);

    if (KindOfName(path) != NameKind::File) return;
    QFile file;
    if (!OpenByName(file, path, QIODevice::ReadOnly)) return;
    // Always the last 128 bytes; a shorter file has no room for a tag.
    if (file.size() < TagSize || !file.seek(file.size() - TagSize)) return;
    const QByteArray tag = file.read(TagSize);
    file.close();
    if (tag.size() != TagSize || !tag.startsWith("TAG")) return;

    title_ = ansiText(tag, 3, TextField);
    artist_ = ansiText(tag, 33, TextField);
    album_ = ansiText(tag, 63, TextField);
    year_ = ansiText(tag, 93, YearField);
    comment_ = ansiText(tag, 97, TextField);
    const int genre = static_cast<unsigned char>(tag[127]);
    if (genre < genres.size()) genre_ = fixedField(genres[genre], GenreField);
}

QString clsMP3::Title() const {
    return withoutTrailingBlanks(title_);
}
QString clsMP3::Artist() const {
    return withoutTrailingBlanks(artist_);
}
QString clsMP3::Genre() const {
    return withoutTrailingBlanks(genre_);
}
QString clsMP3::Album() const {
    return withoutTrailingBlanks(album_);
}
QString clsMP3::Comment() const {
    return withoutTrailingBlanks(comment_);
}

}  // namespace cantovel
