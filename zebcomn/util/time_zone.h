#ifndef ZEBCOMN_UTIL_TIME_ZONE_H_
#define ZEBCOMN_UTIL_TIME_ZONE_H_

/// \file
/// What depends on the process's time zone: the zone itself and the environment variable "TZ"
/// belong to the whole process, so these calls hold one mutex for all of their work. Code outside
/// the library that calls `tzset`, or reads or changes the environment, while other threads run
/// should hold it too.
/// `nErrno` is left alone.
///
/// \par Example
/// \include time_stamps.cpp

#include <pthread.h>

#include <ctime>
#include <string>

#include "zebcomn/export.h"

namespace quenty_com::pelu {

/// Guards "TZ", `tzset` and `tzname`. Usable from static initialisation on; not recursive. No other
/// lock is taken inside it.
ZEBCOMN_EXPORT extern pthread_mutex_t mutex;

/// Seconds since the epoch of a broken-down UTC time: the inverse of `gmtime`.
///
/// For the length of the call "TZ" is empty, which threads that break down local time meanwhile can
/// see. Afterwards it has its old value again, except that a value that was empty, or longer than
/// 1024 bytes, is lost: "TZ" is then absent.
///
/// \param[in,out] time  Normalised in place, as by `mktime`.
/// \return the seconds; -1 when `mktime` cannot express the time, for null, and when there is no
///         memory to set "TZ".
ZEBCOMN_EXPORT std::time_t zebcomn_timegm(std::tm* time);

/// The abbreviation of the standard-time zone that the process last set up; it calls no `tzset`.
/// Threads that break down local times meanwhile, with this mutex or without, do not disturb it.
/// Never throws.
/// \param[out] name  Receives the name, cut to 63 bytes; empty when there is no memory for it.
///                   Untouched when there is none.
/// \return 1 when a name was stored, 0 otherwise; it takes up to a second to be sure of a 0.
ZEBCOMN_EXPORT unsigned int zebcomn_gettimezone(std::wstring& name);

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_TIME_ZONE_H_
