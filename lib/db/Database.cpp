#include "db/Database.h"

#include "db/EngineError.h"
#include "types/Text.h"

namespace tsv::db {

QueryDef::Parameter& QueryDef::Parameters(std::size_t index) {
  if (index >= parameters_.size()) Raise(EngineError::ItemNotFound, std::to_string(index));
  return parameters_[index];
}

QueryDef::Parameter& QueryDef::Parameters(std::string_view name) {
  for (Parameter& parameter : parameters_) {
    if (text::CompareFolded(parameter.Name, name) == 0) return parameter;
  }
  Raise(EngineError::ItemNotFound, name);
}

}  // namespace tsv::db
