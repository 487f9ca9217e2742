#include "db/postgres/libpq/Schema.h"

#include <charconv>
#include <cstdint>
#include <utility>

#include "db/ColumnCatalog.h"
#include "db/DataTypes.h"
#include "db/EngineError.h"
#include "db/postgres/PostgresDialect.h"
#include "types/Erro.h"
#include "types/Text.h"

namespace tsv::db::postgres {
namespace {

std::string Quoted(std::string_view name) { return PostgresDialect().Name(name); }
std::string QuotedTable(std::string_view name) { return PostgresDialect().TableName(name); }

// A name made of other names, which the server would cut short: its beginning and a sum of the whole.
std::string Fitting(std::string name) {
  constexpr std::size_t kLongest = 63;
  constexpr std::size_t kBeginning = 48;
  if (name.size() <= kLongest) return name;
  std::uint32_t sum = 2'166'136'261U;
  for (const char c : name) sum = (sum ^ static_cast<unsigned char>(c)) * 16'777'619U;
  std::size_t end = 0;
  for (std::size_t next = 0; next <= kBeginning; text::NextCodePoint(name, next)) end = next;
  return name.substr(0, end) + "~" + std::to_string(sum);
}

// A column beside one of text, in which relationships meet: they compare without regard to case, as everything does.
std::string KeyColumn(std::string_view column) { return Quoted(std::string(column) + "~"); }

std::string_view StorageOf(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
      return "boolean";
    case ValueType::Byte:
    case ValueType::Long:
      return "integer";
    case ValueType::Decimal:
    case ValueType::Currency:
      return "numeric(19, 4)";
    case ValueType::Double:
      return "double precision";
    case ValueType::Date:
      return "timestamp(0)";
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  return "text COLLATE \"C\"";
}

std::string DefaultOf(const Variant& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "TRUE" : "FALSE";
  if (const auto* byte = std::get_if<std::uint8_t>(&value)) return std::to_string(*byte);
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number);
  if (const auto* amount = std::get_if<Currency>(&value)) return amount->ToText();
  if (const auto* text = std::get_if<std::string>(&value)) return QuotedText(*text);
  Raise(EngineError::Unsupported, "valor padrão deste tipo");
}

// What the engine must refuse in the column, each rule under the number that it raises.
std::string Rules(const Table& table, const Column& column) {
  std::string rules;
  const std::string name = Quoted(column.name);
  const auto add = [&](std::int32_t number, const std::string& condition) {
    rules += " CONSTRAINT " + Quoted(Fitting(RuleName(number, table, column))) + " CHECK (" + condition + ")";
  };
  const auto overflow = static_cast<std::int32_t>(RuntimeError::Overflow);
  switch (column.type) {
    case ValueType::Byte:
      add(overflow, name + " BETWEEN 0 AND 255");
      break;
    case ValueType::Currency:
      add(overflow, name + " BETWEEN -922337203685477.5808 AND 922337203685477.5807");
      break;
    case ValueType::Text:
      if (column.size > 0)
        add(static_cast<std::int32_t>(EngineError::TextTooLong),
            "length(" + name + ") <= " + std::to_string(column.size));
      if (!column.allowZeroLength) add(static_cast<std::int32_t>(EngineError::ZeroLength), name + " <> ''");
      break;
    default:
      break;
  }
  return rules;
}

std::string ColumnDefinition(const Table& table, const Column& column) {
  std::string definition = Quoted(column.name).append(" ").append(StorageOf(column.type));
  if (column.required || column.type == ValueType::Boolean || KeyPlaceOf(table, column) > 0) definition += " NOT NULL";
  if (!IsEmpty(column.defaultValue)) {
    definition += " DEFAULT " + DefaultOf(column.defaultValue);
  } else if (column.type == ValueType::Boolean) {
    definition += " DEFAULT FALSE";
  }
  return definition + Rules(table, column);
}

// By the key that equal texts share. Null stands first, where Jet's order has it.
std::string IndexDefinition(const Table& table, const Index& index) {
  std::string name = table.name;
  std::string columns;
  for (const std::string& part : index.columns) {
    const Column& column = ColumnOf(table, part);
    const bool folded = column.type == ValueType::Text && !column.exact;
    const std::string quoted = Quoted(column.name);
    columns +=
        (columns.empty() ? "" : ", ") + (folded ? PostgresDialect().EqualityKey(quoted) : quoted) + " NULLS FIRST";
    name += "." + part;
  }
  return (index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + Quoted(Fitting(name)) + " ON " +
         QuotedTable(table.name) + " (" + columns + ")";
}

std::string AddKeyColumn(const std::string& table, const std::string& column) {
  return "ALTER TABLE " + QuotedTable(table) + " ADD COLUMN IF NOT EXISTS " + KeyColumn(column) +
         " text COLLATE \"C\" GENERATED ALWAYS AS (" + PostgresDialect().EqualityKey(Quoted(column)) + ") STORED";
}

void Relate(Connection& connection, const Table& table, const ForeignKey& key) {
  const bool text = ColumnOf(table, key.column).type == ValueType::Text;
  const auto column = [&](const std::string& name) { return text ? KeyColumn(name) : Quoted(name); };
  if (text) {
    connection.Execute(AddKeyColumn(table.name, key.column));
    connection.Execute(AddKeyColumn(key.table, key.referenced));
    connection.Execute("CREATE UNIQUE INDEX IF NOT EXISTS " + Quoted(key.table + "." + key.referenced + "~") + " ON " +
                       QuotedTable(key.table) + " (" + column(key.referenced) + ")");
  }
  connection.Execute("ALTER TABLE " + QuotedTable(table.name) + " ADD CONSTRAINT " +
                     Quoted(table.name + "." + key.column) + " FOREIGN KEY (" + column(key.column) + ") REFERENCES " +
                     QuotedTable(key.table) + " (" + column(key.referenced) + ")");
}

// A Boolean is never Null: what inserts Null in it inserts False. (What updates it says so itself.)
void LetNullBeFalse(Connection& connection, const Table& table) {
  std::string assignments;
  std::string condition;
  for (const Column& column : table.columns) {
    if (column.type != ValueType::Boolean) continue;
    const std::string name = "NEW." + Quoted(column.name);
    assignments += name + " := coalesce(" + name + ", FALSE); ";
    condition += (condition.empty() ? "" : " OR ") + name + " IS NULL";
  }
  if (assignments.empty()) return;
  const std::string function = QuotedTable(table.name + "~");
  connection.Execute("CREATE FUNCTION " + function + "() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN " + assignments +
                     "RETURN NEW; END $$");
  connection.Execute("CREATE TRIGGER \"nulo\" BEFORE INSERT ON " + QuotedTable(table.name) + " FOR EACH ROW WHEN (" +
                     condition + ") EXECUTE FUNCTION " + function + "()");
}

void RefuseTakenName(Connection& connection, const std::string& table) {
  const std::string taken = connection.Text(
      "SELECT 'x' FROM pg_class AS c JOIN pg_namespace AS n ON n.oid = c.relnamespace "
      "WHERE n.nspname = 'tesovia' AND tesovia.tsv_texto(c.relname::text) = tesovia.tsv_texto($1)",
      {table});
  if (!taken.empty()) Raise(EngineError::TableExists, table);
}

void AddToColumnCatalog(Connection& connection, const Table& table) {
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    const auto flag = [](bool set) { return std::string(set ? "t" : "f"); };
    connection.Execute(
        "INSERT INTO tesovia.tsv_colunas VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9)",
        {table.name, std::to_string(i), column.name, std::to_string(static_cast<int>(DataTypeOf(column.type))),
         std::to_string(column.size), flag(column.required), flag(column.allowZeroLength), flag(column.exact),
         std::to_string(KeyPlaceOf(table, column))});
  }
  connection.Execute("UPDATE tesovia.tsv_ajustes SET valor = (valor::integer + 1)::text WHERE nome = 'catalogo'");
}

int Number(std::string_view text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

void CreateColumnCatalog(Connection& connection) {
  connection.Execute(
      "CREATE TABLE tesovia.tsv_colunas (tabela text NOT NULL, lugar integer NOT NULL, nome text NOT NULL, "
      "tipo integer NOT NULL, tamanho integer NOT NULL, exige boolean NOT NULL, aceita_vazio boolean NOT NULL, "
      "exata boolean NOT NULL, chave integer NOT NULL, PRIMARY KEY (tabela, lugar))");
}

void CreateTable(Connection& connection, const Table& table) {
  RefuseTakenName(connection, table.name);
  std::string columns;
  for (const Column& column : table.columns) columns += (columns.empty() ? "" : ", ") + ColumnDefinition(table, column);
  connection.Execute("CREATE TABLE " + QuotedTable(table.name) + " (" + columns + ")");
  if (!table.primaryKey.empty()) connection.Execute(IndexDefinition(table, {table.primaryKey, true}));
  for (const Index& index : table.indexes) connection.Execute(IndexDefinition(table, index));
  for (const ForeignKey& key : table.foreignKeys) Relate(connection, table, key);
  LetNullBeFalse(connection, table);
  AddToColumnCatalog(connection, table);
}

Catalog LoadCatalog(Connection& connection) {
  const Result columns = connection.Execute(
      "SELECT tabela, nome, tipo::text, tamanho::text, exige, aceita_vazio, exata, chave::text "
      "FROM tesovia.tsv_colunas ORDER BY tabela, lugar",
      {});
  CatalogBuilder catalog;
  for (int row = 0; row < columns.Rows(); ++row) {
    const auto text = [&](int column) { return std::string(columns.Bytes(row, column)); };
    const auto flag = [&](int column) { return columns.Bytes(row, column) != std::string_view("\0", 1); };
    Column column{.name = text(1),
                  .type = ValueTypeOf(static_cast<DataTypeEnum>(Number(text(2)))),
                  .size = Number(text(3)),
                  .required = flag(4),
                  .allowZeroLength = flag(5),
                  .exact = flag(6),
                  .defaultValue = {}};
    catalog.Add({text(0), std::move(column), static_cast<std::size_t>(Number(text(7)))});
  }
  return catalog.Finish();
}

}  // namespace tsv::db::postgres
