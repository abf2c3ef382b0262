/* C11 through pkg-config: a lock, an event, and an entry of a directory in the form of large files.
 */
#include <dirent.h>
#include <stdio.h>
#include <string.h>
#include <zebcomn/zebcomn.h>

_Static_assert(sizeof(HANDLE) == sizeof(void*), "a handle is a pointer");

/* An entry that this program has read is understood by the library. */
static int entries_agree(void) {
  DIR* directory = opendir("/");
  const struct dirent* entry;
  int agreed = 0;
  int seen = 0;
  if (directory == NULL) return 0;
  while ((entry = readdir(directory)) != NULL) {
    TivFindData data;
    ++seen;
    if (tivSetFindDataDirEnt(&data, entry, "/") == &data && strcmp(data.name, entry->d_name) == 0) {
      ++agreed;
    }
  }
  closedir(directory);
  return seen > 0 && agreed == seen;
}

static int event_answers(void) {
  HANDLE event = tivCreateEvent(NULL, TRUE, FALSE, NULL);
  const int is_free = tivWaitForSingleObject(event, 0) == TIV_WAIT_TIMEOUT;
  tivSetEvent(event);
  const int is_set = tivWaitForSingleObject(event, 0) == TIV_WAIT_SIGNALLED;
  return tivCloseHandle(event) == TRUE && is_free && is_set;
}

int main(void) {
  if (!entries_agree()) return 1;
  if (!event_answers()) return 2;
  puts("C11 is served");
  return 0;
}
