#include "platform/mirrored_file.h"

#include <cassert>
#include <cstring>

#include "platform/io_status.h"

namespace vardento {

IoStatus MirroredFile::Create(const std::string& path, std::size_t recordLength) {
  memory_.Free();
  static_cast<void>(file_.Close());  // what it held is not wanted
  return file_.Create(path, recordLength);
}

void MirroredFile::Mirror(MemoryBudget& budget, int records) {
  records_ = records;
  // Refused, the records stay on disk alone.
  static_cast<void>(
      memory_.Allocate(budget, static_cast<std::size_t>(records) * file_.RecordLength()));
}

IoStatus MirroredFile::Write(int record, const void* bytes) {
  if (IsMirrored()) {
    unsigned char* const place = Place(record);
    if (place != bytes) std::memcpy(place, bytes, file_.RecordLength());
    if (writes_ == Writes::MirrorAlone) return kIoOk;
  }
  return file_.Write(record, bytes);
}

IoStatus MirroredFile::Read(int record, void* bytes) {
  if (!IsMirrored()) return file_.Read(record, bytes);
  std::memcpy(bytes, Place(record), file_.RecordLength());
  return kIoOk;
}

IoStatus MirroredFile::Fill(int record, void* bytes) {
  const int status = file_.Read(record, bytes);
  if (status == kIoOk && IsMirrored()) std::memcpy(Place(record), bytes, file_.RecordLength());
  return status;
}

void MirroredFile::Drop() {
  assert(writes_ == Writes::Both);
  memory_.Free();
}

IoStatus MirroredFile::GiveBack() {
  int status = kIoOk;
  if (IsMirrored() && writes_ == Writes::MirrorAlone) {
    for (int record = 1; record <= records_ && status == kIoOk; ++record) {
      status = file_.Write(record, Place(record));
    }
  }
  memory_.Free();
  return status;
}

}  // namespace vardento
