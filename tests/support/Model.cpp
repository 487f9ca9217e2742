#include "support/Model.h"
#include "support/Messages.h"

#include <algorithm>
#include <cstdio>

#include "db/EngineError.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::test {

namespace {

const std::string kQuotes = "Caracteres de aspas duplas ou simples não são permitidos em histórico.";

void RefuseIf(bool condition, std::int32_t number, const std::string& description) {
  if (condition) throw Model::Outcome{number, description, false, {}};
}
void RefuseIf(bool condition, db::EngineError error) { RefuseIf(condition, static_cast<std::int32_t>(error), {}); }
void RefuseIf(bool condition, RuntimeError error) { RefuseIf(condition, static_cast<std::int32_t>(error), {}); }

// Balances are kept in cents, so an amount that is not verifies nowhere.
void Verify(Currency amount) { RefuseIf(amount.TenThousandths() % 100 != 0, TS_ERRO_LOGIN, {}); }

std::string KeyOf(Date date, std::int32_t id) {
  const CivilTime day = date.ToCivil();
  char key[64];
  std::snprintf(key, sizeof key, "%04d%02d%02d%09d", day.year, day.month, day.day, id);
  return key;
}

bool Has(std::string_view text, char c) { return text.find(c) != std::string_view::npos; }

std::optional<std::string> Given(std::string_view text) {
  return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

template <typename T>
Variant OrNull(const std::optional<T>& value) {
  return value ? Variant(*value) : Variant(Null());
}

constexpr std::size_t kPartialBalances = 20;  // place of the first in a row

std::string PartnerCode(std::int32_t partner) { return partner == 0 ? "" : std::to_string(partner); }

}  // namespace

Model::Row Model::Columns(const Entry& e) {
  const auto& [account, type, centre, partner, all] = e.balances;
  return RowOf(e.id, e.key, e.account, e.type, OrNull(Given(e.centre)), e.partner == 0 ? Variant(Null()) : e.partner,
               OrNull(e.document), e.amount, OrNull(e.paid), e.date, e.reference, e.due, e.history, e.realised,
               e.reversal, e.reversed, e.transfer, account, type, all, centre, partner, e.user, e.version);
}

// Wholly or not at all.
Model::Outcome Model::Do(const std::function<Ids()>& operation) {
  const State before = state;
  journal.clear();
  try {
    Outcome outcome;
    for (const std::int32_t id : operation()) outcome.returned.push_back(*Find(id));
    return outcome;
  } catch (const Outcome& refusal) {
    state = before;
    journal.clear();
    return refusal;
  }
}

const Master& Model::At(MasterTable table, std::string_view code) const {
  static const Master none = {.description = {}, .inactive = true};
  const auto found = masters.find({table, text::Upper(code)});
  return found == masters.end() ? none : found->second;
}

bool Model::Active(MasterTable table, std::string_view code) const {
  const Master& master = At(table, code);
  return !master.inactive && !master.deleted;
}

bool Model::AllActive(const Entry& entry) const {
  return Active(kAccount, entry.account) && Active(kType, entry.type) &&
         (entry.centre.empty() || Active(kCentre, entry.centre)) &&
         (entry.partner == 0 || Active(kPartner, PartnerCode(entry.partner)));
}

Model::Entry* Model::Find(std::int32_t id) {
  const auto found = std::ranges::find(state.entries, id, &Entry::id);
  return found == state.entries.end() ? nullptr : &*found;
}

Model::Entry& Model::Find(std::int32_t id, std::int32_t version, std::int32_t refusal, const char* ofOther) {
  Entry* const entry = Find(id);
  RefuseIf(!entry || entry->version != version, refusal, ofOther);
  return *entry;
}

// Both legs of the entry's transfer, the outgoing one first.
Model::Ids Model::Legs(std::int32_t id, std::int32_t refusal) {
  for (const auto& [outgoing, incoming] : state.legs) {
    if ((outgoing == id || incoming == id) && Find(outgoing) && Find(incoming)) return {outgoing, incoming};
  }
  RefuseIf(true, refusal, kNoOtherLeg);
  return {};
}

std::int32_t Model::Insert(Entry entry) {
  Verify(entry.amount);
  entry.id = ++state.serial;
  entry.key = KeyOf(entry.date, entry.id);
  entry.user = user;
  state.entries.push_back(entry);
  SetBalances();
  return entry.id;
}

void Model::SetBalances() {
  std::ranges::sort(state.entries, {}, &Entry::key);
  for (Entry& entry : state.entries) entry.balances = BalancesAfter(entry, state.entries);
}

// Some forms of the journal leave the balances of cost centre and partner out.
void Model::Record(std::int32_t action, std::int32_t id, bool partialBalances) {
  Entry entry = *Find(id);
  entry.user = user;
  Row row = Columns(entry);
  row.pop_back();
  if (!partialBalances) row[kPartialBalances] = row[kPartialBalances + 1] = Null();
  const auto description = [&](MasterTable table, const std::string& code, std::string Master::*text) {
    return code.empty() ? Variant(Null()) : Variant(At(table, code).*text);
  };
  const std::string partner = PartnerCode(entry.partner);
  const Row rest = RowOf(
      userName, now, static_cast<std::uint8_t>(action), description(kAccount, entry.account, &Master::description),
      description(kType, entry.type, &Master::description), description(kCentre, entry.centre, &Master::description),
      description(kPartner, partner, &Master::description), description(kPartner, partner, &Master::branch));
  row.insert(row.end(), rest.begin(), rest.end());
  journal.push_back(std::move(row));
}

Model::Outcome Model::Post(const Posting& request) {
  return Do([&]() -> Ids {
    constexpr std::int32_t number = TS_ERRO_LANCAMENTO;
    RefuseIf(!masters.contains({kType, request.type}), number,
             "Receita/despesa informada para o lançamento não existe.");
    const int accepts = At(kType, request.type).accepts;
    RefuseIf(request.amount < Currency() && accepts == 1, number, kOnlyIncoming);
    RefuseIf(request.amount > Currency() && accepts == 2, number, kOnlyOutgoing);
    const std::string_view history = text::Trim(request.history);
    RefuseIf(text::Length(history) > 50, number, "Histórico não deve ter mais do que 50 caracteres.");
    RefuseIf(history.empty(), number, "Faltando informar o histórico do lançamento.");
    RefuseIf(request.amount == Currency(), number, "Faltando informar o valor do lançamento.");
    RefuseIf(Has(history, '\''), db::EngineError::SyntaxInExpression);

    Entry entry;
    entry.amount = request.amount;
    entry.account = request.account;
    entry.type = request.type;
    entry.centre = request.centre;
    entry.partner = request.partner;
    entry.document = Given(text::Trim(request.document));
    entry.date = entry.due = request.date;
    entry.reference = request.reference;
    entry.history = text::Upper(history);
    if (!AllActive(entry)) throw Outcome{TS_ERRO_LOGIN, {}, true, {}};
    const std::int32_t id = Insert(std::move(entry));
    Record(1, id, false);
    return {id};
  });
}

// The journal tells the balances as the deletion leaves them at its place.
void Model::Remove(std::int32_t id) {
  Entry& entry = *Find(id);
  const bool ordinary = entry.transfer == 0;
  if (entry.realised != "N") {
    for (const std::size_t k : {0, 1, 4}) entry.balances[k] -= entry.amount;
    if (!entry.centre.empty()) entry.balances[2] -= entry.amount;
    if (entry.partner != 0) entry.balances[3] -= entry.amount;
  }
  Record(3, id, ordinary);
  std::erase_if(state.entries, [id](const Entry& each) { return each.id == id; });
  SetBalances();
}

Model::Outcome Model::Delete(std::int32_t id, std::int32_t version) {
  return Do([&]() -> Ids {
    constexpr std::int32_t number = TS_ERRO_EXCLUSAO;
    const Entry& entry = Find(id, version, number, kDeletionOfOther);
    RefuseIf(entry.reversed, number, kDeletionOfReversed);
    RefuseIf(entry.reversal, number, kDeletionOfReversal);
    for (const std::int32_t each : entry.transfer == 0 ? Ids{id} : Legs(id, number)) Remove(each);
    return {};
  });
}

void Model::CheckSettlement(const CBaixa& request, const Entry& entry) const {
  constexpr std::int32_t number = TS_ERRO_BAIXA;
  const Currency amount = request.ValorBaixado();
  const Variant& date = request.DataRealizacao();
  RefuseIf(amount == Currency() || entry.amount == Currency(), RuntimeError::DivisionByZero);
  RefuseIf((amount > Currency()) != (entry.amount > Currency()), number, kOtherSign);
  switch (request.TipoBaixa()) {
    case BAIXA_NAO_REALIZADO:
      RefuseIf(!IsEmpty(date) && !IsDate(date), RuntimeError::TypeMismatch);
      RefuseIf(ToDate(date).DayNumber() != entry.date.DayNumber(), number, kUnrealisedMoved);
      RefuseIf(amount != entry.amount, number, kUnrealisedChanged);
      return;
    case BAIXA_TOTAL:
      RefuseIf(amount != entry.amount, number, kNotTotal);
      RefuseIf(entry.transfer != 0 && !(IsDate(date) && ToDate(date) == entry.date), number, kLegMoved);
      break;
    case BAIXA_PARCIAL:
      RefuseIf(entry.transfer != 0, number, kPartialLeg);
      RefuseIf(amount.Abs() > entry.amount.Abs(), number, kTooMuch);
      RefuseIf(amount == entry.amount, number, kNotPartial);
      break;
  }
  RefuseIf(IsEmpty(date), number, kNoDate);
  RefuseIf(!IsDate(date), number, kBadDate);
}

Model::Outcome Model::Settle(const CBaixa& request) {
  std::optional<std::int32_t> lastWriter;
  Outcome outcome = Do([&]() -> Ids {
    constexpr std::int32_t number = TS_ERRO_BAIXA;
    const std::int32_t id = request.IdLancamento();
    const Entry& chosen = Find(id, request.IdConcorrencia(), number, kSettlementOfOther);
    RefuseIf(chosen.realised != "?", TS_ERRO_JA_BAIXADO, "O lançamento já está baixado.");
    CheckSettlement(request, chosen);
    const TIPO_BAIXA kind = request.TipoBaixa();
    if (kind < BAIXA_TOTAL || kind > BAIXA_NAO_REALIZADO) return {id};

    const bool ordinary = chosen.transfer == 0;
    for (const std::int32_t each : ordinary ? Ids{id} : Legs(id, number)) {
      Entry& entry = *Find(each);
      RefuseIf(ordinary && !AllActive(entry), number, kNotSettled);
      RefuseIf(!Active(kAccount, entry.account), number, kLegNotSettled);
      entry.realised = kind == BAIXA_NAO_REALIZADO ? "N" : "S";
      if (ordinary && kind == BAIXA_NAO_REALIZADO) lastWriter = entry.user;
      entry.user = user;
      ++entry.version;
      if (kind != BAIXA_NAO_REALIZADO) entry.paid = ordinary ? request.ValorBaixado() : entry.amount;
      if (kind != BAIXA_NAO_REALIZADO && ordinary) {
        Verify(request.ValorBaixado());
        entry.amount = request.ValorBaixado();
        entry.date = ToDate(request.DataRealizacao());
        entry.key = KeyOf(entry.date, each);
      }
      SetBalances();
      const std::int32_t action = !ordinary || kind == BAIXA_TOTAL ? 4 : kind == BAIXA_PARCIAL ? 9 : 5;
      Record(action, each, ordinary);
    }
    return {id};
  });
  // What was not realised comes back as it was read, but for its state, version and balances.
  if (lastWriter && outcome.number == 0) outcome.returned.front().user = *lastWriter;
  return outcome;
}

Model::Outcome Model::Move(const CTransferencia& request) {
  return Do([&]() -> Ids {
    const auto insert = [&](bool incoming) {
      Entry leg;
      leg.transfer = incoming ? 2 : 1;
      leg.amount = incoming ? request.Valor().Abs() : -request.Valor().Abs();
      leg.account = incoming ? request.CodContaDestino() : request.CodContaOrigem();
      leg.type = "001";
      leg.history = incoming ? request.HistoricoEntrada() : request.HistoricoSaida();
      leg.document = Given(incoming ? request.DocumentoEntrada() : request.DocumentoSaida());
      leg.date = request.DataDaTransferencia();
      if (incoming) leg.date = Date::FromDay(leg.date.DayNumber());
      leg.reference = leg.due = leg.date;
      RefuseIf(Has(leg.history, '\''), db::EngineError::SyntaxInExpression);
      RefuseIf(!Active(kAccount, leg.account), TS_ERRO_TRANSFERENCIA,
               incoming ? kNotTransferredTo : kNotTransferredFrom);
      RefuseIf(leg.history.empty(), db::EngineError::ZeroLength);
      const std::int32_t id = Insert(std::move(leg));
      Record(1, id, true);
      return id;
    };
    const std::int32_t outgoing = insert(false);
    const std::int32_t incoming = insert(true);
    state.legs[outgoing] = incoming;
    return {outgoing, incoming};
  });
}

// Marks the entry and sets one of the opposite amount against it, on its day.
std::int32_t Model::ReverseEntry(std::int32_t id, std::string history, std::string_view deactivated) {
  constexpr std::int32_t number = TS_ERRO_ESTORNO;
  Entry& entry = *Find(id);
  const std::uint8_t transfer = entry.transfer;
  RefuseIf(entry.reversed || entry.realised == "N", number, kNotReversed);
  entry.reversed = true;
  entry.realised = "E";
  if (transfer != 2) ++entry.version;
  RefuseIf(transfer == 2 && At(kAccount, entry.account).deleted, number, kNoReversalJournal);
  Record(6, id, transfer == 0);

  Entry reversal = entry;
  reversal.amount = -entry.amount;
  reversal.paid.reset();
  if (transfer == 0) reversal.document = entry.document.value_or("");
  reversal.due = entry.date;
  reversal.history = std::move(history);
  reversal.reversal = true;
  reversal.reversed = false;
  reversal.transfer = transfer == 1 ? 1 : 0;
  reversal.version = 0;
  RefuseIf(transfer == 0 ? !AllActive(entry) : !Active(kAccount, entry.account), number,
           std::string("Não foi possível incluir o estorno.\nPossível causa: a conta") + std::string(deactivated));
  RefuseIf(text::Length(reversal.history) > 50, db::EngineError::TextTooLong);
  const std::int32_t reversing = Insert(std::move(reversal));
  Record(6, reversing, transfer == 0);
  return reversing;
}

Model::Outcome Model::Reverse(std::string_view history, std::int32_t id, std::int32_t version) {
  return Do([&]() -> Ids {
    constexpr std::int32_t number = TS_ERRO_ESTORNO;
    const Entry& entry = Find(id, version, number, kReversalOfOther);
    RefuseIf(entry.realised == "N", number, kReversalOfUnrealised);
    const bool ordinary = entry.transfer == 0;
    const Ids reversed = ordinary ? Ids{id} : Legs(id, number);
    RefuseIf(Has(history, '"') || Has(history, '\''), number, kQuotes + (ordinary ? "" : " Favor tentar novamente."));
    const std::string written = text::Upper(text::Trim(history));
    RefuseIf(written.empty(), number, kNoReversalHistory);
    RefuseIf(ordinary && text::Length(written) > 50, number, "Erro: histórico com mais de 50 caracteres.");
    Ids reversing;
    for (const std::int32_t each : reversed) {
      const std::string deactivated =
          ordinary ? ", receita/despesa, centro de custo/lucro ou cliente/fornecedor foi desativado."
                   : " '" + At(kAccount, Find(each)->account).description + "' foi desativada.";
      reversing.push_back(ReverseEntry(each, written, deactivated));
    }
    return ordinary ? reversing : Ids{};
  });
}

}  // namespace tsv::test
