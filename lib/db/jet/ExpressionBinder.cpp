#include "db/jet/ExpressionBinder.h"

#include <algorithm>

#include "db/EngineError.h"
#include "db/jet/Keywords.h"
#include "db/jet/Types.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

using Kind = Expression::Kind;

bool IsUntypedParameter(const Expression& e) { return e.kind == Kind::Parameter && e.type == ValueType::Null; }

// The type an operand brings into a meeting with another: a parameter nobody declared takes the other's.
ValueType Meeting(const Expression& a, const Expression& b, ValueType (*meet)(ValueType, ValueType)) {
  if (IsUntypedParameter(a)) return b.type;
  if (IsUntypedParameter(b)) return a.type;
  return meet(a.type, b.type);
}

ValueType PlainNumber(ValueType type) {
  return type == ValueType::Boolean || type == ValueType::Byte ? ValueType::Long : type;
}

bool AnyExact(const Expression& e) {
  return std::any_of(e.operands.begin(), e.operands.end(), [](const ExpressionPtr& operand) { return operand->exact; });
}

// Such an aggregate would belong to the query around this one.
bool UsesOnlyOuterNames(const Expression& e) {
  bool outer = false;
  bool own = e.query != nullptr;
  const std::function<void(const Expression&)> look = [&](const Expression& part) {
    if (part.kind == Kind::Name) (part.flag ? outer : own) = true;
    own = own || part.query;
    for (const ExpressionPtr& operand : part.operands) look(*operand);
  };
  look(e);
  return outer && !own;
}

void BecomeNull(ExpressionPtr& expression) { expression = std::make_unique<Expression>(Kind::Null); }

}  // namespace

void ExpressionBinder::Fix(std::uint32_t literal) { fixed_.emplace_back(literal, LiteralAt(literal)); }

void ExpressionBinder::BindCondition(ExpressionPtr& expression, const Scope& scope) {
  Bind(expression, scope);
  Coerce(expression, ValueType::Boolean);
}

void ExpressionBinder::Bind(ExpressionPtr& expression, const Scope& scope) {
  Expression& e = *expression;
  const bool aggregate = e.kind == Kind::Aggregate;
  if (aggregate && insideAggregate_) Raise(EngineError::NotAggregated, "função de agregação dentro de outra");
  insideAggregate_ = insideAggregate_ || aggregate;
  for (ExpressionPtr& operand : e.operands) Bind(operand, scope);
  if (aggregate) insideAggregate_ = false;

  switch (e.kind) {
    case Kind::Literal:
      e.type = TypeOf(LiteralAt(e.literal));
      break;
    case Kind::Boolean:
      e.type = ValueType::Boolean;
      break;
    case Kind::Name:
      BindName(e, scope);
      break;
    case Kind::Negate:
    case Kind::Arithmetic:
      BindArithmetic(expression);
      break;
    case Kind::Not:
    case Kind::Logical:
      for (ExpressionPtr& operand : e.operands) Coerce(operand, ValueType::Boolean);
      e.type = ValueType::Boolean;
      break;
    case Kind::Concat:
      CoerceBoth(e, ValueType::Text);
      e.type = ValueType::Text;
      break;
    case Kind::Compare:
      BindCompare(e);
      break;
    case Kind::Like:
      BindLike(e);
      break;
    case Kind::Between:
    case Kind::InList:
      BindItems(e);
      break;
    case Kind::IsNull:
      e.type = ValueType::Boolean;
      break;
    case Kind::InQuery:
    case Kind::Quantified:
    case Kind::Exists:
    case Kind::Scalar:
      BindQueryOperand(e, scope);
      break;
    case Kind::Call:
      BindCall(expression);
      break;
    case Kind::Aggregate:
      BindAggregate(e);
      break;
    default:
      break;
  }
}

void ExpressionBinder::BindName(Expression& e, const Scope& scope) const {
  const Resolved found = scope.Resolve(e.qualifier, e.name);
  if (!found.column) {
    e.kind = Kind::Parameter;
    if (!e.qualifier.empty()) e.name = e.qualifier + "." + e.name;
    for (const DeclaredParameter& declared : declared_) {
      if (SameWord(declared.name, e.name)) e.type = declared.type;
    }
    return;
  }
  e.qualifier = found.source->alias;
  e.name = found.column->written;
  e.type = found.column->type;
  e.exact = found.column->exact;
  e.flag = found.outer;
}

