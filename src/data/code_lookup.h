// From the characters of a response to its category number: CODES= prepared for one look-up for
// each response of the data.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/control_settings.h"

namespace vardento {

// The most codes that a byte of the coded row can tell apart, 0 being none of them.
inline constexpr int kMaxCodes = 255;

// Code number c of CODES=, c = 1..CATEGS, XWIDE characters (fewer when CODES= ends before).
std::string_view CodeAt(const ControlSettings& settings, int c);

// Finds what CategoryOfCode finds, without walking through CODES=. Codes from number 256 on are
// left out; the caller sees to it that there are none.
class CodeLookup {
 public:
  explicit CodeLookup(const ControlSettings& settings);

  // The category number of the XWIDE characters at `field`.
  std::uint8_t Find(const char* field) const;

  // Sets row[i] for every i in `items` (from 0) from the XWIDE characters at codes + i x XWIDE.
  // Returns true when each of them is in CODES=.
  bool EncodeRow(const char* codes, const std::vector<int>& items, std::uint8_t* row) const;

 private:
  struct Entry {
    std::string code;
    std::uint8_t number;
  };
  void FillTable(const ControlSettings& settings);
  void FillEntries(const ControlSettings& settings);
  std::uint8_t FindWide(const char* field) const;

  std::size_t width_;
  std::vector<std::uint8_t> table_;  // by the bytes of the field, for a width of 1 or 2
  std::vector<Entry> entries_;       // sorted by code, for wider fields
};

}  // namespace vardento
