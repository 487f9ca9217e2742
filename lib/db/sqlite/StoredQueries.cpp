#include "db/sqlite/StoredQueries.h"

#include <string>
#include <utility>

#include "db/KeptRecordset.h"
#include "db/LedgerSchema.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::db::sqlite {
namespace {

using jet::Parameters;

// Whose balances are asked for. Null stands for none.
struct Subject {
  std::string account;
  std::string type;
  std::string costCentre;
  std::int64_t partner = 0;
};

struct FiveBalances {
  Currency account;
  Currency type;
  Currency costCentre;
  Currency partner;
  Currency global;
};

std::string TextOf(const Variant& value) { return IsNull(value) ? std::string() : ToText(value); }
std::int64_t NumberOf(const Variant& value) { return IsNull(value) ? 0 : ToLong(value); }

FiveBalances BalancesBefore(Balances& balances, const Subject& subject, std::string_view key) {
  return {balances.accounts.Before(subject.account, key), balances.types.Before(subject.type, key),
          balances.costCentres.Before(subject.costCentre, key), balances.OfPartnerBefore(subject.partner, key),
          balances.GlobalBefore(key)};
}

bool LiesAtOrBelow(std::string_view code, std::string_view parent) {
  return NamesACode(parent) && text::BeginsWithFolded(code, parent);
}

// Adds the amount, which is the entry's or its negative, to the balances of the subject that hold the entry.
void Add(FiveBalances& sums, const Subject& subject, const CountingEntry& entry, Currency amount) {
  if (LiesAtOrBelow(entry.account, subject.account)) sums.account += amount;
  if (LiesAtOrBelow(entry.type, subject.type)) sums.type += amount;
  if (LiesAtOrBelow(entry.costCentre, subject.costCentre)) sums.costCentre += amount;
  if (subject.partner != 0 && entry.partner == subject.partner) sums.partner += amount;
  sums.global += amount;
}

Subject SubjectOf(const Parameters& parameters) {
  return {TextOf(parameters[2].Value), TextOf(parameters[3].Value), TextOf(parameters[1].Value),
          NumberOf(parameters[0].Value)};
}

std::vector<Variant> SerialAndBalances(Balances& balances, const Parameters& parameters) {
  const Subject subject = SubjectOf(parameters);
  const std::optional<std::int64_t> serial = balances.Serial();
  const std::string key = EntryKey(ToDate(parameters[4].Value), serial.value_or(0) + 1);
  const FiveBalances sums = BalancesBefore(balances, subject, key);
  return {serial ? Variant(static_cast<std::int32_t>(*serial)) : Variant(Null()),
          sums.partner,
          sums.costCentre,
          sums.account,
          sums.type,
          sums.global};
}

std::vector<Variant> LastBalances(Balances& balances, const Parameters& parameters) {
  const Subject subject = SubjectOf(parameters);
  const std::string newKey = TextOf(parameters[4].Value);
  const std::string oldKey = TextOf(parameters[5].Value);
  FiveBalances sums = BalancesBefore(balances, subject, newKey);
  if (const auto entry = balances.EntryAt(newKey)) Add(sums, subject, *entry, entry->amount);
  if (oldKey < newKey) {
    if (const auto entry = balances.EntryAt(oldKey)) Add(sums, subject, *entry, -entry->amount);
  }
  return {sums.account, sums.type, sums.costCentre, sums.partner, sums.global};
}

}  // namespace

std::shared_ptr<Recordset> Answer(const StoredQuery& query, Balances& balances, const Parameters& parameters) {
  const bool serial = query.kind == StoredQuery::Kind::SerialAndBalances;
  auto row = serial ? SerialAndBalances(balances, parameters) : LastBalances(balances, parameters);
  return std::make_shared<KeptRecordset>(query.fields, std::move(row));
}

}  // namespace tsv::db::sqlite
