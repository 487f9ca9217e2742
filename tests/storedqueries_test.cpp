// The two stored queries against plain sums: they rest on the balances that entries carry, the test on amounts alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <random>
#include <sstream>

#include "support/Environment.h"
#include "support/Ledger.h"
#include "support/TemporaryLedger.h"
#include "types/Text.h"

namespace tsv::test {
namespace {

const std::vector<std::string> kAccounts = {"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.20",
                                            "3", "3.1", "3.1.1", "B",       "B.1"};
const std::vector<std::string> kTypes = {"0", "00", "0012", "2"};  // beside the reserved 001
const std::vector<std::string> kCentres = {"1", "1.1", "1.10", "2"};
constexpr int kPartners = 3;

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
    for (int id = 1; id <= count; ++id) entries.push_back(AnyEntry(id, accounts, types, centres));
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
    for (const Entry& entry : entries) Insert(entry);
    user.Workspace().CommitTrans();
  }

  // Whose balances a query is asked for: its codes need not be those of any master.
  Entry AnySubject() {
    Entry subject;
    subject.account =
        Any({"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.", "3", "3.1", "b", "B.1", "b.", "9", "", "@@@", "$@#"});
    subject.type = Any({"0", "00", "001", "0012", "2", "7"});
    subject.centre = Any({"1", "1.1", "1.10", "2", "@@@", "$@#", ""});
    subject.partner = Number(0, kPartners + 1);
    return subject;
  }

