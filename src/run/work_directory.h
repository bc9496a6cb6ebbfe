// The directory of the work files and the names of one run's files in it. Every name handed out is
// remembered and the file removed when the run ends, however it ends.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vardento {

class WorkDirectory {
 public:
  ~WorkDirectory() { RemoveFiles(); }
  WorkDirectory() = default;
  WorkDirectory(const WorkDirectory&) = delete;
  WorkDirectory& operator=(const WorkDirectory&) = delete;

  // Makes `path` (mode 0700, owned by this user, no symbolic link) and takes three digits that no
  // other run holds, by creating this run's "ZIN" file exclusively. False when it can't be used.
  bool Prepare(const std::string& path);
  const std::string& Path() const { return path_; }  // ends in "/"
  // The full name of the work file with this three-letter stem, e.g. "ZMM".
  std::string NameOf(std::string_view stem);
  // The three digits and the fixed tail: a name that holds it is a work file of this run.
  const std::string& Tail() const { return tail_; }
  bool IsWorkFile(std::string_view name) const;
  // Leaves this file behind at the end (the temporary report that the user asked for).
  void Keep(const std::string& name);
  void Remove(std::string_view stem);
  void RemoveFiles();

 private:
  std::string path_;
  std::string tail_;
  std::vector<std::string> names_;
};

}  // namespace vardento
