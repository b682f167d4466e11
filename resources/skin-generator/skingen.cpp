// Draws the built-in skin: the main window's face and its strips, and the playlist
// window's face. The bitmaps are committed; run ./make-skin after changing this file.
//
// Every size and place here follows the fixed layout of the two windows: a skin may
// change the pictures, never where the controls sit.
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QString>
#include <cstdio>
#include <functional>
#include <map>

namespace {

// ---- Palette -------------------------------------------------------------------------

const QColor BodyTop(0x3a, 0x40, 0x4a);
const QColor BodyBottom(0x22, 0x26, 0x2d);
const QColor EdgeLight(0x6a, 0x74, 0x82);
const QColor EdgeDark(0x0b, 0x0d, 0x10);
const QColor BarTop(0x1f, 0x4d, 0x6b);
const QColor BarBottom(0x14, 0x2f, 0x43);
const QColor MenuText(0xd8, 0xe0, 0xea);
const QColor LcdBack(0x0c, 0x1a, 0x18);
const QColor LcdGhost(0x17, 0x2e, 0x2a);
const QColor LcdLit(0x7c, 0xf5, 0xc6);
const QColor LcdDim(0x3f, 0x8f, 0x74);
const QColor Caption(0x8a, 0x9a, 0xa8);
const QColor Icon(0xd2, 0xda, 0xe4);
const QColor IconPressed(0x7c, 0xf5, 0xc6);
const QColor ButtonTop(0x4a, 0x52, 0x5e);
const QColor ButtonBottom(0x2c, 0x31, 0x39);
const QColor PressedTop(0x16, 0x1a, 0x1f);
const QColor PressedBottom(0x24, 0x29, 0x30);

// ---- A 3 by 5 pixel font for the small captions ----------------------------------------

const std::map<QChar, const char*>& tinyGlyphs() {
    static const std::map<QChar, const char*> glyphs{
        {'A', "010101111101101"}, {'B', "110101110101110"}, {'C', "011100100100011"},
        {'D', "110101101101110"}, {'E', "111100110100111"}, {'F', "111100110100100"},
        {'G', "011100101101011"}, {'H', "101101111101101"}, {'I', "111010010010111"},
        {'K', "101101110101101"}, {'L', "100100100100111"}, {'M', "101111111101101"},
        {'N', "110101101101101"}, {'O', "010101101101010"}, {'P', "110101110100100"},
        {'R', "110101110101101"}, {'S', "011100010001110"}, {'T', "111010010010010"},
        {'U', "101101101101111"}, {'V', "101101101101010"}, {'Y', "101101010010010"},
        {'W', "101101111111101"}, {'X', "101101010101101"}, {'+', "000010111010000"},
        {'-', "000000111000000"}, {':', "000010000010000"}, {'/', "001001010100100"},
        {'0', "111101101101111"}, {'1', "010110010010111"}, {'2', "110001010100111"},
        {'3', "110001010001110"}, {'4', "101101111001001"}, {'5', "111100110001110"},
        {'6', "011100111101111"}, {'7', "111001010010010"}, {'8', "111101111101111"},
        {'9', "111101111001110"}, {' ', "000000000000000"}};
    return glyphs;
}

int tinyWidth(const QString& text) {
    return text.isEmpty() ? 0 : int(text.size()) * 4 - 1;
}

void tinyText(QPainter& p, int x, int y, const QString& text, const QColor& color) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    for (QChar c : text) {
        auto it = tinyGlyphs().find(c.toUpper());
        if (it != tinyGlyphs().end())
            for (int i = 0; i < 15; ++i)
                if (it->second[i] == '1') p.fillRect(x + i % 3, y + i / 3, 1, 1, color);
        x += 4;
    }
    p.restore();
}

void tinyTextCentred(QPainter& p, int cx, int y, const QString& text, const QColor& color) {
    tinyText(p, cx - tinyWidth(text) / 2, y, text, color);
}

// ---- Shapes ----------------------------------------------------------------------------

void bevel(QPainter& p, const QRect& r, const QColor& light, const QColor& dark) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.fillRect(r.left(), r.top(), r.width(), 1, light);
    p.fillRect(r.left(), r.top(), 1, r.height(), light);
    p.fillRect(r.left(), r.bottom(), r.width(), 1, dark);
    p.fillRect(r.right(), r.top(), 1, r.height(), dark);
    p.restore();
}

