// Reads a Control File given as text, as far as a test wants it, and keeps what became of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "control/control_reader.h"
#include "control/item_specifications.h"
#include "support/test_run.h"

namespace vardento::test {

class ControlText {
 public:
  // `text` stands behind "NI=4" and "ITEM1=1", so that a test names only what it is about.
  explicit ControlText(std::string_view text, std::vector<std::string> words = {},
                       std::string_view field = "")
      : test("NI=4\nITEM1=1\n" + std::string(text)) {
    test.run.startUp.words = std::move(words);
    test.run.startUp.ExtraSpecifications = field;
  }

  // The first pass and the checks; false when they ended the run.
  bool ReadFirst() {
    return Attempt([this] { ReadControlVariables(test.run); });
  }
  // All that is read before the items are grouped.
  bool ReadAll() {
    return Attempt([this] {
      ReadControlVariables(test.run);
      if (NeedsSecondPass(test.run.settings)) ReadPerItemVariables(test.run);
      ReadPerItemLists(test.run);
      NormalisePerItemTexts(test.run);
      DefaultModels(test.run);
    });
  }
  template <class Action>
  bool Attempt(Action action) {
    try {
      action();
      return true;
    } catch (const RunEnded&) {
      return false;
    }
  }

  const ControlSettings& Settings() const { return test.run.settings; }
  std::string Said() const { return test.console.Text(); }

  TestRun test;
};

}  // namespace vardento::test
