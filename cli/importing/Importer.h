#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "Context.h"
#include "ProgressBar.h"
#include "common/CDaoTrans.h"
#include "importing/Columns.h"
#include "importing/CsvFile.h"
#include "importing/Marks.h"

namespace tsv::cli {

// Posts the entries of a CSV file. A refused line is told with its reason and the others go on; the file may then be
// corrected and imported again.
class Importer {
 public:
  struct Result {
    std::int64_t posted = 0;
    std::int64_t before = 0;  // posted by an earlier import
    std::int64_t refused = 0;
  };

  Importer(Context& context, Tesovia& tesovia, std::string path, std::string identity);

  // Raises a Failure, with nothing posted, when a line that was posted before has other content now. An error of the
  // engine ends the import; what result says was posted by then stays.
  void Run();

  const Result& Done() const { return done_; }

 private:
  // Lines are posted some hundred at a time, or for a second: other users wait no longer for their turn.
  struct Batch {
    CDaoTrans transaction;
    std::int32_t end = 0;
    std::chrono::steady_clock::time_point deadline;
    Result result;
  };

  Columns ReadHeader(CsvFile& file) const;
  void CompareWithMarks();
  void PostLines();
  void PostLine(const CsvLine& line, const Columns& columns, Batch& batch);
  std::int32_t PostWithMark(const TypedEntry& entry, const CsvLine& line, const std::string& digest);
  void Refuse(const CsvLine& line, const std::string& reason, Batch& batch);
  void Commit(std::optional<Batch>& batch);
  [[noreturn]] void RaiseOtherContent(std::int32_t line) const;

  Context& context_;
  Tesovia& tesovia_;
  std::string path_;
  std::string identity_;
  Marks marks_;
  ProgressBar bar_;
  Result done_;
};

}  // namespace tsv::cli
