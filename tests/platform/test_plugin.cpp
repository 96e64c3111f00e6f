// A library for the tests to load.
extern "C" [[gnu::visibility("default")]] int plugin_number() {
  return 42;
}
