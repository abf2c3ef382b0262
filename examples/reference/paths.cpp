// A path made absolute by its text alone, and the file that a path finally names.
#include <zebcomn/util/filenameflattener.h>
#include <zebcomn/util/filenameresolver.h>

#include <iostream>

int main() {
  std::string flat;
  FileNameFlattener flattener("../etc/./passwd", "/usr");
  const bool flattened = flattener.GetFlatPath(flat);

  std::string file;
  FileNameResolver resolver("/proc/self/exe");
  const bool resolved = resolver.GetAbsolutePath(file);
  std::cout << flat << '\n' << file << '\n';
  return flattened && flat == "/etc/passwd" && resolved ? 0 : 1;
}
