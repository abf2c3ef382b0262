// The time as text, UTC fields as seconds, and how long the system has been up.
#include <zebcomn/util/time_stamp.h>
#include <zebcomn/util/time_zone.h>
#include <zebcomn/util/uptime.h>

#include <cstring>
#include <iostream>

using namespace quenty_com::pelu;

int main() {
  char compact[15];
  tivmcomn_CreateLocalTimeStampA(compact, sizeof compact);
  std::cout << compact << ", " << tivmcomn_get_time_stamp_ansi() << ", up "
            << tivmcomn_get_system_uptime() << " s\n";

  std::tm utc{};
  utc.tm_year = 2000 - 1900;
  utc.tm_mday = 1;
  const std::time_t seconds = zebcomn_timegm(&utc);
  return std::strlen(compact) == 14 && seconds == 946684800 ? 0 : 1;
}
