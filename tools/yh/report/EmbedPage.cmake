# Writes OUTPUT, a C++ source holding every file of FOLDER (the report's
# page) as bytes, so that yh carries its page and needs no files beside it.
file(GLOB names RELATIVE ${FOLDER} ${FOLDER}/*)
list(SORT names)
set(body "")
foreach(name IN LISTS names)
  file(READ ${FOLDER}/${name} hex HEX)
  string(LENGTH "${hex}" digits)
  math(EXPR size "${digits} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
  string(MAKE_C_IDENTIFIER "${name}" id)
  string(APPEND arrays "const char k_${id}[] = {${bytes}};\n")
  string(APPEND body "      {\"${name}\", std::string_view(k_${id}, ${size})},\n")
endforeach()
file(WRITE ${OUTPUT}.new
"// Written by EmbedPage.cmake from the files of the report's page.
#include \"PageFiles.h\"

namespace yh {
namespace {

${arrays}
}  // namespace

const std::vector<PageFile>& PageFiles() {
  static const std::vector<PageFile> files = {
${body}  };
  return files;
}

}  // namespace yh
")
file(COPY_FILE ${OUTPUT}.new ${OUTPUT} ONLY_IF_DIFFERENT)
