#include "db/sqlite/Schema.h"

#include <cstdint>
#include <limits>
#include <utility>

#include "db/ColumnCatalog.h"
#include "db/DataTypes.h"
#include "db/EngineError.h"
#include "db/sqlite/SqliteDialect.h"

namespace tsv::db::sqlite {
namespace {

std::string Quoted(std::string_view name) { return SqliteDialect().Name(name); }

std::string QuotedList(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + Quoted(name);
  return list;
}

std::string_view StorageOf(ValueType type) {
  switch (type) {
    case ValueType::Double:
      return "REAL";
    case ValueType::Date:
    case ValueType::Text:
    case ValueType::Null:
      return "TEXT";
    default:
      return "INTEGER";
  }
}

std::string DefaultOf(const Variant& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "1" : "0";
  if (const auto* byte = std::get_if<std::uint8_t>(&value)) return std::to_string(*byte);
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number);
  if (const auto* amount = std::get_if<Currency>(&value)) return std::to_string(amount->TenThousandths());
  if (const auto* text = std::get_if<std::string>(&value)) return QuotedText(*text);
  Raise(EngineError::Unsupported, "valor padrão deste tipo");
}

template <typename Integer>
std::string Range(const std::string& column) {
  return column + " BETWEEN " + std::to_string(std::numeric_limits<Integer>::min()) + " AND " +
         std::to_string(std::numeric_limits<Integer>::max());
}

// What the engine must refuse in the column, each rule under the number that it raises.
std::string Rules(const Table& table, const Column& column) {
  std::string rules;
  const std::string name = Quoted(column.name);
  const auto add = [&](std::int32_t number, const std::string& condition) {
    rules += " CONSTRAINT " + Quoted(RuleName(number, table, column)) + " CHECK (" + condition + ")";
  };
  const auto overflow = static_cast<std::int32_t>(RuntimeError::Overflow);
  switch (column.type) {
    case ValueType::Boolean:
      add(overflow, name + " IN (0, 1)");
      break;
    case ValueType::Byte:
      add(overflow, Range<std::uint8_t>(name));
      break;
    case ValueType::Long:
      add(overflow, Range<std::int32_t>(name));
      break;
    case ValueType::Text:
      if (column.size > 0) {
        add(static_cast<std::int32_t>(EngineError::TextTooLong),
            "length(" + name + ") <= " + std::to_string(column.size));
      }
      if (!column.allowZeroLength) add(static_cast<std::int32_t>(EngineError::ZeroLength), "length(" + name + ") > 0");
      break;
    default:
      break;
  }
  return rules;
}

std::string ColumnDefinition(const Table& table, const Column& column) {
  std::string definition = Quoted(column.name).append(" ").append(StorageOf(column.type));
  // A Boolean is never Null: what stores Null in it stores False.
  if (column.type == ValueType::Boolean) {
    definition += " NOT NULL ON CONFLICT REPLACE DEFAULT " +
                  DefaultOf(IsEmpty(column.defaultValue) ? Variant(false) : column.defaultValue);
  } else {
    if (column.required) definition += " NOT NULL";
    if (!IsEmpty(column.defaultValue)) definition += " DEFAULT " + DefaultOf(column.defaultValue);
  }
  if (column.type == ValueType::Text && !column.exact) definition += " COLLATE TSV_TEXTO";
  return definition + Rules(table, column);
}

// A table is clustered by its primary key, which for entries is the order in which they are read and shifted.
std::string TableDefinition(const Table& table) {
  std::string definition = "CREATE TABLE " + Quoted(table.name) + " (";
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    definition += (i > 0 ? ", " : "") + ColumnDefinition(table, table.columns[i]);
  }
  if (!table.primaryKey.empty()) definition += ", PRIMARY KEY (" + QuotedList(table.primaryKey) + ")";
  for (const ForeignKey& key : table.foreignKeys) {
    definition += ", FOREIGN KEY (" + Quoted(key.column) + ") REFERENCES " + Quoted(key.table) + " (" +
                  Quoted(key.referenced) + ")";
  }
  return definition + (table.primaryKey.empty() ? ") STRICT" : ") STRICT, WITHOUT ROWID");
}

// An index led by a column that may be Null keeps no Nulls: nothing is looked up by them.
std::string IndexDefinition(const Table& table, const Index& index) {
  std::string name = table.name;
  for (const std::string& column : index.columns) name += "." + ColumnOf(table, column).name;
  std::string definition = index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
  definition += Quoted(name) + " ON " + Quoted(table.name) + " (" + QuotedList(index.columns) + ")";
  const Column& leading = ColumnOf(table, index.columns.front());
  if (!leading.required) definition += " WHERE " + Quoted(leading.name) + " IS NOT NULL";
  return definition;
}

void RefuseTakenName(Connection& connection, const std::string& table) {
  Statement taken(connection, "SELECT 1 FROM sqlite_schema WHERE name = ?1 COLLATE NOCASE OR ?1 LIKE 'sqlite_%'");
  taken.Bind(1, table);
  if (taken.Step()) Raise(EngineError::TableExists, table);
}

void AddToColumnCatalog(Connection& connection, const Table& table) {
  Statement insert(connection, "INSERT INTO tsv_colunas VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    insert.Bind(1, table.name).Bind(2, static_cast<std::int64_t>(i)).Bind(3, column.name);
    insert.Bind(4, static_cast<std::int64_t>(DataTypeOf(column.type))).Bind(5, static_cast<std::int64_t>(column.size));
    insert.Bind(6, std::int64_t{column.required}).Bind(7, std::int64_t{column.allowZeroLength});
    insert.Bind(8, std::int64_t{column.exact});
    insert.Bind(9, static_cast<std::int64_t>(KeyPlaceOf(table, column)));
    insert.Run();
  }
}

}  // namespace

void CreateColumnCatalog(Connection& connection) {
  connection.Execute(
      "CREATE TABLE tsv_colunas (tabela TEXT NOT NULL COLLATE NOCASE, lugar INTEGER NOT NULL, nome TEXT NOT NULL, "
      "tipo INTEGER NOT NULL, tamanho INTEGER NOT NULL, exige INTEGER NOT NULL, aceita_vazio INTEGER NOT NULL, "
      "exata INTEGER NOT NULL, chave INTEGER NOT NULL, PRIMARY KEY (tabela, lugar)) STRICT, WITHOUT ROWID");
}

void CreateTable(Connection& connection, const Table& table) {
  RefuseTakenName(connection, table.name);
  connection.Execute(TableDefinition(table).c_str());
  for (const Index& index : table.indexes) connection.Execute(IndexDefinition(table, index).c_str());
  AddToColumnCatalog(connection, table);
}

Catalog LoadCatalog(Connection& connection) {
  CatalogBuilder catalog;
  Statement columns(connection,
                    "SELECT tabela, nome, tipo, tamanho, exige, aceita_vazio, exata, chave FROM tsv_colunas "
                    "ORDER BY tabela, lugar");
  while (columns.Step()) {
    Column column{.name = std::string(columns.Text(1)),
                  .type = ValueTypeOf(static_cast<DataTypeEnum>(columns.Integer(2))),
                  .size = static_cast<int>(columns.Integer(3)),
                  .required = columns.Integer(4) != 0,
                  .allowZeroLength = columns.Integer(5) != 0,
                  .exact = columns.Integer(6) != 0,
                  .defaultValue = {}};
    catalog.Add({std::string(columns.Text(0)), std::move(column), static_cast<std::size_t>(columns.Integer(7))});
  }
  return catalog.Finish();
}

}  // namespace tsv::db::sqlite