void ExpressionBinder::Coerce(ExpressionPtr& expression, ValueType type) const {
  Expression& e = *expression;
  if (e.type == type) return;
  if (IsUntypedParameter(e) || e.kind == Kind::Null) {
    e.type = type;
    return;
  }
  // A literal takes its new form when it is bound, so that an index on the other side stays usable.
  const bool rebound = e.kind == Kind::Literal && e.type != ValueType::Text && type != ValueType::Text &&
                       type != ValueType::Boolean && TypeOf(LiteralAt(e.literal)) == e.type;
  if (rebound) {
    e.type = type;
    return;
  }
  auto conversion = std::make_unique<Expression>(Kind::Convert);
  conversion->type = type;
  conversion->exact = e.exact && type == ValueType::Text;
  conversion->operands.push_back(std::move(expression));
  expression = std::move(conversion);
}

void ExpressionBinder::CoerceBoth(Expression& node, ValueType type) const {
  for (ExpressionPtr& operand : node.operands) Coerce(operand, type);
}

void ExpressionBinder::BindArithmetic(ExpressionPtr& expression) const {
  Expression& e = *expression;
  for (const ExpressionPtr& operand : e.operands) {
    if (operand->kind == Kind::Null && !HasAggregate(e)) return BecomeNull(expression);
  }
  if (e.kind == Kind::Negate) {
    if (IsUntypedParameter(*e.operands[0])) Coerce(e.operands[0], ValueType::Double);
    if (e.operands[0]->type == ValueType::Text) Raise(EngineError::CriteriaTypeMismatch);
    Coerce(e.operands[0],
           e.operands[0]->type == ValueType::Date ? ValueType::Double : PlainNumber(e.operands[0]->type));
    e.type = e.operands[0]->type;
    return;
  }
  if (e.op == "+" || e.op == "-") return BindAddition(e);
  for (ExpressionPtr& operand : e.operands) {
    if (operand->type == ValueType::Text) Raise(EngineError::CriteriaTypeMismatch);
    if (operand->type == ValueType::Date || IsUntypedParameter(*operand)) Coerce(operand, ValueType::Double);
  }
  const ValueType a = PlainNumber(e.operands[0]->type);
  const ValueType b = PlainNumber(e.operands[1]->type);
  if (e.op != "*") {
    CoerceBoth(e, ValueType::Double);
    e.type = e.op == "\\" || e.op == "MOD" ? ValueType::Long : ValueType::Double;
    return;
  }
  // A count times an amount is that amount so many times, exactly; the units are multiplied as they are stored.
  const bool scaled = (a == ValueType::Long) != (b == ValueType::Long) && CommonNumber(a, b) != ValueType::Double;
  if (scaled) {
    Coerce(e.operands[0], a);
    Coerce(e.operands[1], b);
    e.type = a == ValueType::Long ? b : a;
    return;
  }
  e.type = a == ValueType::Currency && b == ValueType::Currency ? ValueType::Currency
           : a == ValueType::Long && b == ValueType::Long       ? ValueType::Long
                                                                : ValueType::Double;
  CoerceBoth(e, e.type);
}

void ExpressionBinder::BindAddition(Expression& e) const {
  const ValueType a = e.operands[0]->type;
  const ValueType b = e.operands[1]->type;
  const bool dates = a == ValueType::Date || b == ValueType::Date;
  if (a == ValueType::Text || b == ValueType::Text) {
    if (e.op != "+") Raise(EngineError::CriteriaTypeMismatch);
    e.type = Meeting(*e.operands[0], *e.operands[1], ComparisonType);
    return CoerceBoth(e, e.type);
  }
  if (!dates) {
    e.type = Meeting(*e.operands[0], *e.operands[1], CommonNumber);
    if (e.type == ValueType::Null) e.type = ValueType::Double;
    e.type = PlainNumber(e.type);
    return CoerceBoth(e, e.type);
  }
  CoerceBoth(e, ValueType::Double);
  e.type = ValueType::Double;
  if (a == b) return;  // the days between two dates
  auto days = std::make_unique<Expression>(Kind::Arithmetic);
  days->op = e.op;
  days->type = ValueType::Double;
  days->operands = std::move(e.operands);
  e.kind = Kind::Convert;
  e.type = ValueType::Date;
  e.operands.clear();
  e.operands.push_back(std::move(days));
}

