// Item labels and data records of any bytes, read as a run reads them, from the Control File or
// from a data file, in columns, by FORMAT= or by DELIM=.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <numeric>
#include <string>
#include <vector>

#include "control/data_format.h"
#include "control/item_specifications.h"
#include "data/data_reader.h"
#include "data/work_files.h"
#include "platform/silent_console.h"
#include "run/run.h"

namespace {

using namespace vardento;

const std::string& Directory() {
  static const std::string directory = [] {
    char form[] = "/tmp/vardento-fuzz-XXXXXX";
    if (!mkdtemp(form)) std::abort();
    return std::string(form) + "/";
  }();
  return directory;
}

void WriteBytes(const std::string& name, std::string_view text) {
  std::ofstream(name, std::ios::binary).write(text.data(), static_cast<long>(text.size()));
}

struct Arrays {
  explicit Arrays(Run& run) {
    const int NI = run.settings.NI;
    const auto items = static_cast<std::size_t>(NI);
    group.resize(items);
    std::iota(group.begin(), group.end(), 1);
    top = start = group;
    status.assign(items, Status::Active);
    row.resize(items);
    run.NGROUPS = NI;
    run.arrays.ItemGroup = {group.data(), NI};
    run.given.GroupTop = {top.data(), NI};
    run.arrays.GroupStart = {start.data(), NI};
    run.given.ItemStatus = {status.data(), NI};
    run.arrays.ScoredRow = {row.data(), NI};
  }
  std::vector<std::int32_t> group, top, start;
  std::vector<StatusByte> status;
  std::vector<std::uint8_t> row;
};

void FillSettings(ControlSettings& settings, const std::uint8_t* bytes) {
  settings.NI = 1 + bytes[0] % 40;
  settings.ITEM1 = 1 + bytes[1] % 50;
  settings.NAME1 = 1 + bytes[2];
  settings.NAMLEN = bytes[3] % 40;
  settings.XWIDE = 1 + bytes[4] % 3;
  const char* const codes[] = {"01 ", "0 1 10", "0  1  10 "};
  settings.CODES = codes[settings.XWIDE - 1];
  settings.CODES_LENGTH = static_cast<int>(settings.CODES.size());
  settings.CATEGS = 3;
  const char delimiters[] = {' ', ' ', 'B', 'T', 'Y', ';'};
  settings.DELIM = delimiters[bytes[5] % sizeof delimiters];
  settings.INUMB = bytes[6] % 2 != 0;
  settings.ITLEN = 300;
}

}  // namespace

// Eight bytes of settings, the length of a format in the last of them, the format, the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  constexpr std::size_t kHead = 8;
  if (size < kHead) return 0;
  const std::string_view all(reinterpret_cast<const char*>(bytes) + kHead, size - kHead);
  const std::string_view format = all.substr(0, bytes[7] % 32);
  const std::string_view text = all.substr(format.size());
  SilentConsole console;
  Run run(console);
  FillSettings(run.DraftSettings(), bytes);
  run.batch = false;  // messages would go to the standard error stream
  if (!run.workDirectory.Prepare(Directory() + "work")) return 0;
  run.startUp.ControlFileName = Directory() + "control.txt";
  WriteBytes(run.startUp.ControlFileName, text);
  if (run.input.control.Open(run.startUp.ControlFileName) != 0) return 0;
  if (bytes[6] & 2) {
    run.DraftSettings().DATA = Directory() + "data.txt";
    WriteBytes(run.settings.DATA, text);
  }
  run.personCapacity = 50;
  static_cast<void>(run.personStatusTrial.Allocate(run.memory, 50));
  run.given.PersonStatus = {reinterpret_cast<StatusByte*>(run.personStatusTrial.Data()), 50};
  for (StatusByte& status : run.given.PersonStatus) status = Status::Active;
  Arrays arrays(run);
  try {
    run.DraftSettings().FORMAT = std::string(format);
    CheckFormat(run);
    run.FixSettings();
    run.inForce.scoring = DecideRescoring(run.settings);
    ReadData(run);
    for (int p = 1; p <= run.NPERS; ++p) {
      ReadPersonName(run, p);
      const std::uint8_t* row = ReadScoredRow(run, p);
      for (int i = 1; i <= run.settings.NI; ++i) {
        if (row[i - 1] != 255 && row[i - 1] > run.MAXCAT) std::abort();
      }
    }
  } catch (const RunEnded&) {
  }
  return 0;
}
