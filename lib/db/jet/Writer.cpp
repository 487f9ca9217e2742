#include "db/jet/Writer.h"

#include "db/jet/ExpressionWriter.h"

namespace tsv::db::jet {
namespace {

class StatementWriter {
 public:
  StatementWriter(const Statement& statement, const Lexed& lexed, const Dialect& dialect)
      : statement_(statement),
        lexed_(lexed),
        dialect_(dialect),
        expressions_(dialect, [this](const Query& q) { return WriteQuery(q); }) {}

  Written Run() {
    Written written;
    switch (statement_.kind) {
      case Statement::Kind::Select:
        written.sql = WriteQuery(*statement_.query);
        break;
      case Statement::Kind::Insert:
        written.sql = Insert();
        break;
      case Statement::Kind::Update:
        written.sql = Update();
        break;
      case Statement::Kind::Delete:
        written.sql = "DELETE FROM " + Source(*statement_.from) + Where();
        break;
      case Statement::Kind::CreateTable:
        break;
    }
    written.parameters = std::move(expressions_.Parameters());
    return written;
  }

 private:
  std::string WriteQuery(const Query& query) {
    if (query.blocks.size() == 1) return Block(query.blocks[0], query.orderBy);
    std::string united;
    for (std::size_t i = 0; i < query.blocks.size(); ++i) {
      const bool apart = i > 0 && !query.unionAll[i - 1];
      if (i > 0) united += apart && !dialect_.KeysReplaceTexts() ? " UNION " : " UNION ALL ";
      const SelectBlock& block = query.blocks[i];
      const std::string written = Block(block, {}, true);
      united += block.top || block.distinct ? "SELECT * FROM (" + written + ") AS " + dialect_.Name("]b") : written;
      if (apart && dialect_.KeysReplaceTexts()) united = Distinct(united, query.blocks[0]);
    }
    return query.orderBy.empty() ? united : Ordered(united, query.blocks[0], query.orderBy);
  }

  // What returns the block's columns, in the order of some of them.
  std::string Ordered(const std::string& rows, const SelectBlock& block, const std::vector<OrderItem>& orderBy) const {
    std::string order;
    for (const OrderItem& item : orderBy) {
      order += (order.empty() ? " ORDER BY " : ", ") +
               expressions_.SortKey(ResultName(*item.place), *block.items[*item.place].value) +
               dialect_.Direction(item.descending);
    }
    return "SELECT * FROM (" + rows + ") AS " + dialect_.Name("]u") + order;
  }

  // Results are called c1, c2 ...: their own names may repeat, and are known to the binder.
  std::string ResultName(std::size_t place) const { return dialect_.Name("c" + std::to_string(place + 1)); }

  // Those of the rows that differ in their keys.
  std::string Distinct(const std::string& rows, const SelectBlock& block) const {
    std::string keys;
    for (std::size_t i = 0; i < block.items.size(); ++i) {
      const Expression& value = *block.items[i].value;
      const bool folded = value.type == ValueType::Text && !value.exact;
      keys += (i > 0 ? ", " : "") + (folded ? dialect_.EqualityKey(ResultName(i)) : ResultName(i));
    }
    return "SELECT DISTINCT ON (" + keys + ") * FROM (" + rows + ") AS " + dialect_.Name("]d");
  }

  std::string Block(const SelectBlock& block, const std::vector<OrderItem>& orderBy, bool compared = false) {
    const bool around = expressions_.Grouped(!block.groupBy.empty() || block.having);
    std::string text = Rows(block, orderBy, compared);
    const bool byKeys = block.distinct && dialect_.KeysReplaceTexts();
    if (byKeys) text = Distinct(text, block);
    if (block.top) {
      text = Limited(block, orderBy, text);
    } else if (byKeys && !orderBy.empty()) {
      text = Ordered(text, block, orderBy);
    } else {
      for (std::size_t i = 0; i < orderBy.size(); ++i) {
        text +=
            (i == 0 ? " ORDER BY " : ", ") + OrderKey(block, orderBy[i]) + dialect_.Direction(orderBy[i].descending);
      }
    }
    expressions_.Grouped(around);
    return text;
  }

