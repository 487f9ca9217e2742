#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <string_view>

namespace tsv::test {

// A folder of its own, which goes with all that it holds.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("ledger-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path(std::string_view name = {}) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace tsv::test
