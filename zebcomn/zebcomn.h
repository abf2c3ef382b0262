#ifndef ZEBCOMN_ZEBCOMN_H_
#define ZEBCOMN_ZEBCOMN_H_

/// \file
/// Every public header at once, for callers. The library's own sources include the narrow header
/// that they need instead. A C caller gets the part of the interface that C can express.

#include "zebcomn/export.h"

// Portability layer.
#include "zebcomn/portable/clock.h"
#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/global_mutexes.h"
#include "zebcomn/portable/guid.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/interlocked.h"
#include "zebcomn/portable/mutex.h"
#include "zebcomn/portable/named_file.h"
#include "zebcomn/portable/number_text.h"
#include "zebcomn/portable/shared_object.h"
#include "zebcomn/portable/system_names.h"
#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/tls.h"
#include "zebcomn/portable/types.h"
#include "zebcomn/portable/wait.h"
#include "zebcomn/portable/wildcard.h"

// Lists and locks.
#include "zebcomn/lists/Linklist.h"
#include "zebcomn/lists/ll.h"
#include "zebcomn/lists/ll2.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/sll.h"
#include "zebcomn/lists/sll2.h"
#include "zebcomn/lists/spin_lock.h"
#include "zebcomn/lists/thread_attach.h"

// Utilities that C callers reach.
#include "zebcomn/util/agent_identity.h"
#include "zebcomn/util/delete_tree.h"
#include "zebcomn/util/disk_space.h"
#include "zebcomn/util/file_copy.h"
#include "zebcomn/util/filenameresolver.h"
#include "zebcomn/util/find_files.h"
#include "zebcomn/util/make_directory.h"
#include "zebcomn/util/platform_match.h"
#include "zebcomn/util/plugin_version.h"
#include "zebcomn/util/tivfio.h"
#include "zebcomn/util/user_name.h"

#ifdef __cplusplus
// System properties.
#include "zebcomn/sysprops/property_names.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_api.h"
#include "zebcomn/sysprops/sysprops_comn.h"
#include "zebcomn/sysprops/sysprops_records.h"

// Network.
#include "zebcomn/network/host_names.h"
#include "zebcomn/network/ipv6_text.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/netinterface_linux.h"
#include "zebcomn/network/network_util.h"

// Utilities.
#include "zebcomn/util/byte_order.h"
#include "zebcomn/util/data_constants.h"
#include "zebcomn/util/filenameflattener.h"
#include "zebcomn/util/sighandler.h"
#include "zebcomn/util/string_helpers.h"
#include "zebcomn/util/system_log.h"
#include "zebcomn/util/text_conversion.h"
#include "zebcomn/util/time_stamp.h"
#include "zebcomn/util/time_zone.h"
#include "zebcomn/util/uptime.h"
#endif

#endif  // ZEBCOMN_ZEBCOMN_H_
