#ifndef YH_TOOL_REPORT_PAGEFILES_H
#define YH_TOOL_REPORT_PAGEFILES_H

#include <string_view>
#include <vector>

namespace yh {

// One file of the report's page, embedded at build time.
struct PageFile {
  const char* name;
  std::string_view bytes;
};

// The page's files (the HTML, its style and its script), in name order.
const std::vector<PageFile>& PageFiles();

}  // namespace yh

#endif