void ExpressionBinder::BindCompare(Expression& e) const {
  ValueType type = Meeting(*e.operands[0], *e.operands[1], ComparisonType);
  const bool ordering = e.op != "=" && e.op != "<>";
  if (type == ValueType::Boolean && ordering) type = ValueType::Long;
  if (type == ValueType::Byte) type = ValueType::Long;
  if (type == ValueType::Null) type = ValueType::Text;
  CoerceBoth(e, type);
  e.exact = e.operands[0]->exact || e.operands[1]->exact;
  e.type = ValueType::Boolean;
}

void ExpressionBinder::BindLike(Expression& e) {
  e.type = ValueType::Boolean;
  Coerce(e.operands[0], ValueType::Text);
  Coerce(e.operands[1], ValueType::Text);
  Expression& pattern = *e.operands[1];
  if (pattern.kind != Kind::Concat || pattern.operands[1]->kind != Kind::Literal) return;
  const std::uint32_t last = pattern.operands[1]->literal;
  if (LiteralAt(last) != Variant(std::string("*"))) return;
  Fix(last);
  e.kind = Kind::LikePrefix;
  ExpressionPtr prefix = std::move(pattern.operands[0]);
  e.operands[1] = std::move(prefix);
}

void ExpressionBinder::BindItems(Expression& e) const {
  ValueType type = ValueType::Null;
  for (const ExpressionPtr& operand : e.operands) {
    if (!IsUntypedParameter(*operand)) type = ComparisonType(type, operand->type);
  }
  type = type == ValueType::Null ? ValueType::Text : PlainNumber(type);
  e.exact = AnyExact(e);
  CoerceBoth(e, type);
  e.type = ValueType::Boolean;
}

void ExpressionBinder::BindQueryOperand(Expression& e, const Scope& scope) {
  const bool inside = insideAggregate_;
  insideAggregate_ = false;
  const Output output = bindQuery_(*e.query, scope);
  insideAggregate_ = inside;
  e.type = ValueType::Boolean;
  if (e.kind == Kind::Exists) return;
  if (output.size() != 1) Raise(EngineError::SyntaxInExpression, "a subconsulta deve ter uma só coluna");
  if (e.kind == Kind::Scalar) {
    e.type = output[0].type;
    e.exact = output[0].exact;
    return;
  }
  Expression& value = *e.operands[0];
  ValueType type = PlainNumber(IsUntypedParameter(value) ? output[0].type : ComparisonType(value.type, output[0].type));
  if (type == ValueType::Null) type = ValueType::Text;
  e.exact = value.exact || output[0].exact;
  Coerce(e.operands[0], type);
  CoerceOutput(*this, *e.query, 0, type);
}

void ExpressionBinder::BindAggregate(Expression& e) const {
  e.type = ValueType::Long;
  if (e.operands.empty() && !SameWord(e.name, "COUNT"))
    Raise(EngineError::SyntaxInExpression, "função de agregação sem argumento");
  if (e.operands.size() > 1) Raise(EngineError::SyntaxInExpression, "função de agregação com mais de um argumento");
  if (!e.operands.empty() && UsesOnlyOuterNames(*e.operands[0])) {
    Raise(EngineError::Unsupported, "função de agregação sobre colunas de fora da subconsulta");
  }
  if (SameWord(e.name, "COUNT")) return;
  ExpressionPtr& value = e.operands[0];
  e.exact = value->exact;
  if (IsUntypedParameter(*value)) Coerce(value, ValueType::Double);
  if (SameWord(e.name, "SUM") || SameWord(e.name, "AVG")) {
    if (value->type == ValueType::Text) Raise(EngineError::CriteriaTypeMismatch);
    const bool exact = value->type == ValueType::Currency || value->type == ValueType::Decimal;
    Coerce(value, exact ? ValueType::Currency : ValueType::Double);
  } else if (value->type == ValueType::Boolean && (SameWord(e.name, "MIN") || SameWord(e.name, "MAX"))) {
    Coerce(value, ValueType::Long);
  }
  e.type = value->type;
}

bool ExpressionBinder::Same(const Expression& a, const Expression& b) {
  if (a.kind != b.kind || a.type != b.type || a.op != b.op || a.flag != b.flag ||
      a.operands.size() != b.operands.size())
    return false;
  if (a.query || b.query || !SameWord(a.name, b.name) || !SameWord(a.qualifier, b.qualifier)) return false;
  if (a.kind == Kind::Literal) {
    if (LiteralAt(a.literal) != LiteralAt(b.literal)) return false;
    Fix(a.literal);
    Fix(b.literal);
    return true;
  }
  return std::equal(a.operands.begin(), a.operands.end(), b.operands.begin(),
                    [this](const ExpressionPtr& x, const ExpressionPtr& y) { return Same(*x, *y); });
}

