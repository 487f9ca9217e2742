#include "db/jet/Parser.h"

#include "db/jet/CreateTableParser.h"
#include "db/jet/ExpressionParser.h"
#include "db/jet/Keywords.h"
#include "db/jet/TokenReader.h"

namespace tsv::db::jet {
namespace {

class StatementParser {
 public:
  explicit StatementParser(const Lexed& lexed)
      : reader_(lexed), expressions_(reader_, [this] { return std::make_unique<Query>(ParseQuery()); }) {}

  Statement Parse() {
    Statement statement;
    if (reader_.TakeWord("PARAMETERS")) statement.parameters = Parameters();
    Body(statement);
    const bool closed = reader_.TakeOperator(";");
    if (!reader_.AtEnd())
      closed ? Raise(EngineError::TextAfterEnd) : Raise(EngineError::SyntaxInExpression, "falta um operador");
    return statement;
  }

 private:
  void Body(Statement& statement) {
    if (reader_.IsWord("SELECT")) {
      statement.query = std::make_unique<Query>(ParseQuery());
    } else if (reader_.TakeWord("TRANSFORM")) {
      Transform(statement);
    } else if (reader_.TakeWord("INSERT")) {
      Insert(statement);
    } else if (reader_.TakeWord("UPDATE")) {
      Update(statement);
    } else if (reader_.TakeWord("DELETE")) {
      Delete(statement);
    } else if (reader_.TakeWord("CREATE")) {
      if (!reader_.TakeWord("TABLE")) Raise(EngineError::Unsupported, "CREATE que não seja de tabela");
      statement.kind = Statement::Kind::CreateTable;
      statement.created = ParseCreateTable(reader_);
    } else {
      Raise(EngineError::InvalidStatement);
    }
  }

  std::vector<DeclaredParameter> Parameters() {
    std::vector<DeclaredParameter> declared;
    do {
      DeclaredParameter parameter;
      parameter.name = reader_.ExpectName(EngineError::SyntaxInSelect);
      parameter.type = ParseType(reader_).type;
      declared.push_back(std::move(parameter));
    } while (reader_.TakeOperator(","));
    reader_.ExpectOperator(";", EngineError::SyntaxInSelect);
    return declared;
  }

  Query ParseQuery() {
    const ExpressionParser::Nesting nesting(expressions_);
    Query query;
    query.blocks.push_back(Block());
    while (reader_.TakeWord("UNION")) {
      query.unionAll.push_back(reader_.TakeWord("ALL"));
      query.blocks.push_back(Block());
    }
    if (reader_.TakeWord("ORDER")) {
      reader_.ExpectWord("BY", EngineError::SyntaxInSelect);
      do {
        OrderItem item;
        item.value = expressions_.Parse();
        item.descending = reader_.TakeWord("DESC");
        if (!item.descending) reader_.TakeWord("ASC");
        query.orderBy.push_back(std::move(item));
      } while (reader_.TakeOperator(","));
    }
    return query;
  }

  SelectBlock Block() {
    reader_.ExpectWord("SELECT", EngineError::SyntaxInSelect);
    SelectBlock block;
    if (reader_.IsWord("DISTINCTROW")) Raise(EngineError::Unsupported, "DISTINCTROW");
    if (!reader_.TakeWord("ALL")) block.distinct = reader_.TakeWord("DISTINCT");
    if (reader_.TakeWord("TOP")) {
      const std::uint32_t literal = reader_.Peek().literal;
      reader_.ExpectWholeNumber(EngineError::SyntaxInSelect);
      block.top = Top{literal, reader_.TakeWord("PERCENT")};
    }
    do {
      block.items.push_back(Item());
    } while (reader_.TakeOperator(","));
    if (reader_.IsWord("INTO")) Raise(EngineError::InvalidOperation, "SELECT ... INTO");
    if (reader_.TakeWord("FROM")) {
      do {
        block.from.push_back(Source());
      } while (reader_.TakeOperator(","));
    }
    if (reader_.TakeWord("WHERE")) block.where = expressions_.Parse();
    if (reader_.TakeWord("GROUP")) {
      reader_.ExpectWord("BY", EngineError::SyntaxInSelect);
      do {
        block.groupBy.push_back(expressions_.Parse());
      } while (reader_.TakeOperator(","));
    }
    if (reader_.TakeWord("HAVING")) block.having = expressions_.Parse();
    return block;
  }

  SelectItem Item() {
    SelectItem item;
    if (reader_.TakeOperator("*")) return item;
    if (reader_.IsName() && reader_.IsOperator(".", 1) && reader_.IsOperator("*", 2)) {
      item.starOf = reader_.ExpectName(EngineError::SyntaxInSelect);
      reader_.Next();
      reader_.Next();
      return item;
    }
    item.value = expressions_.Parse();
    if (reader_.TakeWord("AS")) item.alias = reader_.ExpectName(EngineError::SyntaxInSelect);
    return item;
  }

