#include "db/jet/CreateTableParser.h"

#include <array>
#include <utility>

#include "db/jet/Keywords.h"

namespace tsv::db::jet {
namespace {

constexpr EngineError kSyntax = EngineError::InvalidStatement;
constexpr int kLongestText = 255;

constexpr std::array<std::pair<std::string_view, ValueType>, 21> kTypes{{
    {"TEXT", ValueType::Text},     {"CHAR", ValueType::Text},         {"VARCHAR", ValueType::Text},
    {"STRING", ValueType::Text},   {"LONG", ValueType::Long},         {"INTEGER", ValueType::Long},
    {"INT", ValueType::Long},      {"SHORT", ValueType::Long},        {"SMALLINT", ValueType::Long},
    {"BYTE", ValueType::Byte},     {"CURRENCY", ValueType::Currency}, {"MONEY", ValueType::Currency},
    {"DOUBLE", ValueType::Double}, {"FLOAT", ValueType::Double},      {"NUMBER", ValueType::Double},
    {"DATETIME", ValueType::Date}, {"DATE", ValueType::Date},         {"YESNO", ValueType::Boolean},
    {"BIT", ValueType::Boolean},   {"LOGICAL", ValueType::Boolean},   {"BOOLEAN", ValueType::Boolean},
}};

std::vector<std::string> NamesInParentheses(TokenReader& reader) {
  std::vector<std::string> names;
  reader.ExpectOperator("(", kSyntax);
  do {
    names.push_back(reader.ExpectName(kSyntax));
  } while (reader.TakeOperator(","));
  reader.ExpectOperator(")", kSyntax);
  return names;
}

void ParseTableConstraint(TokenReader& reader, Table& table) {
  if (reader.TakeWord("CONSTRAINT")) reader.ExpectName(kSyntax);
  if (reader.TakeWord("PRIMARY")) {
    reader.ExpectWord("KEY", kSyntax);
    table.primaryKey = NamesInParentheses(reader);
  } else if (reader.TakeWord("UNIQUE")) {
    table.indexes.push_back({NamesInParentheses(reader), true});
  } else {
    Raise(EngineError::Unsupported, "CONSTRAINT que não seja PRIMARY KEY ou UNIQUE");
  }
}

void ParseColumn(TokenReader& reader, Table& table) {
  Column column;
  column.name = reader.ExpectName(kSyntax);
  if (table.Find(column.name)) Raise(EngineError::DuplicateDestination, column.name);
  const DeclaredType declared = ParseType(reader);
  column.type = declared.type;
  column.size = declared.size;
  column.allowZeroLength = true;
  for (;;) {
    if (reader.TakeWord("NOT")) {
      reader.ExpectWord("NULL", kSyntax);
      column.required = true;
    } else if (reader.TakeWord("PRIMARY")) {
      reader.ExpectWord("KEY", kSyntax);
      table.primaryKey = {column.name};
    } else if (reader.TakeWord("UNIQUE")) {
      table.indexes.push_back({{column.name}, true});
    } else {
      break;
    }
  }
  if (column.type == ValueType::Boolean) {
    column.required = true;
    column.defaultValue = false;
  }
  table.columns.push_back(std::move(column));
}

}  // namespace

DeclaredType ParseType(TokenReader& reader) {
  const Token& word = reader.Peek();
  for (const auto& [name, type] : kTypes) {
    if (word.kind != TokenKind::Name || !SameWord(word.text, name)) continue;
    reader.Next();
    DeclaredType declared{type, type == ValueType::Text ? kLongestText : 0};
    if (reader.TakeOperator("(")) {
      const int size = reader.ExpectWholeNumber(kSyntax);
      if (type == ValueType::Text) declared.size = size;
      reader.ExpectOperator(")", kSyntax);
    }
    return declared;
  }
  Raise(EngineError::Unsupported, "tipo de coluna ou parâmetro");
}

Table ParseCreateTable(TokenReader& reader) {
  Table table;
  table.name = reader.ExpectName(kSyntax);
  reader.ExpectOperator("(", kSyntax);
  do {
    const bool constraint = reader.IsWord("CONSTRAINT") || (reader.IsWord("PRIMARY") && reader.IsWord("KEY", 1)) ||
                            (reader.IsWord("UNIQUE") && reader.IsOperator("(", 1));
    constraint ? ParseTableConstraint(reader, table) : ParseColumn(reader, table);
  } while (reader.TakeOperator(","));
  reader.ExpectOperator(")", kSyntax);
  for (const std::string& key : table.primaryKey) {
    if (!table.Find(key)) Raise(EngineError::ItemNotFound, key);
  }
  return table;
}

}  // namespace tsv::db::jet
