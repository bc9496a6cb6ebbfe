// The user's words for categories (CFILE=) and for response codes (CLFILE=), which Tables set
// beside what they count.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "run/run.h"

namespace vardento {

class CategoryLabels {
 public:
  // Reads both lists. One that can't be opened is as if it were not given: the run goes on.
  explicit CategoryLabels(Run& run);

  bool HasCategories() const { return hasCategories_; }
  bool HasCodes() const { return hasCodes_; }
  // The words of a category of a group by its value: of the first line that names an item of the
  // group, else of the last line that names no item; empty without one.
  std::string_view OfCategory(int value, int group) const;
  // The words of the response code at place `code` (from 1) of CODES=, as `item` of `group` shows
  // it: of the first line that names the item, else of the last one that names another item of its
  // group, else of the first one that names none; empty without one.
  std::string_view OfCode(int code, int item, int group) const;

 private:
  struct Line {
    std::string key;
    int item = 0;  // 0: the line names none
    std::string words;
  };
  using TakeKey = bool (*)(std::string_view& rest, Line& line);
  bool Read(const std::string& fileName, TakeKey takeKey, std::vector<Line>& lines) const;
  // Whether the line names an item of the group.
  bool IsOfGroup(const Line& line, int group) const;

  const Run& run_;
  bool hasCategories_ = false, hasCodes_ = false;
  std::vector<Line> categories_, codes_;
};

}  // namespace vardento
