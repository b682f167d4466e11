#pragma once
// A transparent label of a skinned window: text drawn straight onto the face, centred in
// its field and cut at the field's edges.

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

namespace cantovel {

struct SkinLabel {
    QRect rect;
    QString Caption;
    QString FontName = QStringLiteral("Tahoma");
    int FontSize = 7;  // points; 0 is kept as given and drawn at the smallest size
    bool FontBold = false;
    bool FontItalic = false;
    QColor ForeColor = Qt::black;
    bool visible = true;

    QFont font() const {
        QFont f(FontName);
        f.setPointSize(FontSize > 0 ? FontSize : 1);
        f.setBold(FontBold);
        f.setItalic(FontItalic);
        return f;
    }
    bool contains(const QPoint& pt) const { return visible && rect.contains(pt); }
};

}  // namespace cantovel
