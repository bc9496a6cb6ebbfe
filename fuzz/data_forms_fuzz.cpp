// Instructions of MFORMS=, the data they rewrite, and lines of EDFILE=, of any bytes, through an
// intake that makes its own key. The three texts are parted by lines "@@@"; the instructions find
// the data under the name "data.txt".
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "data/data_run.h"
#include "platform/silent_console.h"

using namespace vardento;

namespace {

constexpr int kItems = 5;

// The text up to the next mark, which is taken off `rest` with it.
std::string TakePart(std::string& rest) {
  const std::size_t mark = std::min(rest.find("@@@\n"), rest.size());
  const std::string part = rest.substr(0, mark);
  rest.erase(0, mark + 4);
  return part;
}

void CheckRows(test::DataRun& data) {
  for (const std::string& row : data.CodedRows()) {
    for (char c : row) {
      if (c < '0' || c > '0' + data.settings.CATEGS) abort();
    }
  }
  for (const std::string& row : data.ScoredRows()) {
    if (row.find_first_not_of("01.") != row.npos) abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size < 4) return 0;
  std::string rest(reinterpret_cast<const char*>(bytes) + 4, size - 4);
  // Files elsewhere on the machine are no part of the test.
  if (rest.find('/') != std::string::npos) return 0;
  test::DataRun data("", kItems, false);  // a batch run's messages would go to standard error
  if (chdir(data.directory.Path().c_str()) != 0) abort();
  data.settings.ITEM1 = 1 + bytes[0];
  data.settings.NAME1 = 1 + bytes[1];
  data.settings.NAMLEN = bytes[2] % 20;
  if (bytes[3] & 1) {
    data.SetCodes("0 1 10 2", 2);
  } else {
    data.SetCodes("01 2", 1);
  }
  if (bytes[3] & 2) data.settings.MAKEKEY = true;
  data.settings.MFORMS = data.directory.Write("forms.txt", "D=data.txt\n" + TakePart(rest));
  data.directory.Write("data.txt", TakePart(rest));
  data.settings.EDFILE = data.directory.Write("edit.txt", rest);
  try {
    data.Read();
    if (data.settings.MAKEKEY) CheckRows(data);
  } catch (const RunEnded&) {
  }
  return 0;
}
