#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>

#include "support/Ledger.h"
#include "types/Conversions.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr int kPostings = 1000;
constexpr int kCompareEvery = 50;

// The ledger as a list of entries and the definition of their balances; it knows nothing of databases.
class Model {
 public:
  enum class Outcome { Posted, Refused, Deactivated };

  static Outcome Expected(const Posting& posting) {
    enum Type { kAny, kIncomingOnly, kOutgoingOnly, kInactive };
    const std::map<std::string, Type> types = {{"0", kAny},     {"00", kAny},         {"001", kInactive},
                                               {"0012", kAny},  {"2", kIncomingOnly}, {"3", kOutgoingOnly},
                                               {"9", kInactive}};
    const auto type = types.find(posting.type);
    if (type == types.end() || posting.amount == Currency()) return Outcome::Refused;
    if (type->second == (posting.amount < Currency() ? kIncomingOnly : kOutgoingOnly)) return Outcome::Refused;
    const bool deactivated = type->second == kInactive || posting.account == "9" || posting.account == "8" ||
                             posting.centre == "9" || posting.partner == 9;
    return deactivated ? Outcome::Deactivated : Outcome::Posted;
  }

  void Post(const Posting& posting) {
    const CivilTime day = posting.date.ToCivil();
    std::string number = std::to_string(++serial);
    number.insert(0, 9 - number.size(), '0');
    const auto twoDigits = [](int n) { return std::string(n < 10 ? "0" : "") + std::to_string(n); };
    Entry entry = {serial,         std::to_string(day.year) + twoDigits(day.month) + twoDigits(day.day) + number,
                   posting.amount, posting.account,
                   posting.type,   posting.centre,
                   posting.partner};
    entries.push_back(entry);
    entry.balances = BalancesAfter(entry, entries);
    journal.push_back(std::move(entry));
  }

  std::vector<Entry> InOrder() const {
    std::vector<Entry> rows = entries;
    SetBalances(rows);
    std::sort(rows.begin(), rows.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
    return rows;
  }

  std::int32_t serial = 0;
  std::vector<Entry> entries;  // as posted, without balances
  std::vector<Entry> journal;  // each entry as it stood when it was posted
};

class Postings {
 public:
  explicit Postings(std::uint64_t seed) : random_(seed) {}

  Posting Next() {
    Posting posting;
    const auto any = [&](std::initializer_list<const char*> values) {
      return std::string(values.begin()[Below(values.size())]);
    };
    const int hour = Below(3) == 0 ? static_cast<int>(Below(24)) : 0;
    const int day = static_cast<int>(1 + Below(28));
    // All over one year, now and then before everything else.
    const int year = Below(20) == 0 ? 1999 : 2008;
    posting.date = Date::FromCivil({year, static_cast<int>(1 + Below(12)), day, hour, hour * 2, hour});
    posting.amount = Cents(static_cast<std::int64_t>(Below(2'000'001)) - 1'000'000);
    if (Below(40) == 0) posting.amount = Currency();
    if (Below(40) == 0) posting.amount = Cents(90'000'000'000'001);
    posting.account = any({"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.20", "b", "B.1"});
    posting.type = any({"0", "00", "0012", "0", "00", "0012", "2", "3"});
    if (Below(2) == 0) posting.centre = any({"1", "1.1", "1.10"});
    if (Below(2) == 0) posting.partner = static_cast<std::int32_t>(1 + Below(2));
    switch (Below(60)) {
      case 0:
        posting.account = any({"9", "8"});
        break;
      case 1:
        posting.type = any({"9", "001", "0013"});
        break;
      case 2:
        posting.centre = "9";
        break;
      case 3:
        posting.partner = 9;
        break;
      default:
        break;
    }
    return posting;
  }

 private:
  std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }
  std::mt19937_64 random_;
};

std::uint64_t Seed() {
  const char* given = std::getenv("TSV_SEED");
  return given ? std::strtoull(given, nullptr, 10) : std::random_device()();
}

std::vector<Entry> ReadJournal(db::Database& database) {
  std::vector<Entry> rows;
  const auto journal = database.OpenRecordset("Select * From HistoricosDeLancamentos Order By Id");
  const auto value = [&](std::string_view column) { return journal->Fields(column).Value(); };
  for (; !journal->EndOfFile(); journal->MoveNext()) {
    EXPECT_EQ(ToLong(value("IdAcao")), 1);
    const std::int32_t partner = IsNull(value("IdParceiroComl")) ? 0 : ToLong(value("IdParceiroComl"));
    const std::string centre = IsNull(value("CodCentroCusto")) ? "" : ToText(value("CodCentroCusto"));
    rows.push_back({ToLong(value("Id")),
                    ToText(value("DataId")),
                    ToCurrency(value("Valor")),
                    ToText(value("CodConta")),
                    ToText(value("CodRecDesp")),
                    centre,
                    partner,
                    true,
                    {ToCurrency(value("SaldoConta")), ToCurrency(value("SaldoRecDesp")), Currency(), Currency(),
                     ToCurrency(value("SaldoGlobal"))}});
  }
  return rows;
}

class ModelTest : public LedgerTest {
 protected:
  void Compare(const Model& model) {
    const auto database = company.Open();
    ExpectSameEntries(ReadEntries(*database), model.InOrder());
    std::vector<Entry> journal = model.journal;
    for (Entry& row : journal) row.balances[2] = row.balances[3] = Currency();  // the journal's form leaves them out
    ExpectSameEntries(ReadJournal(*database), journal);
    EXPECT_EQ(StoredSerial(*database), model.serial);
  }

  void Step(const Posting& posting, Model& model) {
    host->events.clear();
    std::shared_ptr<CLancamento> entry;
    const Erro erro = ErrorOf([&] { entry = Post(posting); });
    switch (Model::Expected(posting)) {
      case Model::Outcome::Refused:
        ASSERT_EQ(erro.Numero(), TS_ERRO_LANCAMENTO) << erro;
        break;
      case Model::Outcome::Deactivated:
        ASSERT_EQ(erro.Numero(), TS_ERRO_LOGIN) << erro;
        ASSERT_EQ(host->events.size(), 6u);
        break;
      case Model::Outcome::Posted:
        ASSERT_EQ(erro.Numero(), 0) << erro;
        model.Post(posting);
        const Entry& expected = model.journal.back();
        ExpectSameEntries({{entry->Id(),
                            entry->DataId(),
                            entry->Valor(),
                            entry->CodConta(),
                            entry->CodRecDesp(),
                            entry->CodCentroCusto(),
                            entry->IdParceiroComl(),
                            true,
                            {entry->SaldoConta(), entry->SaldoRecDesp(), entry->SaldoCentroCusto(),
                             entry->SaldoParceiroComl(), entry->SaldoGlobal()}}},
                          {expected});
        break;
    }
  }
};

TEST_F(ModelTest, RandomPostingsKeepAllBalances) {
  const std::uint64_t seed = Seed();
  std::printf("seed %llu (TSV_SEED repeats it)\n", static_cast<unsigned long long>(seed));
  Postings postings(seed);
  Model model;
  for (int i = 1; i <= kPostings && !HasFailure(); ++i) {
    Step(postings.Next(), model);
    if (i % kCompareEvery == 0) Compare(model);
  }
  Compare(model);
}

}  // namespace
