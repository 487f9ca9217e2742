#include "db/jet/Binder.h"

#include <algorithm>

#include "db/EngineError.h"
#include "db/jet/Crosstab.h"
#include "db/jet/QueryBinder.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

class StatementBinder {
 public:
  StatementBinder(Statement& statement, const Lexed& lexed, const Catalog& catalog)
      : statement_(statement),
        catalog_(catalog),
        queries_(lexed, catalog, statement.parameters),
        expressions_(queries_.Expressions()) {}

  Bound Run() {
    Bound bound;
    switch (statement_.kind) {
      case Statement::Kind::Select:
        if (statement_.crosstab) ExpandCrosstab(statement_, expressions_);
        bound.columns = queries_.BindQuery(*statement_.query, nullptr);
        break;
      case Statement::Kind::Insert:
        Insert();
        break;
      case Statement::Kind::Update:
        Update();
        break;
      case Statement::Kind::Delete:
        Delete();
        break;
      case Statement::Kind::CreateTable:
        if (catalog_.Find(statement_.created.name)) Raise(EngineError::TableExists, statement_.created.name);
        break;
    }
    bound.fixed = expressions_.Fixed();
    return bound;
  }

 private:
  void Insert() {
    const Table& table = queries_.TableNamed(statement_.table);
    statement_.table = table.name;
    if (statement_.query) {
      const Output output = queries_.BindQuery(*statement_.query, nullptr);
      if (statement_.columns.empty()) {
        for (const SourceColumn& column : output) statement_.columns.push_back(column.name);
      }
      CheckCount(output.size());
      for (std::size_t i = 0; i < output.size(); ++i)
        CoerceOutput(expressions_, *statement_.query, i, Target(table, i).type);
    } else {
      if (statement_.columns.empty()) {
        for (const Column& column : table.columns) statement_.columns.push_back(column.name);
      }
      CheckCount(statement_.values.size());
      const Scope nothing(nullptr);
      for (std::size_t i = 0; i < statement_.values.size(); ++i) {
        expressions_.Bind(statement_.values[i], nothing);
        if (HasAggregate(*statement_.values[i])) Raise(EngineError::NotAggregated, "função de agregação em VALUES");
        expressions_.Coerce(statement_.values[i], Target(table, i).type);
      }
    }
  }

  void CheckCount(std::size_t values) const {
    if (statement_.columns.size() != values) Raise(EngineError::ValueCountDiffers);
  }

  // The column that takes value `place`; its name in the statement becomes the table's own.
  const Column& Target(const Table& table, std::size_t place) {
    std::string& name = statement_.columns[place];
    const Column* column = table.Find(name);
    if (!column) Raise(EngineError::UnknownInsertField, name);
    const auto before = statement_.columns.begin() + static_cast<std::ptrdiff_t>(place);
    if (std::find(statement_.columns.begin(), before, column->name) != before)
      Raise(EngineError::DuplicateDestination, column->name);
    name = column->name;
    return *column;
  }

  void Update() {
    Scope scope(nullptr);
    queries_.BindFrom(*statement_.from, scope);
    CheckUpdatable(*statement_.from);
    for (Assignment& assignment : statement_.assignments) {
      expressions_.Bind(assignment.target, scope);
      if (assignment.target->kind != Expression::Kind::Name) Raise(EngineError::TooFewParameters, "1");
      const auto same = [&](const Assignment& other) {
        return &other != &assignment && other.target->name == assignment.target->name;
      };
      if (std::any_of(statement_.assignments.begin(), statement_.assignments.end(), same)) {
        Raise(EngineError::DuplicateDestination, assignment.target->name);
      }
      std::string& alias = statement_.table;
      if (alias.empty()) alias = assignment.target->qualifier;
      if (alias != assignment.target->qualifier) Raise(EngineError::Unsupported, "UPDATE de duas tabelas");
      expressions_.Bind(assignment.value, scope);
      if (HasAggregate(*assignment.value)) Raise(EngineError::NotUpdatable);
      expressions_.Coerce(assignment.value, assignment.target->type);
    }
    BindWhere(scope);
  }

  void Delete() {
    Scope scope(nullptr);
    queries_.BindFrom(*statement_.from, scope);
    BindWhere(scope);
  }

  void BindWhere(const Scope& scope) {
    if (!statement_.where) return;
    expressions_.BindCondition(statement_.where, scope);
    if (HasAggregate(*statement_.where)) Raise(EngineError::NotAggregated, "função de agregação em WHERE");
  }

  // With an outer join a changed row need not exist; with a subquery it is no row of a table.
  static void CheckUpdatable(const From& from) {
    if (from.kind == From::Kind::Table) return;
    if (from.kind == From::Kind::Derived) Raise(EngineError::NotUpdatable);
    if (from.kind != From::Kind::Inner) Raise(EngineError::Unsupported, "UPDATE sobre LEFT ou RIGHT JOIN");
    CheckUpdatable(*from.left);
    CheckUpdatable(*from.right);
  }

  Statement& statement_;
  const Catalog& catalog_;
  QueryBinder queries_;
  ExpressionBinder& expressions_;
};

}  // namespace

Bound Bind(Statement& statement, const Lexed& lexed, const Catalog& catalog) {
  return StatementBinder(statement, lexed, catalog).Run();
}

}  // namespace tsv::db::jet
