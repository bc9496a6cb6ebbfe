// A Control File of any bytes through both passes, its checks, lists, groups and scores. The words
// of the command line stand behind the first line "@@@" of the input.
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

#include "control/control_reader.h"
#include "control/item_specifications.h"
#include "platform/silent_console.h"
#include "support/test_run.h"

namespace {

using vardento::Run;

void ReadControl(Run& run) {
  vardento::ReadControlVariables(run);
  if (run.settings.NI > 500) run.DraftSettings().NI = 500;
  if (vardento::NeedsSecondPass(run.settings)) vardento::ReadPerItemVariables(run);
  vardento::ReadPerItemLists(run);
  vardento::NormalisePerItemTexts(run);
  vardento::DefaultModels(run);
}

void GroupAndScore(Run& run) {
  std::vector<std::int32_t> groups(static_cast<std::size_t>(run.settings.NI));
  run.arrays.ItemGroup = {groups.data(), run.settings.NI};
  vardento::AssignGroups(run, run.arrays.ItemGroup);
  std::vector<vardento::Model> models(static_cast<std::size_t>(run.NGROUPS));
  run.arrays.GroupModel = {models.data(), run.NGROUPS};
  vardento::AssignModels(run);
  run.inForce.scoring = vardento::DecideRescoring(run.settings);
  for (int item : {1, run.settings.NI}) {
    for (int code = 0; code <= run.settings.CATEGS; ++code) {
      const int score = vardento::ScoreResponse(run.settings, run.inForce.scoring, code, item);
      if (score < 0 || score > vardento::kMissingScore) abort();
    }
  }
  vardento::EchoSettings(run);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vardento::test::TempDirectory directory;
  static const int entered = chdir(directory.Path().c_str());
  if (entered != 0) abort();
  std::string text(reinterpret_cast<const char*>(data), size);
  // Files elsewhere on the machine are no part of the test.
  if (text.find('/') != std::string::npos) return 0;
  const std::size_t mark = text.find("@@@");
  vardento::SilentConsole console;
  Run run(console);
  // Not a batch run: its messages would go to the standard error stream.
  if (mark != std::string::npos) {
    run.startUp.words.push_back(text.substr(mark + 3));
    text.resize(mark);
  }
  run.startUp.ControlFileName = directory.Write("control.txt", text);
  if (!run.workDirectory.Prepare(directory.NameOf("work"))) abort();
  if (run.input.control.Open(run.startUp.ControlFileName) != 0) abort();
  try {
    ReadControl(run);
    GroupAndScore(run);
  } catch (const vardento::RunEnded&) {
  }
  return 0;
}
