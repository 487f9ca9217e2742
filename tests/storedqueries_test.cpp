// The two stored queries against plain sums: they rest on the balances that entries carry, the test on amounts alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>

#include "support/Errors.h"
#include "support/TemporaryLedger.h"
#include "types/Conversions.h"

namespace tsv::test {
namespace {

const std::vector<std::string> kAccounts = {"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.20",
                                            "3", "3.1", "3.1.1", "B",       "B.1"};
const std::vector<std::string> kTypes = {"0", "00", "0012", "2"};  // beside the reserved 001
const std::vector<std::string> kCentres = {"1", "1.1", "1.10", "2"};
constexpr int kPartners = 3;

// What an entry is classified by, and whose balances a query is asked for: then codes need not be those of any master.
struct Subject {
  std::string account;
  std::string type;
  std::string centre;
  int partner = 0;
};

struct Row {
  std::string key;
  std::int64_t amount = 0;  // ten-thousandths
  Subject of;
  std::string realised;  // as a literal

  bool Counts() const { return realised != "'N'"; }
};

using Five = std::array<std::int64_t, 5>;

std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool Below(const std::string& code, const std::string& parent) {
  return !parent.empty() && Folded(code).starts_with(Folded(parent));
}

template <typename Included>
Five PlainSums(const std::vector<Row>& rows, const Subject& subject, Included included) {
  Five sums{};
  for (const Row& row : rows) {
    if (!row.Counts() || !included(row)) continue;
    sums[0] += Below(row.of.account, subject.account) ? row.amount : 0;
    sums[1] += Below(row.of.type, subject.type) ? row.amount : 0;
    sums[2] += Below(row.of.centre, subject.centre) ? row.amount : 0;
    sums[3] += subject.partner != 0 && row.of.partner == subject.partner ? row.amount : 0;
    sums[4] += row.amount;
  }
  return sums;
}

std::string Amount(std::int64_t units) { return Currency::FromTenThousandths(units).ToText(); }
std::string TextOrNull(const std::string& text) { return text.empty() ? "NULL" : "'" + text + "'"; }

class RandomLedger {
  TemporaryLedger file_;
  std::mt19937 random_;

 public:
  explicit RandomLedger(std::uint32_t seed) : random_(seed), user(file_.Open()) {
    user.Workspace().BeginTrans();
    InsertCodes(user, "Contas", kAccounts);
    InsertCodes(user, "TiposMovimentacoes", kTypes);
    InsertCodes(user, "CentrosDeCusto", kCentres);
    InsertPartners(user, kPartners);
    const auto accounts = Uneven(kAccounts);
    const auto types = Uneven({"0", "00", "001", "0012", "2"});
    const auto centres = Uneven(kCentres);
    const int count = Number(0, 600);
    for (int id = 1; id <= count; ++id) rows.push_back(AnyRow(id, accounts, types, centres));
    std::sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.key < b.key; });
    for (const Row& row : rows) Insert(row);
    user.Workspace().CommitTrans();
  }

  Subject AnySubject() {
    return {Any({"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.", "3", "3.1", "b", "B.1", "b.", "9", "", "@@@", "$@#"}),
            Any({"0", "00", "001", "0012", "2", "7"}), Any({"1", "1.1", "1.10", "2", "@@@", "$@#", ""}),
            Number(0, kPartners + 1)};
  }

  // Of an entry, or between entries, or outside them.
  std::string AnyKey() {
    if (!rows.empty() && Number(0, 3) > 0)
      return rows[static_cast<std::size_t>(Number(0, static_cast<int>(rows.size()) - 1))].key;
    return Key(Number(1, 31), Number(0, 700));
  }

  static std::string Key(int day, int id) {
    char key[32];
    std::snprintf(key, sizeof key, "202401%02d%09d", day, id);
    return key;
  }

