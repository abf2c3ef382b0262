#ifndef ZEBCOMN_PORTABLE_TLS_INTERNAL_H_
#define ZEBCOMN_PORTABLE_TLS_INTERNAL_H_

namespace zebcomn {

/// Frees every slot that this process has allocated.
void FreeOwnTlsSlots();

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_TLS_INTERNAL_H_
