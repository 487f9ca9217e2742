#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/Session.h"
#include "support/EmptyLedger.h"
#include "support/Errors.h"
#include "tsvlib2.h"

namespace tsv::test {

inline Currency Cents(std::int64_t cents) { return Currency::FromTenThousandths(cents * 100); }
inline Date Day(int year, int month, int day) { return Date::FromCivil(year, month, day); }
inline const Date kMoment = Date::FromCivil({2008, 7, 5, 14, 30, 15});

// What entries name.
enum MasterTable { kAccount, kType, kCentre, kPartner };
struct Master {
  std::string description;
  std::string branch = {};
  int accepts = 0;  // of types: 1 incoming only, 2 outgoing only
  bool inactive = false;
  bool deleted = false;
};
using Masters = std::map<std::pair<MasterTable, std::string>, Master>;
Masters MastersOfCompany();  // the reserved 001 among them

struct MasterColumns {
  const char *table, *key, *description, *inactive, *deleted;
};
extern const MasterColumns kMasterColumns[4];

// A ledger with a small company in it:
// users ana/segredo (id 7) and rui/segredo (deactivated);
// accounts 1, 1.1, 1.1.2, 1.1.2.5, 1.2, 1.20, B, B.1, and 9 (deactivated), 8 (deleted);
// types 0, 00, 0012, 2 (in only), 3 (out only), and 9 (deactivated), beside the reserved 001;
// cost centres 1, 1.1, 1.10, and 9 (deactivated); partners 1, 2, and 9 (deactivated).
class Company : public EmptyLedger {
 public:
  Company();
  void Execute(std::string_view sql) const;  // outside any session
};

class RecordingHost : public Host {
 public:
  std::vector<std::string> events;
  std::int32_t pointer = 2;
  std::function<void()> onBox;

  void ShowBusyPointer() override { events.push_back("busy"); }
  void ShowNormalPointer() override { events.push_back("normal"); }
  std::int32_t Pointer() override { return pointer; }
  void Pointer(std::int32_t code) override { events.push_back("pointer " + std::to_string(pointer = code)); }
  std::int32_t MessageBox(std::string_view prompt, std::int32_t buttons, std::string_view title, std::string_view,
                          std::int32_t) override;
  void DiscardPendingInput() override { events.push_back("discard"); }
  Date Now() override { return Date::FromCivil({2008, 7, 4, 18, 5, 9}); }
};

// Keeps what ran, and can step in before each statement.
class Recorder : public db::StatementObserver {
 public:
  struct Statement {
    std::string text;
    std::int32_t affected;
  };
  std::vector<Statement> ran;
  std::function<void(std::string_view text)> before;

  void AboutToRun(std::string_view text) override {
    if (before) before(text);
  }
  void HasRun(std::string_view text, std::int32_t affected) override { ran.push_back({std::string(text), affected}); }
  std::vector<std::string> Texts() const;
};

struct Posting {
  Date date;
  Currency amount;
  std::string account;
  std::string type;
  std::string centre = {};
  std::int32_t partner = 0;
  std::string history = "Lançamento";
  std::string document = {};
  Date reference = Day(2008, 7, 1);
};
std::shared_ptr<CLancamento> Post(Tesovia& tesovia, const Posting& posting);
CBaixa SettlementOf(std::int32_t id, TIPO_BAIXA kind, Currency amount, const Variant& date, std::int32_t version = 0);
CTransferencia TransferOf(std::string_view from, std::string_view to, Currency amount, Date date);

// A company with ana logged in on this thread.
class LedgerTest : public ::testing::Test {
 protected:
  LedgerTest();
  ~LedgerTest() override;

  std::shared_ptr<CLancamento> Post(const Posting& posting) { return test::Post(tesovia, posting); }
  void Watch() { CurrentSession().BancoDeDados->Observe(recorder); }

  Company company;
  std::shared_ptr<RecordingHost> host = std::make_shared<RecordingHost>();
  std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
  Tesovia tesovia;
};

}  // namespace tsv::test
