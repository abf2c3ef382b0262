#include <zebcomn/zebcomn.h>

int CPart(void);
int CPart(void) {
  return TRUE;
}
