// A library that needs what nobody has.
extern "C" int hostTestDefinedNowhere();
extern "C" __attribute__((visibility("default"))) int hostTestNeedsIt() {
  return hostTestDefinedNowhere();
}
