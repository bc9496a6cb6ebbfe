// Large memory: zero-filled blocks that can be refused, and views into them that count from 1.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <type_traits>
#include <vector>

namespace vardento {

// How much large memory a run may take. The default is no limit of its own; a test sets one.
class MemoryBudget {
 public:
  void SetLimit(std::size_t bytes) { limit_ = bytes; }
  // Every request from the n-th on (from 1) is refused, except none when n is 0: for tests.
  void RefuseRequest(int n) { refuse_ = n; }
  [[nodiscard]] bool Take(std::size_t bytes);
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
  [[nodiscard]] bool Allocate(MemoryBudget& budget, std::size_t bytes);
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

// Owns `size` elements whose index begins at 1: small tables of one phase. Large memory comes from
// blocks, which can be refused.
template <class T>
class Vector1 {
 public:
  Vector1() = default;
  explicit Vector1(int size, const T& value = T()) { Assign(size, value); }
  void Assign(int size, const T& value = T()) {
    elements_.assign(static_cast<std::size_t>(size), value);
  }
  void Fill(const T& value) { elements_.assign(elements_.size(), value); }
  T& operator[](int index) { return elements_[Place(index)]; }
  const T& operator[](int index) const { return elements_[Place(index)]; }
  int Size() const { return static_cast<int>(elements_.size()); }
  auto begin() { return elements_.begin(); }
  auto end() { return elements_.end(); }
  auto begin() const { return elements_.begin(); }
  auto end() const { return elements_.end(); }

 private:
  std::size_t Place(int index) const {
    assert(index >= 1 && index <= Size());
    return static_cast<std::size_t>(index - 1);
  }

  std::vector<T> elements_;
};

// The arrays of one block, each told once: that gives the block its size and cuts it. Every array
// is aligned to its elements.
class BlockPlan {
 public:
  template <class T>
  BlockPlan& Add(Array1<T>& array, int count) {
    static_assert(std::is_trivially_copyable_v<T>, "a block begins as zeros");
    const std::size_t place = (bytes_ + alignof(T) - 1) / alignof(T) * alignof(T);
    bytes_ = place + sizeof(T) * static_cast<std::size_t>(count);
    cuts_.push_back({&array, place, count, &CutArray<T>});
    return *this;
  }
  // The same number of elements for each of several arrays.
  template <class T>
  BlockPlan& Add(std::initializer_list<Array1<T>*> arrays, int count) {
    for (Array1<T>* array : arrays) Add(*array, count);
    return *this;
  }
  std::size_t Bytes() const { return bytes_; }
  // Takes the block and sets the arrays to it; false, and nothing set, when it is refused.
  [[nodiscard]] bool Allocate(MemoryBudget& budget, MemoryBlock& block) const;

 private:
  struct Cut {
    void* array;
    std::size_t place;
    int count;
    void (*set)(void* array, unsigned char* first, int count);
  };
  template <class T>
  static void CutArray(void* array, unsigned char* first, int count) {
    *static_cast<Array1<T>*>(array) = Array1<T>(reinterpret_cast<T*>(first), count);
  }

  std::size_t bytes_ = 0;
  std::vector<Cut> cuts_;
};

}  // namespace vardento
