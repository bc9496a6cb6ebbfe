// The request for one Table: who wants it fills this record, the dispatcher reads and clears it.
#pragma once

#include <array>

namespace vardento {

struct TableRequest {
  int CurrentTable = 0;
  char OutputFileCode = ' ';
  int SubtableCounter = 0;  // the heading adds 1 before it prints it
  // Slot n stands at n - 1. ' ': not given; 'U' or 'Y': given.
  std::array<char, 8> TableArgumentSet{' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
  std::array<float, 8> TableArgument{};
  bool TableSubjectIsPerson = false;
  bool HeadingPending = true;

  char Set(int slot) const { return TableArgumentSet[static_cast<std::size_t>(slot - 1)]; }
  float Value(int slot) const { return TableArgument[static_cast<std::size_t>(slot - 1)]; }
  void ClearSlots() {
    TableArgumentSet.fill(' ');
    TableArgument.fill(0.0F);
  }
};

}  // namespace vardento
