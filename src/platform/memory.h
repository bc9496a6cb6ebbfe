// Large memory: zero-filled blocks that can be refused, and views into them that count from 1.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>

namespace vardento {

// How much large memory a run may take. The default is no limit of its own; a test sets one.
class MemoryBudget {
 public:
  void SetLimit(std::size_t bytes) { limit_ = bytes; }
  // Every request from the n-th on (from 1) is refused, except none when n is 0: for tests.
  void RefuseRequest(int n) { refuse_ = n; }
  bool Take(std::size_t bytes);
  void Give(std::size_t bytes) { taken_ -= bytes; }

 private:
  std::size_t limit_ = SIZE_MAX;
  std::size_t taken_ = 0;
  int requests_ = 0;
  int refuse_ = 0;
};

// One zero-filled block, freed with the object.
class MemoryBlock {
 public:
  MemoryBlock() = default;
  ~MemoryBlock() { Free(); }
  MemoryBlock(MemoryBlock&& other) noexcept;
  MemoryBlock& operator=(MemoryBlock&& other) noexcept;
  MemoryBlock(const MemoryBlock&) = delete;
  MemoryBlock& operator=(const MemoryBlock&) = delete;

  // False when the budget or the system refuses; the block is then empty.
  bool Allocate(MemoryBudget& budget, std::size_t bytes);
  void Free();
  unsigned char* Data() const { return data_; }
  std::size_t Size() const { return size_; }
  explicit operator bool() const { return data_ != nullptr; }

 private:
  unsigned char* data_ = nullptr;
  std::size_t size_ = 0;
  MemoryBudget* budget_ = nullptr;
};

// A view of `size` elements whose index begins at 1; it owns nothing.
template <class T>
class Array1 {
 public:
  Array1() = default;
  Array1(T* first, int size) : first_(first), size_(size) {}
  T& operator[](int index) const {
    assert(index >= 1 && index <= size_);
    return first_[index - 1];
  }
  int Size() const { return size_; }
  T* Data() const { return first_; }
  T* begin() const { return first_; }
  T* end() const { return first_ + size_; }

 private:
  T* first_ = nullptr;
  int size_ = 0;
};

// Cuts arrays one after the other from a block. A type is aligned to its own size; the caller asks
// for 4-byte arrays before byte arrays, so that nothing is lost between them.
class BlockCutter {
 public:
  explicit BlockCutter(const MemoryBlock& block) : next_(block.Data()), left_(block.Size()) {}
  template <class T>
  Array1<T> Cut(int count) {
    const std::size_t bytes = sizeof(T) * static_cast<std::size_t>(count);
    assert(bytes <= left_);
    Array1<T> array(reinterpret_cast<T*>(next_), count);
    next_ += bytes;
    left_ -= bytes;
    return array;
  }

 private:
  unsigned char* next_;
  std::size_t left_;
};

}  // namespace vardento
