# Writes OUTPUT, a C++ source with the texts of FILES (relative to ROOT), for example_files() of pvfilter.
set(entries "")
foreach(file IN LISTS FILES)
  file(READ ${ROOT}/${file} text)
  string(APPEND entries "    {\"${file}\", R\"~~~(${text})~~~\"},\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"pvfilter/example_server.h\"

namespace pvfilter {
namespace {

constexpr ExampleFile kFiles[] = {
${entries}};

}  // namespace

std::span<const ExampleFile> example_files() { return kFiles; }

}  // namespace pvfilter
")