  int Number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }
  std::string Any(const std::vector<std::string>& values) {
    return values[static_cast<std::size_t>(Number(0, static_cast<int>(values.size()) - 1))];
  }

  User user;
  std::vector<Row> rows;

 private:
  // Some codes often, some seldom, some never.
  std::vector<std::string> Uneven(const std::vector<std::string>& codes) {
    std::vector<std::string> chosen = {codes.back()};
    for (const std::string& code : codes)
      chosen.insert(chosen.end(), static_cast<std::size_t>(std::max(0, Number(-6, 8))), code);
    return chosen;
  }

  Row AnyRow(int id, const std::vector<std::string>& accounts, const std::vector<std::string>& types,
             const std::vector<std::string>& centres) {
    Row row{Key(Number(1, 31), id),
            Number(-2'000'000, 2'000'000),
            {Any(accounts), Any(types), "", 0},
            Any({"'?'", "'S'", "'E'", "'N'", "'N'", "NULL"})};
    if (Number(0, 4) == 0) row.of.account = Folded(row.of.account);
    if (Number(0, 2) > 0) row.of.centre = Any(centres);
    if (Number(0, 2) > 0) row.of.partner = Number(1, kPartners);
    return row;
  }

  void Insert(const Row& row) {
    const auto upToRow = [&](const Row& other) { return other.key <= row.key; };
    const Five carried = PlainSums(rows, row.of, upToRow);
    std::ostringstream sql;
    sql << "INSERT INTO Lancamentos (Id, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Valor, Data, Historico, "
           "DataId, SaldoConta, SaldoRecDesp, SaldoCentroCusto, SaldoParceiroComl, SaldoGlobal, IdUsuario, Realizado) "
           "VALUES ("
        << std::stoi(row.key.substr(8)) << ", '" << row.of.account << "', '" << row.of.type << "', "
        << TextOrNull(row.of.centre) << ", " << (row.of.partner ? std::to_string(row.of.partner) : "NULL") << ", "
        << Amount(row.amount) << ", #01/01/1990#, 'X', '" << row.key << "'";
    for (const std::int64_t balance : carried) sql << ", " << Amount(balance);
    sql << ", 1, " << row.realised << ")";
    user.Execute(sql.str());
  }
};

Five FiveOf(db::Recordset& row) {
  Five values{};
  std::size_t place = 0;
  for (const char* name : {"SaldoConta", "SaldoRecDesp", "SaldoCCusto", "SaldoParceiro", "SaldoGlobal"}) {
    values[place++] = std::get<Currency>(row.Fields(name).Value()).TenThousandths();
  }
  return values;
}

void SetSubject(db::QueryDef& query, const Subject& subject) {
  query.Parameters("IdParceiro").Value = subject.partner;
  query.Parameters("CodCCusto").Value = subject.centre;
  query.Parameters("CodCon").Value = subject.account;
  query.Parameters("CodRecDes").Value = subject.type;
}

Five BalancesAt(User& user, const Subject& subject, const std::string& newKey, const std::string& oldKey) {
  const auto query = user.database->QueryDefs("ParQryLastSaldosByDataId");
  SetSubject(*query, subject);
  query->Parameters("ParNewDataId").Value = newKey;
  query->Parameters("ParOldDataId").Value = oldKey;
  const auto row = query->OpenRecordset();
  EXPECT_EQ(row->RecordCount(), 1);
  return FiveOf(*row);
}

std::string Described(const Subject& subject) {
  return "account '" + subject.account + "', type '" + subject.type + "', cost centre '" + subject.centre +
         "', partner " + std::to_string(subject.partner);
}

std::uint32_t Seed() {
  const char* given = std::getenv("TSV_SEED");
  const std::uint32_t seed = given ? static_cast<std::uint32_t>(std::stoul(given)) : std::random_device()();
  std::cout << "seed " << seed << " (TSV_SEED repeats it)\n";
  return seed;
}