void gradientRect(QPainter& p, const QRect& r, const QColor& top, const QColor& bottom) {
    QLinearGradient g(r.topLeft(), r.bottomLeft());
    g.setColorAt(0, top);
    g.setColorAt(1, bottom);
    p.fillRect(r, g);
}

// A recessed panel: dark inside, shadow above and left, light below and right.
void well(QPainter& p, const QRect& r, const QColor& inside) {
    p.fillRect(r, inside);
    bevel(p, r, EdgeDark, EdgeLight.darker(130));
}

// The window body with its double edge.
void body(QPainter& p, const QRect& r) {
    gradientRect(p, r, BodyTop, BodyBottom);
    bevel(p, r, EdgeLight, EdgeDark);
    bevel(p, r.adjusted(1, 1, -1, -1), EdgeLight.darker(140), EdgeDark.lighter(180));
}

// The caption band across the top with the program's name.
void captionBar(QPainter& p, int width, const QString& title) {
    const QRect bar(2, 2, width - 4, 13);
    gradientRect(p, bar, BarTop, BarBottom);
    p.fillRect(QRect(2, 15, width - 4, 1), EdgeDark);
    tinyText(p, 18, 6, title, MenuText);
}

// The system menu area: a small disc.
void sysMenuIcon(QPainter& p, const QRect& r) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);
    QRadialGradient g(r.center() + QPointF(-1, -1), r.width() / 2.0);
    g.setColorAt(0, QColor(0xe8, 0xf6, 0xff));
    g.setColorAt(0.55, QColor(0x7c, 0xb8, 0xd8));
    g.setColorAt(1, QColor(0x2a, 0x55, 0x70));
    p.setBrush(g);
    p.setPen(QPen(EdgeDark, 0.8));
    p.drawEllipse(QRectF(r).adjusted(0.5, 0.5, -0.5, -0.5));
    p.setBrush(EdgeDark);
    p.setPen(Qt::NoPen);
    p.drawEllipse(QRectF(r.center().x() - 0.5, r.center().y() - 0.5, 2, 2));
    p.restore();
}

// The small caption boxes: minimise, roll up, close.
enum class BoxGlyph { Minimize, RollUp, Close };

void captionBox(QPainter& p, const QRect& r, BoxGlyph glyph) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    gradientRect(p, r, QColor(0x4e, 0x6e, 0x86), QColor(0x25, 0x3a, 0x4a));
    bevel(p, r, QColor(0x9f, 0xbb, 0xcf), EdgeDark);
    const int x = r.left(), y = r.top();
    switch (glyph) {
        case BoxGlyph::Minimize:
            p.fillRect(x + 2, y + 6, 5, 1, Icon);
            break;
        case BoxGlyph::RollUp:
            p.fillRect(x + 4, y + 3, 1, 1, Icon);
            p.fillRect(x + 3, y + 4, 3, 1, Icon);
            p.fillRect(x + 2, y + 5, 5, 1, Icon);
            break;
        case BoxGlyph::Close:
            for (int i = 0; i < 5; ++i) {
                p.fillRect(x + 2 + i, y + 2 + i, 1, 1, Icon);
                p.fillRect(x + 6 - i, y + 2 + i, 1, 1, Icon);
            }
            break;
    }
    p.restore();
}

// The menu words, one to a label area, in a band of their own.
struct MenuWord {
    int left, top, width;
    const char* text;
};

void menuBand(QPainter& p, int width, int top, const std::vector<MenuWord>& words) {
    const QRect band(4, top - 2, width - 8, 15);
    well(p, band, QColor(0x1a, 0x1e, 0x24));
    QFont f(QStringLiteral("DejaVu Sans Condensed"));
    f.setPixelSize(9);
    f.setBold(true);
    f.setHintingPreference(QFont::PreferFullHinting);
    p.save();
    p.setFont(f);
    for (const MenuWord& w : words) {
        const QRect area(w.left, w.top, w.width, 11);
        p.setPen(MenuText);
        p.drawText(area.adjusted(0, -1, 0, 0), Qt::AlignCenter, QString::fromLatin1(w.text));
        // The first letter opens its menu with Alt, as ever: underline it.
        const QFontMetrics fm(f);
        const QString text = QString::fromLatin1(w.text);
        const int textLeft = area.left() + (area.width() - fm.horizontalAdvance(text)) / 2;
        p.fillRect(textLeft, area.top() + 10, fm.horizontalAdvance(text.left(1)), 1,
                   QColor(0x7c, 0xb8, 0xd8));
    }
    p.restore();
}

