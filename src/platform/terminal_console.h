// A terminal (or a pair of pipes) in the place of the console window: lines to standard output,
// lines from standard input. There are no menus, so that menu entries are not kept.
#pragma once

#include "platform/console.h"

namespace vardento {

class TerminalConsole : public Console {
 public:
  TerminalConsole();
  ~TerminalConsole() override;
  TerminalConsole(const TerminalConsole&) = delete;
  TerminalConsole& operator=(const TerminalConsole&) = delete;

  void WriteLine(std::string_view text) override;
  void WritePart(std::string_view text) override;
  // Ends without a line at the end of input and when a signal comes.
  bool ReadLine(std::string& line) override;
  void PumpMessages() override {}
  int Interrupts() const override;
  void ClearInterrupts() override;
  bool IsClosing() const override;
  std::string AskForFile(std::string_view title) override;
  void AddMenuEntry(std::string_view) override {}
  void SetMenuState(MenuState) override {}

 private:
  bool TakeLine(std::string& line);
  bool WaitForInput();
  void ReadInput();

  int input_;          // descriptor that lines are read from
  std::string typed_;  // input that no line was made of yet
  bool inputEnded_ = false;
  bool partPending_ = false;  // the last line is not finished
};

}  // namespace vardento
