/* A file is written, read and found in its directory; it is removed when it is closed. */
#include <stdio.h>
#include <string.h>
#include <zebcomn/portable/directory_search.h>
#include <zebcomn/portable/file.h>
#include <zebcomn/portable/handle.h>
#include <zebcomn/portable/named_file.h>
#include <zebcomn/portable/wildcard.h>

int main(void) {
  char path[ZEBCOMN_PATH_CAPACITY];
  if (tivGetTempFileName("/tmp", "zeb", 0, path) == 0) return 1;
  HANDLE file = tivCreateFileAW(path, TIV_ACCESS_READ_WRITE, 0, NULL, TIV_OPEN_EXISTING,
                                TIV_FLAG_DELETE_ON_CLOSE, NULL);
  if (file == NULL) return 1;
  DWORD written = 0;
  DWORD read = 0;
  char text[16] = "";
  tivWriteFile(file, "hello", 5, &written);
  tivSetFilePointer(file, 0, NULL, 0);
  tivReadFile(file, text, sizeof text - 1, &read, NULL);
  printf("%u bytes, \"%s\"\n", tivGetFileSize(file, NULL), text);

  /* The pattern finds every name that begins so: compare the whole name as well. */
  TivFindData entry;
  int32_t search = tivFindFirstDirEnt(path, &entry);
  int found = search != -1 && tivWildCardMatch("zeb*", entry.name) == 0;
  tivFindCloseDirEnt(search);
  return tivCloseHandle(file) && found && written == 5 && strcmp(text, "hello") == 0 ? 0 : 1;
}
