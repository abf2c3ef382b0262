/* A number in two radixes, a GUID as text, the time of day, and this host's node name. */
#include <stdio.h>
#include <string.h>
#include <zebcomn/portable/clock.h>
#include <zebcomn/portable/guid.h>
#include <zebcomn/portable/number_text.h>
#include <zebcomn/portable/system_names.h>

int main(void) {
  char decimal[12];
  char hexadecimal[12];
  printf("%s %s\n", tivItoa(-1, decimal, 10), tivItoa(-1, hexadecimal, 16));

  uint8_t guid[16];
  char text[37];
  printf("%s\n", tivUuidToStringA(tivCoCreateGuid(guid), text));

  TivSystemTime now;
  tivGetSystemTime(&now); /* local time */
  printf("%04u-%02u-%02u, tick %u\n", now.wYear, now.wMonth, now.wDay, tivGetTickCount());

  char name[65];
  DWORD size = sizeof name;
  int named = tivGetComputerName(name, &size);
  return named && strcmp(decimal, "-1") == 0 && strcmp(hexadecimal, "ffffffff") == 0 ? 0 : 1;
}
