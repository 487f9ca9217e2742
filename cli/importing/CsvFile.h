#pragma once

#include <csv.h>

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace tsv::cli {

// One line of the file: its fields, or the reason why they cannot be read.
struct CsvLine {
  std::int32_t number = 0;  // as an editor counts, from 1
  std::vector<std::string> fields;
  std::string error;
};

// Reads a CSV file line by line, whatever its size. An entry stands on one line, so a quote that stays open is an
// error of its line and the next line is read afresh. Blank lines, and lines of empty fields as spreadsheets leave
// them at the end, are passed over.
class CsvFile {
 public:
  // Raises a Failure when the file cannot be read.
  explicit CsvFile(const std::string& path);
  ~CsvFile();
  CsvFile(const CsvFile&) = delete;
  CsvFile& operator=(const CsvFile&) = delete;

  std::optional<CsvLine> Next();

  std::int64_t Size() const { return size_; }      // in bytes
  std::int64_t Position() const { return read_; }  // bytes read so far

 private:
  bool ReadLine(CsvLine& line);
  void Split(CsvLine& line);

  std::ifstream file_;
  std::int64_t size_ = 0;
  std::int64_t read_ = 0;
  std::int32_t number_ = 0;
  std::string buffer_;
  std::string text_;
  csv_parser parser_{};
  bool hasDelimiter_ = false;
};

}  // namespace tsv::cli
