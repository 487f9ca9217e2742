#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace tsv::test {

// What data/<file> lists under the name, up to the next empty line: lines of fields, apart by " | ".
inline std::vector<std::vector<std::string>> Listed(const std::string& file, const std::string& name) {
  static const std::string kBetween = " | ";
  std::vector<std::vector<std::string>> all;
  std::ifstream stream(TSV_TEST_DATA "/" + file);
  std::string line;
  while (std::getline(stream, line) && line != "# " + name) continue;
  while (std::getline(stream, line) && !line.empty()) {
    std::vector<std::string>& fields = all.emplace_back();
    std::size_t begin = 0;
    for (std::size_t end; (end = line.find(kBetween, begin)) != std::string::npos; begin = end + kBetween.size()) {
      fields.push_back(line.substr(begin, end - begin));
    }
    fields.push_back(line.substr(begin));
  }
  if (all.empty()) throw std::runtime_error(file + " lists nothing under " + name);
  return all;
}

}  // namespace tsv::test