TEST(StoredQueries, EqualThePlainSums) {
  const std::uint32_t seed = Seed();
  for (std::uint32_t round = 0; round < 10; ++round) {
    RandomLedger ledger(seed + round);
    ledger.user.Workspace().BeginTrans();
    const auto serialQuery = ledger.user.database->QueryDefs("ParQrySerialESaldos");
    for (int i = 0; i < 200; ++i) {
      const Subject subject = ledger.AnySubject();
      const std::string newKey = ledger.AnyKey();
      const std::string oldKey = ledger.Number(0, 2) == 0 ? " " : ledger.Number(0, 3) == 0 ? newKey : ledger.AnyKey();
      SCOPED_TRACE("ledger " + std::to_string(round) + ", keys " + newKey + " and " + oldKey + ", " +
                   Described(subject));
      const auto atNew = [&](const Row& row) { return row.key <= newKey && (row.key != oldKey || oldKey == newKey); };
      ASSERT_EQ(BalancesAt(ledger.user, subject, newKey, oldKey), PlainSums(ledger.rows, subject, atNew));

      const int serial = ledger.Number(0, 700);
      const int day = ledger.Number(1, 31);
      ledger.user.Execute("UPDATE Serial SET Serial = " + std::to_string(serial));
      SetSubject(*serialQuery, subject);
      serialQuery->Parameters(4).Value = Date::FromCivil({2024, 1, day, 23, 59, 59});
      const auto row = serialQuery->OpenRecordset();
      ASSERT_EQ(row->Fields("SERIAL").Value(), Variant(serial));
      const std::string key = RandomLedger::Key(day, serial + 1);
      ASSERT_EQ(FiveOf(*row), PlainSums(ledger.rows, subject, [&](const Row& other) { return other.key < key; }))
          << key;
    }
  }
}

// What verifies a row must not ask the row.
TEST(StoredQueries, VerificationDoesNotTrustTheVerifiedRow) {
  RandomLedger ledger(1);
  ASSERT_GT(ledger.rows.size(), 10U);
  const Row& row = ledger.rows[ledger.rows.size() / 2];
  const Five before = BalancesAt(ledger.user, row.of, row.key, " ");
  ledger.user.Execute(
      "UPDATE Lancamentos SET SaldoConta = 1, SaldoRecDesp = 1, SaldoCentroCusto = 1, SaldoParceiroComl = 1, "
      "SaldoGlobal = 1 WHERE DataId = '" +
      row.key + "'");
  EXPECT_EQ(BalancesAt(ledger.user, row.of, row.key, " "), before);
}

TEST(StoredQueries, NullStandsForNoneAndNothingSetForAMistake) {
  RandomLedger ledger(2);
  const auto query = ledger.user.database->QueryDefs("parqrylastsaldosbydataid");
  EXPECT_EQ(ErrorOf([&] { query->OpenRecordset(); }).Numero(), 3061);
  for (std::size_t i = 0; i < 6; ++i) query->Parameters(i).Value = Null();
  query->Parameters("ParNewDataId").Value = std::string("99999999999999999");
  const Five sums = FiveOf(*query->OpenRecordset());
  EXPECT_EQ(sums, PlainSums(ledger.rows, {}, [](const Row&) { return true; }));
}

TEST(StoredQueries, SeeTheirOwnTransaction) {
  RandomLedger ledger(3);
  const auto query = ledger.user.database->QueryDefs("ParQrySerialESaldos");
  SetSubject(*query, {"1", "0", "@@@", 0});
  query->Parameters(4).Value = Date::FromCivil(2025, 1, 1);
  ledger.user.Workspace().BeginTrans();
  ledger.user.Execute("UPDATE Serial SET Serial = 900");
  ledger.user.Execute("DELETE FROM Lancamentos");
  const auto inside = query->OpenRecordset();
  EXPECT_EQ(inside->Fields("SERIAL").Value(), Variant(900));
  EXPECT_EQ(FiveOf(*inside), Five{});
  ledger.user.Workspace().Rollback();
  EXPECT_EQ(query->OpenRecordset()->Fields("SERIAL").Value(), Variant(0));
}

}  // namespace
}  // namespace tsv::test