// ---- Seven-segment digits --------------------------------------------------------------

// Segments a to g, lit per digit.
const char* const SegmentsOf[10] = {"abcdef", "bc",     "abdeg", "abcdg",   "bcfg",
                                    "acdfg",  "acdefg", "abc",   "abcdefg", "abcdfg"};

void segment(QPainter& p, int x, int y, char s, const QColor& color) {
    // A 10 by 16 cell; strokes two pixels wide with cut corners.
    QPainterPath path;
    auto horizontal = [&](double top) {
        path.moveTo(x + 2.5, top + 1);
        path.lineTo(x + 3.5, top);
        path.lineTo(x + 6.5, top);
        path.lineTo(x + 7.5, top + 1);
        path.lineTo(x + 6.5, top + 2);
        path.lineTo(x + 3.5, top + 2);
        path.closeSubpath();
    };
    auto vertical = [&](double left, double top) {
        path.moveTo(left + 1, top);
        path.lineTo(left + 2, top + 1);
        path.lineTo(left + 2, top + 5);
        path.lineTo(left + 1, top + 6);
        path.lineTo(left, top + 5);
        path.lineTo(left, top + 1);
        path.closeSubpath();
    };
    switch (s) {
        case 'a':
            horizontal(y + 1);
            break;
        case 'b':
            vertical(x + 7, y + 2);
            break;
        case 'c':
            vertical(x + 7, y + 8);
            break;
        case 'd':
            horizontal(y + 13);
            break;
        case 'e':
            vertical(x + 1, y + 8);
            break;
        case 'f':
            vertical(x + 1, y + 2);
            break;
        case 'g':
            horizontal(y + 7);
            break;
    }
    p.fillPath(path, color);
}

// One digit cell; digit -1 is all segments unlit.
void digitCell(QPainter& p, int x, int y, int digit) {
    p.fillRect(x, y, 10, 16, LcdBack);
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);
    for (char s : std::string("abcdefg")) segment(p, x, y, s, LcdGhost);
    if (digit >= 0)
        for (const char* s = SegmentsOf[digit]; *s; ++s) segment(p, x, y, *s, LcdLit);
    p.restore();
}

void colon(QPainter& p, int x, int y) {
    p.fillRect(x + 2, y + 4, 2, 2, LcdDim);
    p.fillRect(x + 2, y + 10, 2, 2, LcdDim);
}

// ---- Buttons ---------------------------------------------------------------------------

using IconPainter = std::function<void(QPainter&, const QRectF&, const QColor&)>;

void triangleRight(QPainter& p, double x, double y, double w, double h, const QColor& c) {
    QPainterPath path;
    path.moveTo(x, y);
    path.lineTo(x + w, y + h / 2);
    path.lineTo(x, y + h);
    path.closeSubpath();
    p.fillPath(path, c);
}

void triangleLeft(QPainter& p, double x, double y, double w, double h, const QColor& c) {
    QPainterPath path;
    path.moveTo(x + w, y);
    path.lineTo(x, y + h / 2);
    path.lineTo(x + w, y + h);
    path.closeSubpath();
    p.fillPath(path, c);
}

void triangleUp(QPainter& p, double x, double y, double w, double h, const QColor& c) {
    QPainterPath path;
    path.moveTo(x, y + h);
    path.lineTo(x + w / 2, y);
    path.lineTo(x + w, y + h);
    path.closeSubpath();
    p.fillPath(path, c);
}

void triangleDown(QPainter& p, double x, double y, double w, double h, const QColor& c) {
    QPainterPath path;
    path.moveTo(x, y);
    path.lineTo(x + w / 2, y + h);
    path.lineTo(x + w, y);
    path.closeSubpath();
    p.fillPath(path, c);
}

