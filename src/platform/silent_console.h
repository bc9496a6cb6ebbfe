// The console of a batch run: it shows nothing, and nobody answers. Signals still reach the run.
#pragma once

#include "platform/console.h"
#include "platform/signals.h"

namespace vardento {

class SilentConsole : public Console {
 public:
  void WriteLine(std::string_view) override {}
  void WritePart(std::string_view) override {}
  bool ReadLine(std::string& line) override {
    line.clear();
    return false;
  }
  void PumpMessages() override {}
  int Interrupts() const override { return InterruptSignals(); }
  void ClearInterrupts() override { ClearInterruptSignals(); }
  bool IsClosing() const override { return TerminationSignalled(); }
  std::string AskForFile(std::string_view) override { return {}; }
  void AddMenuEntry(std::string_view) override {}
  void SetMenuState(MenuState) override {}
};

}  // namespace vardento
