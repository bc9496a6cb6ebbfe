// Direct-access work files: records of one length, numbered from 1, behind one buffer of
// neighbouring records, so that a walk over the persons makes few system calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/io_status.h"

namespace vardento {

class DirectFile {
 public:
  // Opens `path` (created exclusively or, when it exists already, cut to nothing; mode 0600; links
  // are not followed) for records of `recordLength` bytes, at least 1.
  IoStatus Create(const std::string& path, std::size_t recordLength);
  bool IsOpen() const { return file_.IsOpen(); }
  std::size_t RecordLength() const { return recordLength_; }
  // `bytes` holds RecordLength() bytes. Reading a record that was never written is kIoEndOfFile.
  IoStatus Write(int record, const void* bytes);
  IoStatus Read(int record, void* bytes);
  IoStatus Flush();
  // Takes room for so many records, zeros, or tells at once that there is none.
  IoStatus Reserve(int records);
  IoStatus Close();

 private:
  IoStatus MoveWindow(std::uint64_t record);

  File file_;
  std::size_t recordLength_ = 0;
  std::vector<unsigned char> window_;
  std::uint64_t windowFirst_ = 0;   // record number - 1 of the window's first record
  std::size_t windowFilled_ = 0;    // records in the window that hold something
  std::size_t windowCapacity_ = 0;  // records that fit
  bool dirty_ = false;
};

}  // namespace vardento
