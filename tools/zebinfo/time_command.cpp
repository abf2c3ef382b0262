#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/text.h"
#include "zebcomn/portable/clock.h"
#include "zebcomn/util/time_stamp.h"
#include "zebcomn/util/time_zone.h"
#include "zebcomn/util/uptime.h"

namespace zebinfo {
namespace {

namespace pelu = quenty_com::pelu;

constexpr unsigned long kUnknownUptime = 0x7fffffff;
constexpr unsigned int kStampCapacity = 32;

struct Moment {
  std::string local_time;
  std::string local_stamp;
  std::string utc_stamp;
  std::string time_zone;
  unsigned long uptime = 0;
  uint32_t tick_count = 0;
};

Moment Now() {
  wchar_t local[kStampCapacity];
  wchar_t utc[kStampCapacity];
  tivmcomn_CreateLocalTimeStampW(local, kStampCapacity);
  tivmcomn_CreateGmtTimeStampW(utc, kStampCapacity);
  std::wstring zone = L"N/A";
  pelu::zebcomn_gettimezone(zone);
  return {pelu::tivmcomn_get_time_stamp_ansi(), ToUtf8(local),    ToUtf8(utc), ToUtf8(zone),
          pelu::tivmcomn_get_system_uptime(),   tivGetTickCount()};
}

}  // namespace

void ShowTime(Format format) {
  const Moment now = Now();
  const bool uptime_known = now.uptime != kUnknownUptime;
  if (format != Format::kText) {
    PrintJson({{"localTime", now.local_time},
               {"localStamp", now.local_stamp},
               {"utcStamp", now.utc_stamp},
               {"timeZone", now.time_zone},
               {"uptimeSeconds", uptime_known ? Json(now.uptime) : Json()},
               {"tickCount", now.tick_count}},
              format);
    return;
  }
  PrintPairs({{"Local time", now.local_time},
              {"Local stamp", now.local_stamp},
              {"UTC stamp", now.utc_stamp},
              {"Time zone", now.time_zone},
              {"Uptime seconds", uptime_known ? std::to_string(now.uptime) : "N/A"},
              {"Tick count", std::to_string(now.tick_count)}});
}

}  // namespace zebinfo
