// Directories and the names of files in them.
#pragma once

#include <string>
#include <string_view>

namespace vardento {

// The process's current directory, ending in "/"; "" when it can't be told.
std::string CurrentDirectory();
bool ChangeDirectory(const std::string& path);

// "/x/y.txt" -> "/x/"; "" when there is no directory in the name.
std::string DirectoryOf(std::string_view path);
inline bool IsFullPath(std::string_view path) { return !path.empty() && path.front() == '/'; }

// True when both names lead to the same plain file, by links or another spelling; also when nothing
// lies there yet.
bool IsSamePlainFile(const std::string& a, const std::string& b);
bool IsRegularFile(const std::string& path);

// Makes the directory, or takes an existing one, so that only this user can look into it (mode
// 0700). False when it can't be made or is a link, no directory, or another user's.
bool MakePrivateDirectory(const std::string& path);

// Where this user's work files go by default, ending in "/", and what is tried when that fails.
std::string DefaultWorkDirectory();
std::string SecondWorkDirectory();

}  // namespace vardento
