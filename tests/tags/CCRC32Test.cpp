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
    } cases[] = {{0, 0, 1},
                 {1, 0, 1},
                 {2, 2, 2},
                 {Block, Block, 2},
                 {Block + 1, Block, 2},
                 {Block + 2, Block + 2, 3},
                 {3 * Block + 1, 3 * Block, 4},
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
    EXPECT_EQ(ofFile("123456789"), 0xCBF43926u);
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
