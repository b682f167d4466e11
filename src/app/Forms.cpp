#include "app/Forms.h"

#include "app/AppState.h"
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

bool IsFormLoaded(const QString& name) { return Forms::byName(name) != nullptr; }

void UnloadOtherForms(Form* except) {
    const QList<Form*> open = Forms::all();
    for (auto it = open.crbegin(); it != open.crend(); ++it) {
        QPointer<Form> f(*it);
        if (f && f != except) f->unload();
    }
}

void UnloadAllForms(Form* except) {
    AppClosing = VTrue;
    UnloadOtherForms(except);
    if (except) except->unload();
}

}  // namespace cantovel
