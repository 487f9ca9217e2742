#include "BalanceCheck.h"

#include "Texts.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

constexpr std::array<const char*, 5> kBalances = {"SaldoConta", "SaldoRecDesp", "SaldoCentroCusto", "SaldoParceiroComl",
                                                  "SaldoGlobal"};

// The places of the query's columns.
enum Place : std::size_t { kId, kDate, kKey, kState, kAccount, kType, kCentre, kPartner, kAmount, kFirstBalance };

const std::string& TextAt(const db::Recordset& row, Place place) {
  return std::get<std::string>(row.Fields(place).Value());
}

}  // namespace

const char* const BalanceCheck::kQuery =
    "SELECT Id, Data, DataId, Realizado, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Valor, SaldoConta, "
    "SaldoRecDesp, SaldoCentroCusto, SaldoParceiroComl, SaldoGlobal FROM Lancamentos ORDER BY DataId";

std::string TextOf(const WrongBalance& wrong) {
  return "Diferença no lançamento " + std::to_string(wrong.id) + " de " + Day(wrong.date) + " (chave " + wrong.key +
         "): " + wrong.balance + " gravado " + Amount(wrong.stored) + ", correto " + Amount(wrong.right) + ".";
}

const std::vector<Currency*>& PrefixTotals::TotalsFor(std::string_view code) {
  const auto [known, isNew] = byCode_.try_emplace(std::string(code));
  if (isNew) {
    std::u32string beginning;
    for (text::FoldedReader reader(code); !reader.AtEnd();) {
      beginning += reader.Next();
      known->second.push_back(&totals_[beginning]);
    }
  }
  return known->second;
}

void PrefixTotals::Add(std::string_view code, Currency amount) {
  for (Currency* total : TotalsFor(code)) *total += amount;
}

Currency PrefixTotals::Of(std::string_view code) {
  const auto& totals = TotalsFor(code);
  return totals.empty() ? Currency() : *totals.back();
}

std::array<Currency, 5> BalanceCheck::Balances(const db::Recordset& row) {
  const Variant& state = row.Fields(kState).Value();
  const bool counts = IsNull(state) || text::CompareFolded(std::get<std::string>(state), "N") != 0;
  const Currency amount = counts ? std::get<Currency>(row.Fields(kAmount).Value()) : Currency();
  const std::string& account = TextAt(row, kAccount);
  const std::string& type = TextAt(row, kType);

  std::array<Currency, 5> balances;
  accounts_.Add(account, amount);
  types_.Add(type, amount);
  balances[0] = accounts_.Of(account);
  balances[1] = types_.Of(type);
  if (!IsNull(row.Fields(kCentre).Value())) {
    const std::string& centre = TextAt(row, kCentre);
    centres_.Add(centre, amount);
    balances[2] = centres_.Of(centre);
  }
  if (const Variant& partner = row.Fields(kPartner).Value(); !IsNull(partner)) {
    balances[3] = partners_[std::get<std::int32_t>(partner)] += amount;
  }
  balances[4] = all_ += amount;
  return balances;
}

std::optional<WrongBalance> BalanceCheck::Run(db::Recordset& rows, const std::function<void(std::int64_t)>& progress) {
  for (; !rows.EndOfFile(); rows.MoveNext()) {
    const std::array<Currency, 5> right = Balances(rows);
    for (std::size_t i = 0; i < right.size(); ++i) {
      const Variant& value = rows.Fields(kFirstBalance + i).Value();
      const Currency stored = IsNull(value) ? Currency() : std::get<Currency>(value);
      if (stored != right[i]) {
        return WrongBalance{std::get<std::int32_t>(rows.Fields(kId).Value()),
                            ToDate(rows.Fields(kDate).Value()),
                            TextAt(rows, kKey),
                            kBalances[i],
                            stored,
                            right[i]};
      }
    }
    progress(++entries_);
  }
  return std::nullopt;
}

}  // namespace tsv::cli
