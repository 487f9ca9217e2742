#include "db/sqlite/Balances.h"

#include <initializer_list>

#include "db/LedgerSchema.h"
#include "types/Text.h"

namespace tsv::db::sqlite {
namespace {

// With more entries than these on one code, the difference of two balances is cheaper than their sum.
constexpr std::int64_t kFew = 16;

// With more entries than these on all codes below one, their codes are taken one by one.
constexpr std::int64_t kFewBelow = 100;

constexpr const char* kCounts = "(Realizado IS NULL OR Realizado <> 'N')";

// A text for one classification: $master, $code and $balance stand for its names.
std::string Written(std::string_view pattern, const Classification& classification) {
  const std::pair<std::string_view, std::string> names[] = {{"$master", classification.masterTable},
                                                            {"$code", classification.codeColumn},
                                                            {"$balance", classification.balanceColumn},
                                                            {"$counts", kCounts}};
  std::string text(pattern);
  for (const auto& [mark, name] : names) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
      text.replace(at, mark.size(), name);
    }
  }
  return text;
}

Currency Amount(const Statement& statement, int column) {
  return Currency::FromTenThousandths(statement.Integer(column));
}

}  // namespace

bool NamesACode(std::string_view code) noexcept {
  return !code.empty() && code != kNoCostCentre && code != kNoCostCentreToVerify;
}

CodeBalances::CodeBalances(Connection& connection, const Classification& classification)
    : balance_(connection,
               Written("SELECT DataId, $balance, (SELECT CASE WHEN count(*) <= ?3 THEN coalesce(sum(CASE WHEN $counts "
                       "THEN Valor END), 0) END "
                       "FROM (SELECT Valor, Realizado FROM $master CROSS JOIN Lancamentos AS Since ON $code = Codigo "
                       "WHERE Codigo > ?1 AND Codigo < ?1 || char(0x10FFFF) "
                       "AND Since.DataId > Last.DataId AND Since.DataId < ?2 LIMIT ?3 + 1)) "
                       "FROM Lancamentos AS Last WHERE $code = ?1 AND DataId < ?2 ORDER BY DataId DESC LIMIT 1",
                       classification),
               true),
      codesBelow_(connection,
                  Written("SELECT Codigo FROM $master WHERE Codigo > ?1 AND Codigo < ?1 || char(0x10FFFF) "
                          "ORDER BY Codigo",
                          classification),
                  true),
      lastPoint_(connection,
                 Written("SELECT DataId, $balance FROM Lancamentos WHERE $code = ?1 AND DataId < ?2 "
                         "ORDER BY DataId DESC LIMIT 1",
                         classification),
                 true),
      own_(connection,
           Written("SELECT count(*), sum(CASE WHEN $counts THEN Valor END) FROM (SELECT Valor, Realizado "
                   "FROM Lancamentos WHERE $code = ?1 AND DataId > ?2 AND DataId < ?3 LIMIT ?4 + 1)",
                   classification),
           true) {}

Currency CodeBalances::Before(std::string_view code, std::string_view key) {
  if (!NamesACode(code)) return {};
  Point last;
  {
    const ScopedReset reset(balance_);
    if (balance_.Bind(1, code).Bind(2, key).Bind(3, kFewBelow).Step()) {
      last.balance = Amount(balance_, 1);
      if (!balance_.IsNull(2)) return last.balance + Amount(balance_, 2);
      last.key = balance_.Text(0);
    }
  }
  LoadCodesBelow(code);
  return last.balance + SumOfNodes(0, codes_.size(), last.key, key);
}

void CodeBalances::LoadCodesBelow(std::string_view code) {
  codes_.clear();
  const ScopedReset reset(codesBelow_);
  codesBelow_.Bind(1, code);
  while (codesBelow_.Step()) {
    const std::string_view below = codesBelow_.Text(0);
    if (text::BeginsWithFolded(below, code)) codes_.emplace_back(below);
  }
  ends_.resize(codes_.size());
  for (std::size_t i = codes_.size(); i-- > 0;) {
    std::size_t end = i + 1;
    while (end < codes_.size() && text::BeginsWithFolded(codes_[end], codes_[i])) end = ends_[end];
    ends_[i] = end;
  }
}

CodeBalances::Point CodeBalances::LastPoint(std::string_view code, std::string_view before) {
  const ScopedReset reset(lastPoint_);
  if (!lastPoint_.Bind(1, code).Bind(2, before).Step()) return {};
  return {std::string(lastPoint_.Text(0)), Amount(lastPoint_, 1)};
}

std::optional<Currency> CodeBalances::SumOfFew(std::string_view code, std::string_view after, std::string_view before) {
  const ScopedReset reset(own_);
  own_.Bind(1, code).Bind(2, after).Bind(3, before).Bind(4, kFew).Step();
  if (own_.Integer(0) > kFew) return {};
  return Amount(own_, 1);
}

Currency CodeBalances::BalanceOf(std::size_t node, std::string_view before) {
  const Point last = LastPoint(codes_[node], before);
  return last.balance + SumOfNodes(node + 1, ends_[node], last.key, before);
}

Currency CodeBalances::SumOfNode(std::size_t node, std::string_view after, std::string_view before) {
  if (after.empty()) return BalanceOf(node, before);
  if (const auto own = SumOfFew(codes_[node], after, before)) {
    return *own + SumOfNodes(node + 1, ends_[node], after, before);
  }
  return BalanceOf(node, before) - BalanceOf(node, after);
}

Currency CodeBalances::SumOfNodes(std::size_t first, std::size_t end, std::string_view after, std::string_view before) {
  Currency sum;
  for (std::size_t node = first; node < end; node = ends_[node]) sum += SumOfNode(node, after, before);
  return sum;
}

Balances::Balances(Connection& connection)
    : accounts(connection, kAccounts),
      types(connection, kTypes),
      costCentres(connection, kCostCentres),
      partner_(connection,
               "SELECT SaldoParceiroComl FROM Lancamentos WHERE IdParceiroComl = ?1 AND DataId < ?2 "
               "ORDER BY DataId DESC LIMIT 1",
               true),
      global_(connection, "SELECT SaldoGlobal FROM Lancamentos WHERE DataId < ?1 ORDER BY DataId DESC LIMIT 1", true),
      entry_(connection,
             std::string("SELECT Valor, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl FROM Lancamentos "
                         "WHERE DataId = ?1 AND ") +
                 kCounts,
             true),
      serial_(connection, "SELECT Serial FROM Serial", true) {}

Currency Balances::OfPartnerBefore(std::int64_t partner, std::string_view key) {
  if (partner == 0) return {};
  const ScopedReset reset(partner_);
  return partner_.Bind(1, partner).Bind(2, key).Step() ? Amount(partner_, 0) : Currency();
}

Currency Balances::GlobalBefore(std::string_view key) {
  const ScopedReset reset(global_);
  return global_.Bind(1, key).Step() ? Amount(global_, 0) : Currency();
}

std::optional<CountingEntry> Balances::EntryAt(std::string_view key) {
  if (text::Trim(key).empty()) return {};  // how callers say that there is no such entry
  const ScopedReset reset(entry_);
  if (!entry_.Bind(1, key).Step()) return {};
  return CountingEntry{Amount(entry_, 0), std::string(entry_.Text(1)), std::string(entry_.Text(2)),
                       std::string(entry_.Text(3)), entry_.Integer(4)};
}

std::optional<std::int64_t> Balances::Serial() {
  const ScopedReset reset(serial_);
  if (!serial_.Step()) return {};
  return serial_.Integer(0);
}

}  // namespace tsv::db::sqlite
