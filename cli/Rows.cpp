#include "Rows.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "Texts.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

class TableWriter : public RowWriter {
 public:
  TableWriter(std::vector<OutputColumn> columns, std::ostream& out) : columns_(std::move(columns)), out_(out) {
    for (const OutputColumn& column : columns_) widths_.push_back(column.inTable ? text::Length(column.title) : 0);
  }

  void Write(const std::vector<Variant>& row) override {
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < row.size(); ++i) cells.push_back(columns_[i].inTable ? OneLine(Shown(row[i])) : "");
    if (measured_) return Print(cells);
    for (std::size_t i = 0; i < cells.size(); ++i) widths_[i] = std::max(widths_[i], text::Length(cells[i]));
    first_.push_back(std::move(cells));
    if (first_.size() == kMeasured) PrintFirst();
  }

  void Finish() override {
    if (!measured_) PrintFirst();
  }

 private:
  static constexpr std::size_t kMeasured = 1000;

  void PrintFirst() {
    measured_ = true;
    std::vector<std::string> titles;
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      titles.push_back(columns_[i].inTable ? columns_[i].title : "");
      lines.emplace_back(widths_[i], '-');
    }
    Print(titles);
    Print(lines);
    for (const auto& cells : first_) Print(cells);
    first_.clear();
  }

  void Print(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (!columns_[i].inTable) continue;
      const std::size_t length = text::Length(cells[i]);
      const std::string padding(widths_[i] > length ? widths_[i] - length : 0, ' ');
      line += columns_[i].onRight ? padding + cells[i] : cells[i] + padding;
      line += "  ";
    }
    out_ << text::TrimRight(line) << '\n';
  }

  std::vector<OutputColumn> columns_;
  std::ostream& out_;
  std::vector<std::size_t> widths_;
  std::vector<std::vector<std::string>> first_;
  bool measured_ = false;
};

class CsvWriter : public RowWriter {
 public:
  CsvWriter(const std::vector<OutputColumn>& columns, std::ostream& out) : out_(out) {
    std::string line;
    for (const OutputColumn& column : columns) Append(line, column.field);
    Print(line);
  }

  void Write(const std::vector<Variant>& row) override {
    std::string line;
    for (const Variant& value : row) Append(line, Plain(value));
    Print(line);
  }

  void Finish() override {}

 private:
  static std::string Plain(const Variant& value) {
    const auto* amount = std::get_if<Currency>(&value);
    if (!amount) return Shown(value);
    std::string text = PlainAmount(*amount);
    std::replace(text.begin(), text.end(), '.', ',');
    return text;
  }

  static void Append(std::string& line, const std::string& text) {
    if (text.find_first_of(";\"\r\n") == std::string::npos) {
      line += text;
    } else {
      line += '"';
      for (const char c : text) line.append(c == '"' ? 2 : 1, c);
      line += '"';
    }
    line += ';';
  }

  void Print(std::string& line) {
    if (!line.empty()) line.pop_back();
    out_ << line << '\n';
  }

  std::ostream& out_;
};

class JsonWriter : public RowWriter {
 public:
  JsonWriter(std::vector<OutputColumn> columns, std::ostream& out) : columns_(std::move(columns)), out_(out) {
    out_ << '[';
  }

  void Write(const std::vector<Variant>& row) override {
    nlohmann::ordered_json object;
    for (std::size_t i = 0; i < row.size(); ++i) object[columns_[i].field] = Value(row[i]);
    out_ << (first_ ? "\n" : ",\n") << object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    first_ = false;
  }

  void Finish() override { out_ << "\n]\n"; }

 private:
  static nlohmann::ordered_json Value(const Variant& value) {
    if (IsNull(value)) return nullptr;
    if (const auto* truth = std::get_if<bool>(&value)) return *truth;
    if (const auto* byte = std::get_if<std::uint8_t>(&value)) return *byte;
    if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
    if (const auto* number = std::get_if<double>(&value)) return *number;
    if (const auto* amount = std::get_if<Currency>(&value)) return PlainAmount(*amount);
    if (const auto* date = std::get_if<Date>(&value)) return IsoMoment(*date);
    return ToText(value);
  }

  std::vector<OutputColumn> columns_;
  std::ostream& out_;
  bool first_ = true;
};

}  // namespace

void OutputForm::AddOptions(CLI::App& command) {
  auto* csvFlag = command.add_flag("--csv", csv, "Escreve CSV, com ; entre os campos");
  command.add_flag("--json", json, "Escreve JSON")->excludes(csvFlag);
}

std::unique_ptr<RowWriter> MakeRowWriter(const OutputForm& form, std::vector<OutputColumn> columns, std::ostream& out) {
  if (form.csv) return std::make_unique<CsvWriter>(columns, out);
  if (form.json) return std::make_unique<JsonWriter>(std::move(columns), out);
  return std::make_unique<TableWriter>(std::move(columns), out);
}

std::vector<OutputColumn> ColumnsOf(const db::Recordset& recordset) {
  std::vector<OutputColumn> columns;
  for (std::size_t i = 0; i < recordset.FieldCount(); ++i) {
    const db::Field field = recordset.Fields(i);
    const bool isText = field.Type() == db::DataTypeEnum::dbText || field.Type() == db::DataTypeEnum::dbBoolean;
    columns.push_back({field.Name(), field.Name(), !isText});
  }
  return columns;
}

std::vector<Variant> CurrentRow(const db::Recordset& recordset) {
  std::vector<Variant> row;
  for (std::size_t i = 0; i < recordset.FieldCount(); ++i) row.push_back(recordset.Fields(i).Value());
  return row;
}

}  // namespace tsv::cli
