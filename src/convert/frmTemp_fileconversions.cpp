// The Conversions menu's file commands.
#include "app/Forms.h"
#include "convert/frmBatchConvert.h"
#include "convert/frmDecode.h"
#include "convert/frmEncode.h"
#include "player/frmTemp.h"

namespace cantovel {

namespace {
template <class T>
void showForm() {
    T& form = Forms::touch<T>();
    form.show();
    form.raise();
    form.activateWindow();
}
}  // namespace

void frmTemp::mnuWAVtoMP3_Click() {
    showForm<frmEncode>();
}

void frmTemp::mnuMP3toWAV_Click() {
    showForm<frmDecode>();
}

void frmTemp::mnuWAVBatch_Click() {
    showForm<frmBatchConvert>();
}

}  // namespace cantovel
