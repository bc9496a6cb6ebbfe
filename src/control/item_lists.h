// The lists of per-item values: one line for an item or a range of items and its value.
#pragma once

#include <string>
#include <string_view>

namespace vardento {

struct ItemListEntry {
  int first = 0;  // 1 <= first, last <= NI; first > last: nothing in range
  int last = 0;
  char value = ' ';
};

enum class ItemListLine { Blank, Entry, Faulty };

// Reads one line "item value" or "a-b value"; the first character of the value counts.
ItemListLine ParseItemListLine(std::string_view line, int NI, ItemListEntry& entry);

}  // namespace vardento
