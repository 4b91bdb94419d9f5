// A library that is no module.
extern "C" [[gnu::visibility("default")]] int twice(int value) {
  return 2 * value;
}
