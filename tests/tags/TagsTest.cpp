// The tags of files: CRC-32 of files and texts (the lone-last-byte rule, the progress
// reports), ID3v1 reading and the MP3 information box, on files the tests write.
#include <gtest/gtest.h>
#include <zlib.h>

#include <QFile>
#include <QRandomGenerator>

#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "tags/CCRC32.h"
#include "tags/MP3Information.h"
#include "tags/clsMP3.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

quint32 zlibCrc(const QByteArray& bytes) {
    return quint32(crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), uInt(bytes.size())));
}

class CRCTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        QObject::connect(&crc, &CCRC32::Progress, [this](float f) { progress.push_back(f); });
    }
    quint32 ofFile(const QByteArray& bytes) {
        const QString path = tempDir() + "/data.bin";
        EXPECT_TRUE(writeBytes(path, bytes));
        crc.setInputFileName(path);
        progress.clear();
        return crc.GetCRCFromFile();
    }
    CCRC32 crc;
    std::vector<float> progress;
};

TEST_F(CRCTest, FilesMatchZlibButForALoneLastByteOfABlock) {
    constexpr int Block = 32767;
    QByteArray data(40 * Block + 1, '\0');
    QRandomGenerator gen(42);
    for (char& c : data) c = char(gen.generate() & 0xFF);
    // Size, bytes read, progress reports (start included).
    const struct {
        int size, read;
        size_t reports;
    } cases[] = {{1, 0, 1},
                 {Block + 1, Block, 2},
                 {Block + 2, Block + 2, 3},
                 // Past one read run of 32 blocks.
                 {40 * Block + 1, 40 * Block, 41}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        EXPECT_EQ(ofFile(data.left(c.size)), zlibCrc(data.left(c.read)));
        ASSERT_EQ(progress.size(), c.reports);
        EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
        if (c.reports > 1) {
            EXPECT_FLOAT_EQ(progress.back(), float(c.read) / float(c.size));
        }
    }
}

TEST_F(CRCTest, TextIsTakenAsUtf16LittleEndianAndReportsEveryByteBut4096s) {
    EXPECT_EQ(crc.GetCRCFromString(QString()), 0u);
    EXPECT_EQ(progress, (std::vector<float>{0.0f, 1.0f}));
    EXPECT_EQ(crc.GetCRCFromString(QString::fromUtf8("é€")),
              zlibCrc(QByteArray("\xE9\x00\xAC\x20", 4)));

    progress.clear();
    crc.GetCRCFromString(QString(5000, QChar('x')));  // 10000 bytes, last index 9999
    // Start, every byte but 0, 4096 and 8192, then the end.
    ASSERT_EQ(progress.size(), 1u + (10000u - 3u) + 1u);
    EXPECT_FLOAT_EQ(progress[1], 1.0f / 9999.0f);
    EXPECT_FLOAT_EQ(progress[4096], 4097.0f / 9999.0f);
    EXPECT_EQ(progress.back(), 1.0f);
}

TEST_F(CRCTest, UnreadableFileAsksUntilItCanBeRead) {
    const QString path = tempDir() + "/late.bin";
    crc.setInputFileName(path);
    // The user answers the box twice; then the file has appeared.
    msgBox().onShow = [&](const ShownBox&) {
        if (msgBox().shown.size() == 2) {
            ASSERT_TRUE(writeBytes(path, "123456789"));
        }
    };
    EXPECT_EQ(crc.GetCRCFromFile(), 0xCBF43926u);
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[0].text, "Error: 53. File not found");
}

// A tag of the fields in order (title, artist, album, year, comment), each padded with `pad`.
QByteArray tag(const QList<QByteArray>& fields, int genre, char pad = ' ',
               const QByteArray& marker = "TAG") {
    const int sizes[] = {30, 30, 30, 4, 30};
    QByteArray t = marker;
    for (int i = 0; i < 5; ++i) t += fields.value(i).left(sizes[i]).leftJustified(sizes[i], pad);
    return t.append(char(genre));
}

