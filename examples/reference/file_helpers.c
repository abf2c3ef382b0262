/* A file is made, copied and measured; then the directory goes with everything in it. */
#include <stdio.h>
#include <stdlib.h>
#include <zebcomn/portable/file.h>
#include <zebcomn/util/delete_tree.h>
#include <zebcomn/util/disk_space.h>
#include <zebcomn/util/file_copy.h>
#include <zebcomn/util/find_files.h>
#include <zebcomn/util/make_directory.h>
#include <zebcomn/util/tivfio.h>
#include <zebcomn/util/user_name.h>

int main(void) {
  char directory[] = "/tmp/zebcomn-XXXXXX";
  if (mkdtemp(directory) == NULL) return 1;
  char source[64];
  char copy[64];
  snprintf(source, sizeof source, "%s/file", directory);
  snprintf(copy, sizeof copy, "%s/made/copy", directory);

  TiFile* file = NULL;
  unsigned int count = 0;
  if (tiCreateFile(source, (int)TIV_ACCESS_WRITE, 0, TIV_CREATE_NEW, 0, &file) != 0) return 1;
  tiWriteFile(file, "12345", 5, &count);
  tiCloseFile(file);

  unsigned int size = 0;
  BOOL copied = tivmcomn_copy_file(source, copy, 0);
  tivmcomn_get_file_sizeA(copy, &size);
  printf("%u bytes copied to %s\n", size, copy);
  tivmcomn_deltree(directory);
  return copied && size == 5 && !tiFolderExists(directory) ? 0 : 1;
}
