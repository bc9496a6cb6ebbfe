// What the run says to its user and asks of the user. A terminal implements it now; a window or a
// full-screen terminal can later. The batch console says nothing and answers nothing.
#pragma once

#include <string>
#include <string_view>

namespace vardento {

enum class MenuState { Running, AfterRun };

class Console {
 public:
  virtual ~Console() = default;

  // Appends one line, less its trailing blanks.
  virtual void WriteLine(std::string_view text) = 0;
  // Text that stays on the last line: prompts, progress marks.
  virtual void WritePart(std::string_view text) = 0;
  // One line typed by the user, without its end; false when no more input will come, or an
  // interrupt that has not been acted upon.
  virtual bool ReadLine(std::string& line) = 0;
  // Handles what the user did in the meantime (see Interrupts).
  virtual void PumpMessages() = 0;
  // How often the user asked to stop (Ctrl+C) since ClearInterrupts.
  virtual int Interrupts() const = 0;
  virtual void ClearInterrupts() = 0;
  // True once the process was told to end (termination signal, hang-up).
  virtual bool IsClosing() const = 0;
  // A path chosen by the user in answer to a dialog of this title, or nothing.
  virtual std::string AskForFile(std::string_view title) = 0;
  // Menu entries of the run; a console without menus keeps nothing.
  virtual void AddMenuEntry(std::string_view caption) = 0;
  virtual void SetMenuState(MenuState state) = 0;

  int interruptsSeen = 0;  // interrupts that have been acted upon
};

}  // namespace vardento
