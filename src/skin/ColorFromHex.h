#pragma once
#include <QColor>
#include <QString>

namespace cantovel {

// The colour of six hexadecimal digits RRGGBB: red from the first two characters, green
// from the third and fourth, blue from the last two. A text that does not read that way
// gives black, silently.
QColor ColorFromHex(const QString& text);

}  // namespace cantovel
