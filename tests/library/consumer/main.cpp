#include <zebcomn/zebcomn.h>

extern "C" int CPart(void);

int main() {
  return quenty_com::pelu::section_general == L"General" && CPart() == 1 ? 0 : 1;
}