  // With the keys of their order, when they are to be ranked by it.
  std::string Rows(const SelectBlock& block, const std::vector<OrderItem>& orderBy, bool compared) {
    const bool texts = dialect_.KeysReplaceTexts();
    std::string text = block.distinct && !texts ? "SELECT DISTINCT " : "SELECT ";
    for (std::size_t i = 0; i < block.items.size(); ++i) {
      const Expression& value = *block.items[i].value;
      if (i > 0) text += ", ";
      text += (compared || block.distinct) && !texts ? expressions_.EqualityKey(value) : expressions_.Write(value);
      text += " AS " + ResultName(i);
    }
    for (std::size_t i = 0; block.top && i < orderBy.size(); ++i)
      text += ", " + OrderKey(block, orderBy[i]) + " AS " + dialect_.Name(KeyName(i));
    const bool grouped = expressions_.Grouped(false);
    text += Sources(block);
    if (block.where) text += " WHERE " + expressions_.Write(*block.where);
    for (std::size_t i = 0; i < block.groupBy.size(); ++i) {
      text += (i == 0 ? " GROUP BY " : ", ") + Apart(expressions_.EqualityKey(*block.groupBy[i]), *block.groupBy[i]);
    }
    expressions_.Grouped(grouped);
    if (block.having) text += " HAVING " + expressions_.Write(*block.having);
    return text;
  }

  // TOP keeps every row that ties with the last one under ORDER BY, so rows are ranked, not counted.
  std::string Limited(const SelectBlock& block, const std::vector<OrderItem>& orderBy, const std::string& inner) const {
    const std::string count = std::to_string(std::get<std::int32_t>(lexed_.literals[block.top->literal]));
    if (orderBy.empty() && !block.top->percent) return inner + " LIMIT " + count;
    std::string window;
    for (std::size_t i = 0; i < orderBy.size(); ++i) {
      const std::string key = dialect_.Name(KeyName(i));
      const bool again = KeyIsLanguage(block, orderBy[i]) && !dialect_.KeysReplaceTexts();
      window += (i == 0 ? "ORDER BY " : ", ") + (again ? dialect_.SortKey(key) : key) +
                dialect_.Direction(orderBy[i].descending);
    }
    std::string columns;
    for (std::size_t i = 0; i < block.items.size(); ++i) columns += (i > 0 ? ", " : "") + ResultName(i);
    const std::string place = dialect_.Name("]place");
    const std::string kept = block.top->percent
                                 ? "(" + place + " - 1) * 100 < " + dialect_.Name("]total") + " * " + count
                                 : place + " <= " + count;
    return "SELECT " + columns + " FROM (SELECT *, " + (orderBy.empty() ? "row_number()" : "rank()") + " OVER (" +
           window + ") AS " + place + ", count(*) OVER () AS " + dialect_.Name("]total") + " FROM (" + inner + ") AS " +
           dialect_.Name("]i") + ") AS " + dialect_.Name("]r") + " WHERE " + kept + " ORDER BY " + place;
  }

  static std::string KeyName(std::size_t i) { return "]k" + std::to_string(i + 1); }

  static const Expression& KeyOf(const SelectBlock& block, const OrderItem& item) {
    const Expression& key = item.place ? *block.items[*item.place].value : *item.value;
    // What is converted on its way into a column is ordered as it was selected.
    return key.kind == Expression::Kind::Convert ? *key.operands[0] : key;
  }
  static bool KeyIsLanguage(const SelectBlock& block, const OrderItem& item) {
    const Expression& key = KeyOf(block, item);
    return key.type == ValueType::Text && !key.exact;
  }
  // A bare constant as a key would be taken for the place of a column, or refused.
  static std::string Apart(const std::string& key, const Expression& value) {
    const bool constant = value.kind == Expression::Kind::Null || value.kind == Expression::Kind::Boolean;
    return constant ? "(SELECT " + key + ")" : key;
  }

