#include "kdxcommon/os/fork_handlers.h"

namespace kdx::os {

void onFork(void (*)(), void (*)(), void (*)()) {}

}  // namespace kdx::os
