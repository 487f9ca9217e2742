#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <sstream>

#include "support/Environment.h"
#include "support/Ledger.h"
#include "support/Model.h"
#include "types/Conversions.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr std::size_t kUsualSize = 50;     // beyond it, entries are deleted more often
constexpr std::size_t kLargestSize = 100;  // reversed entries stay for good: then a new company begins

using Returned = std::vector<std::shared_ptr<CLancamento>>;

std::string Shown(const Variant& value) {
  return IsNull(value) ? "Null" : IsEmpty(value) ? "Empty" : "'" + ToText(value) + "'";
}

template <typename... Parts>
std::string Told(const Parts&... parts) {
  std::ostringstream out;
  ((out << parts << ' '), ...);
  return out.str();
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  template <typename T>
  T Any(std::initializer_list<T> values) {
    return values.begin()[Below(values.size())];
  }
  std::string Text(std::initializer_list<const char*> values) { return Any(values); }
  std::int64_t Cents(std::int64_t most) { return static_cast<std::int64_t>(Below(static_cast<std::size_t>(most))) + 1; }

  // Few days, so that many entries share one; now and then far before or after everything else.
  Date Moment() {
    const auto day = static_cast<int>(1 + Below(12));
    const Date date = OneIn(20) ? Day(Any({1999, 2031}), 12, day) : Day(2008, 7, day);
    return OneIn(3) ? AtAnyTime(date) : date;
  }
  Date AtAnyTime(Date date) { return Date::FromDay(date.DayNumber(), static_cast<int>(Below(86400))); }

 private:
  std::mt19937_64 engine_;
};

class Clock : public RecordingHost {
 public:
  Date now;
  Date Now() override { return now; }
};

// What was done how often, and all that the library answered to it.
struct Course {
  std::map<std::string, int> done;
  std::vector<std::string> answers;
};

// One company: the library's and the model's.
class Walk {
 public:
  Walk(Random& random, Course& course) : random_(random), course_(course) {
    company_.Execute(
        "INSERT INTO Usuarios (Id,IdLogin,Senha,Inativo,DesUsuario) VALUES (9,'bia','segredo',False,'BIA')");
    CurrentSession().host = clock_;
    tesovia_.InicializarTS(company_.Path(), "ana", "segredo");
  }
  ~Walk() { CurrentSession().host = std::make_shared<Host>(); }
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;

  bool IsFull() const { return model_.state.entries.size() > kLargestSize; }

  void Step() {
    ++steps_;
    clock_->now = model_.now = Date::FromDay(39633 + steps_ / 86400, steps_ % 86400);
    const std::size_t size = model_.state.entries.size();
    const std::size_t choice = random_.Below(100);
    if (choice < 2) return LogIn();
    if (choice < 8) return Switch();
    if (choice < 16) return Reverse();
    if (choice < (size > kUsualSize ? 45u : 26u)) return Delete();
    if (choice < 60) return Settle();
    if (choice < 70) return Move();
    Post();
  }

  void Finish() {
    std::map<std::int32_t, std::int32_t> legs;
    const auto rows = others_->OpenRecordset("SELECT SerialSai, SerialEntra FROM Transferencias");
    for (; !rows->EndOfFile(); rows->MoveNext()) {
      legs[ToLong(rows->Fields("SerialSai").Value())] = ToLong(rows->Fields("SerialEntra").Value());
    }
    EXPECT_EQ(legs, model_.state.legs);
  }

 private:
  void Post() {
    Posting posting;
    posting.date = random_.Moment();
    posting.reference = random_.Moment();
    posting.amount = Cents(random_.Cents(2'000'000) - 1'000'000);
    if (random_.OneIn(40)) posting.amount = random_.Any({Currency(), Cents(90'000'000'000'001)});
    if (random_.OneIn(60)) posting.amount += Currency::FromTenThousandths(50);
    posting.account = random_.Text({"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.20", "b", "B.1"});
    posting.type = random_.Text({"0", "00", "0012", "0", "00", "0012", "2", "3"});
    if (random_.OneIn(2)) posting.centre = random_.Text({"1", "1.1", "1.10"});
    if (random_.OneIn(2)) posting.partner = random_.Any({1, 2});
    if (random_.OneIn(60)) posting.account = random_.Text({"9", "8", "7"});
    if (random_.OneIn(30)) posting.type = random_.Text({"9", "0013", "001", "001"});
    if (random_.OneIn(60)) posting.centre = "9";
    if (random_.OneIn(60)) posting.partner = 9;
    posting.history = History();
    posting.document = Document();
    const std::string what = Told(posting.amount.ToText(), posting.date.ToIso(), "account", posting.account, "type",
                                  posting.type, "centre", posting.centre, "partner", posting.partner, posting.history);
    Hold("post", what, model_.Post(posting), [&] { return Returned{test::Post(tesovia_, posting)}; });
  }

