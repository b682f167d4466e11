#include "skin/ColorFromHex.h"

namespace cantovel {

namespace {
// One part read as a hexadecimal number; fails for an empty part or any other character.
bool hexPart(const QString& part, int* value) {
    if (part.isEmpty()) return false;
    bool ok = false;
    *value = part.toInt(&ok, 16);
    return ok && !part.startsWith(u'+') && !part.startsWith(u'-') && !part.contains(u' ');
}
}  // namespace

QColor ColorFromHex(const QString& text) {
    int r = 0, g = 0, b = 0;
    // The three parts are read in one go: if one fails, none counts.
    if (!hexPart(text.mid(0, 2), &r) || !hexPart(text.mid(2, 2), &g) || !hexPart(text.right(2), &b))
        return QColor(0, 0, 0);
    return QColor(r, g, b);
}

}  // namespace cantovel
