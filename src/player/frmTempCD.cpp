#include "player/frmTempCD.h"

#include "platform/Components.h"

namespace cantovel {

frmTempCD::frmTempCD()
    : Form(QStringLiteral("frmTempCD")), CDReader(Components::create<cantovel::CDReader>()) {}

frmTempCD::~frmTempCD() = default;

}  // namespace cantovel