// The eight transport buttons' icons, centred in a 24 by 18 face.
std::vector<IconPainter> mainIcons() {
    return {
        // Seek previous: bar and two left triangles.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            const double cx = r.center().x(), cy = r.center().y();
            p.fillRect(QRectF(cx - 6, cy - 3.5, 1.5, 7), c);
            triangleLeft(p, cx - 4.5, cy - 3.5, 4.5, 7, c);
            triangleLeft(p, cx, cy - 3.5, 4.5, 7, c);
        },
        // Play.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            triangleRight(p, r.center().x() - 3, r.center().y() - 4, 7, 8, c);
        },
        // Pause.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            p.fillRect(QRectF(r.center().x() - 3.5, r.center().y() - 3.5, 2.5, 7), c);
            p.fillRect(QRectF(r.center().x() + 1, r.center().y() - 3.5, 2.5, 7), c);
        },
        // Stop.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            p.fillRect(QRectF(r.center().x() - 3.5, r.center().y() - 3.5, 7, 7), c);
        },
        // Seek next.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            const double cx = r.center().x(), cy = r.center().y();
            triangleRight(p, cx - 4.5, cy - 3.5, 4.5, 7, c);
            triangleRight(p, cx, cy - 3.5, 4.5, 7, c);
            p.fillRect(QRectF(cx + 4.5, cy - 3.5, 1.5, 7), c);
        },
        // Open file: eject.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            const double cx = r.center().x(), cy = r.center().y();
            triangleUp(p, cx - 4, cy - 4.5, 8, 5, c);
            p.fillRect(QRectF(cx - 4, cy + 2, 8, 1.6), c);
        },
        // Mute: a speaker and a cross.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            const double cx = r.center().x(), cy = r.center().y();
            QPainterPath sp;
            sp.moveTo(cx - 6, cy - 1.5);
            sp.lineTo(cx - 4, cy - 1.5);
            sp.lineTo(cx - 1, cy - 4.5);
            sp.lineTo(cx - 1, cy + 4.5);
            sp.lineTo(cx - 4, cy + 1.5);
            sp.lineTo(cx - 6, cy + 1.5);
            sp.closeSubpath();
            p.fillPath(sp, c);
            p.setPen(QPen(c, 1.3));
            p.drawLine(QPointF(cx + 1.5, cy - 2.5), QPointF(cx + 6, cy + 2.5));
            p.drawLine(QPointF(cx + 1.5, cy + 2.5), QPointF(cx + 6, cy - 2.5));
        },
        // Help.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            QFont f(QStringLiteral("DejaVu Sans"));
            f.setPixelSize(12);
            f.setBold(true);
            p.setFont(f);
            p.setPen(c);
            p.drawText(r.adjusted(0, 0, 0, 0), Qt::AlignCenter, QStringLiteral("?"));
        },
    };
}

// The playlist window's six buttons.
std::vector<IconPainter> playlistIcons() {
    return {
        // Add.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            const double cx = r.center().x(), cy = r.center().y();
            p.fillRect(QRectF(cx - 4, cy - 0.8, 8, 1.6), c);
            p.fillRect(QRectF(cx - 0.8, cy - 4, 1.6, 8), c);
        },
        // Remove.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            p.fillRect(QRectF(r.center().x() - 4, r.center().y() - 0.8, 8, 1.6), c);
        },
        // Load: an open folder.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            const double cx = r.center().x(), cy = r.center().y();
            p.setPen(QPen(c, 1.2));
            p.setBrush(Qt::NoBrush);
            QPainterPath f;
            f.moveTo(cx - 5, cy + 4);
            f.lineTo(cx - 5, cy - 4);
            f.lineTo(cx - 2, cy - 4);
            f.lineTo(cx - 1, cy - 3);
            f.lineTo(cx + 4, cy - 3);
            f.lineTo(cx + 4, cy - 1);
            p.drawPath(f);
            QPainterPath front;
            front.moveTo(cx - 5, cy + 4);
            front.lineTo(cx - 3, cy - 1);
            front.lineTo(cx + 6, cy - 1);
            front.lineTo(cx + 4, cy + 4);
            front.closeSubpath();
            p.fillPath(front, c);
        },
        // Save: a disk.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            const double cx = r.center().x(), cy = r.center().y();
            p.fillRect(QRectF(cx - 4.5, cy - 4.5, 9, 9), c);
            p.fillRect(QRectF(cx - 2.5, cy - 4.5, 5, 3), ButtonBottom);
            p.fillRect(QRectF(cx - 3, cy + 1, 6, 3.5), ButtonBottom.lighter(130));
        },
        // Move up.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            triangleUp(p, r.center().x() - 4, r.center().y() - 3, 8, 6, c);
        },
        // Move down.
        [](QPainter& p, const QRectF& r, const QColor& c) {
            triangleDown(p, r.center().x() - 4, r.center().y() - 3, 8, 6, c);
        },
    };
}

