// CRC-32 of files and texts, with the lone-last-byte rule and the progress reports.
#include <gtest/gtest.h>
#include <zlib.h>

#include <QFile>
#include <QRandomGenerator>

#include "support/AppTest.h"
#include "tags/CCRC32.h"

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
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(bytes);
        f.close();
        crc.setInputFileName(path);
        progress.clear();
        return crc.GetCRCFromFile();
    }
    static QByteArray randomBytes(int n) {
        QByteArray b(n, '\0');
        QRandomGenerator gen(42);
        for (char& c : b) c = char(gen.generate() & 0xFF);
        return b;
    }

    CCRC32 crc;
    std::vector<float> progress;
};

TEST_F(CRCTest, TableIsTheReflectedIEEETable) {
    EXPECT_EQ(CCRC32::Table()[0], 0u);
    EXPECT_EQ(CCRC32::Table()[1], 0x77073096u);
    EXPECT_EQ(CCRC32::Table()[128], 0xEDB88320u);
    EXPECT_EQ(CCRC32::Table()[255], 0x2D02EF8Du);
}

TEST_F(CRCTest, FilesOfSmallSizes) {
    EXPECT_EQ(ofFile("123456789"), 0xCBF43926u);
    EXPECT_EQ(progress, (std::vector<float>{0.0f, 1.0f}));
    EXPECT_EQ(ofFile("AB"), zlibCrc("AB"));
    // A single byte is a lone last byte: never read.
    EXPECT_EQ(ofFile("A"), 0u);
    EXPECT_EQ(progress, (std::vector<float>{0.0f}));
    EXPECT_EQ(ofFile(""), 0u);
    EXPECT_EQ(progress, (std::vector<float>{0.0f}));
}

TEST_F(CRCTest, BlockEdgesLoseOnlyALoneLastByte) {
    const QByteArray data = randomBytes(3 * 32767 + 5);
    // One block exactly.
    EXPECT_EQ(ofFile(data.left(32767)), zlibCrc(data.left(32767)));
    EXPECT_EQ(progress, (std::vector<float>{0.0f, 1.0f}));
    // One byte over: the last byte is left out, and progress stops short of 1.
    EXPECT_EQ(ofFile(data.left(32768)), zlibCrc(data.left(32767)));
    ASSERT_EQ(progress.size(), 2u);
    EXPECT_FLOAT_EQ(progress[1], 32767.0f / 32768.0f);
    // Two bytes over: both are read.
    EXPECT_EQ(ofFile(data.left(32769)), zlibCrc(data.left(32769)));
    EXPECT_EQ(progress.back(), 1.0f);
    // Three blocks and one: the same rule.
    EXPECT_EQ(ofFile(data.left(3 * 32767 + 1)), zlibCrc(data.left(3 * 32767)));
    EXPECT_EQ(progress.size(), 4u);
    EXPECT_EQ(ofFile(data), zlibCrc(data));
}

TEST_F(CRCTest, LargeFileMatchesZlibAcrossReadRuns) {
    // Past one read run of 32 blocks, ending on a lone byte of the next block.
    const QByteArray data = randomBytes(40 * 32767 + 1);
    EXPECT_EQ(ofFile(data), zlibCrc(data.left(40 * 32767)));
    ASSERT_EQ(progress.size(), 41u);
    for (size_t i = 1; i < progress.size(); ++i) EXPECT_GT(progress[i], progress[i - 1]);
}

TEST_F(CRCTest, TextIsTakenAsUtf16LittleEndian) {
    progress.clear();
    EXPECT_EQ(crc.GetCRCFromString(QString()), 0u);
    EXPECT_EQ(progress, (std::vector<float>{0.0f, 1.0f}));

    progress.clear();
    EXPECT_EQ(crc.GetCRCFromString("A"), zlibCrc(QByteArray("A\0", 2)));
    // Byte 0 is a multiple of 4096 and reports nothing; byte 1 reports 1 of 1.
    EXPECT_EQ(progress, (std::vector<float>{0.0f, 1.0f, 1.0f}));

    EXPECT_EQ(crc.GetCRCFromString(QString::fromUtf8("é€")),
              zlibCrc(QByteArray("\xE9\x00\xAC\x20", 4)));
}

TEST_F(CRCTest, TextProgressSkipsMultiplesOf4096) {
    const QString text(5000, QChar('x'));  // 10000 bytes, last index 9999
    progress.clear();
    crc.GetCRCFromString(text);
    // Start, every byte but 0, 4096 and 8192, then the end.
    ASSERT_EQ(progress.size(), 1u + (10000u - 3u) + 1u);
    EXPECT_FLOAT_EQ(progress[1], 1.0f / 9999.0f);
    EXPECT_FLOAT_EQ(progress[4095], 4095.0f / 9999.0f);
    EXPECT_FLOAT_EQ(progress[4096], 4097.0f / 9999.0f);
    EXPECT_EQ(progress.back(), 1.0f);
}

TEST_F(CRCTest, UnreadableFileAsksUntilItCanBeRead) {
    const QString path = tempDir() + "/late.bin";
    crc.setInputFileName(path);
    // The user answers the box twice; then the file has appeared.
    msgBox().onShow = [&](const ShownBox&) {
        if (msgBox().shown.size() == 2) {
            QFile f(path);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write("123456789");
        }
    };
    EXPECT_EQ(crc.GetCRCFromFile(), 0xCBF43926u);
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[0].text, "Error: 53. File not found");
}

}  // namespace
