#include "measure/response_index.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace vardento {

namespace {

// Spread over all bits: patterns of neighbours differ in few.
std::uint64_t HashPattern(const std::vector<std::uint64_t>& pattern, bool anchored) {
  std::uint64_t hash = anchored ? 0x9E3779B97F4A7C15U : 0;
  for (const std::uint64_t word : pattern) {
    hash = (hash ^ word) * 0xFF51AFD7ED558CCDU;
    hash ^= hash >> 32;
  }
  return hash;
}

}  // namespace

bool ResponseIndex::Allocate(Run& run, int persons) {
  const auto count = static_cast<std::size_t>(persons);
  const std::size_t slots = std::bit_ceil(2 * count);  // half empty at least: a search ends soon
  if (count * 2 * words_ > INT32_MAX || slots > INT32_MAX) return false;  // out of an index's reach
  BlockPlan plan;
  plan.Add(patterns_, static_cast<int>(count * 2 * words_));
  plan.Add({&first_, &left_}, persons).Add(slots_, static_cast<int>(slots));
  plan.Add({&classOf_, &next_}, run.NPERS).Add(anchored_, persons);
  if (!plan.Allocate(run.memory, block_)) return false;
  pattern_.assign(2 * words_, 0);
  return true;
}

void ResponseIndex::Add(int person, const std::uint8_t* row, bool anchored) {
  std::fill(pattern_.begin(), pattern_.end(), 0);
  for (std::size_t place = 0; place < items_.size(); ++place) {
    const int x = items_[place].CategoryIn(row);
    if (x < 0) continue;
    const std::uint64_t bit = std::uint64_t{1} << (place % 64);
    if (x > 0) pattern_[place / 64] |= bit;
    if (x < items_[place].top) pattern_[words_ + place / 64] |= bit;
  }
  const int number = FindClass(pattern_, anchored);
  classOf_[person] = number;
  // Added from the last to the first, so that the list of a class runs upward.
  next_[person] = first_[number];
  first_[number] = person;
  ++left_[number];
}

int ResponseIndex::FindClass(const std::vector<std::uint64_t>& pattern, bool anchored) {
  const auto mask = static_cast<std::uint64_t>(slots_.Size() - 1);
  std::uint64_t slot = HashPattern(pattern, anchored) & mask;
  for (;; slot = (slot + 1) & mask) {
    std::int32_t& number = slots_[static_cast<int>(slot) + 1];
    if (number == 0) {
      number = ++classes_;
      std::copy(pattern.begin(), pattern.end(), PatternOf(number));
      anchored_[number] = anchored ? 1 : 0;
      open_.push_back(number);
      return number;
    }
    if ((anchored_[number] != 0) == anchored &&
        std::equal(pattern.begin(), pattern.end(), PatternOf(number))) {
      return number;
    }
  }
}

bool ResponseIndex::ClassCanJoin(int number, const Frame& frame) const {
  if (frame.anchored && anchored_[number] != 0) return true;
  const std::uint64_t* const pattern = PatternOf(number);
  std::uint64_t up = 0, down = 0;
  for (const std::size_t w : frame.words) {
    up |= pattern[w] & frame.up.Word(w);
    down |= pattern[words_ + w] & frame.down.Word(w);
    if (up != 0 && down != 0) return true;
  }
  return false;
}

int ResponseIndex::FirstJoiner(const Frame& frame) {
  int lowest = 0;
  for (const int number : open_) {
    // The pattern first: of those who can join there are few.
    if (!ClassCanJoin(number, frame) || left_[number] == 0) continue;
    std::int32_t& first = first_[number];
    while (classOf_[first] == 0) first = next_[first];
    if (lowest == 0 || first < lowest) lowest = first;
  }
  return lowest;
}

void ResponseIndex::Remove(int person) {
  const int number = std::exchange(classOf_[person], 0);
  if (number == 0 || --left_[number] > 0) return;
  // Swept once half of them are closed: each is moved a few times at most.
  if (2 * ++closed_ < open_.size()) return;
  std::erase_if(open_, [this](int other) { return left_[other] == 0; });
  closed_ = 0;
}

}  // namespace vardento