void buttonFace(QPainter& p, const QRect& r, bool pressed, const IconPainter& icon) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    if (pressed) {
        gradientRect(p, r, PressedTop, PressedBottom);
        bevel(p, r, EdgeDark, EdgeLight.darker(120));
    } else {
        gradientRect(p, r, ButtonTop, ButtonBottom);
        bevel(p, r, EdgeLight, EdgeDark);
    }
    p.setRenderHint(QPainter::Antialiasing, true);
    const QRectF area = QRectF(r).translated(pressed ? 1 : 0, pressed ? 1 : 0);
    icon(p, area, pressed ? IconPressed : Icon);
    p.restore();
}

// The small volume buttons: up arrows on top, down arrows below.
void volumeFace(QPainter& p, const QRect& r, bool up, bool pressed) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    if (pressed) {
        gradientRect(p, r, PressedTop, PressedBottom);
        bevel(p, r, EdgeDark, EdgeLight.darker(120));
    } else {
        gradientRect(p, r, ButtonTop, ButtonBottom);
        bevel(p, r, EdgeLight, EdgeDark);
    }
    const QColor c = pressed ? IconPressed : Icon;
    const int x = r.left() + (pressed ? 1 : 0), y = r.top() + (pressed ? 1 : 0);
    for (int i = 0; i < 3; ++i) {
        const int row = up ? y + 3 + i : y + 5 - i;
        p.fillRect(x + 7 - i, row, 1 + 2 * i, 1, c);
    }
    p.restore();
}

// ---- The level picture ---------------------------------------------------------------

QColor levelColor(double t) {
    // Green to yellow to red along the bar.
    const QColor green(0x3d, 0xdc, 0x84), yellow(0xf4, 0xd0, 0x3f), red(0xff, 0x5b, 0x4f);
    auto mix = [](const QColor& a, const QColor& b, double u) {
        return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * u,
                                a.greenF() + (b.greenF() - a.greenF()) * u,
                                a.blueF() + (b.blueF() - a.blueF()) * u);
    };
    return t < 0.6 ? mix(green, yellow, t / 0.6) : mix(yellow, red, (t - 0.6) / 0.4);
}

// 161 by 7: bars two pixels wide on a three-pixel pitch; `lit` false gives the dark bars
// the face shows where the picture is cut.
void levelBars(QPainter& p, int x0, int y0, bool lit) {
    p.fillRect(x0, y0, 161, 7, LcdBack);
    for (int i = 0; i * 3 < 161; ++i) {
        const double t = i * 3 / 160.0;
        QColor c = levelColor(t);
        if (!lit)
            c = QColor::fromRgbF(c.redF() * 0.22, c.greenF() * 0.22 + 0.04,
                                 c.blueF() * 0.22 + 0.03);
        p.fillRect(x0 + i * 3, y0, 2, 7, c);
        if (lit) p.fillRect(x0 + i * 3, y0, 2, 1, c.lighter(135));
    }
}

// ---- The two thumbs --------------------------------------------------------------------

void positionThumb(QPainter& p, int x, int y) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    gradientRect(p, QRect(x, y, 20, 8), QColor(0xb8, 0xf9, 0xe0), QColor(0x3a, 0xa7, 0x80));
    bevel(p, QRect(x, y, 20, 8), QColor(0xe8, 0xff, 0xf6), QColor(0x1b, 0x4d, 0x3c));
    for (int i = 0; i < 3; ++i) p.fillRect(x + 7 + i * 3, y + 2, 1, 4, QColor(0x1b, 0x4d, 0x3c));
    p.restore();
}

void balanceThumb(QPainter& p, int x, int y) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    gradientRect(p, QRect(x, y, 5, 8), QColor(0xb8, 0xf9, 0xe0), QColor(0x3a, 0xa7, 0x80));
    bevel(p, QRect(x, y, 5, 8), QColor(0xe8, 0xff, 0xf6), QColor(0x1b, 0x4d, 0x3c));
    p.restore();
}

// ---- The main window -------------------------------------------------------------------

