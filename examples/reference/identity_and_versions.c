/* Who this agent is, and whether a package is meant for this platform. */
#include <stdio.h>
#include <string.h>
#include <zebcomn/util/agent_identity.h>
#include <zebcomn/util/platform_match.h>
#include <zebcomn/util/plugin_version.h>

int main(void) {
  char id[17] = "";
  char guid[39] = "";
  tivmcomn_get_agent_softwareid(id, sizeof id);
  tivmcomn_create_guid(NULL, guid, sizeof guid);
  printf("%s %s\n", id, guid);

  char stamp[24];
  char module[] = "libm.so.6"; /* no plug-in, so it has no version */
  int has_version = tivmcomn_GetFileResourceStringVersionStamp(module, stamp, sizeof stamp);
  int supported = tivmcomn_IsPlatformMatch("WRLX:4:6:0", "WRLX:4:0:0-4:9:9|LINUX") == 0;
  return supported && !has_version && strcmp(id, "KZUAGENT4600WRLX") == 0 ? 0 : 1;
}
