#include "platform/memory.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace vardento {
namespace {

// Strings, buffers and small tables are not counted. A large block that would leave them less than
// this is refused: whoever asked for it has a fall-back, they have none.
constexpr std::size_t kWorkingRoom = 1 << 19;
constexpr std::size_t kLargeBlock = 1 << 16;

bool LeavesWorkingRoom(std::size_t bytes) {
  if (bytes < kLargeBlock) return true;
  void* const room = std::malloc(kWorkingRoom);
  std::free(room);
  return room != nullptr;
}

}  // namespace

bool MemoryBudget::Take(std::size_t bytes) {
  ++requests_;
  if (refuse_ > 0 && requests_ >= refuse_) return false;
  if (bytes > limit_ - std::min(limit_, taken_)) return false;
  taken_ += bytes;
  return true;
}

MemoryBlock::MemoryBlock(MemoryBlock&& other) noexcept { *this = std::move(other); }

MemoryBlock& MemoryBlock::operator=(MemoryBlock&& other) noexcept {
  std::swap(data_, other.data_);
  std::swap(size_, other.size_);
  std::swap(budget_, other.budget_);
  return *this;
}

bool MemoryBlock::Allocate(MemoryBudget& budget, std::size_t bytes) {
  Free();
  if (!budget.Take(bytes)) return false;
  data_ = static_cast<unsigned char*>(std::calloc(std::max<std::size_t>(bytes, 1), 1));
  if (!data_ || !LeavesWorkingRoom(bytes)) {
    std::free(std::exchange(data_, nullptr));
    budget.Give(bytes);
    return false;
  }
  size_ = bytes;
  budget_ = &budget;
  return true;
}

void MemoryBlock::Free() {
  if (!data_) return;
  std::free(data_);
  data_ = nullptr;
  budget_->Give(std::exchange(size_, 0));
  budget_ = nullptr;
}

bool BlockPlan::Allocate(MemoryBudget& budget, MemoryBlock& block) const {
  if (!block.Allocate(budget, bytes_)) return false;
  for (const Cut& cut : cuts_) cut.set(cut.array, block.Data() + cut.place, cut.count);
  return true;
}

}  // namespace vardento
