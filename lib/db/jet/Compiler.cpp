#include "db/jet/Compiler.h"

#include <algorithm>

#include "db/EngineError.h"
#include "db/jet/Binder.h"
#include "db/jet/Keywords.h"
#include "db/jet/Parser.h"
#include "db/jet/Writer.h"

namespace tsv::db::jet {
namespace {

StatementKind KindOf(Statement::Kind kind) {
  switch (kind) {
    case Statement::Kind::Select:
      return StatementKind::Select;
    case Statement::Kind::Insert:
      return StatementKind::Insert;
    case Statement::Kind::Update:
      return StatementKind::Update;
    case Statement::Kind::Delete:
      return StatementKind::Delete;
    case Statement::Kind::CreateTable:
      return StatementKind::CreateTable;
  }
  return StatementKind::Select;
}

}  // namespace

Compiled Compile(const Lexed& lexed, const Catalog& catalog, const Dialect& dialect) {
  Statement statement = Parse(lexed);
  Bound bound = Bind(statement, lexed, catalog);
  Compiled compiled;
  compiled.kind = KindOf(statement.kind);
  compiled.fixed = std::move(bound.fixed);
  compiled.created = std::move(statement.created);
  for (const SourceColumn& column : bound.columns) compiled.columns.push_back({column.name, column.type});
  for (const DeclaredParameter& declared : statement.parameters) compiled.names.push_back(declared.name);
  Written written = Write(statement, lexed, dialect);
  compiled.sql = std::move(written.sql);
  compiled.parameters = std::move(written.parameters);
  for (const ParameterSlot& slot : compiled.parameters) {
    const auto known = [&](const std::string& name) { return SameWord(name, slot.name); };
    if (!slot.literal && std::none_of(compiled.names.begin(), compiled.names.end(), known))
      compiled.names.push_back(slot.name);
  }
  return compiled;
}

}  // namespace tsv::db::jet
