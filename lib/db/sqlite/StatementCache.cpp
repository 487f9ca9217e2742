#include "db/sqlite/StatementCache.h"

#include <algorithm>
#include <utility>

#include "db/sqlite/SqliteDialect.h"
#include "db/sqlite/StoredValue.h"

namespace tsv::db::sqlite {
namespace {

bool Fits(const jet::Compiled& compiled, const std::vector<Variant>& literals) {
  return std::all_of(compiled.fixed.begin(), compiled.fixed.end(),
                     [&](const auto& fixed) { return literals[fixed.first] == fixed.second; });
}

FieldDescriptions FieldsOf(const jet::Compiled& compiled) {
  auto fields = std::make_shared<std::vector<FieldDescription>>();
  fields->reserve(compiled.columns.size());
  for (const jet::ResultColumn& column : compiled.columns) fields->push_back({column.name, DataTypeOf(column.type)});
  return fields;
}

}  // namespace

StatementLease::StatementLease(Connection& connection, std::shared_ptr<Template> source)
    : source_(std::move(source)), statement_(std::exchange(source_->idle, std::nullopt)) {
  if (!statement_) statement_.emplace(connection, source_->compiled.sql, true);
}

StatementLease::~StatementLease() {
  if (!source_) return;
  statement_->Reset();
  // What was bound may hold a password.
  sqlite3_clear_bindings(statement_->Handle());
  if (!source_->idle) source_->idle = std::move(statement_);
}

std::shared_ptr<Template> StatementCache::Find(std::string_view sql, std::vector<Variant>& literals) {
  const auto [begin, end] = byHead_.equal_range(jet::HeadOf(sql));
  for (auto entry = begin; entry != end; ++entry) {
    const Place place = entry->second;
    if (!jet::HasShape(sql, (*place)->shape, literals) || !Fits((*place)->compiled, literals)) continue;
    templates_.splice(templates_.begin(), templates_, place);
    return *place;
  }
  return nullptr;
}

std::shared_ptr<Template> StatementCache::Compile(const jet::Lexed& lexed, const Catalog& catalog) {
  auto compiled = std::make_shared<Template>();
  compiled->shape = lexed.shape;
  compiled->compiled = jet::Compile(lexed, catalog, SqliteDialect());
  compiled->fields = FieldsOf(compiled->compiled);
  // A table is made once: there is nothing to keep.
  const bool again = compiled->compiled.kind != jet::StatementKind::CreateTable;
  if (!again || lexed.shape.size() > kLongestShape) return compiled;
  if (templates_.size() == kCapacity) {
    const auto [begin, end] = byHead_.equal_range(jet::HeadOf(templates_.back()->shape));
    const Place last = std::prev(templates_.end());
    byHead_.erase(std::find_if(begin, end, [&](const auto& entry) { return entry.second == last; }));
    templates_.pop_back();
  }
  templates_.push_front(compiled);
  byHead_.emplace(jet::HeadOf(compiled->shape), templates_.begin());
  return compiled;
}

void StatementCache::Clear() {
  byHead_.clear();
  templates_.clear();
}

}  // namespace tsv::db::sqlite
