// Every public header at once.

#ifndef KDXCOMMON_KDXCOMMON_H_
#define KDXCOMMON_KDXCOMMON_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/logging/error_traits.h"
#include "kdxcommon/logging/job_identity.h"
#include "kdxcommon/logging/logger_traits.h"
#include "kdxcommon/names/advisory_sources.h"
#include "kdxcommon/names/basic_x500_name.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/settings/subclient_options.h"
#include "kdxcommon/strings/wide_string.h"

#endif  // KDXCOMMON_KDXCOMMON_H_
