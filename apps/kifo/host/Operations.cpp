#include "apps/kifo/host/Operations.h"

namespace kifo::tool {

const Operations& operations() {
  static const Operations& all = *[] {
    auto* made = new Operations;
    addKifoOperations(*made);
    addEventOperations(*made);
    addPushOperations(*made);
    return made;
  }();
  return all;
}

}  // namespace kifo::tool
