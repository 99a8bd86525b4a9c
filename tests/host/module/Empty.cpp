// A library that registers nothing.
extern "C" __attribute__((visibility("default"))) int hostTestNothing() {
  return 0;
}
