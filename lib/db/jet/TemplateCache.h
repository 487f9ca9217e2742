#pragma once

#include <algorithm>
#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "db/KeptRecordset.h"
#include "db/jet/Compiler.h"
#include "db/jet/Lexer.h"

namespace tsv::db::jet {

// A statement's text with its literals left out, compiled once. Engines add its prepared form.
struct Template {
  std::string shape;
  Compiled compiled;
  FieldDescriptions fields;  // of a SELECT
};

// Fills the template from the statement.
void CompileInto(Template& fresh, const Lexed& lexed, const Catalog& catalog, const Dialect& dialect);

// Whether the literals are those that shaped the compiled text.
bool Fits(const Compiled& compiled, const std::vector<Variant>& literals);

// The templates used last: a statement that comes again with other literals is neither parsed nor prepared again.
template <typename EngineTemplate>
class TemplateCache {
 public:
  static constexpr std::size_t kCapacity = 256;
  static constexpr std::size_t kLongestShape = 64 * 1024;  // a longer one is not worth its room

  // The template of the statement, and the statement's literals; nothing when it is new.
  std::shared_ptr<EngineTemplate> Find(std::string_view sql, std::vector<Variant>& literals) {
    const auto [begin, end] = byHead_.equal_range(HeadOf(sql));
    for (auto entry = begin; entry != end; ++entry) {
      const Place place = entry->second;
      if (!HasShape(sql, (*place)->shape, literals) || !Fits((*place)->compiled, literals)) continue;
      templates_.splice(templates_.begin(), templates_, place);
      return *place;
    }
    return nullptr;
  }

  void Add(const std::shared_ptr<EngineTemplate>& compiled) {
    // A table is made once: there is nothing to keep.
    const bool again = compiled->compiled.kind != StatementKind::CreateTable;
    if (!again || compiled->shape.size() > kLongestShape) return;
    if (templates_.size() == kCapacity) {
      const auto [begin, end] = byHead_.equal_range(HeadOf(templates_.back()->shape));
      const Place last = std::prev(templates_.end());
      byHead_.erase(std::find_if(begin, end, [&](const auto& entry) { return entry.second == last; }));
      templates_.pop_back();
    }
    templates_.push_front(compiled);
    byHead_.emplace(HeadOf(compiled->shape), templates_.begin());
  }

  void Clear() {
    byHead_.clear();
    templates_.clear();
  }
  std::size_t Size() const noexcept { return templates_.size(); }

 private:
  using Place = typename std::list<std::shared_ptr<EngineTemplate>>::iterator;

  // The last used first. One shape has several templates when some of its literals shaped the compiled text.
  std::list<std::shared_ptr<EngineTemplate>> templates_;
  std::unordered_multimap<std::string_view, Place> byHead_;
};

}  // namespace tsv::db::jet