class ID3Test : public AppTest {
  protected:
    // An "MP3" of some audio-ish bytes followed by `tail`.
    QString write(const QString& name, const QByteArray& tail, int body = 4000) {
        const QString path = tempDir() + "/" + name;
        EXPECT_TRUE(writeBytes(path, QByteArray(body, char(0xFF)) + tail));
        return path;
    }
    QStringList read(const QString& path) {
        mp3.setFileName(path);
        return {mp3.Title(), mp3.Artist(), mp3.Album(), mp3.Year(), mp3.Comment(), mp3.Genre()};
    }
    clsMP3 mp3;
};

TEST_F(ID3Test, FieldsKeepLeadingBlanksAndNulsAndReadAsTheWindowsCodePage) {
    const QString nul(1, QChar(0));
    const QByteArray full = "123456789012345678901234567890";
    const struct {
        QByteArray tail;
        int body;
        QStringList fields;
    } cases[] = {
        {tag({"Short", full, "Al", "99", ""}, 13, '\0'),
         4000,
         {"Short" + nul.repeated(25), full, "Al" + nul.repeated(28), "99" + nul.repeated(2),
          nul.repeated(30), "Pop"}},
        // A tag exactly the size of the file is still read.
        {tag({"Caf\xe9 \x80 \x93x\x94", "", "", "2001"}, 147),
         0,
         {QString::fromUtf8("Café € “x”"), "", "", "2001", "", "Synth Pop"}},
        // Genre bytes above the list leave the genre blank, nothing else.
        {tag({"Kept", "", "", "2000"}, 148), 4000, {"Kept", "", "", "2000", "", ""}},
    };
    for (const auto& c : cases) EXPECT_EQ(read(write("song.mp3", c.tail, c.body)), c.fields);

    // No tag (a lower-case marker is none), a cut one or no file blank every field, the year
    // to four blanks.
    const QStringList blank{"", "", "", "    ", "", ""};
    EXPECT_EQ(read(write("short.mp3", "TAG", 0)), blank);
    EXPECT_EQ(read(tempDir() + "/missing.mp3"), blank);
    EXPECT_EQ(read(write("lower.mp3", tag({"T", "A", "B", "2001", "C"}, 1, ' ', "tag"))), blank);

    // The genre list keeps its spelling.
    const QStringList genres = clsMP3::GenreList();
    ASSERT_EQ(genres.size(), 148);
    EXPECT_EQ(genres[67] + "|" + genres[117], "Phychedelic|power Ballad");
}

// Leading blanks of a field are kept.
TEST_F(ID3Test, InformationBoxShowsTheFreshTagOrRefusesWhatIsNoMp3) {
    const QString path =
        write("Some Song.MP3", tag({"  Title", "Artist", "", "1987", "Comment"}, 147, '\0'));
    ShowMP3Information(mp3, path);
    ASSERT_EQ(msgBox().shown.size(), 1);
    const ShownBox& box = msgBox().shown[0];
    EXPECT_EQ(box.text,
              "Filename:  Some Song.MP3\r\nTrack Title:    Title\r\nArtist:  Artist\r\n"
              "Album:  \r\nYear:  1987\r\nComment:  Comment\r\nGenre: Synth Pop");
    EXPECT_EQ(box.title, "Cantovel");

    msgBox().reset();
    ShowMP3Information(mp3, QString());
    ShowMP3Information(mp3, write("song.mp2", tag({"T"}, 0)));
    EXPECT_EQ(msgBox().texts(),
              QStringList(2,
                          "A MP3 file is not currently loaded to process.  In order to "
                          "retrieve information on a given MP3 file, you must first load the "
                          "file into the main Cantovel module."));
    EXPECT_TRUE(mp3.FileName().endsWith("Some Song.MP3"));  // the refused names are not taken
}

}  // namespace
