#include "SampleLedger.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>

#include "common/Balances.h"
#include "common/Engines.h"
#include "db/DBEngine.h"

namespace tsv::bench {
namespace {

constexpr std::int32_t kDays = 5 * 365;

// Codes of four levels, parents before children, until there are so many.
std::vector<std::string> Codes(std::array<int, 4> perLevel, std::size_t total) {
  std::vector<std::string> codes;
  std::size_t begin = 0;
  for (int i = 1; i <= perLevel[0]; ++i) codes.push_back(std::to_string(i));
  for (std::size_t level = 1; level < perLevel.size(); ++level) {
    const std::size_t end = codes.size();
    for (int i = 1; i <= perLevel[level]; ++i) {
      for (std::size_t parent = begin; parent < end && codes.size() < total; ++parent) {
        codes.push_back(codes[parent] + "." + std::to_string(i));
      }
    }
    begin = end;
  }
  return codes;
}

// The running balance of each code: an entry enters those of all codes that its own begins with.
class RunningBalances {
 public:
  explicit RunningBalances(const std::vector<std::string>& codes) : sums_(codes.size()), holders_(codes.size()) {
    for (std::size_t code = 0; code < codes.size(); ++code) {
      for (std::size_t holder = 0; holder < codes.size(); ++holder) {
        if (codes[code].starts_with(codes[holder])) holders_[code].push_back(holder);
      }
    }
  }

  std::int64_t Add(std::size_t code, std::int64_t amount) {
    for (const std::size_t holder : holders_[code]) sums_[holder] += amount;
    return sums_[code];
  }

 private:
  std::vector<std::int64_t> sums_;
  std::vector<std::vector<std::size_t>> holders_;
};

std::size_t Pick(std::mt19937& random, std::size_t from, std::size_t to) {
  return std::uniform_int_distribution<std::size_t>(from, to - 1)(random);
}

Currency RandomAmount(std::mt19937& random) {
  const auto cents = static_cast<std::int64_t>(Pick(random, 0, 2'000'000)) - 1'000'000;
  return Currency::FromTenThousandths((cents == 0 ? 1 : cents) * 100);
}

}  // namespace

SampleLedger::SampleLedger(std::string path, std::int32_t entries)
    : path_(std::move(path)),
      entries_(entries),
      last_(Date::FromCivil(2008, 12, 31)),
      accounts_(Codes({5, 4, 4, 3}, 300)),
      types_(Codes({6, 4, 4, 4}, 400)),
      centres_(Codes({5, 3, 3, 2}, 50)) {
  const auto firstOfSecondLevel = [](const std::vector<std::string>& codes) {
    return static_cast<std::size_t>(
        std::find_if(codes.begin(), codes.end(), [](const auto& c) { return c.find('.') != c.npos; }) - codes.begin());
  };
  firstUsedAccount_ = firstOfSecondLevel(accounts_);
  firstUsedType_ = firstOfSecondLevel(types_);
  CriarBancoDeDados(path_);
  WriteMasters();
  const auto writer = path_.starts_with("postgresql://") ? WriterToServer(path_) : WriterToFile(path_);
  EachEntry([&](const StoredEntry& entry) { writer->Write(entry); });
  writer->Finish(entries_);
}

void SampleLedger::WriteMasters() {
  db::DBEngine engine(AllDrivers());
  const auto database = engine.OpenDatabase(path_, false, false, kConnect);
  engine.Workspaces(0).BeginTrans();
  database->Execute(
      "INSERT INTO Usuarios (Id, IdLogin, Senha, DesUsuario) VALUES (1, 'banco', 'prova', 'BANCO DE PROVA')");
  std::int32_t id = 10;
  const auto add = [&](const std::string& table, const std::string& description,
                       const std::vector<std::string>& codes) {
    for (const std::string& code : codes) {
      database->Execute("INSERT INTO " + table + " (Id, Codigo, " + description + ") VALUES (" + std::to_string(++id) +
                        ", '" + code + "', 'ITEM " + code + "')");
    }
  };
  add("Contas", "DesConta", accounts_);
  add("TiposMovimentacoes", "DesMovimentacao", types_);
  add("CentrosDeCusto", "DesCentroDeCusto", centres_);
  for (std::int32_t partner = 1; partner <= kPartners; ++partner) {
    const std::string n = std::to_string(partner);
    database->Execute("INSERT INTO ParceirosComerciais (Id, Nome, Filial) VALUES (" + n + ", 'PARCEIRO " + n +
                      "', 'MATRIZ')");
  }
  engine.Workspaces(0).CommitTrans();
  database->Close();
}

void SampleLedger::EachEntry(const std::function<void(const StoredEntry&)>& write) const {
  RunningBalances byAccount(accounts_);
  RunningBalances byType(types_);
  RunningBalances byCentre(centres_);
  std::vector<std::int64_t> byPartner(kPartners + 1);
  std::int64_t all = 0;
  std::mt19937 random(20081231);
  const std::size_t seldom =
      static_cast<std::size_t>(std::find(accounts_.begin(), accounts_.end(), "2") - accounts_.begin());
  for (std::int32_t id = 1; id <= entries_; ++id) {
    const auto day = static_cast<std::int32_t>(static_cast<std::int64_t>(id) * kDays / entries_);
    const Date date(last_.Days() - kDays + day);
    const std::size_t account = id == 1 ? seldom : Pick(random, firstUsedAccount_, accounts_.size());
    const std::size_t type = Pick(random, firstUsedType_, types_.size());
    const std::int64_t amount = RandomAmount(random).TenThousandths();
    StoredEntry entry{.id = id,
                      .account = accounts_[account],
                      .type = types_[type],
                      .centre = {},
                      .amount = amount,
                      .moment = date.ToIso(),
                      .key = Module1::MontarDataId(date, id),
                      .accountBalance = byAccount.Add(account, amount),
                      .typeBalance = byType.Add(type, amount),
                      .globalBalance = all += amount};
    if (Pick(random, 0, 2) == 0) {
      const std::size_t centre = Pick(random, 0, centres_.size());
      entry.centre = centres_[centre];
      entry.centreBalance = byCentre.Add(centre, amount);
    }
    if (Pick(random, 0, 2) == 0) {
      const std::size_t partner = Pick(random, 1, kPartners + 1);
      entry.partner = static_cast<std::int32_t>(partner);
      entry.partnerBalance = byPartner[partner] += amount;
    }
    write(entry);
  }
}

Posting SampleLedger::Ordinary(std::mt19937& random) const {
  Posting posting;
  posting.date = last_;
  posting.amount = RandomAmount(random);
  posting.account = accounts_[Pick(random, firstUsedAccount_, accounts_.size())];
  posting.type = types_[Pick(random, firstUsedType_, types_.size())];
  if (Pick(random, 0, 2) == 0) posting.centre = centres_[Pick(random, 0, centres_.size())];
  if (Pick(random, 0, 2) == 0) posting.partner = static_cast<std::int32_t>(Pick(random, 1, kPartners + 1));
  return posting;
}

Date SampleLedger::DayBeforeLast(std::int32_t entries) const {
  return Date(last_.Days() - static_cast<double>(static_cast<std::int64_t>(entries) * kDays / entries_));
}

}  // namespace tsv::bench