  // Of an entry, or between entries, or outside them.
  std::string AnyKey() {
    if (!entries.empty() && Number(0, 3) > 0)
      return entries[static_cast<std::size_t>(Number(0, static_cast<int>(entries.size()) - 1))].key;
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
  std::vector<Entry> entries;

 private:
  // Some codes often, some seldom, some never.
  std::vector<std::string> Uneven(const std::vector<std::string>& codes) {
    std::vector<std::string> chosen = {codes.back()};
    for (const std::string& code : codes)
      chosen.insert(chosen.end(), static_cast<std::size_t>(std::max(0, Number(-6, 8))), code);
    return chosen;
  }

  Entry AnyEntry(int id, const std::vector<std::string>& accounts, const std::vector<std::string>& types,
                 const std::vector<std::string>& centres) {
    Entry entry{id,
                Key(Number(1, 31), id),
                Currency::FromTenThousandths(Number(-2'000'000, 2'000'000)),
                Any(accounts),
                Any(types),
                "",
                0,
                Any({"?", "S", "E", "N", "N", ""})};
    if (Number(0, 4) == 0) entry.account = text::Lower(entry.account);
    if (Number(0, 2) > 0) entry.centre = Any(centres);
    if (Number(0, 2) > 0) entry.partner = Number(1, kPartners);
    return entry;
  }

  void Insert(const Entry& entry) {
    std::ostringstream sql;
    sql << "INSERT INTO Lancamentos (Id, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Valor, Data, Historico, "
           "DataId, SaldoConta, SaldoRecDesp, SaldoCentroCusto, SaldoParceiroComl, SaldoGlobal, IdUsuario, Realizado) "
           "VALUES ("
        << entry.id << ", '" << entry.account << "', '" << entry.type << "', " << TextOrNull(entry.centre) << ", "
        << (entry.partner ? std::to_string(entry.partner) : "NULL") << ", " << entry.amount.ToText()
        << ", #01/01/1990#, 'X', '" << entry.key << "'";
    for (const Currency balance : BalancesAfter(entry, entries)) sql << ", " << balance.ToText();
    sql << ", 1, " << TextOrNull(entry.realised) << ")";
    user.Execute(sql.str());
  }
};

Balances BalancesOf(db::Recordset& row) {
  Balances values;
  std::size_t place = 0;
  for (const char* name : {"SaldoConta", "SaldoRecDesp", "SaldoCCusto", "SaldoParceiro", "SaldoGlobal"}) {
    values[place++] = std::get<Currency>(row.Fields(name).Value());
  }
  return values;
}

void SetSubject(db::QueryDef& query, const Entry& subject) {
  query.Parameters("IdParceiro").Value = subject.partner;
  query.Parameters("CodCCusto").Value = subject.centre;
  query.Parameters("CodCon").Value = subject.account;
  query.Parameters("CodRecDes").Value = subject.type;
}

Balances BalancesAt(User& user, const Entry& subject, const std::string& newKey, const std::string& oldKey) {
  const auto query = user.database->QueryDefs("ParQryLastSaldosByDataId");
  SetSubject(*query, subject);
  query->Parameters("ParNewDataId").Value = newKey;
  query->Parameters("ParOldDataId").Value = oldKey;
  const auto row = query->OpenRecordset();
  EXPECT_EQ(row->RecordCount(), 1);
  return BalancesOf(*row);
}

TEST(StoredQueries, EqualThePlainSums) {
  const auto seed = static_cast<std::uint32_t>(NumberFrom("TSV_SEED", std::random_device()()));
  std::cout << "seed " << seed << " (TSV_SEED repeats it)\n";
  for (std::uint32_t round = 0; round < 10; ++round) {
    RandomLedger ledger(seed + round);
    ledger.user.Workspace().BeginTrans();
    const auto serialQuery = ledger.user.database->QueryDefs("ParQrySerialESaldos");
    for (int i = 0; i < 200; ++i) {
      const Entry subject = ledger.AnySubject();
      const std::string newKey = ledger.AnyKey();
      const std::string oldKey = ledger.Number(0, 2) == 0 ? " " : ledger.Number(0, 3) == 0 ? newKey : ledger.AnyKey();
      SCOPED_TRACE(testing::Message() << "ledger " << round << ", keys " << newKey << " and " << oldKey << ", account '"
                                      << subject.account << "', type " << subject.type << ", cost centre '"
                                      << subject.centre << "', partner " << subject.partner);
      const auto atNew = [&](const Entry& row) { return row.key <= newKey && (row.key != oldKey || oldKey == newKey); };
      ASSERT_EQ(BalancesAt(ledger.user, subject, newKey, oldKey), PlainSums(ledger.entries, subject, atNew));

      const int serial = ledger.Number(0, 700);
      const int day = ledger.Number(1, 31);
      ledger.user.Execute("UPDATE Serial SET Serial = " + std::to_string(serial));
      SetSubject(*serialQuery, subject);
      serialQuery->Parameters(4).Value = Date::FromCivil({2024, 1, day, 23, 59, 59});
      const auto row = serialQuery->OpenRecordset();
      ASSERT_EQ(row->Fields("SERIAL").Value(), Variant(serial));
      const std::string key = RandomLedger::Key(day, serial + 1);
      ASSERT_EQ(BalancesOf(*row),
                PlainSums(ledger.entries, subject, [&](const Entry& other) { return other.key < key; }))
          << key;
    }
  }
}

// What verifies a row must not ask the row.
TEST(StoredQueries, VerificationDoesNotTrustTheVerifiedRow) {
  RandomLedger ledger(1);
  ASSERT_GT(ledger.entries.size(), 10U);
  const Entry& row = ledger.entries[ledger.entries.size() / 2];
  const Balances before = BalancesAt(ledger.user, row, row.key, " ");
  ledger.user.Execute(
      "UPDATE Lancamentos SET SaldoConta = 1, SaldoRecDesp = 1, SaldoCentroCusto = 1, SaldoParceiroComl = 1, "
      "SaldoGlobal = 1 WHERE DataId = '" +
      row.key + "'");
  EXPECT_EQ(BalancesAt(ledger.user, row, row.key, " "), before);
}

TEST(StoredQueries, NullStandsForNoneAndNothingSetForAMistake) {
  RandomLedger ledger(2);
  const auto query = ledger.user.database->QueryDefs("parqrylastsaldosbydataid");
  EXPECT_EQ(ErrorOf([&] { query->OpenRecordset(); }).Numero(), 3061);
  for (std::size_t i = 0; i < 6; ++i) query->Parameters(i).Value = Null();
  query->Parameters("ParNewDataId").Value = std::string("99999999999999999");
  const Balances sums = BalancesOf(*query->OpenRecordset());
  EXPECT_EQ(sums, PlainSums(ledger.entries, {}, [](const Entry&) { return true; }));
}

TEST(StoredQueries, SeeTheirOwnTransaction) {
  RandomLedger ledger(3);
  const auto query = ledger.user.database->QueryDefs("ParQrySerialESaldos");
  SetSubject(*query, ledger.AnySubject());
  query->Parameters(4).Value = Date::FromCivil(2025, 1, 1);
  ledger.user.Workspace().BeginTrans();
  ledger.user.Execute("UPDATE Serial SET Serial = 900");
  ledger.user.Execute("DELETE FROM Lancamentos");
  const auto inside = query->OpenRecordset();
  EXPECT_EQ(inside->Fields("SERIAL").Value(), Variant(900));
  EXPECT_EQ(BalancesOf(*inside), Balances{});
  ledger.user.Workspace().Rollback();
  EXPECT_EQ(query->OpenRecordset()->Fields("SERIAL").Value(), Variant(0));
}

}  // namespace
}  // namespace tsv::test
