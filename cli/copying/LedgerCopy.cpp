#include "copying/LedgerCopy.h"

#include <numeric>

#include "BalanceCheck.h"
#include "ProgressBar.h"
#include "Texts.h"
#include "common/Recordsets.h"
#include "db/LedgerSchema.h"
#include "types/Conversions.h"

namespace tsv::cli {
namespace {

std::string Joined(const std::vector<std::string>& names) {
  return std::accumulate(names.begin(), names.end(), std::string(), [](std::string list, const std::string& name) {
    return std::move(list) + (list.empty() ? "[" : ", [") + name + "]";
  });
}

std::string ColumnsOf(const db::Table& table) {
  std::vector<std::string> names;
  for (const db::Column& column : table.columns) names.push_back(column.name);
  return Joined(names);
}

// Rows come in the order in which they once came into the ledger, or nearly so.
std::string SelectOf(const db::Table& table) {
  const bool isJournal = table.Find("DataHora") != nullptr;
  const std::string order = isJournal ? "[DataHora], [Id]" : Joined(table.primaryKey);
  return "SELECT " + ColumnsOf(table) + " FROM [" + table.name + "]" + (order.empty() ? "" : " ORDER BY " + order);
}

std::int64_t CountOf(db::Database& database, const std::string& table) {
  const Module1::ScopedRecordset rows(
      database.OpenRecordset("SELECT Count(*) As Total FROM [" + table + "]", db::dbOpenSnapshot));
  return ToLong(rows->Fields("Total").Value());
}

}  // namespace

LedgerCopy::LedgerCopy(Context& context, const Interruption& interruption, db::Database& source, db::Database& target)
    : context_(context),
      interruption_(interruption),
      source_(source),
      target_(target),
      tables_(db::LedgerTables()),
      digests_(tables_.size()) {}

void LedgerCopy::Run() {
  for (const db::Table& table : tables_) {
    rows_.emplace_back(table.name, CountOf(source_, table.name));
    total_ += rows_.back().second;
  }
  Empty();
  Copy();
  Compare();
  Verify();
}

// A new ledger holds a serial and a type already, to which nothing refers yet.
void LedgerCopy::Empty() {
  for (const db::Table& table : tables_) target_.Execute("DELETE * FROM [" + table.name + "]", db::dbFailOnError);
}

void LedgerCopy::Copy() {
  ProgressBar bar("Copiando", total_);
  std::int64_t done = 0;
  for (std::size_t i = 0; i < tables_.size(); ++i) {
    const std::string insert = "INSERT INTO [" + tables_[i].name + "] (" + ColumnsOf(tables_[i]) + ") VALUES (";
    const Module1::ScopedRecordset rows(source_.OpenRecordset(SelectOf(tables_[i]), db::dbOpenForwardOnly));
    for (; !rows->EndOfFile(); rows->MoveNext()) {
      interruption_.Check();
      HidePassword(tables_[i], *rows);
      const std::string literals = LiteralsOf(*rows);
      target_.Execute(insert + literals + ")", db::dbFailOnError);
      digests_[i].Add(literals);
      bar.At(++done);
    }
  }
}

void LedgerCopy::HidePassword(const db::Table& table, const db::Recordset& row) {
  if (table.Find("Senha") && !IsNull(row.Fields("Senha").Value())) context_.Hide(ToText(row.Fields("Senha").Value()));
}

void LedgerCopy::Compare() {
  ProgressBar bar("Comparando", total_);
  std::int64_t done = 0;
  for (std::size_t i = 0; i < tables_.size(); ++i) {
    TableDigest copied;
    const Module1::ScopedRecordset rows(target_.OpenRecordset(SelectOf(tables_[i]), db::dbOpenForwardOnly));
    for (; !rows->EndOfFile(); rows->MoveNext()) {
      interruption_.Check();
      copied.Add(LiteralsOf(*rows));
      bar.At(++done);
    }
    if (copied != digests_[i] || copied.rows != rows_[i].second) {
      throw Failure(kRefused, "A tabela " + tables_[i].name +
                                  " não ficou igual: " + Count(rows_[i].second, "linha", "linhas") + " na origem, " +
                                  Count(copied.rows, "linha", "linhas") + " na cópia. A cópia foi desfeita.");
    }
  }
}

void LedgerCopy::Verify() {
  ProgressBar bar("Conferindo", total_);
  BalanceCheck check;
  const Module1::ScopedRecordset rows(target_.OpenRecordset(BalanceCheck::kQuery, db::dbOpenForwardOnly));
  const auto wrong = check.Run(*rows, [&](std::int64_t done) {
    interruption_.Check();
    bar.At(done);
  });
  if (wrong)
    throw Failure(kRefused,
                  TextOf(*wrong) + "\nA diferença já está na origem, que fica como está; a cópia foi desfeita.");
}

}  // namespace tsv::cli
