#include "db/Catalog.h"

#include "types/Text.h"

namespace tsv::db {

const Column* Table::Find(std::string_view column) const {
  for (const Column& candidate : columns) {
    if (text::CompareFolded(candidate.name, column) == 0) return &candidate;
  }
  return nullptr;
}

bool Catalog::FoldedLess::operator()(std::string_view a, std::string_view b) const {
  return text::CompareFolded(a, b) < 0;
}

void Catalog::Add(Table table) {
  std::string name = table.name;
  tables_.insert_or_assign(std::move(name), std::move(table));
}

const Table* Catalog::Find(std::string_view table) const {
  const auto found = tables_.find(table);
  return found == tables_.end() ? nullptr : &found->second;
}

}  // namespace tsv::db
