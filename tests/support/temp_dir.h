// Directories that exist for one test.
#pragma once

#include <string>

namespace qxe::test {

/// A fresh empty directory, removed with its content at the end.
class TempDir {
 public:
  TempDir();
  /// In another directory than the system's for temporary files, if it can be written to.
  explicit TempDir(const std::string& parent);
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  /// Path of an entry in it.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

/// Makes `path` the working directory until the end, then goes back.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path);
  ~WorkingDirectory();
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  std::string before_;
};

}  // namespace qxe::test
