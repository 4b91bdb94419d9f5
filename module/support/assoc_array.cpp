#include "module/support/assoc_array.h"

#include "module/support/ascii_case.h"

int YDK_assocarray_cmpstr(const char* const* a, const char* const* b) {
  const int c = strcmp(*a, *b);
  return c < 0 ? -1 : c > 0 ? 1 : 0;
}

int YDK_assocarray_cmpistr(const char* const* a, const char* const* b) {
  return compareIgnoringCase(*a, *b);
}

const char* dupstr(const char* s) {
  return strdup(s);
}
void freestr(const char* s) {
  free(const_cast<char*>(s));
}
void freecharptr(char* s) {
  free(s);
}
