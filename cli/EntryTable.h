#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CLancamento.h"
#include "Rows.h"
#include "Tesovia.h"
#include "common/Statement.h"

// Entries as the statement of account shows them, and the commands that change them.
namespace tsv::cli {

// By the name that the user gives, and as stored.
extern const std::array<std::pair<const char*, const char*>, 4> kStates;

Module1::Statement SelectEntries();  // up to FROM: what the columns need
const std::vector<OutputColumn>& EntryColumns();
std::vector<Variant> EntryRow(const db::Recordset& rows);

// The entry and, when it is a leg of a transfer, the other leg, whether or not they are still there.
std::vector<std::int32_t> WithOtherLeg(Tesovia& tesovia, std::int32_t id);

// Prints a title and the entries of these ids in the ledger's order, and returns what was shown.
std::vector<std::shared_ptr<CLancamento>> ShowEntries(Tesovia& tesovia, const std::string& title,
                                                      const std::vector<std::int32_t>& ids);

}  // namespace tsv::cli
