// The status numbers that file operations end with, as the file layer sets them and the messages
// read them. This is the seam between the operating system's error numbers and the run.
#pragma once

namespace vardento {

inline constexpr int kIoOk = 0;
inline constexpr int kIoEndOfFile = -1;
// The program's own mark for a text file whose last line has no line end.
inline constexpr int kIoNoFinalLineEnd = -2;
inline constexpr int kIoDirectoryNotFound = 3;
inline constexpr int kIoFileNotFound = 6416;
inline constexpr int kIoDiskFull = 6422;

// Turns an errno value into a status: the ones above keep their own numbers, EPERM is told as
// EACCES (1 and 3 have meanings of their own in the messages), all others stay as they are.
int StatusOfErrno(int error);

}  // namespace vardento