  std::unique_ptr<From> Source() {
    const ExpressionParser::Nesting nesting(expressions_);
    auto left = Factor();
    for (;;) {
      From::Kind kind = From::Kind::Inner;
      if (reader_.TakeWord("INNER")) {
        kind = From::Kind::Inner;
      } else if (reader_.TakeWord("LEFT")) {
        kind = From::Kind::Left;
        reader_.TakeWord("OUTER");
      } else if (reader_.TakeWord("RIGHT")) {
        kind = From::Kind::Right;
        reader_.TakeWord("OUTER");
      } else if (!reader_.IsWord("JOIN")) {
        return left;
      }
      reader_.ExpectWord("JOIN", EngineError::SyntaxInFrom);
      auto join = std::make_unique<From>();
      join->kind = kind;
      join->left = std::move(left);
      join->right = Factor();
      reader_.ExpectWord("ON", EngineError::SyntaxInJoin);
      join->on = expressions_.Parse();
      left = std::move(join);
    }
  }

  std::unique_ptr<From> Factor() {
    const ExpressionParser::Nesting nesting(expressions_);
    auto source = std::make_unique<From>();
    if (reader_.TakeOperator("(")) {
      if (!reader_.IsWord("SELECT")) {
        source = Source();
        reader_.ExpectOperator(")", EngineError::SyntaxInFrom);
        return source;
      }
      source->kind = From::Kind::Derived;
      source->query = std::make_unique<Query>(ParseQuery());
      reader_.ExpectOperator(")", EngineError::SyntaxInFrom);
    } else {
      source->name = reader_.ExpectName(EngineError::SyntaxInFrom);
      source->alias = source->name;
    }
    if (reader_.TakeWord("AS") || reader_.IsName()) source->alias = reader_.ExpectName(EngineError::SyntaxInFrom);
    if (source->alias.empty()) Raise(EngineError::SyntaxInFrom, "falta o nome (AS) da subconsulta");
    return source;
  }

  void Transform(Statement& statement) {
    Crosstab crosstab;
    crosstab.value = expressions_.Parse();
    if (!reader_.IsWord("SELECT")) Raise(EngineError::SyntaxInSelect, "falta SELECT depois de TRANSFORM");
    statement.query = std::make_unique<Query>(ParseQuery());
    reader_.ExpectWord("PIVOT", EngineError::SyntaxInSelect);
    // "value IN (list)" reads as a condition whose parts are what is wanted here.
    ExpressionPtr pivot = expressions_.Parse();
    if (pivot->kind != Expression::Kind::InList) Raise(EngineError::Unsupported, "PIVOT sem a lista IN das colunas");
    crosstab.by = std::move(pivot->operands.front());
    for (std::size_t i = 1; i < pivot->operands.size(); ++i) {
      if (pivot->operands[i]->kind != Expression::Kind::Literal)
        Raise(EngineError::SyntaxInSelect, "coluna de PIVOT que não é um valor");
      crosstab.columns.push_back(pivot->operands[i]->literal);
    }
    statement.crosstab = std::move(crosstab);
  }

  void Insert(Statement& statement) {
    statement.kind = Statement::Kind::Insert;
    reader_.ExpectWord("INTO", EngineError::SyntaxInInsert);
    statement.table = reader_.ExpectName(EngineError::SyntaxInInsert);
    if (reader_.TakeOperator("(")) {
      do {
        statement.columns.push_back(reader_.ExpectName(EngineError::SyntaxInInsert));
      } while (reader_.TakeOperator(","));
      reader_.ExpectOperator(")", EngineError::SyntaxInInsert);
    }
    if (reader_.TakeWord("VALUES")) {
      reader_.ExpectOperator("(", EngineError::SyntaxInInsert);
      do {
        statement.values.push_back(expressions_.Parse());
      } while (reader_.TakeOperator(","));
      reader_.ExpectOperator(")", EngineError::SyntaxInInsert);
    } else if (reader_.IsWord("SELECT")) {
      statement.query = std::make_unique<Query>(ParseQuery());
    } else {
      Raise(EngineError::SyntaxInInsert, "falta SELECT ou VALUES");
    }
  }

  void Update(Statement& statement) {
    statement.kind = Statement::Kind::Update;
    statement.from = Source();
    reader_.ExpectWord("SET", EngineError::SyntaxInUpdate);
    do {
      Assignment assignment;
      assignment.target = std::make_unique<Expression>(Expression::Kind::Name);
      assignment.target->name = reader_.ExpectName(EngineError::SyntaxInUpdate);
      if (reader_.TakeOperator(".")) {
        assignment.target->qualifier = std::move(assignment.target->name);
        assignment.target->name = reader_.ExpectName(EngineError::SyntaxInUpdate);
      }
      reader_.ExpectOperator("=", EngineError::SyntaxInUpdate);
      assignment.value = expressions_.Parse();
      statement.assignments.push_back(std::move(assignment));
    } while (reader_.TakeOperator(","));
    if (reader_.TakeWord("WHERE")) statement.where = expressions_.Parse();
  }

  void Delete(Statement& statement) {
    statement.kind = Statement::Kind::Delete;
    if (reader_.IsName() && reader_.IsOperator(".", 1)) {
      reader_.Next();
      reader_.Next();
    }
    reader_.TakeOperator("*");
    reader_.ExpectWord("FROM", EngineError::SyntaxInFrom);
    statement.from = Source();
    if (statement.from->kind != From::Kind::Table) Raise(EngineError::Unsupported, "DELETE sobre uma junção");
    if (reader_.TakeWord("WHERE")) statement.where = expressions_.Parse();
  }

  TokenReader reader_;
  ExpressionParser expressions_;
};

}  // namespace

Statement Parse(const Lexed& lexed) { return StatementParser(lexed).Parse(); }

}  // namespace tsv::db::jet