  void Move() {
    CTransferencia request;
    request.CodContaOrigem(random_.Text({"1", "1.1", "1.1.2", "1.2", "b", "B.1"}));
    request.CodContaDestino(random_.Text({"1", "1.1", "1.1.2.5", "1.20", "B", "B.1"}));
    if (random_.OneIn(30)) request.CodContaOrigem(random_.Text({"", "9", "8", "7"}));
    if (random_.OneIn(30)) request.CodContaDestino(random_.Text({"", "9", "8", "7"}));
    request.Valor(random_.OneIn(20) ? Currency() : Cents(random_.Cents(1'000'000) - 500'000));
    if (random_.OneIn(60)) request.Valor(request.Valor() + Currency::FromTenThousandths(50));
    request.DataDaTransferencia(random_.Moment());
    request.HistoricoSaida(Short(History()));
    request.HistoricoEntrada(Short(History()));
    request.DocumentoSaida(Document());
    request.DocumentoEntrada(Document());
    const std::string what =
        Told(request.Valor().ToText(), request.DataDaTransferencia().ToIso(), "from", request.CodContaOrigem(), "to",
             request.CodContaDestino(), request.HistoricoSaida(), "/", request.HistoricoEntrada());
    Hold("transfer", what, model_.Move(request), [&] {
      const Collection legs = tesovia_.FazerTransferenciaTS(request);
      Returned returned(legs.begin(), legs.end());
      std::ranges::sort(returned, {}, [](const auto& leg) { return leg->Id(); });
      return returned;
    });
  }

  void Delete() {
    const auto [id, version] = Pick();
    Hold("delete", Told(id, "version", version), model_.Delete(id, version), [&, id = id, version = version] {
      tesovia_.ExcluirLancamentoTS(id, version);
      return Returned{};
    });
  }

  void Settle() {
    const auto [id, version] = Pick("?");
    Model::Entry entry;  // of what there is no such entry, anything can be asked
    for (const Model::Entry& each : model_.state.entries) {
      if (each.id == id) entry = each;
    }
    const bool leg = entry.transfer != 0;
    CBaixa request;
    request.IdLancamento(id);
    request.IdConcorrencia(version);
    request.TipoBaixa(random_.Any({BAIXA_TOTAL, BAIXA_PARCIAL, BAIXA_NAO_REALIZADO}));
    if (leg && !random_.OneIn(4)) request.TipoBaixa(random_.Any({BAIXA_TOTAL, BAIXA_NAO_REALIZADO}));
    if (random_.OneIn(30)) request.TipoBaixa(static_cast<TIPO_BAIXA>(random_.Any({0, 4, -1})));

    Currency amount = entry.amount;
    if (request.TipoBaixa() == BAIXA_PARCIAL && amount != Currency()) {
      const std::int64_t part = random_.Cents(amount.Abs().TenThousandths() / 100);
      amount = Cents(amount > Currency() ? part : -part);
    }
    if (random_.OneIn(12)) amount = random_.Any({-amount, Currency(), amount + amount, amount - Cents(1)});
    if (random_.OneIn(40)) amount += Currency::FromTenThousandths(50);
    request.ValorBaixado(amount);

    const bool stays = leg || request.TipoBaixa() == BAIXA_NAO_REALIZADO || random_.OneIn(3);
    Date date = stays ? entry.date : random_.Moment();
    if (random_.OneIn(leg ? 10 : 3)) date = random_.AtAnyTime(date);
    if (random_.OneIn(20)) date = random_.Moment();
    request.DataRealizacao(date);
    if (random_.OneIn(6)) request.DataRealizacao(random_.OneIn(2) ? date.ToBrazilian() : date.ToIso());
    if (random_.OneIn(25)) request.DataRealizacao(random_.Any<Variant>({Empty(), std::string("amanhã")}));

    const std::string what = Told(id, "version", version, amount.ToText(), "of", entry.amount.ToText(),
                                  Shown(request.DataRealizacao()), "of", entry.date.ToIso());
    Hold("settle " + std::to_string(request.TipoBaixa()) + (leg ? " leg" : ""), what, model_.Settle(request),
         [&] { return Returned{tesovia_.BaixarLancamentoTS(request)}; });
  }

  void Reverse() {
    const auto [id, version] = Pick(random_.Text({"?", "S"}));
    std::string history = History();
    if (random_.OneIn(10)) history = "diz \"não\"";
    Hold("reverse", Told(id, "version", version, history), model_.Reverse(history, id, version),
         [&, id = id, version = version] {
           auto entry = tesovia_.EstornarLancamentoTS(history, id, version);
           return entry ? Returned{entry} : Returned{};
         });
  }

  // Another user deactivates or deletes something that entries name, or brings it back.
  void Switch() {
    const bool restoring = switched_.size() == 2 || (!switched_.empty() && random_.OneIn(2));
    if (!restoring) {
      auto chosen = model_.masters.begin();
      std::advance(chosen, random_.Below(model_.masters.size()));
      switched_.emplace_back(chosen->first, random_.OneIn(3) && chosen->first.first != kPartner);
    } else {
      std::swap(switched_.back(), switched_[random_.Below(switched_.size())]);
    }
    const auto [which, deletes] = switched_.back();
    bool& flag = deletes ? model_.masters[which].deleted : model_.masters[which].inactive;
    flag = !flag;
    const MasterColumns& columns = kMasterColumns[which.first];
    if (restoring) switched_.pop_back();
    const std::string quote = which.first == kPartner ? "" : "'";
    others_->Execute(std::string("UPDATE ") + columns.table + " SET " + (deletes ? columns.deleted : columns.inactive) +
                         " = " + (flag ? "True" : "False") + " WHERE " + columns.key + " = " + quote + which.second +
                         quote,
                     db::dbFailOnError);
  }

  void LogIn() {
    const bool bia = model_.user == 7;
    tesovia_.InicializarTS(company_.Path(), bia ? "bia" : "ana", "segredo");
    model_.user = bia ? 9 : 7;
    model_.userName = bia ? "BIA" : "ANA SOUZA";
  }

  // An entry, in the state if it can be found, and its version; now and then another version, or no entry at all.
  std::pair<std::int32_t, std::int32_t> Pick(const std::string& state = "") {
    const auto& entries = model_.state.entries;
    if (entries.empty() || random_.OneIn(40)) {
      const auto past = static_cast<std::int32_t>(random_.Below(static_cast<std::size_t>(model_.state.serial) + 1));
      return {random_.Any({0, -1, model_.state.serial + 1, past}), 0};
    }
    const Model::Entry* entry = nullptr;
    for (int attempt = 0; attempt < 4 && (!entry || entry->realised != state); ++attempt) {
      entry = &entries[random_.Below(entries.size())];
    }
    return {entry->id, entry->version + (random_.OneIn(20) ? random_.Any({-1, 1}) : 0)};
  }

  std::string History() {
    if (random_.OneIn(40)) return random_.Text({"", "   ", "d'água"});
    if (random_.OneIn(20)) return std::string(random_.Any({49, 50, 51}), 'x');
    return random_.Text({"Lançamento", "  água e luz ", "PÃO"});
  }
  static std::string Short(std::string history) { return history.size() > 50 ? "" : history; }
  std::string Document() { return random_.Text({"", "", "NF 12/3", "  "}); }

  void Hold(const std::string& kind, const std::string& what, const Model::Outcome& expected,
            const std::function<Returned()>& act) {
    SCOPED_TRACE(kind + ": " + what);
    clock_->events.clear();
    Returned returned;
    const Erro erro = ErrorOf([&] { returned = act(); });
    std::string& answer = course_.answers.emplace_back(Told(kind, what, "->", erro));
    for (const std::string& event : clock_->events) answer += event + ' ';
    for (const auto& entry : returned) {
      for (const Variant& value : ValuesOf(*entry)) answer += Shown(value) + ' ';
    }
    ASSERT_EQ(erro.Numero(), expected.number) << erro << "\nexpected: " << expected.description;
    if (expected.number < 0) {
      ASSERT_EQ(erro.Descricao(), expected.description);
    }
    const auto isBox = [](const std::string& event) { return event.starts_with("box "); };
    ASSERT_EQ(std::ranges::count_if(clock_->events, isBox), expected.box ? 1 : 0);
    ++course_.done[kind + (expected.number == 0 ? "" : " refused")];

    ASSERT_EQ(returned.size(), expected.returned.size());
    std::vector<Model::Row> rows;
    for (const Model::Entry& entry : expected.returned) rows.push_back(Model::Columns(entry));
    for (std::size_t i = 0; i < rows.size(); ++i) ExpectReturned(*returned[i], rows[i]);
    rows.clear();
    for (const Model::Entry& entry : model_.state.entries) rows.push_back(Model::Columns(entry));
    ExpectRows(*others_->OpenRecordset(entriesInOrder_, db::dbOpenForwardOnly), rows);
    newInJournal_->Parameters(0).Value = model_.now;
    std::ranges::sort(model_.journal, {}, [](const Model::Row& row) { return ToLong(row[0]); });
    ExpectRows(*newInJournal_->OpenRecordset(), model_.journal);
    journalled_ += model_.journal.size();
    ASSERT_EQ(static_cast<std::size_t>(Count(*others_, "HistoricosDeLancamentos")), journalled_);
    ASSERT_EQ(StoredSerial(*others_), model_.state.serial);
  }

  static void ExpectRows(db::Recordset& rows, const std::vector<Model::Row>& expected) {
    std::size_t count = 0;
    for (; !rows.EndOfFile(); rows.MoveNext(), ++count) {
      ASSERT_LT(count, expected.size()) << "one too many: " << Shown(rows.Fields("Id").Value());
      for (std::size_t i = 0; i < rows.FieldCount(); ++i) {
        ExpectSame(rows.Fields(i).Name(), rows.Fields(i).Value(), expected[count], i);
      }
      if (testing::Test::HasFailure()) return;  // the rows after it are wrong as well
    }
    ASSERT_EQ(count, expected.size());
  }

  static void ExpectReturned(const CLancamento& e, const Model::Row& expected) {
    Model::Row actual = ValuesOf(e);
    const std::vector<std::string> columns = EntryColumns();
    for (std::size_t i = 0; i < actual.size(); ++i) {
      if (columns[i].starts_with("Data") && columns[i] != "DataId") actual[i] = ToDate(actual[i]);
      const bool isNone = actual[i] == Variant("") || actual[i] == Variant(0) || actual[i] == Variant(Currency());
      if (!IsNull(expected[i]) || !isNone) ExpectSame("returned " + columns[i], actual[i], expected, i);
    }
  }

  static void ExpectSame(const std::string& name, const Variant& actual, const Model::Row& expected,
                         std::size_t place) {
    if (actual == expected[place]) return;
    ADD_FAILURE() << name << " of " << Shown(expected[0]) << " (" << Shown(expected[1]) << ") is " << Shown(actual)
                  << ", not " << Shown(expected[place]);
  }

  Random& random_;
  Course& course_;
  Company company_;
  std::shared_ptr<db::Database> others_ = company_.Open();  // what others see, and do
  const std::string entriesInOrder_ = "SELECT " + kEntryColumns + " FROM Lancamentos ORDER BY DataId";
  std::shared_ptr<db::QueryDef> newInJournal_ = others_->CreateQueryDef(
      "SELECT " + Model::kJournalColumns + " FROM HistoricosDeLancamentos WHERE DataHora >= [desde] ORDER BY Id");
  std::shared_ptr<Clock> clock_ = std::make_shared<Clock>();
  Tesovia tesovia_;
  Model model_;
  std::vector<std::pair<std::pair<MasterTable, std::string>, bool>> switched_;  // whether deleted
  std::size_t journalled_ = 0;
  int steps_ = 0;
};

Course WalkFor(std::uint64_t operations, std::uint64_t seed) {
  Random random(seed);
  Course course;
  std::unique_ptr<Walk> walk;
  for (std::uint64_t i = 1; i <= operations && !testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE("TSV_SEED=" + std::to_string(seed) + ", operation " + std::to_string(i));
    if (!walk || walk->IsFull()) {
      if (walk) walk->Finish();
      walk.reset();
      walk = std::make_unique<Walk>(random, course);
    }
    walk->Step();
  }
  if (!testing::Test::HasFailure()) walk->Finish();
  return course;
}

TEST(Model, RandomOperationsKeepTheLedgerTrue) {
  const std::uint64_t seed = NumberFrom("TSV_SEED", std::random_device()());
  const std::uint64_t operations = NumberFrom("TSV_OPERATIONS", 2000);
  std::printf("TSV_SEED=%s TSV_OPERATIONS=%s repeats this run\n", std::to_string(seed).c_str(),
              std::to_string(operations).c_str());
  std::fflush(stdout);  // should the run end badly
  Course course = WalkFor(operations, seed);
  if (HasFailure()) return;
  if (LedgerPlace::OnServer()) {  // a file is led through the same, and must have given the same answers
    LedgerPlace::UseServer({});
    Course inFile;
    OnAnotherThread([&] { inFile = WalkFor(operations, seed); });  // where no error has left its origin yet
    ASSERT_EQ(course.answers.size(), inFile.answers.size());
    for (std::size_t i = 0; i < inFile.answers.size(); ++i) ASSERT_EQ(course.answers[i], inFile.answers[i]);
    std::printf("%zu answers are the same on the server and in a file\n", inFile.answers.size());
  }
  if (operations < 2000) return;  // too few for all of them
  for (const char* kind :
       {"post", "transfer", "delete", "reverse", "settle 1", "settle 2", "settle 3", "settle 1 leg", "settle 3 leg"}) {
    EXPECT_GT(course.done[kind], 0) << kind;
    EXPECT_GT(course.done[std::string(kind) + " refused"], 0) << kind;
  }
}

}  // namespace
