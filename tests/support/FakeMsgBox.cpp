#include "support/FakeMsgBox.h"

namespace cantovel::test {

int FakeMsgBox::show(const QString& text, int style, const QString& title, QWidget*) {
    ShownBox box{text, style, title.isEmpty() ? QStringLiteral("Cantovel") : title};
    shown.append(box);
    if (onShow) onShow(box);
    if (!answers_.empty()) {
        int a = answers_.front();
        answers_.pop_front();
        return a;
    }
    static const int firstAnswer[] = {Mb::OK, Mb::OK, Mb::Abort, Mb::Yes, Mb::Yes, Mb::Retry};
    static const int secondAnswer[] = {Mb::OK, Mb::Cancel, Mb::Retry, Mb::No, Mb::No, Mb::Cancel};
    static const int thirdAnswer[] = {Mb::OK, Mb::Cancel, Mb::Ignore, Mb::Cancel, Mb::No, Mb::Cancel};
    int b = Mb::buttonsOf(style);
    if (b > 5) b = 0;
    if (style & Mb::DefaultButton3) return thirdAnswer[b];
    if (style & Mb::DefaultButton2) return secondAnswer[b];
    return firstAnswer[b];
}

QStringList FakeMsgBox::texts() const {
    QStringList out;
    for (const auto& b : shown) out << b.text;
    return out;
}

}  // namespace cantovel::test
