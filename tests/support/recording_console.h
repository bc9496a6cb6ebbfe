// A console for tests: keeps what the run says, answers from a queue, and plays the user's part.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/console.h"

namespace vardento::test {

class RecordingConsole : public Console {
 public:
  std::vector<std::string> lines;        // what was said, a prompt that was answered included
  std::string part;                      // text that stands on the unfinished last line
  std::deque<std::string> answers;       // lines the user will type; none left: end of input
  std::deque<std::string> chosenFiles;   // answers to dialogs
  std::vector<std::string> dialogs;      // their titles
  std::vector<std::string> menuEntries;  // captions, in order
  MenuState menuState = MenuState::Running;
  int interrupts = 0;
  bool closing = false;
  int pumps = 0;
  std::function<void(RecordingConsole&)> onPump;  // may raise `interrupts` or `closing`

  void WriteLine(std::string_view text) override {
    part += text;
    part.erase(part.find_last_not_of(' ') + 1);
    lines.push_back(std::move(part));
    part.clear();
  }
  void WritePart(std::string_view text) override { part += text; }
  bool ReadLine(std::string& line) override {
    if (!part.empty()) WriteLine("");
    line.clear();
    if (answers.empty()) return false;
    line = answers.front();
    answers.pop_front();
    return true;
  }
  void PumpMessages() override {
    ++pumps;
    if (onPump) onPump(*this);
  }
  int Interrupts() const override { return interrupts; }
  void ClearInterrupts() override { interrupts = 0; }
  bool IsClosing() const override { return closing; }
  std::string AskForFile(std::string_view title) override {
    dialogs.emplace_back(title);
    if (chosenFiles.empty()) return "";
    std::string name = chosenFiles.front();
    chosenFiles.pop_front();
    return name;
  }
  void AddMenuEntry(std::string_view caption) override { menuEntries.emplace_back(caption); }
  void SetMenuState(MenuState state) override { menuState = state; }

  // All lines as one text, for HasSubstr.
  std::string Text() const {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
  }
};

}  // namespace vardento::test
