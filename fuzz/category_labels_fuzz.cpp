// The lists of words for categories and for response codes: CFILE=, CLFILE=.
#include <stdlib.h>

#include <cstdint>
#include <string>

#include "lists/category_labels.h"
#include "support/test_run.h"

using namespace vardento;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static test::TestRun test("NI=2\n&END\n", false);
  static std::int32_t groups[] = {1, 2};
  Run& run = test.run;
  run.arrays.ItemGroup = {groups, 2};
  ControlSettings& settings = run.DraftSettings();
  settings.NI = 2;
  settings.XWIDE = data[0] % 3 + 1;
  settings.CODES = "a+\" 2'";
  settings.CFILE = settings.CLFILE = test.directory.Write(
      "labels.txt", std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
  const CategoryLabels labels(run);
  for (int code = -1; code <= 7; ++code) {
    for (int group = 0; group <= 3; ++group) {
      if (labels.OfCategory(code, group).size() > 80) abort();
      if (labels.OfCode(code, group, group).size() > 80) abort();
    }
  }
  return 0;
}
