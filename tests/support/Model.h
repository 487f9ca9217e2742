#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Ledger.h"

namespace tsv::test {

// The ledger of a Company in memory, as its users understand it: entries in the order of their keys, balances that
// follow from the amounts, a journal of what was done. It knows no database and no statement. Each operation tells what
// the library has to answer, and does it here.
class Model {
 public:
  struct Entry : test::Entry {
    std::optional<Currency> paid;
    std::optional<std::string> document;
    Date date, reference, due;
    std::string history;
    bool reversal = false;
    bool reversed = false;
    std::uint8_t transfer = 0;
    std::int32_t user = 0;
    Balances balances = {};
    std::int32_t version = 0;
  };

  // Entries and journal rows as the columns of their tables.
  using Row = std::vector<Variant>;
  static inline const std::string kJournalColumns =
      kColumnsOfEntryAndJournal +
      ",DesUsuario,DataHora,IdAcao,DesConta,DesMovimentacao,DesCentroDeCusto,NomeParceiro,Filial";
  static Row Columns(const Entry& entry);

  // A refusal has a number; box: the user was told the reason by a message box.
  struct Outcome {
    std::int32_t number = 0;
    std::string description;
    bool box = false;
    std::vector<Entry> returned;
  };

  Outcome Post(const Posting& request);
  Outcome Delete(std::int32_t id, std::int32_t version);
  Outcome Settle(const CBaixa& request);
  Outcome Move(const CTransferencia& request);
  Outcome Reverse(std::string_view history, std::int32_t id, std::int32_t version);

  // What others and the passing of time do to the ledger.
  Masters masters = MastersOfCompany();
  std::int32_t user = 7;
  std::string userName = "ANA SOUZA";
  Date now;

  struct State {
    std::vector<Entry> entries;                 // in the order of their keys
    std::map<std::int32_t, std::int32_t> legs;  // outgoing to incoming; outlives them
    std::int32_t serial = 0;
  };
  State state;
  std::vector<Row> journal;  // the rows of the last operation

 private:
  using Ids = std::vector<std::int32_t>;
  Outcome Do(const std::function<Ids()>& operation);

  const Master& At(MasterTable table, std::string_view code) const;
  bool Active(MasterTable table, std::string_view code) const;
  bool AllActive(const Entry& entry) const;
  Entry* Find(std::int32_t id);
  Entry& Find(std::int32_t id, std::int32_t version, std::int32_t refusal, const char* ofOther);
  Ids Legs(std::int32_t id, std::int32_t refusal);

  std::int32_t Insert(Entry entry);
  void SetBalances();
  void Record(std::int32_t action, std::int32_t id, bool partialBalances);
  void Remove(std::int32_t id);
  void CheckSettlement(const CBaixa& request, const Entry& entry) const;
  std::int32_t ReverseEntry(std::int32_t id, std::string history, std::string_view deactivated);
};

}  // namespace tsv::test