const int TimeLefts[6] = {24, 34, 50, 60, 76, 86};
const std::vector<MenuWord> MainMenuWords{{16, 22, 25, "File"},        {40, 22, 49, "Playback"},
                                          {88, 22, 65, "Conversions"}, {152, 22, 41, "Options"},
                                          {192, 22, 41, "Window"},     {232, 22, 25, "Help"}};

// The top 36 rows are shared by the full face and the rolled-up one.
void mainTop(QPainter& p) {
    captionBar(p, 300, QStringLiteral("CANTOVEL"));
    sysMenuIcon(p, QRect(4, 4, 10, 10));
    captionBox(p, QRect(264, 3, 9, 9), BoxGlyph::Minimize);
    captionBox(p, QRect(275, 3, 9, 9), BoxGlyph::RollUp);
    captionBox(p, QRect(288, 3, 9, 9), BoxGlyph::Close);
    menuBand(p, 300, 22, MainMenuWords);
}

QImage mainBack() {
    QImage img(300, 175, QImage::Format_RGB32);
    QPainter p(&img);
    body(p, img.rect());
    mainTop(p);

    // The time panel: elapsed above, length below.
    well(p, QRect(15, 38, 99, 45), LcdBack);
    for (int row : {42, 61})
        for (int i = 0; i < 6; ++i) digitCell(p, TimeLefts[i], row, -1);
    for (int row : {42, 61}) {
        colon(p, 44, row);
        colon(p, 70, row);
    }
    tinyText(p, 99, 48, QStringLiteral("POS"), Caption);
    tinyText(p, 99, 67, QStringLiteral("LEN"), Caption);

    // The volume panel: the player's and the master volume, with the level picture below.
    well(p, QRect(118, 38, 167, 49), LcdBack);
    for (int x : {129, 139, 149, 223, 233, 243}) digitCell(p, x, 42, -1);
    volumeFace(p, QRect(163, 40, 16, 10), true, false);
    volumeFace(p, QRect(163, 50, 16, 10), false, false);
    volumeFace(p, QRect(256, 40, 16, 10), true, false);
    volumeFace(p, QRect(256, 50, 16, 10), false, false);
    tinyTextCentred(p, 154, 64, QStringLiteral("PLAYER VOL"), Caption);
    tinyTextCentred(p, 248, 64, QStringLiteral("MASTER VOL"), Caption);
    // A speaker between the two read-outs.
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);
    {
        QPainterPath sp;
        const double cx = 201, cy = 51;
        sp.moveTo(cx - 6, cy - 2);
        sp.lineTo(cx - 3, cy - 2);
        sp.lineTo(cx + 1, cy - 6);
        sp.lineTo(cx + 1, cy + 6);
        sp.lineTo(cx - 3, cy + 2);
        sp.lineTo(cx - 6, cy + 2);
        sp.closeSubpath();
        p.fillPath(sp, LcdDim);
        p.setPen(QPen(LcdDim, 1.2));
        p.setBrush(Qt::NoBrush);
        p.drawArc(QRectF(cx - 2, cy - 4, 8, 8), -50 * 16, 100 * 16);
        p.drawArc(QRectF(cx - 4, cy - 7, 14, 14), -50 * 16, 100 * 16);
    }
    p.restore();
    p.fillRect(121, 73, 161, 1, LcdGhost);
    levelBars(p, 121, 77, false);

    // The title field and the position groove below it.
    well(p, QRect(13, 97, 273, 21), QColor(0x10, 0x13, 0x17));
    // The thumb travels from 16 to 268 on its right edge.
    well(p, QRect(15, 121, 255, 4), QColor(0x0a, 0x0c, 0x0f));
    for (int x = 16; x <= 268; x += 28) p.fillRect(x, 128, 1, 2, Caption.darker(150));

    // The transport buttons in their normal look.
    well(p, QRect(15, 140, 197, 22), QColor(0x14, 0x17, 0x1b));
    const auto icons = mainIcons();
    for (int i = 0; i < 8; ++i) buttonFace(p, QRect(17 + 24 * i, 142, 24, 18), false, icons[i]);

    // The balance: a groove with its centre marked, L and R at its ends.
    tinyTextCentred(p, 250, 141, QStringLiteral("BALANCE"), Caption);
    tinyText(p, 217, 141, QStringLiteral("L"), Caption);
    tinyText(p, 282, 141, QStringLiteral("R"), Caption);
    well(p, QRect(216, 151, 70, 4), QColor(0x0a, 0x0c, 0x0f));
    p.fillRect(250, 148, 1, 2, Caption);
    p.fillRect(250, 156, 1, 2, Caption);

    tinyText(p, 242, 166, QStringLiteral("BRIGHTFEN"), EdgeLight);
    return img;
}