void CoerceOutput(const ExpressionBinder& binder, Query& query, std::size_t place, ValueType type) {
  for (SelectBlock& block : query.blocks) binder.Coerce(block.items[place].value, type);
}

bool HasAggregate(const Expression& expression) {
  return expression.kind == Kind::Aggregate || std::any_of(expression.operands.begin(), expression.operands.end(),
                                                           [](const ExpressionPtr& e) { return HasAggregate(*e); });
}

// Calls: the conditional ones are forms of the language, the others come from the table of functions.

void ExpressionBinder::BindCall(ExpressionPtr& expression) const {
  Expression& call = *expression;
  if (BindConditional(call)) return;
  if (SameWord(call.name, "ABS") && call.operands.size() == 1 && call.operands[0]->type == ValueType::Boolean) {
    call.kind = Kind::Magnitude;
    call.type = ValueType::Long;
    return;
  }
  const Function* function = FindFunction(call.name);
  if (!function) Raise(EngineError::UnknownFunction, call.name);
  BindFunction(call, *function);
}

bool ExpressionBinder::BindConditional(Expression& call) const {
  const auto count = [&](bool right) {
    if (!right) Raise(EngineError::SyntaxInExpression, "número errado de argumentos");
  };
  if (SameWord(call.name, "ISNULL")) {
    count(call.operands.size() == 1);
    call.kind = Kind::IsNull;
    call.type = ValueType::Boolean;
  } else if (SameWord(call.name, "IIF")) {
    count(call.operands.size() == 3);
    BindCase(call);
  } else if (SameWord(call.name, "SWITCH")) {
    count(call.operands.size() >= 2 && call.operands.size() % 2 == 0);
    call.operands.push_back(std::make_unique<Expression>(Kind::Null));
    BindCase(call);
  } else if (SameWord(call.name, "NZ")) {
    count(call.operands.size() == 1 || call.operands.size() == 2);
    if (call.operands.size() == 1) {
      if (call.operands[0]->type == ValueType::Text)
        Raise(EngineError::Unsupported, "Nz de um texto sem o segundo argumento");
      call.operands.push_back(std::make_unique<Expression>(Kind::Boolean));
      call.operands[1]->type = ValueType::Boolean;
    }
    call.kind = Kind::Coalesce;
    call.type = Meeting(*call.operands[0], *call.operands[1], CommonValue);
    call.exact = AnyExact(call);
    CoerceBoth(call, call.type);
  } else {
    return false;
  }
  return true;
}

void ExpressionBinder::BindCase(Expression& node) const {
  node.kind = Kind::Case;
  ValueType type = ValueType::Null;
  const std::size_t last = node.operands.size() - 1;
  const auto isValue = [last](std::size_t i) { return i % 2 == 1 || i == last; };
  for (std::size_t i = 0; i <= last; ++i) {
    if (isValue(i) && !IsUntypedParameter(*node.operands[i])) type = CommonValue(type, node.operands[i]->type);
  }
  for (std::size_t i = 0; i <= last; ++i) Coerce(node.operands[i], isValue(i) ? type : ValueType::Boolean);
  node.type = type;
  for (std::size_t i = 0; i <= last; ++i) node.exact = node.exact || (isValue(i) && node.operands[i]->exact);
}

void ExpressionBinder::BindFunction(Expression& call, const Function& function) const {
  if (call.operands.size() < function.required || call.operands.size() > function.arguments.size()) {
    Raise(EngineError::SyntaxInExpression, "número errado de argumentos");
  }
  const bool keepsType = function.result == ValueType::Null;
  ValueType any = ValueType::Null;
  for (std::size_t i = 0; i < call.operands.size(); ++i) {
    ExpressionPtr& argument = call.operands[i];
    if (function.arguments[i] != ArgumentKind::Any) {
      Coerce(argument, TypeOf(function.arguments[i], argument->type));
      continue;
    }
    if (IsUntypedParameter(*argument)) Coerce(argument, keepsType ? ValueType::Double : ValueType::Text);
    if (any == ValueType::Null) any = argument->type;
    if (any == ValueType::Byte || (any == ValueType::Boolean && keepsType)) any = ValueType::Long;
    if (any == ValueType::Text && keepsType) any = ValueType::Double;
    Coerce(argument, any);
  }
  call.function = &function;
  call.type = keepsType ? any : function.result;
}

}  // namespace tsv::db::jet
