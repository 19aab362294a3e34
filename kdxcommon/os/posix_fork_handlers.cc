#include <pthread.h>

#include <new>

#include "kdxcommon/os/fork_handlers.h"

namespace kdx::os {

void onFork(void (*prepare)(), void (*parent)(), void (*child)()) {
  if (::pthread_atfork(prepare, parent, child) != 0) throw std::bad_alloc();
}

}  // namespace kdx::os