QImage mainRollup() {
    QImage img(300, 38, QImage::Format_RGB32);
    QPainter p(&img);
    body(p, img.rect());
    mainTop(p);
    return img;
}

QImage mainButtons() {
    QImage img(192, 18, QImage::Format_RGB32);
    QPainter p(&img);
    const auto icons = mainIcons();
    for (int i = 0; i < 8; ++i) buttonFace(p, QRect(24 * i, 0, 24, 18), true, icons[i]);
    return img;
}

QImage digits() {
    QImage img(100, 16, QImage::Format_RGB32);
    QPainter p(&img);
    for (int d = 0; d < 10; ++d) digitCell(p, d * 10, 0, d);
    return img;
}

QImage volumeButtons() {
    QImage img(32, 20, QImage::Format_RGB32);
    QPainter p(&img);
    volumeFace(p, QRect(0, 0, 16, 10), true, true);
    volumeFace(p, QRect(16, 0, 16, 10), true, true);
    volumeFace(p, QRect(0, 10, 16, 10), false, true);
    volumeFace(p, QRect(16, 10, 16, 10), false, true);
    return img;
}

QImage level() {
    QImage img(161, 7, QImage::Format_RGB32);
    QPainter p(&img);
    levelBars(p, 0, 0, true);
    return img;
}

QImage thumb() {
    QImage img(20, 8, QImage::Format_RGB32);
    QPainter p(&img);
    positionThumb(p, 0, 0);
    return img;
}

QImage balance() {
    QImage img(5, 8, QImage::Format_RGB32);
    QPainter p(&img);
    balanceThumb(p, 0, 0);
    return img;
}

// ---- The playlist window ---------------------------------------------------------------

QImage playlistBack() {
    QImage img(300, 175, QImage::Format_RGB32);
    QPainter p(&img);
    body(p, img.rect());
    captionBar(p, 300, QStringLiteral("PLAYLIST EDITOR"));
    sysMenuIcon(p, QRect(3, 3, 10, 10));
    captionBox(p, QRect(276, 3, 9, 9), BoxGlyph::Minimize);
    captionBox(p, QRect(288, 3, 9, 9), BoxGlyph::Close);
    menuBand(p, 300, 20,
             {{16, 20, 25, "File"},
              {40, 20, 25, "Edit"},
              {64, 20, 42, "Options"},
              {112, 20, 25, "Help"}});
    // The list sits in a well of its own.
    well(p, QRect(16, 39, 269, 87), QColor(0x20, 0x20, 0x20));
    well(p, QRect(15, 140, 149, 22), QColor(0x14, 0x17, 0x1b));
    const auto icons = playlistIcons();
    for (int i = 0; i < 6; ++i) buttonFace(p, QRect(17 + 24 * i, 142, 24, 18), false, icons[i]);
    tinyText(p, 242, 166, QStringLiteral("BRIGHTFEN"), EdgeLight);
    return img;
}

QImage playlistButtons() {
    QImage img(144, 18, QImage::Format_RGB32);
    QPainter p(&img);
    const auto icons = playlistIcons();
    for (int i = 0; i < 6; ++i) buttonFace(p, QRect(24 * i, 0, 24, 18), true, icons[i]);
    return img;
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: skingen <output folder>\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/');
    const std::vector<std::pair<const char*, std::function<QImage()>>> files{
        {"back.bmp", mainBack},
        {"buttons.bmp", mainButtons},
        {"digits.bmp", digits},
        {"volume.bmp", volumeButtons},
        {"eq.bmp", level},
        {"thumb.bmp", thumb},
        {"balance.bmp", balance},
        {"rollup.bmp", mainRollup},
        {"back-playlist.bmp", playlistBack},
        {"buttons-playlist.bmp", playlistButtons}};
    for (const auto& [name, draw] : files) {
        const QImage img = draw().convertToFormat(QImage::Format_RGB888);
        if (!img.save(out + QLatin1String(name), "BMP")) {
            std::fprintf(stderr, "cannot write %s\n", name);
            return 1;
        }
    }
    return 0;
}
