#include "skin/ResPicture.h"

#include <QFile>
#include <QString>
#include <QtEndian>
#include <cstdlib>

// The resources live in a static library: nothing would pull them into the program
// unless they are asked for by name.
static void initSkinResources() {
    Q_INIT_RESOURCE(skin);
}

namespace cantovel {

QPixmap LoadResPicture(int id) {
    static const bool ready = (initSkinResources(), true);
    (void)ready;
    return QPixmap(QStringLiteral(":/res/%1").arg(id));
}

namespace {

// False for a Windows bitmap that is cut short: a header that is not all there, or fewer
// pixel bytes than its size and depth need. Anything else is left to the image reader.
bool bitmapIsWhole(const QByteArray& data) {
    if (!data.startsWith("BM")) return true;
    const auto u32 = [&](qsizetype at) {
        return qFromLittleEndian<quint32>(reinterpret_cast<const uchar*>(data.constData()) + at);
    };
    const auto u16 = [&](qsizetype at) {
        return qFromLittleEndian<quint16>(reinterpret_cast<const uchar*>(data.constData()) + at);
    };
    if (data.size() < 26) return false;
    const qint64 offBits = u32(10);
    const quint32 headerSize = u32(14);
    qint64 width, height, bits, compression = 0;
    if (headerSize == 12) {
        width = qint16(u16(18));
        height = qint16(u16(20));
        bits = u16(24);
    } else {
        if (headerSize < 40 || data.size() < 14 + 40) return false;
        width = qint32(u32(18));
        height = qint32(u32(22));
        bits = u16(28);
        compression = u32(30);
    }
    if (offBits < 14 + headerSize || offBits >= data.size()) return false;
    // Run-length and embedded pictures have no fixed size; the reader checks those.
    constexpr qint64 Rgb = 0, BitFields = 3, AlphaBitFields = 6;
    if (compression != Rgb && compression != BitFields && compression != AlphaBitFields)
        return true;
    const qint64 stride = (std::abs(width) * bits + 31) / 32 * 4;
    return offBits + stride * std::abs(height) <= data.size();
}

}  // namespace

QPixmap ReadSkinPicture(const QString& path) {
    if (path.isEmpty()) return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray data = file.readAll();
    QPixmap p;
    if (!bitmapIsWhole(data) || !p.loadFromData(data)) return {};
    return p;
}

}  // namespace cantovel
