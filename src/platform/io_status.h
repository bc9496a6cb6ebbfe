// The status numbers that file operations end with, as the file layer sets them and the messages
// read them. This is the seam between the operating system's error numbers and the run.
#pragma once

namespace vardento {

// How a file operation ended: a number of the ones below or the system's. It can't be passed over.
class [[nodiscard]] IoStatus {
 public:
  constexpr IoStatus(int number) : number_(number) {}
  constexpr operator int() const { return number_; }

 private:
  int number_;
};

inline constexpr IoStatus kIoOk = 0;
inline constexpr IoStatus kIoEndOfFile = -1;
// The program's own mark for a text file whose last line has no line end.
inline constexpr IoStatus kIoNoFinalLineEnd = -2;
inline constexpr IoStatus kIoDirectoryNotFound = 3;
inline constexpr IoStatus kIoFileNotFound = 6416;
inline constexpr IoStatus kIoDiskFull = 6422;

// Turns an errno value into a status: the ones above keep their own numbers, EPERM is told as
// EACCES (1 and 3 have meanings of their own in the messages), all others stay as they are.
IoStatus StatusOfErrno(int error);

}  // namespace vardento
