// A library without the entry point.
extern "C" int not_an_entry_point() {
  return 0;
}
