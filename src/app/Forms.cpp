#include "app/Forms.h"

#include "app/Form.h"

namespace cantovel {

namespace {
QList<Form*>& list() {
    static QList<Form*> forms;
    return forms;
}
}  // namespace

QList<Form*> Forms::all() { return list(); }

int Forms::count() { return int(list().size()); }

Form* Forms::byName(const QString& name) {
    const QString wanted = name.toUpper();
    for (Form* f : list())
        if (f->formName().toUpper() == wanted) return f;
    return nullptr;
}

void Forms::add(Form* form) {
    if (!list().contains(form)) list().append(form);
}

void Forms::remove(Form* form) { list().removeAll(form); }

}  // namespace cantovel
