#include "kdxcommon/inhouse/zqfocus/focus.h"

#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {

const char* ZQPI_Focus::getFocusClientName(bool) {
  return EmbeddedSite::current().focusClientName();
}

}  // namespace kdx