  std::string OrderKey(const SelectBlock& block, const OrderItem& item) {
    return Apart(expressions_.SortKey(KeyOf(block, item)), KeyOf(block, item));
  }

  std::string Sources(const SelectBlock& block) {
    std::string text;
    for (const auto& from : block.from) {
      const bool join = from->left != nullptr;
      const std::string source = Source(*from);
      text += (text.empty() ? " FROM " : ", ") + (join && block.from.size() > 1 ? "(" + source + ")" : source);
    }
    return text;
  }

  std::string Source(const From& from) {
    switch (from.kind) {
      case From::Kind::Table:
        return dialect_.TableName(from.name) + " AS " + dialect_.Name(from.alias);
      case From::Kind::Derived:
        return "(" + WriteQuery(*from.query) + ") AS " + dialect_.Name(from.alias);
      case From::Kind::Inner:
      case From::Kind::Left:
      case From::Kind::Right:
        break;
    }
    // Joins associate to the left, so only a join on the right needs its parentheses.
    const std::string left = Source(*from.left);
    const std::string right = Source(*from.right);
    const std::string_view kind = from.kind == From::Kind::Inner  ? " INNER JOIN "
                                  : from.kind == From::Kind::Left ? " LEFT JOIN "
                                                                  : " RIGHT JOIN ";
    std::string text = left;
    text += kind;
    text += from.right->left ? "(" + right + ")" : right;
    return text + " ON " + expressions_.Write(*from.on);
  }

  std::string Where() { return statement_.where ? " WHERE " + expressions_.Write(*statement_.where) : ""; }

  std::string Insert() {
    std::string text = "INSERT INTO " + dialect_.TableName(statement_.table) + " (";
    for (std::size_t i = 0; i < statement_.columns.size(); ++i)
      text += (i > 0 ? ", " : "") + dialect_.Name(statement_.columns[i]);
    text += ") ";
    if (statement_.query) return text + WriteQuery(*statement_.query);
    for (std::size_t i = 0; i < statement_.values.size(); ++i)
      text += (i == 0 ? "VALUES (" : ", ") + expressions_.Write(*statement_.values[i]);
    return text + ")";
  }

  // The joined tables become sources and conditions beside the one table that changes.
  std::string Update() {
    std::string target;
    std::string others;
    std::string conditions;
    std::string set;
    for (const Assignment& assignment : statement_.assignments) {
      set += (set.empty() ? " SET " : ", ") + dialect_.Name(assignment.target->name) + " = " +
             dialect_.Stored(expressions_.Write(*assignment.value), assignment.target->type);
    }
    Flatten(*statement_.from, target, others, conditions);
    if (statement_.where)
      conditions += (conditions.empty() ? " WHERE " : " AND ") + expressions_.Write(*statement_.where);
    return "UPDATE " + target + set + others + conditions;
  }

  void Flatten(const From& from, std::string& target, std::string& others, std::string& conditions) {
    if (!from.left) {
      if (from.alias == statement_.table) {
        target = Source(from);
      } else {
        others += (others.empty() ? " FROM " : ", ") + Source(from);
      }
      return;
    }
    Flatten(*from.left, target, others, conditions);
    Flatten(*from.right, target, others, conditions);
    conditions += (conditions.empty() ? " WHERE " : " AND ") + expressions_.Write(*from.on);
  }

  const Statement& statement_;
  const Lexed& lexed_;
  const Dialect& dialect_;
  ExpressionWriter expressions_;
};

}  // namespace

Written Write(const Statement& statement, const Lexed& lexed, const Dialect& dialect) {
  return StatementWriter(statement, lexed, dialect).Run();
}

}  // namespace tsv::db::jet
