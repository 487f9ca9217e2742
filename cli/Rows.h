#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "db/Recordset.h"
#include "types/Variant.h"

namespace CLI {
class App;
}

// Rows of values on standard output, in the form that the user asked for.
namespace tsv::cli {

struct OutputForm {
  bool csv = false;   // ; between fields, Brazilian amounts and dates, as spreadsheets here expect
  bool json = false;  // amounts as texts with a point, dates in the ISO form: exact for every reader

  bool IsTable() const { return !csv && !json; }
  void AddOptions(CLI::App& command);
};

struct OutputColumn {
  std::string title;     // over a table's column
  std::string field;     // in CSV and JSON
  bool onRight = false;  // amounts and numbers
  bool inTable = true;
};

// Takes rows one by one and keeps only a table's first ones, whose widths it measures.
class RowWriter {
 public:
  virtual ~RowWriter() = default;
  virtual void Write(const std::vector<Variant>& row) = 0;
  virtual void Finish() = 0;
};

std::unique_ptr<RowWriter> MakeRowWriter(const OutputForm& form, std::vector<OutputColumn> columns, std::ostream& out);

// The columns of a recordset as they are.
std::vector<OutputColumn> ColumnsOf(const db::Recordset& recordset);
std::vector<Variant> CurrentRow(const db::Recordset& recordset);

}  // namespace tsv::cli
