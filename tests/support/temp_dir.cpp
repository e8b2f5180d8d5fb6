#include "support/temp_dir.h"

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace qxe::test {

namespace {

std::string writable(const std::string& directory) {
  const bool is_writable = access(directory.c_str(), W_OK) == 0;
  return is_writable ? directory : std::filesystem::temp_directory_path().string();
}

}  // namespace

TempDir::TempDir() : TempDir(std::filesystem::temp_directory_path()) {}

TempDir::TempDir(const std::string& parent) : path_(writable(parent) + "/qxe_test_XXXXXX") {
  if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("cannot make " + path_);
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

WorkingDirectory::WorkingDirectory(const std::string& path)
    : before_(std::filesystem::current_path()) {
  std::filesystem::current_path(path);
}

WorkingDirectory::~WorkingDirectory() {
  std::error_code ignored;
  std::filesystem::current_path(before_, ignored);
}

}  // namespace qxe::test
