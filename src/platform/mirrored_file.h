// A direct-access work file that memory mirrors when there is room for it, with the same records
// either way. What the mirror takes is given back on demand.
#pragma once

#include <cstddef>
#include <string>

#include "platform/direct_file.h"
#include "platform/io_status.h"
#include "platform/memory.h"

namespace vardento {

class MirroredFile {
 public:
  // Whether the file stays complete while there is a mirror, or rests until that is given back.
  enum class Writes { Both, MirrorAlone };
  explicit MirroredFile(Writes writes) : writes_(writes) {}

  IoStatus Create(const std::string& path, std::size_t recordLength);
  DirectFile& File() { return file_; }

  // Mirrors `records` records from here on, when memory is granted. The mirror begins with zeros;
  // Fill brings it up to a file that is written already.
  void Mirror(MemoryBudget& budget, int records);
  bool IsMirrored() const { return static_cast<bool>(memory_); }
  // The record in memory; null without a mirror. Valid until the mirror goes.
  const unsigned char* Find(int record) const { return IsMirrored() ? Place(record) : nullptr; }

  // Statuses are those of the file; memory does not fail.
  IoStatus Write(int record, const void* bytes);
  IoStatus Read(int record, void* bytes);
  // Reads the record from the file, into `bytes` and the mirror.
  IoStatus Fill(int record, void* bytes);
  // Frees the mirror of a file that is complete without it.
  void Drop();
  // Frees the mirror of records that nobody wants any more.
  void Forget() { memory_.Free(); }
  // Writes what memory alone holds to the file, then frees the mirror.
  IoStatus GiveBack();

 private:
  unsigned char* Place(int record) const {
    return memory_.Data() + static_cast<std::size_t>(record - 1) * file_.RecordLength();
  }

  Writes writes_;
  DirectFile file_;
  MemoryBlock memory_;
  int records_ = 0;
};

}  // namespace vardento
