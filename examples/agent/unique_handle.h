#ifndef ZEBCOMN_EXAMPLES_AGENT_UNIQUE_HANDLE_H_
#define ZEBCOMN_EXAMPLES_AGENT_UNIQUE_HANDLE_H_

#include <memory>

#include "zebcomn/portable/handle.h"

namespace example {

struct HandleCloser {
  void operator()(void* handle) const { tivCloseHandle(handle); }
};

/// Owns an event or a thread handle of the library. Null stands for a creation that failed.
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

}  // namespace example

#endif  // ZEBCOMN_EXAMPLES_AGENT_UNIQUE_HANDLE_H_
