// An index of the persons by what they answered, for the connectivity check: persons of the same
// pattern of low and high responses are one class, tested once. Without it every sweep reads all
// rows again, which many subsets make quadratic in persons.
#pragma once

#include <cstdint>
#include <vector>

#include "measure/observations.h"
#include "run/run.h"

namespace vardento {

// What the connectivity check asks of an active item.
struct LinkItem {
  const std::int32_t* codeToCategory = nullptr;
  int item = 0;
  int top = 0;  // T
  // The ordered category of the person's response, negative when it doesn't count.
  int CategoryIn(const std::uint8_t* row) const {
    const std::uint8_t response = row[item - 1];
    return response == 255 ? -1 : codeToCategory[response];
  }
};

// A set of places in the list of active items.
class ItemSet {
 public:
  explicit ItemSet(std::size_t places) : bits_((places + 63) / 64, 0) {}
  void ClearWord(std::size_t w) { bits_[w] = 0; }
  void Add(std::size_t place) { bits_[place / 64] |= std::uint64_t{1} << (place % 64); }
  void Remove(std::size_t place) { bits_[place / 64] &= ~(std::uint64_t{1} << (place % 64)); }
  std::uint64_t Word(std::size_t w) const { return bits_[w]; }

 private:
  std::vector<std::uint64_t> bits_;
};

class ResponseIndex {
 public:
  explicit ResponseIndex(const std::vector<LinkItem>& items)
      : items_(items), words_((items.size() + 63) / 64) {}

  // Room for `persons` persons, numbered up to NPERS; false when there is none.
  bool Allocate(Run& run, int persons);
  // Persons are added from the last to the first.
  void Add(int person, const std::uint8_t* row, bool anchored);

  // What a class has to meet: places where a response above the lowest category tells, and places
  // where one below the highest does. `words`: those that hold any place.
  struct Frame {
    const ItemSet& up;
    const ItemSet& down;
    const std::vector<std::size_t>& words;
    bool anchored;  // an anchored person joins whatever it answered
  };
  bool CanJoin(int person, const Frame& frame) const {
    return ClassCanJoin(classOf_[person], frame);
  }
  // The lowest person that can join, 0 when nobody can.
  int FirstJoiner(const Frame& frame);
  // The person has joined; a class that nobody is left in is closed, at some later time.
  void Remove(int person);
  int OpenClasses() const { return static_cast<int>(open_.size()); }

 private:
  bool ClassCanJoin(int number, const Frame& frame) const;
  int FindClass(const std::vector<std::uint64_t>& pattern, bool anchored);
  std::uint64_t* PatternOf(int number) const {
    return patterns_.Data() + static_cast<std::size_t>(number - 1) * 2 * words_;
  }

  const std::vector<LinkItem>& items_;
  std::size_t words_;  // of each of the two bit sets of a pattern
  MemoryBlock block_;
  // A pattern's bits: above the lowest category, then below the highest.
  Array1<std::uint64_t> patterns_;
  Array1<std::int32_t> first_;    // of a class: its lowest person, joined or not
  Array1<std::int32_t> left_;     // of a class: persons who have not joined
  Array1<std::int32_t> slots_;    // hash table of class numbers
  Array1<std::int32_t> classOf_;  // by person; 0 once it has joined
  Array1<std::int32_t> next_;     // the next person of the same class
  Array1<std::uint8_t> anchored_;
  int classes_ = 0;
  std::vector<int> open_;  // classes, some of which may have nobody left
  std::size_t closed_ = 0;
  std::vector<std::uint64_t> pattern_;
};

}  // namespace vardento
