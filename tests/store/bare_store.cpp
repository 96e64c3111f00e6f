// A store library without any of the entry points.
extern "C" [[gnu::visibility("default")]] int unrelated() {
  return 0;
}
